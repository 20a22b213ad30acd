/// What happens to the console's service and to the datagrams on the way, where there are real ones.

#include "operator.h"

#include "memorydevicelist.h"

#include <QTest>

namespace Storm {

using namespace ECProxy::Client;

namespace {
constexpr int PatienceMs = 8000;
} // namespace

/// A key of any group whose tap waits for nothing, and no T-Bar; digits most often.
void Operator::tapBlindly()
{
    const char* const group = m_dice.oneOf<const char*>(
        {NumberGroup, NumberGroup, ScreenGroup, LayerGroup, InputGroup, PresetGroup});
    const auto& keys = m_keyboard.group(group).m_buttons;
    const Key& key = *keys.at(m_dice.below(keys.size()));
    say(QStringLiteral("%1 code %2").arg(QLatin1String(group)).arg(key.OrvaneKey));
    press(key);
    release(key);
}

/// The service stands still while keys are pressed, and goes on: each press acts, once.
void Operator::holdUpService()
{
    ++m_nLinkFaults;
    say("the service stands still");
    m_pSockets->holdUpService();
    const auto& digits = m_keyboard.group(NumberGroup).m_buttons;
    const int taps = 1 + m_dice.below(10);
    expect<quint64>(
        "types once a tap", [this] { return m_nTyped; }, m_nTyped + quint64(taps));
    for (int i = 0; i < taps; ++i) {
        press(*digits.at(i % digits.size()));
        release(*digits.at(i % digits.size()));
    }
    QTest::qWait(m_dice.below(20));
    m_pSockets->letServiceGoOn();
}

/// Reports are lost: no key acts, and none does afterwards.
void Operator::loseReports()
{
    ++m_nLinkFaults;
    say("reports are lost:");
    expect<quint64>(
        "types nothing", [this] { return m_nTyped; }, m_nTyped);
    m_pSockets->loseReports(true);
    for (int i = 0; i < 5; ++i)
        tapBlindly();
    m_pSockets->loseReports(false);
}

/// The console misses a change of the model, because requests are lost or the service is away. Then the
/// service starts anew, and the console shows it.
void Operator::missChange()
{
    if (m_dice.chance(50)) {
        say("requests are lost:");
        m_pSockets->loseRequests(true);
    } else {
        say("the service is away:");
        m_pSockets->killService();
        (void)QTest::qWaitFor(
            [this] { return m_pSockets->session().serviceState() == ECConsoleSession::ServiceState::Absent; },
            PatienceMs);
    }
    m_dice.chance(50) ? changeScreen() : changeLayer(); // no more: the statement looks once
    restartService();
}

/// Without notice. Nobody is told but the session, which looks for the service's socket.
void Operator::restartService()
{
    ++m_nLinkFaults;
    say("the service is killed and starts anew");
    m_pSockets->killService();
    m_rig.console().restart();
    m_pSockets->loseRequests(false);
    m_pSockets->startService();
    if (!QTest::qWaitFor([this] { return m_rig.console().console().ledMessages > 0; }, PatienceMs))
        m_expectations.push_back([] { return QStringLiteral("a service that comes back is not lit"); });
    m_rig.console().settle(PatienceMs);
    m_statement.inputsRefreshed();
    m_statement.pageMayTurn(InputGroup);
}

} // namespace Storm

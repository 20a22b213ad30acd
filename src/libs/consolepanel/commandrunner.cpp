#include "commandrunner.h"

namespace Orvane::ConsolePanel {

CommandRunner::CommandRunner(
    const ConsoleRecorder& console, PanelClock& clock, RunnerSurroundings& surroundings)
    : m_console(console)
    , m_clock(clock)
    , m_surroundings(surroundings)
{
}

void CommandRunner::append(const SimulatorCommand& command, const QString& text, const QString& place)
{
    if (m_bQuit)
        return;
    m_commands.push_back({command, text, place});
    step();
}

void CommandRunner::consoleChanged()
{
    if (!m_action || !m_action->watchesConsole())
        return;
    proceed();
    step();
}

void CommandRunner::alarmRang()
{
    m_alarm.reset();
    proceed();
    step();
}

void CommandRunner::step()
{
    while (!m_action && !m_commands.empty() && !m_bQuit) {
        m_current = std::move(m_commands.front());
        m_commands.pop_front();
        begin();
    }
}

void CommandRunner::begin()
{
    const bool isQuiet = std::holds_alternative<StormKeys>(m_current.command);
    m_action = RunnerAction::make(
        m_current.command, m_console,
        [this, isQuiet](const UpMessage& message) { sendReport(message, isQuiet); }, m_clock.now());
    if (m_action) {
        proceed();
        return;
    }
    std::visit(
        Overloaded{
            [this](const SendReport& report) { sendReport(report.message, false); },
            [this](const SendRaw& raw) {
                m_surroundings.send(raw.bytes);
                m_surroundings.noteSent(QStringLiteral("send ") + QLatin1String(raw.bytes.toHex()));
            },
            [this](const SetFault& fault) { m_surroundings.setFault(fault); },
            [this](const ClearFaults&) { m_surroundings.clearFaults(); },
            [this](const SeedFaults& seed) { m_surroundings.seedFaults(seed.seed); },
            [this](const RestartConsole&) { m_surroundings.restartConsole(); },
            [this](const TakePicture& picture) { m_surroundings.takePicture(picture.file); },
            [this](const ShowConsole&) { m_surroundings.showConsole(); },
            [this](const ShowHelp&) { m_surroundings.showHelp(); },
            [this](const Quit&) { quit(); },
            [](const auto&) {},
        },
        m_current.command);
}

void CommandRunner::proceed()
{
    if (!m_action)
        return;
    const RunnerAction::Progress progress = m_action->proceed(m_clock.now());
    if (progress.state != RunnerAction::Progress::Goes)
        finish(progress);
    else if (m_alarm != progress.wakeAt) {
        m_alarm = progress.wakeAt;
        m_clock.setAlarm(progress.wakeAt);
    }
}

void CommandRunner::finish(const RunnerAction::Progress& progress)
{
    m_action.reset();
    m_alarm.reset();
    m_clock.clearAlarm();
    const bool isOk = progress.state == RunnerAction::Progress::Succeeded;
    const bool canFail = std::holds_alternative<Expect>(m_current.command)
        || std::holds_alternative<StormKeys>(m_current.command);
    if (canFail)
        m_surroundings.noteOutcome({m_current.text, m_current.place, isOk, progress.text});
    if (isOk)
        return;
    ++m_nFailures;
    if (m_bStopsAtFailure)
        quit();
}

void CommandRunner::quit()
{
    m_bQuit = true;
    m_commands.clear();
}

void CommandRunner::sendReport(const UpMessage& message, bool isQuiet)
{
    m_surroundings.send(encodeUp(message, m_nSequence++));
    if (!isQuiet)
        m_surroundings.noteSent(describe(message));
}

} // namespace Orvane::ConsolePanel

#include "commandrunner.h"

#include "actionfactory.h"

namespace Orvane::ConsolePanel {

namespace {

/// Whether it is told how the command came out.
bool canFail(const SimulatorCommand& command)
{
    return std::holds_alternative<Expect>(command) || std::holds_alternative<StormKeys>(command)
        || std::holds_alternative<PlayCapture>(command) || std::holds_alternative<StepCapture>(command);
}

} // namespace

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
    m_action = makeAction(
        m_current.command,
        {m_console, [this, isQuiet](const UpMessage& message) { sendReport(message, isQuiet); },
         [this](const QByteArray& bytes) { sendRecorded(bytes); },
         [this](const QString& when, const std::vector<ConsoleDifference>& found) {
             m_surroundings.noteDifferences(when, found);
         },
         m_steppedReplay},
        m_clock.now());
    if (m_action) {
        proceed();
        return;
    }
    std::visit(
        Overloaded{
            [this](const SendReport& report) { sendReport(report.message, false); },
            [this](const SendRaw& raw) {
                m_surroundings.send(raw.bytes);
                noteBytes(raw.bytes);
            },
            [this](const SetFault& fault) { m_surroundings.setFault(fault); },
            [this](const ClearFaults&) { m_surroundings.clearFaults(); },
            [this](const SeedFaults& seed) { m_surroundings.seedFaults(seed.seed); },
            [this](const RestartConsole&) { m_surroundings.restartConsole(); },
            [this](const StartCapture& start) { m_surroundings.startCapture(start.file); },
            [this](const StopCapture&) { m_surroundings.stopCapture(); },
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
    if (canFail(m_current.command))
        m_surroundings.noteOutcome({m_current.text, m_current.place, isOk, progress.text});
    if (isOk)
        return;
    ++m_nFailures;
    m_bCouldNotStart |= progress.state == RunnerAction::Progress::CouldNotStart;
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

void CommandRunner::sendRecorded(const QByteArray& bytes)
{
    m_surroundings.send(bytes);
    if (const auto report = decodeUp(bytes))
        m_surroundings.noteSent(describe(*report));
    else
        noteBytes(bytes);
}

void CommandRunner::noteBytes(const QByteArray& bytes)
{
    m_surroundings.noteSent(QStringLiteral("send ") + QLatin1String(bytes.toHex()));
}

} // namespace Orvane::ConsolePanel

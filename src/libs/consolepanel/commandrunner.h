#pragma once

#include "runneraction.h"

#include <deque>

namespace Orvane::ConsolePanel {

/// How a command came out that can fail.
struct CommandOutcome {
    QString command; ///< as it was written
    QString place; ///< where it was written, as `line 12`; may be empty
    bool isOk = false;
    QString detail; ///< what is there instead, or what was measured; may be empty
};

/// What the runner works on. Implementations must not call the runner back from inside.
class RunnerSurroundings {
public:
    virtual ~RunnerSurroundings() = default;
    /// Sends one datagram to the library.
    virtual void send(const QByteArray& datagram) = 0;
    /// Told of every report (`press 12`), right after it was sent; not within storms, which only report
    /// their end.
    virtual void noteSent(const QString& what) = 0;
    virtual void noteOutcome(const CommandOutcome& outcome) = 0;
    /// Faults of the wire that `send` puts datagrams on.
    virtual void setFault(const SetFault& fault) = 0;
    virtual void clearFaults() = 0;
    virtual void seedFaults(quint32 seed) = 0;
    virtual void restartConsole() = 0;
    virtual void startCapture(const QString& file) = 0;
    virtual void stopCapture() = 0;
    /// Told of what the console shows otherwise than was recorded.
    virtual void noteDifferences(const QString& when, const std::vector<ConsoleDifference>& found) = 0;
    virtual void takePicture(const QString& file) = 0;
    virtual void showConsole() = 0;
    virtual void showHelp() = 0;
};

/// Runs commands one after the other, each when the one before it has ended. An expectation wakes up with
/// the datagram that fulfils it: call `consoleChanged` after each one, and `alarmRang` when the clock's alarm
/// rings. Used from one thread.
class CommandRunner {
public:
    CommandRunner(const ConsoleRecorder& console, PanelClock& clock, RunnerSurroundings& surroundings);

    /// Whether the first failure ends the run as `quit` does. Off by default.
    void setStopsAtFailure(bool stops) { m_bStopsAtFailure = stops; }

    void append(const SimulatorCommand& command, const QString& text, const QString& place);
    /// Sends a report that a hand made, whatever runs.
    void report(const UpMessage& message) { sendReport(message, false); }
    void consoleChanged();
    void alarmRang();

    /// No command runs or waits.
    bool isIdle() const { return !m_action && m_commands.empty(); }
    /// `quit` was run, or a failure ended the run; further commands are dropped.
    bool hasQuit() const { return m_bQuit; }
    int failures() const { return m_nFailures; }
    /// A capture was opened to be stepped through, and reports are left.
    bool hasUnplayed() const { return m_steppedReplay != nullptr; }
    /// A capture could not be played: it was none, or there was no host.
    bool couldNotStart() const { return m_bCouldNotStart; }

private:
    struct Queued {
        SimulatorCommand command;
        QString text;
        QString place;
    };
    void step();
    void begin();
    void proceed();
    void finish(const RunnerAction::Progress& progress);
    void quit();
    void sendReport(const UpMessage& message, bool isQuiet);
    void sendRecorded(const QByteArray& bytes);
    void noteBytes(const QByteArray& bytes);

    const ConsoleRecorder& m_console;
    PanelClock& m_clock;
    RunnerSurroundings& m_surroundings;
    std::deque<Queued> m_commands;
    Queued m_current{Quit{}, {}, {}};
    std::unique_ptr<RunnerAction> m_action;
    std::shared_ptr<Replay> m_steppedReplay; ///< the one that `step` goes on with
    std::optional<PanelClock::Duration> m_alarm;
    quint16 m_nSequence = 0;
    int m_nFailures = 0;
    bool m_bStopsAtFailure = false;
    bool m_bCouldNotStart = false;
    bool m_bQuit = false;
};

} // namespace Orvane::ConsolePanel

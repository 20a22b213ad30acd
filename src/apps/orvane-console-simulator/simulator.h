#pragma once

#include "commandparser.h"
#include "commandrunner.h"
#include "consolelayout.h"
#include "eventloopclock.h"
#include "faultywire.h"
#include "servicelink.h"
#include "simulatoroptions.h"
#include "simulatoroutput.h"

/// One command of a script with its place.
struct ScriptCommand {
    Orvane::ConsolePanel::SimulatorCommand command;
    QString text;
    QString place;
};

/// Looks on. Called on the simulator's thread.
class SimulatorWatcher {
public:
    virtual ~SimulatorWatcher() = default;
    virtual void noteDown(
        std::chrono::microseconds time, const QByteArray& datagram,
        const Orvane::ConsolePanel::Reception& reception) = 0;
    /// @param isLost a fault of the wire kept it from arriving
    virtual void noteUp(std::chrono::microseconds time, const QByteArray& datagram, bool isLost) = 0;
    /// All lights are dark.
    virtual void consoleRestarted() = 0;
    /// False when it cannot be written.
    virtual bool takePicture(const QString& file) = 0;
};

/// The console as a program: the wire, the recorder, the commands and the printing put together.
class Simulator : private Orvane::ConsolePanel::RunnerSurroundings {
public:
    Simulator(const SimulatorOptions& options, Orvane::ConsolePanel::ConsoleLayout layout);
    ~Simulator() override;

    /// False with `errorText` when the port cannot be had, or the capture file that was asked for.
    bool open();
    QString errorText() const { return m_strError; }

    void add(const ScriptCommand& command);
    /// Runs one line that was typed; a line that is wrong is a failure, and the run goes on.
    void addLine(const QString& line);
    /// No more commands come: ends the event loop when the last one is through. A window stays open.
    void endOfCommands();
    /// Ends the event loop now.
    void end();

    /// @name For the window
    /// @{
    const Orvane::ConsolePanel::ConsoleLayout& layout() const { return m_layout; }
    const Orvane::ConsolePanel::ConsoleRecorder& console() const { return m_console; }
    Orvane::ConsolePanel::FaultyWire& wire() { return m_wire; }
    /// Null for none.
    void setWatcher(SimulatorWatcher* watcher) { m_pWatcher = watcher; }
    void report(const Orvane::ConsolePanel::UpMessage& message);
    void sendBytes(const QByteArray& datagram);
    void restart();
    /// @}

private:
    void send(const QByteArray& datagram) override;
    void noteSent(const QString& what) override;
    void noteOutcome(const Orvane::ConsolePanel::CommandOutcome& outcome) override;
    void setFault(const Orvane::ConsolePanel::SetFault& fault) override;
    void clearFaults() override { m_wire.faults() = {}; }
    void seedFaults(quint32 seed) override { m_wire.seed(seed); }
    void restartConsole() override;
    void startCapture(const QString& file) override;
    void stopCapture() override;
    void noteDifferences(
        const QString& when, const std::vector<Orvane::ConsolePanel::ConsoleDifference>& found) override;
    void takePicture(const QString& file) override;
    void showConsole() override;
    void showHelp() override;

    bool beginCapture(const QString& file);
    /// Says what became of it.
    void endCapture();
    void refuse(const QString& problem);
    void transmit(const QByteArray& datagram);
    void takeReceived();
    void take(const char* bytes, int size);
    /// To be called at the end of everything that the event loop calls.
    void settle();
    int status() const;

    SimulatorOptions m_options;
    Orvane::ConsolePanel::ConsoleLayout m_layout;
    Orvane::ConsolePanel::ConsoleRecorder m_console;
    Orvane::ConsolePanel::EventLoopClock m_clock;
    Orvane::ConsolePanel::FaultyWire m_wire;
    SimulatorWatcher* m_pWatcher = nullptr;
    SimulatorOutput m_output;
    Orvane::ConsolePanel::CommandRunner m_runner;
    Orvane::ConsolePanel::ServiceLink m_link;
    std::shared_ptr<Orvane::ConsolePanel::CaptureWriter> m_pCapture; ///< null: nothing is captured
    QString m_strError;
    int m_nFaultyLines = 0;
    int m_nRefusedSends = 0;
    bool m_bNoMoreCommands = false;
    bool m_bEndsNow = false;
    bool m_bEnded = false;
    QObject m_timers; ///< ends what is still on its way with the simulator
};

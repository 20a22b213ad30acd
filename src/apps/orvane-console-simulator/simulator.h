#pragma once

#include "commandparser.h"
#include "commandrunner.h"
#include "consolelayout.h"
#include "eventloopclock.h"
#include "servicelink.h"
#include "simulatoroptions.h"
#include "simulatoroutput.h"

/// One command of a script with its place.
struct ScriptCommand {
    Orvane::ConsolePanel::SimulatorCommand command;
    QString text;
    QString place;
};

/// The console as a program: the wire, the recorder, the commands and the printing put together.
class Simulator : private Orvane::ConsolePanel::RunnerSurroundings {
public:
    Simulator(const SimulatorOptions& options, Orvane::ConsolePanel::ConsoleLayout layout);

    /// False with `errorText` when the port cannot be had.
    bool open();
    QString errorText() const { return m_link.errorText(); }

    void add(const ScriptCommand& command);
    /// Runs one line that was typed; a line that is wrong is a failure, and the run goes on.
    void addLine(const QString& line);
    /// No more commands come: ends the event loop when the last one is through.
    void endOfCommands();

private:
    void send(const QByteArray& datagram) override;
    void noteSent(const QString& what) override;
    void noteOutcome(const Orvane::ConsolePanel::CommandOutcome& outcome) override;
    void showConsole() override;
    void showHelp() override;

    void takeReceived();
    void take(const char* bytes, int size);
    /// To be called at the end of everything that the event loop calls.
    void settle();
    int status() const;

    SimulatorOptions m_options;
    Orvane::ConsolePanel::ConsoleLayout m_layout;
    Orvane::ConsolePanel::ConsoleRecorder m_console;
    Orvane::ConsolePanel::EventLoopClock m_clock;
    SimulatorOutput m_output;
    Orvane::ConsolePanel::CommandRunner m_runner;
    Orvane::ConsolePanel::ServiceLink m_link;
    int m_nFaultyLines = 0;
    int m_nRefusedSends = 0;
    bool m_bNoMoreCommands = false;
    bool m_bEnded = false;
};

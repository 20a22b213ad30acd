#pragma once

#include "exitstatus.h"

#include <QSize>
#include <QString>

#include <variant>

/// What the command line asks for.
struct SimulatorOptions {
    QString keyboardFile; ///< empty: no layout
    QString scriptFile; ///< empty: commands come from standard input
    QString captureFile; ///< every datagram is written there; empty: nowhere
    QString replayFile; ///< capture to be played; empty: none
    double replaySpeed = 1; ///< so many times as fast as it was recorded
    bool replaySteps = false; ///< one report for each line of standard input
    QString checkedFile; ///< list the problems of this keyboard, and end
    QString describedFile; ///< print the operator's page of this keyboard, and end
    QString translationFile; ///< a further language that the checked labels are shown in
    int columns = 100;
    QSize windowSize{1280, 800};
    QString half; ///< of the display, for the window; empty: where the system puts it
    bool window = false; ///< show the console in a window
    bool json = false;
    bool colour = true;
    bool quiet = false;
    bool keepGoing = false;
    bool tolerateUnreadable = false;
};

/// Reads the command line. Help, the version and faults are printed here; the process then ends with the
/// status. Needs no application object, which the options decide about.
std::variant<SimulatorOptions, Orvane::CommandLine::ExitStatus> readOptions(int argc, char* argv[]);

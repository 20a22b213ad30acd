#pragma once

#include "exitstatus.h"

#include <QString>

#include <variant>

namespace Orvane::ConsoleHost {

/// What the command line asks for.
struct Options {
    QString keyboardFile;
    QString showFile; ///< empty: no device
    QString captureFile; ///< every datagram is written there; empty: nowhere
    QString half; ///< of the display, for the window; empty: where the system puts it
    bool console = false; ///< show the on-screen console
    bool headless = false; ///< no window on any display
    bool events = false; ///< tell every event on standard output, not only the answers to commands
    bool quitAtEnd = false; ///< quit at the end of standard input
    bool shadow = false; ///< note what the console is told, to compare it
    bool verbose = false; ///< log every key too
};

/// Reads the command line. Help, the version and faults are printed here; the process then ends with the
/// status. Needs no application object, which the options decide about.
std::variant<Options, CommandLine::ExitStatus> readOptions(int argc, char* argv[]);

} // namespace Orvane::ConsoleHost

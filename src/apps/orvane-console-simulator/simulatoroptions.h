#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct SimulatorOptions {
    QString keyboardFile; ///< empty: no layout
    QString scriptFile; ///< empty: commands come from standard input
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

/// How the program ends.
enum ExitStatus {
    ExitOk = 0,
    ExitFailed = 1, ///< an expectation, a storm or a command failed, or something unreadable came
    ExitCannotStart = 2, ///< bad options, a broken file, a port that is taken
};

/// Reads the command line. Empty when the program must end at once, with `status` set and everything said.
std::optional<SimulatorOptions> readOptions(const QStringList& arguments, int& status);

#pragma once

#include "simulatorcommand.h"

namespace Orvane::ConsolePanel {

/// A line that holds no command: empty, or a comment.
struct NoCommand { };
struct CommandFault {
    QString reason;
};

/// Reads one line of the simulator's command language. Words are separated by blanks, a text with blanks
/// stands in double quotes (with `\"` and `\\` inside), and `#` begins a comment.
std::variant<SimulatorCommand, NoCommand, CommandFault> parseCommand(const QString& line);

/// One line a command and a condition: how it is written and what it does.
QStringList commandHelp();

} // namespace Orvane::ConsolePanel

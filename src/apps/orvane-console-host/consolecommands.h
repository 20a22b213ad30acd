#pragma once

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ConsoleHost {

class CommandTable;

/// Adds the commands that ask something of the console, one for each request of the library that an
/// application makes.
void addConsoleCommands(CommandTable& table, const EC::s_ECKeyboardConfig& keyboard);

} // namespace Orvane::ConsoleHost

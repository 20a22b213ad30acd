#pragma once

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

class CommandTable;

/// Adds what a user does at the device or in the application rather than at the console.
void addModelCommands(CommandTable& table, MemoryModel::MemoryModel& model);

/// Adds the orders to the model to fail or to take longer.
void addOperationCommands(CommandTable& table, MemoryModel::MemoryModel& model);

/// Adds loading, saving and telling the show.
void addShowCommands(CommandTable& table, MemoryModel::MemoryModel& model);

} // namespace Orvane::ConsoleHost

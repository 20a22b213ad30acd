#pragma once

#include "runneraction.h"

namespace Orvane::ConsolePanel {

/// The action of a command that takes time, begun at `now`; empty for every other command.
std::unique_ptr<RunnerAction> makeAction(
    const SimulatorCommand& command, const RunnerAction::Surroundings& surroundings,
    PanelClock::Duration now);

} // namespace Orvane::ConsolePanel

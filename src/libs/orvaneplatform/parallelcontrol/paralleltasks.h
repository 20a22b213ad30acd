#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/completion.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QString>

#include <functional>
#include <memory>
#include <variant>

namespace Orvane::ParallelControl {

/// Told of the end of a request.
using Orvane::Completion;

/// Runs the selected screens' transition to program.
struct ParallelTakeScreen {
    std::weak_ptr<BizModel::Device> device; ///< whose
    int screenTypeMask = BizModel::Enum::Screen::RegularAndAUXScreens; ///< which of the selected screens
    /// Told when the device's part has ended.
    Completion done;
};

/// Takes the selected screens to program without a transition.
struct ParallelCutScreen {
    std::weak_ptr<BizModel::Device> device; ///< whose
    int screenTypeMask = BizModel::Enum::Screen::RegularAndAUXScreens; ///< which of the selected screens
    /// Told when the device's part has ended.
    Completion done;
};

/// Copies the selected screens' program to their preview.
struct ParallelMatchPGM {
    std::weak_ptr<BizModel::Device> device; ///< whose
    int screenTypeMask = BizModel::Enum::Screen::RegularAndAUXScreens; ///< which of the selected screens
};

/// Freezes or unfreezes the selected screens' program.
struct ParallelFreezeScreen {
    std::weak_ptr<BizModel::Device> device; ///< whose
    int screenTypeMask = BizModel::Enum::Screen::RegularAndAUXScreens; ///< which of the selected screens
    bool freeze = false; ///< true: freeze
};

/// Fades the selected screens' program to black, or back.
struct ParallelFTBScreen {
    std::weak_ptr<BizModel::Device> device; ///< whose
    int screenTypeMask = BizModel::Enum::Screen::RegularAndAUXScreens; ///< which of the selected screens
    bool fadeToBlack = false; ///< true: to black
};

/// Sets whether a take exchanges program and preview.
struct ParallelSetSwapStatus {
    std::weak_ptr<BizModel::Device> device; ///< whose
    bool swap = false; ///< true: exchange
};

/// Sets the scene that presets are loaded to.
struct ParallelSetLoadToPresetPGMStatus {
    std::weak_ptr<BizModel::Device> device; ///< whose
    BizModel::Enum::Device::LoadToPGMStatus status = BizModel::Enum::Device::LoadToPVW; ///< the scene
};

/// Any of these tasks.
using ParallelTask = std::variant<
    ParallelTakeScreen, ParallelCutScreen, ParallelMatchPGM, ParallelFreezeScreen, ParallelFTBScreen,
    ParallelSetSwapStatus, ParallelSetLoadToPresetPGMStatus>;

/// Name of the task's record, for the log.
ORVANEPLATFORM_EXPORT QString taskName(const ParallelTask& task);
/// The task's own `done`; empty when it has none.
ORVANEPLATFORM_EXPORT Completion doneOf(const ParallelTask& task);

/// Says what one device of a group is to do.
using ParallelTaskFactory = std::function<ParallelTask(std::weak_ptr<BizModel::Device>)>;

} // namespace Orvane::ParallelControl

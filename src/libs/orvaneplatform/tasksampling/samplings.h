#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/protomodel/file.h"

#include <QtGlobal>

#include <memory>

namespace Orvane::TaskSampling {

/// Kinds of sampling jobs.
enum SamplingType : int { LoadPreset = 9, TBar = 10 };

/// How far a transition by the T-Bar has come.
struct s_TBarSampling {
    /// Combines `BizModel::Enum::Screen::ScreenType` values.
    int takeScreenType = BizModel::Enum::Screen::RegularAndAUXScreens;
    /// From 0.0, all preview still to come, to 1.0, done.
    double process = 0.0;
    /// The device that is to move.
    std::weak_ptr<BizModel::Device> pCurDevice;
};

/// A preset to be loaded by the device.
struct s_LoadPresetSampling {
    /// Which preset.
    quint8 nFileID = 0;
    /// The device that is to load it.
    std::weak_ptr<BizModel::Device> pCurDevice;
    /// The keypad's state after the load.
    ProtoModel::File::s_KeypadInfo keypadInfo;
    /// The keypad's state before the load.
    ProtoModel::File::s_KeypadInfo lastKeypadInfo;
};

} // namespace Orvane::TaskSampling

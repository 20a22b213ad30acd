#pragma once

#include "orvaneplatform/bizmodel/fwd.h"

#include <memory>

namespace Orvane::ECProxy::Client {

/// The model's objects as they are passed on and kept: weakly, and locked for each use.
/// @{
using WeakConnector = std::weak_ptr<BizModel::Connector>;
using WeakDevice = std::weak_ptr<BizModel::Device>;
using WeakFile = std::weak_ptr<BizModel::File>;
using WeakInput = std::weak_ptr<BizModel::Input>;
using WeakInterface = std::weak_ptr<BizModel::Interface>;
using WeakLayer = std::weak_ptr<BizModel::Layer>;
using WeakPreset = std::weak_ptr<BizModel::Preset>;
using WeakScreen = std::weak_ptr<BizModel::Screen>;
using WeakSubcard = std::weak_ptr<BizModel::Subcard>;
/// @}

/// The same while they are used, and when the model has given them up: their removal is announced with them.
/// @{
using DevicePtr = std::shared_ptr<BizModel::Device>;
using InputPtr = std::shared_ptr<BizModel::Input>;
using LayerPtr = std::shared_ptr<BizModel::Layer>;
using PresetPtr = std::shared_ptr<BizModel::Preset>;
using ScreenPtr = std::shared_ptr<BizModel::Screen>;
/// @}

} // namespace Orvane::ECProxy::Client

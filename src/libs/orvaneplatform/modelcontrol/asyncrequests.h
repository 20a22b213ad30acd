#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/completion.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>

#include <memory>
#include <variant>

namespace Orvane::ModelControl {

using Orvane::Completion;

/// Makes the screens, from `BizModel::Device::createDefaultScreen`, part of the device.
struct AsyncCreateScreen {
    std::weak_ptr<BizModel::Device> device;
    QList<std::shared_ptr<BizModel::Screen>> screens;
    Completion completion;
};

/// Removes all layers of the types in the mask from a scene of the screen.
struct AsyncRemoveLayer {
    std::weak_ptr<BizModel::Device> device;
    std::weak_ptr<BizModel::Screen> screen;
    BizModel::SceneType scene = BizModel::SceneType::PVW;
    int layerTypeMask = BizModel::LayerType::AllLayerType;
    Completion completion;
};

/// Adds copies of the layers to the scene that they are in.
struct AsyncAddCopyLayers {
    std::weak_ptr<BizModel::Device> device;
    std::weak_ptr<BizModel::Screen> screen;
    QList<std::weak_ptr<BizModel::Layer>> layers;
    /// Puts the copies where a mirror down the middle of the mosaic would show the layers.
    bool mirrored = false;
    Completion completion;
};

/// Makes the device keep its present state over a restart.
struct AsyncSaveDeviceData {
    std::weak_ptr<BizModel::Device> device;
    Completion completion;
};

/// Removes all files of the types.
struct AsyncRemoveFile {
    std::weak_ptr<BizModel::Device> device;
    QList<BizModel::Enum::File::FileType> fileTypes;
    Completion completion;
};

using AsyncRequest = std::variant<
    AsyncCreateScreen, AsyncRemoveLayer, AsyncAddCopyLayers, AsyncSaveDeviceData, AsyncRemoveFile>;

/// Name of the request's record, for the log.
ORVANEPLATFORM_EXPORT QString requestName(const AsyncRequest& request);

} // namespace Orvane::ModelControl

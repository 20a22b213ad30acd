#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/completion.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>

#include <memory>
#include <variant>

namespace Orvane::ModelControl {

/// Told of the end of a request.
using Orvane::Completion;

/// Makes the screens, from `BizModel::Device::createDefaultScreen`, part of the device.
struct AsyncCreateScreen {
    std::weak_ptr<BizModel::Device> device; ///< whose
    QList<std::shared_ptr<BizModel::Screen>> screens; ///< complete but for their place in the device
    Completion completion; ///< called once, with the end
};

/// Removes all layers of the types in the mask from a scene of the screen.
struct AsyncRemoveLayer {
    std::weak_ptr<BizModel::Device> device; ///< whose
    std::weak_ptr<BizModel::Screen> screen; ///< which
    BizModel::SceneType scene = BizModel::SceneType::PVW; ///< one scene
    int layerTypeMask = BizModel::LayerType::AllLayerType; ///< combines `BizModel::LayerType` values
    Completion completion; ///< called once, with the end
};

/// Adds copies of the layers to the scene that they are in.
struct AsyncAddCopyLayers {
    std::weak_ptr<BizModel::Device> device; ///< whose
    std::weak_ptr<BizModel::Screen> screen; ///< which
    QList<std::weak_ptr<BizModel::Layer>> layers; ///< all of one scene
    /// Puts the copies where a mirror down the middle of the mosaic would show the layers.
    bool mirrored = false;
    Completion completion; ///< called once, with the end
};

/// Makes the device keep its present state over a restart.
struct AsyncSaveDeviceData {
    std::weak_ptr<BizModel::Device> device; ///< whose
    Completion completion; ///< called once, with the end
};

/// Removes all files of the types.
struct AsyncRemoveFile {
    std::weak_ptr<BizModel::Device> device; ///< whose
    QList<BizModel::Enum::File::FileType> fileTypes; ///< which files
    Completion completion; ///< called once, with the end
};

/// Any of these requests.
using AsyncRequest = std::variant<
    AsyncCreateScreen, AsyncRemoveLayer, AsyncAddCopyLayers, AsyncSaveDeviceData, AsyncRemoveFile>;

/// Name of the request's record, for the log.
ORVANEPLATFORM_EXPORT QString requestName(const AsyncRequest& request);

} // namespace Orvane::ModelControl

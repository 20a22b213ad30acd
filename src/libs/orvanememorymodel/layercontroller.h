#pragma once

#include "controllerparts.h"
#include "orvaneplatform/modelcontrol/layer.h"

namespace Orvane::MemoryModel {

/// Works on layers of any type of a device.
class LayerController final : public ModelControl::Layer, private ControllerParts {
public:
    explicit LayerController(const ControllerParts& parts);

    /// Refused as a whole when one of the layers is not on the screen. Replacing a selection reaches both
    /// scenes.
    bool setSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
        bool notify) override;
    bool cancelSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify) override;
    /// Refused when the layer cannot be changed now or the hardware lacks resources for the window.
    bool updateWindow(const std::weak_ptr<BizModel::Layer>& layer, const QRect& window) override;
    /// The layers take on the input's capacity. Those that cannot be changed now stay as they are, and the
    /// answer is false. On regular screens the hardware must have the resources.
    bool bindSource(const Layers& layers, quint32 sourceId, int sourceType) override;
};

} // namespace Orvane::MemoryModel

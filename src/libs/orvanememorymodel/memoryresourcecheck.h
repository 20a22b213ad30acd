#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/bizmodel/resourcecheck.h"

namespace Orvane::MemoryModel {

/// Reckons with the layer capacity of the device's sub-cards; `hasResources` says how.
class MemoryResourceCheck final : public BizModel::ResourceCheck {
public:
    explicit MemoryResourceCheck(std::shared_ptr<ModelHub> hub);

protected:
    bool checkResources(
        const std::shared_ptr<BizModel::Screen>& screen, const LayerRects& rects,
        const QList<std::weak_ptr<BizModel::Output>>& outputs, BizModel::SceneType scene,
        const std::weak_ptr<BizModel::Layer>& layer) const override;

private:
    const std::shared_ptr<ModelHub> m_pHub;
};

} // namespace Orvane::MemoryModel

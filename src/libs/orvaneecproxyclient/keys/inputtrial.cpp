#include "inputtrial_p.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/resourcecheck.h"
#include "bizmodel/screen.h"

#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// Gives layers another capacity, and back their own at the end.
class CapacityTrial {
public:
    explicit CapacityTrial(BizModel::CapacityMode capacity)
        : m_capacity(capacity)
    {
    }
    ~CapacityTrial()
    {
        for (const auto& [layer, own] : m_ownCapacities)
            layer->setCapacity(own);
    }
    CapacityTrial(const CapacityTrial&) = delete;
    CapacityTrial& operator=(const CapacityTrial&) = delete;

    void add(const LayerPtr& layer)
    {
        m_ownCapacities.emplace_back(layer, layer->capacity());
        layer->setCapacity(m_capacity);
    }

private:
    const BizModel::CapacityMode m_capacity;
    std::vector<std::pair<LayerPtr, BizModel::CapacityMode>> m_ownCapacities;
};

} // namespace

InputTrial::InputTrial(std::atomic<bool>& running)
    : m_running(running)
    , m_bStarted(!running.exchange(true))
{
}

InputTrial::~InputTrial()
{
    if (m_bStarted)
        m_running = false;
}

bool InputTrial::hasResourcesFor(
    const ScreenPtr& screen, const QList<WeakLayer>& selected, const InputPtr& input) const
{
    CapacityTrial trial(input->capacity());
    BizModel::ResourceCheck::LayerRects rects;
    // The scene of the last layer stands for all of them.
    auto scene = BizModel::SceneType::PVW;
    for (const auto& weakLayer : selected) {
        const auto layer = weakLayer.lock();
        if (!layer)
            continue;
        rects.append({layer, layer->windowRect()});
        trial.add(layer);
        scene = layer->sceneType();
    }
    return rects.isEmpty()
        || BizModel::ResourceCheck::CheckOperationResources(screen, rects, screen->outputs(), scene, {});
}

} // namespace Orvane::ECProxy::Client::Internal

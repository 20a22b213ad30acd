#include "memorylayer.h"

#include "bizmodel/input.h"

#include <utility>

namespace Orvane::MemoryModel {

using BizModel::CapacityMode;
using BizModel::SceneType;

MemoryLayer::MemoryLayer(
    std::shared_ptr<ModelHub> hub, std::weak_ptr<const LayerOwner> owner, quint32 screenId, SceneType scene,
    const LayerRecord& record)
    : m_pHub(std::move(hub))
    , m_pOwner(std::move(owner))
    , m_nScreenId(screenId)
    , m_nId(record.id)
    , m_type(record.type)
    , m_state(State{record, scene})
{
}

BizModel::s_ScreenLayerId MemoryLayer::screenLayerId() const
{
    return {m_nScreenId, sceneType(), m_nId};
}

void MemoryLayer::setCapacity(CapacityMode capacity)
{
    Change change(*m_pHub);
    data(change).capacity = capacity;
}

QSize MemoryLayer::defulatSize(const std::weak_ptr<BizModel::Input>& input) const
{
    const std::shared_ptr<BizModel::Input> source = input.lock();
    return defaultLayerSize(source ? source->capacity() : CapacityMode::_SL);
}

bool MemoryLayer::operationAllowed(const Guard& guard) const
{
    if (data(guard).scene == SceneType::PVW)
        return true;
    const std::shared_ptr<const LayerOwner> screen = owner();
    return screen && screen->programEdited(guard);
}

QSize defaultLayerSize(CapacityMode capacity)
{
    return {capacity == CapacityMode::_SL ? 960 : 1920, capacity == CapacityMode::_4K ? 1080 : 540};
}

int capacityCost(CapacityMode capacity)
{
    return capacity == CapacityMode::_4K ? 4 : capacity == CapacityMode::_DL ? 2 : 1;
}

} // namespace Orvane::MemoryModel

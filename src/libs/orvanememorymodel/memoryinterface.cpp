#include "memoryinterface.h"

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::CapacityMode;

MemoryConnector::MemoryConnector(
    std::shared_ptr<ModelHub> hub, quint32 subcardId, const ConnectorRecord& record)
    : m_pHub(std::move(hub))
    , m_nSubcardId(subcardId)
    , m_nId(record.id)
    , m_capacity(record.capacity)
{
}

MemorySubcard::MemorySubcard(const std::shared_ptr<ModelHub>& hub, const SubcardRecord& record)
    : m_nId(record.id)
    , m_nLayerCapacity(record.layerCapacity)
{
    for (const ConnectorRecord& connector : record.connectors)
        m_connectors += std::make_shared<MemoryConnector>(hub, m_nId, connector);
}

std::shared_ptr<MemoryConnector> MemorySubcard::connector(quint32 connectorId) const
{
    return findIn(m_connectors, [&](const auto& each) { return each->connectorId() == connectorId; });
}

MemoryInput::MemoryInput(std::shared_ptr<ModelHub> hub, const InputRecord& record)
    : m_pHub(std::move(hub))
    , m_nId(record.id)
    , m_nSubcardId(record.subcardId)
    , m_nConnectorId(record.connectorId)
    , m_record(record)
{
}

MemoryOutput::MemoryOutput(
    std::shared_ptr<ModelHub> hub, const OutputRecord& record, std::shared_ptr<MemorySubcard> subcard)
    : m_pHub(std::move(hub))
    , m_nId(record.id)
    , m_nSubcardId(record.subcardId)
    , m_pSubcard(std::move(subcard))
    , m_nZOrder(record.zOrder)
    , m_size(record.size)
    , m_bOnline(record.online)
{
}

OutputRecord MemoryOutput::record(const Guard& guard) const
{
    return {m_nId, m_nSubcardId, m_nZOrder, m_size, online(guard)};
}

} // namespace Orvane::MemoryModel

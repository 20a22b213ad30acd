#pragma once

#include "modelhub.h"
#include "orvaneplatform/bizmodel/connector.h"
#include "orvaneplatform/bizmodel/input.h"
#include "orvaneplatform/bizmodel/output.h"
#include "orvaneplatform/bizmodel/subcard.h"
#include "records.h"

/// The hardware of a device.
namespace Orvane::MemoryModel {

class MemoryConnector final : public BizModel::Connector {
public:
    MemoryConnector(std::shared_ptr<ModelHub> hub, quint32 subcardId, const ConnectorRecord& record);

    BizModel::CapacityMode capacity() const override { return data(Guard(*m_pHub)); }

    quint32 connectorId() const { return m_nId; }
    quint32 subcardId() const { return m_nSubcardId; }
    const BizModel::CapacityMode& data(const Guard& guard) const { return m_capacity.get(guard); }
    BizModel::CapacityMode& data(Change& change) { return m_capacity.get(change); }

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const quint32 m_nSubcardId;
    const quint32 m_nId;
    Guarded<BizModel::CapacityMode> m_capacity;
};

class MemorySubcard final : public BizModel::Subcard {
public:
    MemorySubcard(const std::shared_ptr<ModelHub>& hub, const SubcardRecord& record);

    int layerCapacity() const override { return m_nLayerCapacity; }

    quint32 subcardId() const { return m_nId; }
    const QList<std::shared_ptr<MemoryConnector>>& connectors() const { return m_connectors; }
    std::shared_ptr<MemoryConnector> connector(quint32 connectorId) const;

private:
    const quint32 m_nId;
    const int m_nLayerCapacity;
    QList<std::shared_ptr<MemoryConnector>> m_connectors;
};

class MemoryInput final : public BizModel::Input {
public:
    MemoryInput(std::shared_ptr<ModelHub> hub, const InputRecord& record);

    quint32 interfaceId() const override { return m_nId; }
    BizModel::s_InterfaceFullId interfaceFullId() const override { return {m_nSubcardId, m_nId}; }
    QString name() const override { return data(Guard(*m_pHub)).name; }
    BizModel::CapacityMode capacity() const override { return data(Guard(*m_pHub)).capacity; }
    bool isActive() const override { return data(Guard(*m_pHub)).signal; }
    bool isOverLoad() const override { return data(Guard(*m_pHub)).overload; }

    quint32 connectorId() const { return m_nConnectorId; }
    const InputRecord& data(const Guard& guard) const { return m_record.get(guard); }
    InputRecord& data(Change& change) { return m_record.get(change); }

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const quint32 m_nId;
    const quint32 m_nSubcardId;
    const quint32 m_nConnectorId;
    Guarded<InputRecord> m_record;
};

class MemoryOutput final : public BizModel::Output {
public:
    /// @p subcard is the card that the output is on; empty for none.
    MemoryOutput(
        std::shared_ptr<ModelHub> hub, const OutputRecord& record, std::shared_ptr<MemorySubcard> subcard);

    int zOrder() const override { return m_nZOrder; }

    quint32 outputId() const { return m_nId; }
    quint32 subcardId() const { return m_nSubcardId; }
    const std::shared_ptr<MemorySubcard>& subcard() const { return m_pSubcard; }
    QSize size() const { return m_size; }
    bool isOnline() const { return online(Guard(*m_pHub)); }
    const bool& online(const Guard& guard) const { return m_bOnline.get(guard); }
    bool& online(Change& change) { return m_bOnline.get(change); }
    OutputRecord record(const Guard& guard) const;

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const quint32 m_nId;
    const quint32 m_nSubcardId;
    const std::shared_ptr<MemorySubcard> m_pSubcard;
    const int m_nZOrder;
    const QSize m_size;
    Guarded<bool> m_bOnline;
};

} // namespace Orvane::MemoryModel

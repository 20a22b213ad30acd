#pragma once

#include "modelhub.h"
#include "orvaneplatform/bizmodel/layer.h"
#include "records.h"

namespace Orvane::MemoryModel {

/// The screen that a layer is on, as far as the layer must know it.
class LayerOwner {
public:
    virtual ~LayerOwner() = default;

    /// True while layers of the program may be changed.
    virtual bool programEdited(const Guard& guard) const = 0;

protected:
    LayerOwner() = default;

private:
    Q_DISABLE_COPY_MOVE(LayerOwner)
};

/// A layer; also the probe that the console asks about a layer to be.
class MemoryLayer final : public BizModel::Layer {
public:
    /// What changes over a layer's life.
    struct State : LayerRecord {
        BizModel::SceneType scene = BizModel::SceneType::PVW;
    };

    MemoryLayer(
        std::shared_ptr<ModelHub> hub, std::weak_ptr<const LayerOwner> owner, quint32 screenId,
        BizModel::SceneType scene, const LayerRecord& record);

    quint32 layerId() const override { return m_nId; }
    BizModel::s_ScreenLayerId screenLayerId() const override;
    QString name() const override { return data(Guard(*m_pHub)).name; }
    BizModel::LayerType layerType() const override { return m_type; }
    BizModel::SceneType sceneType() const override { return data(Guard(*m_pHub)).scene; }
    quint32 sourceId() const override { return data(Guard(*m_pHub)).inputId; }
    QRect windowRect() const override { return data(Guard(*m_pHub)).window; }
    BizModel::CapacityMode capacity() const override { return data(Guard(*m_pHub)).capacity; }
    void setCapacity(BizModel::CapacityMode capacity) override;
    QSize defulatSize(const std::weak_ptr<BizModel::Input>& input) const override;
    bool getLayerOperationAllowed() const override { return operationAllowed(Guard(*m_pHub)); }

    quint32 screenId() const { return m_nScreenId; }
    std::shared_ptr<const LayerOwner> owner() const { return m_pOwner.lock(); }
    const State& data(const Guard& guard) const { return m_state.get(guard); }
    State& data(Change& change) { return m_state.get(change); }
    bool operationAllowed(const Guard& guard) const;

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const std::weak_ptr<const LayerOwner> m_pOwner;
    const quint32 m_nScreenId;
    const quint32 m_nId;
    const BizModel::LayerType m_type;
    Guarded<State> m_state;
};

/// Size of a layer that shows a source of the capacity: half of its picture in each direction.
QSize defaultLayerSize(BizModel::CapacityMode capacity);
/// Units of a sub-card's layer capacity that a layer takes.
int capacityCost(BizModel::CapacityMode capacity);

} // namespace Orvane::MemoryModel

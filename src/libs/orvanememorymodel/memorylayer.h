#pragma once

#include "bizmodel/layer.h"
#include "modelhub.h"
#include "records.h"

namespace Orvane::MemoryModel {

class MemoryScreen;

/// A layer; also the probe that the console asks about a layer to be.
class MemoryLayer final : public BizModel::Layer {
public:
    /// What changes over a layer's life.
    struct State {
        QString name;
        BizModel::SceneType scene = BizModel::SceneType::PVW;
        quint32 inputId = 0;
        QRect window;
        BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL;
        bool selected = false;
    };

    MemoryLayer(
        std::shared_ptr<ModelHub> hub, MemoryScreen& screen, BizModel::SceneType scene,
        const LayerRecord& record);

    quint32 layerId() const override { return m_nId; }
    BizModel::s_ScreenLayerId screenLayerId() const override;
    QString name() const override;
    BizModel::LayerType layerType() const override { return m_type; }
    BizModel::SceneType sceneType() const override;
    quint32 sourceId() const override;
    QRect windowRect() const override;
    BizModel::CapacityMode capacity() const override;
    void setCapacity(BizModel::CapacityMode capacity) override;
    QSize defulatSize(const std::weak_ptr<BizModel::Input>& input) const override;
    bool getLayerOperationAllowed() const override;

    quint32 screenId() const { return m_nScreenId; }
    std::shared_ptr<MemoryScreen> screen() const { return m_pScreen.lock(); }
    const State& data(const Guard& guard) const { return m_state.get(guard); }
    State& data(Change& change) { return m_state.get(change); }
    LayerRecord record(const Guard& guard) const;
    bool operationAllowed(const Guard& guard) const;

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const std::weak_ptr<MemoryScreen> m_pScreen;
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

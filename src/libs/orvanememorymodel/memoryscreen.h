#pragma once

#include "memoryinterface.h"
#include "memorylayer.h"
#include "modelhub.h"
#include "orvaneplatform/bizmodel/screen.h"
#include "records.h"

#include <chrono>

namespace Orvane::MemoryModel {

class MemoryScreen final : public BizModel::Screen,
                           public LayerOwner,
                           public std::enable_shared_from_this<MemoryScreen> {
public:
    using Clock = std::chrono::steady_clock;
    /// From the bottom to the top.
    using Layers = QList<std::shared_ptr<MemoryLayer>>;

    struct OutputPlace {
        std::shared_ptr<MemoryOutput> output;
        QRect rect;
    };

    /// What changes over a screen's life.
    struct Data : ScreenSettings {
        /// Part of the device's list of screens.
        bool registered = false;
        State state = State::Normal;
        QList<OutputPlace> outputs;
        Layers pgm;
        Layers pvw;
        /// While the screen is `Taking`: when it began and how long it lasts.
        Clock::time_point transitionStart;
        std::chrono::milliseconds transitionTime{0};
        /// While the screen is `Tbar_taking`: 0.0 to 1.0.
        double tbarProgress = 0.0;

        const Layers& layers(BizModel::SceneType scene) const
        {
            return scene == BizModel::SceneType::PGM ? pgm : pvw;
        }
        Layers& layers(BizModel::SceneType scene) { return scene == BizModel::SceneType::PGM ? pgm : pvw; }
        /// The screen neither runs a transition nor is it being matched.
        bool isIdle() const { return state == State::Normal || state == State::Resource_out; }
    };

    MemoryScreen(
        std::shared_ptr<ModelHub> hub, std::weak_ptr<BizModel::Device> device, ScreenKey key, Data data);

    quint32 screenId() const override { return m_key.id; }
    ScreenType screenType() const override { return m_key.type; }
    QString name() const override { return data(Guard(*m_pHub)).name; }
    State state() const override { return data(Guard(*m_pHub)).state; }
    void setState(State state) override;
    bool isComplete() const override;
    bool selected() const override { return data(Guard(*m_pHub)).selected; }
    int uiScreenIndex() const override { return data(Guard(*m_pHub)).uiScreenIndex; }
    void setUiScreenIndex(int index) override;
    double switchEffectTime() const override { return data(Guard(*m_pHub)).effectSeconds; }
    bool FTBEnable() const override { return data(Guard(*m_pHub)).fadeToBlack; }
    bool freeze() const override { return data(Guard(*m_pHub)).freeze; }
    bool PGMEditEnable() const override { return data(Guard(*m_pHub)).pgmEdit; }
    QList<std::weak_ptr<BizModel::Output>> outputs() const override;
    void addOutput(const std::weak_ptr<BizModel::Output>& output) override;
    QRectF mosaicRect(const std::weak_ptr<BizModel::Output>& output) const override;
    QRect mosaicWindowRect() const override { return mosaic(Guard(*m_pHub)); }
    QList<std::weak_ptr<BizModel::Subcard>> subCards() const override;
    QList<std::weak_ptr<BizModel::Layer>> layers(BizModel::SceneType scene, int layerTypeMask) const override;
    QList<std::weak_ptr<BizModel::Layer>> selectedLayers(
        int sceneMask = BizModel::Enum::Scene::BothScenes) const override;
    std::shared_ptr<BizModel::Layer> createProbeLayer(
        const std::weak_ptr<BizModel::Input>& source, BizModel::CapacityMode capacity) const override;

    ScreenKey key() const { return m_key; }
    const std::weak_ptr<BizModel::Device>& device() const { return m_pDevice; }
    const Data& data(const Guard& guard) const { return m_data.get(guard); }
    Data& data(Change& change) { return m_data.get(change); }
    ScreenRecord record(const Guard& guard) const;
    bool programEdited(const Guard& guard) const override { return data(guard).pgmEdit; }
    /// A layer of this screen that is not part of a scene yet.
    std::shared_ptr<MemoryLayer> makeLayer(BizModel::SceneType scene, const LayerRecord& record) const;

    bool shows(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const;
    /// Union of the outputs' parts of the mosaic; empty without outputs.
    QRect mosaic(const Guard& guard) const;
    QList<std::shared_ptr<MemorySubcard>> subcards(const Guard& guard) const;
    /// Layer capacity of the sub-cards that the screen is on.
    int layerCapacity(const Guard& guard) const;
    quint32 freeLayerId(const Guard& guard, BizModel::SceneType scene) const;
    /// False when there is no such place.
    bool setUiScreenIndex(Change& change, int index);

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const std::weak_ptr<BizModel::Device> m_pDevice;
    const ScreenKey m_key;
    Guarded<Data> m_data;
};

/// Name of a new layer with the id.
QString layerName(quint32 layerId);

} // namespace Orvane::MemoryModel

#pragma once

#include "orvaneplatform/bizmodel/screen.h"
#include "orvaneplatform/bridge/layeritem.h"
#include "orvaneplatform/bridge/sharedvalue.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace Orvane::Bridge {

/// A screen that keeps what your model says of it, and announces what changes, after the change and without a
/// lock. Any thread.
class ORVANEPLATFORM_EXPORT ScreenItem : public BizModel::Screen {
public:
    /// Layers of a scene, from the bottom to the top.
    using LayerList = QList<std::shared_ptr<LayerItem>>;

    /// @p id is unique among the device's regular screens.
    ScreenItem(quint32 id, const QString& name);
    ~ScreenItem() override;

    /// @name What the console asks
    /// @{
    quint32 screenId() const override { return m_nId; }
    QString name() const override { return m_name.get(); }
    State state() const override { return m_state; }
    void setState(State state) override { m_state = state; }
    bool selected() const override { return m_bSelected; }
    double switchEffectTime() const override { return m_transitionSeconds; }
    bool FTBEnable() const override { return m_bBlack; }
    bool freeze() const override { return m_bFrozen; }
    bool PGMEditEnable() const override { return m_bProgramEdited; }
    QList<std::weak_ptr<BizModel::Output>> outputs() const override;
    /// The place that `addOutputPlace` gave it.
    QRectF mosaicRect(const std::weak_ptr<BizModel::Output>& output) const override;
    QList<std::weak_ptr<BizModel::Subcard>> subCards() const override;
    QList<std::weak_ptr<BizModel::Layer>> layers(BizModel::SceneType scene, int layerTypeMask) const override;
    QList<std::weak_ptr<BizModel::Layer>> selectedLayers(int sceneMask) const override;
    /// A layer of half the mosaic's width and height.
    std::shared_ptr<BizModel::Layer> createProbeLayer(
        const std::weak_ptr<BizModel::Input>& source, BizModel::CapacityMode capacity) const override;
    /// @}

    /// @name What your model says
    /// @{

    /// Another name.
    void setName(const QString& name);
    /// The program is frozen, or goes on.
    void setFrozen(bool frozen);
    /// The program is black, or no longer.
    void setFadedToBlack(bool black);
    /// The program may be edited, or no longer.
    void setProgramEdited(bool edited);
    /// In seconds.
    void setTransitionTime(double seconds);
    /// An output that shows @p place, in pixels of the mosaic, on a card of its own that has room for
    /// @p layerCapacity layers. Before the console starts.
    void addOutputPlace(const QRectF& place, int layerCapacity);
    /// False when it is so already. Announced by who selects, once for all screens.
    bool setSelected(bool selected) { return m_bSelected.exchange(selected) != selected; }
    /// @}

    /// @name Layers
    /// From the bottom to the top.
    /// @{

    /// The layers of the scene.
    LayerList layerList(BizModel::SceneType scene) const;
    /// Replaces the scene, as a preset or a take does; announced as a whole.
    void setLayerList(BizModel::SceneType scene, const LayerList& layers);
    /// On top of its scene.
    void addLayer(const std::shared_ptr<LayerItem>& layer);
    /// False when it is not on the screen.
    bool removeLayer(const std::shared_ptr<LayerItem>& layer);
    /// Lets @p reorder change the order of the scene, which nobody announces.
    void reorderLayers(BizModel::SceneType scene, const std::function<void(LayerList&)>& reorder);
    /// The layer shows another input.
    void setLayerSource(const std::shared_ptr<LayerItem>& layer, quint32 inputId);
    /// Announces a change of selection among the layers.
    void announceSelectedLayers() const;
    /// @}

private:
    friend class DeviceItem;
    class Place;

    LayerList& sceneLayers(BizModel::SceneType scene);

    const quint32 m_nId;
    SharedValue<QString> m_name;
    std::atomic<State> m_state{State::Normal};
    std::atomic<bool> m_bSelected{false};
    std::atomic<bool> m_bFrozen{false};
    std::atomic<bool> m_bBlack{false};
    std::atomic<bool> m_bProgramEdited{false};
    std::atomic<double> m_transitionSeconds{0.0};
    /// Set before the screen is part of the device.
    std::weak_ptr<BizModel::Device> m_pDevice;
    std::weak_ptr<BizModel::Screen> m_pSelf;
    /// Not changed after the start.
    QList<std::shared_ptr<Place>> m_places;

    /// Guards the scenes, which keys and the application change.
    mutable std::mutex m_mutex;
    LayerList m_program;
    LayerList m_preview;
};

} // namespace Orvane::Bridge

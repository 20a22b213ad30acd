#pragma once

#include "orvaneplatform/bizmodel/layer.h"
#include "orvaneplatform/bridge/sharedvalue.h"

#include <atomic>
#include <memory>

namespace Orvane::Bridge {

/// A layer that keeps what your model says of it. `ScreenItem` announces what changes. Any thread.
class ORVANEPLATFORM_EXPORT LayerItem : public BizModel::Layer {
public:
    /// @p window is in pixels of the mosaic.
    LayerItem(const BizModel::s_ScreenLayerId& place, quint32 inputId, const QRect& window);
    ~LayerItem() override;

    quint32 layerId() const override { return m_place.layerId; }
    BizModel::s_ScreenLayerId screenLayerId() const override { return m_place; }
    /// "Layer " and the id unless overridden.
    QString name() const override;
    BizModel::SceneType sceneType() const override { return m_place.sceneType; }
    quint32 sourceId() const override { return m_nInput; }
    QRect windowRect() const override { return m_window.get(); }
    BizModel::CapacityMode capacity() const override { return m_capacity; }
    void setCapacity(BizModel::CapacityMode capacity) override { m_capacity = capacity; }

    /// A layer that is like this one now, and not selected; for presets, which must not change with it.
    std::shared_ptr<LayerItem> copy() const;

    /// Whether keys work on the layer now.
    bool isSelected() const { return m_bSelected; }
    /// False when it is so already.
    bool setSelected(bool selected) { return m_bSelected.exchange(selected) != selected; }
    /// The input that it shows; false when it is so already.
    bool setSource(quint32 inputId) { return m_nInput.exchange(inputId) != inputId; }
    /// In pixels of the mosaic; false when it is so already.
    bool setWindow(const QRect& window) { return m_window.set(window); }

private:
    const BizModel::s_ScreenLayerId m_place;
    std::atomic<quint32> m_nInput;
    SharedValue<QRect> m_window;
    std::atomic<BizModel::CapacityMode> m_capacity{BizModel::CapacityMode::_SL};
    std::atomic<bool> m_bSelected{false};
};

} // namespace Orvane::Bridge

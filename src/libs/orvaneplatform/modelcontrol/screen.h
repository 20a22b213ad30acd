#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/bizmodel/ids.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QRect>
#include <QString>
#include <QtGlobal>

#include <memory>
#include <utility>

namespace Orvane::ModelControl {

class Layer;

/// Changes screens of one type of a device and what is on them. Operations run on the caller's thread, which
/// may be any, have taken effect when they return, and return false when they were refused; the change is
/// announced by `BizModel::DeviceList`. What is not overridden is refused.
class ORVANEPLATFORM_EXPORT Screen {
public:
    /// What the operations take.
    /// @{
    using Screens = QList<std::weak_ptr<BizModel::Screen>>;
    using Layers = QList<std::weak_ptr<BizModel::Layer>>;
    /// @}

    /// Controller of the layers of one type; empty when there is none for the type, the device is gone or
    /// no factory is installed.
    static std::shared_ptr<Layer> layerModelControl(
        BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device);

    Screen() = default;
    virtual ~Screen();

    /// @name Screens
    /// @{

    /// Selects the screens. The change is announced when @p notify and told to the device when @p
    /// sendToDevice.
    virtual bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) = 0;
    /// Deselects the screens; announced when @p notify.
    virtual bool cancelSelected(const Screens& screens, bool notify) = 0;
    /// Sets each screen's transition time, in seconds.
    virtual bool updateEffectSpeed(const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds);
    /// Sets each screen's mix type, a `BizModel::EffectType` value.
    virtual bool updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types);
    /// Lets the screens' program be edited, or no longer.
    virtual bool updatePGMEditStatus(const Screens& screens, bool enabled);
    /// @}

    /// @name Layers of a screen
    /// @{

    /// A new layer on top of the scene, with the id and the name that `nextLayerId` and `nextLayerName` of
    /// the screen tell. @p sourceType is a `BizModel::SourceType` value; @p window is in pixels of the
    /// mosaic. Empty when the layer was refused.
    virtual std::shared_ptr<BizModel::Layer> addLayer(
        const std::weak_ptr<BizModel::Screen>& screen, BizModel::LayerType type, BizModel::SceneType scene,
        int sourceId, int sourceType, const QRect& window);
    /// Adds the reason for each layer that stays to @p failed; true when none does.
    virtual bool removeLayers(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed);
    /// To the very front, keeping their order among themselves.
    virtual bool topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers);
    /// One step to the front.
    virtual bool incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers);
    /// To the very back, keeping their order among themselves.
    virtual bool bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers);
    /// One step to the back.
    virtual bool decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers);
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Screen)
};

} // namespace Orvane::ModelControl

#pragma once

#include "bizmodel/enums.h"
#include "bizmodel/fwd.h"
#include "orvaneplatform_global.h"

#include <QList>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::BizModel {

/// A picture made of one or more outputs, with a program and a preview scene of layers. Any thread may call
/// any member at any time; an answer is a snapshot. Rectangles are in pixels of the mosaic.
class ORVANEPLATFORM_EXPORT Screen {
public:
    using ScreenType = Enum::Screen::ScreenType;
    using State = Enum::Screen::State;

    Screen() = default;
    virtual ~Screen();

    /// Unique among the device's screens of this type.
    virtual quint32 screenId() const = 0;
    virtual ScreenType screenType() const = 0;
    virtual QString name() const = 0;
    virtual State state() const = 0;
    /// Only ever used to mark a screen `Resource_out` and to put it back to `Normal`.
    virtual void setState(State state) = 0;
    /// True when all outputs of the screen are online; so too when it has none.
    virtual bool isComplete() const = 0;
    virtual bool selected() const = 0;
    /// Scene that operations on the screen's layers aim at.
    virtual SceneType operationTarget() const = 0;

    /// Place of the screen's key on the console (page × page size + order index), -1 when it has none yet.
    virtual int uiScreenIndex() const = 0;
    virtual void setUiScreenIndex(int index) = 0;

    /// @name Program
    /// @{
    /// Duration of a transition in seconds.
    virtual double switchEffectTime() const = 0;
    /// True while the program is faded to black.
    virtual bool FTBEnable() const = 0;
    virtual bool freeze() const = 0;
    /// True while the program's layers may be edited.
    virtual bool PGMEditEnable() const = 0;
    /// @}

    /// @name Outputs
    /// @{
    virtual QList<std::weak_ptr<Output>> outputs() const = 0;
    /// Appends the output to the screen's mosaic. For a screen that is not part of a device yet.
    virtual void addOutput(const std::weak_ptr<Output>& output) = 0;
    /// Part of the mosaic that the output shows; empty when it is not one of the screen's.
    virtual QRectF mosaicRect(const std::weak_ptr<Output>& output) const = 0;
    virtual QRect mosaicWindowRect() const = 0;
    /// The cards that the screen's outputs are on.
    virtual QList<std::weak_ptr<Subcard>> subCards() const = 0;
    /// @}

    /// @name Layers
    /// @{
    /// From the bottom to the top. @p layerTypeMask combines `LayerType` values here and below.
    virtual QList<std::weak_ptr<Layer>> layers(SceneType scene, int layerTypeMask) const = 0;
    virtual int layerCount(SceneType scene, int layerTypeMask) const = 0;
    /// @p sceneMask combines `SceneType` values.
    virtual QList<std::weak_ptr<Layer>> selectedLayers(int sceneMask = Enum::Scene::BothScenes) const = 0;
    QList<std::weak_ptr<Layer>> PVWLayers(int layerTypeMask) const
    {
        return layers(SceneType::PVW, layerTypeMask);
    }
    QList<std::weak_ptr<Layer>> PGMLayers(int layerTypeMask) const
    {
        return layers(SceneType::PGM, layerTypeMask);
    }
    /// Highest number of layers in a scene.
    virtual int maxLayerCount() const = 0;
    /// Id and name for the next layer of the scene.
    virtual quint32 nextLayerId(SceneType scene, LayerType type) const = 0;
    virtual QString nextLayerName(SceneType scene, LayerType type) const = 0;
    /// A layer of this screen's preview that shows @p source with @p capacity but is not part of the scene:
    /// for asking its default size and whether there are resources for it. Empty when the input is gone.
    virtual std::shared_ptr<Layer> createProbeLayer(
        const std::weak_ptr<Input>& source, CapacityMode capacity) const = 0;
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Screen)
};

} // namespace Orvane::BizModel

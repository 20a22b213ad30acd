#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::BizModel {

/// A picture made of one or more outputs, with a program and a preview scene of layers. Any thread may call
/// any member at any time; an answer is a snapshot. Rectangles are in pixels of the mosaic.
///
/// To be implemented: which screen it is, what it is doing and whether it is selected. Everything else has
/// an answer of its own, which is that there is none, or what follows from the other members.
class ORVANEPLATFORM_EXPORT Screen {
public:
    /// The enumerations, by their short names.
    /// @{
    using ScreenType = Enum::Screen::ScreenType;
    using State = Enum::Screen::State;
    /// @}

    Screen() = default;
    virtual ~Screen();

    /// Unique among the device's screens of this type.
    virtual quint32 screenId() const = 0;
    /// Regular unless overridden.
    virtual ScreenType screenType() const { return ScreenType::RegularScreen; }
    /// As keys and application show it.
    virtual QString name() const = 0;
    /// What the screen is doing; has changed before a request that changes it returns.
    virtual State state() const = 0;
    /// Only ever used to mark a screen `Resource_out` and to put it back to `Normal`; ignored unless
    /// overridden.
    virtual void setState(State state);
    /// True when all outputs of the screen are online; so too when it has none, and unless overridden.
    virtual bool isComplete() const { return true; }
    /// Whether keys work on the screen now.
    virtual bool selected() const = 0;
    /// Scene that operations on the screen's layers aim at; the program while it is edited, the preview
    /// otherwise, unless overridden.
    virtual SceneType operationTarget() const;

    /// Place of the screen's key on the console (page × page size + order index), -1 when it has none yet.
    /// -1 unless overridden: the console then hands out its keys in the order of the screens.
    virtual int uiScreenIndex() const { return -1; }
    /// Called for a screen made by a key, before it is part of the device. Ignored unless overridden.
    virtual void setUiScreenIndex(int index);

    /// @name Program
    /// @{

    /// Duration of a transition in seconds; 0 unless overridden.
    virtual double switchEffectTime() const { return 0.0; }
    /// True while the program is faded to black; never unless overridden.
    virtual bool FTBEnable() const { return false; }
    /// True while the program is frozen; never unless overridden.
    virtual bool freeze() const { return false; }
    /// True while the program's layers may be edited; never unless overridden.
    virtual bool PGMEditEnable() const { return false; }
    /// @}

    /// @name Outputs
    /// @{

    /// What the mosaic is made of; none unless overridden.
    virtual QList<std::weak_ptr<Output>> outputs() const { return {}; }
    /// Appends the output to the screen's mosaic. For a screen that is not part of a device yet. Ignored
    /// unless overridden.
    virtual void addOutput(const std::weak_ptr<Output>& output);
    /// Part of the mosaic that the output shows; empty when it is not one of the screen's, and unless
    /// overridden.
    virtual QRectF mosaicRect(const std::weak_ptr<Output>& output) const;
    /// What the outputs' parts make up together, unless overridden.
    virtual QRect mosaicWindowRect() const;
    /// The cards that the screen's outputs are on; none, and so no room for layers, unless overridden.
    virtual QList<std::weak_ptr<Subcard>> subCards() const { return {}; }
    /// @}

    /// @name Layers
    /// @{

    /// The layers of a scene, from the bottom to the top. @p layerTypeMask combines `LayerType` values here
    /// and below. None unless overridden.
    virtual QList<std::weak_ptr<Layer>> layers(SceneType scene, int layerTypeMask) const;
    /// The number of `layers` unless overridden.
    virtual int layerCount(SceneType scene, int layerTypeMask) const;
    /// @p sceneMask combines `SceneType` values. None unless overridden.
    virtual QList<std::weak_ptr<Layer>> selectedLayers(int sceneMask = Enum::Scene::BothScenes) const;
    /// The layers of the preview.
    QList<std::weak_ptr<Layer>> PVWLayers(int layerTypeMask) const
    {
        return layers(SceneType::PVW, layerTypeMask);
    }
    /// The layers of the program.
    QList<std::weak_ptr<Layer>> PGMLayers(int layerTypeMask) const
    {
        return layers(SceneType::PGM, layerTypeMask);
    }
    /// Highest number of layers in a scene; what the sub-cards have room for unless overridden.
    virtual int maxLayerCount() const;
    /// Id for the next layer of the scene; the lowest free one, from 1, unless overridden.
    virtual quint32 nextLayerId(SceneType scene, LayerType type) const;
    /// Name for it: "Layer " and the id unless overridden.
    virtual QString nextLayerName(SceneType scene, LayerType type) const;
    /// A layer of this screen's preview that shows @p source with @p capacity but is not part of the scene:
    /// for asking its default size and whether there are resources for it. Empty when the input is gone, and
    /// unless overridden; no layer is made by a key then.
    virtual std::shared_ptr<Layer> createProbeLayer(
        const std::weak_ptr<Input>& source, CapacityMode capacity) const;
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Screen)
};

} // namespace Orvane::BizModel

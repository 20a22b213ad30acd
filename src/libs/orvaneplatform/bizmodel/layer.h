#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/bizmodel/ids.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QRect>
#include <QSize>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::BizModel {

/// A window in a scene of a screen that shows a source. Any thread may call any member at any time; an
/// answer is a snapshot.
class ORVANEPLATFORM_EXPORT Layer {
public:
    Layer() = default;
    virtual ~Layer();

    /// Unique within the scene.
    virtual quint32 layerId() const = 0;
    /// Where the layer is.
    virtual s_ScreenLayerId screenLayerId() const = 0;
    /// As keys and application show it.
    virtual QString name() const = 0;
    /// Regular unless overridden.
    virtual LayerType layerType() const { return LayerType::Regular; }
    /// The scene that the layer is in.
    virtual SceneType sceneType() const = 0;

    /// An input unless overridden.
    virtual SourceType sourceType() const { return SourceType::Input; }
    /// Of an input its interface id.
    virtual quint32 sourceId() const = 0;

    /// In pixels of the screen's mosaic.
    virtual QRect windowRect() const = 0;
    /// Single link unless overridden.
    virtual CapacityMode capacity() const { return CapacityMode::_SL; }
    /// Used for trials: the console sets the capacity, asks `ResourceCheck`, and puts the old one back.
    /// Ignored unless overridden.
    virtual void setCapacity(CapacityMode capacity);
    /// Size in pixels that a layer gets when it is made for @p input; asked of the layers that
    /// `Screen::createProbeLayer` makes. The layer's own size unless overridden.
    virtual QSize defulatSize(const std::weak_ptr<Input>& input) const;
    /// True when the layer may be moved, resized or removed now; always unless overridden.
    virtual bool getLayerOperationAllowed() const { return true; }

private:
    Q_DISABLE_COPY_MOVE(Layer)
};

} // namespace Orvane::BizModel

#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QRect>
#include <QtGlobal>

#include <memory>

namespace Orvane::ModelControl {

/// Changes layers of one type of a device. Operations run on the caller's thread, which may be any, have
/// taken effect when they return, and return false when they were refused; the change is announced by
/// `BizModel::DeviceList`. What is not overridden is refused.
class ORVANEPLATFORM_EXPORT Layer {
public:
    /// What the operations take.
    using Layers = QList<std::weak_ptr<BizModel::Layer>>;

    Layer() = default;
    virtual ~Layer();

    /// Selects the layers, all of one screen; announced when @p notify.
    virtual bool setSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
        bool notify) = 0;
    /// Deselects the layers; announced when @p notify.
    virtual bool cancelSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify) = 0;
    /// Moves and sizes the layer; @p window is in pixels of the mosaic.
    virtual bool updateWindow(const std::weak_ptr<BizModel::Layer>& layer, const QRect& window);
    /// Makes all the layers show the source. @p sourceType is a `BizModel::SourceType` value.
    virtual bool bindSource(const Layers& layers, quint32 sourceId, int sourceType);

private:
    Q_DISABLE_COPY_MOVE(Layer)
};

} // namespace Orvane::ModelControl

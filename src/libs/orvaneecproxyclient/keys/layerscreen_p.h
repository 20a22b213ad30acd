#pragma once

#include "modelpointers.h"

#include <QList>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>

/// What the layer keys see of a screen. Any thread.
namespace Orvane::ECProxy::Client::Internal {

/// A screen whose layers have keys, and what its items are found by.
struct LayerScreen {
    DevicePtr device;
    ScreenPtr screen;
    /// The device's identity.
    QString ip;
    /// Server id of the screen's items.
    quint32 serverId = 0;
};

/// Server id of a screen's layer items: the screen's id, and for other than regular screens, which count
/// their ids apart, the type as well.
quint32 layerServerId(const BizModel::Screen& screen);

/// The active screen; none when there is none or the console does not work on screens of its type.
std::optional<LayerScreen> activedLayerScreen();

/// Whether a layer shows on the keys.
bool isKeyLayer(const BizModel::Layer& layer);

/// The layers of the preview that can have a key.
QList<LayerPtr> previewLayers(const BizModel::Screen& screen);

/// Those of them that are selected, by ascending id.
QList<LayerPtr> selectedPreviewLayers(const BizModel::Screen& screen);

/// The mosaic rectangles of the screen's outputs, in the outputs' z-order.
QList<QRect> outputRects(const BizModel::Screen& screen);

} // namespace Orvane::ECProxy::Client::Internal

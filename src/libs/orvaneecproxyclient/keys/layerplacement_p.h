#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <functional>
#include <vector>

/// Where layers go: on the screen's outputs and on the console's keys. Values in, values out; nothing here
/// knows the model. Coordinates are pixels of the screen's mosaic.
namespace Orvane::ECProxy::Client::Internal {

/// Returned when there is no place.
constexpr QPoint NoLayerPosition{-1, -1};

/// A layer that looks for its place.
struct LayerPlacement {
    /// Part of the mosaic that each output shows, in the order in which layers are spread over them.
    QList<QRect> outputs;
    /// Top-left corner of each layer that is there already.
    QList<QPoint> layerOrigins;
    /// Size of the new layer.
    QSize size;
};

/// Number of layers that begin on an output.
int getLayerCount(const QRect& output, const QList<QPoint>& layerOrigins);

/// The top-left corner for the new layer: successive layers go to successive outputs, and cascade on each.
/// `hasResources` is called for each candidate window. The search goes from one output on to the last, then
/// from the first output to that one. A refusal ends the part of the search that it comes in. Returns
/// `NoLayerPosition` when neither part finds a place.
QPoint findLayerPosition(
    const LayerPlacement& placement, const std::function<bool(const QRect&)>& hasResources);

/// The window that fills every output which `window` touches, or the whole mosaic when it touches none.
QRect windowOverTouchedOutputs(const QRect& window, const QList<QRect>& outputs, const QRect& mosaic);

/// Gives the layers their keys. `keys` holds, key by key, the id of the layer that it is bound to, or
/// `Constants::UnboundLayerIndex`; the result has the same form. Layers keep their keys; those without one
/// get the first free keys, in the order of `layerIds`. Keys of other layers become free. When the keys run
/// out, the last layers get none.
std::vector<quint32> assignLayerKeys(const std::vector<quint32>& keys, const std::vector<quint32>& layerIds);

} // namespace Orvane::ECProxy::Client::Internal

#include "layerplacement_p.h"

#include "ecconstants.h"

#include <algorithm>
#include <unordered_set>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// How far each further layer on an output is moved right and down.
constexpr int CascadePixels = 60;

} // namespace

int getLayerCount(const QRect& output, const QList<QPoint>& layerOrigins)
{
    return int(std::count_if(layerOrigins.cbegin(), layerOrigins.cend(), [&](const QPoint& origin) {
        return output.contains(origin);
    }));
}

QPoint findLayerPosition(
    const LayerPlacement& placement, const std::function<bool(const QRect&)>& hasResources)
{
    const int outputCount = placement.outputs.size();
    if (outputCount == 0)
        return NoLayerPosition;
    const auto search = [&](int begin, int end) {
        for (int i = begin; i < end; ++i) {
            const QRect& output = placement.outputs.at(i);
            const int offset = CascadePixels * getLayerCount(output, placement.layerOrigins);
            const QPoint position = output.topLeft() + QPoint(offset, offset);
            if (!hasResources(QRect(position, placement.size)))
                break;
            if (position != NoLayerPosition)
                return position;
        }
        return NoLayerPosition;
    };
    const int start = placement.layerOrigins.size() % outputCount;
    const QPoint position = search(start, outputCount);
    return position != NoLayerPosition ? position : search(0, start);
}

QRect windowOverTouchedOutputs(const QRect& window, const QList<QRect>& outputs, const QRect& mosaic)
{
    QRect touched;
    for (const QRect& output : outputs) {
        if (output.intersects(window))
            touched |= output;
    }
    return touched.isNull() ? mosaic : touched;
}

std::vector<quint32> assignLayerKeys(const std::vector<quint32>& keys, const std::vector<quint32>& layerIds)
{
    std::vector<quint32> assigned(keys.size(), Constants::UnboundLayerIndex);
    std::unordered_set<quint32> withoutKey(layerIds.cbegin(), layerIds.cend());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (withoutKey.erase(keys[i]) != 0)
            assigned[i] = keys[i];
    }
    auto free = assigned.begin();
    for (const quint32 layerId : layerIds) {
        if (withoutKey.erase(layerId) == 0)
            continue;
        free = std::find(free, assigned.end(), Constants::UnboundLayerIndex);
        if (free == assigned.end())
            break;
        *free = layerId;
    }
    return assigned;
}

} // namespace Orvane::ECProxy::Client::Internal

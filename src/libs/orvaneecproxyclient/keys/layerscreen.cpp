#include "layerscreen_p.h"

#include "command.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/output.h"
#include "bizmodel/screen.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

quint32 layerServerId(const BizModel::Screen& screen)
{
    constexpr int TypeShift = 24;
    const auto type = screen.screenType();
    return type == BizModel::Enum::Screen::RegularScreen ? screen.screenId()
                                                         : screen.screenId() | quint32(type) << TypeShift;
}

std::optional<LayerScreen> activedLayerScreen()
{
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    if (!screen || !Command::checkScreenType(screen->screenType()))
        return std::nullopt;
    return LayerScreen{device, screen, device->ipMacSn(), layerServerId(*screen)};
}

bool isKeyLayer(const BizModel::Layer& layer)
{
    return layer.sceneType() == BizModel::SceneType::PVW
        && (layer.layerType() & BizModel::Enum::Layer::RegularAndAUXLayers) != 0;
}

QList<LayerPtr> previewLayers(const BizModel::Screen& screen)
{
    QList<LayerPtr> layers;
    const auto weakLayers =
        screen.layers(BizModel::SceneType::PVW, BizModel::Enum::Layer::RegularAndAUXLayers);
    for (const auto& weakLayer : weakLayers) {
        if (const auto layer = weakLayer.lock())
            layers.append(layer);
    }
    return layers;
}

QList<LayerPtr> selectedPreviewLayers(const BizModel::Screen& screen)
{
    QList<LayerPtr> layers;
    const auto selected = screen.selectedLayers(BizModel::SceneType::PVW);
    for (const auto& weakLayer : selected) {
        const auto layer = weakLayer.lock();
        if (layer && isKeyLayer(*layer))
            layers.append(layer);
    }
    std::sort(layers.begin(), layers.end(), [](const LayerPtr& left, const LayerPtr& right) {
        return left->layerId() < right->layerId();
    });
    return layers;
}

QList<QRect> outputRects(const BizModel::Screen& screen)
{
    QList<std::shared_ptr<BizModel::Output>> outputs;
    const auto weakOutputs = screen.outputs();
    for (const auto& weakOutput : weakOutputs) {
        if (const auto output = weakOutput.lock())
            outputs.append(output);
    }
    std::stable_sort(outputs.begin(), outputs.end(), [](const auto& left, const auto& right) {
        return left->zOrder() < right->zOrder();
    });
    QList<QRect> rects;
    for (const auto& output : qAsConst(outputs))
        rects.append(screen.mosaicRect(output).toRect());
    return rects;
}

} // namespace Orvane::ECProxy::Client::Internal

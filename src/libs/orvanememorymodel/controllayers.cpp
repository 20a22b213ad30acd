#include "control_p.h"
#include "layers.h"

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::SceneType;

namespace {

std::shared_ptr<MemoryLayer> findLayer(
    const Guard& guard, const MemoryScreen& screen, SceneType scene, quint32 layerId)
{
    return findIn(screen.data(guard).layers(scene), [layerId](const auto& layer) {
        return layer->layerId() == layerId;
    });
}

ControlResult noLayer(SceneType scene, quint32 layerId)
{
    return ControlResult::refused(
        QStringLiteral("the screen has no layer %1 in its %2").arg(layerId).arg(sceneText(scene)));
}

} // namespace

/// Calls @p function with the change, the device, the screen and the layer; refused when one is not there.
template <typename Function>
ControlResult Control::onLayer(
    const QString& device, const ScreenKey& screen, SceneType scene, quint32 layerId, Function function)
{
    return onScreen(device, screen, [&](Change& change, const auto& owner, const auto& present) {
        const std::shared_ptr<MemoryLayer> layer = findLayer(change, *present, scene, layerId);
        return layer ? resultOf(function, change, owner, present, layer) : noLayer(scene, layerId);
    });
}

quint32 Control::addLayer(
    const QString& device, ScreenKey screen, SceneType scene, quint32 inputId, const QRect& window,
    QString* reason)
{
    quint32 id = 0;
    const ControlResult result =
        onScreen(device, screen, [&](Change& change, const auto& owner, const auto& present) {
            const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(inputId);
            if (!input)
                return noInput(inputId);
            LayerRecord record;
            record.type = present->screenType() == ScreenType::AUXScreen ? BizModel::LayerType::AUX
                                                                         : BizModel::LayerType::Regular;
            record.inputId = inputId;
            record.window = window;
            record.capacity = newLayerCapacity(change, *owner, *input);
            QString error;
            const auto added = MemoryModel::addLayer(change, *owner, present, scene, record, error);
            if (added)
                id = added->layerId();
            return ControlResult::of(added != nullptr, error);
        });
    if (reason)
        *reason = result.reason();
    return id;
}

ControlResult Control::removeLayer(const QString& device, ScreenKey screen, SceneType scene, quint32 layerId)
{
    return onLayer(
        device, screen, scene, layerId,
        [scene](Change& change, const auto&, const auto& present, const auto& layer) {
            QString error;
            if (!isSceneEditable(change, *present, scene, error))
                return ControlResult::refused(error);
            removeLayers(change, present, {layer});
            return ControlResult::done();
        });
}

ControlResult Control::renameLayer(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, const QString& name)
{
    return onLayer(
        device, screen, scene, layerId,
        [&name](Change& change, const auto& owner, const auto& present, const auto& layer) {
            change.set(
                layer->data(change).name, name, &DeviceList::signalLayerNameChanged, owner, present, layer);
        });
}

ControlResult Control::selectLayers(
    const QString& device, ScreenKey screen, SceneType scene, const QList<quint32>& layerIds)
{
    return onScreen(device, screen, [&](Change& change, const auto&, const auto& present) {
        MemoryScreen::Layers wanted;
        for (const quint32 id : layerIds) {
            const std::shared_ptr<MemoryLayer> layer = findLayer(change, *present, scene, id);
            if (!layer)
                return noLayer(scene, id);
            wanted += layer;
        }
        setSelectedLayers(change, present, wanted, false);
        return ControlResult::done();
    });
}

ControlResult Control::setLayerWindow(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, const QRect& window)
{
    return onLayer(
        device, screen, scene, layerId,
        [&window](Change& change, const auto&, const auto& present, const auto& layer) {
            QString error;
            const bool moved = moveLayer(change, present, layer, window, error);
            return ControlResult::of(moved, error);
        });
}

ControlResult Control::setLayerSource(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, quint32 inputId)
{
    return onLayer(
        device, screen, scene, layerId,
        [scene, inputId](Change& change, const auto& owner, const auto& present, const auto& layer) {
            const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(inputId);
            QString error;
            if (!input)
                return noInput(inputId);
            if (!isSceneEditable(change, *present, scene, error))
                return ControlResult::refused(error);
            return ControlResult::of(
                bindLayers(change, *owner, {layer}, *input), QStringLiteral("Not enough resources."));
        });
}

} // namespace Orvane::MemoryModel

#include "control_p.h"
#include "layers.h"

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::SceneType;

namespace {

std::shared_ptr<MemoryLayer> findLayer(
    const Guard& guard, const MemoryScreen& screen, SceneType scene, quint32 layerId)
{
    const MemoryScreen::Layers& all = screen.data(guard).layers(scene);
    const auto found = std::find_if(
        all.cbegin(), all.cend(), [layerId](const auto& layer) { return layer->layerId() == layerId; });
    return found == all.cend() ? nullptr : *found;
}

} // namespace

/// Calls @p function with the change, the device, the screen and the layer; false when one is not there.
template <typename Function>
bool Control::onLayer(
    const QString& device, const ScreenKey& screen, SceneType scene, quint32 layerId, Function function)
{
    return onScreen(device, screen, [&](Change& change, const auto& owner, const auto& present) {
        const std::shared_ptr<MemoryLayer> layer = findLayer(change, *present, scene, layerId);
        return layer && function(change, owner, present, layer);
    });
}

quint32 Control::addLayer(
    const QString& device, ScreenKey screen, SceneType scene, quint32 inputId, const QRect& window)
{
    quint32 id = 0;
    onScreen(device, screen, [&](Change& change, const auto& owner, const auto& present) {
        const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(inputId);
        if (!input)
            return false;
        LayerRecord record;
        record.type = present->screenType() == ScreenType::AUXScreen ? BizModel::LayerType::AUX
                                                                     : BizModel::LayerType::Regular;
        record.inputId = inputId;
        record.window = window;
        record.capacity = newLayerCapacity(change, *owner, *input);
        QString error;
        const auto added = MemoryModel::addLayer(change, m_pHub, *owner, present, scene, record, error);
        if (added)
            id = added->layerId();
        return added != nullptr;
    });
    return id;
}

bool Control::removeLayer(const QString& device, ScreenKey screen, SceneType scene, quint32 layerId)
{
    return onLayer(
        device, screen, scene, layerId,
        [scene](Change& change, const auto&, const auto& present, const auto& layer) {
            QString error;
            if (!isSceneEditable(change, *present, scene, error))
                return false;
            removeLayers(change, present, {layer});
            return true;
        });
}

bool Control::renameLayer(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, const QString& name)
{
    return onLayer(
        device, screen, scene, layerId,
        [&name](Change& change, const auto& owner, const auto& present, const auto& layer) {
            if (std::exchange(layer->data(change).name, name) == name)
                return true;
            change.announce([device = std::weak_ptr<MemoryDevice>(owner),
                             screen = std::weak_ptr<MemoryScreen>(present),
                             layer = std::weak_ptr<MemoryLayer>(layer)](MemoryDeviceList& list) {
                Q_EMIT list.signalLayerNameChanged(device, screen, layer);
            });
            return true;
        });
}

bool Control::selectLayers(
    const QString& device, ScreenKey screen, SceneType scene, const QList<quint32>& layerIds)
{
    return onScreen(device, screen, [&](Change& change, const auto&, const auto& present) {
        MemoryScreen::Layers wanted;
        for (const quint32 id : layerIds) {
            const std::shared_ptr<MemoryLayer> layer = findLayer(change, *present, scene, id);
            if (!layer)
                return false;
            wanted += layer;
        }
        setSelectedLayers(change, present, wanted, false);
        return true;
    });
}

bool Control::setLayerWindow(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, const QRect& window)
{
    return onLayer(
        device, screen, scene, layerId,
        [&window](Change& change, const auto&, const auto& present, const auto& layer) {
            QString error;
            return moveLayer(change, present, layer, window, error);
        });
}

bool Control::setLayerSource(
    const QString& device, ScreenKey screen, SceneType scene, quint32 layerId, quint32 inputId)
{
    return onLayer(
        device, screen, scene, layerId,
        [scene, inputId](Change& change, const auto& owner, const auto& present, const auto& layer) {
            const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(inputId);
            QString error;
            return input && isSceneEditable(change, *present, scene, error)
                && bindLayers(change, *owner, {layer}, *input);
        });
}

} // namespace Orvane::MemoryModel

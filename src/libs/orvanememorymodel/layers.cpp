#include "layers.h"

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;
using BizModel::SceneType;

namespace {

bool liesOn(const Guard& guard, const MemoryScreen& screen, const QRect& window, const MemorySubcard& card)
{
    const auto& places = screen.data(guard).outputs;
    return std::any_of(places.cbegin(), places.cend(), [&](const MemoryScreen::OutputPlace& place) {
        return place.output->subcardId() == card.subcardId() && place.rect.intersects(window);
    });
}

/// Units of the card that the scene takes.
int unitsTaken(
    const Guard& guard, const MemoryDevice& device, const std::shared_ptr<MemoryScreen>& planningScreen,
    QList<PlannedWindow> planned, const MemorySubcard& card, SceneType scene,
    const std::shared_ptr<MemoryLayer>& ignored)
{
    int units = 0;
    const auto count = [&](const MemoryScreen& screen, const std::shared_ptr<MemoryLayer>& layer,
                           const QRect& window) {
        if (layer != ignored && liesOn(guard, screen, window, card))
            units += capacityCost(std::as_const(*layer).data(guard).capacity);
    };
    for (const std::shared_ptr<MemoryScreen>& screen : device.data(guard).screens) {
        for (const std::shared_ptr<MemoryLayer>& layer : std::as_const(*screen).data(guard).layers(scene)) {
            const auto plan = std::find_if(
                planned.begin(), planned.end(), [&layer](const auto& each) { return each.layer == layer; });
            if (plan == planned.end()) {
                count(*screen, layer, std::as_const(*layer).data(guard).window);
            } else {
                count(*screen, layer, plan->window);
                planned.erase(plan);
            }
        }
    }
    for (const PlannedWindow& extra : std::as_const(planned))
        count(*planningScreen, extra.layer, extra.window);
    return units;
}

QList<std::shared_ptr<MemoryOutput>> outputsOf(const Guard& guard, const MemoryScreen& screen)
{
    QList<std::shared_ptr<MemoryOutput>> outputs;
    for (const MemoryScreen::OutputPlace& place : screen.data(guard).outputs)
        outputs += place.output;
    return outputs;
}

const QString unusableWindow = QStringLiteral("The window has no extent or is out of bounds.");
const QString notEnoughResources = QStringLiteral("Not enough resources.");

} // namespace

std::shared_ptr<MemoryScreen> screenOf(const MemoryLayer& layer)
{
    return std::dynamic_pointer_cast<MemoryScreen>(std::const_pointer_cast<LayerOwner>(layer.owner()));
}

bool isSceneEditable(const Guard& guard, const MemoryScreen& screen, SceneType scene, QString& error)
{
    const MemoryScreen::Data& state = screen.data(guard);
    if (!state.registered)
        error = QStringLiteral("The screen is gone.");
    else if (!state.isIdle())
        error = QStringLiteral("The screen is busy.");
    else if (scene == SceneType::PGM && !state.pgmEdit)
        error = QStringLiteral("The screen's program is not being edited.");
    else
        return true;
    return false;
}

BizModel::CapacityMode newLayerCapacity(
    const Guard& guard, const MemoryDevice& device, const MemoryInput& input)
{
    const std::shared_ptr<const MemoryConnector> connector = device.connector(input);
    return connector ? connector->data(guard) : input.data(guard).capacity;
}

std::shared_ptr<MemoryLayer> addLayer(
    Change& change, MemoryDevice& device, const std::shared_ptr<MemoryScreen>& screen, SceneType scene,
    LayerRecord record, QString& error)
{
    if (!isSceneEditable(change, *screen, scene, error))
        return nullptr;
    if (!isUsableWindow(record.window)) {
        error = unusableWindow;
        return nullptr;
    }
    MemoryScreen::Layers& present = screen->data(change).layers(scene);
    if (device.layerCount(change, scene) >= device.limits().layers
        || present.size() >= screen->layerCapacity(change)) {
        error = QStringLiteral("The number of layers exceeds the limit.");
        return nullptr;
    }
    record.id = screen->freeLayerId(change, scene);
    if (record.name.isEmpty())
        record.name = layerName(record.id);
    auto added = screen->makeLayer(scene, record);
    if (!hasResources(change, device, screen, {{added, record.window}}, outputsOf(change, *screen), scene)) {
        error = notEnoughResources;
        return nullptr;
    }
    present += added;
    change.announce(&DeviceList::signalLayerAdded, device.weak_from_this(), screen, added);
    return added;
}

void removeLayers(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const MemoryScreen::Layers& layers)
{
    bool selectionChanged = false;
    for (const std::shared_ptr<MemoryLayer>& layer : layers) {
        MemoryScreen::Data& state = screen->data(change);
        if (!state.pvw.removeOne(layer) && !state.pgm.removeOne(layer))
            continue;
        selectionChanged |= std::exchange(layer->data(change).selected, false);
        change.announce(&DeviceList::signalLayerRemoved, screen->device(), screen, layer);
    }
    if (selectionChanged)
        announceSelectedLayers(change, screen);
}

void setSelectedLayers(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const MemoryScreen::Layers& layers,
    bool append, bool notify)
{
    bool changed = false;
    for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
        for (const std::shared_ptr<MemoryLayer>& layer : std::as_const(screen->data(change).layers(scene))) {
            bool& selected = layer->data(change).selected;
            const bool now = layers.contains(layer) || (selected && append);
            changed |= std::exchange(selected, now) != now;
        }
    }
    if (changed)
        announceSelectedLayers(change, screen, notify);
}

void announceSelectedLayers(Change& change, const std::shared_ptr<MemoryScreen>& screen, bool notify)
{
    change.markChanged();
    if (notify)
        change.announce(&DeviceList::signalSelectedLayersChanged, screen->device(), screen);
}

bool moveLayer(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const std::shared_ptr<MemoryLayer>& layer,
    const QRect& window, QString& error)
{
    const SceneType scene = layer->data(change).scene;
    const auto device = ownObject<MemoryDevice>(screen->device());
    if (!isUsableWindow(window))
        error = unusableWindow;
    else if (!isSceneEditable(change, *screen, scene, error))
        return false;
    else if (!device)
        error = QStringLiteral("The device is gone.");
    else if (!hasResources(change, *device, screen, {{layer, window}}, outputsOf(change, *screen), scene))
        error = notEnoughResources;
    if (!error.isEmpty())
        return false;
    layer->data(change).window = window;
    change.markChanged();
    return true;
}

bool canBindLayers(
    Change& change, const MemoryDevice& device, const MemoryScreen::Layers& layers, const MemoryInput& input)
{
    QList<BizModel::CapacityMode> before;
    for (const std::shared_ptr<MemoryLayer>& layer : layers)
        before += std::exchange(layer->data(change).capacity, input.data(change).capacity);
    const bool enough = std::all_of(layers.cbegin(), layers.cend(), [&](const auto& layer) {
        const std::shared_ptr<MemoryScreen> screen = screenOf(*layer);
        return !screen || screen->screenType() != ScreenType::RegularScreen
            || hasResources(
                change, device, screen, {}, outputsOf(change, *screen), layer->data(change).scene);
    });
    for (int i = 0; i < layers.size(); ++i)
        layers[i]->data(change).capacity = before[i];
    return enough;
}

bool bindLayers(
    Change& change, const MemoryDevice& device, const MemoryScreen::Layers& layers, const MemoryInput& input)
{
    if (!canBindLayers(change, device, layers, input))
        return false;
    for (const std::shared_ptr<MemoryLayer>& layer : layers) {
        layer->data(change).capacity = input.data(change).capacity;
        setSource(change, layer, input.interfaceId());
    }
    return true;
}

LayerJob jobOf(const Guard& guard, const MemoryScreen& screen, const MemoryLayer& layer)
{
    const auto device = ownObject<MemoryDevice>(screen.device());
    const MemoryLayer::State& state = layer.data(guard);
    return {
        device ? std::as_const(*device).data(guard).ipMacSn : QString(),
        screen.key(),
        state.scene,
        layer.layerId(),
        state.inputId,
        state.window};
}

void setSource(Change& change, const std::shared_ptr<MemoryLayer>& layer, quint32 inputId)
{
    const std::shared_ptr<MemoryScreen> screen = screenOf(*layer);
    const auto device = screen ? screen->device() : std::weak_ptr<BizModel::Device>();
    change.set(
        layer->data(change).inputId, inputId, &DeviceList::signalLayerSourceChanged, device, screen, layer);
}

bool hasResources(
    const Guard& guard, const MemoryDevice& device, const std::shared_ptr<MemoryScreen>& screen,
    const QList<PlannedWindow>& planned, const QList<std::shared_ptr<MemoryOutput>>& outputs, SceneType scene,
    const std::shared_ptr<MemoryLayer>& ignored)
{
    return std::all_of(outputs.cbegin(), outputs.cend(), [&](const auto& output) {
        const std::shared_ptr<MemorySubcard> card = device.subcard(output->subcardId());
        return !card
            || unitsTaken(guard, device, screen, planned, *card, scene, ignored) <= card->layerCapacity();
    });
}

} // namespace Orvane::MemoryModel

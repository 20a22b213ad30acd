#include "transitions.h"

namespace Orvane::MemoryModel {

using BizModel::SceneType;

namespace {

/// Copies for another scene, with the ids and names of the originals and nothing selected.
MemoryScreen::Layers copies(const Guard& guard, MemoryScreen& screen, SceneType from, SceneType to)
{
    MemoryScreen::Layers list;
    const MemoryScreen& source = screen;
    for (const std::shared_ptr<MemoryLayer>& layer : source.data(guard).layers(from)) {
        LayerRecord record = std::as_const(*layer).data(guard);
        record.selected = false;
        list += screen.makeLayer(to, record);
    }
    return list;
}

void moveTo(Change& change, const MemoryScreen::Layers& layers, SceneType scene)
{
    for (const std::shared_ptr<MemoryLayer>& layer : layers) {
        layer->data(change).scene = scene;
        layer->data(change).selected = false;
    }
}

} // namespace

ScreenJob jobOf(const MemoryDevice& device, const MemoryDevice::Screens& screens)
{
    ScreenJob job;
    job.device = device.ipMacSn();
    for (const std::shared_ptr<MemoryScreen>& screen : screens)
        job.screens += screen->key();
    return job;
}

void takeScene(Change& change, const MemoryDevice& device, MemoryScreen& screen)
{
    MemoryScreen::Data& state = screen.data(change);
    if (!device.data(change).swap) {
        state.pgm = copies(change, screen, SceneType::PVW, SceneType::PGM);
        return;
    }
    state.pgm.swap(state.pvw);
    moveTo(change, state.pgm, SceneType::PGM);
    moveTo(change, state.pvw, SceneType::PVW);
}

void matchScene(Change& change, MemoryScreen& screen)
{
    screen.data(change).pvw = copies(change, screen, SceneType::PGM, SceneType::PVW);
}

void announceLayersChanged(Change& change, const MemoryDevice::Screens& screens, LayersChangedBy reason)
{
    if (screens.isEmpty())
        return;
    change.announce(
        &BizModel::DeviceList::signalDeviceScreenLayersChanged,
        QList<std::weak_ptr<BizModel::Screen>>(screens.begin(), screens.end()), int(reason));
    for (const std::shared_ptr<MemoryScreen>& screen : screens)
        change.announce(&BizModel::DeviceList::signalSelectedLayersChanged, screen->device(), screen);
}

} // namespace Orvane::MemoryModel

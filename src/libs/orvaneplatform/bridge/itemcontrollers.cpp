#include "bridge/itemcontrollers_p.h"

#include "bridge/announce_p.h"
#include "bridge/layerorder_p.h"

#include <algorithm>

namespace Orvane::Bridge {

using BizModel::DeviceList;
using BizModel::SceneType;
using Internal::announce;

namespace {

using FileType = BizModel::Enum::File::FileType;
using LayerList = ScreenItem::LayerList;

/// The device's own screens among those given; none when one of them is not the device's.
DeviceItem::ScreenList ownScreens(
    const std::shared_ptr<DeviceItem>& device, const QList<std::weak_ptr<BizModel::Screen>>& screens)
{
    DeviceItem::ScreenList own;
    const auto all = device ? device->screenList() : DeviceItem::ScreenList();
    for (const std::weak_ptr<BizModel::Screen>& each : screens) {
        const auto screen = std::dynamic_pointer_cast<ScreenItem>(each.lock());
        if (!screen || !all.contains(screen))
            return {};
        own += screen;
    }
    return own;
}

std::shared_ptr<ScreenItem> ownScreen(
    const std::shared_ptr<DeviceItem>& device, const std::weak_ptr<BizModel::Screen>& screen)
{
    return ownScreens(device, {screen}).value(0);
}

/// The screen's own layers among those given; none without a screen.
LayerList ownLayers(
    const std::shared_ptr<ScreenItem>& screen, const QList<std::weak_ptr<BizModel::Layer>>& layers)
{
    LayerList own;
    const LayerList present =
        screen ? screen->layerList(SceneType::PGM) + screen->layerList(SceneType::PVW) : LayerList();
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        const auto layer = std::dynamic_pointer_cast<LayerItem>(each.lock());
        if (layer && present.contains(layer))
            own += layer;
    }
    return own;
}

/// The device's screen that the layer is on; empty when it is on none.
std::shared_ptr<ScreenItem> screenOf(
    const std::shared_ptr<DeviceItem>& device, const std::weak_ptr<BizModel::Layer>& layer)
{
    const auto screens = device ? device->screenList() : DeviceItem::ScreenList();
    const auto found = std::find_if(screens.cbegin(), screens.cend(), [&layer](const auto& screen) {
        return !ownLayers(screen, {layer}).isEmpty();
    });
    return found == screens.cend() ? nullptr : *found;
}

std::shared_ptr<PresetItem> ownPreset(
    const std::shared_ptr<DeviceItem>& device, const std::weak_ptr<BizModel::File>& file, QString& error)
{
    const auto preset = std::dynamic_pointer_cast<PresetItem>(file.lock());
    if (preset && device && device->presetList().contains(preset))
        return preset;
    error = QStringLiteral("The preset is gone.");
    return nullptr;
}

} // namespace

// ---- Device ---------------------------------------------------------------------------------------------

void ItemControllerFactory::DeviceController::setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen)
{
    const auto owner = m_pDevice.lock();
    if (const auto own = ownScreen(owner, screen))
        owner->setActivedScreen(own);
}

bool ItemControllerFactory::DeviceController::createPresetFile(FileType type, quint16 fileId, QString& error)
{
    const auto owner = m_pDevice.lock();
    const auto present = owner ? owner->presetList() : DeviceItem::PresetList();
    const bool isTaken = std::any_of(
        present.cbegin(), present.cend(), [fileId](const auto& each) { return each->fileId() == fileId; });
    if (!owner || fileId < 1 || fileId > owner->maxPresetCount() || isTaken) {
        error = QStringLiteral("There is no such free preset slot.");
        return false;
    }
    const auto preset = std::make_shared<PresetItem>(fileId, type);
    if (!m_hooks.storePreset(*owner, *preset, error))
        return false;
    owner->addPreset(preset);
    return true;
}

bool ItemControllerFactory::DeviceController::removeFile(
    const QList<std::weak_ptr<BizModel::File>>& files, QString& error)
{
    const auto owner = m_pDevice.lock();
    bool ok = true;
    for (const std::weak_ptr<BizModel::File>& file : files) {
        const auto preset = ownPreset(owner, file, error);
        ok &= preset && m_hooks.removePreset(*owner, *preset, error) && owner->removePreset(preset);
    }
    return ok;
}

// ---- Screens --------------------------------------------------------------------------------------------

bool ItemControllerFactory::ScreenController::setSelected(
    const Screens& screens, BizModel::SelectedType mode, bool notify, bool)
{
    const auto owner = m_pDevice.lock();
    const auto wanted = ownScreens(owner, screens);
    if (wanted.isEmpty() || (wanted.size() > 1 && !owner->isMultiScreens()))
        return false;
    const bool replaces = mode == BizModel::SelectedType::Cover || !owner->isMultiScreens();
    bool changed = false;
    const auto all = owner->screenList();
    for (const std::shared_ptr<ScreenItem>& screen : all)
        changed |= screen->setSelected(wanted.contains(screen) || (screen->selected() && !replaces));
    if (changed && notify)
        announce(&DeviceList::signalSelectedRegularScreensChanged, m_pDevice);
    return true;
}

bool ItemControllerFactory::ScreenController::cancelSelected(const Screens& screens, bool notify)
{
    const auto wanted = ownScreens(m_pDevice.lock(), screens);
    bool changed = false;
    for (const std::shared_ptr<ScreenItem>& screen : wanted)
        changed |= screen->setSelected(false);
    if (changed && notify)
        announce(&DeviceList::signalSelectedRegularScreensChanged, m_pDevice);
    return !wanted.isEmpty();
}

bool ItemControllerFactory::ScreenController::updateEffectSpeed(
    const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds)
{
    bool ok = !seconds.isEmpty();
    for (const auto& each : seconds) {
        const auto screen = ownScreen(m_pDevice.lock(), each.first);
        const bool accepted = screen && m_hooks.setTransitionTime(*screen, each.second);
        if (accepted)
            screen->setTransitionTime(each.second);
        ok &= accepted;
    }
    return ok;
}

bool ItemControllerFactory::ScreenController::updatePGMEditStatus(const Screens& screens, bool enabled)
{
    const auto wanted = ownScreens(m_pDevice.lock(), screens);
    bool ok = !wanted.isEmpty();
    for (const std::shared_ptr<ScreenItem>& screen : wanted) {
        const bool accepted = m_hooks.editProgram(*screen, enabled);
        if (accepted)
            screen->setProgramEdited(enabled);
        ok &= accepted;
    }
    return ok;
}

std::shared_ptr<BizModel::Layer> ItemControllerFactory::ScreenController::addLayer(
    const std::weak_ptr<BizModel::Screen>& screen, BizModel::LayerType type, SceneType scene, int sourceId,
    int, const QRect& window)
{
    const auto own = ownScreen(m_pDevice.lock(), screen);
    if (!own || own->layerList(scene).size() >= own->maxLayerCount())
        return nullptr;
    const BizModel::s_ScreenLayerId place{own->screenId(), scene, own->nextLayerId(scene, type)};
    const auto layer = std::make_shared<LayerItem>(place, quint32(sourceId), window);
    if (!m_hooks.addLayer(*own, *layer))
        return nullptr;
    own->addLayer(layer);
    return layer;
}

bool ItemControllerFactory::ScreenController::removeLayers(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
    QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed)
{
    const auto own = ownScreen(m_pDevice.lock(), screen);
    const LayerList wanted = ownLayers(own, layers);
    for (const std::shared_ptr<LayerItem>& layer : wanted) {
        if (m_hooks.removeLayer(*own, *layer))
            own->removeLayer(layer);
        else
            failed += {layer->screenLayerId(), QStringLiteral("The model does not remove the layer.")};
    }
    return own && failed.isEmpty();
}

bool ItemControllerFactory::ScreenController::topZOrder(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(screen, layers, &Internal::moveToFront);
}

bool ItemControllerFactory::ScreenController::incrZOrder(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(screen, layers, &Internal::stepToFront);
}

bool ItemControllerFactory::ScreenController::bottomZOrder(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(screen, layers, &Internal::moveToBack);
}

bool ItemControllerFactory::ScreenController::decrZOrder(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(screen, layers, &Internal::stepToBack);
}

bool ItemControllerFactory::ScreenController::reorder(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, Reorder order)
{
    const auto own = ownScreen(m_pDevice.lock(), screen);
    const LayerList marked = ownLayers(own, layers);
    if (marked.isEmpty() || marked.size() != layers.size())
        return false;
    const auto scenes = {SceneType::PGM, SceneType::PVW};
    for (const SceneType scene : scenes) {
        const LayerList before = own->layerList(scene);
        LayerList after = before;
        order(after, marked);
        if (after != before && !m_hooks.orderLayers(*own, scene, after))
            return false;
    }
    for (const SceneType scene : scenes)
        own->reorderLayers(scene, [&](LayerList& now) { order(now, marked); });
    return true;
}

// ---- Layers ---------------------------------------------------------------------------------------------

bool ItemControllerFactory::LayerController::setSelected(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
    bool notify)
{
    const auto own = ownScreen(m_pDevice.lock(), screen);
    const LayerList wanted = ownLayers(own, layers);
    if (!own || wanted.size() != layers.size())
        return false;
    bool changed = false;
    const LayerList present = own->layerList(SceneType::PGM) + own->layerList(SceneType::PVW);
    for (const std::shared_ptr<LayerItem>& layer : present) {
        const bool stays = layer->isSelected() && mode == BizModel::SelectedType::Append;
        changed |= layer->setSelected(wanted.contains(layer) || stays);
    }
    if (changed && notify)
        own->announceSelectedLayers();
    return true;
}

bool ItemControllerFactory::LayerController::cancelSelected(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify)
{
    const auto own = ownScreen(m_pDevice.lock(), screen);
    const LayerList wanted = ownLayers(own, layers);
    if (!own || wanted.size() != layers.size())
        return false;
    bool changed = false;
    for (const std::shared_ptr<LayerItem>& layer : wanted)
        changed |= layer->setSelected(false);
    if (changed && notify)
        own->announceSelectedLayers();
    return true;
}

bool ItemControllerFactory::LayerController::updateWindow(
    const std::weak_ptr<BizModel::Layer>& layer, const QRect& window)
{
    const auto screen = screenOf(m_pDevice.lock(), layer);
    const auto own = std::dynamic_pointer_cast<LayerItem>(layer.lock());
    if (!screen || !own || window.isEmpty() || !m_hooks.moveLayer(*screen, *own, window))
        return false;
    own->setWindow(window);
    return true;
}

bool ItemControllerFactory::LayerController::bindSource(
    const Layers& layers, quint32 sourceId, int sourceType)
{
    const auto owner = m_pDevice.lock();
    if (!owner || sourceType != BizModel::SourceType::Input || owner->findInput(sourceId).expired())
        return false;
    bool ok = !layers.isEmpty();
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        const auto screen = screenOf(owner, each);
        const auto layer = std::dynamic_pointer_cast<LayerItem>(each.lock());
        const bool accepted = screen && layer && m_hooks.bindSource(*screen, *layer, sourceId);
        if (accepted)
            screen->setLayerSource(layer, sourceId);
        ok &= accepted;
    }
    return ok;
}

// ---- Presets --------------------------------------------------------------------------------------------

bool ItemControllerFactory::PresetController::coverPreset(
    const std::weak_ptr<BizModel::Preset>& preset, FileType, QString& error)
{
    const auto owner = m_pDevice.lock();
    const auto own = ownPreset(owner, preset.lock(), error);
    if (!own || !m_hooks.storePreset(*owner, *own, error))
        return false;
    announce(&DeviceList::signalPresetCovered, m_pDevice, own);
    return true;
}

bool ItemControllerFactory::PresetController::updatePresetModelData(
    const std::weak_ptr<BizModel::Preset>& preset, const Screens&, QString& error)
{
    const auto owner = m_pDevice.lock();
    const auto own = ownPreset(owner, preset.lock(), error);
    return own && m_hooks.loadPreset(*owner, *own, error);
}

} // namespace Orvane::Bridge

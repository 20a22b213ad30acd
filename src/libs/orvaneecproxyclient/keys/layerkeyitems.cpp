#include "layerkeyitems_p.h"

#include "ecconsolemanager.h"
#include "layerplacement_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// The layer that an item of the screen is bound to.
quint32 boundLayerId(const ECCommandItem& item, quint32 serverId)
{
    const ECObjectIdList ids = item.getObjectIdList();
    for (const ECObjectId& id : ids) {
        if (id.first == serverId)
            return id.second;
    }
    return Constants::UnboundLayerIndex;
}

/// The page of the first key that shows a selected layer, preferably on `page`; none when no key does.
std::optional<int> pageOfSelection(const ECCommandItemList& items, int page)
{
    std::optional<int> first;
    for (const auto& item : items) {
        if (item->ecButtonColor() != ECLEDColor::Green)
            continue;
        if (item->ecButtonPageIndex() == page)
            return page;
        if (!first)
            first = item->ecButtonPageIndex();
    }
    return first;
}

} // namespace

ECCommandItemList LayerKeyItems::itemsOf(const std::optional<LayerScreen>& target)
{
    ECCommandItemList items;
    if (target)
        store().layerECCommandItems(target->ip, target->serverId, items);
    if (items.isEmpty())
        store().layerECCommandItems(QString(), 0, items);
    return items;
}

void LayerKeyItems::initScreen(const QString& ip, const BizModel::Screen& screen)
{
    store().initLayerECCommand(ip, KeyboardType::Layer, layerServerId(screen));
}

// ---- Layers to keys -------------------------------------------------------------------------------------

std::optional<LayerKeyItems::ScreenLayers> LayerKeyItems::readActivedScreen()
{
    const auto target = activedLayerScreen();
    if (!target)
        return std::nullopt;
    initScreen(target->ip, *target->screen);
    ScreenLayers read;
    read.ip = target->ip;
    read.serverId = target->serverId;
    const auto selected = selectedPreviewLayers(*target->screen);
    const auto layers = previewLayers(*target->screen);
    for (const auto& layer : layers) {
        const auto color = selected.contains(layer) ? ECLEDColor::Green : ECLEDColor::Yellow;
        read.layers.push_back({layer->layerId(), layer->name(), color});
    }
    std::sort(read.layers.begin(), read.layers.end(), [](const KeyLayer& left, const KeyLayer& right) {
        return left.id < right.id;
    });
    for (const KeyLayer& layer : read.layers)
        read.layerIds.push_back(layer.id);
    return read;
}

LayerKeyItems::TakenScreens LayerKeyItems::readTakenScreens(const QList<WeakScreen>& screens)
{
    TakenScreens taken;
    const auto device = activedDevice();
    if (!device)
        return taken;
    taken.ip = device->ipMacSn();
    const auto ownScreens = device->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& weakScreen : ownScreens) {
        const auto screen = weakScreen.lock();
        const bool isTaken = screen && std::any_of(screens.begin(), screens.end(), [&](const auto& other) {
                                 return other.lock() == screen;
                             });
        if (isTaken)
            taken.serverIds.append(layerServerId(*screen));
    }
    return taken;
}

ECCommandItemList LayerKeyItems::itemsOf(const ScreenLayers& screen)
{
    ECCommandItemList items;
    store().layerECCommandItems(screen.ip, screen.serverId, items);
    return items;
}

void LayerKeyItems::bindLayers(const ScreenLayers& screen) const
{
    const ECCommandItemList items = itemsOf(screen);
    std::vector<quint32> keys;
    for (const auto& item : qAsConst(items))
        keys.push_back(boundLayerId(*item, screen.serverId));

    const std::vector<quint32> assigned = assignLayerKeys(keys, screen.layerIds);
    for (std::size_t i = 0; i < assigned.size(); ++i) {
        const auto& item = items.at(int(i));
        if (assigned[i] == Constants::UnboundLayerIndex) {
            if (keys[i] != Constants::UnboundLayerIndex)
                item->resetECCommandItem(KeyboardType::Layer);
            continue;
        }
        const auto found = std::lower_bound(screen.layerIds.begin(), screen.layerIds.end(), assigned[i]);
        const KeyLayer& layer = screen.layers[std::size_t(found - screen.layerIds.begin())];
        bind(item, {{screen.serverId, layer.id}}, layer.color, layer.name);
    }
}

void LayerKeyItems::update()
{
    updateItems(readActivedScreen, [this](const std::optional<ScreenLayers>& screen) {
        if (screen)
            bindLayers(*screen);
    });
}

std::optional<int> LayerKeyItems::giveAnew(const QList<WeakScreen>& screens, int page)
{
    // Freed and bound again in one step, so that a key pressed meanwhile does not find itself without a
    // layer.
    return updateItems(
        [&] { return std::pair(readTakenScreens(screens), readActivedScreen()); },
        [&](const auto& model) -> std::optional<int> {
            const auto& [taken, actived] = model;
            const bool isFollowing = actived && pageOfSelection(itemsOf(*actived), page) == page;
            for (const quint32 serverId : taken.serverIds)
                store().resetECCommandLayerItems(taken.ip, serverId);
            if (!actived)
                return std::nullopt;
            bindLayers(*actived);
            const auto now = pageOfSelection(itemsOf(*actived), page);
            return isFollowing && now != page ? now : std::nullopt;
        });
}

// ---- One layer ------------------------------------------------------------------------------------------

LayerPtr LayerKeyItems::findBindingLayer(const LayerScreen& target, const KeyPlace& place) const
{
    const ECObjectIdList ids = readItems([&] {
        return store().findBindingObject(target.ip, KeyboardType::Layer, place.buttonIndex, target.serverId);
    });
    const auto layers = previewLayers(*target.screen);
    const auto found = std::find_if(layers.begin(), layers.end(), [&](const LayerPtr& layer) {
        return ids.contains({target.serverId, layer->layerId()});
    });
    return found == layers.end() ? nullptr : *found;
}

ECCommandItemPtr LayerKeyItems::findItem(const LayerScreen& target, const BizModel::Layer& layer) const
{
    return itemOf(target.ip, {target.serverId, layer.layerId()});
}

ECCommandItemPtr LayerKeyItems::bindNew(
    const LayerScreen& target, const KeyPlace& place, const BizModel::Layer& layer)
{
    const ECObjectId id{target.serverId, layer.layerId()};
    const QString name = layer.name();
    const auto readLayerIds = [&] {
        initScreen(target.ip, *target.screen);
        std::set<quint32> ids;
        const auto layers = previewLayers(*target.screen);
        for (const auto& present : layers)
            ids.insert(present->layerId());
        return ids;
    };
    return updateItems(readLayerIds, [&](const std::set<quint32>& present) {
        // An update that saw the layer before we did has given it the first free key.
        unbind(target.ip, id);
        const ECObjectIdList bound =
            store().findBindingObject(target.ip, KeyboardType::Layer, place.buttonIndex, target.serverId);
        for (const ECObjectId& old : bound) {
            if (old.first == target.serverId && present.count(old.second) == 0)
                unbind(target.ip, old);
        }
        return store().updateECButtonData(
            target.ip, KeyboardType::Layer, place.orderIndex, place.buttonIndex, place.pageIndex, {id},
            ECLEDColor::Yellow, name, false);
    });
}

ECCommandItemPtr LayerKeyItems::release(
    const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer)
{
    const auto isIdInUse = [&] {
        const auto present = previewLayers(screen);
        return std::any_of(present.begin(), present.end(), [&](const LayerPtr& other) {
            return other->layerId() == layer.layerId() && other.get() != &layer;
        });
    };
    const ECObjectId id{layerServerId(screen), layer.layerId()};
    return updateItems(isIdInUse, [&](bool isInUse) { return isInUse ? nullptr : unbind(ip, id); });
}

ECCommandItemPtr LayerKeyItems::rename(
    const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer)
{
    return KeyGroup::rename(ip, {layerServerId(screen), layer.layerId()}, layer.name());
}

// ---- What is gone ---------------------------------------------------------------------------------------

void LayerKeyItems::forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const auto present = device.screens(screen.screenType());
    const bool isIdInUse = std::any_of(present.begin(), present.end(), [&](const auto& weakScreen) {
        const auto other = weakScreen.lock();
        return other && other.get() != &screen && other->screenId() == screen.screenId();
    });
    const quint32 serverId = layerServerId(screen);
    writeItems([&, ip = device.ipMacSn()] {
        // The removal is announced late: a new screen may have taken the id.
        if (isIdInUse)
            store().resetECCommandLayerItems(ip, serverId);
        else
            store().removeECCommandLayerItems(ip, serverId);
    });
}

} // namespace Orvane::ECProxy::Client::Internal

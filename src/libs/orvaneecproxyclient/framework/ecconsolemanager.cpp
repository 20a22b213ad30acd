#include "ecconsolemanager.h"

#include "eccommanditem_p.h"
#include "log_p.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client {

using Values = Internal::ECCommandItemValues;

namespace Internal {

using ScreenId = std::optional<quint64>;
/// The registered items, or those of one device: one list a keyboard type, of a device's layer items one a
/// screen.
using ItemLists = std::map<std::pair<KeyboardType, ScreenId>, ECCommandItemList>;

namespace {

/// Calls `operation` with the screen and the items of each list of the type.
template <typename Lists, typename Operation>
void forEachList(Lists& lists, KeyboardType type, Operation operation)
{
    for (auto list = lists.lower_bound({type, {}}); list != lists.end() && list->first.first == type; ++list)
        operation(list->first.second, list->second);
}

/// A device's own item for a registered one; with a screen, a free layer item of it.
ECCommandItemPtr copyOf(const ECCommandItem& registered, ScreenId screenId)
{
    auto item = std::make_shared<ECCommandItem>(registered);
    if (screenId)
        item->appendObjectData({*screenId, Constants::UnboundLayerIndex});
    return item;
}

template <typename Predicate> ECCommandItemPtr firstOf(const ECCommandItemList& items, Predicate isWanted)
{
    const auto found = std::find_if(items.cbegin(), items.cend(), [&](const ECCommandItemPtr& item) {
        return ECCommandItemPrivate::of(*item).read(isWanted);
    });
    return found == items.cend() ? nullptr : *found;
}

auto isAt(int orderIndex, int pageIndex)
{
    return [=](const Values& values) {
        return values.m_nECButtonOrderIndex == orderIndex && values.m_nECButtonPageIndex == pageIndex;
    };
}

auto isButton(int index)
{
    return [=](const Values& values) { return values.m_nECButtonIndex == index; };
}

auto isBoundTo(const ECObjectId& id)
{
    return [=](const Values& values) { return values.m_objectIdList.contains(id); };
}

auto isOfServer(quint64 serverId)
{
    return [=](const Values& values) {
        const auto& ids = values.m_objectIdList;
        return std::any_of(
            ids.cbegin(), ids.cend(), [=](const ECObjectId& id) { return id.first == serverId; });
    };
}

/// The item that a binding of `ids` at that place belongs to.
ECCommandItemPtr itemForIds(
    const ECCommandItemList& items, KeyboardType type, const ECObjectIdList& ids, int orderIndex,
    int pageIndex)
{
    if (ids.isEmpty())
        return {};
    const ECObjectId layer = ids.first();
    return firstOf(items, [&, isPlace = isAt(orderIndex, pageIndex)](const Values& values) {
        return isPlace(values)
            && (type != KeyboardType::Layer || values.m_objectIdList.contains(layer)
                || values.m_objectIdList.contains({layer.first, Constants::UnboundLayerIndex}));
    });
}

ECObjectIdList objectsOf(const ECCommandItemPtr& item)
{
    return item ? item->getObjectIdList() : ECObjectIdList();
}

} // namespace

class ECConsoleManagerPrivate {
public:
    explicit ECConsoleManagerPrivate(ECConsoleManager* manager)
        : m_pConsoleManager(manager)
    {
    }

    /// The device's items of the type, and of layer items those of the screen or, without one, of all.
    ECCommandItemList items(const QString& ip, KeyboardType type, ScreenId screenId = {}) const
    {
        const std::shared_lock lock(m_deviceECCmdItemMtx);
        return itemsLocked(ip, type, screenId);
    }
    ECCommandItemList itemsLocked(const QString& ip, KeyboardType type, ScreenId screenId = {}) const;

    /// As `items()`, but fresh copies of the registered items for a device without a set.
    ECCommandItemList view(const QString& ip, KeyboardType type, ScreenId screenId = {}) const
    {
        const std::shared_lock lock(m_deviceECCmdItemMtx);
        const bool isKnown = type == KeyboardType::PresetEx || m_deviceECCmdItemsList.count(ip) != 0;
        return isKnown ? itemsLocked(ip, type, screenId) : copiesLocked(type);
    }
    /// Fresh copies of the registered items; with a screen, free layer items of it.
    ECCommandItemList copiesLocked(KeyboardType type, ScreenId screenId = {}) const;

    /// Has `operation` change the items and returns its result.
    template <typename Operation>
    auto change(const QString& ip, KeyboardType type, Operation operation, ScreenId screenId = {}) const
    {
        const std::unique_lock lock(m_deviceECCmdItemMtx);
        return operation(itemsLocked(ip, type, screenId));
    }

    /// Has `operation` change the `PresetEx` item at that place and returns it; empty for another type.
    template <typename Operation>
    ECCommandItemPtr changePresetEx(
        KeyboardType type, int orderIndex, int pageIndex, Operation operation) const
    {
        if (type != KeyboardType::PresetEx)
            return {};
        return change({}, type, [&](const ECCommandItemList& items) {
            ECCommandItemPtr item = firstOf(items, isAt(orderIndex, pageIndex));
            if (item)
                ECCommandItemPrivate::of(*item).change(operation);
            return item;
        });
    }

    ECConsoleManager* const m_pConsoleManager;

    // Guards all that follows. Whoever changes items through the store holds it exclusively from finding the
    // item to the end of the change, so that two such changes never mix. Nothing is logged and no item
    // destroyed under it.
    mutable std::shared_mutex m_deviceECCmdItemMtx;
    /// With those of `PresetEx`, of which there is no other set.
    ItemLists baseDeviceECCommandItems;
    std::map<QString, ItemLists> m_deviceECCmdItemsList;
};

ECCommandItemList ECConsoleManagerPrivate::itemsLocked(
    const QString& ip, KeyboardType type, ScreenId screenId) const
{
    const auto device = m_deviceECCmdItemsList.find(ip);
    if (type != KeyboardType::PresetEx && device == m_deviceECCmdItemsList.end())
        return {};
    ECCommandItemList found;
    forEachList(
        type == KeyboardType::PresetEx ? baseDeviceECCommandItems : device->second, type,
        [&](ScreenId screen, const ECCommandItemList& items) {
            if (!screenId || !screen || screen == screenId)
                found += items;
        });
    return found;
}

ECCommandItemList ECConsoleManagerPrivate::copiesLocked(KeyboardType type, ScreenId screenId) const
{
    ECCommandItemList copies;
    forEachList(baseDeviceECCommandItems, type, [&](ScreenId, const ECCommandItemList& registered) {
        for (const ECCommandItemPtr& item : registered)
            copies.append(copyOf(*item, screenId));
    });
    return copies;
}

} // namespace Internal

using Internal::ECCommandItemPrivate;
using Internal::firstOf;

ECConsoleManager::ECConsoleManager()
    : d(std::make_unique<Internal::ECConsoleManagerPrivate>(this))
{
}

ECConsoleManager::~ECConsoleManager() = default;

ECConsoleManager* ECConsoleManager::instance()
{
    static ECConsoleManager* const s_pManager =
        new ECConsoleManager; // threads use it until the process is gone
    return s_pManager;
}

void ECConsoleManager::appendECCommandItem(KeyboardType type, const std::shared_ptr<ECCommandItem>& item)
{
    if (!item) {
        ecWarning(lcPaint, "An empty item of keyboard type %d is not stored.", int(type));
        return;
    }
    if (type < KeyboardType::Screen || type > KeyboardType::PresetEx) {
        ecWarning(lcPaint, " ERR Plugin Type :%d", int(type));
        return;
    }
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    d->baseDeviceECCommandItems[{type, {}}].append(item);
    for (auto& device : d->m_deviceECCmdItemsList)
        Internal::forEachList(
            device.second, type, [&](Internal::ScreenId screenId, ECCommandItemList& items) {
                items.append(Internal::copyOf(*item, screenId));
            });
}

void ECConsoleManager::clearECCommandItems(KeyboardType type)
{
    std::vector<ECCommandItemList> cleared; // destroyed after the lock
    const auto clear = [&cleared](Internal::ScreenId, ECCommandItemList& items) {
        cleared.push_back(std::exchange(items, {}));
    };
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    Internal::forEachList(d->baseDeviceECCommandItems, type, clear);
    for (auto& device : d->m_deviceECCmdItemsList)
        Internal::forEachList(device.second, type, clear);
}

void ECConsoleManager::initDeviceECCommandItems(const QString& ip)
{
    if (ip.isEmpty()) {
        ecWarning(lcPaint, "A device without an address gets no items.");
        return;
    }
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    const auto [device, isNew] = d->m_deviceECCmdItemsList.try_emplace(ip);
    if (!isNew)
        return;
    for (const KeyboardType type : {KeyboardType::Screen, KeyboardType::Input, KeyboardType::Preset})
        device->second[{type, {}}] = d->copiesLocked(type);
}

void ECConsoleManager::updateECCommandItems(const QString& previousIp, const QString& currentIp)
{
    Internal::ItemLists replaced; // destroyed after the lock
    {
        const std::unique_lock lock(d->m_deviceECCmdItemMtx);
        const auto previous = d->m_deviceECCmdItemsList.find(previousIp);
        if (previous != d->m_deviceECCmdItemsList.end()) {
            replaced = std::move(previous->second);
            d->m_deviceECCmdItemsList.erase(previous);
            replaced.swap(d->m_deviceECCmdItemsList[currentIp]);
            return;
        }
    }
    ecWarning(
        lcPaint, "Can not find pre device ip command items info... Pre IP : %s Current IP: %s",
        qUtf8Printable(previousIp), qUtf8Printable(currentIp));
}

void ECConsoleManager::removeDeviceEcCommandItems(const QString& ip)
{
    decltype(d->m_deviceECCmdItemsList)::node_type removed; // destroyed after the lock
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    removed = d->m_deviceECCmdItemsList.extract(ip);
}

ECCommandItemList ECConsoleManager::screenECCommandItems(const QString& ip) const
{
    return d->view(ip, KeyboardType::Screen);
}

ECCommandItemList ECConsoleManager::inputECCommandItems(const QString& ip) const
{
    return d->view(ip, KeyboardType::Input);
}

ECCommandItemList ECConsoleManager::presetECCommandItems(const QString& ip) const
{
    return d->view(ip, KeyboardType::Preset);
}

void ECConsoleManager::layerECCommandItems(
    const QString& ip, quint32 screenId, ECCommandItemList& items) const
{
    items = d->view(ip, KeyboardType::Layer, screenId);
}

ECCommandItemList ECConsoleManager::presetECCommandExItems() const
{
    return d->view({}, KeyboardType::PresetEx);
}

ECCommandItemPtr ECConsoleManager::findEcCommandItem(
    const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const
{
    return firstOf(d->items(ip, type), Internal::isAt(orderIndex, pageIndex));
}

ECCommandItemPtr ECConsoleManager::findEcCommandItem(
    const ECObjectIdList& ids, const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const
{
    return Internal::itemForIds(d->items(ip, type, ids.value(0).first), type, ids, orderIndex, pageIndex);
}

ECCommandItemPtr ECConsoleManager::findPresetEcCmdExItem(
    KeyboardType type, int orderIndex, int pageIndex) const
{
    return type == KeyboardType::PresetEx ? findEcCommandItem({}, type, orderIndex, pageIndex) : nullptr;
}

ECObjectIdList ECConsoleManager::findBindingObject(const QString& ip, KeyboardType type, int index) const
{
    return Internal::objectsOf(firstOf(d->items(ip, type), Internal::isButton(index)));
}

ECObjectIdList ECConsoleManager::findBindingObject(
    const QString& ip, KeyboardType type, int index, quint64 serverId) const
{
    const auto isWanted = [isButton = Internal::isButton(index), isOfServer = Internal::isOfServer(serverId)](
                              const Values& values) { return isButton(values) && isOfServer(values); };
    return Internal::objectsOf(firstOf(d->items(ip, type, serverId), isWanted));
}

int ECConsoleManager::findBindingButtonIndex(const QString& ip, KeyboardType type, const ECObjectId& id) const
{
    const ECCommandItemPtr item = findBindingECItem(ip, type, id);
    return item ? item->ecButtonIndex() : -1;
}

ECCommandItemPtr ECConsoleManager::findBindingECItem(
    const QString& ip, KeyboardType type, const ECObjectId& id) const
{
    return firstOf(d->items(ip, type, id.first), Internal::isBoundTo(id));
}

ECCommandItemPtr ECConsoleManager::updateECButtonData(
    const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
    const ECObjectIdList& ids)
{
    return bindItem(ip, type, orderIndex, buttonIndex, pageIndex, ids, {});
}

ECCommandItemPtr ECConsoleManager::updateECButtonData(
    const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
    const ECObjectIdList& ids, ECLEDColor color)
{
    return bindItem(ip, type, orderIndex, buttonIndex, pageIndex, ids, {color, {}, {}});
}

ECCommandItemPtr ECConsoleManager::updateECButtonData(
    const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
    const ECObjectIdList& ids, ECLEDColor color, const QString& text, bool blink)
{
    return bindItem(ip, type, orderIndex, buttonIndex, pageIndex, ids, {color, text, blink});
}

ECCommandItemPtr ECConsoleManager::bindItem(
    const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
    const ECObjectIdList& ids, const Internal::KeyLook& look)
{
    return d->change(
        ip, type,
        [&](const ECCommandItemList& items) {
            ECCommandItemPtr item = Internal::itemForIds(items, type, ids, orderIndex, pageIndex);
            if (item)
                ECCommandItemPrivate::of(*item).change(
                    [&](Values& values) { values.bind(type, ids, buttonIndex, look); });
            return item;
        },
        ids.value(0).first);
}

ECCommandItemPtr ECConsoleManager::resetECButtonData(
    const QString& ip, KeyboardType type, const ECObjectId& id, ECLEDColor color)
{
    return d->change(
        ip, type,
        [&](const ECCommandItemList& items) {
            ECCommandItemPtr item = firstOf(items, Internal::isBoundTo(id));
            // Checked once more under the item's lock: it can be unbound past the store.
            const bool isReset = item && ECCommandItemPrivate::of(*item).change([&](Values& values) {
                if (!values.m_objectIdList.contains(id))
                    return false;
                values.reset(type, color);
                return true;
            });
            return isReset ? item : nullptr;
        },
        id.first);
}

void ECConsoleManager::resetECCommandItems(const QString& ip, KeyboardType type)
{
    d->change(ip, type, [&](const ECCommandItemList& items) {
        for (const ECCommandItemPtr& item : items)
            item->resetECCommandItem(type);
    });
}

void ECConsoleManager::resetECCommandItems(const QString& ip, KeyboardType type, quint32 id)
{
    const auto items = d->items(ip, type);
    const auto left = std::count_if(items.cbegin(), items.cend(), [&](const ECCommandItemPtr& item) {
        return !ECCommandItemPrivate::of(*item).read(Internal::isOfServer(id));
    });
    ecDebug(lcPaint, "ec items has been ereased... left size:%d", int(left));
}

void ECConsoleManager::initLayerECCommand(const QString& ip, KeyboardType type, quint32 screenId)
{
    if (type != KeyboardType::Layer) {
        ecWarning(lcPaint, "Items of keyboard type %d are not made per screen.", int(type));
        return;
    }
    {
        const std::unique_lock lock(d->m_deviceECCmdItemMtx);
        const auto device = d->m_deviceECCmdItemsList.find(ip);
        if (device != d->m_deviceECCmdItemsList.end()) {
            const auto [layers, isNew] = device->second.try_emplace({type, screenId});
            if (isNew)
                layers->second = d->copiesLocked(type, screenId);
            return;
        }
    }
    ecWarning(
        lcPaint, "Screen %u gets no layer items: there are none for its device %s.", screenId,
        qUtf8Printable(ip));
}

void ECConsoleManager::removeECCommandLayerItems(const QString& ip, quint32 screenId)
{
    Internal::ItemLists::node_type removed; // destroyed after the lock
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    const auto device = d->m_deviceECCmdItemsList.find(ip);
    if (device != d->m_deviceECCmdItemsList.end())
        removed = device->second.extract({KeyboardType::Layer, screenId});
}

void ECConsoleManager::resetECCommandLayerItems(const QString& ip, quint32 screenId)
{
    d->change(
        ip, KeyboardType::Layer,
        [](const ECCommandItemList& items) {
            for (const ECCommandItemPtr& item : items)
                item->resetECCommandItem(KeyboardType::Layer);
        },
        screenId);
}

ECCommandItemList ECConsoleManager::getPresetExItems() const
{
    return presetECCommandExItems();
}

ECCommandItemPtr ECConsoleManager::appendECButtonData(
    KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id, const QString& name,
    ECLEDColor color)
{
    return d->changePresetEx(
        type, orderIndex, pageIndex, [&](Values& values) { values.addNamedObject(id, name, color); });
}

ECCommandItemPtr ECConsoleManager::removeECButtonData(
    KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id)
{
    return d->changePresetEx(type, orderIndex, pageIndex, [&](Values& values) {
        values.removeNamedObjects([&](const ECObjectId& bound) { return bound == id; });
    });
}

void ECConsoleManager::resetPresetExItems(KeyboardType type)
{
    if (type == KeyboardType::PresetEx)
        resetECCommandItems({}, type);
}

void ECConsoleManager::resetPresetExItems(KeyboardType type, int pageIndex, int orderIndex)
{
    d->changePresetEx(
        type, orderIndex, pageIndex, [&](Values& values) { values.reset(type, ECLEDColor::Off); });
}

void ECConsoleManager::resetPresetExItems(KeyboardType type, quint64 serverId)
{
    if (type != KeyboardType::PresetEx)
        return;
    d->change({}, type, [&](const ECCommandItemList& items) {
        for (const ECCommandItemPtr& item : items)
            ECCommandItemPrivate::of(*item).change([&](Values& values) {
                if (Internal::isOfServer(serverId)(values))
                    values.reset(type, ECLEDColor::Off);
            });
    });
}

bool ECConsoleManager::resetPresetExDataByServerId(KeyboardType type, quint64 serverId)
{
    if (type != KeyboardType::PresetEx)
        return false;
    const QList<QString> texts = d->change({}, type, [&](const ECCommandItemList& items) {
        QList<QString> shown;
        for (const ECCommandItemPtr& item : items)
            shown.append(ECCommandItemPrivate::of(*item).change([&](Values& values) {
                values.removeNamedObjects([&](const ECObjectId& bound) { return bound.first == serverId; });
                return values.m_strOLEDText;
            }));
        return shown;
    });
    for (const QString& text : texts)
        ecDebug(lcPaint, "ecOledText:%s", qUtf8Printable(text));
    return true;
}

bool ECConsoleManager::updatePresetExItemText(int pageIndex, int orderIndex, const QString& text)
{
    QString shown = text;
    return d->changePresetEx(KeyboardType::PresetEx, orderIndex, pageIndex, [&](Values& values) {
        values.m_strOLEDText.swap(shown);
    }) != nullptr;
}

bool ECConsoleManager::isBindingPresetExObject(const ECObjectId& id) const
{
    return findBindingECItem({}, KeyboardType::PresetEx, id) != nullptr;
}

} // namespace Orvane::ECProxy::Client

#include "ecconsolemanager.h"

#include "eccommanditem_p.h"
#include "eccommanditemindex_p.h"
#include "log_p.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

/// The live items of one keyboard type and their index.
struct IndexedItems {
    ECCommandItemList list;
    std::shared_ptr<ECCommandItemIndex> index = std::make_shared<ECCommandItemIndex>();

    void append(const ECCommandItemPtr& item)
    {
        ECCommandItemPrivate::attach(index, item);
        list.append(item);
    }

    /// `items` are in the order of the list.
    void remove(const ECCommandItemList& items)
    {
        auto next = items.cbegin();
        ECCommandItemList kept;
        for (const ECCommandItemPtr& item : qAsConst(list)) {
            if (next == items.cend() || item != *next) {
                kept.append(item);
                continue;
            }
            ECCommandItemPrivate::detach(item);
            ++next;
        }
        list.swap(kept);
    }
};

/// The items of one device. The base set, which is only copied from, leaves its indexes empty.
struct DeviceECCommandItems {
    IndexedItems screenItems;
    IndexedItems layerItems;
    IndexedItems inputItems;
    IndexedItems presetItems;
    // The screens that have layer items of their own.
    QList<quint32> layerScreens;

    /// Null for a type that no device has a list of.
    IndexedItems* ofType(KeyboardType type)
    {
        switch (type) {
        case KeyboardType::Screen:
            return &screenItems;
        case KeyboardType::Layer:
            return &layerItems;
        case KeyboardType::Input:
            return &inputItems;
        case KeyboardType::Preset:
            return &presetItems;
        case KeyboardType::PresetEx:
            break;
        }
        return nullptr;
    }

    /// Appends this set's own copy of a registered item; of a layer item, a free one for each screen.
    void appendCopy(KeyboardType type, const ECCommandItem& base)
    {
        if (type == KeyboardType::Layer) {
            for (const quint32 screenId : qAsConst(layerScreens))
                appendLayerCopy(base, screenId);
        } else if (IndexedItems* const items = ofType(type)) {
            items->append(std::make_shared<ECCommandItem>(base));
        }
    }

    void appendLayerCopy(const ECCommandItem& base, quint32 screenId)
    {
        const auto item = std::make_shared<ECCommandItem>(base);
        item->appendObjectData({screenId, Constants::UnboundLayerIndex});
        layerItems.append(item);
    }
};

class ECConsoleManagerPrivate {
public:
    explicit ECConsoleManagerPrivate(ECConsoleManager* manager)
        : m_pConsoleManager(manager)
    {
    }

    /// What `operation` returns on the items of the device and type, with the store locked for reading or
    /// for a change; the result's default when the device has no set.
    template <typename Operation> auto read(const QString& ip, KeyboardType type, Operation operation)
    {
        const std::shared_lock lock(m_deviceECCmdItemMtx);
        return onItems(itemsOf(ip, type), operation);
    }
    template <typename Operation> auto change(const QString& ip, KeyboardType type, Operation operation)
    {
        const std::unique_lock lock(m_deviceECCmdItemMtx);
        return onItems(itemsOf(ip, type), operation);
    }

    ECCommandItemList view(const QString& ip, KeyboardType type);

    // The caller holds m_deviceECCmdItemMtx.
    DeviceECCommandItems* deviceItems(const QString& ip);
    bool takeDevice(const QString& ip, DeviceECCommandItems& items);
    IndexedItems* itemsOf(const QString& ip, KeyboardType type);
    ECCommandItemList baseItems(KeyboardType type);

    ECConsoleManager* const m_pConsoleManager;

    // Guards all that follows. Whoever changes items through the store holds it exclusively from finding the
    // item to the end of the change, so that two such changes never mix. Nothing is logged and no item
    // destroyed under it.
    std::shared_mutex m_deviceECCmdItemMtx;
    DeviceECCommandItems baseDeviceECCommandItems;
    IndexedItems presetECCommandExItems;
    // Not a QList: several readers walk it at once, and each would give an empty one data of its own.
    std::list<std::pair<QString, DeviceECCommandItems>> m_deviceECCmdItemsList;

private:
    template <typename Operation>
    static auto onItems(IndexedItems* items, Operation operation) -> decltype(operation(*items))
    {
        using Result = decltype(operation(*items));
        return items ? operation(*items) : Result();
    }
};

DeviceECCommandItems* ECConsoleManagerPrivate::deviceItems(const QString& ip)
{
    for (auto& device : m_deviceECCmdItemsList) {
        if (device.first == ip)
            return &device.second;
    }
    return nullptr;
}

/// Takes the device's set out of the store. False, and `items` is left alone, when there is none.
bool ECConsoleManagerPrivate::takeDevice(const QString& ip, DeviceECCommandItems& items)
{
    const auto found =
        std::find_if(m_deviceECCmdItemsList.begin(), m_deviceECCmdItemsList.end(), [&](const auto& device) {
            return device.first == ip;
        });
    if (found == m_deviceECCmdItemsList.end())
        return false;
    items = std::move(found->second);
    m_deviceECCmdItemsList.erase(found);
    return true;
}

IndexedItems* ECConsoleManagerPrivate::itemsOf(const QString& ip, KeyboardType type)
{
    if (type == KeyboardType::PresetEx)
        return &presetECCommandExItems;
    DeviceECCommandItems* const device = deviceItems(ip);
    return device ? device->ofType(type) : nullptr;
}

ECCommandItemList ECConsoleManagerPrivate::baseItems(KeyboardType type)
{
    const IndexedItems* const items = baseDeviceECCommandItems.ofType(type);
    return items ? items->list : ECCommandItemList();
}

namespace {

ECCommandItemList copiesOf(const ECCommandItemList& items)
{
    ECCommandItemList copies;
    copies.reserve(items.size());
    for (const ECCommandItemPtr& item : items)
        copies.append(std::make_shared<ECCommandItem>(*item));
    return copies;
}

/// The item that a binding of `ids` at that place belongs to.
ECCommandItemPtr itemForIds(
    const IndexedItems& items, KeyboardType type, const ECObjectIdList& ids, int orderIndex, int pageIndex)
{
    if (ids.isEmpty())
        return {};
    if (type != KeyboardType::Layer)
        return items.index->firstAt(pageIndex, orderIndex);
    const ECObjectId layer = ids.first();
    return items.index->firstAt(pageIndex, orderIndex, {layer, {layer.first, Constants::UnboundLayerIndex}});
}

ECObjectIdList objectsOfButton(const ECCommandItemList& items, int buttonIndex)
{
    for (const ECCommandItemPtr& item : items) {
        if (item->isBindKeyPad(buttonIndex))
            return item->getObjectIdList();
    }
    return {};
}

} // namespace

ECCommandItemList ECConsoleManagerPrivate::view(const QString& ip, KeyboardType type)
{
    ECCommandItemList base;
    {
        const std::shared_lock lock(m_deviceECCmdItemMtx);
        if (const IndexedItems* const items = itemsOf(ip, type))
            return items->list;
        base = baseItems(type);
    }
    return copiesOf(base);
}

} // namespace Internal

using Internal::DeviceECCommandItems;
using Values = Internal::ECCommandItemValues;
using Internal::IndexedItems;

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
    {
        const std::unique_lock lock(d->m_deviceECCmdItemMtx);
        if (type == KeyboardType::PresetEx) {
            d->presetECCommandExItems.append(item);
            return;
        }
        if (IndexedItems* const items = d->baseDeviceECCommandItems.ofType(type)) {
            items->list.append(item);
            for (auto& device : d->m_deviceECCmdItemsList)
                device.second.appendCopy(type, *item);
            return;
        }
    }
    ecWarning(lcPaint, " ERR Plugin Type :%d", int(type));
}

void ECConsoleManager::clearECCommandItems(KeyboardType type)
{
    std::vector<IndexedItems> cleared; // destroyed after the lock
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    const auto clear = [&cleared](IndexedItems* items) {
        if (items)
            cleared.push_back(std::exchange(*items, {}));
    };
    if (type == KeyboardType::PresetEx) {
        clear(&d->presetECCommandExItems);
        return;
    }
    clear(d->baseDeviceECCommandItems.ofType(type));
    for (auto& device : d->m_deviceECCmdItemsList)
        clear(device.second.ofType(type));
}

void ECConsoleManager::initDeviceECCommandItems(const QString& ip)
{
    if (ip.isEmpty()) {
        ecWarning(lcPaint, "A device without an address gets no items.");
        return;
    }
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    if (d->deviceItems(ip))
        return;
    DeviceECCommandItems device;
    for (const KeyboardType type : {KeyboardType::Screen, KeyboardType::Input, KeyboardType::Preset}) {
        const ECCommandItemList base = d->baseItems(type);
        for (const ECCommandItemPtr& item : base)
            device.appendCopy(type, *item);
    }
    d->m_deviceECCmdItemsList.emplace_back(ip, std::move(device));
}

void ECConsoleManager::updateECCommandItems(const QString& previousIp, const QString& currentIp)
{
    DeviceECCommandItems replaced;
    {
        const std::unique_lock lock(d->m_deviceECCmdItemMtx);
        DeviceECCommandItems moved;
        if (d->takeDevice(previousIp, moved)) {
            d->takeDevice(currentIp, replaced);
            d->m_deviceECCmdItemsList.emplace_back(currentIp, std::move(moved));
            return;
        }
    }
    ecWarning(
        lcPaint, "Can not find pre device ip command items info... Pre IP : %s Current IP: %s",
        qUtf8Printable(previousIp), qUtf8Printable(currentIp));
}

void ECConsoleManager::removeDeviceEcCommandItems(const QString& ip)
{
    DeviceECCommandItems removed;
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    d->takeDevice(ip, removed);
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
    ECCommandItemList found;
    bool known = false;
    {
        const std::shared_lock lock(d->m_deviceECCmdItemMtx);
        DeviceECCommandItems* const device = d->deviceItems(ip);
        known = device != nullptr;
        found = known ? device->layerItems.index->allOfServer(screenId)
                      : d->baseDeviceECCommandItems.layerItems.list;
    }
    items = known ? found : Internal::copiesOf(found);
}

ECCommandItemList ECConsoleManager::presetECCommandExItems() const
{
    return d->view({}, KeyboardType::PresetEx);
}

ECCommandItemPtr ECConsoleManager::findEcCommandItem(
    const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const
{
    return d->read(
        ip, type, [&](const IndexedItems& items) { return items.index->firstAt(pageIndex, orderIndex); });
}

ECCommandItemPtr ECConsoleManager::findEcCommandItem(
    const ECObjectIdList& ids, const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const
{
    return d->read(ip, type, [&](const IndexedItems& items) {
        return Internal::itemForIds(items, type, ids, orderIndex, pageIndex);
    });
}

ECCommandItemPtr ECConsoleManager::findPresetEcCmdExItem(
    KeyboardType type, int orderIndex, int pageIndex) const
{
    return type == KeyboardType::PresetEx ? findEcCommandItem({}, type, orderIndex, pageIndex) : nullptr;
}

ECObjectIdList ECConsoleManager::findBindingObject(const QString& ip, KeyboardType type, int index) const
{
    return Internal::objectsOfButton(
        d->read(ip, type, [](const IndexedItems& items) { return items.list; }), index);
}

ECObjectIdList ECConsoleManager::findBindingObject(
    const QString& ip, KeyboardType type, int index, quint64 serverId) const
{
    return Internal::objectsOfButton(
        d->read(ip, type, [&](const IndexedItems& items) { return items.index->allOfServer(serverId); }),
        index);
}

int ECConsoleManager::findBindingButtonIndex(const QString& ip, KeyboardType type, const ECObjectId& id) const
{
    const ECCommandItemPtr item = findBindingECItem(ip, type, id);
    return item ? item->ecButtonIndex() : -1;
}

ECCommandItemPtr ECConsoleManager::findBindingECItem(
    const QString& ip, KeyboardType type, const ECObjectId& id) const
{
    return d->read(ip, type, [&](const IndexedItems& items) { return items.index->firstBoundTo(id); });
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
    return d->change(ip, type, [&](const IndexedItems& items) {
        ECCommandItemPtr item = Internal::itemForIds(items, type, ids, orderIndex, pageIndex);
        if (item)
            item->d->change([&](Values& values) { values.bind(type, ids, buttonIndex, look); });
        return item;
    });
}

ECCommandItemPtr ECConsoleManager::resetECButtonData(
    const QString& ip, KeyboardType type, const ECObjectId& id, ECLEDColor color)
{
    return d->change(ip, type, [&](const IndexedItems& items) {
        ECCommandItemPtr item = items.index->firstBoundTo(id);
        // Checked once more under the item's lock: it can be unbound past the store.
        const bool isReset = item && item->d->change([&](Values& values) {
            if (!values.m_objectIdList.contains(id))
                return false;
            values.reset(type, color);
            return true;
        });
        return isReset ? item : nullptr;
    });
}

void ECConsoleManager::resetECCommandItems(const QString& ip, KeyboardType type)
{
    d->change(ip, type, [&](const IndexedItems& items) {
        for (const ECCommandItemPtr& item : items.list)
            item->resetECCommandItem(type);
    });
}

void ECConsoleManager::resetECCommandItems(const QString& ip, KeyboardType type, quint32 id)
{
    const int left = d->read(ip, type, [&](const IndexedItems& items) {
        return items.list.size() - items.index->allOfServer(id).size();
    });
    ecDebug(lcPaint, "ec items has been ereased... left size:%d", left);
}

void ECConsoleManager::initLayerECCommand(const QString& ip, KeyboardType type, quint32 screenId)
{
    if (type != KeyboardType::Layer) {
        ecWarning(lcPaint, "Items of keyboard type %d are not made per screen.", int(type));
        return;
    }
    {
        const std::unique_lock lock(d->m_deviceECCmdItemMtx);
        if (DeviceECCommandItems* const device = d->deviceItems(ip)) {
            if (device->layerScreens.contains(screenId))
                return;
            device->layerScreens.append(screenId);
            for (const ECCommandItemPtr& item : qAsConst(d->baseDeviceECCommandItems.layerItems.list))
                device->appendLayerCopy(*item, screenId);
            return;
        }
    }
    ecWarning(
        lcPaint, "Screen %u gets no layer items: there are none for its device %s.", screenId,
        qUtf8Printable(ip));
}

void ECConsoleManager::removeECCommandLayerItems(const QString& ip, quint32 screenId)
{
    ECCommandItemList removed;
    const std::unique_lock lock(d->m_deviceECCmdItemMtx);
    DeviceECCommandItems* const device = d->deviceItems(ip);
    if (!device)
        return;
    device->layerScreens.removeOne(screenId);
    removed = device->layerItems.index->allOfServer(screenId);
    device->layerItems.remove(removed);
}

void ECConsoleManager::resetECCommandLayerItems(const QString& ip, quint32 screenId)
{
    d->change(ip, KeyboardType::Layer, [&](const IndexedItems& items) {
        const ECCommandItemList ofScreen = items.index->allOfServer(screenId);
        for (const ECCommandItemPtr& item : ofScreen)
            item->resetECCommandItem(KeyboardType::Layer);
    });
}

ECCommandItemList ECConsoleManager::getPresetExItems() const
{
    return presetECCommandExItems();
}

ECCommandItemPtr ECConsoleManager::appendECButtonData(
    KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id, const QString& name,
    ECLEDColor color)
{
    if (type != KeyboardType::PresetEx)
        return {};
    return d->change({}, type, [&](const IndexedItems& items) {
        ECCommandItemPtr item = items.index->firstAt(pageIndex, orderIndex);
        if (item)
            item->d->change([&](Values& values) { values.addNamedObject(id, name, color); });
        return item;
    });
}

ECCommandItemPtr ECConsoleManager::removeECButtonData(
    KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id)
{
    if (type != KeyboardType::PresetEx)
        return {};
    return d->change({}, type, [&](const IndexedItems& items) {
        ECCommandItemPtr item = items.index->firstAt(pageIndex, orderIndex);
        if (item)
            item->d->change([&](Values& values) {
                values.removeNamedObjects([&](const ECObjectId& bound) { return bound == id; });
            });
        return item;
    });
}

void ECConsoleManager::resetPresetExItems(KeyboardType type)
{
    if (type == KeyboardType::PresetEx)
        resetECCommandItems({}, type);
}

void ECConsoleManager::resetPresetExItems(KeyboardType type, int pageIndex, int orderIndex)
{
    if (type != KeyboardType::PresetEx)
        return;
    d->change({}, type, [&](const IndexedItems& items) {
        if (const ECCommandItemPtr item = items.index->firstAt(pageIndex, orderIndex))
            item->resetECCommandItem();
    });
}

void ECConsoleManager::resetPresetExItems(KeyboardType type, quint64 serverId)
{
    if (type != KeyboardType::PresetEx)
        return;
    d->change({}, type, [&](const IndexedItems& items) {
        const ECCommandItemList bound = items.index->allOfServer(serverId);
        for (const ECCommandItemPtr& item : bound)
            item->resetECCommandItem();
    });
}

bool ECConsoleManager::resetPresetExDataByServerId(KeyboardType type, quint64 serverId)
{
    if (type != KeyboardType::PresetEx)
        return false;
    const QList<QString> texts = d->change({}, type, [&](const IndexedItems& items) {
        QList<QString> shown;
        for (const ECCommandItemPtr& item : items.list)
            shown.append(item->d->change([&](Values& values) {
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
    return d->change({}, KeyboardType::PresetEx, [&](const IndexedItems& items) {
        const ECCommandItemPtr item = items.index->firstAt(pageIndex, orderIndex);
        if (item)
            item->setECOledText(text);
        return item != nullptr;
    });
}

bool ECConsoleManager::isBindingPresetExObject(const ECObjectId& id) const
{
    return findBindingECItem({}, KeyboardType::PresetEx, id) != nullptr;
}

} // namespace Orvane::ECProxy::Client

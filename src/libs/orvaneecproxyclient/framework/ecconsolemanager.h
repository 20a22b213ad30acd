#pragma once

#include "eccommanditem.h"

#include <QObject>

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECConsoleManagerPrivate;
struct KeyLook;
} // namespace Internal

/// The store of all key items: one set for each device, so that a device's keys look as they did when the
/// operator comes back to it.
///
/// Call order: the commands register their items with `appendECCommandItem`; a device gets its set, copies
/// of the registered items, with `initDeviceECCommandItems`; each of its screens gets its layer items with
/// `initLayerECCommand`. Items that are registered later reach the existing sets as well.
///
/// A device is named by the text that `ipMacSn()` gives, which means nothing to the store. Pages and order
/// indexes count from 0. Operations that name a device return empty (-1, false, no change) when it has no
/// set, except where they say otherwise. `PresetEx` items have one set for all devices: operations on that
/// type ignore the device.
///
/// Every operation may be called from any thread. Items that are handed out are live: they show and change
/// what the store holds.
class ORVANEECPROXYCLIENT_EXPORT ECConsoleManager : public QObject {
    Q_OBJECT
public:
    /// Created on first use, destroyed at the exit of the process.
    static ECConsoleManager* instance();
    ~ECConsoleManager() override;

    /// Registers an item, behind those of its type that are there already. Refuses an unknown type and an
    /// empty pointer with a warning.
    void appendECCommandItem(KeyboardType type, const std::shared_ptr<ECCommandItem>& item);
    /// Forgets the registered items of a type and those of every set: another keyboard is going to be
    /// registered. Items that somebody still holds live on outside the store.
    void clearECCommandItems(KeyboardType type);

    /// Gives the device its set, unless it has one. An empty name is refused with a warning.
    void initDeviceECCommandItems(const QString& ip);
    /// The device called `previousIp` is called `currentIp` from now on; its set replaces any that was
    /// begun under the new name. A device without a set changes nothing and is logged.
    void updateECCommandItems(const QString& previousIp, const QString& currentIp);
    /// Drops the set of a device that is gone.
    void removeDeviceEcCommandItems(const QString& ip);

    /// The items of one type in the order of their registration, which is by page and by order within the
    /// page. A device without a set gives fresh unbound copies of the registered items, so that its keys can
    /// be painted dark.
    /// @{
    ECCommandItemList screenECCommandItems(const QString& ip) const;
    ECCommandItemList inputECCommandItems(const QString& ip) const;
    ECCommandItemList presetECCommandItems(const QString& ip) const;
    /// Puts the layer items of one screen into `items`: none for a screen without `initLayerECCommand`.
    void layerECCommandItems(const QString& ip, quint32 screenId, ECCommandItemList& items) const;
    ECCommandItemList presetECCommandExItems() const;
    /// @}

    /// The first item on that page with that order index.
    std::shared_ptr<ECCommandItem> findEcCommandItem(
        const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const;
    /// As above, for binding `ids`: none for an empty list. A `Layer` item must belong to the screen of the
    /// first id and be free or bound to the layer of that id.
    std::shared_ptr<ECCommandItem> findEcCommandItem(
        const ECObjectIdList& ids, const QString& ip, KeyboardType type, int orderIndex, int pageIndex) const;
    /// As the first, among the `PresetEx` items; none for another type.
    std::shared_ptr<ECCommandItem> findPresetEcCmdExItem(
        KeyboardType type, int orderIndex, int pageIndex) const;

    /// The objects bound to the first item with that button index.
    ECObjectIdList findBindingObject(const QString& ip, KeyboardType type, int index) const;
    /// As above, among the items bound to an object with that server id; for layer keys, whose button
    /// indexes repeat with every screen.
    ECObjectIdList findBindingObject(const QString& ip, KeyboardType type, int index, quint64 serverId) const;
    /// The button index of the first item bound to the object; -1 when there is none.
    int findBindingButtonIndex(const QString& ip, KeyboardType type, const ECObjectId& id) const;
    /// The first item bound to the object; empty when there is none.
    std::shared_ptr<ECCommandItem> findBindingECItem(
        const QString& ip, KeyboardType type, const ECObjectId& id) const;

    /// Binds the item that `findEcCommandItem` gives for these arguments and returns it. A `Layer` item ends
    /// bound to the last id alone, any other keeps the objects that it was bound to. The longer forms set
    /// the key's looks too.
    /// @{
    std::shared_ptr<ECCommandItem> updateECButtonData(
        const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
        const ECObjectIdList& ids);
    std::shared_ptr<ECCommandItem> updateECButtonData(
        const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
        const ECObjectIdList& ids, ECLEDColor color);
    std::shared_ptr<ECCommandItem> updateECButtonData(
        const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
        const ECObjectIdList& ids, ECLEDColor color, const QString& text, bool blink);
    /// @}
    /// Unbinds the first item bound to the object, leaves it in `color` and returns it.
    std::shared_ptr<ECCommandItem> resetECButtonData(
        const QString& ip, KeyboardType type, const ECObjectId& id, ECLEDColor color = ECLEDColor::Off);

    /// Unbinds every item of the type; layer items stay with their screens.
    void resetECCommandItems(const QString& ip, KeyboardType type);
    /// Only logs how many items of the type are not bound to an object with the server id `id`: the items
    /// in the store stay as they are.
    void resetECCommandItems(const QString& ip, KeyboardType type, quint32 id);

    /// Gives a screen its own free copies of the registered layer items, unless it has them. Another type
    /// than `Layer`, or a device without a set, is refused with a warning.
    void initLayerECCommand(const QString& ip, KeyboardType type, quint32 screenId);
    /// Drops the layer items of a screen that is gone.
    void removeECCommandLayerItems(const QString& ip, quint32 screenId);
    /// Unbinds the layer items of a screen; they stay the screen's.
    void resetECCommandLayerItems(const QString& ip, quint32 screenId);

    // The preset extension's keys. Those with a type handle `PresetEx` alone: another type changes nothing
    // and returns empty or false.

    /// The same list as `presetECCommandExItems`.
    ECCommandItemList getPresetExItems() const;
    /// Binds one more object to a key, with the name behind the others on its label; returns the item. The
    /// name is added even when the object is bound already.
    std::shared_ptr<ECCommandItem> appendECButtonData(
        KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id, const QString& name,
        ECLEDColor color);
    /// Takes one object and its name from a key, which goes dark when nothing is left; returns the item.
    std::shared_ptr<ECCommandItem> removeECButtonData(
        KeyboardType type, int orderIndex, int pageIndex, const ECObjectId& id);
    /// Unbinds all keys, the key at one place, or the keys bound to an object with that server id.
    /// @{
    void resetPresetExItems(KeyboardType type);
    void resetPresetExItems(KeyboardType type, int pageIndex, int orderIndex);
    void resetPresetExItems(KeyboardType type, quint64 serverId);
    /// @}
    /// Takes the objects of one server, with their names, from all keys and renews every label; keys that
    /// are left without an object go dark. False only for another type.
    bool resetPresetExDataByServerId(KeyboardType type, quint64 serverId);
    /// Writes the label of a key; false when there is no key at that place.
    bool updatePresetExItemText(int pageIndex, int orderIndex, const QString& text);
    /// Whether a key is bound to the object.
    bool isBindingPresetExObject(const ECObjectId& id) const;

private:
    ECConsoleManager();

    std::shared_ptr<ECCommandItem> bindItem(
        const QString& ip, KeyboardType type, int orderIndex, int buttonIndex, int pageIndex,
        const ECObjectIdList& ids, const Internal::KeyLook& look);

    const std::unique_ptr<Internal::ECConsoleManagerPrivate> d;
};

} // namespace Orvane::ECProxy::Client

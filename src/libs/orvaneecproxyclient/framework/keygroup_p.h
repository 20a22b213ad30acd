#pragma once

#include "eccommanditem.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace Orvane::EC {
struct s_ECButtonConfig;
struct s_ECCommandConfig;
} // namespace Orvane::EC

namespace Orvane::ECProxy::Client {

class ECConsoleManager;

namespace Internal {

/// A place among the select keys of a group.
struct KeyPlace {
    int buttonIndex = -1; ///< in the whole list: page by page, by order index within a page
    int orderIndex = -1;
    int pageIndex = 0;
};

/// The select keys of a group (screens, layers, inputs, presets, digits) and the items on them.
///
/// The keys come with the configuration. Their items are in the store, where each device has a set of them;
/// a group without a keyboard type keeps one set here.
///
/// Writers of items: an update reads the model, with no lock held, and then writes items. Of two of them side
/// by side, the one that read first could write last and leave the items behind the model. So an update that
/// another writer has overtaken reads the model once more. Every change of the model is announced and every
/// announcement brings an update: the items end up as the model does.
///
/// Any thread may call any member. A device is named as in the store.
class KeyGroup {
public:
    /// The keys with that function code; with code 0 all keys that have one.
    KeyGroup(std::optional<KeyboardType> type, quint16 selectKeyCode)
        : m_type(type)
        , m_selectKeyCode(selectKeyCode)
    {
    }

    // Keys, in the order of their place on a page.

    /// Takes the group's keys of `config`; none of an empty one.
    void collect(const std::shared_ptr<EC::s_ECCommandConfig>& config);
    /// Takes the keys and makes the items of all pages anew.
    void make(const std::shared_ptr<EC::s_ECCommandConfig>& config, int pageCount);

    /// The number of keys on a page.
    int pageSize() const;
    /// Empty when `index` is out of range or the configuration is gone.
    std::shared_ptr<EC::s_ECButtonConfig> button(int index) const;
    bool contains(quint32 ecKey) const;

    // Items.

    /// One unbound item for each key on each of `pageCount` pages, in the order of their button indexes.
    ECCommandItemList makeItems(int pageCount) const;
    /// The device's items; not for layer keys. A group that keeps its items ignores the device.
    ECCommandItemList items(const QString& ip = {}) const;
    KeyPlace placeOf(const ECCommandItem& item) const;
    /// The button index of the first of `items` that nothing is bound to, and its place on its page in
    /// `orderIndex`; -1 when every item is taken.
    int minUnusedButtonIndex(const ECCommandItemList& items, int& orderIndex) const;
    /// The objects bound to the first item with that button index.
    ECObjectIdList objectsOn(const QString& ip, int buttonIndex) const;
    /// The item at that place; empty when there is none.
    ECCommandItemPtr itemAt(const QString& ip, const KeyPlace& place) const;
    /// The first item bound to the object; empty when there is none.
    ECCommandItemPtr itemOf(const QString& ip, const ECObjectId& id) const;
    /// Writes the object's name to its item and returns it; empty when it has none.
    ECCommandItemPtr rename(const QString& ip, const ECObjectId& id, const QString& name);
    /// Gives the device its items, unless it has them.
    static void initDevice(const QString& ip);
    /// Unbinds all items of a device that is gone.
    void forgetDevice(const QString& ip);

    // Writing items.

    /// Passes what `readModel` returns to `writeItems` and returns the latter's result. `writeItems` runs
    /// under the lock: it changes items and calls nothing else.
    template <typename Read, typename Write> auto updateItems(Read readModel, Write writeItems)
    {
        for (;;) {
            const quint64 seen = m_nVersion;
            const auto model = readModel();
            const std::lock_guard<std::mutex> lock(m_itemsMutex);
            if (seen != m_nVersion)
                continue;
            ++m_nVersion;
            return writeItems(model);
        }
    }

    /// Writes items without asking the model; an update that is under way starts over.
    template <typename Write> auto writeItems(Write writeItems)
    {
        const std::lock_guard<std::mutex> lock(m_itemsMutex);
        ++m_nVersion;
        return writeItems();
    }

    /// Reads items while nobody is in the middle of writing them.
    template <typename Read> auto readItems(Read readItems) const
    {
        const std::lock_guard<std::mutex> lock(m_itemsMutex);
        return readItems();
    }

    // Only within `updateItems()` or `writeItems()`.

    /// Binds an item of the group to these objects alone and gives it its looks.
    void bind(
        const ECCommandItemPtr& item, const ECObjectIdList& ids, ECLEDColor color, const QString& text) const;
    /// Unbinds the object's item and returns it; empty when it has none.
    ECCommandItemPtr unbind(const QString& ip, const ECObjectId& id) const;
    void unbindAll(const QString& ip) const;

protected:
    static ECConsoleManager& store();

private:
    const std::optional<KeyboardType> m_type;
    const quint16 m_selectKeyCode;

    // m_itemsMutex guards the writing of the group's items, and of m_nVersion, the number of writers so far.
    mutable std::mutex m_itemsMutex;
    std::atomic<quint64> m_nVersion{0};

    // m_keysMutex, taken last, guards what follows.
    mutable std::mutex m_keysMutex;
    QList<std::weak_ptr<EC::s_ECButtonConfig>> m_buttons;
    ECCommandItemList m_ownItems;
};

} // namespace Internal

} // namespace Orvane::ECProxy::Client

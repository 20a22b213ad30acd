#pragma once

#include "ecconstants.h"

#include <initializer_list>
#include <memory>
#include <mutex>
#include <set>
#include <tuple>
#include <unordered_map>

namespace Orvane::ECProxy::Client {

class ECCommandItem;

namespace Internal {

/// Finds the items of one list by their place and by the objects bound to them, each in the time of a tree
/// lookup.
///
/// Items change through their own operations as well as through the store, so the items themselves report
/// every change here, under the lock that guards what changes: the index is never stale. "First" is first in
/// the order of `enter`. Any thread.
class ECCommandItemIndex {
public:
    using Rank = quint64;
    using ItemPtr = std::shared_ptr<ECCommandItem>;

    // The item's part, called under its lock. An item never waits for anything under the index's mutex.

    /// Enters an item behind those that are there and returns its rank.
    Rank enter(const ItemPtr& item, int pageIndex, int orderIndex, const ECObjectIdList& ids);
    void leave(Rank rank, int pageIndex, int orderIndex, const ECObjectIdList& ids);
    void moved(Rank rank, int fromPage, int fromOrder, int toPage, int toOrder);
    void rebound(Rank rank, const ECObjectIdList& from, const ECObjectIdList& to);

    /// The first item there; with `boundToAny`, the first that is bound to one of these objects.
    ItemPtr firstAt(int pageIndex, int orderIndex, std::initializer_list<ECObjectId> boundToAny = {}) const;
    ItemPtr firstBoundTo(const ECObjectId& id) const;
    /// All items bound to an object with that server id, in order.
    QList<ItemPtr> allOfServer(quint64 serverId) const;

private:
    ItemPtr itemLocked(Rank rank) const;

    // Guards all that follows. Taken last, behind the locks of the store and of an item.
    mutable std::mutex m_mtx;
    Rank m_nNextRank = 0;
    std::unordered_map<Rank, std::weak_ptr<ECCommandItem>> m_mapItems;
    // Page, order index, rank.
    std::set<std::tuple<int, int, Rank>> m_places;
    // Server id, index, rank.
    std::set<std::tuple<quint64, quint32, Rank>> m_bindings;
};

} // namespace Internal

} // namespace Orvane::ECProxy::Client

#pragma once

#include "eccommanditem.h"

#include <initializer_list>
#include <mutex>
#include <set>
#include <tuple>
#include <unordered_map>

namespace Orvane::ECProxy::Client::Internal {

/// Finds the items of one list by their place and by the objects bound to them, each in the time of a tree
/// lookup.
///
/// Items change through their own operations as well as through the store, so the items themselves report
/// every change here, under the lock that guards what changes: the index is never stale. "First" is first in
/// the order of `attach`. Any thread.
class ECCommandItemIndex {
public:
    /// Enters an item behind those that are there. An item stands in one index at a time: it leaves the one
    /// that it was in.
    static void attach(const std::shared_ptr<ECCommandItemIndex>& index, const ECCommandItemPtr& item);
    /// Takes the item out of the index that it is in, if any.
    static void detach(const ECCommandItemPtr& item);

    /// The first item there; with `boundToAny`, the first that is bound to one of these objects.
    ECCommandItemPtr firstAt(
        int pageIndex, int orderIndex, std::initializer_list<ECObjectId> boundToAny = {}) const;
    ECCommandItemPtr firstBoundTo(const ECObjectId& id) const;
    /// All items bound to an object with that server id, in order.
    ECCommandItemList allOfServer(quint64 serverId) const;

private:
    friend class ECCommandItemPrivate;

    using Rank = quint64;

    void leave(const ECCommandItemPrivate& item);
    // Reports of an item, made under its locks. An item never waits for anything under the index's mutex.
    void moved(Rank rank, int fromPage, int fromOrder, int toPage, int toOrder);
    void rebound(Rank rank, const ECObjectIdList& from, const ECObjectIdList& to);

    ECCommandItemPtr itemLocked(Rank rank) const;

    // Guards all that follows. Taken last, behind the locks of the store and of an item.
    mutable std::mutex m_mtx;
    Rank m_nNextRank = 0;
    std::unordered_map<Rank, std::weak_ptr<ECCommandItem>> m_mapItems;
    // Page, order index, rank.
    std::set<std::tuple<int, int, Rank>> m_places;
    // Server id, index, rank.
    std::set<std::tuple<quint64, quint32, Rank>> m_bindings;
};

} // namespace Orvane::ECProxy::Client::Internal

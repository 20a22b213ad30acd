#include "eccommanditemindex_p.h"

#include "eccommanditem_p.h"

#include <algorithm>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

void ECCommandItemIndex::attach(
    const std::shared_ptr<ECCommandItemIndex>& index, const ECCommandItemPtr& item)
{
    ECCommandItemPrivate& entered = *item->d;
    const std::unique_lock itemLock(entered.m_mutex);
    if (entered.m_pIndex)
        entered.m_pIndex->leave(entered);
    entered.m_pIndex = index;

    const std::lock_guard lock(index->m_mtx);
    const Rank rank = index->m_nNextRank++;
    entered.m_nIndexRank = rank;
    index->m_mapItems.emplace(rank, item);
    const ECCommandItemValues& values = entered.m_values;
    index->m_places.emplace(values.m_nECButtonPageIndex, values.m_nECButtonOrderIndex, rank);
    for (const ECObjectId& id : values.m_objectIdList)
        index->m_bindings.emplace(id.first, id.second, rank);
}

void ECCommandItemIndex::detach(const ECCommandItemPtr& item)
{
    std::shared_ptr<ECCommandItemIndex> index; // outlives the locks
    const std::unique_lock itemLock(item->d->m_mutex);
    index.swap(item->d->m_pIndex);
    if (index)
        index->leave(*item->d);
}

void ECCommandItemIndex::leave(const ECCommandItemPrivate& item)
{
    const std::lock_guard lock(m_mtx);
    const Rank rank = item.m_nIndexRank;
    const ECCommandItemValues& values = item.m_values;
    m_mapItems.erase(rank);
    m_places.erase({values.m_nECButtonPageIndex, values.m_nECButtonOrderIndex, rank});
    for (const ECObjectId& id : values.m_objectIdList)
        m_bindings.erase({id.first, id.second, rank});
}

void ECCommandItemIndex::moved(Rank rank, int fromPage, int fromOrder, int toPage, int toOrder)
{
    const std::lock_guard lock(m_mtx);
    m_places.erase({fromPage, fromOrder, rank});
    m_places.emplace(toPage, toOrder, rank);
}

void ECCommandItemIndex::rebound(Rank rank, const ECObjectIdList& from, const ECObjectIdList& to)
{
    const std::lock_guard lock(m_mtx);
    for (const ECObjectId& id : from)
        m_bindings.erase({id.first, id.second, rank});
    for (const ECObjectId& id : to)
        m_bindings.emplace(id.first, id.second, rank);
}

ECCommandItemPtr ECCommandItemIndex::firstAt(
    int pageIndex, int orderIndex, std::initializer_list<ECObjectId> boundToAny) const
{
    const std::lock_guard lock(m_mtx);
    const auto wanted = [&](Rank rank) {
        return boundToAny.size() == 0
            || std::any_of(boundToAny.begin(), boundToAny.end(), [&](const ECObjectId& id) {
                   return m_bindings.count({id.first, id.second, rank}) > 0;
               });
    };
    for (auto it = m_places.lower_bound({pageIndex, orderIndex, 0}); it != m_places.end(); ++it) {
        const auto& [page, order, rank] = *it;
        if (page != pageIndex || order != orderIndex)
            break;
        if (wanted(rank))
            return itemLocked(rank);
    }
    return {};
}

ECCommandItemPtr ECCommandItemIndex::firstBoundTo(const ECObjectId& id) const
{
    const std::lock_guard lock(m_mtx);
    const auto it = m_bindings.lower_bound({id.first, id.second, 0});
    if (it == m_bindings.end() || std::get<0>(*it) != id.first || std::get<1>(*it) != id.second)
        return {};
    return itemLocked(std::get<2>(*it));
}

ECCommandItemList ECCommandItemIndex::allOfServer(quint64 serverId) const
{
    const std::lock_guard lock(m_mtx);
    std::vector<Rank> ranks;
    for (auto it = m_bindings.lower_bound({serverId, 0, 0});
         it != m_bindings.end() && std::get<0>(*it) == serverId; ++it)
        ranks.push_back(std::get<2>(*it));
    std::sort(ranks.begin(), ranks.end());
    ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());

    ECCommandItemList items;
    items.reserve(int(ranks.size()));
    for (const Rank rank : ranks) {
        if (const ECCommandItemPtr item = itemLocked(rank))
            items.append(item);
    }
    return items;
}

ECCommandItemPtr ECCommandItemIndex::itemLocked(Rank rank) const
{
    const auto it = m_mapItems.find(rank);
    return it == m_mapItems.end() ? nullptr : it->second.lock();
}

} // namespace Orvane::ECProxy::Client::Internal

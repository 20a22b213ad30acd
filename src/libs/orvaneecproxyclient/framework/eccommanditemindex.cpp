#include "eccommanditemindex_p.h"

#include <algorithm>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

ECCommandItemIndex::Rank ECCommandItemIndex::enter(
    const ItemPtr& item, int pageIndex, int orderIndex, const ECObjectIdList& ids)
{
    const std::lock_guard lock(m_mtx);
    const Rank rank = m_nNextRank++;
    m_mapItems.emplace(rank, item);
    m_places.emplace(pageIndex, orderIndex, rank);
    for (const ECObjectId& id : ids)
        m_bindings.emplace(id.first, id.second, rank);
    return rank;
}

void ECCommandItemIndex::leave(Rank rank, int pageIndex, int orderIndex, const ECObjectIdList& ids)
{
    const std::lock_guard lock(m_mtx);
    m_mapItems.erase(rank);
    m_places.erase({pageIndex, orderIndex, rank});
    for (const ECObjectId& id : ids)
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

ECCommandItemIndex::ItemPtr ECCommandItemIndex::firstAt(
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

ECCommandItemIndex::ItemPtr ECCommandItemIndex::firstBoundTo(const ECObjectId& id) const
{
    const std::lock_guard lock(m_mtx);
    const auto it = m_bindings.lower_bound({id.first, id.second, 0});
    if (it == m_bindings.end() || std::get<0>(*it) != id.first || std::get<1>(*it) != id.second)
        return {};
    return itemLocked(std::get<2>(*it));
}

QList<ECCommandItemIndex::ItemPtr> ECCommandItemIndex::allOfServer(quint64 serverId) const
{
    const std::lock_guard lock(m_mtx);
    std::vector<Rank> ranks;
    for (auto it = m_bindings.lower_bound({serverId, 0, 0});
         it != m_bindings.end() && std::get<0>(*it) == serverId; ++it)
        ranks.push_back(std::get<2>(*it));
    std::sort(ranks.begin(), ranks.end());
    ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());

    QList<ItemPtr> items;
    items.reserve(int(ranks.size()));
    for (const Rank rank : ranks) {
        if (const ItemPtr item = itemLocked(rank))
            items.append(item);
    }
    return items;
}

ECCommandItemIndex::ItemPtr ECCommandItemIndex::itemLocked(Rank rank) const
{
    const auto it = m_mapItems.find(rank);
    return it == m_mapItems.end() ? nullptr : it->second.lock();
}

} // namespace Orvane::ECProxy::Client::Internal

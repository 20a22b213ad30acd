#pragma once

#include "eccommanditem.h"

#include <QScopeGuard>

#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

/// What a new binding changes of a key's looks; an empty member leaves that part as it is.
struct KeyLook {
    std::optional<ECLEDColor> color;
    std::optional<QString> oledText;
    std::optional<bool> blink;
};

/// Everything that an item holds.
///
/// Texts and lists are swapped rather than assigned: an old value is then released by code that the thread
/// sanitizer sees, and not inside the uninstrumented Qt library.
struct ECCommandItemValues {
    void addId(const ECObjectId& id);
    void addNamedObject(const ECObjectId& id, const QString& name, ECLEDColor color);
    /// Removes the objects for which `isGone` is true, and the names at their positions; the key goes dark
    /// when nothing is left.
    template <typename Predicate> void removeNamedObjects(Predicate isGone);
    void bind(KeyboardType type, const ECObjectIdList& ids, qint32 buttonIndex, const KeyLook& look);
    /// The same after a reset, so that nothing else stays bound.
    void rebind(KeyboardType type, const ECObjectIdList& ids, qint32 buttonIndex, const KeyLook& look);
    void reset(KeyboardType type, ECLEDColor color);
    void showNames();

    bool m_bBlink = false;
    ECLEDColor m_enLedColor = ECLEDColor::Off;
    QString m_strOLEDText;
    qint16 m_nECButtonOrderIndex = 0;
    qint16 m_nECButtonPageIndex = -1;
    qint32 m_nECButtonIndex = -1;
    qint32 m_nECButtonKey = -1;
    qint32 m_nECOledKey = -1;
    ECObjectIdList m_objectIdList;
    QList<QString> m_objectNameList;
};

class ECCommandItemPrivate {
public:
    explicit ECCommandItemPrivate(ECCommandItemValues values = {})
        : m_values(std::move(values))
    {
    }

    static ECCommandItemPrivate& of(const ECCommandItem& item) { return *item.d; }

    /// Returns what `get` reads of one moment's values.
    template <typename Get> auto read(Get get) const
    {
        const std::shared_lock lock(m_mutex);
        return get(std::as_const(m_values));
    }

    /// Has `change` change the values in one step. `change` calls nothing else.
    template <typename Change> auto change(Change change)
    {
        const std::unique_lock lock(m_mutex);
        // On a copy, so that no list or text is written in place that somebody has read: whether he still
        // holds it Qt sees by a count that it reads without an order.
        ECCommandItemValues next = m_values;
        const auto keep = qScopeGuard([&] { std::swap(m_values, next); });
        return change(next);
    }

private:
    // Guards m_values.
    mutable std::shared_mutex m_mutex;
    ECCommandItemValues m_values;
};

template <typename Predicate> void ECCommandItemValues::removeNamedObjects(Predicate isGone)
{
    for (int position = m_objectIdList.size() - 1; position >= 0; --position) {
        if (!isGone(m_objectIdList.at(position)))
            continue;
        m_objectIdList.removeAt(position);
        if (position < m_objectNameList.size())
            m_objectNameList.removeAt(position);
    }
    showNames();
    if (m_objectIdList.isEmpty())
        m_enLedColor = ECLEDColor::Off;
}

} // namespace Orvane::ECProxy::Client::Internal

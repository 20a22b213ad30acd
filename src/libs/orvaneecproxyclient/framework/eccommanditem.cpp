#include "eccommanditem.h"

#include "eccommanditemindex_p.h"

#include <QStringList>

#include <mutex>

// Texts and lists are swapped rather than assigned throughout: an old value is then released by code that
// the thread sanitizer sees, and not inside the uninstrumented Qt library.

namespace Orvane::ECProxy::Client {

ECCommandItem::ECCommandItem(QObject* parent)
{
    Q_UNUSED(parent)
}

ECCommandItem::ECCommandItem(const ECCommandItem& other)
{
    const std::shared_lock idLock(other.m_objectIdListMtx);
    const std::shared_lock nameLock(other.m_objectNameListMtx);
    const std::shared_lock valueLock(other.m_valueMtx);
    copyWithAllLocked(other);
}

ECCommandItem& ECCommandItem::operator=(const ECCommandItem& other)
{
    if (this == &other)
        return *this;
    // All six in one step: two items may be assigned to each other at the same time.
    std::unique_lock idLock(m_objectIdListMtx, std::defer_lock);
    std::unique_lock nameLock(m_objectNameListMtx, std::defer_lock);
    std::unique_lock valueLock(m_valueMtx, std::defer_lock);
    std::shared_lock otherIdLock(other.m_objectIdListMtx, std::defer_lock);
    std::shared_lock otherNameLock(other.m_objectNameListMtx, std::defer_lock);
    std::shared_lock otherValueLock(other.m_valueMtx, std::defer_lock);
    std::lock(idLock, nameLock, valueLock, otherIdLock, otherNameLock, otherValueLock);
    copyWithAllLocked(other);
    return *this;
}

ECCommandItem::~ECCommandItem() = default;

void ECCommandItem::setECButtonIndex(qint32 index)
{
    const std::unique_lock lock(m_valueMtx);
    m_nECButtonIndex = index;
}

qint32 ECCommandItem::ecButtonIndex() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_nECButtonIndex;
}

void ECCommandItem::setECButtonOrderIndex(qint16 index)
{
    const std::unique_lock lock(m_valueMtx);
    placeLocked(m_nECButtonPageIndex, index);
}

qint16 ECCommandItem::ecButtonOrderIndex() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_nECButtonOrderIndex;
}

void ECCommandItem::setECButtonPageIndex(qint16 index)
{
    const std::unique_lock lock(m_valueMtx);
    placeLocked(index, m_nECButtonOrderIndex);
}

qint16 ECCommandItem::ecButtonPageIndex() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_nECButtonPageIndex;
}

void ECCommandItem::setIsLedBlink(bool blink)
{
    const std::unique_lock lock(m_valueMtx);
    m_bBlink = blink;
}

bool ECCommandItem::isLedBlink() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_bBlink;
}

void ECCommandItem::setECButtonColor(ECLEDColor color)
{
    const std::unique_lock lock(m_valueMtx);
    m_enLedColor = color;
}

ECLEDColor ECCommandItem::ecButtonColor() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_enLedColor;
}

void ECCommandItem::setECOledText(const QString& text)
{
    QString shown = text;
    const std::unique_lock lock(m_valueMtx);
    m_strOLEDText.swap(shown);
}

QString ECCommandItem::ecOledText() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_strOLEDText;
}

void ECCommandItem::setECButtonKey(qint32 key)
{
    const std::unique_lock lock(m_valueMtx);
    m_nECButtonKey = key;
}

qint32 ECCommandItem::ecButtonKey() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_nECButtonKey;
}

void ECCommandItem::setECOledKey(qint32 key)
{
    const std::unique_lock lock(m_valueMtx);
    m_nECOledKey = key;
}

qint32 ECCommandItem::ecOledKey() const
{
    const std::shared_lock lock(m_valueMtx);
    return m_nECOledKey;
}

bool ECCommandItem::isBindKeyPad() const
{
    return !isBindKeyPad(-1);
}

bool ECCommandItem::isBindKeyPad(int index) const
{
    return ecButtonIndex() == index;
}

void ECCommandItem::appendObjectData(const ECObjectId& id)
{
    const std::unique_lock lock(m_objectIdListMtx);
    if (!m_objectIdList.contains(id))
        replaceIdsLocked(m_objectIdList + ECObjectIdList{id});
}

bool ECCommandItem::isContainsObjectId(const ECObjectId& id) const
{
    const std::shared_lock lock(m_objectIdListMtx);
    return m_objectIdList.contains(id);
}

void ECCommandItem::removeObjectId(const ECObjectId& id)
{
    const std::unique_lock lock(m_objectIdListMtx);
    ECObjectIdList ids = m_objectIdList;
    ids.removeAll(id);
    replaceIdsLocked(std::move(ids));
}

ECObjectIdList ECCommandItem::getObjectIdList() const
{
    const std::shared_lock lock(m_objectIdListMtx);
    return m_objectIdList;
}

void ECCommandItem::clearObjectIdSet()
{
    const std::unique_lock lock(m_objectIdListMtx);
    replaceIdsLocked({});
}

void ECCommandItem::appendBindedName(const QString& name, int index)
{
    const std::unique_lock lock(m_objectNameListMtx);
    if (index < -1 || index > m_objectNameList.size())
        return;
    m_objectNameList.insert(index == -1 ? m_objectNameList.size() : index, name);
}

void ECCommandItem::removeBindedName(int index)
{
    const std::unique_lock lock(m_objectNameListMtx);
    if (index >= 0 && index < m_objectNameList.size())
        m_objectNameList.removeAt(index);
}

void ECCommandItem::updateBindedName(const QString& name, int index)
{
    QString replacement = name;
    const std::unique_lock lock(m_objectNameListMtx);
    if (index >= 0 && index < m_objectNameList.size())
        m_objectNameList[index].swap(replacement);
}

QList<QString> ECCommandItem::objectNameList() const
{
    const std::shared_lock lock(m_objectNameListMtx);
    return m_objectNameList;
}

void ECCommandItem::clearObjectNameSet()
{
    const std::unique_lock lock(m_objectNameListMtx);
    m_objectNameList.clear();
}

QString ECCommandItem::joinObjectName() const
{
    return QStringList(objectNameList()).join(QLatin1Char('/'));
}

void ECCommandItem::resetECCommandItem()
{
    resetECCommandItem(KeyboardType::Screen); // any type but `Layer`, the only one that is different
}

void ECCommandItem::resetECCommandItem(KeyboardType type)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    resetWithAllLocked(type, ECLEDColor::Off);
}

void ECCommandItem::bind(
    KeyboardType type, const ECObjectIdList& ids, qint32 buttonIndex, const Internal::KeyLook& look)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    // A layer key stands for one layer: each id takes the place of the one before, in a single replacement,
    // so that nobody finds the key bound to nothing in between.
    ECObjectIdList bound = type == KeyboardType::Layer ? ids.mid(ids.size() - 1) : m_objectIdList;
    if (type != KeyboardType::Layer) {
        for (const ECObjectId& id : ids) {
            if (!bound.contains(id))
                bound.append(id);
        }
    }
    replaceIdsLocked(std::move(bound));
    m_nECButtonIndex = buttonIndex;
    m_enLedColor = look.color.value_or(m_enLedColor);
    m_bBlink = look.blink.value_or(m_bBlink);
    if (look.oledText)
        QString(*look.oledText).swap(m_strOLEDText);
}

bool ECCommandItem::resetIfBound(const ECObjectId& id, KeyboardType type, ECLEDColor color)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    if (!m_objectIdList.contains(id))
        return false;
    resetWithAllLocked(type, color);
    return true;
}

void ECCommandItem::appendNamedObject(const ECObjectId& id, const QString& name, ECLEDColor color)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    if (!m_objectIdList.contains(id))
        replaceIdsLocked(m_objectIdList + ECObjectIdList{id});
    m_objectNameList.append(name);
    m_enLedColor = color;
    showNamesWithAllLocked();
}

void ECCommandItem::removeNamedObject(const ECObjectId& id)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    removeNamedObjectsWithAllLocked([&](const ECObjectId& bound) { return bound == id; });
}

QString ECCommandItem::removeNamedObjects(quint64 serverId)
{
    const std::scoped_lock lock(m_objectIdListMtx, m_objectNameListMtx, m_valueMtx);
    removeNamedObjectsWithAllLocked([&](const ECObjectId& bound) { return bound.first == serverId; });
    return m_strOLEDText;
}

template <typename Predicate> void ECCommandItem::removeNamedObjectsWithAllLocked(Predicate isGone)
{
    ECObjectIdList ids = m_objectIdList;
    for (int position = ids.size() - 1; position >= 0; --position) {
        if (!isGone(ids.at(position)))
            continue;
        ids.removeAt(position);
        if (position < m_objectNameList.size())
            m_objectNameList.removeAt(position);
    }
    replaceIdsLocked(std::move(ids));
    showNamesWithAllLocked();
    if (m_objectIdList.isEmpty())
        m_enLedColor = ECLEDColor::Off;
}

void ECCommandItem::showNamesWithAllLocked()
{
    QStringList(m_objectNameList).join(QLatin1Char('/')).swap(m_strOLEDText);
}

void ECCommandItem::resetWithAllLocked(KeyboardType type, ECLEDColor color)
{
    m_bBlink = false;
    m_enLedColor = color;
    QString().swap(m_strOLEDText);
    m_nECButtonIndex = -1;
    if (type != KeyboardType::Layer) {
        replaceIdsLocked({});
        m_objectNameList.clear();
        return;
    }
    ECObjectIdList free = m_objectIdList;
    for (ECObjectId& id : free)
        id.second = Constants::UnboundLayerIndex;
    replaceIdsLocked(std::move(free));
}

void ECCommandItem::copyWithAllLocked(const ECCommandItem& other)
{
    m_bBlink = other.m_bBlink;
    m_enLedColor = other.m_enLedColor;
    QString(other.m_strOLEDText).swap(m_strOLEDText);
    placeLocked(other.m_nECButtonPageIndex, other.m_nECButtonOrderIndex);
    m_nECButtonIndex = other.m_nECButtonIndex;
    m_nECButtonKey = other.m_nECButtonKey;
    m_nECOledKey = other.m_nECOledKey;
    replaceIdsLocked(other.m_objectIdList);
    QList<QString>(other.m_objectNameList).swap(m_objectNameList);
}

void ECCommandItem::replaceIdsLocked(ECObjectIdList ids)
{
    m_objectIdList.swap(ids);
    if (m_pIndex && m_objectIdList != ids)
        m_pIndex->rebound(m_nIndexRank, ids, m_objectIdList);
}

void ECCommandItem::placeLocked(qint16 pageIndex, qint16 orderIndex)
{
    if (m_pIndex)
        m_pIndex->moved(m_nIndexRank, m_nECButtonPageIndex, m_nECButtonOrderIndex, pageIndex, orderIndex);
    m_nECButtonPageIndex = pageIndex;
    m_nECButtonOrderIndex = orderIndex;
}

} // namespace Orvane::ECProxy::Client

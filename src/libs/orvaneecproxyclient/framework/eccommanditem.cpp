#include "eccommanditem_p.h"

#include <QStringList>

namespace Orvane::ECProxy::Client {

namespace Internal {

void ECCommandItemValues::addId(const ECObjectId& id)
{
    if (!m_objectIdList.contains(id))
        m_objectIdList.append(id);
}

void ECCommandItemValues::addNamedObject(const ECObjectId& id, const QString& name, ECLEDColor color)
{
    addId(id);
    m_objectNameList.append(name);
    m_enLedColor = color;
    showNames();
}

void ECCommandItemValues::bind(
    KeyboardType type, const ECObjectIdList& ids, qint32 buttonIndex, const KeyLook& look)
{
    // A layer key stands for one layer: the last.
    if (type == KeyboardType::Layer)
        m_objectIdList.clear();
    for (const ECObjectId& id : type == KeyboardType::Layer ? ids.mid(ids.size() - 1) : ids)
        addId(id);
    m_nECButtonIndex = buttonIndex;
    m_enLedColor = look.color.value_or(m_enLedColor);
    m_bBlink = look.blink.value_or(m_bBlink);
    if (look.oledText)
        QString(*look.oledText).swap(m_strOLEDText);
}

void ECCommandItemValues::rebind(
    KeyboardType type, const ECObjectIdList& ids, qint32 buttonIndex, const KeyLook& look)
{
    reset(type, ECLEDColor::Off);
    m_objectIdList.clear();
    bind(type, ids, buttonIndex, look);
}

void ECCommandItemValues::reset(KeyboardType type, ECLEDColor color)
{
    m_bBlink = false;
    m_enLedColor = color;
    QString().swap(m_strOLEDText);
    m_nECButtonIndex = -1;
    if (type != KeyboardType::Layer) {
        m_objectIdList.clear();
        m_objectNameList.clear();
        return;
    }
    for (ECObjectId& id : m_objectIdList)
        id.second = Constants::UnboundLayerIndex;
}

void ECCommandItemValues::showNames()
{
    QStringList(m_objectNameList).join(QLatin1Char('/')).swap(m_strOLEDText);
}

} // namespace Internal

using Values = Internal::ECCommandItemValues;

ECCommandItem::ECCommandItem(QObject* parent)
    : d(std::make_unique<Internal::ECCommandItemPrivate>())
{
    Q_UNUSED(parent)
}

ECCommandItem::ECCommandItem(const ECCommandItem& other)
    : d(std::make_unique<Internal::ECCommandItemPrivate>(
        other.d->read([](const Values& values) { return values; })))
{
}

ECCommandItem& ECCommandItem::operator=(const ECCommandItem& other)
{
    if (this == &other)
        return *this;
    // Not under both locks: two items may be assigned to each other at the same time.
    Values copy = other.d->read([](const Values& values) { return values; });
    d->change([&copy](Values& values) { std::swap(values, copy); });
    return *this;
}

ECCommandItem::~ECCommandItem() = default;

void ECCommandItem::setECButtonIndex(qint32 index)
{
    d->change([=](Values& values) { values.m_nECButtonIndex = index; });
}

qint32 ECCommandItem::ecButtonIndex() const
{
    return d->read([](const Values& values) { return values.m_nECButtonIndex; });
}

void ECCommandItem::setECButtonOrderIndex(qint16 index)
{
    d->change([=](Values& values) { values.m_nECButtonOrderIndex = index; });
}

qint16 ECCommandItem::ecButtonOrderIndex() const
{
    return d->read([](const Values& values) { return values.m_nECButtonOrderIndex; });
}

void ECCommandItem::setECButtonPageIndex(qint16 index)
{
    d->change([=](Values& values) { values.m_nECButtonPageIndex = index; });
}

qint16 ECCommandItem::ecButtonPageIndex() const
{
    return d->read([](const Values& values) { return values.m_nECButtonPageIndex; });
}

void ECCommandItem::setIsLedBlink(bool blink)
{
    d->change([=](Values& values) { values.m_bBlink = blink; });
}

bool ECCommandItem::isLedBlink() const
{
    return d->read([](const Values& values) { return values.m_bBlink; });
}

void ECCommandItem::setECButtonColor(ECLEDColor color)
{
    d->change([=](Values& values) { values.m_enLedColor = color; });
}

ECLEDColor ECCommandItem::ecButtonColor() const
{
    return d->read([](const Values& values) { return values.m_enLedColor; });
}

void ECCommandItem::setECOledText(const QString& text)
{
    QString shown = text;
    d->change([&shown](Values& values) { values.m_strOLEDText.swap(shown); });
}

QString ECCommandItem::ecOledText() const
{
    return d->read([](const Values& values) { return values.m_strOLEDText; });
}

void ECCommandItem::setECButtonKey(qint32 key)
{
    d->change([=](Values& values) { values.m_nECButtonKey = key; });
}

qint32 ECCommandItem::ecButtonKey() const
{
    return d->read([](const Values& values) { return values.m_nECButtonKey; });
}

void ECCommandItem::setECOledKey(qint32 key)
{
    d->change([=](Values& values) { values.m_nECOledKey = key; });
}

qint32 ECCommandItem::ecOledKey() const
{
    return d->read([](const Values& values) { return values.m_nECOledKey; });
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
    d->change([&](Values& values) { values.addId(id); });
}

bool ECCommandItem::isContainsObjectId(const ECObjectId& id) const
{
    return d->read([&](const Values& values) { return values.m_objectIdList.contains(id); });
}

void ECCommandItem::removeObjectId(const ECObjectId& id)
{
    d->change([&](Values& values) { values.m_objectIdList.removeAll(id); });
}

ECObjectIdList ECCommandItem::getObjectIdList() const
{
    return d->read([](const Values& values) { return values.m_objectIdList; });
}

void ECCommandItem::clearObjectIdSet()
{
    d->change([](Values& values) { values.m_objectIdList.clear(); });
}

void ECCommandItem::appendBindedName(const QString& name, int index)
{
    d->change([&](Values& values) {
        auto& names = values.m_objectNameList;
        if (index >= -1 && index <= names.size())
            names.insert(index == -1 ? names.size() : index, name);
    });
}

void ECCommandItem::removeBindedName(int index)
{
    d->change([&](Values& values) {
        if (index >= 0 && index < values.m_objectNameList.size())
            values.m_objectNameList.removeAt(index);
    });
}

void ECCommandItem::updateBindedName(const QString& name, int index)
{
    QString replacement = name;
    d->change([&](Values& values) {
        if (index >= 0 && index < values.m_objectNameList.size())
            values.m_objectNameList[index].swap(replacement);
    });
}

QList<QString> ECCommandItem::objectNameList() const
{
    return d->read([](const Values& values) { return values.m_objectNameList; });
}

void ECCommandItem::clearObjectNameSet()
{
    d->change([](Values& values) { values.m_objectNameList.clear(); });
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
    d->change([type](Values& values) { values.reset(type, ECLEDColor::Off); });
}

} // namespace Orvane::ECProxy::Client

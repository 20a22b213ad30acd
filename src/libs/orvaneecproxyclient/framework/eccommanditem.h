#pragma once

#include "ecconstants.h"
#include "orvaneecproxyclient_global.h"

#include <QList>
#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECCommandItemPrivate;
}

/// The run-time state of one console key on one page: where it sits, what it shows and which model objects
/// it is bound to.
///
/// Every operation may be called from any thread and is atomic by itself. Whoever needs several fields of
/// one moment (names in step with ids, colour in step with text) copies the item and reads the copy: copying
/// is atomic too.
class ORVANEECPROXYCLIENT_EXPORT ECCommandItem {
public:
    /// `parent` is ignored: items are owned through shared pointers.
    explicit ECCommandItem(QObject* parent = nullptr);
    /// Copies every field. The copy belongs to no device's set, whatever `other` belongs to.
    ECCommandItem(const ECCommandItem& other);
    /// Copies every field; the item stays in the set in which it is.
    ECCommandItem& operator=(const ECCommandItem& other);
    /// The objects that it was bound to are not touched.
    virtual ~ECCommandItem();

    /// Page times page size plus order, or -1 while the key is bound to nothing.
    /// @{
    void setECButtonIndex(qint32 index);
    qint32 ecButtonIndex() const;
    /// @}

    /// Position among the group's selectable keys of one page, from 0.
    /// @{
    void setECButtonOrderIndex(qint16 index);
    qint16 ecButtonOrderIndex() const;
    /// @}

    /// Page that the item is shown on, from 0; -1 until it is set.
    /// @{
    void setECButtonPageIndex(qint16 index);
    qint16 ecButtonPageIndex() const;
    /// @}

    /// What the key shows: whether its LED flashes, its color, its label.
    /// @{
    void setIsLedBlink(bool blink);
    bool isLedBlink() const;

    void setECButtonColor(ECLEDColor color);
    ECLEDColor ecButtonColor() const;

    void setECOledText(const QString& text);
    QString ecOledText() const;
    /// @}

    /// The console's number of the key, -1 until it is set.
    /// @{
    void setECButtonKey(qint32 key);
    qint32 ecButtonKey() const;
    /// @}

    /// The console's number of the key's label, -1 for a key without one.
    /// @{
    void setECOledKey(qint32 key);
    qint32 ecOledKey() const;
    /// @}

    /// True while the button index is not -1.
    bool isBindKeyPad() const;
    /// True when the button index is `index`.
    bool isBindKeyPad(int index) const;

    /// Binds one more object; one that is bound already is ignored.
    void appendObjectData(const ECObjectId& id);
    /// True when an object with the same server id and the same index is bound.
    bool isContainsObjectId(const ECObjectId& id) const;
    /// Unbinds the object with the same server id and the same index.
    void removeObjectId(const ECObjectId& id);
    /// The bound objects, in the order in which they were bound.
    ECObjectIdList getObjectIdList() const;
    /// Unbinds all objects.
    void clearObjectIdSet();

    /// Inserts a name before position `index`, or behind the last one for -1. Does nothing for an index
    /// below -1 or beyond the end.
    void appendBindedName(const QString& name, int index);
    /// Removes or replaces a name. Does nothing unless 0 <= `index` < number of names.
    /// @{
    void removeBindedName(int index);
    void updateBindedName(const QString& name, int index);
    /// @}
    /// The names in order.
    QList<QString> objectNameList() const;
    /// Removes all names.
    void clearObjectNameSet();
    /// The names in order with "/" between them.
    QString joinObjectName() const;

    /// Back to unbound: dark, no blink, blank label, button index -1, no objects, no names. Not for layer
    /// items, which would no longer know the screen that they belong to.
    void resetECCommandItem();
    /// As above, but a `Layer` item keeps its names and its objects, these with the index
    /// `Constants::UnboundLayerIndex`, so that its screen can find it again.
    void resetECCommandItem(KeyboardType type);

private:
    friend class Internal::ECCommandItemPrivate;

    const std::unique_ptr<Internal::ECCommandItemPrivate> d;
};

/// An item and a list of items, as the store hands them out.
/// @{
using ECCommandItemPtr = std::shared_ptr<ECCommandItem>;
using ECCommandItemList = QList<ECCommandItemPtr>;
/// @}

} // namespace Orvane::ECProxy::Client

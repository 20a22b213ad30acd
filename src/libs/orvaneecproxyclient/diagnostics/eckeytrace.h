#pragma once

#include "orvaneecproxyclient_global.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace Orvane::ECProxy::Client {

/// What became of one event of a key: the way from the report to the console's answer, and why it ended where
/// it did. A value without a thread of its own.
struct ORVANEECPROXYCLIENT_EXPORT ECKeyTrace {
    Q_GADGET

public:
    /// What happened to the key.
    enum class Event {
        Pressed, ///< it went down
        Released, ///< it came up
        Held, ///< the time of a hold or of a press window that the key began was up
        Rested, ///< a guard that dropped the key's release has ended, and the key was put to rest
    };
    Q_ENUM(Event)

    /// The guards, in the order in which they are asked.
    enum class Guard {
        Report, ///< has the report's value its length?
        Keyboard, ///< has the manager been given a keyboard?
        Upgrade, ///< does an upgrade run?
        Owner, ///< has a group the key?
        Dialog, ///< is a dialog open or "Quenor" set, and the key none that passes?
        KeypadLock, ///< is the keypad locked, and the key none that passes?
    };
    Q_ENUM(Guard)

    /// A guard that was asked.
    struct Asked {
        Guard guard; ///< which
        bool isPassed; ///< it let the event through
    };

    /// A line that was logged while the event was worked, whether or not its category shows it.
    struct Line {
        QtMsgType level; ///< debug, information, warning
        QString category; ///< the logging category
        QString text; ///< without category and place
    };

    quint64 number = 0; ///< counts the events of the process, from 1
    qint64 time = 0; ///< when it began, in milliseconds since the epoch
    qint64 workedNs = 0; ///< how long it kept its thread, in nanoseconds
    Event event = Event::Pressed; ///< what happened
    quint64 cause = 0; ///< of a hold: the number of the press that began it; otherwise 0

    QByteArray report; ///< value of the datagram; empty when the event did not come from one
    quint32 key = 0; ///< as received: that of an on-screen key is 0xFF0000 or more
    quint32 ecKey = 0; ///< the console's number of the key
    QString owner; ///< name of the group that has the key; empty when none has
    quint16 functionCode = 0; ///< what the key does (`OrvaneKey`); 0 for nothing
    QString function; ///< the code's name as an operator reads it; empty when the group has no such code

    QList<Asked> guards; ///< those that were asked; only the last one can have refused
    std::optional<bool> handled; ///< what the key's handler returned; empty when none ran
    QList<QByteArray> sent; ///< the datagrams that this thread sent meanwhile
    QList<Line> lines; ///< those that this thread logged meanwhile
    /// Why nothing came of the event; empty when something did, as far as is known when it ends. What the
    /// model refuses later, on a thread of its own, is in the log alone.
    QString reason;
};

} // namespace Orvane::ECProxy::Client

#pragma once

#include "keytracing_p.h"

#include <QLoggingCategory>

namespace Orvane::ECProxy::Client::Internal {

// The categories of the library's log lines. A host silences or shows each by its rules.

/// "orvane.ec.link": sockets, their threads, timers, and whether the console's service is there.
Q_DECLARE_LOGGING_CATEGORY(lcLink)
/// "orvane.ec.codec": the bytes of reports and requests, before they have a meaning and after.
Q_DECLARE_LOGGING_CATEGORY(lcCodec)
/// "orvane.ec.keys": what becomes of a key: its owner, the guards, what its handler does or refuses.
Q_DECLARE_LOGGING_CATEGORY(lcKeys)
/// "orvane.ec.paint": lights, labels, pages, and which object is bound to which key.
Q_DECLARE_LOGGING_CATEGORY(lcPaint)
/// "orvane.ec.tbar": the T-Bar's positions and why one has no effect.
Q_DECLARE_LOGGING_CATEGORY(lcTBar)
/// "orvane.ec.lock": the locks of keypad and T-Bar, and what they hold back.
Q_DECLARE_LOGGING_CATEGORY(lcLock)
/// "orvane.ec.model": what the application's model is asked for, refuses or lacks, and its notifications.
Q_DECLARE_LOGGING_CATEGORY(lcModel)

} // namespace Orvane::ECProxy::Client::Internal

// The library logs through these alone. They work like `qCDebug()` and its kin, from any of its namespaces.
// While a key event is traced its lines are kept with it, those that no rule shows too; the arguments are
// then evaluated twice.

#define ecLog(level, category, ...)                                                                          \
    do {                                                                                                     \
        qC##level(::Orvane::ECProxy::Client::Internal::category, __VA_ARGS__);                               \
        if (::Orvane::ECProxy::Client::Internal::KeyTracing::current())                                      \
            ::Orvane::ECProxy::Client::Internal::KeyTracing::addLine(                                        \
                ::Orvane::ECProxy::Client::Internal::category(), Qt##level##Msg, __VA_ARGS__);               \
    } while (false)

#define ecDebug(category, ...) ecLog(Debug, category, __VA_ARGS__)
#define ecInfo(category, ...) ecLog(Info, category, __VA_ARGS__)
#define ecWarning(category, ...) ecLog(Warning, category, __VA_ARGS__)
#define ecCritical(category, ...) ecLog(Critical, category, __VA_ARGS__)

#pragma once

#include "eckeytrace.h"

#include <QLoggingCategory>

#include <atomic>
#include <memory>

/// The collecting side of `ECKeyTracer`: the thread that works an event of a key fills the event's record
/// step by step, and hands it to the tracers when it is done. Without a tracer nothing is collected.
namespace Orvane::ECProxy::Client::Internal::KeyTracing {

/// A key as a record names it, for what comes of it later.
struct Origin {
    quint64 number = 0;
    quint32 key = 0;
    quint32 ecKey = 0;
    QString owner;
    quint16 functionCode = 0;
    QString function;
};
using OriginPtr = std::shared_ptr<const Origin>;

/// Takes the records of the events that have ended.
class Sink {
public:
    virtual ~Sink() = default;
    /// On the thread that has worked the event, under the mutex of all sinks: it only stores.
    virtual void add(const ECKeyTrace& trace) = 0;
};

/// Collects for the sink from now on.
void addSink(Sink& sink);
/// Waits while another thread is giving the sink a record.
void removeSink(Sink& sink);

/// How many sinks there are.
extern std::atomic<int> s_nSinks;

/// Whether anybody looks: without it an event of a key costs these loads alone.
inline bool isTracing()
{
    return s_nSinks.load(std::memory_order_relaxed) > 0;
}

/// An event of a key, from its construction to its destruction on one thread.
class Event {
public:
    /// Within the event of the same kind whose key is not yet known it is that event: the report's way
    /// through the manager to the routing is one.
    explicit Event(ECKeyTrace::Event kind, const QByteArray& report = {})
    {
        if (isTracing())
            beginUnlessBegun(kind, report);
    }
    /// What comes of a hold that `origin` began; nothing for an empty one.
    explicit Event(const OriginPtr& origin)
    {
        if (origin && isTracing())
            beginHeld(*origin);
    }
    ~Event()
    {
        if (m_pFrame)
            end();
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// The record that the calling thread fills; null when it works no event.
    static ECKeyTrace* record();
    /// The key of the present event was found to be this.
    static void setKey(quint32 key, quint32 ecKey);

private:
    struct Frame;
    static Frame*& frameOfThread();
    void beginUnlessBegun(ECKeyTrace::Event kind, const QByteArray& report);
    void beginHeld(const Origin& origin);
    void begin(ECKeyTrace::Event kind);
    void end();

    Frame* m_pFrame = nullptr; ///< owned
};

/// The record that the calling thread fills; null when nobody looks, and when it works no event.
inline ECKeyTrace* current()
{
    return isTracing() ? Event::record() : nullptr;
}

/// The key that the calling thread works, for a hold that begins; empty when nobody looks, and in what comes
/// of a hold: an auto-repeat is not told time after time.
OriginPtr origin();

/// Notes that a guard was asked. Returns `isPassed`.
inline bool ask(ECKeyTrace::Guard guard, bool isPassed)
{
    if (ECKeyTrace* const record = current())
        record->guards.append({guard, isPassed});
    return isPassed;
}

/// Notes why nothing comes of the event, where no warning says so. The first reason stays.
inline void refuse(const char* reason)
{
    if (ECKeyTrace* const record = current(); record && record->reason.isEmpty())
        record->reason = QString::fromUtf8(reason);
}

inline void addSent(const QByteArray& datagram)
{
    if (ECKeyTrace* const record = current())
        record->sent.append(datagram);
}

/// The reason of a release that ends a hold which has not acted.
constexpr const char* ReleasedTooSoon = "the key was released before the end of its hold";

/// Adds a line to the record of the calling thread.
void addLine(const QLoggingCategory& category, QtMsgType level, const char* format, ...)
    Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);

} // namespace Orvane::ECProxy::Client::Internal::KeyTracing

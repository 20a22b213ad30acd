#pragma once

#include "eckeytrace.h"

#include <memory>

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECKeyTracerPrivate;
}

/// Collects what becomes of each event of a key while it lives, to show why a key did nothing.
///
/// Events are collected on the threads that work them; without a tracer each costs a few relaxed atomic
/// loads. There may be several tracers, each gets all events. Make, use and destroy one on one thread with an
/// event loop. It does not need the manager and may outlive it.
class ORVANEECPROXYCLIENT_EXPORT ECKeyTracer : public QObject {
    Q_OBJECT

public:
    /// What is kept until it is taken; older events are dropped.
    static constexpr int MaxTraces = 1000;

    /// Collects from now on.
    explicit ECKeyTracer(QObject* parent = nullptr);
    ~ECKeyTracer() override;

    /// The events since the last call, in the order in which they ended.
    QList<ECKeyTrace> take();

Q_SIGNALS:
    /// There is something to take. Emitted once until it has been taken, on the tracer's thread.
    void signalTracesPending();

private:
    const std::unique_ptr<Internal::ECKeyTracerPrivate> d;
};

} // namespace Orvane::ECProxy::Client

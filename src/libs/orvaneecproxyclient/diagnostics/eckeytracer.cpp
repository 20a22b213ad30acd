#include "eckeytracer_p.h"

#include <QMetaObject>

#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

void ECKeyTracerPrivate::add(const ECKeyTrace& trace)
{
    bool wasEmpty = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        wasEmpty = m_traces.isEmpty();
        m_traces.append(trace);
        if (m_traces.size() > ECKeyTracer::MaxTraces)
            m_traces.removeFirst();
    }
    // Queued, so that nothing of the tracer's owner runs on the key's thread. The tracer lives: it is listed.
    if (wasEmpty)
        QMetaObject::invokeMethod(m_pTracer, &ECKeyTracer::signalTracesPending, Qt::QueuedConnection);
}

QList<ECKeyTrace> ECKeyTracerPrivate::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_traces, {});
}

} // namespace Internal

ECKeyTracer::ECKeyTracer(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Internal::ECKeyTracerPrivate>(this))
{
}

ECKeyTracer::~ECKeyTracer() = default;

QList<ECKeyTrace> ECKeyTracer::take()
{
    return d->take();
}

} // namespace Orvane::ECProxy::Client

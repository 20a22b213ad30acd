#pragma once

#include "eckeytracer.h"
#include "keytracing_p.h"

#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

class ECKeyTracerPrivate final : public KeyTracing::Sink {
public:
    explicit ECKeyTracerPrivate(ECKeyTracer* tracer)
        : m_pTracer(tracer)
    {
        KeyTracing::addSink(*this);
    }
    ~ECKeyTracerPrivate() override { KeyTracing::removeSink(*this); }

    void add(const ECKeyTrace& trace) override;
    QList<ECKeyTrace> take();

private:
    ECKeyTracer* const m_pTracer;

    // Guards m_traces.
    std::mutex m_mutex;
    QList<ECKeyTrace> m_traces;
};

} // namespace Orvane::ECProxy::Client::Internal

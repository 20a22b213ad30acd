#pragma once

#include "surfacerecord_p.h"

#include <atomic>

namespace Orvane::ECProxy::Client::Internal {

/// The lights and labels that were sent last, since it was made. There may be several.
class SentSurface {
public:
    SentSurface();
    ~SentSurface();
    SentSurface(const SentSurface&) = delete;
    SentSurface& operator=(const SentSurface&) = delete;

    /// For a light or label that was sent, on whatever thread. One relaxed load when nobody wants to know.
    template <typename Record> static void note(const Record& record)
    {
        if (s_nSurfaces.load(std::memory_order_relaxed) > 0)
            noteEverywhere(record);
    }

    SurfaceRecord record() const;

private:
    static void noteEverywhere(const ECButtonColor& light);
    static void noteEverywhere(const ECOLEDText& label);

    static std::atomic<int> s_nSurfaces;
    /// Guarded by the mutex of all surfaces.
    SurfaceRecord m_record;
};

} // namespace Orvane::ECProxy::Client::Internal

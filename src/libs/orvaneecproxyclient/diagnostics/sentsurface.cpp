#include "sentsurface_p.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

namespace {

// Guards the list of surfaces and what each has noted. Held by threads that have just sent, for one
// insertion.
std::mutex s_mutex;
std::vector<SentSurface*> s_surfaces;

} // namespace

std::atomic<int> SentSurface::s_nSurfaces{0};

SentSurface::SentSurface()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_surfaces.push_back(this);
    s_nSurfaces = int(s_surfaces.size());
}

SentSurface::~SentSurface()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_surfaces.erase(std::find(s_surfaces.begin(), s_surfaces.end(), this));
    s_nSurfaces = int(s_surfaces.size());
}

void SentSurface::noteEverywhere(const ECButtonColor& light)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    for (SentSurface* const surface : s_surfaces)
        surface->m_record.take(light);
}

void SentSurface::noteEverywhere(const ECOLEDText& label)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    for (SentSurface* const surface : s_surfaces)
        surface->m_record.take(label);
}

SurfaceRecord SentSurface::record() const
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    return m_record;
}

} // namespace Orvane::ECProxy::Client::Internal

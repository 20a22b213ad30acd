#include "surfacerecord_p.h"

namespace Orvane::ECProxy::Client::Internal {

namespace {

template <typename Record> std::optional<Record> valueAt(const std::map<quint16, Record>& map, quint16 ecKey)
{
    const auto found = map.find(ecKey);
    return found == map.end() ? std::nullopt : std::optional<Record>(found->second);
}

} // namespace

void SurfaceRecord::take(const ECButtonColor& light)
{
    if (light.ButtonState == CloseAllLight) {
        m_lights.clear();
        m_closed = light;
    } else {
        m_lights.insert_or_assign(quint16(light.ECKey), light);
    }
}

void SurfaceRecord::take(const ECOLEDText& label)
{
    m_labels.insert_or_assign(quint16(label.ECKey), label);
}

std::optional<ECButtonColor> SurfaceRecord::light(quint16 ecKey) const
{
    const auto light = valueAt(m_lights, ecKey);
    return light ? light : m_closed;
}

std::optional<ECOLEDText> SurfaceRecord::label(quint16 ecKey) const
{
    return valueAt(m_labels, ecKey);
}

std::atomic<int> SurfaceDrawing::s_nDrawings{0};

SurfaceDrawing*& SurfaceDrawing::ofThread()
{
    thread_local SurfaceDrawing* t_pDrawing = nullptr;
    return t_pDrawing;
}

SurfaceDrawing::SurfaceDrawing()
{
    ++s_nDrawings;
    ofThread() = this;
}

SurfaceDrawing::~SurfaceDrawing()
{
    ofThread() = nullptr;
    --s_nDrawings;
}

} // namespace Orvane::ECProxy::Client::Internal

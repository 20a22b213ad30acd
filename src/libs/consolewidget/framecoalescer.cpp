#include "framecoalescer.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

namespace {
constexpr std::chrono::milliseconds FrameTime(16);
}

FrameCoalescer::FrameCoalescer(QObject* parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(FrameTime);
    connect(&m_timer, &QTimer::timeout, this, &FrameCoalescer::finishFrame);
}

void FrameCoalescer::noteChange()
{
    if (m_timer.isActive())
        return;
    m_sinceChange.start();
    m_timer.start();
}

void FrameCoalescer::finishFrame()
{
    m_longestWait = std::max(m_longestWait, std::chrono::milliseconds(m_sinceChange.elapsed()));
    Q_EMIT signalFrame();
}

} // namespace Orvane::ConsolePanel

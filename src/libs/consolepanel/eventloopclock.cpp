#include "eventloopclock.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

using std::chrono::milliseconds;

EventLoopClock::EventLoopClock()
{
    m_elapsed.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { ring(); });
}

PanelClock::Duration EventLoopClock::now() const
{
    return std::chrono::duration_cast<Duration>(std::chrono::nanoseconds(m_elapsed.nsecsElapsed()));
}

void EventLoopClock::setAlarm(Duration when)
{
    // Rounded up, so that the time has come when it rings.
    m_timer.start(std::max(std::chrono::ceil<milliseconds>(when - now()), milliseconds::zero()));
}

void EventLoopClock::clearAlarm()
{
    m_timer.stop();
}

} // namespace Orvane::ConsolePanel

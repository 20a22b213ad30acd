#include "holdtimer_p.h"

#include "orvaneectimer.h"

#include <utility>

namespace Orvane::ECProxy::Client::Internal {

HoldTimer::HoldTimer(std::function<void()> callback)
    : m_callback(std::move(callback))
{
}

HoldTimer::~HoldTimer()
{
    stop();
    // Waits for a callback that is still running. m_pTimer must stay until then, for the callback may use it.
    if (OrvaneECTimer* const timer = this->timer())
        timer->wait();
    // Such a callback may have started again and left its key's origin. ThreadSanitizer does not see Qt's
    // wait.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pOrigin.reset();
}

void HoldTimer::restart(std::chrono::milliseconds interval)
{
    OrvaneECTimer& timer = madeTimer();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pOrigin = KeyTracing::origin();
    }
    timer.start(int(interval.count()), OrvaneECTimer::Start::Anew);
}

bool HoldTimer::stop()
{
    OrvaneECTimer* const timer = this->timer();
    return timer && timer->stop();
}

bool HoldTimer::isRunning() const
{
    const OrvaneECTimer* const timer = this->timer();
    return timer && timer->isRunning();
}

void HoldTimer::timeout()
{
    KeyTracing::OriginPtr origin;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        origin.swap(m_pOrigin);
    }
    const KeyTracing::Event event(origin);
    m_callback();
}

OrvaneECTimer* HoldTimer::timer() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pTimer.get();
}

OrvaneECTimer& HoldTimer::madeTimer()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pTimer) {
        m_pTimer = OrvaneECTimer::create([this] { timeout(); });
        m_pTimer->setSingleShot(true);
    }
    return *m_pTimer;
}

} // namespace Orvane::ECProxy::Client::Internal

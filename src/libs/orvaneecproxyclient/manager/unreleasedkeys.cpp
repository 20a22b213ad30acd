#include "unreleasedkeys_p.h"

#include "showclock_p.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace Orvane::ECProxy::Client::Internal {

UnreleasedKeys::UnreleasedKeys(PutToRest putToRest)
    : m_putToRest(std::move(putToRest))
{
    m_timer.setInterval(std::chrono::ceil<std::chrono::milliseconds>(ShowClock::realTime(CheckInterval)));
    connect(&m_timer, &QTimer::timeout, this, [this] { check(); });
    if (QCoreApplication* app = QCoreApplication::instance())
        moveToThread(app->thread());
}

void UnreleasedKeys::pressed(quint32 ecKey)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_rested.wait(lock, [&] { return m_resting != ecKey; });
    m_dropped.erase(ecKey);
    m_pressed.insert(ecKey);
}

void UnreleasedKeys::released(quint32 ecKey)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pressed.erase(ecKey);
    m_dropped.erase(ecKey);
}

void UnreleasedKeys::releaseDropped(quint32 ecKey)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pressed.erase(ecKey) == 0)
            return;
        m_dropped.insert(ecKey);
    }
    // A timer can be started only on its own thread.
    QMetaObject::invokeMethod(
        this, [this] { m_timer.start(); }, Qt::QueuedConnection);
}

void UnreleasedKeys::check()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const std::set<quint32> keys = m_dropped;
    for (const quint32 ecKey : keys) {
        if (m_dropped.count(ecKey) == 0)
            continue;
        m_resting = ecKey;
        lock.unlock();
        const bool isAtRest = m_putToRest(ecKey);
        lock.lock();
        m_resting.reset();
        m_rested.notify_all();
        if (isAtRest)
            m_dropped.erase(ecKey);
    }
    if (m_dropped.empty())
        m_timer.stop();
}

} // namespace Orvane::ECProxy::Client::Internal

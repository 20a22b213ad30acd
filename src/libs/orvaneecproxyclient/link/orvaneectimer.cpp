#include "orvaneectimer.h"
#include "orvaneectimer_p.h"

#include "log_p.h"
#include "processend_p.h"
#include "showclock_p.h"
#include "threadlifecycle_p.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

using Locker = std::lock_guard<std::mutex>;

OrvaneECTimerPrivate::OrvaneECTimerPrivate(OrvaneECTimer::TimeoutCallback cb)
    : m_cbTimeout(std::move(cb))
{
}

OrvaneECTimerPrivate::~OrvaneECTimerPrivate()
{
    const Locker lock(m_timerMutex); // orders the thread's last accesses before the members go
}

OrvaneECTimerPrivate::Started OrvaneECTimerPrivate::start(int msec, bool anew, Caller caller)
{
    const Locker lock(m_timerMutex);
    if (caller == Caller::TimerThread && m_nCalling == 0)
        return m_bThreadAtWork ? Started::Yes : Started::Refused;
    m_imsec = msec;
    if (m_nInForce != 0 && !anew)
        return Started::Yes;
    m_nInForce = ++m_nLast;
    m_nDue = m_nInForce;
    if (caller == Caller::OtherThread)
        m_nCalling = 0;
    m_timerCond.notify_all();
    return std::exchange(m_bThreadAtWork, true) ? Started::Yes : Started::NeedsThread;
}

bool OrvaneECTimerPrivate::stop(Caller caller)
{
    const Locker lock(m_timerMutex);
    if (caller == Caller::TimerThread && m_nCalling == 0)
        return false;
    const bool wasPending = m_nDue.exchange(0) != 0;
    m_nInForce = 0;
    if (caller == Caller::OtherThread)
        m_nCalling = 0;
    m_timerCond.notify_all();
    return wasPending;
}

void OrvaneECTimerPrivate::startFailed()
{
    const Locker lock(m_timerMutex);
    m_bThreadAtWork = false;
    m_nInForce = 0;
    m_nDue = 0;
}

void OrvaneECTimerPrivate::setSingleShot(bool singleShot)
{
    const Locker lock(m_timerMutex);
    m_bSingleShot = singleShot;
}

void OrvaneECTimerPrivate::setInterval(int msec)
{
    const Locker lock(m_timerMutex);
    m_imsec = msec;
}

int OrvaneECTimerPrivate::interval() const
{
    const Locker lock(m_timerMutex);
    return m_imsec;
}

void OrvaneECTimerPrivate::run()
{
    std::unique_lock<std::mutex> lock(m_timerMutex);
    while (m_nInForce != 0) {
        const Generation own = m_nInForce;
        const int interval = m_imsec;
        lock.unlock();
        ecInfo(lcLink, "EC timer start %d", interval);
        lock.lock();
        const bool finished = fireWhileInForce(lock, own);
        lock.unlock();
        if (finished)
            ecInfo(lcLink, "EC timer finished");
        else
            ecInfo(lcLink, "EC timer terminate");
        lock.lock();
    }
    m_bThreadAtWork = false;
}

/// @return false when a stop ended a wait, true when the timer ended otherwise
bool OrvaneECTimerPrivate::fireWhileInForce(std::unique_lock<std::mutex>& lock, Generation own)
{
    while (m_nInForce == own) {
        const std::chrono::milliseconds interval(std::max(0, m_imsec));
        if (m_timerCond.wait_for(lock, ShowClock::realTime(interval), [&] { return m_nInForce != own; }))
            return false;
        fire(lock, own);
    }
    return true;
}

void OrvaneECTimerPrivate::fire(std::unique_lock<std::mutex>& lock, Generation own)
{
    m_nCalling = own;
    lock.unlock();
    const bool mayCall = call(own);
    lock.lock();
    m_nCalling = 0;
    if (!mayCall)
        m_timerCond.wait(lock, [&] { return m_nInForce != own; });
    if (m_nInForce != own)
        return;
    if (m_bSingleShot)
        m_nInForce = 0;
    else
        m_nDue = own;
}

/// @return false when the process ends: then the thread has nothing more to do but to be stopped
bool OrvaneECTimerPrivate::call(Generation own)
{
    const ProcessEnd::Work work;
    if (!work)
        return false;
    if (m_nDue.compare_exchange_strong(own, 0) && m_cbTimeout)
        m_cbTimeout();
    return true;
}

} // namespace Internal

using Internal::OrvaneECTimerPrivate;

namespace {

/// How long a callback may keep a destructor waiting before the log says so, if its interval is not longer.
constexpr int EndLimitMs = 1000;

OrvaneECTimerPrivate::Caller callerOf(const OrvaneECTimer* timer)
{
    return QThread::currentThread() == timer ? OrvaneECTimerPrivate::Caller::TimerThread
                                             : OrvaneECTimerPrivate::Caller::OtherThread;
}

} // namespace

std::shared_ptr<OrvaneECTimer> OrvaneECTimer::create(TimeoutCallback cb, QObject* parent)
{
    return {new OrvaneECTimer(std::move(cb), parent), [](OrvaneECTimer* timer) {
                timer->stopTimer();
                Internal::deleteThreadObject(timer);
            }};
}

OrvaneECTimer::OrvaneECTimer(TimeoutCallback cb, QObject* parent)
    : QThread(parent)
    , d(std::make_unique<OrvaneECTimerPrivate>(std::move(cb)))
{
    setObjectName(QStringLiteral("OrvaneECTimer"));
}

OrvaneECTimer::~OrvaneECTimer()
{
    stopTimer();
    const int limit = std::max(d->interval(), EndLimitMs);
    if (wait(static_cast<unsigned long>(limit)))
        return;
    // Destroying a thread that still runs would end the process.
    ecWarning(lcLink, "EC timer: its callback has not returned within %d ms, waiting for it.", limit);
    wait();
}

void OrvaneECTimer::setSingleShot(bool singleShot)
{
    d->setSingleShot(singleShot);
}

void OrvaneECTimer::setInterval(int msec)
{
    d->setInterval(msec);
}

void OrvaneECTimer::startTimer(int msec)
{
    start(msec, Start::UnlessRunning);
}

void OrvaneECTimer::stopTimer()
{
    stop();
}

void OrvaneECTimer::start(int msec, Start start)
{
    using Started = OrvaneECTimerPrivate::Started;
    switch (d->start(msec, start == Start::Anew, callerOf(this))) {
    case Started::Yes:
        return;
    case Started::Refused:
        ecWarning(lcLink, "EC timer: cannot be started from its own thread while that thread ends.");
        return;
    case Started::NeedsThread:
        break;
    }
    Internal::ProcessEnd::watch();
    // Only one caller gets here at a time. A thread of an earlier start has nothing left to do but end.
    wait();
    QThread::start(QThread::InheritPriority);
    if (!isRunning() && !isFinished()) {
        ecWarning(lcLink, "EC timer: cannot start its thread.");
        d->startFailed();
    }
}

bool OrvaneECTimer::stop()
{
    return d->stop(callerOf(this));
}

void OrvaneECTimer::slotTimeout()
{
    if (d->m_cbTimeout)
        d->m_cbTimeout();
}

void OrvaneECTimer::run()
{
    d->run();
}

} // namespace Orvane::ECProxy::Client

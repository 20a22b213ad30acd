#include "orvaneectimer.h"

#include "eclinklog_p.h"
#include "threadlifecycle_p.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Orvane::ECProxy::Client {

using Internal::lcECLink;
using Locker = std::lock_guard<std::mutex>;

std::shared_ptr<OrvaneECTimer> OrvaneECTimer::create(TimeoutCallback cb, QObject* parent)
{
    return {new OrvaneECTimer(std::move(cb), parent), [](OrvaneECTimer* timer) {
                timer->stopTimer();
                Internal::deleteThreadObject(timer);
            }};
}

OrvaneECTimer::OrvaneECTimer(TimeoutCallback cb, QObject* parent)
    : QThread(parent)
    , m_cbTimeout(std::move(cb))
{
    setObjectName(QStringLiteral("OrvaneECTimer"));
}

OrvaneECTimer::~OrvaneECTimer()
{
    stopTimer();
    // Longer than the one interval that a callback is expected to take at most, if need be: to destroy a
    // thread that still runs would end the process.
    wait();
    const Locker lock(m_timerMutex); // orders the thread's last accesses before the members go
}

void OrvaneECTimer::setSingleShot(bool singleShot)
{
    m_bSingleShot = singleShot;
}

void OrvaneECTimer::setInterval(int msec)
{
    m_imsec = msec;
}

void OrvaneECTimer::startTimer(int msec)
{
    const bool ownThread = QThread::currentThread() == this;
    m_imsec = msec;
    {
        const Locker lock(m_timerMutex);
        if (m_bActive) {
            // What the callback does to its own timer must not undo a stop it cannot know of.
            if (m_bStopRun && !(ownThread && m_bStoppedFromElsewhere))
                m_bRestart = true;
            if (!ownThread)
                m_bStoppedFromElsewhere = false;
            return;
        }
        if (ownThread) {
            qCWarning(lcECLink, "EC timer does not start itself while its thread leaves.");
            return;
        }
        m_bActive = true;
        m_bStopRun = false;
        m_bRestart = false;
        m_bStoppedFromElsewhere = false;
    }
    // The start is ours now. The old thread, if any, has nothing left to do but to leave.
    const Locker starting(m_startMutex);
    wait();
    start(QThread::InheritPriority);
    if (!isRunning() && !isFinished()) {
        qCWarning(lcECLink, "EC timer has no thread to be had.");
        const Locker lock(m_timerMutex);
        m_bActive = false;
    }
}

void OrvaneECTimer::stopTimer()
{
    const Locker lock(m_timerMutex);
    m_bStopRun = true;
    m_bRestart = false;
    if (QThread::currentThread() != this)
        m_bStoppedFromElsewhere = true;
    m_timerCond.notify_all();
}

void OrvaneECTimer::slotTimeout()
{
    if (m_cbTimeout)
        m_cbTimeout();
}

void OrvaneECTimer::run()
{
    do {
        qCInfo(lcECLink, "EC timer start %d", m_imsec.load());
        if (fireUntilStopped())
            qCInfo(lcECLink, "EC timer finished");
        else
            qCInfo(lcECLink, "EC timer terminate");
    } while (takeRestart());
}

bool OrvaneECTimer::fireUntilStopped()
{
    std::unique_lock<std::mutex> lock(m_timerMutex);
    while (!m_bStopRun) {
        const std::chrono::milliseconds interval(std::max(0, m_imsec.load()));
        if (m_timerCond.wait_for(lock, interval, [this] { return m_bStopRun; }))
            return false;
        lock.unlock();
        slotTimeout();
        lock.lock();
        if (m_bSingleShot)
            break;
    }
    return true;
}

bool OrvaneECTimer::takeRestart()
{
    const Locker lock(m_timerMutex);
    m_bActive = m_bRestart;
    if (m_bRestart) {
        m_bRestart = false;
        m_bStopRun = false;
    }
    return m_bActive;
}

} // namespace Orvane::ECProxy::Client

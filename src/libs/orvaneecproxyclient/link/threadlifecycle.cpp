#include "threadlifecycle_p.h"

#include "log_p.h"
#include "processend_p.h"

#include <system_error>
#include <thread>

namespace Orvane::ECProxy::Client::Internal {

using Locker = std::lock_guard<std::mutex>;

ThreadLifecycle::ThreadLifecycle(QThread& thread, std::mutex& flagMutex, std::atomic<bool>& stopFlag)
    : m_thread(thread)
    , m_mtxFlag(flagMutex)
    , m_bStop(stopFlag)
{
}

bool ThreadLifecycle::start()
{
    if (QThread::currentThread() == &m_thread) {
        if (m_bStop)
            ecWarning(
                lcLink, "%s cannot be started from its own thread while it stops.",
                qUtf8Printable(m_thread.objectName()));
        return !m_bStop;
    }
    ProcessEnd::watchAnew();
    const Locker turn(m_mtxTurn);
    // run() returns only after stop(): a running thread that is not being stopped keeps running.
    if (!m_bStop && m_thread.isRunning())
        return true;
    m_thread.wait();
    {
        const Locker lock(m_mtxFlag);
        ++m_nRun;
        m_bStop = false;
    }
    m_thread.start(QThread::InheritPriority);
    return true;
}

void ThreadLifecycle::stop(const std::function<void()>& wake)
{
    unsigned run = 0;
    {
        const Locker lock(m_mtxFlag);
        m_bStop = true;
        run = m_nRun;
        wake();
    }
    if (QThread::currentThread() == &m_thread)
        return;
    const Locker turn(m_mtxTurn);
    {
        const Locker lock(m_mtxFlag);
        if (m_nRun != run)
            return; // start() waited for the run that this stop ended before it began another
    }
    m_thread.wait();
    const Locker lock(m_mtxFlag); // the other half of leave()
}

void ThreadLifecycle::leave()
{
    const Locker lock(m_mtxFlag);
}

void deleteThreadObject(QThread* thread)
{
    if (QThread::currentThread() != thread) {
        delete thread;
        return;
    }
    try {
        std::thread([thread] { delete thread; }).detach();
    } catch (const std::system_error& error) {
        ecWarning(
            lcLink, "%s is not deleted: cannot start a thread for that: %s",
            qUtf8Printable(thread->objectName()), error.what());
    }
}

} // namespace Orvane::ECProxy::Client::Internal

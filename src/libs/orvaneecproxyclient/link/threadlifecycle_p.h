#pragma once

#include <QThread>

#include <atomic>
#include <functional>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// Starts and stops one thread of the link, many times and from any thread. No start or stop is lost when
/// another one comes at the same moment.
class ThreadLifecycle {
public:
    /// @param flagMutex guards the writing of `stopFlag`; the thread holds it while it checks the flag and
    /// waits
    ThreadLifecycle(QThread& thread, std::mutex& flagMutex, std::atomic<bool>& stopFlag);

    /// Starts the thread unless it runs. A thread that is being stopped is waited for first, then started
    /// again. Refused on a stopping thread itself, since it would take back the stop.
    /// @return whether the thread runs and is not being stopped
    bool start();

    /// Asks the thread to stop and waits for it without a limit; on the thread itself it does not wait.
    /// @param wake ends the thread's waiting; called with `flagMutex` held
    void stop(const std::function<void()>& wake);

    /// Must be the last call of the thread: stop() sees everything that the thread did before it.
    /// QThread::wait() orders the two as well, but ThreadSanitizer does not see that.
    void leave();

private:
    QThread& m_thread;
    std::mutex& m_mtxFlag;
    std::atomic<bool>& m_bStop;

    /// Lets only one thread start or wait at a time: a waiter must not end up waiting for the next run.
    /// Guards no member; taken before the flag mutex and never by the thread itself.
    std::mutex m_mtxTurn;

    /// How often the thread was started. Guarded by the flag mutex.
    unsigned m_nRun = 0;
};

/// Deletes a thread object. On that thread itself, which can neither wait for its own end nor be deleted
/// while it runs, another thread is started to do so.
void deleteThreadObject(QThread* thread);

} // namespace Orvane::ECProxy::Client::Internal

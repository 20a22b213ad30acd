#pragma once

#include <QThread>

#include <atomic>
#include <functional>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// Starts and stops one thread of the link, many times and from any thread, so that no request is lost to
/// another one that comes at the same moment.
class ThreadLifecycle {
public:
    /// @param flagMutex under which `stopFlag` is written, and which the thread takes to look at it and wait
    ThreadLifecycle(QThread& thread, std::mutex& flagMutex, std::atomic<bool>& stopFlag);

    /// Starts the thread unless it runs. One that is just being stopped is waited for first, then started
    /// anew; on that thread itself this is refused, since it would take back the stop.
    /// @return whether the thread runs and is not being stopped
    bool start();

    /// Tells the thread to stop and waits for it without a limit; on the thread itself it only tells.
    /// @param wake ends the thread's waiting; called with `flagMutex` held
    void stop(const std::function<void()>& wake);

    /// The last that the thread does: whoever waits for its end knows all it did before. QThread orders the
    /// two as well, but not in a way that tools see which watch the order of memory accesses.
    void leave();

private:
    QThread& m_thread;
    std::mutex& m_mtxFlag;
    std::atomic<bool>& m_bStop;

    /// One starter or waiter at a time: who waits for a run must not find the next one in its place. Guards
    /// no member; taken before the flag mutex and never by the thread itself.
    std::mutex m_mtxTurn;

    /// Guarded by the flag mutex: how often the thread was started.
    unsigned m_nRun = 0;
};

/// Deletes a thread object. On its own thread, where it can neither be waited for nor deleted while it
/// runs, the deletion is handed to a thread made for it.
void deleteThreadObject(QThread* thread);

} // namespace Orvane::ECProxy::Client::Internal

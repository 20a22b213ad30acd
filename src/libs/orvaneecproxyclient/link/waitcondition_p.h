#pragma once

#include <cerrno>
#include <mutex>
#include <utility>

#include <semaphore.h>

namespace Orvane::ECProxy::Client::Internal {

/// What one thread waits on until others have given it something to do.
///
/// All its functions are called with the one mutex held that guards what the thread waits for. It does what a
/// std::condition_variable does, for a single waiter and with a system call less at each wake: a thread that
/// wakes from one of those leaves its mutex marked as contended, and unlocking it then asks the kernel to
/// wake somebody who is not there. Three hand-overs between threads make up most of a key's way to its light.
class WaitCondition {
public:
    WaitCondition() { sem_init(&m_semaphore, 0, 0); }
    ~WaitCondition() { sem_destroy(&m_semaphore); }
    WaitCondition(const WaitCondition&) = delete;
    WaitCondition& operator=(const WaitCondition&) = delete;

    /// Waits without the mutex for the next wake. What it was woken for is for the caller to look at.
    void wait(std::unique_lock<std::mutex>& lock)
    {
        m_bWaiting = true;
        lock.unlock();
        while (sem_wait(&m_semaphore) != 0 && errno == EINTR) { }
        lock.lock();
    }

    void wake()
    {
        if (std::exchange(m_bWaiting, false))
            sem_post(&m_semaphore);
    }

    /// Gives the mutex free first, or the woken thread waits once more, for that.
    void wakeAndUnlock(std::unique_lock<std::mutex>& lock)
    {
        const bool waits = std::exchange(m_bWaiting, false);
        lock.unlock();
        if (waits)
            sem_post(&m_semaphore);
    }

private:
    sem_t m_semaphore; ///< at most 1: there is one post for each wait
    bool m_bWaiting = false; ///< guarded by the callers' mutex
};

} // namespace Orvane::ECProxy::Client::Internal

#include "serialjobs_p.h"

#include "processend_p.h"

#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

/// Shared with the worker, which may begin only after the owner is gone.
struct SerialJobs::State {
    // Guards all that follows.
    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::deque<Job> m_waiting;
    bool m_bRunning = false;
    /// A worker is in the pool, or on its way there.
    bool m_bHasWorker = false;
};

/// Runs the waiting jobs one by one until there is none.
class SerialJobs::Worker : public QRunnable {
public:
    explicit Worker(std::shared_ptr<State> state)
        : m_pState(std::move(state))
    {
        m_bMade.store(true, std::memory_order_release);
    }

    void run() override
    {
        // ThreadSanitizer does not see how the pool hands this object over: pairs with the constructor.
        (void)m_bMade.load(std::memory_order_acquire);
        State& state = *m_pState;
        std::unique_lock<std::mutex> lock(state.m_mutex);
        while (!state.m_waiting.empty()) {
            Job job = std::move(state.m_waiting.front());
            state.m_waiting.pop_front();
            state.m_bRunning = true;
            lock.unlock();
            if (const ProcessEnd::Work work; work)
                job();
            job = nullptr; // what it captures goes, too, before the owner may go
            lock.lock();
            state.m_bRunning = false;
            state.m_ended.notify_all();
        }
        state.m_bHasWorker = false;
    }

private:
    const std::shared_ptr<State> m_pState;
    std::atomic<bool> m_bMade{false};
};

SerialJobs::SerialJobs()
    : m_pState(std::make_shared<State>())
{
}

SerialJobs::~SerialJobs()
{
    std::deque<Job> dropped; // destroyed after the lock is released
    std::unique_lock<std::mutex> lock(m_pState->m_mutex);
    dropped.swap(m_pState->m_waiting);
    m_pState->m_ended.wait(lock, [this] { return !m_pState->m_bRunning; });
    lock.unlock();
}

void SerialJobs::post(Job job)
{
    {
        const std::lock_guard<std::mutex> lock(m_pState->m_mutex);
        m_pState->m_waiting.push_back(std::move(job));
        if (std::exchange(m_pState->m_bHasWorker, true))
            return;
    }
    QThreadPool::globalInstance()->start(new Worker(m_pState)); // the pool deletes it
}

} // namespace Orvane::ECProxy::Client::Internal

#include "serialjobs_p.h"

#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

struct SerialJobs::State {
    /// Runs the job without the lock. The caller has waited until none is running.
    void run(std::unique_lock<std::mutex>& lock, const Job& job)
    {
        m_running = std::this_thread::get_id();
        lock.unlock();
        job();
        lock.lock();
        m_running = {};
        m_ended.notify_all();
    }

    bool isIdle() const { return m_running == std::thread::id(); }

    // Guards all that follows.
    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::deque<Job> m_waiting;
    /// The thread that runs a job.
    std::thread::id m_running;
    /// A worker is in the pool, or on its way there.
    bool m_bHasWorker = false;
    bool m_bStopped = false;
};

/// Takes the waiting jobs one by one until there is none.
class SerialJobs::Worker : public QRunnable {
public:
    explicit Worker(std::shared_ptr<State> state)
        : m_pState(std::move(state))
    {
        m_bMade.store(true, std::memory_order_release);
    }

    void run() override
    {
        // Whatever the pool does to hand this object over, its members are seen from here on.
        (void)m_bMade.load(std::memory_order_acquire);
        State& state = *m_pState;
        std::unique_lock<std::mutex> lock(state.m_mutex);
        for (;;) {
            state.m_ended.wait(lock, [&] { return state.isIdle(); });
            if (state.m_waiting.empty())
                break;
            Job job = std::move(state.m_waiting.front());
            state.m_waiting.pop_front();
            // The job goes before the owner, who may be waiting, is told of its end.
            state.run(lock, [&job] { std::exchange(job, nullptr)(); });
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
    m_pState->m_bStopped = true;
    dropped.swap(m_pState->m_waiting);
    m_pState->m_ended.wait(lock, [this] { return m_pState->isIdle(); });
    lock.unlock();
}

void SerialJobs::post(Job job)
{
    {
        const std::lock_guard<std::mutex> lock(m_pState->m_mutex);
        if (m_pState->m_bStopped)
            return;
        m_pState->m_waiting.push_back(std::move(job));
        if (std::exchange(m_pState->m_bHasWorker, true))
            return;
    }
    QThreadPool::globalInstance()->start(new Worker(m_pState)); // the pool deletes it
}

void SerialJobs::runHere(const Job& job)
{
    std::unique_lock<std::mutex> lock(m_pState->m_mutex);
    if (m_pState->m_running == std::this_thread::get_id()) {
        lock.unlock();
        job();
        return;
    }
    m_pState->m_ended.wait(lock, [this] { return m_pState->isIdle(); });
    m_pState->run(lock, job);
}

} // namespace Orvane::ECProxy::Client::Internal

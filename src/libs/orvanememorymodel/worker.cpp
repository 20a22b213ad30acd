#include "worker.h"

#include "showclock_p.h"

#include <utility>

#include <pthread.h>

namespace Orvane::MemoryModel {

namespace {
/// The worker whose thread this is.
thread_local const Worker* runningWorker = nullptr;
} // namespace

Worker::Worker(const QString& name)
    : m_thread([this, name] { run(name); })
{
}

Worker::~Worker()
{
    stop();
}

bool Worker::post(Job job)
{
    const std::lock_guard lock(m_mutex);
    if (m_bStopping)
        return false;
    m_jobs.push_back(std::move(job));
    m_changed.notify_one();
    return true;
}

bool Worker::postAt(Clock::time_point time, Job job)
{
    const std::lock_guard lock(m_mutex);
    if (m_bStopping)
        return false;
    m_timedJobs.emplace(time, std::move(job));
    m_changed.notify_one();
    return true;
}

void Worker::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_bStopping = true;
        m_changed.notify_one();
    }
    if (m_thread.joinable())
        m_thread.join();
}

bool Worker::isWorkerThread()
{
    return runningWorker != nullptr;
}

bool Worker::isOwnThread() const
{
    return runningWorker == this;
}

void Worker::run(const QString& name)
{
    runningWorker = this;
    constexpr int SystemNameLength = 15;
    pthread_setname_np(pthread_self(), name.left(SystemNameLength).toLocal8Bit().constData());
    bool stopping = false;
    while (Job job = nextJob(stopping))
        job(stopping);
}

/// Waits for the next job; empty when the worker has stopped and none is left.
Worker::Job Worker::nextJob(bool& stopping)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        stopping = m_bStopping;
        const auto timed = m_timedJobs.begin();
        // Jobs whose time has come go first: they came earlier than those that wait in line.
        if (timed != m_timedJobs.end() && (stopping || timed->first <= ShowClock::now())) {
            Job job = std::move(timed->second);
            m_timedJobs.erase(timed);
            return job;
        }
        if (!m_jobs.empty()) {
            Job job = std::move(m_jobs.front());
            m_jobs.pop_front();
            return job;
        }
        if (stopping)
            return {};
        if (timed != m_timedJobs.end()) {
            m_changed.wait_until(lock, ShowClock::realTime(timed->first));
        } else {
            m_changed.wait(lock);
        }
    }
}

} // namespace Orvane::MemoryModel

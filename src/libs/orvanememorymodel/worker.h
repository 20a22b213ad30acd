#pragma once

#include <QString>
#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace Orvane::MemoryModel {

/// A thread that runs jobs one after another, and some of them at a given time.
class Worker final {
public:
    using Clock = std::chrono::steady_clock;
    /// Told whether the worker is stopping; a job should then end what it stands for as failed.
    using Job = std::function<void(bool stopping)>;

    /// @p name is for the system's tools, at most 15 characters of it.
    explicit Worker(const QString& name);
    ~Worker();

    /// Runs the job after those that wait. False when the worker has stopped; the job is then not run. Any
    /// thread.
    bool post(Job job);
    /// Runs the job as soon as the show's clock has come to the time and no other job runs. Otherwise as
    /// `post`.
    bool postAt(Clock::time_point time, Job job);

    /// Runs the jobs that still wait, telling them that the worker stops, and ends the thread. Not to be
    /// called by a job.
    void stop();

    /// True on the thread of any worker.
    static bool isWorkerThread();
    /// True on this worker's thread.
    bool isOwnThread() const;

private:
    Q_DISABLE_COPY_MOVE(Worker)

    void run(const QString& name);
    Job nextJob(bool& stopping);

    /// Guards m_jobs, m_timedJobs, m_bStopping.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    std::multimap<Clock::time_point, Job> m_timedJobs;
    bool m_bStopping = false;
    /// Last, for the thread uses all of the above.
    std::thread m_thread;
};

} // namespace Orvane::MemoryModel

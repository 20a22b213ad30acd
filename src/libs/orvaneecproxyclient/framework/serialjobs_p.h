#pragma once

#include <functional>
#include <memory>

namespace Orvane::ECProxy::Client::Internal {

/// Jobs of one owner that run on Qt's global thread pool, one after another in the order in which they were
/// posted.
///
/// Any thread may post. Destruction drops the jobs that have not begun and waits for the one that runs, so a
/// job may use its owner as long as the owner holds this object; it must not destroy it.
class SerialJobs {
public:
    using Job = std::function<void()>;

    SerialJobs();
    ~SerialJobs();
    SerialJobs(const SerialJobs&) = delete;
    SerialJobs& operator=(const SerialJobs&) = delete;

    void post(Job job);

private:
    class Worker;
    struct State;

    const std::shared_ptr<State> m_pState;
};

} // namespace Orvane::ECProxy::Client::Internal

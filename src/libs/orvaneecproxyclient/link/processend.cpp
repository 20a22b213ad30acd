#include "processend_p.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace {

struct State {
    /// Read by every thread that works. Written with the mutex held.
    std::atomic<bool> m_bBegun{false};
    /// How many are at work, or about to see that they may not be.
    std::atomic<int> m_nWorking{0};

    // Guards what follows, and the wait for m_nWorking.
    std::mutex m_mutex;
    std::condition_variable m_rested;
    bool m_bAtExit = false; ///< the process's own end has begun: for good
    bool m_bFollowsApplication = false;
    bool m_bFollowsProcess = false;
};

/// Never destroyed: threads ask it until the process is gone.
State& state()
{
    static State& s_state = *new State;
    return s_state;
}

/// How often this thread is at work itself: it may be the one that ends the process.
thread_local int t_nOwnWork = 0;

void begin(bool isProcess)
{
    State& now = state();
    std::unique_lock<std::mutex> lock(now.m_mutex);
    now.m_bAtExit |= isProcess;
    now.m_bFollowsApplication = false;
    now.m_bBegun = true;
    now.m_rested.wait_for(lock, ProcessEnd::Patience, [&] { return now.m_nWorking.load() <= t_nOwnWork; });
}

/// Called with the mutex held.
void watch(State& now)
{
    if (!now.m_bFollowsProcess) {
        // Handlers run in the opposite order: what is made before this is there when the end begins.
        (void)QThreadPool::globalInstance();
        now.m_bFollowsProcess = std::atexit([] { begin(true); }) == 0;
    }
    // Qt calls the routine once.
    if (QCoreApplication::instance() && !std::exchange(now.m_bFollowsApplication, true))
        qAddPostRoutine([] { begin(false); });
}

} // namespace

void ProcessEnd::watch()
{
    State& now = state();
    const std::lock_guard<std::mutex> lock(now.m_mutex);
    if (!now.m_bBegun)
        Internal::watch(now);
}

void ProcessEnd::watchAnew()
{
    State& now = state();
    const std::lock_guard<std::mutex> lock(now.m_mutex);
    if (now.m_bAtExit)
        return;
    now.m_bBegun = false;
    Internal::watch(now);
}

bool ProcessEnd::hasBegun()
{
    return state().m_bBegun.load(std::memory_order_relaxed);
}

ProcessEnd::Work::Work()
{
    State& now = state();
    ++now.m_nWorking;
    ++t_nOwnWork;
    // Counted first: whoever begins the end either sees the work or is seen.
    m_bAllowed = !now.m_bBegun;
}

ProcessEnd::Work::~Work()
{
    State& now = state();
    --t_nOwnWork;
    --now.m_nWorking;
    if (now.m_bBegun) {
        const std::lock_guard<std::mutex> lock(now.m_mutex);
        now.m_rested.notify_all();
    }
}

} // namespace Orvane::ECProxy::Client::Internal

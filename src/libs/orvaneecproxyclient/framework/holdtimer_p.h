#pragma once

#include "orvaneectimer.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

/// A single-shot `OrvaneECTimer` that is made on first use: for keys that act when held, for windows in
/// which presses are counted, for auto-repeat. May be used on any thread; the callback runs on the timer's
/// own. Destruction cancels a pending time-out and waits for a running callback, so the callback may use
/// its owner, this timer included, as long as the owner holds this object; it must not destroy it.
class HoldTimer {
public:
    explicit HoldTimer(std::function<void()> callback)
        : m_callback(std::move(callback))
    {
    }

    ~HoldTimer()
    {
        const auto timer = this->timer();
        if (!timer)
            return;
        timer->stopTimer();
        // A callback that is just starting the timer again holds it too: letting go of it would not wait.
        timer->wait();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pTimer.reset();
    }

    HoldTimer(const HoldTimer&) = delete;
    HoldTimer& operator=(const HoldTimer&) = delete;

    /// Starts anew; a time-out that was pending never comes. Called by the callback it has no effect when
    /// another thread has stopped the timer since the time-out.
    void restart(std::chrono::milliseconds interval)
    {
        const auto timer = madeTimer();
        const std::lock_guard<std::mutex> step(m_stepMtx);
        timer->stopTimer();
        setDeadline(Clock::now() + interval);
        timer->startTimer(int(interval.count()));
    }

    /// Cancels a pending time-out, which then never comes; false when none was pending: the callback was
    /// called already, or nothing was started. Does not wait for a running callback.
    bool stop()
    {
        const std::lock_guard<std::mutex> step(m_stepMtx);
        const bool wasPending = setDeadline({}).has_value();
        if (const auto timer = this->timer())
            timer->stopTimer();
        return wasPending;
    }

    /// True from the start to the end of the callback.
    bool isRunning() const
    {
        const auto timer = this->timer();
        return timer && timer->isRunning();
    }

private:
    using Clock = std::chrono::steady_clock;
    using Deadline = std::optional<Clock::time_point>;

    Deadline setDeadline(Deadline deadline)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::exchange(m_deadline, deadline);
    }

    void timeout()
    {
        {
            // The timer may have taken its own last look at a stop just before the stop came. The deadline
            // is gone then, or it is that of a later start.
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_deadline || Clock::now() < *m_deadline)
                return;
            m_deadline.reset();
        }
        m_callback();
    }

    std::shared_ptr<OrvaneECTimer> timer() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_pTimer;
    }

    std::shared_ptr<OrvaneECTimer> madeTimer()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_pTimer) {
            m_pTimer = OrvaneECTimer::create([this] { timeout(); });
            m_pTimer->setSingleShot(true);
        }
        return m_pTimer;
    }

    const std::function<void()> m_callback;

    // Keeps the steps of a start or a stop together: of two starts that mix, the first could set the timer
    // going and the second the deadline, and the time-out, too early for it, would be the last. Guards no
    // member; taken before m_mutex.
    std::mutex m_stepMtx;

    // m_mutex guards m_deadline, which is there while a time-out is pending, and m_pTimer.
    mutable std::mutex m_mutex;
    Deadline m_deadline;
    std::shared_ptr<OrvaneECTimer> m_pTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "keytracing_p.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client {
class OrvaneECTimer;
}

namespace Orvane::ECProxy::Client::Internal {

/// A single-shot `OrvaneECTimer` that is made on first use: for keys that act when held, for windows in
/// which presses are counted, for auto-repeat. All functions may be called on any thread, also from the
/// callback, which runs on the timer's own. Destruction cancels a pending time-out and waits for a running
/// callback. The callback may therefore use the owner of this object, but must not destroy it.
class HoldTimer {
public:
    explicit HoldTimer(std::function<void()> callback);
    ~HoldTimer();
    HoldTimer(const HoldTimer&) = delete;
    HoldTimer& operator=(const HoldTimer&) = delete;

    /// Starts again; a time-out that was pending never comes. Called by the callback it has no effect when
    /// another thread has stopped or restarted the timer since the time-out.
    void restart(std::chrono::milliseconds interval);

    /// Cancels a pending time-out, which then never comes. Does not wait for a running callback.
    /// @return false when none was pending: the callback was called already, or nothing was started
    bool stop();

    /// True from the start to the end of the callback, and until the timer's thread has ended after it.
    bool isRunning() const;

private:
    OrvaneECTimer* timer() const;
    OrvaneECTimer& madeTimer();
    void timeout();

    const std::function<void()> m_callback;
    /// Guards m_pTimer, which is made once and stays until the destructor, and m_pOrigin.
    mutable std::mutex m_mutex;
    std::shared_ptr<OrvaneECTimer> m_pTimer;
    /// The traced key that started the timer last.
    KeyTracing::OriginPtr m_pOrigin;
};

} // namespace Orvane::ECProxy::Client::Internal

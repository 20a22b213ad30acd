#pragma once

#include "orvaneectimer.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// What an `OrvaneECTimer` is doing, as one number: the start that is in force. Each start gets a number of
/// its own, a stop takes it away, and a time-out counts only while the number it waited for is still there.
class OrvaneECTimerPrivate {
public:
    explicit OrvaneECTimerPrivate(OrvaneECTimer::TimeoutCallback cb);
    ~OrvaneECTimerPrivate();

    enum class Caller { TimerThread, OtherThread };
    enum class Started {
        Yes, ///< the thread is at work already and notices it
        NeedsThread, ///< the caller must start the thread now
        Refused, ///< the thread that called is just ending
    };

    /// @param anew whether a start in force is replaced; if not, it only takes over the interval
    Started start(int msec, bool anew, Caller caller);
    /// @return whether a time-out was pending that now never comes
    bool stop(Caller caller);
    void startFailed();

    void setSingleShot(bool singleShot);
    void setInterval(int msec);
    int interval() const;

    /// The thread's work: returns when no start is in force.
    void run();

    const OrvaneECTimer::TimeoutCallback m_cbTimeout;

private:
    using Generation = quint64;

    bool fireWhileInForce(std::unique_lock<std::mutex>& lock, Generation own);
    void fire(std::unique_lock<std::mutex>& lock, Generation own);
    bool call(Generation own);

    /// Guards all members below, but for the thread's taking of m_nDue.
    mutable std::mutex m_timerMutex;
    /// Ends a wait early.
    std::condition_variable m_timerCond;
    Generation m_nLast = 0; ///< given to the last start
    Generation m_nInForce = 0; ///< the start in force; 0: stopped
    /// The start whose next time-out is still to come; 0: none. The thread takes it with its last step before
    /// the callback: were that done with the mutex held, a stop could return between unlock and callback.
    std::atomic<Generation> m_nDue{0};
    /// The start whose callback is under way; 0 also once another thread has stopped it, for then the
    /// callback has no say over its timer any more.
    Generation m_nCalling = 0;
    bool m_bThreadAtWork = false; ///< the thread looks at m_nInForce once more before it ends
    bool m_bSingleShot = false;
    int m_imsec = 0;
};

} // namespace Orvane::ECProxy::Client::Internal

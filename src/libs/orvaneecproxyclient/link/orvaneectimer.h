#pragma once

#include "orvaneecproxyclient_global.h"

#include <QThread>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client {

/// A timer on a thread of its own that needs no event loop, for hold keys and their kind.
///
/// Made by create(), then startTimer() and stopTimer() as often as wanted and from any thread. The callback
/// runs on the timer's thread; the next interval is measured from its end. It must not throw.
///
/// A start after a stop always counts, also while the thread has not yet noticed the stop or is still in
/// the callback. A time-out that a stop came before never fires: a callback that is under way when
/// stopTimer() is called finishes, and no other follows. The callback may itself stop, start and let go of
/// its timer; it cannot start one anew that was stopped from elsewhere meanwhile.
///
/// Destruction stops the timer and waits for a callback that is under way. When the callback lets go of the
/// last pointer itself, the object goes as soon as the callback is through.
class ORVANEECPROXYCLIENT_EXPORT OrvaneECTimer : public QThread,
                                                 public std::enable_shared_from_this<OrvaneECTimer> {
    Q_OBJECT

public:
    using TimeoutCallback = std::function<void()>;

    /// A timer that is repeating and has the interval 0 until told otherwise.
    /// @param cb may be empty: then nothing is called
    /// @param parent none, or one that outlives every pointer to the timer
    static std::shared_ptr<OrvaneECTimer> create(TimeoutCallback cb, QObject* parent = nullptr);
    ~OrvaneECTimer() override;

    /// Whether the timer ends with its next time-out. Thread: any.
    void setSingleShot(bool singleShot);
    /// Takes effect at the next wait. Thread: any.
    /// @param msec milliseconds, from 0 on: at once, again and again; a negative one counts as 0
    void setInterval(int msec);

    /// Starts the timer with a new interval; one that runs only takes over the interval. Thread: any, but
    /// not from a slot that finished() calls directly: there it is refused with a warning.
    /// @param msec as for setInterval()
    void startTimer(int msec);
    /// Ends the timer without waiting for its thread; without effect on one that does not run. Thread: any.
    void stopTimer();

public Q_SLOTS:
    /// Calls the callback, on the calling thread.
    void slotTimeout();

protected:
    /// Not for use, since only create() makes a timer that its own callback may let go of.
    OrvaneECTimer(TimeoutCallback cb, QObject* parent);

    void run() override;

private:
    /// @return false when a stop ended a wait, true when the timer came to its end otherwise
    bool fireUntilStopped();
    /// The thread's last look at its state: goes on where a start came after the stop, else leaves.
    bool takeRestart();

    /// Guards m_bActive, m_bStopRun, m_bRestart and m_bStoppedFromElsewhere.
    std::mutex m_timerMutex;
    /// Woken to stop early.
    std::condition_variable m_timerCond;
    /// A start is claimed or the thread is at work; false when the thread has nothing left but to leave.
    bool m_bActive = false;
    bool m_bStopRun = false;
    /// A start that came after the stop which the thread is still to act upon.
    bool m_bRestart = false;
    /// The stop came from a thread that is not the timer's, and no start from such a thread after it.
    bool m_bStoppedFromElsewhere = false;

    /// Keeps two starters apart. Guards no member; never taken on the timer's thread.
    std::mutex m_startMutex;

    const TimeoutCallback m_cbTimeout;
    std::atomic<bool> m_bSingleShot{false};
    std::atomic<int> m_imsec{0};
};

} // namespace Orvane::ECProxy::Client

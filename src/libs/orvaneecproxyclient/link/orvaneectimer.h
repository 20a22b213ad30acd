#pragma once

#include "orvaneecproxyclient_global.h"

#include <QThread>

#include <functional>
#include <memory>

namespace Orvane::ECProxy::Client {

namespace Internal {
class HoldTimer;
class OrvaneECTimerPrivate;
} // namespace Internal

/// A timer on a thread of its own that needs no event loop, for keys that act when held or that repeat.
///
/// Held by a shared pointer: make it with create(), then call startTimer() and stopTimer() as often as needed
/// and from any thread. The callback runs on the timer's thread; the next interval is measured from its end.
/// It must not throw.
///
/// A start after a stop always counts, even while the thread has not yet noticed the stop or is still in
/// the callback. After stopTimer() no further callback begins; one that is under way finishes. The callback
/// may stop and start its own timer. Once another thread has stopped the timer, calls from the callback that
/// is still under way have no effect.
///
/// Destruction stops the timer and waits for a callback that is under way.
class ORVANEECPROXYCLIENT_EXPORT OrvaneECTimer : public QThread,
                                                 public std::enable_shared_from_this<OrvaneECTimer> {
    Q_OBJECT

public:
    using TimeoutCallback = std::function<void()>;

    /// Makes a timer whose callback may release the last pointer to it: the timer is then deleted as soon as
    /// the callback has returned. Parameters as for the constructor.
    static std::shared_ptr<OrvaneECTimer> create(TimeoutCallback cb, QObject* parent = nullptr);

    /// A repeating timer with the interval 0. Its callback must not release the last pointer to it, because a
    /// thread cannot wait for its own end: use create() where it might.
    /// @param cb may be empty: then nothing is called
    /// @param parent none, or one that outlives every pointer to the timer
    explicit OrvaneECTimer(TimeoutCallback cb, QObject* parent = nullptr);
    /// Waits for a callback that is under way. One that takes longer than an interval and a second is logged.
    ~OrvaneECTimer() override;

    /// Whether the timer ends with its next time-out. Thread: any.
    void setSingleShot(bool singleShot);
    /// Takes effect at the next wait. Thread: any.
    /// @param msec milliseconds, from 0: the callback runs again and again without a pause; a negative value
    /// counts as 0
    void setInterval(int msec);

    /// Starts the timer with a new interval; a running timer only takes over the interval. Thread: any. From
    /// a slot that finished() calls directly it is refused with a warning. If the system has no thread left,
    /// the timer does not run; the log says so.
    /// @param msec as for setInterval()
    void startTimer(int msec);
    /// Ends the timer without waiting for its thread; no effect on a timer that does not run. Thread: any.
    void stopTimer();

public Q_SLOTS:
    /// Calls the callback, on the calling thread.
    void slotTimeout();

protected:
    void run() override;

private:
    friend class Internal::HoldTimer; // uses the two functions below

    enum class Start { UnlessRunning, Anew };
    void start(int msec, Start start);
    /// @return whether a time-out was pending that now never comes
    bool stop();

    const std::unique_ptr<Internal::OrvaneECTimerPrivate> d;
};

} // namespace Orvane::ECProxy::Client

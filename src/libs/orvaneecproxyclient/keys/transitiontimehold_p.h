#pragma once

#include "holdtimer_p.h"
#include "showclock_p.h"

#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace Orvane::ECProxy::Client::Internal {

/// The transition time that a held time key edits: one step at the press, then repeats that come faster and
/// faster until the release.
///
/// Times are in seconds, from 0.1 to 10.0, and wrap at both ends. One hold at a time: pressing the other key
/// ends the one that is going on. Any thread may call any member; steps run on the thread that presses and
/// on timer threads. Destruction waits for a step that is under way.
class TransitionTimeHold {
public:
    /// Shows a step on the key that is held; called with no lock held.
    using ShowStep = std::function<void(bool reduce, double seconds)>;
    /// Called after a step that was shown later than the release, which it may have overwritten.
    using StepShownTooLate = std::function<void()>;

    TransitionTimeHold(ShowStep showStep, StepShownTooLate stepShownTooLate);

    /// A time key was pressed: makes the first step from `seconds` on, down when `reduce`.
    void press(bool reduce, double seconds);
    /// Ends the hold, whichever key began it: no further step follows. Returns the time that was reached, in
    /// tenths; empty when no hold was going on.
    std::optional<double> release();
    /// Ends the hold without a result if the key of that direction began it. Another key's hold goes on.
    void cancel(bool reduce);

private:
    void end();
    void repeat();
    void step(int hold);
    bool armNextStep(int hold);

    const ShowStep m_showStep;
    const StepShownTooLate m_stepShownTooLate;

    // m_effectSpeedMutex guards what follows and keeps the timers in step with it. Presses and releases come
    // on the decoder or the GUI thread, repeats on timer threads; without it a repeat could start its timer
    // anew after the release has stopped it.
    std::mutex m_effectSpeedMutex;
    bool m_bRelease = true; ///< no time key is held: no step may follow
    int m_nHold = 0; ///< number of the hold that is going on or was last
    double m_effectSpeed = 0.5; ///< the time being edited, in seconds
    bool m_bEffectTimeReduce = true; ///< the held key counts down
    int m_takeMilliSecTime = 350; ///< from this step to the next
    /// No repeat comes before: a time-out of an earlier hold may still be on its way when the next begins.
    ShowClock::Clock::time_point m_nextRepeat;

    // Last, so that no time-out comes while the rest is destroyed.
    HoldTimer m_pEffectTimer{[this] { repeat(); }};
    HoldTimer m_pEffectReduceTimer{[this] { repeat(); }};
};

/// Rounded to a tenth of a second, as a time is shown and written.
double inTenths(double seconds);

/// A transition time in seconds as the labels show it.
QString transitionTimeText(double seconds);

} // namespace Orvane::ECProxy::Client::Internal

#include "transitiontimehold_p.h"

#include "log_p.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

using std::chrono::milliseconds;

namespace {

constexpr double ShortestTransition = 0.1; // seconds
constexpr double LongestTransition = 10.0;
constexpr double TransitionStep = 0.1;

constexpr int FirstRepeatMs = 350;
constexpr int RepeatSpeedUpMs = 100;
constexpr int FastestRepeatMs = 10;

double stepped(double seconds, bool reduce)
{
    // No step leads back from infinity or from what is not a number: begin at the end.
    const bool isAtTheEnd = !std::isfinite(seconds)
        || (reduce ? inTenths(seconds) <= ShortestTransition : inTenths(seconds) >= LongestTransition);
    if (isAtTheEnd)
        return reduce ? LongestTransition : ShortestTransition;
    return reduce ? seconds - TransitionStep : seconds + TransitionStep;
}

} // namespace

double inTenths(double seconds)
{
    return std::round(seconds * 10) * 0.1;
}

QString transitionTimeText(double seconds)
{
    return QStringLiteral("%1").arg(seconds, 0, 'f', 1);
}

TransitionTimeHold::TransitionTimeHold(ShowStep showStep, StepShownTooLate stepShownTooLate)
    : m_showStep(std::move(showStep))
    , m_stepShownTooLate(std::move(stepShownTooLate))
{
}

void TransitionTimeHold::press(bool reduce, double seconds)
{
    int hold = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        m_bEffectTimeReduce = reduce;
        m_takeMilliSecTime = FirstRepeatMs;
        m_nextRepeat = ShowClock::now() + milliseconds(FirstRepeatMs);
        m_bRelease = false;
        m_effectSpeed = seconds;
        hold = ++m_nHold;
    }
    step(hold);
}

std::optional<double> TransitionTimeHold::release()
{
    const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
    const bool wasHeld = !m_bRelease;
    end();
    return wasHeld ? std::make_optional(inTenths(m_effectSpeed)) : std::nullopt;
}

void TransitionTimeHold::cancel(bool reduce)
{
    const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
    if (m_bEffectTimeReduce == reduce)
        end();
}

/// Called with m_effectSpeedMutex held.
void TransitionTimeHold::end()
{
    m_bRelease = true;
    m_pEffectTimer.stop();
    m_pEffectReduceTimer.stop(); // it may be the other key that repeats
}

void TransitionTimeHold::repeat()
{
    int hold = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        if (ShowClock::now() < m_nextRepeat)
            return; // a time-out of an earlier hold
        hold = m_nHold;
    }
    step(hold);
}

void TransitionTimeHold::step(int hold)
{
    bool reduce = false;
    double seconds = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        if (m_bRelease || m_nHold != hold)
            return; // released meanwhile, or the other key was pressed
        reduce = m_bEffectTimeReduce;
        seconds = m_effectSpeed = stepped(m_effectSpeed, reduce);
    }
    const double shown = inTenths(seconds);
    ecDebug(lcKeys, "IncreaseEffectTime m_effectSpeed= :%f", seconds);
    ecDebug(lcKeys, "IncreaseEffectTime speed= :%f", shown);
    ecDebug(lcKeys, "IncreaseEffectTime speedStr= :%s", qUtf8Printable(transitionTimeText(shown)));
    m_showStep(reduce, shown);
    if (!armNextStep(hold))
        m_stepShownTooLate();
}

/// False when the key has been released meanwhile. When another hold has begun, nothing is armed either.
bool TransitionTimeHold::armNextStep(int hold)
{
    const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
    if (m_bRelease)
        return false;
    if (m_nHold == hold) {
        const milliseconds interval(m_takeMilliSecTime);
        m_nextRepeat = ShowClock::now() + interval;
        (m_bEffectTimeReduce ? m_pEffectReduceTimer : m_pEffectTimer).restart(interval);
        m_takeMilliSecTime = std::max(m_takeMilliSecTime - RepeatSpeedUpMs, FastestRepeatMs);
    }
    return true;
}

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "orvaneplatform_global.h"

#include <chrono>

/// The one clock of the console and of the model in memory: holds, repeats, windows in which presses count,
/// the waits of handlers, and how long a simulated processor takes. Tests run it faster, with all ratios
/// kept, so that hours of a show pass in minutes. Sockets, the watch for the console's service and limits for
/// code that hangs go by real time.
///
/// Any thread may call any function but `setRate`.
namespace Orvane::ShowClock {

using Clock = std::chrono::steady_clock;

/// How many seconds of the show pass in a real one: 1 unless it was set.
ORVANEPLATFORM_EXPORT int rate() noexcept;
/// To be set before model and console are made, as long as nothing waits: times taken at two rates have
/// nothing in common.
/// @param rate from 1; smaller ones count as 1
ORVANEPLATFORM_EXPORT void setRate(int rate) noexcept;

/// The show's time: at rate 1 the steady clock's.
inline Clock::time_point now() noexcept
{
    return Clock::time_point(Clock::now().time_since_epoch() * rate());
}

/// How long to wait for that much of the show's time.
template <typename Rep, typename Period>
std::chrono::nanoseconds realTime(std::chrono::duration<Rep, Period> ofTheShow) noexcept
{
    return std::chrono::nanoseconds(ofTheShow) / rate();
}

/// When the show's time comes, for a wait on the steady clock.
inline Clock::time_point realTime(Clock::time_point ofTheShow) noexcept
{
    return Clock::time_point(ofTheShow.time_since_epoch() / rate());
}

} // namespace Orvane::ShowClock

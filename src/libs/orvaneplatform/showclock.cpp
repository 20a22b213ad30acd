#include "showclock_p.h"

#include <algorithm>
#include <atomic>

namespace Orvane::ShowClock {

namespace {
std::atomic<int> s_rate{1};
} // namespace

int rate() noexcept
{
    return s_rate.load(std::memory_order_relaxed);
}

void setRate(int rate) noexcept
{
    s_rate.store(std::max(1, rate), std::memory_order_relaxed);
}

} // namespace Orvane::ShowClock

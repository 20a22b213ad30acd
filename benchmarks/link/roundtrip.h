#pragma once

#include "targets.h"

namespace Orvane::Benchmark {

struct RoundTripPlan {
    int rounds = 15; ///< each measures every subject once, in turn
    int warmUps = 500; ///< round trips of a subject before those that count
    int roundTrips = 4000;
};

/// From the sending of a key press to the arrival of the LED datagram that answers it, between two processes
/// on one core, back to back. Prints a table.
void measureRoundTrips(const RoundTripPlan& plan, Targets& targets);

} // namespace Orvane::Benchmark

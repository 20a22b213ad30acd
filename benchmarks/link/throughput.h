#pragma once

#include "targets.h"

#include <chrono>

namespace Orvane::Benchmark {

struct ThroughputPlan {
    int lossRounds = 5; ///< each measures every subject once, in turn
    int ceilingRounds = 3; ///< likewise
    std::chrono::milliseconds duration{500}; ///< of one run at one rate
    int firstRate = 100'000; ///< where the search for the ceiling begins
    double step = 1.08; ///< what the search tells apart
    int steps = 48; ///< up to four million a second
};

/// How many reports are lost at given rates, with the sender in another process. Prints a table.
void measureLoss(const ThroughputPlan& plan, Targets& targets);

/// The highest rate at which none is lost or late. Prints a table.
void measureCeilings(const ThroughputPlan& plan, Targets& targets);

} // namespace Orvane::Benchmark

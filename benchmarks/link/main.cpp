/// Measures the link between two processes against plain sockets, a plain relay of threads and liblo.
///   bench_link [--smoke | --quick] [--round-trip] [--loss] [--ceiling]
/// Without a part named, all three. --smoke is a pass that only shows that everything runs.

#include "roundtrip.h"
#include "subjectprocess.h"
#include "throughput.h"

#include <cstdio>
#include <cstring>
#include <set>
#include <string>

using namespace Orvane::Benchmark;

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--serve") == 0)
        return SubjectProcess::runChild(argc, argv);

    std::set<std::string> asked(argv + 1, argv + argc);
    RoundTripPlan roundTrips;
    ThroughputPlan throughput;
    const bool smoke = asked.erase("--smoke") > 0;
    if (smoke) {
        roundTrips = {1, 1, 10};
        throughput.lossRounds = 1;
        throughput.ceilingRounds = 1;
        throughput.duration = std::chrono::milliseconds(20);
        throughput.steps = 1;
        throughput.firstRate = 1000;
    } else if (asked.erase("--quick") > 0) {
        roundTrips.rounds = 6;
        throughput.lossRounds = 3;
        throughput.ceilingRounds = 1;
    }
    const bool everything = asked.empty();
    Targets targets;
    if (asked.erase("--round-trip") > 0 || everything)
        measureRoundTrips(roundTrips, targets);
    if (asked.erase("--loss") > 0 || everything)
        measureLoss(throughput, targets);
    if (asked.erase("--ceiling") > 0 || everything)
        measureCeilings(throughput, targets);
    if (!asked.empty()) {
        std::fprintf(stderr, "unknown: %s\n", asked.begin()->c_str());
        return 2;
    }
    return smoke ? 0 : targets.exitStatus();
}

#include "roundtrip.h"

#include "consolesocket.h"
#include "statistics.h"
#include "subjectprocess.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace Orvane::Benchmark {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double RawTarget = 2.5;
constexpr double RelayTarget = 1.2;
constexpr double LogTarget = 1.15;

struct Series {
    Subject subject;
    std::vector<double> medianUs; ///< one a round
    std::vector<float> allUs;
    int lost = 0;
};

double oneRoundTrip(const ConsoleSocket& console, const std::vector<char>& report, int& lost)
{
    const auto begin = Clock::now();
    console.send(report);
    if (!console.receive())
        ++lost;
    return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

void measureRound(const RoundTripPlan& plan, Series& series)
{
    const ConsoleSocket console;
    const SubjectProcess process(series.subject, Duty::Answer, console);
    const std::vector<char> report = reportFor(series.subject);
    int ignored = 0;
    for (int i = 0; i < plan.warmUps; ++i)
        oneRoundTrip(console, report, ignored);
    std::vector<float> us(std::size_t(plan.roundTrips));
    for (float& time : us)
        time = float(oneRoundTrip(console, report, series.lost));
    series.medianUs.push_back(double(median(us)));
    series.allUs.insert(series.allUs.end(), us.begin(), us.end());
}

} // namespace

void measureRoundTrips(const RoundTripPlan& plan, Targets& targets)
{
    enum { Raw, Relay, Link, LinkFormatted, FullWay, FullWayFormatted, Count };
    std::array<Series, Count> all;
    all[Raw].subject = {SubjectKind::Raw, LogMode::Disabled};
    all[Relay].subject = {SubjectKind::Relay, LogMode::Disabled};
    all[Link].subject = {SubjectKind::Link, LogMode::Disabled};
    all[LinkFormatted].subject = {SubjectKind::Link, LogMode::Formatted};
    all[FullWay].subject = {SubjectKind::FullWay, LogMode::Disabled};
    all[FullWayFormatted].subject = {SubjectKind::FullWay, LogMode::Formatted};

    pinToCore(lastCore());
    for (int round = 0; round < plan.rounds; ++round) {
        // Every subject comes first, second, … equally often.
        for (int i = 0; i < Count; ++i)
            measureRound(plan, all[std::size_t((i + round) % Count)]);
    }
    unpin();

    std::printf(
        "\nRound trip: key press -> LED datagram, two processes on core %d, %d rounds of %d, alternating\n\n",
        lastCore(), plan.rounds, plan.roundTrips);
    std::printf("| %-30s | median us | p99 us | x raw | x relay | lost |\n", "");
    std::printf("|%s|----------:|-------:|------:|--------:|-----:|\n", std::string(32, '-').c_str());
    for (const Series& series : all) {
        std::printf(
            "| %-30s | %9.2f | %6.1f | %5.2f | %7.2f | %4d |\n", title(series.subject).c_str(),
            median(series.medianUs), double(quantile(series.allUs, 0.99)),
            medianRatio(series.medianUs, all[Raw].medianUs),
            medianRatio(series.medianUs, all[Relay].medianUs), series.lost);
    }
    std::printf("\n");
    const auto ratio = [&](int subject, int baseline) {
        return medianRatio(all[std::size_t(subject)].medianUs, all[std::size_t(baseline)].medianUs);
    };
    targets.atMost("link round trip", ratio(Link, Raw), RawTarget, "x raw");
    targets.atMost("link round trip", ratio(Link, Relay), RelayTarget, "x relay");
    targets.atMost(
        "link round trip, log lines formatted", ratio(LinkFormatted, Link), LogTarget, "x without log lines");
}

} // namespace Orvane::Benchmark

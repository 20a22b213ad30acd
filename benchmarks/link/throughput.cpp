#include "throughput.h"

#include "consolesocket.h"
#include "statistics.h"
#include "subjectprocess.h"

#include <sys/prctl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <thread>

namespace Orvane::Benchmark {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::array<int, 3> LossRates{50'000, 100'000, 200'000};
constexpr double LibloTarget = 1.5;

/// A burst's length: what is due is sent this often.
constexpr auto Tick = 250us;
/// Who has handled everything this long after the last report kept up, and did not only store.
constexpr auto LongestLag = 20ms;

std::vector<Subject> subjects()
{
    return {
        {SubjectKind::Raw, LogMode::Disabled},         {SubjectKind::Relay, LogMode::Disabled},
        {SubjectKind::LibloThread, LogMode::Disabled}, {SubjectKind::LibloLoop, LogMode::Disabled},
        {SubjectKind::Link, LogMode::Disabled},        {SubjectKind::Link, LogMode::Formatted},
        {SubjectKind::FullWay, LogMode::Disabled},     {SubjectKind::FullWay, LogMode::Formatted},
    };
}

struct Run {
    double rate = 0; ///< what was really sent, a second
    double lossPercent = 0;
    bool keptUp = false; ///< nothing lost and nothing late
};

Run runAt(const Subject& subject, int rate, std::chrono::nanoseconds duration)
{
    const ConsoleSocket console;
    const SubjectProcess process(subject, Duty::Count, console);
    const std::vector<char> report = reportFor(subject);
    const std::uint64_t before = process.handled();

    pinToCore(lastCore()); // the sender alone: the subject has all cores
    std::uint64_t sent = 0;
    const auto begin = Clock::now();
    for (auto now = begin; now - begin < duration; now = Clock::now()) {
        const double elapsed = std::chrono::duration<double>(now - begin + Tick).count();
        const auto due = std::uint64_t(elapsed * rate);
        sent += std::uint64_t(console.sendMany(report, int(due - sent)));
        std::this_thread::sleep_until(now + Tick);
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const auto deadline = Clock::now() + LongestLag;
    while (process.handled() - before < sent && Clock::now() < deadline)
        std::this_thread::sleep_for(200us);
    const bool keptUp = process.handled() - before == sent;
    unpin();

    const std::uint64_t handled = process.settle() - before;
    return {double(sent) / seconds, 100.0 * double(sent - handled) / double(sent), keptUp};
}

struct Ceiling {
    double rate = 0; ///< 0 when it keeps up with no rate of the ladder
    bool isSenders = false; ///< the sender could not send faster: the subject's own limit lies higher
};

/// Whether the subject keeps up with a rate; `ceiling` takes what it was really sent then. Machine noise only
/// ever makes a run fail, so that one that succeeds decides.
bool keepsUp(const Subject& subject, int rate, const ThroughputPlan& plan, Ceiling& ceiling)
{
    constexpr int attempts = 3;
    constexpr double senderInTime = 0.95;
    bool senderLate = false;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Run run = runAt(subject, rate, plan.duration);
        const bool inTime = run.rate >= senderInTime * rate;
        if (run.keptUp) {
            ceiling.rate = std::max(ceiling.rate, run.rate);
            ceiling.isSenders = false;
            if (inTime)
                return true;
            senderLate = true;
        }
    }
    ceiling.isSenders = senderLate;
    return false;
}

/// The highest rate of a geometric ladder that the subject keeps up with.
Ceiling findCeiling(const Subject& subject, const ThroughputPlan& plan)
{
    Ceiling ceiling;
    int low = -1; // kept up with, or below the ladder
    int high = plan.steps; // not kept up with, or above it
    while (high - low > 1) {
        const int middle = (low + high) / 2;
        const double rate = plan.firstRate * std::pow(plan.step, middle);
        if (keepsUp(subject, int(rate), plan, ceiling))
            low = middle;
        else
            high = middle;
    }
    return ceiling;
}

void useFineTimer()
{
    ::prctl(PR_SET_TIMERSLACK, 1UL); // ns
}

} // namespace

void measureLoss(const ThroughputPlan& plan, Targets& targets)
{
    useFineTimer();
    const std::vector<Subject> all = subjects();
    std::vector<std::array<std::vector<double>, LossRates.size()>> losses(all.size());
    for (int round = 0; round < plan.lossRounds; ++round) {
        for (std::size_t rate = 0; rate < LossRates.size(); ++rate) {
            for (std::size_t i = 0; i < all.size(); ++i)
                losses[i][rate].push_back(runAt(all[i], LossRates[rate], plan.duration).lossPercent);
        }
    }

    std::printf(
        "\nLoss in per cent, median and worst of %d runs of %d ms, alternating\n\n", plan.lossRounds,
        int(plan.duration.count()));
    std::printf("| %-30s |", "");
    for (const int rate : LossRates)
        std::printf(" %12d/s |", rate);
    std::printf("\n|%s|---------------:|---------------:|---------------:|\n", std::string(32, '-').c_str());
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::printf("| %-30s |", title(all[i]).c_str());
        for (const auto& loss : losses[i])
            std::printf(" %5.2f  (%5.2f) |", median(loss), quantile(loss, 1.0));
        std::printf("\n");
    }
    std::printf("\n");
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == Subject{SubjectKind::Link, LogMode::Disabled})
            targets.atMost("link, lost at 200 000/s", median(losses[i].back()), 0, "%");
    }
}

void measureCeilings(const ThroughputPlan& plan, Targets& targets)
{
    useFineTimer();
    const std::vector<Subject> all = subjects();
    std::vector<std::vector<double>> ceilings(all.size());
    std::vector<int> sendersLimit(all.size(), 0);
    for (int round = 0; round < plan.ceilingRounds; ++round) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const Ceiling ceiling = findCeiling(all[i], plan);
            ceilings[i].push_back(ceiling.rate);
            sendersLimit[i] += ceiling.isSenders ? 1 : 0;
        }
    }

    // The better of liblo's two servers is the one to beat.
    std::vector<double> liblo(std::size_t(plan.ceilingRounds), 0.0);
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t round = 0; all[i].isLiblo() && round < liblo.size(); ++round)
            liblo[round] = std::max(liblo[round], ceilings[i][round]);
    }

    std::printf(
        "\nHighest rate without loss, median (and range) of %d searches, alternating\n"
        "(>=: the sender could not send faster)\n\n",
        plan.ceilingRounds);
    std::printf("| %-30s | datagrams/s |        range        | x liblo | x raw |\n", "");
    std::printf("|%s|------------:|:-------------------:|--------:|------:|\n", std::string(32, '-').c_str());
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::printf(
            "| %-30s | %2s %8.0f | %8.0f - %8.0f | %7.2f | %5.2f |\n", title(all[i]).c_str(),
            2 * sendersLimit[i] > plan.ceilingRounds ? ">=" : "", median(ceilings[i]),
            quantile(ceilings[i], 0.0), quantile(ceilings[i], 1.0), medianRatio(ceilings[i], liblo),
            medianRatio(ceilings[i], ceilings[0]));
    }
    std::printf("\n");
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == Subject{SubjectKind::Link, LogMode::Disabled}) {
            targets.atLeast(
                "link, highest rate without loss", medianRatio(ceilings[i], liblo), LibloTarget, "x liblo");
        }
    }
}

} // namespace Orvane::Benchmark

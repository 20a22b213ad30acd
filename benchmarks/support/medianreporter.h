#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace Orvane::Benchmark {

/// Prints as usual, and keeps the median of each benchmark's repetitions.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    MedianReporter()
        : ConsoleReporter(OO_Tabular) // without colours, which would cling to the lines that follow
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median" || run.repetitions <= 1)
                m_ns[run.run_name.str()] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    /// CPU time in nanoseconds; not a number for a benchmark that did not run.
    double medianNs(const std::string& name) const
    {
        const auto found = m_ns.find(name);
        return found == m_ns.end() ? NAN : found->second;
    }

    /// A line that says how one benchmark compares with its baseline; none unless both ran.
    void printRatio(const std::string& name, const std::string& baseline) const
    {
        const double ratio = medianNs(name) / medianNs(baseline);
        if (std::isfinite(ratio))
            std::printf("%s: %.2f x %s\n", name.c_str(), ratio, baseline.c_str());
    }

private:
    std::map<std::string, double> m_ns;
};

} // namespace Orvane::Benchmark

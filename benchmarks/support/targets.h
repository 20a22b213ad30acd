#pragma once

#include <string>

namespace Orvane::Benchmark {

/// What a benchmark program promises, and whether it was kept: a line for each on standard output, which
/// scripts/bench gathers into its closing table.
class Targets {
public:
    void atMost(const std::string& what, double measured, double limit, const std::string& unit);
    void atLeast(const std::string& what, double measured, double limit, const std::string& unit);

    /// The exit status of the program: 0 when all are met, 1 when one is missed.
    int exitStatus() const { return m_bAllMet ? 0 : 1; }

private:
    void tell(
        const std::string& what, double measured, const char* relation, double limit, const std::string& unit,
        bool met);

    bool m_bAllMet = true;
};

} // namespace Orvane::Benchmark

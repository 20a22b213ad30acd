#include "targets.h"

#include <cstdio>

namespace Orvane::Benchmark {

void Targets::atMost(const std::string& what, double measured, double limit, const std::string& unit)
{
    tell(what, measured, "<=", limit, unit, measured <= limit);
}

void Targets::atLeast(const std::string& what, double measured, double limit, const std::string& unit)
{
    tell(what, measured, ">=", limit, unit, measured >= limit);
}

void Targets::tell(
    const std::string& what, double measured, const char* relation, double limit, const std::string& unit,
    bool met)
{
    std::printf(
        "target: %-6s  %-58s %8.2f %s %.2f %s\n", met ? "met" : "MISSED", what.c_str(), measured, relation,
        limit, unit.c_str());
    m_bAllMet = m_bAllMet && met;
}

} // namespace Orvane::Benchmark

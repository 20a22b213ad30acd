#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Orvane::Benchmark {

/// The value below which `share` of the values lie (0.5: the median). 0 for no values.
template <typename Number> Number quantile(std::vector<Number> values, double share)
{
    if (values.empty())
        return {};
    const auto index = std::min(values.size() - 1, std::size_t(share * double(values.size())));
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(index), values.end());
    return values[index];
}

template <typename Number> Number median(const std::vector<Number>& values)
{
    return quantile(values, 0.5);
}

/// Median of the quotients of what was measured side by side, which machine noise hits alike.
inline double medianRatio(const std::vector<double>& values, const std::vector<double>& baselines)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < std::min(values.size(), baselines.size()); ++i)
        ratios.push_back(values[i] / baselines[i]);
    return median(ratios);
}

} // namespace Orvane::Benchmark

#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace Orvane::Fuzz {

using Bytes = std::vector<std::uint8_t>;

/// The same numbers on every machine: the standard's distributions differ from library to library.
class Random {
public:
    explicit Random(std::uint32_t seed)
        : m_engine(seed)
    {
    }

    std::uint32_t number() { return std::uint32_t(m_engine()); }
    /// 0 to limit - 1; 0 for a limit of 0.
    std::uint32_t below(std::size_t limit) { return limit ? std::uint32_t(number() % limit) : 0; }
    bool chance(unsigned percent) { return below(100) < percent; }
    std::uint8_t byte() { return std::uint8_t(number()); }
    Bytes bytes(std::size_t count);

private:
    std::mt19937 m_engine;
};

/// Changes one to four things: bits, bytes, numbers of two and four bytes, parts left out, put in or doubled.
void mutate(Bytes& input, Random& random);

void appendNumber(Bytes& bytes, std::uint32_t number, std::size_t size);

} // namespace Orvane::Fuzz

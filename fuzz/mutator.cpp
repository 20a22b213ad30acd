#include "mutator.h"

#include <algorithm>
#include <iterator>

namespace Orvane::Fuzz {

namespace {

/// Where readers go wrong: ends of ranges, signs, and numbers that this protocol gives a meaning.
constexpr std::uint32_t InterestingNumbers[] = {
    0,   1,   2,      3,      4,      5,      12,      13,       14,         15,         16,
    31,  32,  33,     64,     65,     101,    126,     127,      128,        201,        207,
    255, 256, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF, 0x10000, 0xFF0000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

using Offset = Bytes::difference_type;

void overwriteNumber(Bytes& input, Random& random)
{
    const std::size_t size = random.chance(50) ? 2 : 4;
    if (input.size() < size)
        return;
    Bytes number;
    appendNumber(number, InterestingNumbers[random.below(std::size(InterestingNumbers))], size);
    std::copy(number.begin(), number.end(), input.begin() + Offset(random.below(input.size() - size + 1)));
}

void mutateOnce(Bytes& input, Random& random)
{
    const auto at = Offset(random.below(input.size()));
    const auto length = Offset(1 + random.below(std::min<std::size_t>(16, input.size() - std::size_t(at))));
    const bool isEmpty = input.empty();
    switch (random.below(8)) {
    case 0:
        if (!isEmpty)
            input[std::size_t(at)] ^= std::uint8_t(1u << random.below(8));
        break;
    case 1:
        if (!isEmpty)
            input[std::size_t(at)] = random.byte();
        break;
    case 2:
        overwriteNumber(input, random);
        break;
    case 3:
        if (!isEmpty)
            input.erase(input.begin() + at, input.begin() + at + length);
        break;
    case 4:
        input.resize(std::size_t(at));
        break;
    case 5: {
        const Bytes more = random.bytes(1 + random.below(16));
        input.insert(input.begin() + at, more.begin(), more.end());
        break;
    }
    case 6: {
        if (isEmpty)
            break;
        const Bytes part(input.begin() + at, input.begin() + at + length);
        const auto to = Offset(random.below(input.size() + 1));
        input.insert(input.begin() + to, part.begin(), part.end());
        break;
    }
    default:
        if (!isEmpty)
            std::swap(input[std::size_t(at)], input[random.below(input.size())]);
        break;
    }
}

} // namespace

Bytes Random::bytes(std::size_t count)
{
    Bytes made(count);
    std::generate(made.begin(), made.end(), [this] { return byte(); });
    return made;
}

void mutate(Bytes& input, Random& random)
{
    for (std::uint32_t i = 1 + random.below(4); i > 0; --i)
        mutateOnce(input, random);
}

void appendNumber(Bytes& bytes, std::uint32_t number, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes.push_back(std::uint8_t(number >> (8 * i)));
}

} // namespace Orvane::Fuzz

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

/// What each fuzz target defines; libfuzzer.cpp and replay.cpp call it.
namespace Orvane::Fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Called once before the first input.
void setUp(int& argc, char** argv);

/// Feeds one input and checks what must hold for any.
void run(const Bytes& input);

/// Called after the last input; a place for what takes time to come true.
void tearDown();

/// Ends the program, saying what does not hold; libFuzzer keeps the input.
[[noreturn]] inline void fail(const char* what)
{
    std::fprintf(stderr, "fuzz: %s\n", what);
    std::abort();
}

inline void check(bool holds, const char* what)
{
    if (!holds)
        fail(what);
}

} // namespace Orvane::Fuzz

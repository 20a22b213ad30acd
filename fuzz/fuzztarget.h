#pragma once

#include "mutator.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What each fuzz target defines; driver.cpp and libfuzzer.cpp call it.
namespace Orvane::Fuzz {

/// Called once before the first input.
void setUp(int& argc, char** argv);

/// Feeds one input and checks what must hold for any.
void run(const Bytes& input);

/// An input of the kind that is wanted, to be mutated or not.
Bytes makeInput(Random& random);

/// How many cases an input counts for: datagrams in a burst, else 1.
std::size_t caseCount(const Bytes& input);

/// Called after the last input of the driver; a place for what takes time to come true.
void tearDown();

/// Ends the program, saying what does not hold: the driver then names the input, libFuzzer keeps it.
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

/// The same targets under libFuzzer, which finds its own inputs; now and then it gets a made one to start
/// from.

#include "fuzztarget.h"

#include <algorithm>

using namespace Orvane::Fuzz;

extern "C" {

std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    setUp(*argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    run(Bytes(data, data + size));
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(
    std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    Random random(seed);
    if (!random.chance(10))
        return LLVMFuzzerMutate(data, size, maxSize);
    const Bytes made = makeInput(random);
    const std::size_t used = std::min(made.size(), maxSize);
    std::copy_n(made.begin(), used, data);
    return used;
}

} // extern "C"

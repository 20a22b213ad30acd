/// A fuzz target under libFuzzer, which makes the inputs.

#include "fuzztarget.h"

using namespace Orvane::Fuzz;

extern "C" {

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    setUp(*argc, *argv);
    std::atexit(tearDown);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    run(Bytes(data, data + size));
    return 0;
}

} // extern "C"

/// A fuzz target with any compiler: runs the inputs of a corpus once each.
///   fuzz_X FILE|DIRECTORY...

#include "fuzztarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace Orvane::Fuzz;
namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesOf(const fs::path& path)
{
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(path))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void runFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    check(bool(file), "an input cannot be read");
    std::printf("fuzz: %s\n", path.filename().c_str());
    run(Bytes(std::istreambuf_iterator<char>(file), {}));
}

} // namespace

int main(int argc, char** argv)
{
    setUp(argc, argv);
    std::size_t inputs = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& path : filesOf(argv[i])) {
            runFile(path);
            ++inputs;
        }
    }
    tearDown();
    check(inputs > 0, "there are no inputs");
    std::printf("fuzz: %zu inputs\n", inputs);
    return 0;
}

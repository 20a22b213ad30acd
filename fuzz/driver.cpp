/// Runs a fuzz target over inputs that are the same in every run.
///   fuzz_X [--cases N] [--seed S]     makes inputs until they amount to N cases
///   fuzz_X FILE...                    runs these inputs

#include "fuzztarget.h"

#include <QFile>

#include <csignal>
#include <cstring>
#include <string>

#include <unistd.h>

using namespace Orvane::Fuzz;

namespace {

constexpr char InputFile[] = "fuzz-input";

const Bytes* s_pCurrent = nullptr;

/// Leaves the input that did it behind, then lets the signal do what it does.
void keepInput(int signal)
{
    if (std::FILE* file = s_pCurrent ? std::fopen(InputFile, "wb") : nullptr) {
        std::fwrite(s_pCurrent->data(), 1, s_pCurrent->size(), file);
        std::fclose(file);
        std::fprintf(stderr, "fuzz: the input is in %s\n", InputFile);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void runInput(const Bytes& input)
{
    s_pCurrent = &input;
    run(input);
    s_pCurrent = nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    unsigned long cases = 1000;
    unsigned long seed = 1;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        if (i + 1 < argc && std::strcmp(argv[i], "--cases") == 0)
            cases = std::stoul(argv[++i]);
        else if (i + 1 < argc && std::strcmp(argv[i], "--seed") == 0)
            seed = std::stoul(argv[++i]);
        else
            files.emplace_back(argv[i]);
    }
    setUp(argc, argv);
    std::signal(SIGABRT, keepInput);

    for (const std::string& name : files) {
        QFile file(QString::fromStdString(name));
        check(file.open(QIODevice::ReadOnly), "the file cannot be read");
        const QByteArray content = file.readAll();
        runInput(Bytes(content.begin(), content.end()));
    }
    unsigned long done = 0;
    unsigned long inputs = 0;
    Random random{std::uint32_t(seed)};
    while (files.empty() && done < cases) {
        Bytes input = makeInput(random);
        if (random.chance(30))
            mutate(input, random);
        done += caseCount(input);
        ++inputs;
        runInput(input);
    }
    tearDown();
    std::printf("fuzz: %lu cases in %lu inputs\n", done, inputs);
    return 0;
}

#include "subjectprocess.h"

#include "consolesocket.h"
#include "keyreport.h"

#include <sched.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <thread>

extern char** environ;

namespace Orvane::Benchmark {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto LongestStart = 10s;

[[noreturn]] void fail(const char* what)
{
    std::perror(what);
    std::exit(2);
}

SharedState* mapShared(int descriptor)
{
    void* const memory =
        ::mmap(nullptr, sizeof(SharedState), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED)
        fail("mmap");
    return static_cast<SharedState*>(memory);
}

cpu_set_t& allowedCores()
{
    static cpu_set_t s_cores = [] {
        cpu_set_t cores;
        CPU_ZERO(&cores);
        ::sched_getaffinity(0, sizeof(cores), &cores);
        return cores;
    }();
    return s_cores;
}

} // namespace

SubjectProcess::SubjectProcess(const Subject& subject, Duty duty, const ConsoleSocket& console)
{
    m_nSharedDescriptor = ::memfd_create("benchmark", 0); // inherited
    if (m_nSharedDescriptor < 0 || ::ftruncate(m_nSharedDescriptor, sizeof(SharedState)) != 0)
        fail("memfd_create");
    m_pShared = new (mapShared(m_nSharedDescriptor)) SharedState;

    std::vector<std::string> words{"bench_link", "--serve"};
    for (const std::string& word : toArguments(subject))
        words.push_back(word);
    words.push_back(duty == Duty::Answer ? "answer" : "count");
    words.push_back(std::to_string(m_nSharedDescriptor));
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    errno = ::posix_spawn(&m_nProcess, "/proc/self/exe", nullptr, nullptr, arguments.data(), environ);
    if (errno != 0)
        fail("posix_spawn");

    const std::vector<char> report = reportFor(subject);
    const auto deadline = Clock::now() + LongestStart;
    while (handled() == 0) {
        if (::waitpid(m_nProcess, nullptr, WNOHANG) != 0 || Clock::now() > deadline) {
            std::fprintf(stderr, "%s does not handle a key press\n", title(subject).c_str());
            std::exit(2);
        }
        console.send(report);
        std::this_thread::sleep_for(5ms);
    }
    settle();
    console.drain();
}

SubjectProcess::~SubjectProcess()
{
    ::kill(m_nProcess, SIGKILL);
    ::waitpid(m_nProcess, nullptr, 0);
    ::munmap(m_pShared, sizeof(SharedState));
    ::close(m_nSharedDescriptor);
}

std::uint64_t SubjectProcess::settle() const
{
    constexpr auto quiet = 50ms;
    std::uint64_t last = handled();
    for (auto since = Clock::now(); Clock::now() - since < quiet;) {
        std::this_thread::sleep_for(1ms);
        if (const std::uint64_t now = handled(); now != last) {
            last = now;
            since = Clock::now();
        }
    }
    return last;
}

int SubjectProcess::runChild(int argc, char** argv)
{
    constexpr int wordCount = 6;
    if (argc != wordCount)
        return 2;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const Duty duty = std::strcmp(argv[4], "answer") == 0 ? Duty::Answer : Duty::Count;
    return serve(fromArguments(argv[2], argv[3]), duty, *mapShared(std::atoi(argv[5])));
}

std::vector<char> reportFor(const Subject& subject)
{
    if (!subject.isLiblo()) {
        const QByteArray datagram = keyPressDatagram();
        return {datagram.begin(), datagram.end()};
    }
    // The address and the types, each ended by a zero and filled up to four bytes, then the number.
    std::vector<char> datagram((sizeof(OscKeyAddress) + 3) & ~std::size_t(3));
    std::memcpy(datagram.data(), OscKeyAddress, sizeof(OscKeyAddress));
    for (const char byte : {',', 'i', '\0', '\0', '\0', '\0', '\0', char(PressedKey)})
        datagram.push_back(byte);
    return datagram;
}

void pinToCore(int core)
{
    allowedCores(); // remembered before the first change
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(core, &cores);
    if (::sched_setaffinity(0, sizeof(cores), &cores) != 0)
        fail("sched_setaffinity");
}

void unpin()
{
    ::sched_setaffinity(0, sizeof(cpu_set_t), &allowedCores());
}

int lastCore()
{
    int last = 0;
    for (int core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(core, &allowedCores()))
            last = core;
    }
    return last;
}

} // namespace Orvane::Benchmark

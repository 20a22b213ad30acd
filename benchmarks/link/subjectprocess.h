#pragma once

#include "subject.h"

#include <sys/types.h>

#include <cstdint>

namespace Orvane::Benchmark {

class ConsoleSocket;

/// A subject in a process of its own, from the first report that it handled to the end of this object.
class SubjectProcess {
public:
    /// Starts it and sends it reports until it counts one. Ends this process, saying why, when it never does.
    SubjectProcess(const Subject& subject, Duty duty, const ConsoleSocket& console);
    ~SubjectProcess();
    SubjectProcess(const SubjectProcess&) = delete;
    SubjectProcess& operator=(const SubjectProcess&) = delete;

    std::uint64_t handled() const { return m_pShared->handled.load(std::memory_order_relaxed); }

    /// Waits until nothing has been handled for a while.
    /// @return what `handled` says then
    std::uint64_t settle() const;

    /// The rest of the process that was started for one: `--serve KIND LOG DUTY DESCRIPTOR`.
    static int runChild(int argc, char** argv);

private:
    SharedState* m_pShared = nullptr;
    int m_nSharedDescriptor = -1;
    pid_t m_nProcess = -1;
};

/// The report of a key press for this subject: OSC for liblo, our own for all others.
std::vector<char> reportFor(const Subject& subject);

/// Pins the calling thread, and the processes it starts from here on, to one core.
void pinToCore(int core);
/// Takes that back.
void unpin();
/// The last core that this process may use.
int lastCore();

} // namespace Orvane::Benchmark

#pragma once

#include "logmode.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvane::Benchmark {

/// What stands at the host's end of the wire.
enum class SubjectKind {
    Raw, ///< one thread: blocking recvfrom, sendto
    Relay, ///< three threads with a queue, a std::mutex and a std::condition_variable between each two
    LibloThread, ///< liblo's server on its own thread
    LibloLoop, ///< liblo's server, driven by lo_server_recv
    Link, ///< the library's channel with a callback on its decoder
    FullWay, ///< channel, manager, command manager, number command
};

struct Subject {
    SubjectKind kind = SubjectKind::Raw;
    LogMode log = LogMode::Disabled;

    bool isLiblo() const { return kind == SubjectKind::LibloThread || kind == SubjectKind::LibloLoop; }
    bool operator==(const Subject& other) const { return kind == other.kind && log == other.log; }
};

/// For the tables.
std::string title(const Subject& subject);

/// Two words for a command line, and back.
std::vector<std::string> toArguments(const Subject& subject);
Subject fromArguments(const std::string& kind, const std::string& log);

/// What a subject does with a report beside counting it.
enum class Duty {
    Count, ///< nothing; but the full way lights its key, being what it is
    Answer, ///< sends an LED datagram to the console's port
};

/// Lies in memory that both processes see.
struct SharedState {
    /// Reports that have come through, counted where the work on them is done.
    std::atomic<std::uint64_t> handled{0};
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

/// Serves until the process is killed. Prints why and returns non-zero when it cannot.
int serve(const Subject& subject, Duty duty, SharedState& shared);

// One function a group of subjects, for serve().
int serveRaw(Duty duty, SharedState& shared);
int serveRelay(Duty duty, SharedState& shared);
int serveLiblo(SubjectKind kind, SharedState& shared);
int serveLink(Duty duty, SharedState& shared);
int serveFullWay(SharedState& shared);

/// The address that liblo's subjects listen to; its one argument is the key, an int32.
constexpr char OscKeyAddress[] = "/console/press";

/// The size of a receive buffer, for every subject's socket alike.
constexpr int ReceiveBufferSize = 8388608;

} // namespace Orvane::Benchmark

#include "subject.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace Orvane::Benchmark {

namespace {

struct Name {
    SubjectKind kind;
    const char* word;
    const char* title;
};

constexpr std::array<Name, 6> Names{{
    {SubjectKind::Raw, "raw", "raw"},
    {SubjectKind::Relay, "relay", "relay"},
    {SubjectKind::LibloThread, "liblo-thread", "liblo, lo_server_thread"},
    {SubjectKind::LibloLoop, "liblo-loop", "liblo, lo_server_recv"},
    {SubjectKind::Link, "link", "link"},
    {SubjectKind::FullWay, "full", "full way"},
}};

constexpr char FormattedWord[] = "formatted";
constexpr char DisabledWord[] = "disabled";

const Name& nameOf(SubjectKind kind)
{
    return *std::find_if(Names.begin(), Names.end(), [kind](const Name& name) { return name.kind == kind; });
}

} // namespace

std::string title(const Subject& subject)
{
    const std::string text = nameOf(subject.kind).title;
    return subject.log == LogMode::Formatted ? text + ", log lines formatted" : text;
}

std::vector<std::string> toArguments(const Subject& subject)
{
    return {nameOf(subject.kind).word, subject.log == LogMode::Formatted ? FormattedWord : DisabledWord};
}

Subject fromArguments(const std::string& kind, const std::string& log)
{
    for (const Name& name : Names) {
        if (kind == name.word)
            return {name.kind, log == FormattedWord ? LogMode::Formatted : LogMode::Disabled};
    }
    throw std::invalid_argument("no such subject: " + kind);
}

int serve(const Subject& subject, Duty duty, SharedState& shared)
{
    setLogMode(subject.log);
    switch (subject.kind) {
    case SubjectKind::Raw:
        return serveRaw(duty, shared);
    case SubjectKind::Relay:
        return serveRelay(duty, shared);
    case SubjectKind::LibloThread:
    case SubjectKind::LibloLoop:
        return serveLiblo(subject.kind, shared);
    case SubjectKind::Link:
        return serveLink(duty, shared);
    case SubjectKind::FullWay:
        return serveFullWay(shared);
    }
    return 2;
}

} // namespace Orvane::Benchmark

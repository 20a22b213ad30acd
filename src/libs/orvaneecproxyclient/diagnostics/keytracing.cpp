#include "keytracing_p.h"

#include <QDateTime>

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <mutex>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client::Internal::KeyTracing {

namespace {

using Clock = std::chrono::steady_clock;

// Guards the list of sinks and what they do. Threads that work keys take it at the end of an event: a sink
// that goes waits until none gives it a record.
std::mutex s_sinksMutex;
std::vector<Sink*> s_sinks;

void hand(const ECKeyTrace& trace)
{
    const std::lock_guard<std::mutex> lock(s_sinksMutex);
    for (Sink* const sink : s_sinks)
        sink->add(trace);
}

const char* refusalOf(ECKeyTrace::Guard guard)
{
    switch (guard) {
    case ECKeyTrace::Guard::Report:
        return "the report's value has not the length of a key report's";
    case ECKeyTrace::Guard::Keyboard:
        return "the manager has not been given a keyboard";
    case ECKeyTrace::Guard::Upgrade:
        return "an upgrade is running";
    case ECKeyTrace::Guard::Owner:
        return "no group of the keyboard has this key";
    case ECKeyTrace::Guard::Dialog:
        return "a dialog is open";
    case ECKeyTrace::Guard::KeypadLock:
        return "the keypad is locked";
    }
    return "";
}

/// The lines that say what was refused: of lights and labels none does.
bool isRefusal(const ECKeyTrace::Line& line)
{
    return (line.level == QtWarningMsg || line.level == QtCriticalMsg)
        && line.category != QLatin1String("orvane.ec.paint");
}

QString reasonOf(const ECKeyTrace& record)
{
    if (!record.guards.isEmpty() && !record.guards.last().isPassed)
        return QString::fromLatin1(refusalOf(record.guards.last().guard));
    const auto refusal = std::find_if(record.lines.crbegin(), record.lines.crend(), isRefusal);
    if (refusal != record.lines.crend())
        return refusal->text;
    const bool isOfFinger =
        record.event == ECKeyTrace::Event::Pressed || record.event == ECKeyTrace::Event::Released;
    if (!isOfFinger || record.handled.value_or(false))
        return {};
    return record.handled ? QStringLiteral("its handler had nothing to do")
        : record.event == ECKeyTrace::Event::Pressed
        ? QStringLiteral("nothing is bound to a press of this function")
        : QStringLiteral("nothing is bound to a release of this function");
}

} // namespace

std::atomic<int> s_nSinks{0};

void addSink(Sink& sink)
{
    const std::lock_guard<std::mutex> lock(s_sinksMutex);
    s_sinks.push_back(&sink);
    s_nSinks = int(s_sinks.size());
}

void removeSink(Sink& sink)
{
    const std::lock_guard<std::mutex> lock(s_sinksMutex);
    s_sinks.erase(std::find(s_sinks.begin(), s_sinks.end(), &sink));
    s_nSinks = int(s_sinks.size());
}

/// A record and what is needed while it is filled.
struct Event::Frame {
    ECKeyTrace record;
    bool hasKey = false;
    Clock::time_point begin = Clock::now();
    Frame* outer = nullptr; ///< a handler may have another key worked on its thread
};

Event::Frame*& Event::frameOfThread()
{
    thread_local Frame* t_pFrame = nullptr;
    return t_pFrame;
}

ECKeyTrace* Event::record()
{
    Frame* const frame = frameOfThread();
    return frame ? &frame->record : nullptr;
}

void Event::setKey(quint32 key, quint32 ecKey)
{
    if (!isTracing())
        return;
    if (Frame* const frame = frameOfThread()) {
        frame->hasKey = true;
        frame->record.key = key;
        frame->record.ecKey = ecKey;
    }
}

void Event::beginUnlessBegun(ECKeyTrace::Event kind, const QByteArray& report)
{
    const Frame* const frame = frameOfThread();
    if (frame && !frame->hasKey && frame->record.event == kind)
        return;
    begin(kind);
    m_pFrame->record.report = report;
}

void Event::beginHeld(const Origin& origin)
{
    begin(ECKeyTrace::Event::Held);
    m_pFrame->hasKey = true;
    ECKeyTrace& record = m_pFrame->record;
    record.cause = origin.number;
    record.key = origin.key;
    record.ecKey = origin.ecKey;
    record.owner = origin.owner;
    record.functionCode = origin.functionCode;
    record.function = origin.function;
}

void Event::begin(ECKeyTrace::Event kind)
{
    static std::atomic<quint64> s_nEvents{0};
    m_pFrame = new Frame;
    m_pFrame->record.number = ++s_nEvents;
    m_pFrame->record.time = QDateTime::currentMSecsSinceEpoch();
    m_pFrame->record.event = kind;
    m_pFrame->outer = std::exchange(frameOfThread(), m_pFrame);
}

void Event::end()
{
    const std::unique_ptr<Frame> frame(m_pFrame);
    frameOfThread() = frame->outer;
    ECKeyTrace& record = frame->record;
    record.workedNs =
        std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - frame->begin).count();
    if (record.reason.isEmpty())
        record.reason = reasonOf(record);
    hand(record);
}

OriginPtr origin()
{
    const ECKeyTrace* const record = current();
    if (!record || record->event == ECKeyTrace::Event::Held)
        return nullptr;
    return std::make_shared<const Origin>(Origin{
        record->number, record->key, record->ecKey, record->owner, record->functionCode, record->function});
}

void addLine(const QLoggingCategory& category, QtMsgType level, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QString text = QString::vasprintf(format, arguments);
    va_end(arguments);
    if (ECKeyTrace* const record = Event::record())
        record->lines.append({level, QString::fromLatin1(category.categoryName()), text});
}

} // namespace Orvane::ECProxy::Client::Internal::KeyTracing

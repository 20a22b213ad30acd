/// Any bytes as a capture file, and what was read as a replay.

#include "fuzztarget.h"

#include "replay.h"

namespace Orvane::Fuzz {

using namespace ConsolePanel;

namespace {

QByteArray written(const std::vector<CapturedDatagram>& datagrams)
{
    QByteArray file = captureFileHead();
    for (const CapturedDatagram& one : datagrams)
        check(
            appendCaptureRecord(one.direction, one.time, one.bytes.constData(), one.bytes.size(), file),
            "a datagram that was read is too large to be written");
    return file;
}

void checkReplay(const Capture& capture)
{
    Replay replay(capture);
    check(replay.count() <= capture.datagrams.size(), "more reports than datagrams");
    PanelClock::Duration before{};
    for (; !replay.atEnd(); replay.advance()) {
        check(replay.nextTime() >= before, "a replay goes back in time");
        before = replay.nextTime();
    }
    check(replay.played() == replay.count(), "a replay plays another number of reports than it has");
    replay.differences(ConsoleState());
}

} // namespace

void setUp(int&, char**) { }

void run(const Bytes& input)
{
    const QByteArray file(reinterpret_cast<const char*>(input.data()), int(input.size()));
    const auto read = readCapture(file);
    if (const auto* fault = std::get_if<CaptureFault>(&read)) {
        check(!fault->reason.isEmpty(), "a file was refused without a reason");
        return;
    }
    const auto& capture = std::get<Capture>(read);
    checkReplay(capture);
    const QByteArray again = written(capture.datagrams);
    const auto reread = readCapture(again);
    const auto* const same = std::get_if<Capture>(&reread);
    check(same && same->skipped == 0 && !same->isCutOff, "our own file is not read whole");
    check(written(same->datagrams) == again, "a capture changes by being written and read");
}

void tearDown() { }

} // namespace Orvane::Fuzz

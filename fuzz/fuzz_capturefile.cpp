/// Any bytes as a capture file, and what was read as a replay.

#include "fuzztarget.h"

#include "replay.h"

#include <QDir>
#include <QFile>

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

/// Small captures of every form that is read.
std::vector<Bytes> seeds()
{
    std::vector<Bytes> found;
    const QDir corpus(QStringLiteral(CORPUS "/capturefile"));
    for (const QString& name : corpus.entryList(QDir::Files, QDir::Name)) {
        QFile file(corpus.filePath(name));
        check(file.open(QIODevice::ReadOnly), "a seed cannot be read");
        const QByteArray content = file.readAll();
        found.emplace_back(content.begin(), content.end());
    }
    check(!found.empty(), "there are no seeds");
    return found;
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

Bytes makeInput(Random& random)
{
    static const std::vector<Bytes> s_seeds = seeds();
    if (random.chance(50)) {
        Bytes input = s_seeds[random.below(s_seeds.size())];
        mutate(input, random);
        return input;
    }
    std::vector<CapturedDatagram> datagrams(random.below(6));
    for (CapturedDatagram& one : datagrams) {
        one.direction = random.chance(50) ? CapturedDatagram::Up : CapturedDatagram::Down;
        one.time = std::chrono::microseconds(random.below(1000000));
        const Bytes bytes = random.bytes(random.below(60));
        one.bytes = QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
    }
    const QByteArray file = written(datagrams);
    Bytes input(file.begin(), file.end());
    if (random.chance(70))
        mutate(input, random);
    return input;
}

std::size_t caseCount(const Bytes&)
{
    return 1;
}

void tearDown() { }

} // namespace Orvane::Fuzz

/// What it costs to build a datagram to the console and to read one from it, beside the way one writes either
/// with what Qt has at hand.
///   bench_codec [--smoke] [Google Benchmark's options]
/// --smoke, the first if at all, is for passes too short to hold the result against its target.

#include "keyreport.h"
#include "logmode.h"
#include "medianreporter.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientencoder.h"
#include "targets.h"
#include "uptlv_p.h"

#include <benchmark/benchmark.h>

#include <QDataStream>

#include <atomic>
#include <cmath>
#include <cstring>
#include <thread>

using namespace Orvane::Benchmark;
using namespace Orvane::ECProxy::Client;

namespace {

constexpr double LedTargetNs = 25;

// ---- Encode: one array kept from datagram to datagram, as the encoder recommends ------------------------

template <typename Record, typename Builder>
void encodeRecord(benchmark::State& state, const std::shared_ptr<Record>& record, Builder builder)
{
    ECClientEncoder encoder;
    QByteArray datagram;
    for (auto _ : state) {
        (encoder.*builder)(record, datagram);
        benchmark::DoNotOptimize(datagram.data());
    }
}

std::shared_ptr<ECButtonColor> green()
{
    const auto color = std::make_shared<ECButtonColor>();
    color->ButtonKey = 1094;
    color->ECKey = 94;
    color->G = 255;
    color->brightness = 100;
    return color;
}

void encodeLed(benchmark::State& state)
{
    encodeRecord(state, green(), &ECClientEncoder::getECButtonColorRequest);
}
BENCHMARK(encodeLed);

/// The baseline: the records' bytes appended piece by piece.
void appendLed(benchmark::State& state)
{
    const auto color = green();
    ECProtocolHead head;
    ECProtocolTL tl;
    tl.Tag = UpdateECButtonColor;
    tl.Length = sizeof(ECButtonColor);
    head.ContentLength = quint16(ECTLSize + tl.Length);
    for (auto _ : state) {
        ++head.Sequence;
        QByteArray datagram;
        datagram.append(reinterpret_cast<const char*>(&head), sizeof(head));
        datagram.append(reinterpret_cast<const char*>(&tl), sizeof(tl));
        datagram.append(reinterpret_cast<const char*>(color.get()), sizeof(*color));
        benchmark::DoNotOptimize(datagram.data());
    }
}
BENCHMARK(appendLed);

void encodeLedIntoFreshArray(benchmark::State& state)
{
    ECClientEncoder encoder;
    const auto color = green();
    for (auto _ : state) {
        QByteArray datagram;
        encoder.getECButtonColorRequest(color, datagram);
        benchmark::DoNotOptimize(datagram.data());
    }
}
BENCHMARK(encodeLedIntoFreshArray);

void encodeLabel(benchmark::State& state)
{
    const auto text = std::make_shared<ECOLEDText>();
    std::memcpy(text->OledText, "Input 12", 8);
    encodeRecord(state, text, &ECClientEncoder::getECOledTextRequest);
}
BENCHMARK(encodeLabel);

void encodeTBarLevel(benchmark::State& state)
{
    encodeRecord(state, std::make_shared<ECTBarValue>(), &ECClientEncoder::getECTBarValueRequest);
}
BENCHMARK(encodeTBarLevel);

void encodePeripheral(benchmark::State& state)
{
    encodeRecord(state, std::make_shared<PeripheralControl>(), &ECClientEncoder::getPeripheralControlRequest);
}
BENCHMARK(encodePeripheral);

void encodeLock(benchmark::State& state)
{
    ECClientEncoder encoder;
    QByteArray datagram;
    for (auto _ : state) {
        encoder.getLockKeyboardRequest(datagram);
        benchmark::DoNotOptimize(datagram.data());
    }
}
BENCHMARK(encodeLock);

void encodeSystemTime(benchmark::State& state)
{
    ECClientEncoder encoder;
    const QString text = QStringLiteral("2024:05:06 07:08:09");
    QByteArray datagram;
    for (auto _ : state) {
        encoder.getUpdateSystemTime(text, datagram);
        benchmark::DoNotOptimize(datagram.data());
    }
}
BENCHMARK(encodeSystemTime);

void encodeFilePack(benchmark::State& state)
{
    ECClientEncoder encoder;
    const QByteArray chunk(int(state.range(0)), 'x');
    QByteArray datagram;
    for (auto _ : state) {
        encoder.getFileOperateRequest(OpeWriteFile, 1, 2, chunk, datagram);
        benchmark::DoNotOptimize(datagram.data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(encodeFilePack)->Arg(1024)->Arg(32768);

/// The sequence counter is one for the process: what it costs when several threads light keys at once.
void encodeLedOnTwoThreads(benchmark::State& state)
{
    encodeLed(state);
}
BENCHMARK(encodeLedOnTwoThreads)->Threads(2);

// ---- Decode ----------------------------------------------------------------------------------------------

void parseKeyPress(benchmark::State& state)
{
    const QByteArray datagram = keyPressDatagram();
    for (auto _ : state) {
        benchmark::DoNotOptimize(datagram.constData());
        Internal::UpReport report =
            Internal::parseUpDatagram(datagram.constData(), std::size_t(datagram.size()));
        benchmark::DoNotOptimize(report);
    }
}
BENCHMARK(parseKeyPress);

/// The baseline: a stream over the datagram.
void streamKeyPress(benchmark::State& state)
{
    const QByteArray datagram = keyPressDatagram();
    for (auto _ : state) {
        benchmark::DoNotOptimize(datagram.constData());
        QDataStream in(datagram);
        in.setByteOrder(QDataStream::LittleEndian);
        quint32 magic = 0;
        in >> magic;
        in.skipRawData(ECHeadSize - int(sizeof(magic)));
        quint16 tag = 0;
        quint16 length = 0;
        in >> tag >> length;
        benchmark::DoNotOptimize(magic == ECUpMagic ? tag : 0);
    }
}
BENCHMARK(streamKeyPress);

/// Through the decoder's thread, in bursts of the given size: hand-over, wake, parse, callback.
void decodeBurst(benchmark::State& state)
{
    setLogMode(LogMode::Disabled);
    const QByteArray datagram = keyPressDatagram();
    const auto burst = quint64(state.range(0));
    std::atomic<quint64> decoded{0};
    ECClientDecoder decoder;
    decoder.registerUpTLVDecodeFinishedCB([&decoded](const eECUpMessageTag&, const QByteArray&) {
        decoded.fetch_add(1, std::memory_order_relaxed);
        return true;
    });
    decoder.startDecode();
    quint64 appended = 0;
    for (auto _ : state) {
        for (quint64 i = 0; i < burst; ++i)
            decoder.appendDatagram(datagram);
        appended += burst;
        while (decoded.load(std::memory_order_relaxed) != appended)
            std::this_thread::yield();
    }
    decoder.stopDecode();
    state.SetItemsProcessed(int64_t(appended));
}
BENCHMARK(decodeBurst)->Arg(1)->Arg(64)->Arg(4096)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    const bool smoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;
    if (smoke) {
        argv[1] = argv[0];
        --argc;
        ++argv;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    reporter.printRatio("encodeLed", "appendLed");
    reporter.printRatio("encodeLedIntoFreshArray", "appendLed");
    reporter.printRatio("parseKeyPress", "streamKeyPress");
    const double ledNs = reporter.medianNs("encodeLed");
    if (smoke || std::isnan(ledNs))
        return 0;
    Targets targets;
    targets.atMost("LED datagram encoded", ledNs, LedTargetNs, "ns");
    return targets.exitStatus();
}

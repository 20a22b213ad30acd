/// What a report costs from the decoder's callback to the request that it causes: through the number command
/// alone, the command manager and the whole manager, each with the log lines filtered out (0) and formatted
/// for a handler that drops them (1). The baseline is what comes out of it alone: the LED request, and the
/// signal.
///
/// As in an application, this runs beside a GUI thread whose event loop takes the keys that come out.

#include "bareplatform.h"
#include "commandmanager.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "keyreport.h"
#include "logmode.h"
#include "medianreporter.h"
#include "numbercommand.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <atomic>
#include <cstdio>
#include <thread>

using namespace Orvane;
using namespace Orvane::Benchmark;
using namespace Orvane::ECProxy::Client;

namespace {

constexpr quint32 UnknownKey = 60000;

std::shared_ptr<EC::s_ECKeyboardConfig> exampleKeyboard()
{
    static const auto s_pKeyboard = EC::loadKeyboardFile(QStringLiteral(EXAMPLE_KEYBOARD)).config;
    return s_pKeyboard;
}

void useLogMode(const benchmark::State& state)
{
    setLogMode(state.range(0) ? LogMode::Formatted : LogMode::Disabled);
}

void resultOfAPressAlone(benchmark::State& state)
{
    useLogMode(state);
    ECManager* const manager = ECManager::instance();
    for (auto _ : state) {
        const auto color = std::make_shared<ECButtonColor>();
        color->ECKey = PressedKey;
        color->G = 255;
        manager->updateECButtonColor(color);
        Q_EMIT manager->signalStandardKeyPressed(Qt::Key_1, QStringLiteral("1"));
    }
}
BENCHMARK(resultOfAPressAlone)->Arg(0);

void numberCommandPress(benchmark::State& state)
{
    useLogMode(state);
    NumberCommand command;
    for (const auto& group : qAsConst(exampleKeyboard()->m_commands)) {
        if (group->Name == command.name())
            command.setCommandConfig(group);
    }
    for (auto _ : state)
        command.slotECButtonPressed(PressedKey);
}
BENCHMARK(numberCommandPress)->Arg(0)->Arg(1);

void commandManagerPress(benchmark::State& state)
{
    useLogMode(state);
    CommandManager commands;
    commands.registerCommand(exampleKeyboard());
    for (auto _ : state)
        commands.slotECButtonPressed(PressedKey);
}
BENCHMARK(commandManagerPress)->Arg(0)->Arg(1);

void report(benchmark::State& state, eECUpMessageTag tag, const QByteArray& value)
{
    useLogMode(state);
    ECManager* const manager = ECManager::instance();
    for (auto _ : state)
        benchmark::DoNotOptimize(manager->upTLVDecodeFinished(tag, value));
}

void managerPress(benchmark::State& state)
{
    report(state, ReportECButtonPressed, keyPressValue());
}
BENCHMARK(managerPress)->Arg(0)->Arg(1);

void managerRelease(benchmark::State& state)
{
    report(state, ReportECButtonRelease, keyPressValue());
}
BENCHMARK(managerRelease)->Arg(0)->Arg(1);

/// A key that no command has: asked of all of them, refused with a warning.
void managerUnknownKey(benchmark::State& state)
{
    report(state, ReportECButtonPressed, keyPressValue(UnknownKey));
}
BENCHMARK(managerUnknownKey)->Arg(0)->Arg(1);

/// A T-Bar position, which goes to every command.
void managerTBarReport(benchmark::State& state)
{
    report(state, ReportECTBarValue, QByteArray("\x20\x00\x00\x00\x01", sizeof(ECTBarValue)));
}
BENCHMARK(managerTBarReport)->Arg(0)->Arg(1);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    if (!exampleKeyboard()) {
        std::fprintf(stderr, "%s cannot be read\n", EXAMPLE_KEYBOARD);
        return 2;
    }
    TestSupport::BareDeviceList devices;
    ECManager* const manager = ECManager::instance();
    std::atomic<quint64> sent{0};
    manager->addSendDownTLVRequstCB([&sent](const QByteArray&) {
        sent.fetch_add(1, std::memory_order_relaxed);
        return true;
    });
    manager->init(exampleKeyboard());
    quint64 typed = 0;
    QObject::connect(
        manager, &ECManager::signalStandardKeyPressed, &app, [&typed](unsigned, const QString&) { ++typed; });

    MedianReporter reporter;
    std::thread console([&app, &reporter] {
        benchmark::RunSpecifiedBenchmarks(&reporter);
        QMetaObject::invokeMethod(&app, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QCoreApplication::exec();
    console.join();
    ECManager::deleteInstance();
    std::printf("\n");
    for (const char* name : {"numberCommandPress/0", "commandManagerPress/0", "managerPress/0"})
        reporter.printRatio(name, "resultOfAPressAlone/0");
    if (sent == 0 || typed == 0)
        std::fprintf(stderr, "no key was dispatched: the figures above mean nothing\n");
    return sent != 0 && typed != 0 ? 0 : 2;
}

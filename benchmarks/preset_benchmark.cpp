/// What a preset key costs on three grouped devices with 128 presets each: from the press to the load queued
/// for the device, and, as its baseline, the model's own part of that; and binding all presets to their keys,
/// which every change of a preset brings about. With log lines filtered out (0) and formatted (1).
///
/// As in an application, this runs beside a GUI thread that takes the model's notifications.

#include "command.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "keyreport.h"
#include "logmode.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "presetcommand.h"
#include "records.h"
#include "showfile.h"

#include "bizmodel/device.h"
#include "bizmodel/keypad.h"
#include "bizmodel/preset.h"
#include "ec/eckeyboardconfig.h"
#include "modelcontrol/preset.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <optional>
#include <thread>

using namespace Orvane;
using namespace Orvane::Benchmark;
using namespace Orvane::ECProxy::Client;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int DeviceCount = 3;
constexpr int PresetCount = 128;

std::shared_ptr<EC::s_ECCommandConfig> presetGroup()
{
    static const auto s_pKeyboard = EC::loadKeyboardFile(QStringLiteral(EXAMPLE_KEYBOARD)).config;
    for (const auto& group : qAsConst(s_pKeyboard->m_commands)) {
        if (group->Name == Constants::PRESETCOMMANDNAME)
            return group;
    }
    return nullptr;
}

MemoryModel::ShowRecord show()
{
    using MemoryModel::ScreenType;
    MemoryModel::ShowRecord record;
    for (int i = 0; i < DeviceCount; ++i) {
        MemoryModel::DeviceRecord device;
        device.ipMacSn = QStringLiteral("device %1").arg(i);
        device.groupId = QStringLiteral("1");
        device.maxPresetCount = PresetCount;
        device.subcards = {{1, 8, {}}};
        device.outputs = {{1, 1, 0, QSize(1920, 1080), true}};
        MemoryModel::ScreenRecord screen;
        screen.key = {ScreenType::RegularScreen, 1};
        screen.selected = true;
        screen.outputs = {{1, QRect(0, 0, 1920, 1080)}};
        MemoryModel::LayerRecord layer;
        layer.id = 1;
        layer.window = QRect(0, 0, 960, 540);
        screen.pvw = {layer};
        device.screens = {screen};
        device.activeScreen = screen.key;
        for (quint16 id = 1; id <= PresetCount; ++id)
            device.presets.append(
                {MemoryModel::FileType::PresetPVW,
                 id,
                 QStringLiteral("Preset %1").arg(id),
                 {{screen.key, {layer}}}});
        record.devices.append(device);
    }
    record.activeDevice = record.devices.first().ipMacSn;
    return record;
}

/// When the model was asked what. The press is measured to the one, and the next waits for the others.
class LoadWatch {
public:
    void note(const MemoryModel::JournalEntry& entry)
    {
        static const QString sampled = MemoryModel::operationName(MemoryModel::Operation::SampleLoadPreset);
        static const QString applied = MemoryModel::operationName(MemoryModel::Operation::AddKeypadFile);
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (entry.operation == applied) {
            ++m_nApplied;
        } else if (entry.operation == sampled) {
            if (entry.phase == MemoryModel::JournalEntry::Phase::Requested) {
                m_queued = entry.time;
                ++m_nQueued;
            } else if (entry.phase == MemoryModel::JournalEntry::Phase::Ended) {
                ++m_nLoaded;
            }
        }
        m_noted.notify_all();
    }

    /// Waits until what follows a load in the background is through. Returns when the load was queued, or
    /// nothing when the end did not come within 5 s.
    std::optional<Clock::time_point> waitForEnd()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (!m_noted.wait_for(lock, std::chrono::seconds(5), [this] {
                return m_nApplied == m_nQueued && m_nLoaded == m_nQueued;
            }))
            return std::nullopt;
        return m_queued;
    }

    int queuedCount() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_nQueued;
    }

private:
    // m_mutex guards all that follows.
    mutable std::mutex m_mutex;
    std::condition_variable m_noted;
    Clock::time_point m_queued;
    int m_nQueued = 0;
    int m_nApplied = 0;
    int m_nLoaded = 0;
};

LoadWatch s_watch;

void useLogMode(const benchmark::State& state)
{
    setLogMode(state.range(0) ? LogMode::Formatted : LogMode::Disabled);
}

/// Gives the pass the time from `start` until its load was queued, once the load is through. Returns false,
/// and fails the benchmark, when it never is.
bool endPass(benchmark::State& state, Clock::time_point start)
{
    const auto queued = s_watch.waitForEnd();
    if (!queued) {
        state.SkipWithError("the load did not end");
        return false;
    }
    state.SetIterationTime(std::chrono::duration<double>(*queued - start).count());
    return true;
}

/// The key of the last preset: the farthest way through the lists.
void presetKeyToSampling(benchmark::State& state)
{
    useLogMode(state);
    const auto group = presetGroup();
    ECManager* const manager = ECManager::instance();
    const auto keys = manager->presetCommand().lock();
    const int pageSize = keys->pageSize();
    keys->updateCurrentPageIndex((PresetCount - 1) / pageSize);
    const QByteArray press =
        keyPressValue(group->getECKeyByOrderIndex(quint16((PresetCount - 1) % pageSize)));
    for (auto _ : state) {
        const int before = s_watch.queuedCount();
        const auto start = Clock::now();
        manager->upTLVDecodeFinished(ReportECButtonPressed, press);
        if (s_watch.queuedCount() == before) {
            state.SkipWithError("the press did not load");
            break;
        }
        if (!endPass(state, start))
            break;
    }
}
BENCHMARK(presetKeyToSampling)->Arg(0)->Arg(1)->UseManualTime();

/// What of it is the model's own: the calls of a load, without keys, items, log and modes.
void modelCallsToSampling(benchmark::State& state)
{
    useLogMode(state);
    auto* const devices = BizModel::DeviceList::instance();
    const std::weak_ptr<BizModel::Preset> last =
        devices->activedDevice().lock()->presets().at(PresetCount - 1);
    for (auto _ : state) {
        const auto start = Clock::now();
        devices->setPresetOperateMode(BizModel::Enum::Preset::Select);
        benchmark::DoNotOptimize(ParallelControl::ParallelManager::instance()->currentTaskCount());
        const auto device = devices->activedDevice().lock();
        const auto preset = last.lock();
        const auto presets = ModelControl::Preset::create(device);
        QString error;
        presets->checkPresetData(preset, error);
        ModelControl::Preset::Screens screens;
        preset->presetSelectedScreens(screens, preset->fileType(), error);
        const auto sampling = std::make_shared<TaskSampling::s_LoadPresetSampling>();
        presets->createKeypadInfo(preset, screens, sampling->keypadInfo);
        sampling->nFileID = quint8(preset->fileId());
        sampling->pCurDevice = device;
        auto* const thread = TaskSampling::SamplingThread::instance();
        thread->setSamplingType(TaskSampling::LoadPreset);
        thread->appendData(sampling);
        // Only to leave things as the other does.
        device->addKeypadFile(std::make_shared<BizModel::Keypad>(sampling->keypadInfo));
        if (!endPass(state, start))
            break;
    }
}
BENCHMARK(modelCallsToSampling)->Arg(0)->Arg(1)->UseManualTime();

/// A notification that has the keys bound anew and the page repainted.
void presetRenamed(benchmark::State& state)
{
    useLogMode(state);
    const auto command = ECManager::instance()->presetCommand().lock();
    for (auto _ : state)
        command->slotPresetNameChanged({}, {});
}
BENCHMARK(presetRenamed)->Arg(0)->Arg(1);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    setLogMode(LogMode::Disabled);

    MemoryModel::MemoryModel model;
    QStringList faults;
    if (!model.load(MemoryModel::writeShow(show()), faults)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(faults.join(QLatin1Char('\n'))));
        return 2;
    }
    model.operations().setListener([](const MemoryModel::JournalEntry& entry) { s_watch.note(entry); });

    const auto group = presetGroup();
    if (!group) {
        std::fprintf(stderr, "%s has no preset keys\n", EXAMPLE_KEYBOARD);
        return 2;
    }
    auto keyboard = std::make_shared<EC::s_ECKeyboardConfig>();
    keyboard->m_commands = {group};
    ECManager* const manager = ECManager::instance();
    manager->addSendDownTLVRequstCB([](const QByteArray&) { return true; });
    manager->init(keyboard);
    manager->slotOrvanePluginModeChanged(); // paints, and binds the keys

    std::thread console([&app] {
        benchmark::RunSpecifiedBenchmarks();
        QMetaObject::invokeMethod(&app, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QCoreApplication::exec();
    console.join();
    ECManager::deleteInstance();
    if (s_watch.queuedCount() == 0)
        std::fprintf(stderr, "no preset was loaded: the figures above mean nothing\n");
    return s_watch.queuedCount() != 0 ? 0 : 2;
}

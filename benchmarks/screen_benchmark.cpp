/// What the library adds between the operator's hand and the model: a take key's press until the request is
/// started, a T-Bar position until its progress is queued, and the repaint of a full page of screen keys.
///
/// Beside the first two stand the model's own calls alone, made in the same order with the same arguments.
/// Requests and samples end in a recorder, for what a processor does with them is not the library's. The
/// console's requests are built and thrown away, log lines that trace are filtered out.

#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logmode.h"
#include "screencommand.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelcontrol/device.h"
#include "parallelcontrol/parallelmanager.h"
#include "showfile.h"
#include "tasksampling/samplingthread.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

using namespace Orvane;
using namespace Orvane::Benchmark;
using namespace Orvane::ECProxy::Client;
using BizModel::Enum::Screen::RegularAndAUXScreens;
using MemoryModel::ScreenType;

namespace {

enum : quint16 { FirstScreenKey = 1, TakeKey = 40 };
constexpr int ScreenCount = 8;
constexpr ModelControl::s_SwitchEffectBody AnyEffect{5, 0, BizModel::EffectType::fade};

class RequestRecorder : public ParallelControl::ParallelManager {
public:
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        bool, QString*, Completion) override
    {
        return startParallelRequest(device, factory, Completion());
    }
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        Completion, int = 0) override
    {
        benchmark::DoNotOptimize(factory(device));
        return true;
    }
    int currentTaskCount() const override { return 0; }
};

class SampleRecorder : public TaskSampling::SamplingThread {
public:
    bool setSamplingType(TaskSampling::SamplingType) override { return true; }
    bool appendData(const std::shared_ptr<TaskSampling::s_TBarSampling>& sample) override
    {
        m_pLast = sample;
        return true;
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>&) override { return true; }

private:
    std::shared_ptr<TaskSampling::s_TBarSampling> m_pLast;
};

MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord device;
    device.ipMacSn = QStringLiteral("device");
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    device.subcards = {{1, ScreenCount, {}}};
    for (quint32 id = 1; id <= ScreenCount; ++id) {
        device.outputs.append({id, 1, 0, QSize(1920, 1080), true});
        MemoryModel::ScreenRecord screen;
        screen.key = {ScreenType::RegularScreen, id};
        screen.name = QStringLiteral("Screen %1").arg(id);
        screen.selected = id == 1;
        screen.outputs = {{id, QRect(0, 0, 1920, 1080)}};
        device.screens.append(screen);
    }
    device.activeScreen = device.screens.first().key;
    return {device.ipMacSn, {device}};
}

/// The screen command with its keys on a device of eight screens.
class Scene {
public:
    Scene()
    {
        QStringList faults;
        if (!m_model.load(MemoryModel::writeShow(show()), faults))
            qFatal("%s", qUtf8Printable(faults.join(QLatin1Char('\n'))));
        m_pDevice = m_model.deviceList().activedDevice().lock();
        TestSupport::KeyboardBuilder keyboard;
        keyboard.group(m_command.name()).selectKeys(FirstScreenKey, ScreenCount, 512).key(TakeKey, 8);
        m_command.setCommandConfig(keyboard.build()->m_commands.first());
        m_command.slotActivedDeviceChanged();
    }

    MemoryModel::MemoryModel m_model;
    RequestRecorder m_requests; // after the model's own, so that these are the ones installed
    SampleRecorder m_samples;
    ScreenCommand m_command;
    std::shared_ptr<BizModel::Device> m_pDevice;
};

void takeKeyToRequest(benchmark::State& state)
{
    Scene scene;
    for (auto _ : state)
        scene.m_command.slotECButtonPressed(TakeKey);
}
BENCHMARK(takeKeyToRequest);

void modelCallsOfATake(benchmark::State& state)
{
    Scene scene;
    for (auto _ : state) {
        const auto controller = ModelControl::Device::create(scene.m_pDevice);
        benchmark::DoNotOptimize(controller->takeCutEnabled());
        benchmark::DoNotOptimize(scene.m_pDevice->activedScreen().lock()->switchEffectTime());
        scene.m_requests.startParallelRequest(
            scene.m_pDevice,
            [](const std::weak_ptr<BizModel::Device>& device) {
                return ParallelControl::ParallelTakeScreen{device, RegularAndAUXScreens, {}};
            },
            false, nullptr, {});
    }
}
BENCHMARK(modelCallsOfATake);

void tbarToProgress(benchmark::State& state)
{
    Scene scene;
    ECTBarValue position;
    position.IsBottomToTop = BottomToTop;
    quint32 value = 2;
    for (auto _ : state) {
        position.Value = value = value == 2 ? 3 : 2; // between the ends: one long transition
        scene.m_command.slotECTBarChanged(position);
    }
}
BENCHMARK(tbarToProgress);

void modelCallsOfAPosition(benchmark::State& state)
{
    Scene scene;
    for (auto _ : state) {
        benchmark::DoNotOptimize(scene.m_pDevice->isTaking());
        scene.m_samples.setSamplingType(TaskSampling::TBar);
        scene.m_samples.appendData(std::make_shared<TaskSampling::s_TBarSampling>(
            TaskSampling::s_TBarSampling{RegularAndAUXScreens, 0.5, scene.m_pDevice}));
    }
}
BENCHMARK(modelCallsOfAPosition);

/// Eight keys with their labels, their items rebuilt from the model first.
void fullPageRepaint(benchmark::State& state)
{
    Scene scene;
    for (auto _ : state)
        scene.m_command.slotDeviceScreenIndexChanged(scene.m_pDevice, scene.m_pDevice->activedScreen());
}
BENCHMARK(fullPageRepaint);

/// The same requests without the rebuilding.
void pageRequestsAlone(benchmark::State& state)
{
    Scene scene;
    for (auto _ : state)
        scene.m_command.updateCommandKeypad(Enum::UpdateConsoleType::All);
}
BENCHMARK(pageRequestsAlone);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    setLogMode(LogMode::Disabled);
    quint64 sent = 0;
    ECManager::instance()->addSendDownTLVRequstCB([&sent](const QByteArray&) {
        ++sent;
        return true;
    });
    benchmark::RunSpecifiedBenchmarks();
    ECManager::deleteInstance();
    return sent > 0 ? 0 : 1;
}

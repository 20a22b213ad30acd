/// What it costs to bring the layer and input keys up to date: one input more on a device of 200, a burst of
/// notifications about 64 layers, and how the first grows with the inputs and with the keys on a page.
///
/// The console's requests are built and thrown away, log lines that trace are filtered out. The warnings
/// about inputs that no key is left for are made and thrown away.

#include "ec/eckeyboardconfig.h"
#include "ecconsolemanager.h"
#include "ecmanager.h"
#include "inputcommand.h"
#include "keyboardbuilder.h"
#include "layercommand.h"
#include "logmode.h"
#include "targets.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "showfile.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>

using namespace Orvane;
using namespace Orvane::Benchmark;
using namespace Orvane::ECProxy::Client;
using BizModel::CapacityMode;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

namespace {

constexpr int Layers = 64;
constexpr int PageSize = 12;
constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};

MemoryModel::ShowRecord show(int inputs)
{
    // Another device each time: what its keys showed is kept.
    static int s_count = 0;
    MemoryModel::DeviceRecord device;
    device.ipMacSn = QStringLiteral("device %1").arg(++s_count);
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    MemoryModel::SubcardRecord inputCard;
    inputCard.id = 1;
    for (quint32 id = 1; id <= quint32(inputs); ++id) {
        inputCard.connectors.append({id, CapacityMode::_SL});
        device.inputs.append({id, QStringLiteral("Input %1").arg(id), 1, id, CapacityMode::_SL, true, false});
    }
    device.subcards = {inputCard, {2, Layers, {}}};
    device.outputs = {{1, 2, 0, QSize(1920, 1080), true}};
    MemoryModel::ScreenRecord stage;
    stage.key = Stage;
    stage.outputs = {{1, QRect(0, 0, 1920, 1080)}};
    for (quint32 id = 1; id <= Layers; ++id) {
        MemoryModel::LayerRecord layer;
        layer.id = id;
        layer.name = QStringLiteral("Layer %1").arg(id);
        layer.inputId = id % quint32(inputs) + 1;
        layer.window = QRect(0, 0, 960, 540);
        layer.selected = id == Layers;
        stage.pvw.append(layer);
    }
    device.screens = {stage};
    device.activeScreen = Stage;
    device.limits.layers = Layers;
    return {device.ipMacSn, {device}};
}

/// A command with its keys on a device with that many inputs.
template <typename CommandType> class Scene {
public:
    Scene(int inputs, int pageSize)
    {
        QStringList faults;
        if (!m_model.load(MemoryModel::writeShow(show(inputs)), faults))
            qFatal("%s", qUtf8Printable(faults.join(QLatin1Char('\n'))));
        m_pDevice = m_model.deviceList().activedDevice().lock();
        m_pScreen = m_pDevice->activedScreen().lock();

        TestSupport::KeyboardBuilder keyboard;
        keyboard.group(m_command.name()).selectKeys(1, pageSize, quint16(pageSize + 1));
        m_command.setCommandConfig(keyboard.build()->m_commands.first());
        ECConsoleManager::instance()->initDeviceECCommandItems(m_pDevice->ipMacSn());
        m_command.slotActivedDeviceChanged();
    }

    MemoryModel::MemoryModel m_model;
    CommandType m_command;
    std::shared_ptr<BizModel::Device> m_pDevice;
    std::shared_ptr<BizModel::Screen> m_pScreen;
};

/// Seconds of one call by number of inputs, at the usual page size: the least of all passes.
std::map<int, double>& measured()
{
    static std::map<int, double> s_measured;
    return s_measured;
}

/// A pass of fewer calls says nothing.
constexpr int CallsToJudge = 100;

double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

void inputAdded(benchmark::State& state)
{
    const int inputs = int(state.range(0));
    const int pageSize = int(state.range(1));
    Scene<InputCommand> scene(inputs, pageSize);
    const std::weak_ptr<BizModel::Input> input = scene.m_pDevice->findInput(1);
    const double begin = threadSeconds();
    for (auto _ : state)
        scene.m_command.slotDeviceInputAdded(scene.m_pDevice, input);
    const double seconds = (threadSeconds() - begin) / double(state.iterations());
    if (pageSize != PageSize || state.iterations() < CallsToJudge)
        return;
    double& least = measured().emplace(inputs, seconds).first->second;
    least = std::min(least, seconds);
}
BENCHMARK(inputAdded)
    ->ArgNames({"inputs", "keys"})
    ->Args({10, PageSize})
    ->Args({50, PageSize})
    ->Args({200, PageSize})
    ->Args({1000, PageSize})
    ->Args({1000, 2 * PageSize})
    ->Args({1000, 4 * PageSize});

/// As many notifications as there are layers, and the one repaint that follows them.
void layerBurst(benchmark::State& state)
{
    Scene<LayerCommand> scene(200, PageSize);
    const QList<std::weak_ptr<BizModel::Screen>> screens = {scene.m_pScreen};
    for (auto _ : state) {
        for (int i = 0; i < Layers; ++i)
            scene.m_command.slotNotifyUpdateLayer(screens, 0);
        scene.m_command.slotUpdateTakeScreenTimeout();
    }
}
BENCHMARK(layerBurst);

/// A selection, which turns to its layer's page and repaints it.
void layerSelected(benchmark::State& state)
{
    Scene<LayerCommand> scene(200, PageSize);
    for (auto _ : state)
        scene.m_command.slotSelectedRegularLayersChanged(scene.m_pDevice, scene.m_pScreen);
}
BENCHMARK(layerSelected);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    setLogMode(LogMode::Disabled);
    ECManager* const manager = ECManager::instance();
    quint64 sent = 0;
    manager->addSendDownTLVRequstCB([&sent](const QByteArray&) {
        ++sent;
        return true;
    });
    benchmark::RunSpecifiedBenchmarks();
    ECManager::deleteInstance();
    if (sent == 0) {
        std::fprintf(stderr, "nothing was repainted: the figures above mean nothing\n");
        return 2;
    }
    Targets targets;
    if (measured().count(10) != 0 && measured().count(1000) != 0)
        targets.atMost(
            "an input added: 1000 inputs against 10", measured()[1000] / measured()[10], 100.0, "times");
    return targets.exitStatus();
}

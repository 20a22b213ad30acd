#include "modeltestsupport.h"

#include "bizmodel/input.h"
#include "bizmodel/preset.h"
#include "bizmodel/resourcecheck.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/preset.h"
#include "parallelcontrol/parallelmanager.h"
#include "showfile.h"
#include "tasksampling/samplingthread.h"

#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using namespace Orvane::ParallelControl;
using BizModel::LayerType;
using BizModel::SceneType;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
constexpr int Mask = BizModel::Enum::Screen::RegularAndAUXScreens;
constexpr auto Regular = ScreenType::RegularScreen;

/// How long the storm lasts; ORVANE_STORM_SECONDS in the environment sets another time.
std::chrono::seconds stormTime()
{
    const int seconds = qEnvironmentVariableIntValue("ORVANE_STORM_SECONDS");
    return std::chrono::seconds(seconds > 0 ? seconds : 2);
}

/// What goes on while the storm lasts.
class Storm {
public:
    explicit Storm(Model& m)
        : m_model(m)
        , m_end(std::chrono::steady_clock::now() + stormTime())
    {
    }

    ~Storm()
    {
        for (std::thread& thread : m_threads)
            thread.join();
    }

    /// Repeats the step, with random numbers of its own, until the storm is over.
    template <typename Step> void add(Step step)
    {
        const auto seed = quint32(m_threads.size() + 1);
        m_threads.emplace_back([this, step, seed] {
            QRandomGenerator random(seed);
            while (std::chrono::steady_clock::now() < m_end)
                step(m_model, random);
        });
    }

private:
    Model& m_model;
    const std::chrono::steady_clock::time_point m_end;
    std::vector<std::thread> m_threads;
};

std::shared_ptr<BizModel::Screen> anyScreen(Model& m, QRandomGenerator& random)
{
    const auto screens = m.device()->screens(Mask);
    return screens.isEmpty() ? nullptr : screens.at(random.bounded(screens.size())).lock();
}

/// Asks everything that the console asks when it repaints its keys.
void readAll(Model& m, QRandomGenerator&)
{
    const auto device = m.model.deviceList().activedDevice().lock();
    const auto screens = device->screens(Mask);
    for (const auto& weak : screens) {
        const auto screen = weak.lock();
        if (!screen)
            continue;
        screen->name();
        screen->state();
        screen->isComplete();
        screen->subCards();
        screen->maxLayerCount();
        for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
            const auto layers = screen->layers(scene, LayerType::AllLayerType);
            for (const auto& weakLayer : layers) {
                if (const auto layer = weakLayer.lock()) {
                    layer->screenLayerId();
                    layer->getLayerOperationAllowed();
                    layer->windowRect();
                    device->findInput(layer->sourceId());
                }
            }
        }
    }
    const auto inputs = device->validInputs();
    for (const auto& weak : inputs) {
        if (const auto input = weak.lock()) {
            input->name();
            device->getConnector(input->interfaceFullId());
        }
    }
    m.model.deviceList().groupDevicePresets(device);
    QThread::usleep(200);
}

void requestTransitions(Model& m, QRandomGenerator& random)
{
    const int kind = random.bounded(5);
    ParallelManager::instance()->startParallelRequest(
        m.device(),
        [kind](const std::weak_ptr<BizModel::Device>& device) -> ParallelTask {
            switch (kind) {
            case 0:
                return ParallelTakeScreen{device, Mask, {}};
            case 1:
                return ParallelCutScreen{device, Mask, {}};
            case 2:
                return ParallelMatchPGM{device, Mask};
            case 3:
                return ParallelSetSwapStatus{device, true};
            default:
                return ParallelSetSwapStatus{device, false};
            }
        },
        random.bounded(4) == 0, nullptr, {});
    QThread::usleep(500);
}

void moveTBar(Model& m, QRandomGenerator& random)
{
    auto* const thread = TaskSampling::SamplingThread::instance();
    const auto sampling = std::make_shared<TaskSampling::s_TBarSampling>();
    sampling->pCurDevice = m.device();
    sampling->process = random.bounded(65) / 64.0;
    // Another thread may announce its own type in between; the sample is then refused.
    if (thread->setSamplingType(TaskSampling::TBar))
        thread->appendData(sampling);
    QThread::usleep(200);
}

void editLayers(Model& m, QRandomGenerator& random)
{
    const auto screen = anyScreen(m, random);
    const auto controller = m.screenControl();
    const auto layerController = ModelControl::Screen::layerModelControl(LayerType::Regular, m.device());
    if (!screen)
        return;
    controller->addLayer(screen, LayerType::Regular, SceneType::PVW, 1, 2, QRect(0, 0, 100, 100));
    const auto layers = screen->PVWLayers(LayerType::AllLayerType);
    layerController->setSelected(screen, layers.mid(0, 1), BizModel::SelectedType::Cover, true);
    layerController->bindSource(layers, quint32(1 + random.bounded(3)), 2);
    if (!layers.isEmpty())
        layerController->updateWindow(layers.last(), QRect(random.bounded(2000), 0, 100, 100));
    controller->topZOrder(screen, screen->selectedLayers());
    BizModel::ResourceCheck::CheckOperationResources(screen, {});
    QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
    if (layers.size() > 2)
        controller->removeLayers(screen, layers.mid(1), failed);
    QThread::usleep(200);
}

void requestInBackground(Model& m, QRandomGenerator& random)
{
    auto* const manager = AsyncManager::instance();
    const auto screen = anyScreen(m, random);
    switch (random.bounded(4)) {
    case 0:
        if (const auto created = m.device()->createDefaultScreen(Regular)) {
            created->addOutput(m.device()->firstUnsedOutput());
            manager->startAsyncRequest(AsyncCreateScreen{m.device(), {created}, {}});
        }
        break;
    case 1:
        if (screen)
            manager->startAsyncRequest(AsyncAddCopyLayers{
                m.device(), screen, screen->PVWLayers(LayerType::AllLayerType).mid(0, 1), true, {}});
        break;
    case 2:
        manager->startAsyncRequest(
            AsyncRemoveFile{m.device(), {FileType::PresetPVW, FileType::PresetPGM}, {}});
        break;
    default:
        manager->startAsyncRequest(AsyncSaveDeviceData{m.device(), {}});
        break;
    }
    QThread::usleep(2000);
}

void workPresets(Model& m, QRandomGenerator& random)
{
    QString error;
    m.deviceControl()->createPresetFile(FileType::PresetPVW, quint16(1 + random.bounded(9)), error);
    const auto presets = m.device()->presets();
    const auto preset = presets.isEmpty() ? nullptr : presets.first().lock();
    const auto controller = ModelControl::Preset::create(m.device());
    ModelControl::Preset::Screens screens;
    if (preset && controller->checkPresetData(preset, error)
        && preset->presetSelectedScreens(screens, FileType::PresetPVW, error))
        controller->updatePresetModelData(preset, screens, error);
    m.device()->setActivedPreset(preset, preset ? preset->fileId() : 0);
    QThread::usleep(500);
}

void workAtTheDevice(Model& m, QRandomGenerator& random)
{
    Control& control = m.model.control();
    switch (random.bounded(7)) {
    case 0:
        control.selectScreens(A, {{Regular, quint32(1 + random.bounded(3))}});
        break;
    case 1:
        control.setGroup(B, random.bounded(2) ? QStringLiteral("7") : QString());
        break;
    case 2:
        control.setSignal(A, 1, random.bounded(2));
        break;
    case 3:
        control.removeScreen(A, {Regular, quint32(1 + random.bounded(5))});
        break;
    case 4:
        control.addScreen(A, Regular);
        break;
    case 5:
        control.renameScreen(A, {Regular, 1}, QString::number(random.generate()));
        break;
    default:
        control.setScreenIndex(A, {Regular, 1}, random.bounded(8));
        break;
    }
    QThread::usleep(300);
}

} // namespace

class TestThreads : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void stormLeavesAShowWithoutFaults();
    void stoppingInTheMiddleTellsEveryRequest();
};

void TestThreads::stormLeavesAShowWithoutFaults()
{
    ShowRecord show = smallShow();
    for (ScreenRecord& screen : show.devices[0].screens)
        screen.effectSeconds = 0.01;
    show.devices[0].groupId = QStringLiteral("7");
    Model m(show);
    std::atomic<int> journaled{0};
    m.model.operations().setListener([&](const JournalEntry&) { ++journaled; });
    {
        Storm storm(m);
        storm.add(readAll);
        storm.add(readAll);
        storm.add(requestTransitions);
        storm.add(moveTBar);
        storm.add(editLayers);
        storm.add(requestInBackground);
        storm.add(workPresets);
        storm.add(workAtTheDevice);
    }
    m.model.stop();
    QVERIFY(journaled.load() > 0);
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    QStringList faults;
    QVERIFY2(parseShow(m.model.show(), faults).has_value(), qPrintable(faults.join(QLatin1Char('\n'))));
    const auto screens = m.device()->screens(Mask);
    for (const auto& screen : screens) {
        const auto state = screen.lock()->state();
        QVERIFY(state == BizModel::Screen::State::Normal || state == BizModel::Screen::State::Tbar_taking);
    }
}

void TestThreads::stoppingInTheMiddleTellsEveryRequest()
{
    for (int round = 0; round < 20; ++round) {
        Model m;
        std::atomic<int> asked{0};
        std::atomic<int> told{0};
        std::atomic<bool> stopped{false};
        const auto completion = [&told](bool, const QString&) { ++told; };
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                while (!stopped) {
                    ++asked;
                    AsyncManager::instance()->startAsyncRequest(AsyncRemoveLayer{
                        m.device(), m.screen(1), SceneType::PVW, LayerType::AllLayerType, completion});
                    const bool started = ParallelManager::instance()->startParallelRequest(
                        m.device(),
                        [](const auto& device) {
                            return ParallelTask(ParallelTakeScreen{device, Mask, {}});
                        },
                        false, nullptr, completion);
                    if (started)
                        ++asked;
                }
            });
        }
        QTest::qWait(10);
        m.model.stop();
        stopped = true;
        for (std::thread& thread : threads)
            thread.join();
        // Not one is forgotten, and not one told twice.
        QCOMPARE(told.load(), asked.load());
        QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    }
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"

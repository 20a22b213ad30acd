#include "modeltestsupport.h"

#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <QtTest>

#include <future>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ParallelControl;
using BizModel::SceneType;
using State = BizModel::Screen::State;
using Ids = QList<quint32>;

namespace {

constexpr int Mask = BizModel::Enum::Screen::RegularAndAUXScreens;

/// Starts a task of the type on the group of the device.
template <typename Task>
bool run(Model& m, bool wait, const Outcome& outcome, QString* error = nullptr, Completion done = {})
{
    return ParallelManager::instance()->startParallelRequest(
        m.device(),
        [done](const std::weak_ptr<BizModel::Device>& device) {
            Task task;
            task.device = device;
            task.screenTypeMask = Mask;
            if constexpr (std::is_same_v<Task, ParallelTakeScreen> || std::is_same_v<Task, ParallelCutScreen>)
                task.done = done;
            return ParallelTask(task);
        },
        wait, error, Outcome(outcome).completion());
}

bool sample(Model& m, double process)
{
    auto* const thread = TaskSampling::SamplingThread::instance();
    const auto record = std::make_shared<TaskSampling::s_TBarSampling>();
    record->process = process;
    record->pCurDevice = m.device();
    return thread->setSamplingType(TaskSampling::TBar) && thread->appendData(record);
}

/// A job that the sampling thread is held up by; returns once it has begun.
void holdSampling(Model& m, int ms, double process)
{
    const auto begun = std::make_shared<std::promise<void>>();
    auto reached = begun->get_future();
    m.model.operations().delay(Operation::SampleTBar, std::chrono::milliseconds(ms), Times::Once);
    m.model.operations().setListener([begun](const JournalEntry& entry) {
        if (entry.operation == operationName(Operation::SampleTBar)
            && entry.phase == JournalEntry::Phase::CarriedOut)
            begun->set_value();
    });
    QVERIFY(sample(m, process));
    QCOMPARE(reached.wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    m.model.operations().setListener({});
}

} // namespace

class TestTransitions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void takeRunsForTheScreensTimeAndCopiesThePreview();
    void screensOfOneTakeEndEachInItsOwnTime();
    void swapExchangesTheScenesAndClearsTheSelection();
    void cutAndMatchHappenAtOnce();
    void takeIsRefusedWithoutAFreeScreen();
    void failedTakeLeavesTheScenes();
    void slowCutStaysInItsState();
    void groupedDevicesTakeTogether();
    void oneDeviceOfAGroupFailing();
    void flagsOfSelectedScreens();
    void waitingOnAThreadOfTheModelIsRefused();
    void countLimitsTheDevicesAtWork();
    void tbarTakesAtTheTop();
    void tbarFallsBackAtTheBottom();
    void waitingTBarSamplesAreCoalesced();
    void anEndOfTheTBarIsNotLost();
    void samplesOfAnotherTypeWait();
    void stopEndsWhatRuns();
    void nothingChangesOnADeviceThatIsGone();
    void replacedShowsLeaveNoThreads();
};

void TestTransitions::takeRunsForTheScreensTimeAndCopiesThePreview()
{
    Model m;
    m.model.control().setEffectTime(QStringLiteral("A"), {ScreenType::RegularScreen, 1}, 0.2);
    m.log.clear();
    Outcome outcome;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(run<ParallelTakeScreen>(m, false, outcome));
    QCOMPARE(m.screen(1)->state(), State::Taking);
    QCOMPARE(m.screen(2)->state(), State::Normal);
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 1);
    QVERIFY(m.device()->isTaking());
    QVERIFY(!m.deviceControl()->takeCutEnabled());
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});

    const auto pvwLayer = m.screen(1)->PVWLayers(BizModel::LayerType::AllLayerType).first();
    const auto pgmLayer = m.screen(1)->PGMLayers(BizModel::LayerType::AllLayerType).first();
    QVERIFY(outcome.wait());
    QVERIFY2(outcome.ok(), qPrintable(outcome.text()));
    QVERIFY(clock.elapsed() >= 200);
    QCOMPARE(m.screen(1)->state(), State::Normal);
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    QVERIFY(m.deviceControl()->takeCutEnabled());
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
    QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 2}));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalDeviceScreenLayersChanged"),
             QStringLiteral("signalSelectedLayersChanged")}));
    QVERIFY(!pvwLayer.expired());
    QVERIFY(pgmLayer.expired());
}

void TestTransitions::screensOfOneTakeEndEachInItsOwnTime()
{
    Model m;
    m.model.control().selectScreens(
        QStringLiteral("A"),
        {{ScreenType::RegularScreen, 1}, {ScreenType::RegularScreen, 2}, {ScreenType::RegularScreen, 3}});
    m.model.control().setEffectTime(QStringLiteral("A"), {ScreenType::RegularScreen, 2}, 5.0);
    Outcome outcome;
    QVERIFY(run<ParallelTakeScreen>(m, false, outcome));
    QCOMPARE(m.screen(2)->state(), State::Taking);
    // Without outputs there is nothing to take.
    QCOMPARE(m.screen(3)->state(), State::Normal);
    QVERIFY(m.waitForState(1, State::Normal));
    QCOMPARE(m.screen(2)->state(), State::Taking);
    QVERIFY(!outcome.called());
    m.model.stop();
    QVERIFY(outcome.called());
    QVERIFY(!outcome.ok());
    QCOMPARE(m.screen(2)->state(), State::Normal);
    QCOMPARE(m.sources(2, SceneType::PGM), Ids{});
}

void TestTransitions::swapExchangesTheScenesAndClearsTheSelection()
{
    ShowRecord show = smallShow();
    show.devices[0].swap = true;
    show.devices[0].screens[0].pvw[1].selected = true;
    Model m(show);
    const auto layer = m.screen(1)->PVWLayers(BizModel::LayerType::AllLayerType).first().lock();
    Outcome outcome;
    QVERIFY(run<ParallelTakeScreen>(m, true, outcome));
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
    QCOMPARE(m.sources(1, SceneType::PVW), Ids{3});
    QVERIFY(m.screen(1)->selectedLayers().isEmpty());
    QCOMPARE(layer->sceneType(), SceneType::PGM);
    QVERIFY(!layer->getLayerOperationAllowed());
}

void TestTransitions::cutAndMatchHappenAtOnce()
{
    Model m;
    m.model.control().setEffectTime(QStringLiteral("A"), {ScreenType::RegularScreen, 1}, 10.0);
    Outcome cut;
    Outcome done;
    QVERIFY(run<ParallelCutScreen>(m, true, cut, nullptr, done.completion()));
    QVERIFY(cut.ok() && done.ok());
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
    QCOMPARE(m.screen(1)->state(), State::Normal);

    ShowRecord show = smallShow();
    Model other(show);
    Outcome match;
    QVERIFY(run<ParallelMatchPGM>(other, true, match));
    QCOMPARE(other.sources(1, SceneType::PVW), Ids{3});
    QCOMPARE(other.sources(1, SceneType::PGM), Ids{3});
}

void TestTransitions::takeIsRefusedWithoutAFreeScreen()
{
    Model m;
    m.model.control().selectScreens(QStringLiteral("A"), {});
    QVERIFY(!m.deviceControl()->takeCutEnabled());
    m.model.control().selectScreens(QStringLiteral("A"), {{ScreenType::RegularScreen, 3}});
    QVERIFY(m.deviceControl()->takeCutEnabled());
    QVERIFY(m.deviceControl()->getTakeScreens(Mask, {5, 0, 1}, true).isEmpty());
    QCOMPARE(m.deviceControl()->getTakeScreens(Mask, {5, 0, 1}, false).size(), 2);
    Outcome outcome;
    Outcome done;
    QString error;
    QVERIFY(!run<ParallelTakeScreen>(m, true, outcome, &error, done.completion()));
    QVERIFY(!error.isEmpty());
    QCOMPARE(done.text(), error);
    QVERIFY(!outcome.ok());

    for (const State busy : {State::Taking, State::Cut, State::MatchingPGM, State::Tbar_taking}) {
        m.model.control().selectScreens(QStringLiteral("A"), {{ScreenType::RegularScreen, 1}});
        m.model.control().setScreenState(QStringLiteral("A"), {ScreenType::RegularScreen, 1}, busy);
        QVERIFY2(!m.deviceControl()->takeCutEnabled(), qPrintable(QString::number(busy)));
        QCOMPARE(m.device()->isTaking(), busy == State::Taking);
    }
    QVERIFY(!ParallelManager::instance()->startParallelRequest(
        {}, [](const auto&) { return ParallelTask(ParallelTakeScreen{}); }, false, &error, {}));
    QVERIFY(!error.isEmpty());
}

void TestTransitions::failedTakeLeavesTheScenes()
{
    Model m;
    m.model.operations().fail(
        Operation::ParallelTakeScreen, QStringLiteral("The link is down."), Times::Once);
    Outcome outcome;
    QString error;
    QVERIFY(!run<ParallelTakeScreen>(m, true, outcome, &error));
    QCOMPARE(error, QStringLiteral("The link is down."));
    QCOMPARE(m.screen(1)->state(), State::Normal);
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    Outcome second;
    QVERIFY(run<ParallelTakeScreen>(m, true, second));
}

void TestTransitions::slowCutStaysInItsState()
{
    Model m;
    m.model.operations().delay(Operation::ParallelCutScreen, std::chrono::milliseconds(100), Times::Once);
    Outcome outcome;
    QVERIFY(run<ParallelCutScreen>(m, false, outcome));
    QCOMPARE(m.screen(1)->state(), State::Cut);
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QVERIFY(outcome.wait());
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
}

void TestTransitions::groupedDevicesTakeTogether()
{
    Model m;
    m.model.control().setGroup(QStringLiteral("A"), QStringLiteral("7"));
    m.model.control().setGroup(QStringLiteral("B"), QStringLiteral("7"));
    QCOMPARE(m.model.deviceList().groupDevices(QStringLiteral("7")).size(), 2);
    Outcome outcome;
    QVERIFY(run<ParallelTakeScreen>(m, false, outcome));
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 2);
    QCOMPARE(m.screen(1, ScreenType::RegularScreen, QStringLiteral("B"))->state(), State::Taking);
    QVERIFY(outcome.wait());
    QVERIFY(outcome.ok());
    QCOMPARE(m.sources(1, SceneType::PGM, QStringLiteral("B")), Ids{1});

    m.model.control().setGroup(QStringLiteral("B"), BizModel::Device::defaultDeviceGroupId);
    QCOMPARE(m.model.deviceList().groupDevices(m.device(), true, false).size(), 1);
    QCOMPARE(m.model.deviceList().groupDevices(QStringLiteral("0")).size(), 1);
    QCOMPARE(m.model.deviceList().groupDevices(QStringLiteral("0")).first().lock(), m.device());
}

void TestTransitions::oneDeviceOfAGroupFailing()
{
    Model m;
    m.model.control().setGroup(QStringLiteral("A"), QStringLiteral("7"));
    m.model.control().setGroup(QStringLiteral("B"), QStringLiteral("7"));
    m.model.operations().fail(Operation::ParallelCutScreen, QStringLiteral("Refused."), Times::Once);
    Outcome outcome;
    QString error;
    QVERIFY(!run<ParallelCutScreen>(m, true, outcome, &error));
    QCOMPARE(error, QStringLiteral("Refused."));
    const bool aCut = m.sources(1, SceneType::PGM) == Ids{1, 2};
    const bool bCut = m.sources(1, SceneType::PGM, QStringLiteral("B")) == Ids{1};
    QVERIFY(aCut != bCut);
}

void TestTransitions::flagsOfSelectedScreens()
{
    Model m;
    auto* const manager = ParallelManager::instance();
    const auto start = [&](ParallelTask task) {
        return manager->startParallelRequest(
            m.device(), [task](const auto&) { return task; }, true, nullptr, {});
    };
    QVERIFY(start(ParallelFreezeScreen{m.device(), Mask, true}));
    QVERIFY(start(ParallelFTBScreen{m.device(), Mask, true}));
    QVERIFY(m.screen(1)->freeze() && m.screen(1)->FTBEnable());
    QVERIFY(!m.screen(2)->freeze() && !m.screen(2)->FTBEnable());
    QVERIFY(start(ParallelSetSwapStatus{m.device(), true}));
    QVERIFY(start(ParallelSetLoadToPresetPGMStatus{m.device(), BizModel::Enum::Device::LoadToPGM}));
    QVERIFY(m.device()->swapEnable() && m.device()->loadToPGMEnable());
    // What is so already is not announced again.
    QVERIFY(start(ParallelFreezeScreen{m.device(), Mask, true}));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalScreenPGMFreezeChanged"), QStringLiteral("signalScreenFTBChanged"),
             QStringLiteral("signalSwapStateChanged"), QStringLiteral("signalLoadToPGMStateChanged")}));
}

void TestTransitions::waitingOnAThreadOfTheModelIsRefused()
{
    Model m;
    std::promise<bool> second;
    auto answer = second.get_future();
    ParallelManager::instance()->startParallelRequest(
        m.device(),
        [](const auto& device) {
            return ParallelTask(ParallelSetSwapStatus{device, true});
        },
        false, nullptr,
        [&](bool, const QString&) {
            second.set_value(ParallelManager::instance()->startParallelRequest(
                m.device(),
                [](const auto& device) {
                    return ParallelTask(ParallelSetSwapStatus{device, false});
                },
                true, nullptr, {}));
        });
    QCOMPARE(answer.wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    QVERIFY(!answer.get());
    QVERIFY(m.device()->swapEnable());
}

void TestTransitions::countLimitsTheDevicesAtWork()
{
    Model m;
    m.model.control().setGroup(QStringLiteral("A"), QStringLiteral("7"));
    m.model.control().setGroup(QStringLiteral("B"), QStringLiteral("7"));
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    m.model.operations().delay(
        Operation::ParallelSetSwapStatus, std::chrono::milliseconds(30), Times::Always);
    m.model.operations().setListener([&](const JournalEntry& entry) {
        if (entry.phase == JournalEntry::Phase::CarriedOut)
            most = std::max(most.load(), ++running);
    });
    Outcome outcome;
    QMetaObject::Connection watch = QObject::connect(
        &m.model.deviceList(), &BizModel::DeviceList::signalSwapStateChanged, &m.model.deviceList(),
        [&] { --running; }, Qt::DirectConnection);
    QVERIFY(ParallelManager::instance()->startParallelRequest(
        m.device(),
        [](const auto& device) {
            return ParallelTask(ParallelSetSwapStatus{device, true});
        },
        outcome.completion(), 1));
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 2);
    QVERIFY(outcome.wait());
    QCOMPARE(most.load(), 1);
    QVERIFY(m.device(QStringLiteral("B"))->swapEnable());
    QObject::disconnect(watch);
}

void TestTransitions::tbarTakesAtTheTop()
{
    Model m;
    for (int position = 2; position < 64; ++position)
        QVERIFY(sample(m, position / 64.0));
    QVERIFY(m.waitForState(1, State::Tbar_taking));
    QVERIFY(!m.device()->isTaking());
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QVERIFY(waitUntil([&] {
        return m.model.control().transitionProgress(QStringLiteral("A"), {ScreenType::RegularScreen, 1})
            == 63 / 64.0;
    }));
    QCOMPARE(m.screen(2)->state(), State::Normal);
    // What is selected meanwhile does not join.
    m.model.control().selectScreens(QStringLiteral("A"), {{ScreenType::RegularScreen, 2}});
    QVERIFY(sample(m, 1.0));
    QVERIFY(m.waitForState(1, State::Normal));
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
    QCOMPARE(m.sources(2, SceneType::PGM), Ids{});
    QCOMPARE(m.log.count(QStringLiteral("signalDeviceScreenLayersChanged")), 1);
}

void TestTransitions::tbarFallsBackAtTheBottom()
{
    Model m;
    QVERIFY(sample(m, 0.5));
    QVERIFY(m.waitForState(1, State::Tbar_taking));
    QVERIFY(sample(m, 0.0));
    QVERIFY(m.waitForState(1, State::Normal));
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QCOMPARE(m.log.count(QStringLiteral("signalDeviceScreenLayersChanged")), 0);
    for (const double bad : {-0.1, 1.1, std::numeric_limits<double>::quiet_NaN()})
        QVERIFY(!sample(m, bad));
    QVERIFY(!TaskSampling::SamplingThread::instance()->appendData(
        std::shared_ptr<TaskSampling::s_TBarSampling>()));
}

void TestTransitions::waitingTBarSamplesAreCoalesced()
{
    Model m;
    holdSampling(m, 100, 0.1);
    QStringList carriedOut;
    std::mutex mutex;
    m.model.operations().setListener([&](const JournalEntry& entry) {
        const std::lock_guard lock(mutex);
        if (entry.phase == JournalEntry::Phase::CarriedOut
            && entry.operation == operationName(Operation::SampleTBar))
            carriedOut += entry.arguments.section(QLatin1Char('='), -1);
    });
    for (const double process : {0.2, 0.3, 0.4})
        QVERIFY(sample(m, process));
    QVERIFY(waitUntil([&] {
        const std::lock_guard lock(mutex);
        return !carriedOut.isEmpty();
    }));
    QVERIFY(sample(m, 0.0));
    QVERIFY(m.waitForState(1, State::Normal));
    m.model.stop();
    const std::lock_guard lock(mutex);
    QCOMPARE(carriedOut, QStringList({QStringLiteral("0.4"), QStringLiteral("0")}));
}

void TestTransitions::anEndOfTheTBarIsNotLost()
{
    Model m;
    holdSampling(m, 100, 0.9);
    // The lever reaches the end and starts back while the device is still busy with an earlier position.
    QVERIFY(sample(m, 1.0));
    QVERIFY(sample(m, 0.1));
    QVERIFY(m.log.waitFor(QStringLiteral("signalDeviceScreenLayersChanged")));
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
    QVERIFY(m.waitForState(1, State::Tbar_taking));
}

void TestTransitions::samplesOfAnotherTypeWait()
{
    Model m;
    holdSampling(m, 100, 0.5);
    QVERIFY(sample(m, 0.6));
    auto* const thread = TaskSampling::SamplingThread::instance();
    QVERIFY(!thread->setSamplingType(TaskSampling::LoadPreset));
    QVERIFY(waitUntil([&] { return thread->setSamplingType(TaskSampling::LoadPreset); }));
    const auto tbar = std::make_shared<TaskSampling::s_TBarSampling>();
    tbar->pCurDevice = m.device();
    QVERIFY(!thread->appendData(tbar));
}

void TestTransitions::stopEndsWhatRuns()
{
    Model m;
    m.model.control().setEffectTime(QStringLiteral("A"), {ScreenType::RegularScreen, 1}, 10.0);
    m.model.operations().delay(Operation::ParallelSetSwapStatus, std::chrono::hours(1), Times::Always);
    Outcome take;
    Outcome swap;
    QVERIFY(run<ParallelTakeScreen>(m, false, take));
    ParallelManager::instance()->startParallelRequest(
        m.device(),
        [](const auto& device) {
            return ParallelTask(ParallelSetSwapStatus{device, true});
        },
        swap.completion());
    QElapsedTimer clock;
    clock.start();
    m.model.stop();
    QVERIFY(clock.elapsed() < WaitMs);
    QVERIFY(take.called() && !take.ok() && swap.called() && !swap.ok());
    QVERIFY(!m.device()->swapEnable());
    QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    QString error;
    QVERIFY(!run<ParallelTakeScreen>(m, false, take, &error));
    QVERIFY(!error.isEmpty());
}

void TestTransitions::nothingChangesOnADeviceThatIsGone()
{
    Model m;
    const auto device = m.device();
    const auto screen = m.screen(1);
    Outcome outcome;
    QVERIFY(run<ParallelTakeScreen>(m, false, outcome));
    QVERIFY(m.model.control().removeDevice(QStringLiteral("A")));
    QVERIFY(outcome.wait());
    QCOMPARE(screen->layerCount(SceneType::PGM, BizModel::LayerType::AllLayerType), 1);
    QCOMPARE(m.log.count(QStringLiteral("signalDeviceScreenLayersChanged")), 0);
    QString error;
    QVERIFY(!ParallelManager::instance()->startParallelRequest(
        device,
        [](const auto& each) {
            return ParallelTask(ParallelTakeScreen{each, Mask, {}});
        },
        true, &error, {}));
}

void TestTransitions::replacedShowsLeaveNoThreads()
{
    Model m;
    const QByteArray show = m.model.show();
    const auto threads = [] {
        return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    };
    const int before = threads();
    for (int i = 0; i < 5; ++i) {
        QStringList faults;
        QVERIFY(m.model.load(show, faults));
        Outcome outcome;
        QVERIFY(run<ParallelCutScreen>(m, true, outcome));
    }
    // The present device's and, until it is looked for, the last one's.
    QVERIFY2(threads() <= before + 2, qPrintable(QString::number(threads() - before)));
}

QTEST_GUILESS_MAIN(TestTransitions)
#include "tst_transitions.moc"

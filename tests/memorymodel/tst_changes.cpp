#include "modeltestsupport.h"

#include "bizmodel/input.h"
#include "bizmodel/preset.h"
#include "bizmodel/resourcecheck.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/preset.h"
#include "tasksampling/samplingthread.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using BizModel::CapacityMode;
using BizModel::LayerType;
using BizModel::SceneType;
using State = BizModel::Screen::State;

namespace {

constexpr ScreenType Regular = ScreenType::RegularScreen;
constexpr auto PVW = FileType::PresetPVW;

bool create(Model& m, const QList<std::shared_ptr<BizModel::Screen>>& screens)
{
    const Outcome outcome;
    AsyncManager::instance()->startAsyncRequest(AsyncCreateScreen{m.device(), screens, outcome.completion()});
    return outcome.wait() && outcome.ok();
}

/// A device with one card of `capacity` units that two screens share: 1 with two outputs, 2 with one. The
/// layers of their previews have these capacities.
ShowRecord sharedCard(int capacity, const QList<CapacityMode>& first, const QList<CapacityMode>& second)
{
    ShowRecord show = smallShow();
    show.devices[0].subcards[1].layerCapacity = capacity;
    for (int screen = 0; screen < 2; ++screen) {
        LayerRecords& layers = show.devices[0].screens[screen].pvw;
        layers.clear();
        for (const CapacityMode each : screen == 0 ? first : second) {
            layers += layerRecord(quint32(layers.size() + 1), 1);
            layers.last().capacity = each;
        }
    }
    return show;
}

/// Has device A load the preset.
bool sampleLoad(Model& m, quint8 id)
{
    const auto sampling = std::make_shared<TaskSampling::s_LoadPresetSampling>();
    sampling->nFileID = id;
    sampling->pCurDevice = m.device();
    auto* const thread = TaskSampling::SamplingThread::instance();
    return thread->setSamplingType(TaskSampling::LoadPreset) && thread->appendData(sampling);
}

} // namespace

Q_DECLARE_METATYPE(Orvane::BizModel::CapacityMode)

/// What the model refuses, and what a change must not leave behind. What it does when asked for something
/// sensible is seen through the console.
class TestChanges : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeDoneIsRefusedAndTellsNobody()
    {
        Model m;
        const auto screens = m.screenControl();
        const auto adds = [&](LayerType type, SceneType scene, int input, const QRect& window) {
            return bool(
                screens->addLayer(m.screen(1), type, scene, input, BizModel::SourceType::Input, window));
        };
        const QRect window(0, 0, 100, 100);
        QVERIFY(!adds(LayerType::AUX, SceneType::PVW, 1, window));
        QVERIFY(!adds(LayerType::Regular, SceneType::PGM, 1, window)); // it is not edited
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 9, window)); // there is no such input
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, QRect(0, 0, 0, 10)));
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, QRect(2'000'000, 0, 10, 10)));
        for (const double bad : {-1.0, 10.1, std::numeric_limits<double>::quiet_NaN()})
            QVERIFY(!screens->updateEffectSpeed({{m.screen(1), bad}}));
        QVERIFY(!screens->updateEffectType({{m.screen(1), 7}}));
        QVERIFY(!screens->updateEffectSpeed({{std::weak_ptr<BizModel::Screen>(), 1.0}}));
        QVERIFY(!m.control().setScreenIndex(A, {Regular, 2}, -2));
        QVERIFY(!m.control().moveScreen(A, {Regular, 3}, {Regular, 8}));
        m.control().setScreenState(A, First, State::Taking);
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, window));
        QCOMPARE(m.sources(1, SceneType::PVW), (QList<quint32>{1, 2}));
        QCOMPARE(m.log.names(), QStringList());
    }

    void resourcesAreSummed_data()
    {
        QTest::addColumn<int>("capacity");
        QTest::addColumn<QList<CapacityMode>>("first");
        QTest::addColumn<QList<CapacityMode>>("second");
        QTest::addColumn<CapacityMode>("probe");
        QTest::addColumn<QRect>("window");
        QTest::addColumn<bool>("enough");
        using Layers = QList<CapacityMode>;
        const QRect inside(0, 0, 960, 540);
        const CapacityMode single = CapacityMode::_SL;
        const CapacityMode dual = CapacityMode::_DL;
        const CapacityMode fourK = CapacityMode::_4K;
        const Layers none;
        QTest::newRow("a dual link takes two") << 1 << none << none << dual << inside << false;
        QTest::newRow("4K takes four") << 4 << none << none << fourK << inside << true;
        QTest::newRow("those there count") << 4 << Layers{single, dual} << none << dual << inside << false;
        QTest::newRow("those there leave room")
            << 4 << Layers{single, dual} << none << single << inside << true;
        QTest::newRow("the card's other screen")
            << 4 << Layers{dual} << Layers{dual} << single << inside << false;
        QTest::newRow("over two outputs") << 1 << none << none << single << QRect(1000, 0, 1920, 540) << true;
        QTest::newRow("beside the outputs") << 0 << none << none << fourK << QRect(4000, 0, 10, 10) << true;
    }
    void resourcesAreSummed()
    {
        QFETCH(int, capacity);
        QFETCH(QList<CapacityMode>, first);
        QFETCH(QList<CapacityMode>, second);
        QFETCH(CapacityMode, probe);
        QFETCH(QRect, window);
        QFETCH(bool, enough);
        Model m(sharedCard(capacity, first, second));
        const auto probeLayer = m.screen(1)->createProbeLayer(m.device()->findInput(1), probe);
        QVERIFY(probeLayer);
        QCOMPARE(
            BizModel::ResourceCheck::CheckOperationResources(m.screen(1), {{probeLayer, window}}), enough);
        // A probe is not part of the scene, and asking changes nothing.
        QCOMPARE(m.screen(1)->layerCount(SceneType::PVW, LayerType::AllLayerType), first.size());
        QCOMPARE(m.log.names(), QStringList());
    }

    void screensAreMadeUpToTheLimitAndOneForAnOutput()
    {
        Model m;
        const auto fourth = m.device()->createDefaultScreen(Regular);
        const auto fifth = m.device()->createDefaultScreen(Regular);
        QVERIFY(!create(m, {fourth, fifth})); // both or none
        QCOMPARE(m.log.names(), QStringList());
        QVERIFY(create(m, {fourth}));
        QVERIFY(m.device()->isScreenLimited(Regular));
        for (const auto& refused : {fifth, fourth, std::shared_ptr<BizModel::Screen>()})
            QVERIFY(!create(m, {refused}));

        m.control().removeScreen(A, {Regular, 2});
        const auto one = m.device()->createDefaultScreen(Regular);
        const auto output = m.device()->firstUnsedOutput();
        one->addOutput(output);
        fifth->addOutput(output);
        QVERIFY(create(m, {one}));
        QVERIFY(!create(m, {fifth}));
    }

    void whatIsRemovedIsReferredToByNothing()
    {
        Model m;
        Control& control = m.control();
        const std::weak_ptr<BizModel::Screen> removed = m.screen(3);
        QVERIFY(control.removeScreen(A, {Regular, 3}) && removed.expired());
        QVERIFY(control.selectInput(A, 2));
        m.log.clear();
        QVERIFY(control.removeInput(A, 2));
        QCOMPARE(
            m.log.names(),
            (QStringList{
                "signalInputRemoved", "signalSelectedInputChanged", "signalLayerSourceChanged",
                "signalLayerSourceChanged"}));
        QCOMPARE(m.sources(1, SceneType::PVW), (QList<quint32>{1, 0}));
        QVERIFY(!control.addInput(A, {7, "New", 1, 1, CapacityMode::_SL, true, false}));
        QVERIFY(control.addInput(A, {7, "New", 1, 2, CapacityMode::_SL, true, false}));
        QStringList faults;
        QVERIFY2(m.model.load(m.model.show(), faults), qPrintable(faults.join('\n')));
    }

    void aLoadThatATakeForestallsLeavesTheFormerPresetActive_data()
    {
        QTest::addColumn<bool>("deviceFirst");
        QTest::newRow("the device is told first") << true;
        QTest::newRow("the model refuses first") << false;
    }
    void aLoadThatATakeForestallsLeavesTheFormerPresetActive()
    {
        QFETCH(bool, deviceFirst);
        Model m;
        for (const quint16 id : {1, 2})
            m.control().addPreset(A, PVW, id);
        m.control().activatePreset(A, PVW, 1);
        const auto stored =
            find(m.device()->presets(), [](const auto& each) { return each.presetDetail().id == 2; });
        const auto presets = ModelControl::Preset::create(m.device());
        ModelControl::Preset::Screens screens;
        QString error;
        QVERIFY(stored->presetSelectedScreens(screens, PVW, error));
        m.control().setScreenState(A, First, State::Taking);
        m.log.clear();
        if (deviceFirst) {
            QVERIFY(sampleLoad(m, 2) && m.log.waitFor("signalActivedPresetKeyNoChanged"));
            QCOMPARE(m.device()->activedPresetKeyNo(), 2);
        }
        QVERIFY(!presets->updatePresetModelData(stored, screens, error));
        if (!deviceFirst)
            QVERIFY(sampleLoad(m, 2) && m.log.waitFor("signalKeypadChanged"));
        QCOMPARE(m.device()->activedPresetKeyNo(), 1);
        QCOMPARE(m.log.count("signalActivedPresetKeyNoChanged"), deviceFirst ? 2 : 0);

        // The refusal is forgotten with its load.
        m.control().setScreenState(A, First, State::Normal);
        QVERIFY(sampleLoad(m, 2));
        QVERIFY(presets->updatePresetModelData(stored, screens, error));
        QVERIFY(waitUntil([&] { return m.device()->activedPresetKeyNo() == 2; }));
    }

    void failedSavingLeavesTheFileAsItWas()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath("show.json");
        Model m;
        const auto save = [&m] {
            const Outcome outcome;
            AsyncManager::instance()->startAsyncRequest(
                AsyncSaveDeviceData{m.device(), outcome.completion()});
            outcome.wait();
            return outcome;
        };
        QVERIFY(!save().ok()); // nowhere
        m.model.setShowFile(path);
        QVERIFY(save().ok());
        const QByteArray saved = m.model.show();
        m.control().renameScreen(A, First, "Wall");
        m.model.operations().fail(Operation::AsyncSaveDeviceData, "Disk full.", Times::Once);
        QCOMPARE(save().text(), "Disk full.");
        m.model.setShowFile(directory.filePath("nowhere/show.json"));
        const Outcome unwritable = save();
        QVERIFY(!unwritable.ok() && unwritable.text().contains("nowhere"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), saved);
        QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList("show.json"));
    }
};

QTEST_GUILESS_MAIN(TestChanges)
#include "tst_changes.moc"

#include "layerscene.h"
#include "logcapture.h"

#include "ecmanager.h"

#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"

#include <QElapsedTimer>
#include <QTest>

using namespace LayerScene;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using MemoryModel::Times;
using TestSupport::LogCapture;
using State = BizModel::Screen::State;

namespace {

constexpr int HoldMs = 3000;
const QString NoRoomNotice = QStringLiteral("status 1 3000 Not enough resources.");
const QString ClearDialog = QStringLiteral("wait Cleaning layers,please wait...");
const QString ClearQuestion = QStringLiteral("box 0 Do you want to remove all the layers from PVW?");

/// Presses a key as the on-screen console does: on the GUI thread.
void pressOnScreen(quint16 ecKey)
{
    const quint32 key = Constants::VirtualKeyOffset + TestSupport::appNumber(ecKey);
    const QByteArray datagram = ConsolePanel::encodeUp(ConsolePanel::KeyReport{true, key}, 0);
    ECManager::instance()->upTLVDecodeFinished(ReportECButtonPressed, datagram.mid(ECValueOffset));
}

/// A creation that is refused: what differs from the show, what happens before the key is pressed, and what
/// tells of it.
struct Refusal {
    const char* name;
    std::function<void(MemoryModel::DeviceRecord&)> show;
    std::function<void(TestSupport::ModelRig&, const QString& device)> prepare;
    QString log;
    QString notice;
};

const std::vector<Refusal>& refusals()
{
    using Device = MemoryModel::DeviceRecord;
    using Rig = TestSupport::ModelRig;
    const auto asShown = [](Device&) {};
    const auto atOnce = [](Rig&, const QString&) {};
    const auto limit = QStringLiteral("status 2 3000 The number of layers exceeds the limit.");
    const auto limitLog = QStringLiteral("can not add layer, layer number is bigger than the max.");
    const auto fail = [](Operation operation) {
        return [operation](Rig& rig, const QString&) {
            rig.operations().fail(operation, QStringLiteral("ordered"), Times::Always);
        };
    };
    static const std::vector<Refusal> s_refusals = {
        {"no device",
         asShown,
         [](Rig& rig, const QString&) { rig.control().activateDevice({}); },
         "Create layer failed: device is nullptr.",
         {}},
        {"no screen",
         [](Device& device) { device.activeScreen = {}; },
         atOnce,
         "Create layer failed:screen is nullptr.",
         {}},
        {"an output is offline",
         asShown,
         [](Rig& rig, const QString& device) { rig.control().setOutputOnline(device, 2, false); },
         "Create layer failed:layer key [20] pressed but screen is not Complete.",
         {}},
        {"AUX screen",
         [](Device& device) { device.activeScreen = Confidence; },
         atOnce,
         "can not add layer, current Screen type is: 4",
         {}},
        {"no output",
         [](Device& device) { device.activeScreen = Bare; },
         atOnce,
         "can not add layer, current Screen output count is 0.",
         {}},
        {"during a transition", asShown,
         [](Rig& rig, const QString& device) {
             rig.control().setScreenState(device, Stage, State::Tbar_taking);
         },
         "can not add layer, Screen state is 3",
         "status 2 3000 The current operation cannot be completed during the screen taking."},
        {"the device's limit", [](Device& device) { device.limits.layers = 0; }, atOnce, limitLog, limit},
        {"the cards' capacity", [](Device& device) { device.subcards[1].layerCapacity = 0; }, atOnce,
         limitLog, limit},
        {"no source", [](Device& device) { device.inputs.clear(); }, atOnce,
         "can not add layer, Unable to find matching input source!",
         "status 2 3000 No matching input source found."},
        {"no room", asShown, fail(Operation::CheckOperationResources), "Layer pos is (-1,-1). ",
         NoRoomNotice},
        {"the model refuses",
         asShown,
         fail(Operation::AddLayer),
         "Create layer by drag failed: new layer is nullptr.",
         {}}};
    return s_refusals;
}

} // namespace

/// The stories of the layer group's keys, from the press to the model and back to the lights.
class TestLayerKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { m_pRig.reset(); }

    void aFreeKeyMakesALayerOnTheNextOutput();
    void aRefusedLayerLeavesTheKeyFreeForTheNext_data();
    void aRefusedLayerLeavesTheKeyFreeForTheNext();
    void theSearchWrapsToTheFirstOutput();
    void aFullScreenIsOutOfResourcesForHalfASecond();
    void aBoundKeySelectsItsLayerAlone();
    void theCapacityKeyChoosesTheSource();
    void removeTakesTheSelectedLayersAndFreesTheirKeys();
    void removeIsRefused_data();
    void removeIsRefused();
    void keysThatAreReleasedEarlyDoNotDoWhatHoldingDoes();
    void holdingClearsAndReordersAfterThreeSeconds();
    void onTheScreenAQuestionClears();
    void oneFullScreenPressFillsAnOutputTwoFillTheMosaic();
    void fullScreenWithoutResourcesIsRefused();
    void keysFollowTheApplicationsOwnChanges();
    void aTakeGivesTheKeysAnew();
    void theConsoleTurnsToTheSelectedLayer();
    void eachScreenKeepsItsKeys();
    void aCreationExcludesARemovalAndCatchesUp();
    void aRemovalExcludesACreationAndCatchesUp();
    void withoutADeviceTheKeysAreDark();
    void aClearingMayEndAfterTheConsole();

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Control& control() { return m_pRig->control(); }
    void load(const MemoryModel::LayerRecords& preview = {}) { load(LayerScene::show(preview)); }
    void load(const MemoryModel::ShowRecord& show);
    std::shared_ptr<BizModel::Screen> screen(ScreenKey key = Stage) { return m_pRig->screen(m_device, key); }
    /// "id@x,y wxh" of each layer, from the bottom to the top.
    QStringList layers(SceneType scene = SceneType::PVW, ScreenKey key = Stage);
    QList<quint32> layerIds(SceneType scene = SceneType::PVW);
    bool keyShows(int index, ECLEDColor color, const QString& label);
    void tap(quint16 key);

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    QString m_device;
};

void TestLayerKeys::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
}

void TestLayerKeys::init()
{
    load();
}

void TestLayerKeys::cleanup()
{
    m_pRig->operations().clearAllOrders();
}

void TestLayerKeys::load(const MemoryModel::ShowRecord& show)
{
    m_device = show.activeDevice;
    QVERIFY(m_pRig->load(show));
    m_pRig->forget();
}

QStringList TestLayerKeys::layers(SceneType scene, ScreenKey key)
{
    QStringList texts;
    const auto weakLayers = screen(key)->layers(scene, BizModel::LayerType::AllLayerType);
    for (const auto& weakLayer : weakLayers) {
        if (const auto layer = weakLayer.lock()) {
            const QRect window = layer->windowRect();
            texts.append(QStringLiteral("%1@%2,%3 %4x%5")
                             .arg(layer->layerId())
                             .arg(window.x())
                             .arg(window.y())
                             .arg(window.width())
                             .arg(window.height()));
        }
    }
    return texts;
}

QList<quint32> TestLayerKeys::layerIds(SceneType scene)
{
    QList<quint32> ids;
    const auto texts = layers(scene);
    for (const QString& text : texts)
        ids.append(text.section(QLatin1Char('@'), 0, 0).toUInt());
    return ids;
}

bool TestLayerKeys::keyShows(int index, ECLEDColor color, const QString& label)
{
    const quint16 key = quint16(Select + index);
    return console().waitShows(key, color) && console().waitLabel(quint16(Label + key), label);
}

void TestLayerKeys::tap(quint16 key)
{
    console().tap(key);
    QVERIFY(console().settle());
}

void TestLayerKeys::aFreeKeyMakesALayerOnTheNextOutput()
{
    // Of the two outputs, the right one comes first.
    tap(Select + 2);
    QCOMPARE(layers(), QStringList({"1@1920,0 960x540"}));
    QVERIFY(keyShows(2, ECLEDColor::Yellow, screen()->PVWLayers(2).first().lock()->name()));
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QCOMPARE(screen()->PVWLayers(2).first().lock()->sourceId(), 2u);
    QCOMPARE(m_pRig->asked(Operation::AppendViewingScreen).size(), 1);

    console().tap(Select);
    console().tap(Select + 1);
    tap(Select + 3);
    QCOMPARE(
        layers(), QStringList({"1@1920,0 960x540", "2@0,0 960x540", "3@1980,60 960x540", "4@60,60 960x540"}));
    // The keys that were pressed have the layers, not the first free ones.
    for (const auto& [index, layer] : {std::pair(0, 2), {1, 3}, {2, 1}, {3, 4}})
        QVERIFY(keyShows(index, ECLEDColor::Yellow, QStringLiteral("Layer %1").arg(layer)));
}

void TestLayerKeys::aRefusedLayerLeavesTheKeyFreeForTheNext_data()
{
    QTest::addColumn<int>("row");
    for (std::size_t row = 0; row < refusals().size(); ++row)
        QTest::newRow(refusals()[row].name) << int(row);
}

void TestLayerKeys::aRefusedLayerLeavesTheKeyFreeForTheNext()
{
    QFETCH(int, row);
    const Refusal& refusal = refusals()[std::size_t(row)];
    auto show = LayerScene::show();
    refusal.show(show.devices.first());
    load(show);
    refusal.prepare(*m_pRig, m_device);
    const LogCapture log;
    tap(Select);
    QVERIFY2(log.contains(refusal.log), qUtf8Printable(log.all()));
    const int noticed = refusal.notice.isEmpty() ? 0 : 1;
    QCOMPARE(m_pRig->countNotices(refusal.notice), noticed);
    QCOMPARE(int(m_pRig->notices().size()), noticed);
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));

    // Nothing of it is left behind.
    m_pRig->operations().clearAllOrders();
    load();
    tap(Select);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
}

void TestLayerKeys::theSearchWrapsToTheFirstOutput()
{
    const LogCapture log;
    load({layerRecord(1, {1920, 0})});
    m_pRig->operations().fail(Operation::CheckOperationResources, QStringLiteral("ordered"), Times::Once);
    tap(Select + 1);
    // One layer is there, so the search began at the left output, had no luck and went back to the right.
    QCOMPARE(layers().last(), QStringLiteral("2@1980,60 960x540"));
    QCOMPARE(log.count(QStringLiteral("Layer resource out, failed to full screen layer.")), 1);
    QCOMPARE(m_pRig->countNotices(NoRoomNotice), 0);
}

void TestLayerKeys::aFullScreenIsOutOfResourcesForHalfASecond()
{
    m_pRig->operations().fail(Operation::CheckOperationResources, QStringLiteral("ordered"), Times::Always);
    qint64 lasted = 0;
    for (int attempt = 0; attempt < 3; ++attempt) { // a busy machine may notice the end late
        load();
        QElapsedTimer time;
        time.start();
        tap(Select);
        QCOMPARE(screen()->state(), State::Resource_out);
        // The state is no obstacle, and another try does not make it last.
        QVERIFY(QTest::qWaitFor([&] { return time.elapsed() >= 450; }, 1000));
        tap(Select);
        QCOMPARE(m_pRig->countNotices(NoRoomNotice), 2);
        QTRY_COMPARE_WITH_TIMEOUT(screen()->state(), State::Normal, 2000);
        lasted = time.elapsed();
        QVERIFY2(lasted >= 500, qPrintable(QString::number(lasted)));
        if (lasted < 950)
            return;
    }
    QFAIL(qPrintable(QStringLiteral("out of resources for %1 ms").arg(lasted)));
}

void TestLayerKeys::aBoundKeySelectsItsLayerAlone()
{
    load({layerRecord(1), layerRecord(2)});
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    tap(Select);
    QVERIFY(keyShows(0, ECLEDColor::Green, QStringLiteral("Layer 1")));
    QVERIFY(keyShows(1, ECLEDColor::Yellow, QStringLiteral("Layer 2")));
    tap(Select + 1);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    QVERIFY(keyShows(1, ECLEDColor::Green, QStringLiteral("Layer 2")));
    tap(Select + 1);
    QVERIFY(keyShows(1, ECLEDColor::Green, QStringLiteral("Layer 2")));
    QCOMPARE(layerIds(), QList<quint32>({1, 2}));
}

void TestLayerKeys::theCapacityKeyChoosesTheSource()
{
    QVERIFY(console().waitLabel(Label + Capacity, QStringLiteral("SL")));
    console().press(Capacity);
    QVERIFY(console().waitShows(Capacity, ECLEDColor::Green));
    QVERIFY(console().waitLabel(Label + Capacity, QStringLiteral("DL")));
    console().release(Capacity);
    QVERIFY(console().waitShows(Capacity, ECLEDColor::Off));
    tap(Select);
    QCOMPARE(screen()->PVWLayers(2).first().lock()->sourceId(), 4u);

    tap(Capacity);
    QVERIFY(console().waitLabel(Label + Capacity, QStringLiteral("4K")));
    tap(Select + 1); // the only source of this kind has no signal
    QCOMPARE(m_pRig->countNotices(QStringLiteral("status 2 3000 No matching input source found.")), 1);
    tap(Capacity);
    QVERIFY(console().waitLabel(Label + Capacity, QStringLiteral("SL")));
}

void TestLayerKeys::removeTakesTheSelectedLayersAndFreesTheirKeys()
{
    auto show = LayerScene::show({layerRecord(1), layerRecord(2), layerRecord(3)});
    show.devices[0].screens[0].pgm = {layerRecord(1)};
    load(show);
    control().selectLayers(m_device, Stage, SceneType::PGM, {1});
    const auto stage = screen();
    const auto control =
        ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, m_pRig->device(m_device));
    QVERIFY(control->setSelected(
        stage, {stage->PVWLayers(2)[0], stage->PVWLayers(2)[2]}, BizModel::SelectedType::Append, true));
    QVERIFY(keyShows(2, ECLEDColor::Green, QStringLiteral("Layer 3")));

    const LogCapture log;
    console().press(Remove);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Green));
    QVERIFY(console().settle());
    QCOMPARE(layerIds(), QList<quint32>({2}));
    QCOMPARE(layerIds(SceneType::PGM), QList<quint32>({1})); // not being edited
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QVERIFY(keyShows(1, ECLEDColor::Yellow, QStringLiteral("Layer 2")));
    QVERIFY(keyShows(2, ECLEDColor::Off, QString()));
    QVERIFY(log.contains(QStringLiteral("Add layer id list size:2")));
    QVERIFY(log.contains(QStringLiteral("Remove layer id list size:2")));
    QCOMPARE(log.count(QStringLiteral("layer is removing ... ")), 2);
    QCOMPARE(log.count(QStringLiteral("layer is removed ...")), 0); // the model's news came second
    console().release(Remove);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Off));

    // With the program being edited its layers go too; one that the model keeps keeps its key.
    this->control().setPGMEdit(m_device, Stage, true);
    this->control().selectLayers(m_device, Stage, SceneType::PGM, {1});
    tap(Remove);
    QCOMPARE(layerIds(SceneType::PGM), QList<quint32>());
    this->control().selectLayers(m_device, Stage, SceneType::PVW, {2});
    m_pRig->operations().fail(Operation::RemoveLayers, QStringLiteral("stuck"), Times::Once);
    tap(Remove);
    QVERIFY(log.contains(QStringLiteral(" Remove layer failed: layer id:2 errMsg:stuck")));
    QVERIFY(keyShows(1, ECLEDColor::Green, QStringLiteral("Layer 2")));
    // What failed was not removed by key: when the application does it, that is news.
    this->control().removeLayer(m_device, Stage, SceneType::PVW, 2);
    QVERIFY(log.waitFor(QStringLiteral("layer is removed ...")));
    QVERIFY(keyShows(1, ECLEDColor::Off, QString()));
}

void TestLayerKeys::removeIsRefused_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("log");
    const auto stateLog = QStringLiteral("remove layer failed, Screen state is %1");
    for (const State state : {State::Taking, State::Tbar_taking, State::Cut, State::MatchingPGM})
        QTest::addRow("state %d", int(state)) << int(state) << stateLog.arg(int(state));
    QTest::newRow("no device") << -1 << QStringLiteral("active device is nullptr.");
    QTest::newRow("no regular screen") << -2 << QStringLiteral("active reguler screen is nullptr.");
}

void TestLayerKeys::removeIsRefused()
{
    QFETCH(int, state);
    QFETCH(QString, log);
    auto layer = layerRecord(1);
    layer.selected = true;
    load({layer});
    const auto stage = screen();
    if (state == -1)
        control().activateDevice({});
    else if (state == -2)
        control().activateScreen(m_device, Confidence);
    else
        control().setScreenState(m_device, Stage, State(state));
    const LogCapture capture;
    console().press(Remove);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Green));
    QVERIFY(console().settle());
    QVERIFY2(capture.contains(log), qUtf8Printable(capture.all()));
    QCOMPARE(stage->layerCount(SceneType::PVW, BizModel::LayerType::AllLayerType), 1);
    QVERIFY(m_pRig->asked(Operation::RemoveLayers).isEmpty());
    console().release(Remove);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
}

void TestLayerKeys::keysThatAreReleasedEarlyDoNotDoWhatHoldingDoes()
{
    QElapsedTimer time;
    for (int attempt = 0; attempt < 3; ++attempt) {
        auto layer = layerRecord(2);
        layer.selected = true;
        load({layerRecord(1), layer, layerRecord(3)});
        time.start();
        for (const quint16 key : {Clear, ToFront, ToBack})
            console().press(key);
        QVERIFY(console().waitShows(ToBack, ECLEDColor::Green));
        QVERIFY(
            QTest::qWaitFor([&] { return time.elapsed() >= HoldMs - 100; }, HoldMs)); // the gesture itself
        console().release(Clear);
        console().release(ToFront);
        QVERIFY(console().settle());
        const auto stepped = layerIds();
        console().release(ToBack);
        QVERIFY(console().settle());
        if (time.elapsed() >= HoldMs)
            continue; // a machine this busy has held them to the end
        QCOMPARE(stepped, QList<quint32>({1, 3, 2}));
        QCOMPARE(layerIds(), QList<quint32>({1, 2, 3}));
        for (const quint16 key : {Clear, ToFront, ToBack})
            QVERIFY(console().waitShows(key, ECLEDColor::Off));
        // A release that had no press of its own moves nothing, nor does the end of the holds.
        console().release(ToFront);
        QVERIFY(QTest::qWaitFor([&] { return time.elapsed() >= HoldMs + 200; }, HoldMs));
        QCOMPARE(layerIds(), QList<quint32>({1, 2, 3}));
        for (const Operation held :
             {Operation::AsyncRemoveLayer, Operation::TopZOrder, Operation::BottomZOrder})
            QVERIFY(m_pRig->asked(held).isEmpty());
        return;
    }
    QSKIP("The machine is too busy to release a key in time.");
}

void TestLayerKeys::holdingClearsAndReordersAfterThreeSeconds()
{
    auto layer = layerRecord(1);
    layer.selected = true;
    load({layer, layerRecord(2), layerRecord(3)});
    QElapsedTimer time;
    time.start();
    console().press(ToFront);
    QVERIFY(m_pRig->waitAsked(Operation::TopZOrder, 1, HoldMs + 2000));
    QVERIFY(time.elapsed() >= HoldMs);
    console().press(ToBack);
    console().release(ToFront);
    QVERIFY(console().waitShows(ToFront, ECLEDColor::Off));
    QCOMPARE(layerIds(), QList<quint32>({2, 3, 1}));
    QVERIFY(m_pRig->asked(Operation::IncrZOrder).isEmpty());
    QTest::qWait(1000); // clearing must not come first
    console().press(Clear);

    QVERIFY(m_pRig->waitAsked(Operation::AsyncRemoveLayer, 1, HoldMs + 2000));
    QVERIFY(console().waitShows(Clear, ECLEDColor::Off)); // still held
    QVERIFY(m_pRig->waitNotice(QStringLiteral("hide")));
    QCOMPARE(m_pRig->countNotices(ClearDialog), 1);
    QCOMPARE(layerIds(), QList<quint32>());
    for (int index = 0; index < 3; ++index)
        QVERIFY(keyShows(index, ECLEDColor::Off, QString()));
    console().release(Clear);
    tap(ToBack);
    QCOMPARE(m_pRig->asked(Operation::BottomZOrder).size(), 1);
    QVERIFY(m_pRig->asked(Operation::DecrZOrder).isEmpty());
}

void TestLayerKeys::onTheScreenAQuestionClears()
{
    auto show = LayerScene::show({layerRecord(1)});
    show.devices[0].screens[0].pgm = {layerRecord(7)};
    show.devices[0].online = false;
    load(show);
    const LogCapture log;
    const auto pressClear = [&] {
        pressOnScreen(Clear);
        QVERIFY(console().waitShows(Clear, ECLEDColor::Green));
    };
    pressClear();
    QCOMPARE(m_pRig->countNotices(ClearQuestion), 1);
    control().answerMessageBox(QMessageBox::No);
    QVERIFY(console().waitShows(Clear, ECLEDColor::Off));
    // The answer to somebody else's question.
    control().answerMessageBox(QMessageBox::Yes);
    QVERIFY(m_pRig->asked(Operation::AsyncRemoveLayer).isEmpty());

    pressClear();
    m_pRig->operations().fail(Operation::AsyncRemoveLayer, QStringLiteral("ordered"), Times::Once);
    control().answerMessageBox(QMessageBox::Yes);
    QVERIFY(log.waitFor(QStringLiteral("Clear PVW Layers failed.")));
    QCOMPARE(m_pRig->countNotices(ClearDialog), 0); // offline
    QCOMPARE(layerIds(), QList<quint32>({1}));

    control().setPGMEdit(m_device, Stage, true);
    pressClear();
    QCOMPARE(m_pRig->countNotices(QStringLiteral("box 0 Do you want to remove all the layers from PGM?")), 1);
    control().answerMessageBox(QMessageBox::Yes);
    QTRY_COMPARE(layerIds(SceneType::PGM), QList<quint32>());
    QCOMPARE(layerIds(), QList<quint32>({1}));
    QVERIFY(console().waitShows(Clear, ECLEDColor::Off));
}

void TestLayerKeys::oneFullScreenPressFillsAnOutputTwoFillTheMosaic()
{
    auto touching = layerRecord(1, {100, 100});
    auto between = layerRecord(2, {1500, 0});
    touching.selected = between.selected = true;
    load({touching, between, layerRecord(3)});
    QVERIFY(console().waitLabel(Label + Full, QStringLiteral("Full screen")));
    console().press(Full);
    QVERIFY(console().waitShows(Full, ECLEDColor::Green));
    console().release(Full);
    QVERIFY(console().waitShows(Full, ECLEDColor::Off));
    QTRY_COMPARE(layers(), QStringList({"1@0,0 1920x1080", "2@0,0 3840x1080", "3@0,0 960x540"}));
    console().tap(Full);
    console().tap(Full);
    QTRY_COMPARE(layers(), QStringList({"1@0,0 3840x1080", "2@0,0 3840x1080", "3@0,0 960x540"}));
}

void TestLayerKeys::fullScreenWithoutResourcesIsRefused()
{
    auto layer = layerRecord(1, {100, 100});
    layer.selected = true;
    load({layer});
    const LogCapture log;
    m_pRig->operations().fail(Operation::CheckOperationResources, QStringLiteral("ordered"), Times::Once);
    tap(Full);
    QVERIFY(m_pRig->waitNotice(NoRoomNotice));
    QVERIFY(log.contains(QStringLiteral("Layer resource out, failed to full screen layer.")));
    QVERIFY(m_pRig->asked(Operation::UpdateWindow).isEmpty());
    m_pRig->operations().fail(Operation::UpdateWindow, QStringLiteral("ordered"), Times::Once);
    tap(Full);
    QVERIFY(log.waitFor(QStringLiteral("Send command to device failed, failed to expand layers.")));
    QCOMPARE(layers(), QStringList({"1@100,100 960x540"}));
}

void TestLayerKeys::keysFollowTheApplicationsOwnChanges()
{
    load({layerRecord(1), layerRecord(2)});
    const quint32 id = control().addLayer(m_device, Stage, SceneType::PVW, 2, QRect({0, 0}, SingleLink));
    QCOMPARE(id, 3u);
    QVERIFY(keyShows(2, ECLEDColor::Yellow, QStringLiteral("Layer 3")));
    control().renameLayer(m_device, Stage, SceneType::PVW, 3, QStringLiteral("Lower third"));
    QVERIFY(keyShows(2, ECLEDColor::Yellow, QStringLiteral("Lower third")));
    const LogCapture log;
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QVERIFY(log.contains(QStringLiteral("layer is removed ...")));
    // The others stay where the operator knows them to be.
    QVERIFY(keyShows(1, ECLEDColor::Yellow, QStringLiteral("Layer 2")));
    QVERIFY(keyShows(2, ECLEDColor::Yellow, QStringLiteral("Lower third")));
    control().addLayer(m_device, Stage, SceneType::PVW, 2, QRect({0, 0}, SingleLink));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));

    control().setPGMEdit(m_device, Stage, true);
    control().addLayer(m_device, Stage, SceneType::PGM, 2, QRect({0, 0}, SingleLink));
    control().removeLayer(m_device, Stage, SceneType::PGM, 1);
    QVERIFY(log.waitFor(QStringLiteral("Layer scene type is not PVW.  Type:2")));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
}

void TestLayerKeys::aTakeGivesTheKeysAnew()
{
    auto show = LayerScene::show({layerRecord(1), layerRecord(2), layerRecord(3)});
    show.devices[0].swap = true;
    show.devices[0].screens[0].pgm = {layerRecord(3), layerRecord(5)};
    load(show);
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    QVERIFY(keyShows(2, ECLEDColor::Yellow, QStringLiteral("Layer 3")));
    const LogCapture log;
    tap(Cut);
    QVERIFY(log.waitFor(QStringLiteral("preset consume time: end, Update LayerCommand Notify Timer end.")));
    QCOMPARE(layerIds(), QList<quint32>({3, 5}));
    // Layer 3 is another one than before; the keys begin again.
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 3")));
    QVERIFY(keyShows(1, ECLEDColor::Yellow, QStringLiteral("Layer 5")));
    QVERIFY(keyShows(2, ECLEDColor::Off, QString()));
}

void TestLayerKeys::theConsoleTurnsToTheSelectedLayer()
{
    load({layerRecord(1), layerRecord(2), layerRecord(3), layerRecord(4), layerRecord(5), layerRecord(6)});
    const auto page = [&](int number) {
        return console().waitLabel(Label + PageUp, QStringLiteral("Page %1").arg(number));
    };
    QVERIFY(page(1));
    control().selectLayers(m_device, Stage, SceneType::PVW, {6});
    QVERIFY(page(2));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 5")));
    QVERIFY(keyShows(1, ECLEDColor::Green, QStringLiteral("Layer 6")));
    QVERIFY(keyShows(2, ECLEDColor::Off, QString()));
    control().selectLayers(m_device, Stage, SceneType::PVW, {1, 6}); // layer 1 is the new one
    QVERIFY(page(1));
    QVERIFY(keyShows(0, ECLEDColor::Green, QStringLiteral("Layer 1")));
    tap(PageDown);
    QVERIFY(page(2));
    control().selectLayers(m_device, Stage, SceneType::PVW, {});
    QVERIFY(keyShows(1, ECLEDColor::Yellow, QStringLiteral("Layer 6")));
    QVERIFY(page(2));
    // A key's page is where its layer goes.
    tap(Select + 3);
    QVERIFY(keyShows(3, ECLEDColor::Yellow, QStringLiteral("Layer 7")));
    tap(PageUp);
    QVERIFY(keyShows(3, ECLEDColor::Yellow, QStringLiteral("Layer 4")));
}

void TestLayerKeys::eachScreenKeepsItsKeys()
{
    auto show = LayerScene::show();
    auto aux = layerRecord(1);
    aux.type = BizModel::LayerType::AUX;
    aux.name = QStringLiteral("Speaker");
    show.devices[0].screens[2].pvw = {aux}; // a screen with the same number as Stage
    load(show);
    tap(Select + 3);
    QVERIFY(keyShows(3, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    control().activateScreen(m_device, Confidence);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Speaker")));
    QVERIFY(keyShows(3, ECLEDColor::Off, QString()));
    control().activateScreen(m_device, Stage);
    QVERIFY(keyShows(3, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    control().removeScreen(m_device, Stage);
    control().activateScreen(m_device, Bare);
    QVERIFY(keyShows(3, ECLEDColor::Off, QString()));
}

void TestLayerKeys::aCreationExcludesARemovalAndCatchesUp()
{
    auto layer = layerRecord(1);
    layer.selected = true;
    load({layer});
    const LogCapture log;
    m_pRig->operations().delay(Operation::AddLayer, 800ms, Times::Once);
    console().press(Select + 2);
    QVERIFY(m_pRig->waitAsked(Operation::AddLayer, 1));
    pressOnScreen(Remove);
    QVERIFY(log.contains(QStringLiteral("Layer is created by key. Can not remove layer.")));
    pressOnScreen(Select + 3);
    QVERIFY(log.contains(QStringLiteral("Layer is created by key. Can not add layer ...")));
    control().addLayer(m_device, Stage, SceneType::PVW, 2, QRect({0, 0}, SingleLink));
    QVERIFY(log.contains(QStringLiteral("Layer is created by key. ignore this slot.")));
    control().selectLayers(m_device, Stage, SceneType::PVW, {2});
    QVERIFY(log.contains(QStringLiteral("Layer is created by key... ignore this slot")));
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    QVERIFY(log.contains(QStringLiteral("Layer is created by key... Can not remove layer keyboard command "
                                        "configs, layer id:1 layer name:Layer 1")));
    QVERIFY(console().settle());
    QCOMPARE(layerIds(), QList<quint32>({2, 1}));
    QVERIFY(keyShows(0, ECLEDColor::Green, QStringLiteral("Layer 2")));
    QVERIFY(keyShows(2, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    tap(Remove);
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
}

void TestLayerKeys::aRemovalExcludesACreationAndCatchesUp()
{
    auto layer = layerRecord(1);
    layer.selected = true;
    load({layer, layerRecord(2)});
    const LogCapture log;
    m_pRig->operations().delay(Operation::RemoveLayers, 800ms, Times::Once);
    console().press(Remove);
    QVERIFY(m_pRig->waitAsked(Operation::RemoveLayers, 1));
    pressOnScreen(Select + 3);
    QVERIFY(log.contains(QStringLiteral("Layer is removing ... Can not add layer ...")));
    control().selectLayers(m_device, Stage, SceneType::PVW, {1, 2});
    QVERIFY(log.contains(QStringLiteral("Layer is removing by key... ignore this slot")));
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    QVERIFY(log.contains(QStringLiteral("Layer is removing by key... Can not remove layer keyboard command "
                                        "configs, layer id:1 layer name:Layer 1")));
    QVERIFY(console().settle());
    QVERIFY(log.contains(QStringLiteral(" Remove layer failed: layer id:1 errMsg:")));
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QVERIFY(keyShows(1, ECLEDColor::Green, QStringLiteral("Layer 2")));
    tap(Select + 3);
    QVERIFY(keyShows(3, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
}

void TestLayerKeys::withoutADeviceTheKeysAreDark()
{
    load({layerRecord(1)});
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
    control().activateDevice({});
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
    control().activateDevice(m_device);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Layer 1")));
}

void TestLayerKeys::aClearingMayEndAfterTheConsole()
{
    load({layerRecord(1)});
    m_pRig->operations().delay(Operation::AsyncRemoveLayer, 300ms, Times::Once);
    pressOnScreen(Clear);
    control().answerMessageBox(QMessageBox::Yes);
    QVERIFY(m_pRig->waitAsked(Operation::AsyncRemoveLayer, 1));
    m_pRig->endConsole();
    QCOMPARE(m_pRig->countNotices(QStringLiteral("hide")), 0);
    QVERIFY(m_pRig->waitNotice(QStringLiteral("hide")));
}

QTEST_MAIN(TestLayerKeys)
#include "tst_layerkeys.moc"

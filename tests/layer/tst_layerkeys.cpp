#include "layerscene.h"
#include "logcapture.h"

#include "ecmanager.h"

#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

using namespace LayerScene;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using MemoryModel::ShowRecord;
using MemoryModel::Times;
using TestSupport::LogCapture;
using State = BizModel::Screen::State;
/// What an obstacle changes in the show.
using Change = std::function<void(ShowRecord&)>;

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(std::function<void()>)

namespace {

constexpr int HoldMs = 3000;
const QString NoRoomNotice = "status 1 3000 Not enough resources.";
const QString NoSourceNotice = "status 2 3000 No matching input source found.";
const QString ClearDialog = "wait Cleaning layers,please wait...";
const QString Hide = "hide";

/// Presses a key as the on-screen console does: on the GUI thread.
void pressOnScreen(quint16 ecKey)
{
    const quint32 key = Constants::VirtualKeyOffset + TestSupport::appNumber(ecKey);
    const QByteArray datagram = ConsolePanel::encodeUp(ConsolePanel::KeyReport{true, key}, 0);
    ECManager::instance()->upTLVDecodeFinished(ReportECButtonPressed, datagram.mid(ECValueOffset));
}

} // namespace

/// The stories of the layer group's keys, from the press to the model and back to the lights.
class TestLayerKeys : public TestSupport::ModelTest {
    Q_OBJECT

public:
    TestLayerKeys()
        : ModelTest(keyboard())
    {
    }

private Q_SLOTS:
    void init() { load(); }
    void cleanup() { m_rig.operations().clearAllOrders(); }

    void freeKeysMakeLayersOnTheNextOutputs()
    {
        // Of the two outputs, the right one comes first.
        QVERIFY(tap(Select + 2));
        QCOMPARE(layers(), QStringList("1@1920,0 960x540"));
        QTRY_COMPARE(keys(), QStringList({"off", "off", "yellow Layer 1", "off"}));
        QCOMPARE(sourceOfFirstLayer(), 2u);
        QCOMPARE(asked(Operation::AppendViewingScreen), 1);

        for (const quint32 index : {0u, 1u, 3u})
            QVERIFY(tap(Select + index));
        QCOMPARE(
            layers(),
            QStringList({"1@1920,0 960x540", "2@0,0 960x540", "3@1980,60 960x540", "4@60,60 960x540"}));
        // The keys that were pressed have the layers, not the first free ones.
        QTRY_COMPARE(
            keys(), QStringList({"yellow Layer 2", "yellow Layer 3", "yellow Layer 1", "yellow Layer 4"}));
    }

    void aRefusedLayerLeavesTheKeyFreeForTheNext_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("notice");
        const auto row = [](const char* name, const char* line, const QString& notice, const Change& change) {
            QTest::newRow(name) << change << QString(line) << notice;
        };
        const QString limit = "status 2 3000 The number of layers exceeds the limit.";
        const char* const limitLog = "can not add layer, layer number is bigger than the max.";
        row("no device", "Create layer failed: device is nullptr.", {},
            [](ShowRecord& show) { show.activeDevice.clear(); });
        row("no screen", "Create layer failed:screen is nullptr.", {},
            [](ShowRecord& show) { show.devices[0].activeScreen = {}; });
        row("an output is offline", "Create layer failed:layer key [20] pressed but screen is not Complete.",
            {}, [](ShowRecord& show) { show.devices[0].outputs[1].online = false; });
        row("AUX screen", "can not add layer, current Screen type is: 4", {},
            [](ShowRecord& show) { show.devices[0].activeScreen = Confidence; });
        row("no output", "can not add layer, current Screen output count is 0.", {},
            [](ShowRecord& show) { show.devices[0].activeScreen = Bare; });
        row("the device's limit", limitLog, limit,
            [](ShowRecord& show) { show.devices[0].limits.layers = 0; });
        row("the cards' capacity", limitLog, limit,
            [](ShowRecord& show) { show.devices[0].subcards[1].layerCapacity = 0; });
        row("no source", "can not add layer, Unable to find matching input source!", NoSourceNotice,
            [](ShowRecord& show) { show.devices[0].inputs.clear(); });
        row("the model refuses", "Create layer by drag failed: new layer is nullptr.", {},
            [this](ShowRecord&) { fail(Operation::AddLayer); });
    }
    void aRefusedLayerLeavesTheKeyFreeForTheNext()
    {
        QFETCH(Change, change);
        QFETCH(QString, line);
        QFETCH(QString, notice);
        auto show = LayerScene::show();
        change(show);
        load(show);
        const LogCapture log;
        QVERIFY(tap(Select));
        QVERIFY2(log.contains(line), qUtf8Printable(log.all()));
        const auto notices = m_rig.notices();
        QCOMPARE(notices.empty() ? QString() : notices.front().text, notice);
        QCOMPARE(keys(), QStringList({"off", "off", "off", "off"}));
        // Nothing of it is left behind.
        load();
        QVERIFY(tap(Select));
        QTRY_COMPARE(keys().first(), QString("yellow Layer 1"));
    }

    void theSearchWrapsToTheFirstOutput()
    {
        const LogCapture log;
        load({layerRecord(1, {1920, 0})});
        fail(Operation::CheckOperationResources);
        QVERIFY(tap(Select + 1));
        // One layer is there, so the search began at the left output, had no luck and went back to the right.
        QCOMPARE(layers().last(), QString("2@1980,60 960x540"));
        QCOMPARE(log.count("Layer resource out, failed to full screen layer."), 1);
        QCOMPARE(m_rig.countNotices(NoRoomNotice), 0);
    }

    void aFullScreenIsOutOfResourcesForHalfASecond()
    {
        fail(Operation::CheckOperationResources, Times::Always);
        qint64 lasted = 0;
        for (int attempt = 0; attempt < 10; ++attempt) { // a busy machine may notice the end late
            load();
            QElapsedTimer time;
            time.start();
            QVERIFY(tap(Select));
            QCOMPARE(screen()->state(), State::Resource_out);
            // The state is no obstacle, and another try does not make it last.
            QVERIFY(QTest::qWaitFor([&] { return time.elapsed() >= 450; }, 1000));
            QVERIFY(tap(Select));
            QCOMPARE(m_rig.countNotices(NoRoomNotice), 2);
            QTRY_COMPARE_WITH_TIMEOUT(screen()->state(), State::Normal, 2000);
            lasted = time.elapsed();
            QVERIFY2(lasted >= 500, qPrintable(QString::number(lasted)));
            if (lasted < 950)
                return;
        }
        QFAIL(qPrintable(QStringLiteral("out of resources for %1 ms").arg(lasted)));
    }

    void theCapacityKeyChoosesTheSource()
    {
        QVERIFY(console().waitLabel(Label + Capacity, "SL"));
        console().press(Capacity);
        QVERIFY(console().waitShows(Capacity, ECLEDColor::Green));
        QVERIFY(console().waitLabel(Label + Capacity, "DL"));
        console().release(Capacity);
        QVERIFY(console().waitShows(Capacity, ECLEDColor::Off));
        QVERIFY(tap(Select));
        QCOMPARE(sourceOfFirstLayer(), 4u);

        QVERIFY(tap(Capacity));
        QVERIFY(console().waitLabel(Label + Capacity, "4K"));
        QVERIFY(tap(Select + 1)); // the only source of this kind has no signal
        QCOMPARE(m_rig.countNotices(NoSourceNotice), 1);
        QVERIFY(tap(Capacity));
        QVERIFY(console().waitLabel(Label + Capacity, "SL"));
    }

    void removeTakesTheSelectedLayersAndFreesTheirKeys()
    {
        auto show = LayerScene::show({layerRecord(1), layerRecord(2), layerRecord(3)});
        show.devices[0].screens[0].pgm = {selectedLayer(1)};
        load(show);
        const auto stage = screen();
        const auto control =
            ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, m_rig.device(m_device));
        QVERIFY(control->setSelected(
            stage, {stage->PVWLayers(2)[0], stage->PVWLayers(2)[2]}, BizModel::SelectedType::Append, true));
        QTRY_COMPARE(keys(), QStringList({"green Layer 1", "yellow Layer 2", "green Layer 3", "off"}));

        const LogCapture log;
        console().press(Remove);
        QVERIFY(console().waitShows(Remove, ECLEDColor::Green));
        QVERIFY(console().settle());
        QCOMPARE(layerIds(), QString("2"));
        QCOMPARE(layerIds(SceneType::PGM), QString("1")); // not being edited
        QTRY_COMPARE(keys(), QStringList({"off", "yellow Layer 2", "off", "off"}));
        QVERIFY(!log.contains("layer is removed ...")); // the model's news came second
        console().release(Remove);
        QVERIFY(console().waitShows(Remove, ECLEDColor::Off));

        // With the program being edited its layers go too; one that the model keeps keeps its key.
        this->control().setPGMEdit(m_device, Stage, true);
        this->control().selectLayers(m_device, Stage, SceneType::PGM, {1});
        QVERIFY(tap(Remove));
        QCOMPARE(layerIds(SceneType::PGM), QString());
        select({2});
        fail(Operation::RemoveLayers);
        QVERIFY(tap(Remove));
        QVERIFY(log.contains(" Remove layer failed: layer id:2 errMsg:ordered"));
        QTRY_COMPARE(keys()[1], QString("green Layer 2"));
        // What failed was not removed by key: when the application does it, that is news.
        remove(2);
        QVERIFY(log.waitFor("layer is removed ..."));
        QTRY_COMPARE(keys()[1], QString("off"));
    }

    void removeIsRefused_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("line");
        for (const State state : {State::Taking, State::Tbar_taking, State::Cut, State::MatchingPGM})
            QTest::addRow("state %d", int(state))
                << int(state) << QStringLiteral("remove layer failed, Screen state is %1").arg(int(state));
        QTest::newRow("no device") << -1 << "active device is nullptr.";
        QTest::newRow("no regular screen") << -2 << "active reguler screen is nullptr.";
    }
    void removeIsRefused()
    {
        QFETCH(int, state);
        QFETCH(QString, line);
        load({selectedLayer(1)});
        if (state == -1)
            control().activateDevice({});
        else if (state == -2)
            control().activateScreen(m_device, Confidence);
        else
            control().setScreenState(m_device, Stage, State(state));
        const LogCapture log;
        QVERIFY(tap(Remove));
        QVERIFY2(log.contains(line), qUtf8Printable(log.all()));
        QCOMPARE(layerIds(), QString("1"));
        QVERIFY(console().shows(Remove, ECLEDColor::Off));
    }

    void keysThatAreReleasedEarlyDoNotDoWhatHoldingDoes()
    {
        load({layerRecord(1), selectedLayer(2), layerRecord(3)});
        for (const quint16 key : {Clear, ToFront, ToBack})
            console().press(key);
        console().release(Clear);
        console().release(ToFront);
        QVERIFY(console().settle());
        QCOMPARE(layerIds(), QString("1 3 2"));
        QVERIFY(console().shows(ToBack, ECLEDColor::Green));
        console().release(ToBack);
        QVERIFY(tap(ToFront) && tap(ToBack));
        console().release(ToFront); // without a press of its own it moves nothing
        QVERIFY(console().settle());
        for (const quint16 key : {Clear, ToFront, ToBack})
            QVERIFY(console().shows(key, ECLEDColor::Off));
        QTest::qWait(HoldMs + 200); // nor does the end of the holds
        QCOMPARE(layerIds(), QString("1 2 3"));
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);
        QCOMPARE(asked(Operation::TopZOrder) + asked(Operation::BottomZOrder), 0);
    }

    void heldKeysReleasedUnderTheKeypadLockEndWithItWithoutActing()
    {
        load({selectedLayer(1), layerRecord(2), layerRecord(3)});
        for (const quint16 key : {Clear, ToFront, ToBack})
            console().press(key);
        QVERIFY(console().settle());
        ECManager::instance()->lockKeypad();
        for (const quint16 key : {Clear, ToFront, ToBack})
            console().release(key);
        QVERIFY(console().settle());
        QVERIFY(console().shows(Clear, ECLEDColor::Green));
        ECManager::instance()->unlockKeypad();
        for (const quint16 key : {Clear, ToFront, ToBack})
            QVERIFY(console().waitShows(key, ECLEDColor::Off));
        QTest::qWait(HoldMs + 200); // the end of the holds
        QCOMPARE(layerIds(), QString("1 2 3"));
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);
        for (const Operation operation :
             {Operation::TopZOrder, Operation::BottomZOrder, Operation::IncrZOrder, Operation::DecrZOrder})
            QCOMPARE(asked(operation), 0);
    }

    void holdingClearsAndReordersAfterThreeSeconds()
    {
        load({selectedLayer(1), layerRecord(2), layerRecord(3)});
        QElapsedTimer time;
        time.start();
        console().press(ToFront);
        QVERIFY(m_rig.waitAsked(Operation::TopZOrder, 1, HoldMs + 2000));
        QVERIFY(time.elapsed() >= HoldMs);
        console().press(ToBack);
        console().release(ToFront);
        QVERIFY(console().waitShows(ToFront, ECLEDColor::Off));
        QCOMPARE(layerIds(), QString("2 3 1"));
        QCOMPARE(asked(Operation::IncrZOrder), 0);
        QTest::qWait(1000); // clearing must not come first
        time.start();
        console().press(Clear);
        QVERIFY(m_rig.waitAsked(Operation::AsyncRemoveLayer, 1, HoldMs + 2000));
        QVERIFY(time.elapsed() >= HoldMs);
        QVERIFY(console().waitShows(Clear, ECLEDColor::Off)); // still held
        QVERIFY(m_rig.waitNotice(Hide));
        QCOMPARE(m_rig.countNotices(ClearDialog), 1);
        QCOMPARE(layerIds(), QString());
        QTRY_COMPARE(keys(), QStringList({"off", "off", "off", "off"}));
        console().release(Clear);
        console().release(ToBack);
        QVERIFY(console().settle());
        QCOMPARE(asked(Operation::BottomZOrder), 1);
        QCOMPARE(asked(Operation::DecrZOrder), 0);
    }

    void onTheScreenAQuestionClears()
    {
        auto show = LayerScene::show({layerRecord(1)});
        show.devices[0].screens[0].pgm = {layerRecord(7)};
        show.devices[0].online = false;
        load(show);
        const LogCapture log;
        pressOnScreen(Clear);
        QVERIFY(console().waitShows(Clear, ECLEDColor::Green));
        QCOMPARE(m_rig.countNotices("box 0 Do you want to remove all the layers from PVW?"), 1);
        control().answerMessageBox(QMessageBox::No);
        QVERIFY(console().waitShows(Clear, ECLEDColor::Off));
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);

        // The No has left the question open: the Yes to whatever is asked next counts for it.
        fail(Operation::AsyncRemoveLayer);
        control().answerMessageBox(QMessageBox::Yes);
        QVERIFY(log.waitFor("Clear PVW Layers failed."));
        QVERIFY(log.contains("Clear layers: the device is offline and may not carry it out."));
        control().answerMessageBox(QMessageBox::Yes);
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 1);
        QCOMPARE(m_rig.countNotices(ClearDialog), 0); // offline
        QCOMPARE(layerIds(), QString("1"));

        control().setPGMEdit(m_device, Stage, true);
        pressOnScreen(Clear);
        QCOMPARE(m_rig.countNotices("box 0 Do you want to remove all the layers from PGM?"), 1);
        control().answerMessageBox(QMessageBox::Yes);
        QTRY_COMPARE(layerIds(SceneType::PGM), QString());
        QCOMPARE(layerIds(), QString("1"));
        QVERIFY(console().waitShows(Clear, ECLEDColor::Off));
    }

    void aYesClearsWhatTheQuestionWasAbout()
    {
        auto show = LayerScene::show({layerRecord(1)});
        show.devices[0].screens[1].pvw = {layerRecord(7)};
        load(show);
        pressOnScreen(Clear);
        control().setPGMEdit(m_device, Stage, true);
        control().activateScreen(m_device, Bare);
        control().answerMessageBox(QMessageBox::Yes);
        QTRY_COMPARE(layerIds(), QString());
        QCOMPARE(m_rig.screen(m_device, Bare)->PVWLayers(2).size(), 1);

        const LogCapture log;
        pressOnScreen(Clear);
        control().removeScreen(m_device, Bare);
        m_rig.forget();
        control().answerMessageBox(QMessageBox::Yes);
        QVERIFY(log.contains("Clear layers failed: the screen that the question was about is gone."));
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);
    }

    void aHeldKeyEndsWithItsScreenOrItsLight_data()
    {
        QTest::addColumn<std::function<void()>>("leave");
        const auto row = [](const char* name, const std::function<void()>& leave) {
            QTest::newRow(name) << leave;
        };
        row("another screen", [this] { control().activateScreen(m_device, Confidence); });
        row("another device", [this] { control().activateDevice(otherDevice()); });
        row("the screen is removed", [this] { control().removeScreen(m_device, Stage); });
        row("an upgrade", [this] { control().setUpgrading(m_device, true); });
        row("a repaint", [this] { control().setGroup(otherDevice(), "2"); });
    }
    void aHeldKeyEndsWithItsScreenOrItsLight()
    {
        QFETCH(std::function<void()>, leave);
        auto show = twoDevices({selectedLayer(1), layerRecord(2)});
        show.devices[0].screens[2].pvw = {selectedLayer(3)};
        show.devices[0].screens[2].pvw[0].type = BizModel::LayerType::AUX;
        load(show);
        const LogCapture log;
        for (const quint16 key : {Clear, ToFront, ToBack})
            console().press(key);
        QVERIFY(console().settle());
        leave();
        for (const char* hold :
             {"Clear layers ended: ", "Layers to the front ended: ", "Layers to the back ended: "})
            QVERIFY2(log.waitFor(hold, HoldMs + 2000), qUtf8Printable(log.all()));
        for (const quint16 key : {Clear, ToFront, ToBack}) {
            QVERIFY(console().waitShows(key, ECLEDColor::Off));
            console().release(key);
        }
        QVERIFY(console().settle());
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);
        for (const Operation operation :
             {Operation::TopZOrder, Operation::BottomZOrder, Operation::IncrZOrder, Operation::DecrZOrder})
            QCOMPARE(asked(operation), 0);
    }

    void anAnswerThatDarkensTheHeldClearKeyEndsItsHold()
    {
        load({layerRecord(1)});
        console().press(Clear);
        QVERIFY(console().waitShows(Clear, ECLEDColor::Green));
        control().answerMessageBox(QMessageBox::No); // to somebody's question
        QVERIFY(console().waitShows(Clear, ECLEDColor::Off));
        QTest::qWait(HoldMs + 200); // the end of the hold
        QCOMPARE(asked(Operation::AsyncRemoveLayer), 0);
        console().release(Clear);
        QVERIFY(console().settle());
    }

    void bothKeysOfAFunctionAreDarkenedAndLabelled()
    {
        pressOnScreen(OtherClear);
        QVERIFY(console().waitShows(OtherClear, ECLEDColor::Green));
        control().answerMessageBox(QMessageBox::No);
        QVERIFY(console().waitShows(OtherClear, ECLEDColor::Off));
        QVERIFY(tap(Capacity) && tap(OtherCapacity));
        for (const quint16 key : {Capacity, OtherCapacity})
            QVERIFY(console().waitLabel(quint16(Label + key), "4K"));
        QVERIFY(tap(Capacity));
    }

    void fullScreenTakesEverySelectedLayerUnlessRefused()
    {
        load({selectedLayer(1, {100, 100}), selectedLayer(2, {1500, 0}), layerRecord(3)});
        const LogCapture log;
        fail(Operation::CheckOperationResources);
        QVERIFY(tap(Full));
        QVERIFY(m_rig.waitNotice(NoRoomNotice));
        QVERIFY(log.contains("Layer resource out, failed to full screen layer."));
        QCOMPARE(asked(Operation::UpdateWindow), 0);
        fail(Operation::UpdateWindow);
        QVERIFY(tap(Full));
        QVERIFY(log.waitFor("Send command to device failed, failed to expand layers."));
        QCOMPARE(layers().first(), QString("1@100,100 960x540"));

        QVERIFY(console().waitLabel(Label + Full, "Full screen"));
        console().press(Full);
        QVERIFY(console().waitShows(Full, ECLEDColor::Green));
        console().release(Full);
        QVERIFY(console().waitShows(Full, ECLEDColor::Off));
        QTRY_COMPARE(layers(), QStringList({"1@0,0 1920x1080", "2@0,0 3840x1080", "3@0,0 960x540"}));
    }

    void keysFollowTheApplicationsOwnChanges()
    {
        load({layerRecord(1), layerRecord(2)});
        QCOMPARE(add(), 3u);
        QTRY_COMPARE(keys(), QStringList({"yellow Layer 1", "yellow Layer 2", "yellow Layer 3", "off"}));
        control().renameLayer(m_device, Stage, SceneType::PVW, 3, "Lower third");
        // The others stay where the operator knows them to be.
        remove(1);
        QTRY_COMPARE(keys(), QStringList({"off", "yellow Layer 2", "yellow Lower third", "off"}));
        add();
        QTRY_COMPARE(keys().first(), QString("yellow Layer 1"));

        const LogCapture log;
        control().setPGMEdit(m_device, Stage, true);
        add(SceneType::PGM);
        remove(1, SceneType::PGM);
        QVERIFY(log.waitFor("Layer scene type is not PVW.  Type:2"));
        QTRY_COMPARE(keys().first(), QString("yellow Layer 1"));
    }

    void layersThatGoTogetherAreLoggedEach()
    {
        load({layerRecord(1), layerRecord(2), layerRecord(3)});
        const LogCapture log;
        const auto control =
            ModelControl::Device::screenModelControl(ScreenType::RegularScreen, m_rig.device(m_device));
        auto gone = screen()->PVWLayers(2);
        gone.removeLast();
        QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
        control->removeLayers(screen(), gone, failed);
        QTRY_COMPARE(keys(), QStringList({"off", "off", "yellow Layer 3", "off"}));
        QCOMPARE(log.count("layer is removed ..."), 2);
    }

    void aTakeGivesTheKeysAnew()
    {
        auto show = LayerScene::show({layerRecord(1), layerRecord(2), layerRecord(3)});
        show.devices[0].swap = true;
        show.devices[0].screens[0].pgm = {layerRecord(3), layerRecord(5)};
        load(show);
        remove(1);
        QTRY_COMPARE(keys(), QStringList({"off", "yellow Layer 2", "yellow Layer 3", "off"}));
        const LogCapture log;
        QVERIFY(tap(Cut));
        QVERIFY(log.waitFor("preset consume time: end, Update LayerCommand Notify Timer end."));
        QCOMPARE(layerIds(), QString("3 5"));
        // Layer 3 is another one than before; the keys begin again.
        QTRY_COMPARE(keys(), QStringList({"yellow Layer 3", "yellow Layer 5", "off", "off"}));
    }

    void theConsoleTurnsToTheSelectedLayer()
    {
        load(
            {layerRecord(1), layerRecord(2), layerRecord(3), layerRecord(4), layerRecord(5), layerRecord(6)});
        const auto page = [&] { return console().label(Label + PageUp); };
        QTRY_COMPARE(page(), QString("Page 1"));
        select({6});
        QTRY_COMPARE(keys(), QStringList({"yellow Layer 5", "green Layer 6", "off", "off"}));
        QCOMPARE(page(), QString("Page 2"));
        select({1, 6}); // layer 1 is the new one
        QTRY_COMPARE(page(), QString("Page 1"));
        QTRY_COMPARE(keys().first(), QString("green Layer 1"));
        QVERIFY(tap(PageDown));
        select({});
        QTRY_COMPARE(keys()[1], QString("yellow Layer 6"));
        QCOMPARE(page(), QString("Page 2"));
        // A key's page is where its layer goes.
        QVERIFY(tap(Select + 3));
        QTRY_COMPARE(keys()[3], QString("yellow Layer 7"));
        QVERIFY(tap(PageUp));
        QTRY_COMPARE(keys()[3], QString("yellow Layer 4"));
    }

    void aRemovalOrACutDoesNotTurnThePage()
    {
        load(
            {selectedLayer(1), layerRecord(2), layerRecord(3), layerRecord(4), layerRecord(5),
             selectedLayer(6)});
        QVERIFY(tap(PageDown));
        QVERIFY(console().waitLabel(Label + PageUp, "Page 2"));
        remove(6);
        QTRY_COMPARE(keys()[1], QString("off"));
        QCOMPARE(console().label(Label + PageUp), QString("Page 2"));
        const LogCapture log;
        QVERIFY(tap(Cut));
        QVERIFY(log.waitFor("preset consume time: end, Update LayerCommand Notify Timer end."));
        QVERIFY(console().settle());
        QCOMPARE(console().label(Label + PageUp), QString("Page 2"));
    }

    void afterATakeThePageFollowsTheSelectionThatItShowed()
    {
        load(
            {layerRecord(1), layerRecord(2), layerRecord(3), layerRecord(4), layerRecord(5), layerRecord(6)});
        select({6});
        QVERIFY(console().waitLabel(Label + PageUp, "Page 2"));
        for (quint32 id = 1; id <= 5; ++id)
            remove(id);
        QTRY_COMPARE(keys(), QStringList({"off", "green Layer 6", "off", "off"}));
        QVERIFY(tap(Cut));
        QTRY_COMPARE(keys(), QStringList({"green Layer 6", "off", "off", "off"}));
        QCOMPARE(console().label(Label + PageUp), QString("Page 1"));
    }

    void newsOfAnotherDeviceDoNotTurnThePage()
    {
        load(twoDevices({layerRecord(1)}));
        QVERIFY(tap(PageDown));
        QVERIFY(console().waitLabel(Label + PageUp, "Page 2"));
        control().setGroup(otherDevice(), "2");
        QVERIFY(console().settle());
        QCOMPARE(console().label(Label + PageUp), QString("Page 2"));
        control().activateDevice(otherDevice());
        QVERIFY(console().waitLabel(Label + PageUp, "Page 1"));
        QVERIFY(tap(PageDown));
        control().removeDevice(m_device);
        QVERIFY(console().settle());
        QCOMPARE(console().label(Label + PageUp), QString("Page 2"));
    }

    void aPageKeyReleasedUnderADialogTurnsThePage()
    {
        load({layerRecord(1)});
        console().press(PageDown);
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Green));
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitFor([] { return QApplication::activeModalWidget() != nullptr; }));
        console().release(PageDown);
        QVERIFY(console().waitLabel(Label + PageUp, "Page 2"));
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Off));
    }

    void eachScreenKeepsItsKeys()
    {
        auto show = LayerScene::show();
        auto aux = layerRecord(1);
        aux.type = BizModel::LayerType::AUX;
        aux.name = "Speaker";
        show.devices[0].screens[2].pvw = {aux}; // a screen with the same number as Stage
        load(show);
        QVERIFY(tap(Select + 3));
        const QStringList own{"off", "off", "off", "yellow Layer 1"};
        const QStringList none{"off", "off", "off", "off"};
        QTRY_COMPARE(keys(), own);
        control().activateScreen(m_device, Confidence);
        QTRY_COMPARE(keys(), QStringList({"yellow Speaker", "off", "off", "off"}));
        control().activateDevice({});
        QTRY_COMPARE(keys(), none);
        QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
        control().activateDevice(m_device);
        control().activateScreen(m_device, Stage);
        QTRY_COMPARE(keys(), own);
        control().removeScreen(m_device, Stage);
        control().activateScreen(m_device, Bare);
        QTRY_COMPARE(keys(), none);
    }

    void aCreationExcludesARemovalAndCatchesUp()
    {
        load({selectedLayer(1)});
        const LogCapture log;
        m_rig.operations().delay(Operation::AddLayer, 800ms, Times::Once);
        console().press(Select + 2);
        QVERIFY(m_rig.waitAsked(Operation::AddLayer, 1));
        pressOnScreen(Remove);
        QVERIFY(log.contains("Layer is created by key. Can not remove layer."));
        pressOnScreen(Select + 3);
        QVERIFY(log.contains("Layer is created by key. Can not add layer ..."));
        add();
        QVERIFY(log.contains("Layer is created by key. ignore this slot."));
        // What is refused does not repaint in the middle of the creation.
        pressOnScreen(Remove);
        QCOMPARE(keys()[1], QString("off"));
        select({2});
        QVERIFY(log.contains("Layer is created by key... ignore this slot"));
        remove(1);
        QVERIFY(log.contains("Layer is created by key... Can not remove layer keyboard command configs"));
        QVERIFY(console().settle());
        QCOMPARE(layerIds(), QString("2 1"));
        QTRY_COMPARE(keys(), QStringList({"green Layer 2", "off", "yellow Layer 1", "off"}));
        QVERIFY(tap(Remove));
        QTRY_COMPARE(keys().first(), QString("off"));
    }

    void aRemovalExcludesACreationAndCatchesUp()
    {
        load({selectedLayer(1), layerRecord(2)});
        const LogCapture log;
        m_rig.operations().delay(Operation::RemoveLayers, 800ms, Times::Once);
        console().press(Remove);
        QVERIFY(m_rig.waitAsked(Operation::RemoveLayers, 1));
        pressOnScreen(Select + 3);
        QVERIFY(log.contains("Layer is removing ... Can not add layer ..."));
        select({1, 2});
        QVERIFY(log.contains("Layer is removing by key... ignore this slot"));
        remove(1);
        QVERIFY(log.contains("Layer is removing by key... Can not remove layer keyboard command configs"));
        QVERIFY(console().settle());
        QVERIFY(log.contains(" Remove layer failed: layer id:1 errMsg:"));
        QTRY_COMPARE(keys(), QStringList({"off", "green Layer 2", "off", "off"}));
        QVERIFY(tap(Select + 3));
        QTRY_COMPARE(keys()[3], QString("yellow Layer 1"));
    }

    void aClearingMayEndAfterTheConsole()
    {
        load({layerRecord(1)});
        m_rig.operations().delay(Operation::AsyncRemoveLayer, 300ms, Times::Once);
        pressOnScreen(Clear);
        control().answerMessageBox(QMessageBox::Yes);
        QVERIFY(m_rig.waitAsked(Operation::AsyncRemoveLayer, 1));
        m_rig.endConsole();
        QCOMPARE(m_rig.countNotices(Hide), 0);
        QVERIFY(m_rig.waitNotice(Hide));
    }

private:
    void load(const MemoryModel::LayerRecords& preview = {}) { load(LayerScene::show(preview)); }
    void load(const ShowRecord& show)
    {
        m_device = show.devices[0].ipMacSn;
        QVERIFY(m_rig.load(show));
        m_rig.forget();
    }
    /// The show of `load` and a second device with the same screens.
    static ShowRecord twoDevices(const MemoryModel::LayerRecords& preview)
    {
        auto show = LayerScene::show(preview);
        show.devices.append(show.devices[0]);
        show.devices[1].ipMacSn += " other";
        return show;
    }
    QString otherDevice() const { return m_device + " other"; }
    std::shared_ptr<BizModel::Screen> screen() { return m_rig.screen(m_device, Stage); }
    /// "id@x,y wxh" of each layer, from the bottom to the top.
    QStringList layers(SceneType scene = SceneType::PVW)
    {
        QStringList texts;
        const auto weakLayers = screen()->layers(scene, BizModel::LayerType::AllLayerType);
        for (const auto& weakLayer : weakLayers) {
            const auto layer = weakLayer.lock();
            const QRect window = layer->windowRect();
            texts.append(QString::asprintf(
                "%u@%d,%d %dx%d", layer->layerId(), window.x(), window.y(), window.width(), window.height()));
        }
        return texts;
    }
    QString layerIds(SceneType scene = SceneType::PVW)
    {
        return layers(scene).replaceInStrings(QRegularExpression("@.*"), QString()).join(' ');
    }
    quint32 sourceOfFirstLayer() { return screen()->PVWLayers(2).first().lock()->sourceId(); }
    int asked(Operation operation) { return m_rig.asked(operation).size(); }
    QStringList keys() { return console().faces(Select, Label + Select, SelectCount); }

    // What the application does to the preview.

    void select(const QList<quint32>& ids) { control().selectLayers(m_device, Stage, SceneType::PVW, ids); }
    quint32 add(SceneType scene = SceneType::PVW)
    {
        return control().addLayer(m_device, Stage, scene, 2, QRect({0, 0}, SingleLink));
    }
    void remove(quint32 id, SceneType scene = SceneType::PVW)
    {
        control().removeLayer(m_device, Stage, scene, id);
    }

    QString m_device;
};

QTEST_MAIN(TestLayerKeys)
#include "tst_layerkeys.moc"

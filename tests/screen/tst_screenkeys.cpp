#include "ecconsolemanager.h"
#include "logcapture.h"
#include "memorydevicelist.h"
#include "requestgate.h"
#include "screenscene.h"

#include <QDialog>

#include <thread>
#include <tuple>

using namespace ScreenScene;
using namespace std::chrono_literals;
using TestSupport::LogCapture;

namespace {

const QString TakingNotice = "status 1 3000 Taking,please wait...";
const QString TakeDialog = "wait Taking,please wait...";
const QString AddDialog = "wait Adding screen,please wait...";
const QString Hide = "hide";

} // namespace

/// The stories of the screen group's keys, from the press to the model and back to the lights.
class TestScreenKeys : public ScreenTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_pGate = std::make_unique<RequestGate>(); }
    void init() { start(); }
    void cleanup() { m_pGate->open(); }

    void theKeysShowTheActiveDevice()
    {
        QCOMPARE(keys(), QStringList({"green Stage", "yellow Side", "yellow Confidence", "off"}));
        const QStringList others{"off Page 1", "off",        "off",     "off", "off", "off",
                                 "off",        "green Fade", "off 0.1", "off", "off", "off 0.1"};
        QCOMPARE(otherKeys(), others);
    }

    void withoutADeviceEveryKeyIsDarkAndRefuses()
    {
        QVERIFY(control().activateDevice({}));
        QCOMPARE(keys(), QStringList({"off", "off", "off", "off"}));
        const std::pair<quint16, const char*> refusals[] = {
            {Select, "Actived device is nullptr"},
            {Take, "Take operator error: active device is nullptr."},
            {Cut, "Take operator error: active device is nullptr."},
            {Match, "matchPGM operator error: active device is nullptr."},
            {Freeze, "Freeze PGM failed:The device is null."},
            {FTB, "FTB PGM failed:The device is null."},
            {TimeUp, "Effect time error: No active device!"},
            {Mix, "Mix type error: No active screen!"},
            {TimeDown, "Effect time error: No active device!"}};
        for (const auto& [key, line] : refusals)
            QVERIFY2(isRefused(key, line), line);
        QCOMPARE(otherKeys().filter("off").size(), 12);
        QCOMPARE(otherKeys().last(), QString("off"));
        QCOMPARE(console().label(Label + TimeUp), QString());
    }

    void withoutAnActiveScreenTheTransitionHasNoTime()
    {
        auto record = show();
        record.devices[0].activeScreen = {};
        start(record);
        QVERIFY(isRefused(Take, "Take operator error: active screen is nullptr."));
        QVERIFY(isRefused(TimeDown, "Effect time error: No active screen!"));
        QVERIFY(console().label(Label + TimeUp).isEmpty() && console().label(Label + TimeDown).isEmpty());
        QVERIFY(m_rig.asked(Operation::ParallelTakeScreen).isEmpty());
        QVERIFY(m_rig.asked(Operation::UpdateEffectSpeed).isEmpty());
    }

    void withOneScreenAtATimeAKeyMovesTheSelection()
    {
        QVERIFY(control().setMultiScreens(A, false));
        QVERIFY(tap(Select + 2));
        QTRY_COMPARE(keys(), QStringList({"yellow Stage", "yellow Side", "green Confidence", "off"}));
        QCOMPARE(m_rig.device(A)->activedScreen().lock(), screen(Confidence));
    }

    void screenKeysWaitForATransition()
    {
        for (const State state : {State::Taking, State::Tbar_taking, State::Cut}) {
            QVERIFY(control().setScreenState(A, Confidence, state));
            QVERIFY(tap(Select + 1));
            QVERIFY2(!screen(Side)->selected(), qPrintable(QString::number(state)));
        }
        QCOMPARE(m_rig.countNotices(TakingNotice), 3);
        // Other states are no obstacle.
        for (const State state : {State::Resource_out, State::MatchingPGM}) {
            QVERIFY(control().setScreenState(A, Confidence, state));
            QVERIFY(tap(Select + 1));
            QCOMPARE(screen(Side)->selected(), state == State::Resource_out);
        }
    }

    void anUnboundKeyMakesAScreenThatLandsOnIt()
    {
        QVERIFY(control().setOnline(A, false)); // so that no dialog is shown
        QVERIFY(tap(PageDown));
        QVERIFY(tap(Select + 2));
        QVERIFY(m_rig.waitNotice(Hide));
        QCOMPARE(m_rig.countNotices(AddDialog), 0);
        const auto made = m_rig.device(A)->activedScreen().lock();
        QTRY_COMPARE(keys(), QStringList({"off", "off", "yellow " + made->name(), "off"}));
        QCOMPARE(made->uiScreenIndex(), SelectCount + 2);
        QCOMPARE(made->outputs().size(), 1);
        // It is an ordinary screen from now on.
        QVERIFY(tap(Select + 2));
        QVERIFY(console().waitShows(Select + 2, ECLEDColor::Green));
        QCOMPARE(m_rig.asked(Operation::AsyncCreateScreen).size(), 1);
    }

    void oneScreenIsMadeAtATimeAndItsKeyIsKept()
    {
        m_rig.hold(Operation::AsyncCreateScreen);
        QVERIFY(tap(Select + 3));
        QVERIFY(isRefused(Select + 3, " Screen is creating ..."));
        // Another screen that comes meanwhile does not get the key, though it is the lowest free one.
        const ScreenKey other = control().addScreen(A, ScreenType::AUXScreen);
        QVERIFY(console().shows(Select + 3, ECLEDColor::Off));
        m_rig.letGo();
        QVERIFY(m_rig.waitNotice(Hide));
        QCOMPARE(m_rig.asked(Operation::AsyncCreateScreen).size(), 1);
        const auto made = m_rig.device(A)->activedScreen().lock();
        QTRY_COMPARE(keys().last(), "yellow " + made->name());
        QVERIFY(tap(PageDown));
        QTRY_COMPARE(keys().first(), "yellow " + screen(other)->name());
    }

    void aDeviceThatMadeNoScreenMayBeAskedAgain()
    {
        fail(Operation::CreateDefaultScreen);
        QVERIFY(isRefused(Select + 3, "Create default screen is nullptr"));
        QCOMPARE(m_rig.countNotices(Hide), 1);
        QVERIFY(tap(Select + 3));
        QVERIFY(console().waitShows(Select + 3, ECLEDColor::Yellow));
    }

    void aDeviceThatGoesLeavesNoBindingOfItsScreens()
    {
        m_rig.hold(Operation::AsyncCreateScreen);
        const LogCapture log;
        QVERIFY(tap(Select + 3));
        const QString ip = m_rig.device(A)->ipMacSn();
        const auto hasItems = [&ip] {
            return ECConsoleManager::instance()->findEcCommandItem(ip, KeyboardType::Screen, 0, 0) != nullptr;
        };
        QVERIFY(hasItems());
        QVERIFY(control().removeDevice(A));
        QVERIFY(!hasItems());
        QVERIFY(console().shows(Select, ECLEDColor::Off));
        m_rig.letGo();
        QVERIFY(log.waitFor("Crate reguler screen has failed."));
        QVERIFY(log.waitFor("Failed to unbind，Device:A,pRegulerScreen:"));
        QVERIFY(m_rig.waitNotice(Hide));
    }

    void aScreenThatIsNotAnnouncedYetIsFoundByItsKey()
    {
        // While the GUI thread is busy with this function, the news of the screen cannot get through.
        std::thread([&] { control().addScreen(A, ScreenType::RegularScreen); }).join();
        console().tap(Select + 3);
        QVERIFY(console().settleWithoutEventLoop());
        QCOMPARE(m_rig.asked(Operation::SetScreensSelected).size(), 1);
        QVERIFY(m_rig.asked(Operation::AsyncCreateScreen).isEmpty());
        QVERIFY(console().waitShows(Select + 3, ECLEDColor::Green));
    }

    void takeAndCutAreRefusedWhileATakeRunsAndWithoutASelection()
    {
        const char* const line = "Take operator error:takeCutNotEnabled.";
        QVERIFY(control().setScreenState(A, Stage, State::Taking));
        QVERIFY(isRefused(Take, line) && isRefused(Cut, line));
        QVERIFY(control().setScreenState(A, Stage, State::Normal));
        QVERIFY(control().selectScreens(A, {}));
        QVERIFY(isRefused(Take, line) && isRefused(Cut, line));
        QVERIFY(m_rig.asked(Operation::ParallelTakeScreen).isEmpty());
        QVERIFY(m_rig.asked(Operation::ParallelCutScreen).isEmpty());
    }

    void aLongTakeShowsTheWaitingDialogUntilItIsHandedOver()
    {
        QVERIFY(control().setEffectTime(A, Stage, 1.0));
        QVERIFY(tap(Take));
        QCOMPARE(m_rig.countNotices(TakeDialog), 0); // a second is not yet long
        QVERIFY(waitState(State::Normal));
        QCOMPARE(layer(SceneType::PGM, Side), QString("present")); // it is not selected
        m_rig.forget();

        QVERIFY(control().setEffectTime(A, Stage, 10.0));
        fail(Operation::ParallelTakeScreen);
        m_rig.hold(Operation::ParallelTakeScreen);
        const LogCapture log;
        QVERIFY(tap(Take));
        QCOMPARE(m_rig.asked(Operation::ParallelTakeScreen), QStringList("device=A types=6"));
        QCOMPARE(notices(), QStringList({TakeDialog, Hide}));
        QVERIFY(console().shows(Take, ECLEDColor::Off));
        // While it runs the console is open, and says why a screen cannot be selected.
        QCOMPARE(screen()->state(), State::Taking);
        QVERIFY(tap(Select + 1));
        QCOMPARE(notices().last(), TakingNotice);
        QVERIFY(tap(FTB));
        QCOMPARE(m_rig.requested(Operation::ParallelFTBScreen).size(), 1);
        m_rig.letGo();
        QVERIFY(log.waitFor("Take operator error: Take failed."));
        QVERIFY(waitState(State::Normal));
    }

    void aTakeWhoseHandOverHangsLosesItsDialogInTime()
    {
        QVERIFY(control().setEffectTime(A, Stage, 1.1));
        m_pGate->close();
        console().tap(Take);
        QVERIFY(m_rig.waitNotice(Hide));
        QVERIFY(console().shows(Take, ECLEDColor::Green)); // it is not handed over yet
        const auto shown = m_rig.notices();
        QVERIFY(shown.at(1).time - shown.at(0).time >= 1400ms);
        m_pGate->open();
        QVERIFY(waitState(State::Taking) && console().settle());
        QVERIFY(console().shows(Take, ECLEDColor::Off));
        QVERIFY(waitState(State::Normal));
    }

    void aTakeThatTheModelDoesNotStartIsLogged()
    {
        QVERIFY(control().setEffectTime(A, Stage, 2.0));
        m_pGate->refuseNext();
        QVERIFY(isRefused(Take, "Take operator error: the model did not start the take."));
        QCOMPARE(notices(), QStringList({TakeDialog, Hide}));
    }

    void cutIsDoneWhenItsKeyGoesDark()
    {
        console().press(Cut);
        QVERIFY(console().settle());
        QVERIFY(console().shows(Cut, ECLEDColor::Off));
        QCOMPARE(layer(SceneType::PGM), QString("next"));
        fail(Operation::ParallelCutScreen);
        const LogCapture log;
        QVERIFY(tap(Cut));
        QVERIFY(log.contains("Cut operator error: Cut failed."));
        QVERIFY(log.contains("Take operator error: CUT failed."));
        QVERIFY(console().shows(Cut, ECLEDColor::Off));
    }

    void aSlowModelHoldsUpNoOtherKey()
    {
        const std::pair<quint16, Operation> slow[] = {
            {FTB, Operation::ParallelFTBScreen},
            {Swap, Operation::ParallelSetSwapStatus},
            {Match, Operation::ParallelMatchPGM}};
        for (const auto& [key, operation] : slow) {
            m_rig.forget();
            m_rig.hold(operation);
            QVERIFY2(tap(key), qPrintable(MemoryModel::operationName(operation)));
            QVERIFY(tap(Edit)); // the next key is worked while the model is still at it
            QCOMPARE(m_rig.asked(Operation::UpdatePGMEditStatus).size(), 1);
            m_rig.letGo();
        }
        QVERIFY(console().waitShows(FTB, ECLEDColor::Green) && console().waitShows(Swap, ECLEDColor::Green));
    }

    void quickPressesAlternateThoughTheModelIsSlow()
    {
        m_rig.hold(Operation::ParallelFTBScreen);
        for (int press = 0; press < 4; ++press)
            QVERIFY(tap(FTB));
        const QString on = "device=A types=6 value=1";
        const QString off = "device=A types=6 value=0";
        QCOMPARE(m_rig.requested(Operation::ParallelFTBScreen), QStringList({on, off, on, off}));
        m_rig.letGo();
        QTRY_COMPARE(m_pGate->currentTaskCount(), 0);
        // Once all have ended, a failed one too, the device's state counts, whoever changed it.
        fail(Operation::ParallelFTBScreen);
        const LogCapture log;
        QVERIFY(tap(FTB));
        QVERIFY(log.waitFor("FTB PGM failed:The request was refused. ordered"));
        QVERIFY(control().setFTB(A, Stage, true));
        QVERIFY(tap(FTB));
        QCOMPARE(m_rig.requested(Operation::ParallelFTBScreen).last(), off);
        QVERIFY(console().waitShows(FTB, ECLEDColor::Off));
    }

    void whatTheModelRefusesIsLoggedAndLightsNoKey()
    {
        const LogCapture log;
        fail(Operation::ParallelMatchPGM);
        console().press(Match);
        QVERIFY(log.waitFor("matchPGM operator error: Match PGM failed. ordered"));
        QVERIFY(console().waitShows(Match, ECLEDColor::Off)); // while it is still down
        console().release(Match);
        const std::tuple<quint16, Operation, const char*> keys[] = {
            {Freeze, Operation::ParallelFreezeScreen, "Freeze PGM failed:The request was refused. "},
            {FTB, Operation::ParallelFTBScreen, "FTB PGM failed:The request was refused. "},
            {Swap, Operation::ParallelSetSwapStatus, "Swap failed:The request was refused. "}};
        for (const auto& [key, operation, line] : keys) {
            fail(operation); // when it is carried out
            QVERIFY(tap(key));
            QVERIFY2(log.waitFor(QString(line) + "ordered"), line);
            m_pGate->refuseNext(); // when it is asked for
            QVERIFY(tap(key));
            QVERIFY2(log.contains(QString(line) + "not now"), line);
            QVERIFY(console().shows(key, ECLEDColor::Off));
        }
        m_pGate->refuseNext();
        QVERIFY(isRefused(Match, "matchPGM operator error: Match PGM failed. not now"));
        fail(Operation::CancelScreensSelected);
        QVERIFY(tap(Select));
        QVERIFY(log.contains("the model refused to deselect the screen."));
        QVERIFY(console().shows(Select, ECLEDColor::Green));
    }

    void freezeAndFTBCountForTheWholeGroup()
    {
        QVERIFY(control().setFreeze(B, Stage, true));
        QVERIFY(control().setFTB(B, Stage, true));
        QVERIFY(console().shows(Freeze, ECLEDColor::Off));
        QVERIFY(control().setGroup(A, "7") && control().setGroup(B, "7"));
        QVERIFY(console().shows(Freeze, ECLEDColor::Red));
        QVERIFY(console().shows(FTB, ECLEDColor::Green));
        QVERIFY(tap(Freeze));
        QVERIFY(console().waitShows(Freeze, ECLEDColor::Off));
        QVERIFY(!screen(Stage, B)->freeze());
        // A screen that is not selected does not count.
        QVERIFY(control().setFTB(A, Side, true));
        QVERIFY(control().setFTB(B, Stage, false));
        QVERIFY(console().waitShows(FTB, ECLEDColor::Off));
    }

    void pgmEditTurnsOnForAllSelectedBeforeItTurnsOff()
    {
        QVERIFY(control().selectScreens(A, {Stage, Side, Confidence}));
        QVERIFY(control().setPGMEdit(A, Side, true));
        QVERIFY(console().shows(Edit, ECLEDColor::Green));
        for (const bool edited : {true, false}) {
            QVERIFY(tap(Edit));
            QCOMPARE(screen(Stage)->PGMEditEnable(), edited);
            QCOMPARE(screen(Side)->PGMEditEnable(), edited);
            QVERIFY(console().shows(Edit, edited ? ECLEDColor::Green : ECLEDColor::Off));
        }
        QVERIFY(control().selectScreens(A, {Confidence}));
        m_rig.forget();
        console().takeRequests();
        const LogCapture log;
        QVERIFY(tap(Edit));
        QCOMPARE(m_rig.asked(Operation::UpdatePGMEditStatus), QStringList("device=A screens=[] enabled=0"));
        QVERIFY(!console().takeRequests().empty());
        QVERIFY(console().shows(Edit, ECLEDColor::Off));
        QVERIFY(!log.contains("PGM edit failed:"));
    }

    void mixTypeSetsTheActiveScreen()
    {
        QVERIFY(control().setEffectType(A, Stage, BizModel::EffectType::cut));
        QVERIFY(tap(Mix));
        QCOMPARE(m_rig.asked(Operation::UpdateEffectType), QStringList("device=A screen=regular:1 value=1"));
        QVERIFY(console().shows(Mix, ECLEDColor::Green));
    }

    void keysFollowScreensThatComeGoAndMove()
    {
        QVERIFY(control().renameScreen(A, Side, "Left"));
        QCOMPARE(keys(), QStringList({"green Stage", "yellow Left", "yellow Confidence", "off"}));
        // A rename on a page that is not shown touches no label.
        QVERIFY(tap(PageDown));
        QVERIFY(control().renameScreen(A, Side, "Right"));
        QCOMPARE(keys(), QStringList({"off", "off", "off", "off"}));
        QVERIFY(tap(PageUp));

        QVERIFY(control().setScreenIndex(A, Side, 3));
        QVERIFY(control().setScreenIndex(A, Confidence, 0)); // the place is taken: it stays where it is
        QVERIFY(console().settle());
        QCOMPARE(keys(), QStringList({"green Stage", "off", "yellow Confidence", "yellow Right"}));
        // Until it is free.
        QVERIFY(control().activateScreen(A, Confidence));
        QVERIFY(control().removeScreen(A, Stage));
        QTRY_COMPARE(keys(), QStringList({"yellow Confidence", "off", "off", "yellow Right"}));
        // A screen without a place of its own gets the lowest free key.
        QVERIFY(control().removeScreen(A, Side));
        const auto added = screen(control().addScreen(A, ScreenType::RegularScreen));
        QTRY_COMPARE(keys(), QStringList({"yellow Confidence", "yellow " + added->name(), "off", "off"}));
    }

    void pagesShowTheirScreens()
    {
        auto record = show();
        record.devices[0].screens.append(screenRecord({ScreenType::RegularScreen, 9}, "Far", 31));
        record.devices[0].screens.last().outputs.clear();
        start(record);
        const auto page = [this] { return console().label(Label + PageUp); };
        for (int turn = 1; turn < 8; ++turn)
            QVERIFY(tap(PageDown));
        QCOMPARE(page(), QString("Page 8"));
        QCOMPARE(keys(), QStringList({"off", "off", "off", "yellow Far"}));
        const LogCapture log;
        QVERIFY(tap(PageDown));
        QVERIFY(log.contains("the maximum page number is currently reached. This is ScreenCommand"));
        // Another group is no other device.
        QVERIFY(control().setGroup(B, "7") && control().setGroup(A, "7"));
        QVERIFY(console().settle());
        QCOMPARE(page(), QString("Page 8"));
        // Another device begins with its first page.
        QVERIFY(control().activateDevice(B));
        QCOMPARE(page(), QString("Page 1"));
        QCOMPARE(keys(), QStringList({"green Hall", "off", "off", "off"}));
        QVERIFY(control().activateDevice(A));
        QCOMPARE(keys().first(), QString("green Stage"));
    }

    void aPageKeyThatADialogInterruptsTurnsThePage()
    {
        console().press(PageDown);
        QVERIFY(console().settle());
        QDialog dialog;
        dialog.open();
        console().release(PageDown);
        QVERIFY(console().settle());
        QVERIFY(console().shows(PageDown, ECLEDColor::Off));
        QCOMPARE(console().label(Label + PageUp), QString("Page 2"));
    }

    void aBurstOfLayerNoticesRepaintsOnce()
    {
        const LogCapture log;
        console().takeRequests();
        for (int i = 0; i < 100; ++i)
            Q_EMIT m_rig.model().deviceList().signalDeviceScreenLayersChanged({screen()}, 1);
        QVERIFY(log.waitFor("preset consume time: Update ScreenCommand Notify Timer end."));
        QCOMPARE(log.count("preset consume time: Update ScreenCommand Notify Timer start."), 100);
        QCOMPARE(log.count("preset consume time: Timeout, Update ScreenCommand Notify Timer start."), 1);
        QCOMPARE(int(console().takeRequests().size()), SelectCount); // one LED each, and no label
    }

    void aClickIsAnnouncedAsBoundOnlyForAKeyWithAScreen()
    {
        QList<bool> bound; // not QSignalSpy: it would write its list on the decoder thread
        const auto connection = connect(
            ECManager::instance(), &ECManager::signalECKeyClicked, this,
            [&bound](bool isBound, unsigned short) { bound.append(isBound); });
        for (const quint16 key : {quint16(Select + 1), quint16(Select + 3), quint16(Take)})
            QVERIFY(tap(key));
        disconnect(connection);
        QCOMPARE(bound, QList<bool>({true, false, false}));
    }

    void theHostRepaintsTheConsole()
    {
        ECManager::instance()->closeAllButtonLED();
        QVERIFY(!console().key(Select).isLit);
        ECManager::instance()->slotOrvanePluginModeChanged();
        theKeysShowTheActiveDevice();
        console().takeRequests();
        ECManager::instance()->retranslateUi();
        QVERIFY(!console().takeRequests().empty());
    }

    void aKeyboardLoadedAgainTakesOverTheKeys()
    {
        ECManager::instance()->init(keyboard());
        ECManager::instance()->slotOrvanePluginModeChanged();
        theKeysShowTheActiveDevice();
        start();
        theKeysShowTheActiveDevice();
        // Nothing is done by the old commands and once more by the new ones.
        aBurstOfLayerNoticesRepaintsOnce();
        QVERIFY(tap(Select + 1));
        QVERIFY(console().waitShows(Select + 1, ECLEDColor::Green));
        QVERIFY(tap(Cut));
        QCOMPARE(m_rig.asked(Operation::ParallelCutScreen).size(), 1);
        console().tbar(32);
        QVERIFY(console().settle());
        QCOMPARE(console().takeTBarLevels(), std::vector<quint32>{6});
        QCOMPARE(m_rig.requested(Operation::SampleTBar).size(), 1);
    }

    void requestsThatEndAfterTheConsoleDoNoHarm()
    {
        // A new screen, a match that fails and a held time key are under way when the console ends.
        m_rig.hold(Operation::AsyncCreateScreen);
        QVERIFY(tap(Select + 3));
        fail(Operation::ParallelMatchPGM);
        m_rig.operations().delay(Operation::ParallelMatchPGM, 200ms, MemoryModel::Times::Once);
        const LogCapture log;
        console().press(Match);
        console().press(TimeUp);
        QVERIFY(console().settle());
        m_rig.endConsole();
        m_rig.letGo();
        QVERIFY(m_rig.waitNotice(Hide));
        QTRY_COMPARE(m_rig.device(A)->screens(ScreenType::AllScreenType).size(), 4);
        QVERIFY(log.waitFor("matchPGM operator error: Match PGM failed."));
        QCoreApplication::processEvents(); // what it left to this thread
    }

private:
    QStringList notices() const
    {
        QStringList texts;
        for (const auto& notice : m_rig.notices())
            texts.append(notice.text);
        return texts;
    }
    QStringList keys() { return console().faces(Select, Label + Select, SelectCount); }
    QStringList otherKeys() { return console().faces(PageUp, Label + PageUp, TimeDown - PageUp + 1); }
    /// Presses the key and releases it; true when the line tells why and the key is dark.
    bool isRefused(quint16 key, const char* line)
    {
        const LogCapture log;
        return tap(key) && log.contains(line) && console().shows(key, ECLEDColor::Off);
    }

    std::unique_ptr<RequestGate> m_pGate;
};

QTEST_MAIN(TestScreenKeys)
#include "tst_screenkeys.moc"

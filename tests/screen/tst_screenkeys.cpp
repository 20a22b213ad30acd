#include "logcapture.h"
#include "memorydevicelist.h"
#include "screenscene.h"

#include "ecmanager.h"

#include <QDialog>
#include <QTest>

#include <thread>

using namespace ScreenScene;
using namespace std::chrono_literals;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::Times;
using TestSupport::LogCapture;
using State = BizModel::Screen::State;

Q_DECLARE_METATYPE(Orvane::MemoryModel::Operation)

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString TakingNotice = QStringLiteral("status 1 3000 Taking,please wait...");
const QString LimitNotice = QStringLiteral("status 1 3000 The number of screens exceeds the limit!");
const QString TakeDialog = QStringLiteral("wait Taking,please wait...");
const QString AddDialog = QStringLiteral("wait Adding screen,please wait...");
const QString Hide = QStringLiteral("hide");

} // namespace

/// The stories of the screen group's keys, from the press to the model and back to the lights.
class TestScreenKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_pRig.reset(); }

    void theKeysShowTheActiveDevice();
    void withoutADeviceEveryKeyIsDarkAndRefuses();
    void aScreenKeySelectsAndActivates();
    void aSelectedScreensKeyDeselectsIt();
    void inMultiScreenModeSelectionsAdd();
    void screenKeysWaitForATransition_data();
    void screenKeysWaitForATransition();
    void anUnboundKeyMakesAScreenThatLandsOnIt();
    void oneScreenIsMadeAtATimeAndItsKeyIsKept();
    void aScreenThatCannotBeMadeLeavesItsKeyFree();
    void noScreenIsMadeBeyondTheLimitOrOfNothing();
    void aScreenWhoseDeviceGoesIsUnbound();
    void aScreenThatIsNotAnnouncedYetIsFoundByItsKey();
    void takeRunsTheTransitionAndFreesTheKey();
    void takeAndCutAreRefused_data();
    void takeAndCutAreRefused();
    void aLongTakeShowsTheWaitingDialogUntilItEnds();
    void aTakeThatHangsLosesItsDialogInTime();
    void cutChangesTheScenesBeforeTheKeyGoesDark();
    void matchStaysLitUntilReleasedUnlessRefused();
    void toggleKeysFollowTheModel_data();
    void toggleKeysFollowTheModel();
    void freezeAndFTBCountForTheWholeGroup();
    void editIsSetForAllBeforeItIsTakenFromAll();
    void mixTypeSetsTheActiveScreen();
    void keysFollowScreensThatComeGoAndMove();
    void pagesShowTheirScreens();
    void aBurstOfLayerNoticesRepaintsOnce();
    void dialogsAndLocksLetNoScreenKeyThrough();
    void labelsFollowTheLanguageAndTheHostsRepaint();
    void aKeyboardLoadedAgainTakesOverTheKeys();
    void answersAfterTheEndOfTheConsole();

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    std::shared_ptr<BizModel::Screen> screen(ScreenKey key, const QString& device = A)
    {
        return m_pRig->screen(device, key);
    }
    bool waitState(ScreenKey key, State state)
    {
        return QTest::qWaitFor([&] { return screen(key)->state() == state; });
    }
    /// Presses and releases a key and waits until it was handled.
    bool tap(quint16 key)
    {
        console().tap(key);
        return console().settle();
    }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

void TestScreenKeys::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
}

void TestScreenKeys::init()
{
    ECManager::instance()->unlockKeypad();
    m_pRig->letGo();
    m_pRig->operations().clearAllOrders();
    QVERIFY(m_pRig->load(show()));
    m_pRig->forget();
}

void TestScreenKeys::theKeysShowTheActiveDevice()
{
    QVERIFY(console().shows(Select, ECLEDColor::Green));
    QVERIFY(console().shows(Select + 1, ECLEDColor::Yellow));
    QVERIFY(console().shows(Select + 2, ECLEDColor::Yellow));
    QVERIFY(console().shows(Select + 3, ECLEDColor::Off));
    QCOMPARE(console().label(Label + Select), QStringLiteral("Stage"));
    QCOMPARE(console().label(Label + Select + 2), QStringLiteral("Confidence"));
    QCOMPARE(console().label(Label + Select + 3), QString());
    QCOMPARE(console().label(Label + PageUp), QStringLiteral("Page 1"));
    QCOMPARE(console().label(Label + Mix), QStringLiteral("Fade"));
    QCOMPARE(console().label(Label + TimeUp), QStringLiteral("0.1"));
    QCOMPARE(console().label(Label + TimeDown), QStringLiteral("0.1"));
    QVERIFY(console().shows(Mix, ECLEDColor::Green));
    for (const quint16 key : {PageUp, PageDown, Freeze, Match, FTB, Cut, Take, TimeUp, Swap, Edit, TimeDown})
        QVERIFY2(console().shows(key, ECLEDColor::Off), qPrintable(QString::number(key)));
}

void TestScreenKeys::withoutADeviceEveryKeyIsDarkAndRefuses()
{
    QVERIFY(m_pRig->control().activateDevice(QString()));
    for (quint16 key = Select; key < Select + SelectCount; ++key) {
        QVERIFY(console().shows(key, ECLEDColor::Off));
        QCOMPARE(console().label(Label + key), QString());
    }
    QVERIFY(console().shows(Mix, ECLEDColor::Off));
    QCOMPARE(console().label(Label + TimeUp), QString());
    QCOMPARE(console().label(Label + TimeDown), QString());

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
    for (const auto& [key, line] : refusals) {
        const LogCapture log;
        QVERIFY(tap(key));
        QVERIFY2(log.contains(line), line);
        QVERIFY2(console().shows(key, ECLEDColor::Off), line);
    }
}

void TestScreenKeys::aScreenKeySelectsAndActivates()
{
    QVERIFY(m_pRig->control().setMultiScreens(A, false));
    QVERIFY(tap(Select + 2));
    QVERIFY(console().waitShows(Select + 2, ECLEDColor::Green));
    QVERIFY(console().waitShows(Select, ECLEDColor::Yellow));
    QVERIFY(screen(Confidence)->selected());
    QVERIFY(!screen(Stage)->selected());
    QCOMPARE(m_pRig->device(A)->activedScreen().lock(), screen(Confidence));
}

void TestScreenKeys::aSelectedScreensKeyDeselectsIt()
{
    QVERIFY(tap(Select));
    QVERIFY(console().waitShows(Select, ECLEDColor::Yellow));
    QVERIFY(!screen(Stage)->selected());
    QCOMPARE(m_pRig->device(A)->activedScreen().lock(), screen(Stage));
    QVERIFY(m_pRig->asked(Operation::SetActivedScreen).isEmpty());
}

void TestScreenKeys::inMultiScreenModeSelectionsAdd()
{
    QVERIFY(tap(Select + 1));
    QVERIFY(console().waitShows(Select + 1, ECLEDColor::Green));
    QVERIFY(screen(Stage)->selected() && screen(Side)->selected());
    QCOMPARE(m_pRig->device(A)->activedScreen().lock(), screen(Side));
}

void TestScreenKeys::screenKeysWaitForATransition_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("refused");
    QTest::newRow("taking") << int(State::Taking) << true;
    QTest::newRow("T-Bar") << int(State::Tbar_taking) << true;
    QTest::newRow("cut") << int(State::Cut) << true;
    QTest::newRow("out of resources") << int(State::Resource_out) << false;
    QTest::newRow("matching") << int(State::MatchingPGM) << false;
}

void TestScreenKeys::screenKeysWaitForATransition()
{
    QFETCH(int, state);
    QFETCH(bool, refused);
    QVERIFY(m_pRig->control().setScreenState(A, Confidence, State(state)));
    const LogCapture log;
    QVERIFY(tap(Select + 1));
    QCOMPARE(screen(Side)->selected(), !refused);
    QCOMPARE(m_pRig->countNotices(TakingNotice), refused ? 1 : 0);
    QCOMPARE(
        log.contains("Find a screen state is not normal, Screen key pressed operation failed."), refused);
}

void TestScreenKeys::anUnboundKeyMakesAScreenThatLandsOnIt()
{
    QVERIFY(tap(PageDown));
    QVERIFY(tap(Select + 2));
    QVERIFY(console().waitShows(Select + 2, ECLEDColor::Yellow));
    QVERIFY(m_pRig->waitNotice(Hide));
    QCOMPARE(m_pRig->countNotices(AddDialog), 1);
    const auto made = m_pRig->device(A)->activedScreen().lock();
    QVERIFY(made && made != screen(Stage));
    QCOMPARE(made->uiScreenIndex(), SelectCount + 2);
    QCOMPARE(made->outputs().size(), 1);
    QVERIFY(console().waitLabel(Label + Select + 2, made->name()));
    // It is an ordinary screen from now on.
    QVERIFY(tap(Select + 2));
    QVERIFY(console().waitShows(Select + 2, ECLEDColor::Green));
    QCOMPARE(m_pRig->asked(Operation::AsyncCreateScreen).size(), 1);

    // An offline device shows no dialog.
    QVERIFY(m_pRig->control().setOnline(A, false));
    QVERIFY(tap(Select + 3));
    QVERIFY(console().waitShows(Select + 3, ECLEDColor::Yellow));
    QCOMPARE(m_pRig->countNotices(AddDialog), 1);
}

void TestScreenKeys::oneScreenIsMadeAtATimeAndItsKeyIsKept()
{
    m_pRig->hold(Operation::AsyncCreateScreen);
    const LogCapture log;
    QVERIFY(tap(Select + 3));
    QVERIFY(tap(Select + 3));
    QCOMPARE(log.count(" Screen is creating ..."), 1);
    // Another screen that comes meanwhile does not get the key, though it is the lowest free one.
    const ScreenKey other = m_pRig->control().addScreen(A, ScreenType::AUXScreen);
    QVERIFY(other.id != 0);
    QVERIFY(console().shows(Select + 3, ECLEDColor::Off));
    m_pRig->letGo();
    QVERIFY(console().waitShows(Select + 3, ECLEDColor::Yellow));
    QVERIFY(m_pRig->waitNotice(Hide));
    QCOMPARE(m_pRig->asked(Operation::AsyncCreateScreen).size(), 1);
    const auto made = m_pRig->device(A)->activedScreen().lock();
    QVERIFY(console().waitLabel(Label + Select + 3, made->name()));
    QVERIFY(tap(PageDown));
    QVERIFY(console().waitLabel(Label + Select, screen(other)->name()));
}

void TestScreenKeys::aScreenThatCannotBeMadeLeavesItsKeyFree()
{
    m_pRig->operations().fail(Operation::AsyncCreateScreen, QStringLiteral("no"), Times::Once);
    const LogCapture log;
    QVERIFY(tap(Select + 3));
    QVERIFY(m_pRig->waitNotice(Hide));
    QVERIFY(log.waitFor("Crate reguler screen has failed."));
    QVERIFY(!log.contains("Failed to unbind"));
    QCOMPARE(m_pRig->device(A)->screens(ScreenType::AllScreenType).size(), 3);
    // The key is free for the next attempt, once the first has ended.
    QVERIFY(QTest::qWaitFor(
        [&] { return tap(Select + 3) && m_pRig->asked(Operation::AsyncCreateScreen).size() == 2; }));
    QVERIFY(console().waitShows(Select + 3, ECLEDColor::Yellow));
}

void TestScreenKeys::noScreenIsMadeBeyondTheLimitOrOfNothing()
{
    m_pRig->operations().fail(Operation::CreateDefaultScreen, QStringLiteral("no"), Times::Once);
    {
        const LogCapture log;
        QVERIFY(tap(Select + 3));
        QVERIFY(log.contains("Create default screen is nullptr"));
        QCOMPARE(m_pRig->countNotices(Hide), 1);
    }
    auto limited = show();
    limited.devices[0].limits.regularScreens = 2;
    QVERIFY(m_pRig->load(limited));
    const LogCapture log;
    QVERIFY(tap(Select + 3));
    QVERIFY(log.contains("The number of screens exceeds the limit!"));
    QCOMPARE(m_pRig->countNotices(LimitNotice), 1);
    QCOMPARE(m_pRig->countNotices(AddDialog), 1);
    QVERIFY(m_pRig->asked(Operation::AsyncCreateScreen).isEmpty());
}

void TestScreenKeys::aScreenWhoseDeviceGoesIsUnbound()
{
    m_pRig->hold(Operation::AsyncCreateScreen);
    const LogCapture log;
    QVERIFY(tap(Select + 3));
    QVERIFY(m_pRig->control().removeDevice(A));
    QVERIFY(console().shows(Select, ECLEDColor::Off));
    m_pRig->letGo();
    QVERIFY(log.waitFor("Crate reguler screen has failed."));
    QVERIFY(log.waitFor(QStringLiteral("Failed to unbind，Device:A,pRegulerScreen:")));
    QVERIFY(m_pRig->waitNotice(Hide));
}

void TestScreenKeys::aScreenThatIsNotAnnouncedYetIsFoundByItsKey()
{
    // While the GUI thread is busy with this function, the news of the screen cannot get through.
    std::thread other([&] { m_pRig->control().addScreen(A, ScreenType::RegularScreen); });
    other.join();
    console().tap(Select + 3);
    QVERIFY(console().settleWithoutEventLoop());
    QCOMPARE(m_pRig->asked(Operation::SetScreensSelected).size(), 1);
    QVERIFY(m_pRig->asked(Operation::AsyncCreateScreen).isEmpty());
    QVERIFY(console().waitShows(Select + 3, ECLEDColor::Green));
}

void TestScreenKeys::takeRunsTheTransitionAndFreesTheKey()
{
    const LogCapture log;
    console().press(Take);
    QVERIFY(console().settle());
    // Handed over, so it is dark again, while the transition runs.
    QVERIFY(console().shows(Take, ECLEDColor::Off));
    QVERIFY(console().key(Take).changes >= 2);
    QCOMPARE(m_pRig->asked(Operation::ParallelTakeScreen), QStringList(QStringLiteral("device=A types=6")));
    QVERIFY(log.contains("Take operator begin to take."));
    QCOMPARE(m_pRig->countNotices(TakeDialog), 0);
    QVERIFY(QTest::qWaitFor(
        [&] { return layerNames(screen(Stage), SceneType::PGM) == QStringList(QStringLiteral("next")); }));
    QCOMPARE(layerNames(screen(Side), SceneType::PGM), QStringList(QStringLiteral("present")));
    QVERIFY(waitState(Stage, State::Normal));

    m_pRig->operations().fail(Operation::ParallelTakeScreen, QStringLiteral("no"), Times::Once);
    QVERIFY(tap(Take));
    QVERIFY(log.waitFor("Take operator error: Take failed."));
}

void TestScreenKeys::takeAndCutAreRefused_data()
{
    QTest::addColumn<quint16>("key");
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<QString>("line");
    const QString notEnabled = QStringLiteral("Take operator error:takeCutNotEnabled.");
    for (const quint16 key : {quint16(Take), quint16(Cut)}) {
        const char* name = key == Take ? "take" : "cut";
        QTest::addRow("%s, nothing selected", name) << key << "unselected" << notEnabled;
        QTest::addRow("%s, take running", name) << key << "taking" << notEnabled;
    }
    QTest::newRow("take, no active screen")
        << quint16(Take) << "inactive" << QStringLiteral("Take operator error: active screen is nullptr.");
}

void TestScreenKeys::takeAndCutAreRefused()
{
    QFETCH(quint16, key);
    QFETCH(QString, obstacle);
    QFETCH(QString, line);
    auto scene = show();
    scene.devices[0].screens[0].selected = obstacle != QLatin1String("unselected");
    if (obstacle == QLatin1String("inactive"))
        scene.devices[0].activeScreen = {};
    QVERIFY(m_pRig->load(scene));
    if (obstacle == QLatin1String("taking"))
        QVERIFY(m_pRig->control().setScreenState(A, Stage, State::Taking));
    const LogCapture log;
    QVERIFY(tap(key));
    QVERIFY2(log.contains(line), qPrintable(log.all()));
    QVERIFY(console().shows(key, ECLEDColor::Off));
    QVERIFY(m_pRig->asked(Operation::ParallelTakeScreen).isEmpty());
    QVERIFY(m_pRig->asked(Operation::ParallelCutScreen).isEmpty());
}

void TestScreenKeys::aLongTakeShowsTheWaitingDialogUntilItEnds()
{
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 1.0));
    QVERIFY(tap(Take));
    QCOMPARE(m_pRig->countNotices(TakeDialog), 0); // a second is not yet long
    QVERIFY(waitState(Stage, State::Normal));
    m_pRig->forget();

    // It ends long before its time is up, and so does the dialog.
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 10.0));
    m_pRig->operations().fail(Operation::ParallelTakeScreen, QStringLiteral("no"), Times::Once);
    m_pRig->hold(Operation::ParallelTakeScreen);
    QVERIFY(tap(Take));
    QCOMPARE(m_pRig->countNotices(TakeDialog), 1);
    QCOMPARE(m_pRig->countNotices(Hide), 0);
    QCOMPARE(screen(Stage)->state(), State::Taking);
    m_pRig->letGo();
    QVERIFY(m_pRig->waitNotice(Hide, 1, 5000));
    QCOMPARE(screen(Stage)->state(), State::Normal);
}

void TestScreenKeys::aTakeThatHangsLosesItsDialogInTime()
{
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 1.1));
    m_pRig->operations().fail(Operation::ParallelTakeScreen, QStringLiteral("no"), Times::Once);
    m_pRig->hold(Operation::ParallelTakeScreen);
    QVERIFY(tap(Take));
    QVERIFY(m_pRig->waitNotice(Hide, 1, 5000));
    QCOMPARE(screen(Stage)->state(), State::Taking);
    const auto notices = m_pRig->notices();
    QCOMPARE(notices.size(), std::size_t(2));
    QVERIFY(notices.at(1).time - notices.at(0).time >= 1400ms);
    // Its end hides nothing any more.
    const LogCapture log;
    m_pRig->letGo();
    QVERIFY(log.waitFor("Take operator error: Take failed."));
    QVERIFY(waitState(Stage, State::Normal));
    QVERIFY(console().settle());
    QCOMPARE(m_pRig->notices().size(), std::size_t(2));
}

void TestScreenKeys::cutChangesTheScenesBeforeTheKeyGoesDark()
{
    const LogCapture log;
    console().press(Cut);
    QVERIFY(console().settle());
    QVERIFY(console().shows(Cut, ECLEDColor::Off));
    QCOMPARE(layerNames(screen(Stage), SceneType::PGM), QStringList(QStringLiteral("next")));
    QVERIFY(log.contains("Take operator begin to CUT."));

    m_pRig->operations().fail(Operation::ParallelCutScreen, QStringLiteral("no"), Times::Once);
    QVERIFY(tap(Cut));
    QVERIFY(log.contains("Take operator error: CUT failed."));
    QVERIFY(log.contains("Cut operator error: Cut failed."));
    QVERIFY(console().shows(Cut, ECLEDColor::Off));
}

void TestScreenKeys::matchStaysLitUntilReleasedUnlessRefused()
{
    const LogCapture log;
    console().press(Match);
    QVERIFY(console().settle());
    QVERIFY(console().shows(Match, ECLEDColor::Green));
    QCOMPARE(layerNames(screen(Stage), SceneType::PVW), QStringList(QStringLiteral("present")));
    console().release(Match);
    QVERIFY(console().waitShows(Match, ECLEDColor::Off));
    QVERIFY(log.contains("matchPGM operator begin to match PGM."));

    m_pRig->operations().fail(Operation::ParallelMatchPGM, QStringLiteral("no"), Times::Once);
    console().press(Match);
    QVERIFY(console().settle());
    QVERIFY(log.contains("matchPGM operator error: Match PGM failed."));
    QVERIFY(console().shows(Match, ECLEDColor::Off));
    console().release(Match);
}

void TestScreenKeys::toggleKeysFollowTheModel_data()
{
    QTest::addColumn<quint16>("key");
    QTest::addColumn<int>("color");
    QTest::addColumn<Operation>("operation");
    const auto row = [](const char* name, Key key, ECLEDColor color, Operation operation) {
        QTest::newRow(name) << quint16(key) << int(color) << operation;
    };
    row("freeze", Freeze, ECLEDColor::Red, Operation::ParallelFreezeScreen);
    row("fade to black", FTB, ECLEDColor::Green, Operation::ParallelFTBScreen);
    row("swap", Swap, ECLEDColor::Green, Operation::ParallelSetSwapStatus);
}

void TestScreenKeys::toggleKeysFollowTheModel()
{
    QFETCH(quint16, key);
    QFETCH(int, color);
    QFETCH(Operation, operation);
    QVERIFY(tap(key));
    QVERIFY(console().waitShows(key, ECLEDColor(color)));
    QVERIFY(tap(key));
    QVERIFY(console().waitShows(key, ECLEDColor::Off));
    const QStringList asked = m_pRig->asked(operation);
    QCOMPARE(asked.size(), 2);
    QVERIFY(asked.at(0).endsWith(QLatin1String("value=1")) && asked.at(1).endsWith(QLatin1String("value=0")));

    // The press alone lights nothing.
    m_pRig->operations().fail(operation, QStringLiteral("no"), Times::Once);
    QVERIFY(tap(key));
    QVERIFY(console().shows(key, ECLEDColor::Off));
}

void TestScreenKeys::freezeAndFTBCountForTheWholeGroup()
{
    QVERIFY(m_pRig->control().setFreeze(B, Stage, true));
    QVERIFY(m_pRig->control().setFTB(B, Stage, true));
    QVERIFY(console().shows(Freeze, ECLEDColor::Off));
    QVERIFY(m_pRig->control().setGroup(A, QStringLiteral("7")));
    QVERIFY(m_pRig->control().setGroup(B, QStringLiteral("7")));
    QVERIFY(console().shows(Freeze, ECLEDColor::Red));
    QVERIFY(console().shows(FTB, ECLEDColor::Green));
    QVERIFY(tap(Freeze));
    QVERIFY(console().waitShows(Freeze, ECLEDColor::Off));
    QVERIFY(!screen(Stage, B)->freeze());
    // A screen that is not selected does not count.
    QVERIFY(m_pRig->control().setFTB(A, Side, true));
    QVERIFY(m_pRig->control().setFTB(B, Stage, false));
    QVERIFY(console().waitShows(FTB, ECLEDColor::Off));
}

void TestScreenKeys::editIsSetForAllBeforeItIsTakenFromAll()
{
    QVERIFY(m_pRig->control().selectScreens(A, {Stage, Side, Confidence}));
    QVERIFY(m_pRig->control().setPGMEdit(A, Side, true));
    QVERIFY(console().shows(Edit, ECLEDColor::Green));
    QVERIFY(tap(Edit));
    QVERIFY(screen(Stage)->PGMEditEnable() && screen(Side)->PGMEditEnable());
    QVERIFY(console().shows(Edit, ECLEDColor::Green));
    QVERIFY(tap(Edit));
    QVERIFY(!screen(Stage)->PGMEditEnable() && !screen(Side)->PGMEditEnable());
    QVERIFY(console().shows(Edit, ECLEDColor::Off));

    QVERIFY(m_pRig->control().selectScreens(A, {Confidence}));
    m_pRig->forget();
    QVERIFY(tap(Edit));
    QVERIFY(m_pRig->asked(Operation::UpdatePGMEditStatus).isEmpty());
    QVERIFY(console().shows(Edit, ECLEDColor::Off));
}

void TestScreenKeys::mixTypeSetsTheActiveScreen()
{
    QVERIFY(m_pRig->control().setEffectType(A, Stage, BizModel::EffectType::cut));
    QVERIFY(tap(Mix));
    QCOMPARE(
        m_pRig->asked(Operation::UpdateEffectType),
        QStringList(QStringLiteral("device=A screen=regular:1 value=1")));
    QVERIFY(console().shows(Mix, ECLEDColor::Green));
}

void TestScreenKeys::keysFollowScreensThatComeGoAndMove()
{
    QVERIFY(m_pRig->control().renameScreen(A, Side, QStringLiteral("Left")));
    QVERIFY(console().waitLabel(Label + Select + 1, QStringLiteral("Left")));
    // A rename on a page that is not shown touches no label.
    QVERIFY(tap(PageDown));
    QVERIFY(m_pRig->control().renameScreen(A, Side, QStringLiteral("Right")));
    QCOMPARE(console().label(Label + Select + 1), QString());
    QVERIFY(tap(PageUp));
    QVERIFY(console().waitLabel(Label + Select + 1, QStringLiteral("Right")));

    QVERIFY(m_pRig->control().setScreenIndex(A, Side, 3));
    QVERIFY(console().waitLabel(Label + Select + 3, QStringLiteral("Right")));
    QVERIFY(console().shows(Select + 1, ECLEDColor::Off));
    QCOMPARE(console().label(Label + Select + 1), QString());
    // The place is taken: the screen stays where it is.
    QVERIFY(m_pRig->control().setScreenIndex(A, Confidence, 0));
    QVERIFY(console().settle());
    QCOMPARE(console().label(Label + Select), QStringLiteral("Stage"));
    QCOMPARE(console().label(Label + Select + 2), QStringLiteral("Confidence"));

    // Until it is free.
    QVERIFY(m_pRig->control().activateScreen(A, Confidence));
    QVERIFY(m_pRig->control().removeScreen(A, Stage));
    QVERIFY(console().waitLabel(Label + Select, QStringLiteral("Confidence")));
    QVERIFY(console().shows(Select, ECLEDColor::Yellow));
    QVERIFY(console().shows(Select + 2, ECLEDColor::Off));
    QVERIFY(m_pRig->control().removeScreen(A, Side));
    QVERIFY(console().waitShows(Select + 3, ECLEDColor::Off));
    QCOMPARE(console().label(Label + Select + 3), QString());
    // A screen without a place of its own gets the lowest free key.
    const ScreenKey added = m_pRig->control().addScreen(A, ScreenType::RegularScreen);
    QVERIFY(console().waitLabel(Label + Select + 1, screen(added)->name()));
}

void TestScreenKeys::pagesShowTheirScreens()
{
    auto scene = show();
    scene.devices[0].screens.append(screenRecord({ScreenType::RegularScreen, 9}, QStringLiteral("Far"), 31));
    QVERIFY(m_pRig->load(scene));
    for (int page = 1; page < 8; ++page)
        QVERIFY(tap(PageDown));
    QCOMPARE(console().label(Label + PageUp), QStringLiteral("Page 8"));
    QCOMPARE(console().label(Label + Select + 3), QStringLiteral("Far"));
    QVERIFY(console().shows(Select, ECLEDColor::Off));
    const LogCapture log;
    QVERIFY(tap(PageDown));
    QVERIFY(log.contains("the maximum page number is currently reached. This is ScreenCommand"));
    // Another device begins with its first page.
    QVERIFY(m_pRig->control().activateDevice(B));
    QCOMPARE(console().label(Label + PageUp), QStringLiteral("Page 1"));
    QCOMPARE(console().label(Label + Select), QStringLiteral("Hall"));
    QVERIFY(m_pRig->control().activateDevice(A));
    QCOMPARE(console().label(Label + Select), QStringLiteral("Stage"));
}

void TestScreenKeys::aBurstOfLayerNoticesRepaintsOnce()
{
    const LogCapture log;
    console().takeRequests();
    auto& list = m_pRig->model().deviceList();
    const QList<std::weak_ptr<BizModel::Screen>> screens{screen(Stage)};
    for (int i = 0; i < 100; ++i)
        Q_EMIT list.signalDeviceScreenLayersChanged(screens, 1);
    QVERIFY(log.waitFor("preset consume time: Update ScreenCommand Notify Timer end."));
    QCOMPARE(log.count("preset consume time: Update ScreenCommand Notify Timer start."), 100);
    QCOMPARE(log.count("preset consume time: Timeout, Update ScreenCommand Notify Timer start."), 1);
    QCOMPARE(int(console().takeRequests().size()), SelectCount); // one LED each, and no label
}

void TestScreenKeys::dialogsAndLocksLetNoScreenKeyThrough()
{
    {
        QDialog dialog;
        dialog.open();
        QVERIFY(tap(Take));
        QVERIFY(tap(Select + 1));
    }
    ECManager::instance()->lockKeypad();
    QVERIFY(tap(Take));
    QVERIFY(tap(Select + 1));
    ECManager::instance()->unlockKeypad();
    QVERIFY(m_pRig->asked(Operation::ParallelTakeScreen).isEmpty());
    QVERIFY(!screen(Side)->selected());

    QList<bool> bound;
    const auto connection = connect(
        ECManager::instance(), &ECManager::signalECKeyClicked, this,
        [&bound](bool isBound, unsigned short) { bound.append(isBound); });
    for (const quint16 key : {quint16(Select + 1), quint16(Select + 3), quint16(Take)})
        QVERIFY(tap(key));
    disconnect(connection);
    QCOMPARE(bound, QList<bool>({true, false, false}));
}

void TestScreenKeys::labelsFollowTheLanguageAndTheHostsRepaint()
{
    ECManager::instance()->closeAllButtonLED();
    QVERIFY(!console().key(Select).isLit);
    ECManager::instance()->slotOrvanePluginModeChanged();
    theKeysShowTheActiveDevice();
    console().takeRequests();
    ECManager::instance()->retranslateUi();
    QVERIFY(!console().takeRequests().empty());
}

void TestScreenKeys::aKeyboardLoadedAgainTakesOverTheKeys()
{
    ECManager::instance()->init(keyboard());
    ECManager::instance()->slotOrvanePluginModeChanged();
    theKeysShowTheActiveDevice();
    QVERIFY(m_pRig->load(show()));
    theKeysShowTheActiveDevice();
    // Nothing is done by the old commands and once more by the new ones.
    aBurstOfLayerNoticesRepaintsOnce();
    QVERIFY(tap(Select + 1));
    QVERIFY(console().waitShows(Select + 1, ECLEDColor::Green));
    QVERIFY(tap(Cut));
    QCOMPARE(m_pRig->asked(Operation::ParallelCutScreen).size(), 1);
    console().tbar(32);
    QVERIFY(console().settle());
    QCOMPARE(console().takeTBarLevels(), std::vector<quint32>{6});
    QCOMPARE(m_pRig->requested(Operation::SampleTBar).size(), 1);
}

void TestScreenKeys::answersAfterTheEndOfTheConsole()
{
    // A long take and a new screen are under way when the console ends; the model answers later.
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 1.2));
    m_pRig->hold(Operation::AsyncCreateScreen);
    QVERIFY(tap(Select + 3));
    QVERIFY(tap(Take));
    QCOMPARE(m_pRig->countNotices(TakeDialog), 1);
    console().press(TimeUp);
    QVERIFY(console().settle());
    m_pRig->endConsole();
    m_pRig->letGo();
    QVERIFY(m_pRig->waitNotice(Hide, 2, 5000));
    QVERIFY(
        QTest::qWaitFor([&] { return m_pRig->device(A)->screens(ScreenType::AllScreenType).size() == 4; }));
    QVERIFY(waitState(Stage, State::Normal));
}

QTEST_MAIN(TestScreenKeys)
#include "tst_screenkeys.moc"

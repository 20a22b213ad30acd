#include "logcapture.h"
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

namespace {

const QString A = QStringLiteral("A");

/// A position as a test row writes it: 32 up, -32 down.
ECTBarValue position(int signedValue)
{
    ECTBarValue value;
    value.Value = quint32(std::abs(signedValue));
    value.IsBottomToTop = signedValue < 0 ? TopToBottom : BottomToTop;
    return value;
}

} // namespace

/// The T-Bar: what is sampled, when a transition starts and ends, what the LEDs beside the lever show.
class TestTBar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_pRig.reset(); }

    void positionsBecomeProgress_data();
    void positionsBecomeProgress();
    void everyPositionIsEchoed();
    void whileLockedPositionsAreOnlyRemembered();
    void nothingStartsUnderADialogOrWithoutScreens();
    void progressWaitsForATakeAndForTheSampling();
    void aDeviceThatGoesEndsTheTransition();
    void aSweepEndsAtTheRightScenesWithEveryEcho();

private:
    /// The progress values that were handed to the sampling thread.
    QStringList progress() const
    {
        QStringList values;
        for (const QString& arguments : m_pRig->requested(Operation::SampleTBar))
            values.append(arguments.section(QStringLiteral("process="), 1));
        return values;
    }
    void move(ScreenCommand& command, const QList<int>& positions)
    {
        for (const int each : positions)
            command.slotECTBarChanged(position(each));
    }
    std::shared_ptr<BizModel::Screen> stage() { return m_pRig->screen(A, Stage); }
    QStringList program() { return layerNames(stage(), SceneType::PGM); }
    bool waitState(State state)
    {
        return QTest::qWaitFor([&] { return stage()->state() == state; });
    }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

void TestTBar::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
}

void TestTBar::init()
{
    ECManager::instance()->unlockKeypad();
    ECManager::instance()->unlockTBar();
    m_pRig->operations().clearAllOrders();
    QVERIFY(m_pRig->load(show()));
    m_pRig->console().takeRequests();
    m_pRig->forget();
}

void TestTBar::positionsBecomeProgress_data()
{
    QTest::addColumn<QList<int>>("positions");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("refused");
    QTest::addColumn<int>("started");
    QTest::addColumn<int>("stopped");
    const auto row = [](const char* name, const QList<int>& positions, const QStringList& expected,
                        int refused, int started, int stopped) {
        QTest::newRow(name) << positions << expected << refused << started << stopped;
    };
    row("up to the end", {2, 32, 64}, {"0.03125", "0.5", "1"}, 0, 1, 1);
    row("down to the end", {-63, -32, -1}, {"0.015625", "0.5", "1"}, 0, 1, 1);
    row("up and back", {32, 1}, {"0.5", "0"}, 0, 1, 1);
    row("down and back", {-32, -64}, {"0.5", "0"}, 0, 1, 1);
    row("a first position at the start ends at once", {1}, {"0"}, 0, 1, 1);
    row("the same position again", {32, 32, 33}, {"0.5", "0.515625"}, 1, 1, 0);
    row("the same position in the other direction", {32, -32}, {"0.5"}, 1, 1, 0);
    row("out of range", {65, 32, 1000, 33}, {"0.5", "0.515625"}, 2, 1, 0);
    row("zero at first is a repetition", {0}, {}, 1, 0, 0);
    row("zero ends a transition", {32, 0}, {"0.5", "0"}, 0, 1, 1);
    row("one after the other", {32, 64, -63, -1}, {"0.5", "1", "0.015625", "1"}, 0, 2, 2);
}

void TestTBar::positionsBecomeProgress()
{
    QFETCH(QList<int>, positions);
    QFETCH(QStringList, expected);
    const LogCapture log;
    ScreenCommand command;
    move(command, positions);
    QCOMPARE(progress(), expected);
    QTEST(log.count("T-Bar Error: T-Bar value out of range, cur value is "), "refused");
    QTEST(log.count("T-Bar status: started."), "started");
    QTEST(log.count("T-Bar status: stopped."), "stopped");
}

void TestTBar::everyPositionIsEchoed()
{
    ScreenCommand command;
    // Also those that are refused: a repetition and one beyond the end.
    move(command, {0, 1, 2, 5, 6, 32, 32, 63, 64, 65});
    const std::vector<quint32> expected{0, 0, 0, 0, 1, 6, 6, 11, 12, 12};
    QCOMPARE(m_pRig->console().takeTBarLevels(), expected);
    move(command, {-40});
    for (const auto& request : m_pRig->console().takeRequests()) {
        const auto* level = std::get_if<ECTBarValue>(&request.message);
        QVERIFY(level && level->IsBottomToTop == TopToBottom);
    }
}

void TestTBar::whileLockedPositionsAreOnlyRemembered()
{
    ScreenCommand command;
    move(command, {32});
    for (const bool keypad : {true, false}) {
        const LogCapture log;
        if (keypad)
            ECManager::instance()->lockKeypad();
        else
            ECManager::instance()->lockTBar();
        m_pRig->forget();
        // An end that is reached while locked does not end the transition.
        move(command, {40, 64});
        QVERIFY(log.contains(
            keypad ? "T-Bar Error: : T-Bar is started 1, T-Bar is locked 0, Panel is locked 1."
                   : "T-Bar Error: : T-Bar is started 1, T-Bar is locked 1, Panel is locked 0."));
        ECManager::instance()->unlockKeypad();
        ECManager::instance()->unlockTBar();
        move(command, {64}); // remembered: a repetition
        QVERIFY(progress().isEmpty());
        move(command, {63});
        QCOMPARE(progress(), QStringList(QStringLiteral("0.984375")));
        QVERIFY(!log.contains("T-Bar status: started.") && !log.contains("T-Bar status: stopped."));
    }
}

void TestTBar::nothingStartsUnderADialogOrWithoutScreens()
{
    ScreenCommand command;
    const LogCapture log;
    {
        QDialog dialog;
        dialog.setObjectName(QStringLiteral("question"));
        dialog.open();
        move(command, {10});
        QVERIFY(log.contains("T-Bar Error: There is a active widget, can not start T-Bar.question"));
        // On its way through the manager it is stopped before that.
        m_pRig->console().tbar(11);
        QVERIFY(m_pRig->console().settle());
        QVERIFY(log.contains("T-Bar ignored :Console Event has waiting window, pos:"));
    }
    QVERIFY(m_pRig->control().selectScreens(A, {}));
    move(command, {10, 12});
    QCOMPARE(log.count("T-Bar Error: there is no screens can execute T-Bar task."), 1);
    QVERIFY(m_pRig->control().activateDevice(QString()));
    move(command, {13});
    QVERIFY(log.contains("T-Bar Error: current actived device is nullptr."));
    QVERIFY(progress().isEmpty());
    // The next position tries again.
    QVERIFY(m_pRig->control().activateDevice(A));
    QVERIFY(m_pRig->control().selectScreens(A, {Stage}));
    move(command, {14});
    QCOMPARE(progress().size(), 1);
}

void TestTBar::progressWaitsForATakeAndForTheSampling()
{
    ScreenCommand command;
    const LogCapture log;
    QVERIFY(m_pRig->control().setScreenState(A, Side, State::Taking));
    move(command, {10});
    QVERIFY(log.contains("T-Bar Error: Please wait for last take finished."));
    QVERIFY(m_pRig->control().setScreenState(A, Side, State::Normal));
    m_pRig->operations().fail(Operation::SetSamplingType, QStringLiteral("no"), Times::Once);
    move(command, {11});
    QVERIFY(log.contains("T-Bar Error: sampling failed."));
    QVERIFY(progress().isEmpty());
    move(command, {12});
    QCOMPARE(progress().size(), 1);
}

void TestTBar::aDeviceThatGoesEndsTheTransition()
{
    ScreenCommand command;
    LogCapture log;
    move(command, {32});
    QVERIFY(waitState(State::Tbar_taking)); // the sampling has begun with the selection
    QVERIFY(m_pRig->control().selectScreens(A, {}));
    move(command, {64});
    QVERIFY(log.contains("T-Bar Error: there is no screens can stop T-Bar task."));
    QVERIFY(log.contains("T-Bar status: stopped."));
    // The screens that had begun are taken all the same.
    QVERIFY(waitState(State::Normal));
    QCOMPARE(program(), QStringList(QStringLiteral("next")));

    QVERIFY(m_pRig->control().selectScreens(A, {Stage}));
    move(command, {-32});
    QVERIFY(m_pRig->control().activateDevice(QString()));
    log.clear();
    move(command, {-1});
    QVERIFY(log.contains("T-Bar Error: Device is nullptr."));
    QVERIFY(log.contains("T-Bar status: stopped."));
}

void TestTBar::aSweepEndsAtTheRightScenesWithEveryEcho()
{
    // A position each millisecond, through the decoder, as a fast hand would move the lever.
    std::vector<quint32> expected;
    const auto sweep = [&](int first, int last, quint8 direction) {
        auto next = std::chrono::steady_clock::now();
        for (int value = first; value != last + (last > first ? 1 : -1); value += last > first ? 1 : -1) {
            std::this_thread::sleep_until(next += 1ms);
            m_pRig->console().tbar(quint32(value), direction);
            expected.push_back(value <= 1 ? 0 : quint32(value) * 12 / 64);
        }
        return m_pRig->console().settle();
    };
    auto scene = show();
    scene.devices[0].swap = true;
    QVERIFY(m_pRig->load(scene));
    m_pRig->console().takeRequests();

    QVERIFY(sweep(2, 64, BottomToTop));
    QVERIFY(QTest::qWaitFor([&] { return program() == QStringList(QStringLiteral("next")); }));
    QVERIFY(waitState(State::Normal));
    QVERIFY(sweep(63, 1, TopToBottom));
    QVERIFY(QTest::qWaitFor([&] { return program() == QStringList(QStringLiteral("present")); }));
    QVERIFY(waitState(State::Normal));
    // Nearly there and back: nothing changes.
    QVERIFY(sweep(2, 63, BottomToTop));
    QVERIFY(waitState(State::Tbar_taking));
    QVERIFY(sweep(62, 1, BottomToTop));
    QVERIFY(waitState(State::Normal));
    QCOMPARE(program(), QStringList(QStringLiteral("present")));

    QCOMPARE(m_pRig->console().takeTBarLevels(), expected);
    QCOMPARE(progress().size(), int(expected.size()));
    QCOMPARE(m_pRig->console().unreadableRequests(), quint64(0));
}

QTEST_MAIN(TestTBar)
#include "tst_tbar.moc"

#include "downdecoder.h"
#include "logcapture.h"
#include "screenscene.h"

#include "ecmanager.h"

#include <QDialog>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ScreenScene;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using TestSupport::LogCapture;

namespace {

const QString A = QStringLiteral("A");

/// A busy machine may take its time over many steps.
constexpr int StepsMs = 30000;
/// Labels that came after a release was handled would come within this time.
constexpr int QuietMs = 400;

} // namespace

/// The transition time keys: a step on the press, repeats while held, the model told on the release.
class TestTransitionTime : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_pRig.reset(); }

    void oneStepWrapsAtBothEnds_data();
    void oneStepWrapsAtBothEnds();
    void holdingRepeatsFasterAndFasterAndReleasingWritesOnce();
    void theReleaseEndsTheRepeatForGood();
    void theOtherKeyTurnsTheDirection();
    void anAuxScreensTimeIsNotWritten();
    void aReleaseWithoutAHoldWritesNothing();
    void aDialogThatOpensWhileAKeyIsHeldDoesNotKeepItHeld();
    void aKeypadLockedDuringAHoldKeepsItGoing();
    void withoutAnActiveScreenTheLabelsAreBlank();

private:
    using Clock = std::chrono::steady_clock;
    struct Step {
        QString text;
        Clock::time_point time;
    };

    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    QString label(quint16 key) { return console().label(Label + key); }
    /// What the label of the up key was told, and when.
    std::vector<Step> steps() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_steps;
    }
    void watchLabel();

    std::unique_ptr<TestSupport::ModelRig> m_pRig;

    // m_mutex guards m_steps.
    mutable std::mutex m_mutex;
    std::vector<Step> m_steps;
};

void TestTransitionTime::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
    ECManager::instance()->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
        const auto read = ConsolePanel::decodeDown(datagram.constData(), datagram.size());
        const auto* down = std::get_if<ConsolePanel::DownDatagram>(&read);
        const auto* text = down ? std::get_if<ECOLEDText>(&down->message) : nullptr;
        if (text && text->ECKey == Label + TimeUp) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_steps.push_back({QString::fromLatin1(text->OledText), Clock::now()});
        }
        return true;
    });
}

void TestTransitionTime::init()
{
    ECManager::instance()->unlockKeypad();
    QVERIFY(m_pRig->load(show()));
    m_pRig->forget();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_steps.clear();
}

void TestTransitionTime::oneStepWrapsAtBothEnds_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<quint16>("key");
    QTest::addColumn<QString>("after");
    const auto row = [](const char* name, double before, Key key, const char* after) {
        QTest::newRow(name) << before << quint16(key) << QString::fromLatin1(after);
    };
    row("up", 0.5, TimeUp, "0.6");
    row("up to the top", 9.9, TimeUp, "10.0");
    row("up from the top", 10.0, TimeUp, "0.1");
    row("up from what rounds to the top", 9.96, TimeUp, "0.1");
    row("down", 2.6, TimeDown, "2.5");
    row("down to the bottom", 0.2, TimeDown, "0.1");
    row("down from the bottom", 0.1, TimeDown, "10.0");
    row("down from nothing", 0.0, TimeDown, "10.0");
}

void TestTransitionTime::oneStepWrapsAtBothEnds()
{
    QFETCH(double, before);
    QFETCH(quint16, key);
    QFETCH(QString, after);
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, before));
    const LogCapture log;
    console().takeRequests();
    console().tap(key); // at once, or a busy machine sees it repeat
    QVERIFY(console().settle());
    const auto requests = console().takeRequests();
    QVERIFY(requests.size() >= 2);
    const auto* lit = std::get_if<ECButtonColor>(&requests.at(0).message);
    const auto* shown = std::get_if<ECOLEDText>(&requests.at(1).message);
    QVERIFY(lit && lit->ECKey == key && lit->G == 255 && lit->R == 0);
    QVERIFY(shown && shown->ECKey == Label + key);
    QCOMPARE(QString::fromLatin1(shown->OledText), after);
    QVERIFY(log.contains("IncreaseEffectTime speedStr= :" + after));
    QVERIFY(console().shows(key, ECLEDColor::Off));
    QCOMPARE(m_pRig->asked(Operation::UpdateEffectSpeed).size(), 1);
    QCOMPARE(m_pRig->screen(A, Stage)->switchEffectTime(), after.toDouble());
    // Both keys show it, once the model has told.
    QVERIFY(console().waitLabel(Label + TimeUp, after));
    QVERIFY(console().waitLabel(Label + TimeDown, after));
}

void TestTransitionTime::holdingRepeatsFasterAndFasterAndReleasingWritesOnce()
{
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 5.0));
    console().press(TimeUp);
    QVERIFY(QTest::qWaitFor([&] { return steps().size() >= 20; }, StepsMs));
    console().release(TimeUp);
    QVERIFY(console().settle());
    const auto seen = steps();
    const std::chrono::milliseconds intervals[] = {350ms, 250ms, 150ms, 50ms, 10ms, 10ms};
    // The first entry is what setEffectTime() announced.
    for (std::size_t i = 0; i < std::size(intervals); ++i) {
        QCOMPARE(seen.at(i + 1).text, QString::number(5.1 + 0.1 * double(i), 'f', 1));
        QVERIFY2(seen.at(i + 2).time - seen.at(i + 1).time >= intervals[i], qPrintable(QString::number(i)));
    }
    // A busy machine delays one or the other of the fast steps, but not all.
    auto shortest = seen.at(6).time - seen.at(5).time;
    for (std::size_t i = 6; i < seen.size(); ++i)
        shortest = std::min(shortest, seen.at(i).time - seen.at(i - 1).time);
    QVERIFY(shortest < 40ms);

    const QStringList written = m_pRig->asked(Operation::UpdateEffectSpeed);
    QCOMPARE(written.size(), 1);
    const double seconds = m_pRig->screen(A, Stage)->switchEffectTime();
    QVERIFY(seconds >= 6.0);
    QCOMPARE(seconds, std::round(seconds * 10) * 0.1);
    QVERIFY(console().waitLabel(Label + TimeUp, QString::number(seconds, 'f', 1)));
}

void TestTransitionTime::theReleaseEndsTheRepeatForGood()
{
    // Into the fast repeat, where a release is most likely to meet a running step; then many short holds.
    for (int i = 0; i < 3; ++i) {
        console().press(TimeUp);
        const std::size_t before = steps().size();
        QVERIFY(QTest::qWaitFor([&] { return steps().size() > before + 15; }, StepsMs));
        console().release(TimeUp);
    }
    for (int i = 0; i < 200; ++i) {
        console().tap(TimeUp);
        console().tap(TimeDown);
    }
    QVERIFY(console().settle());
    const QString shown = QString::number(m_pRig->screen(A, Stage)->switchEffectTime(), 'f', 1);
    QVERIFY(console().waitLabel(Label + TimeUp, shown));
    const std::size_t count = steps().size();
    QVERIFY(!QTest::qWaitFor([&] { return steps().size() != count; }, QuietMs));
    QCOMPARE(m_pRig->asked(Operation::UpdateEffectSpeed).size(), 403);
}

void TestTransitionTime::theOtherKeyTurnsTheDirection()
{
    QVERIFY(m_pRig->control().setEffectTime(A, Stage, 5.0));
    console().press(TimeUp);
    console().press(TimeDown);
    // The up key counts no further, although it is still held.
    QVERIFY(QTest::qWaitFor([&] { return label(TimeDown).toDouble() < 4.75; }, StepsMs));
    QCOMPARE(label(TimeUp), QStringLiteral("5.1"));
    console().release(TimeDown);
    console().release(TimeUp);
    QVERIFY(console().settle());
    QCOMPARE(m_pRig->asked(Operation::UpdateEffectSpeed).size(), 1);
    QVERIFY(m_pRig->screen(A, Stage)->switchEffectTime() < 4.75);
}

void TestTransitionTime::anAuxScreensTimeIsNotWritten()
{
    QVERIFY(m_pRig->control().setEffectTime(A, Confidence, 3.0));
    QVERIFY(m_pRig->control().activateScreen(A, Confidence));
    QCOMPARE(label(TimeUp), QStringLiteral("3.0"));
    console().press(TimeUp);
    QVERIFY(QTest::qWaitFor([&] { return label(TimeUp) != QLatin1String("3.0"); }));
    console().release(TimeUp);
    QVERIFY(console().waitLabel(Label + TimeUp, QStringLiteral("3.0")));
    QVERIFY(m_pRig->asked(Operation::UpdateEffectSpeed).isEmpty());
}

void TestTransitionTime::aReleaseWithoutAHoldWritesNothing()
{
    QDialog dialog;
    dialog.open();
    console().press(TimeUp); // refused, for a dialog is open
    console().release(TimeUp);
    QVERIFY(console().settle());
    QVERIFY(console().shows(TimeUp, ECLEDColor::Off));
    QVERIFY(m_pRig->asked(Operation::UpdateEffectSpeed).isEmpty());
    QCOMPARE(label(TimeUp), QStringLiteral("0.1"));
}

void TestTransitionTime::aDialogThatOpensWhileAKeyIsHeldDoesNotKeepItHeld()
{
    console().press(TimeUp);
    QVERIFY(console().settle());
    QDialog dialog;
    dialog.open();
    console().release(TimeUp);
    QVERIFY(console().settle());
    QVERIFY(console().shows(TimeUp, ECLEDColor::Off));
    QCOMPARE(m_pRig->asked(Operation::UpdateEffectSpeed).size(), 1);
}

void TestTransitionTime::aKeypadLockedDuringAHoldKeepsItGoing()
{
    console().press(TimeUp);
    QVERIFY(console().settle());
    ECManager::instance()->lockKeypad();
    console().release(TimeUp);
    QVERIFY(console().settle());
    QVERIFY(QTest::qWaitFor([&] { return label(TimeUp).toDouble() > 0.35; }, StepsMs));
    QVERIFY(m_pRig->asked(Operation::UpdateEffectSpeed).isEmpty());
    ECManager::instance()->unlockKeypad();
    console().tap(TimeUp);
    QVERIFY(console().settle());
    QCOMPARE(m_pRig->screen(A, Stage)->switchEffectTime(), 0.2);
    const std::size_t count = steps().size();
    QVERIFY(!QTest::qWaitFor([&] { return steps().size() > count + 1; }, QuietMs));
}

void TestTransitionTime::withoutAnActiveScreenTheLabelsAreBlank()
{
    auto scene = show();
    scene.devices[0].activeScreen = {};
    QVERIFY(m_pRig->load(scene));
    QCOMPARE(label(TimeUp), QString());
    const LogCapture log;
    console().tap(TimeDown);
    QVERIFY(console().settle());
    QVERIFY(log.contains("Effect time error: No active screen!"));
    QCOMPARE(label(TimeDown), QString());
    QVERIFY(m_pRig->asked(Operation::UpdateEffectSpeed).isEmpty());
}

QTEST_MAIN(TestTransitionTime)
#include "tst_transitiontime.moc"

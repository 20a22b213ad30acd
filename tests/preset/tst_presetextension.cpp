#include "cuelog.h"
#include "logcapture.h"
#include "presetscene.h"

#include <QThread>

using namespace PresetScene;
using TestSupport::LogCapture;

namespace {

std::shared_ptr<Command> presetKeys()
{
    return ECManager::instance()->presetCommand().lock();
}

/// Notes every call and whether it came on the application's thread.
class Witness : public IPresetCommandEx {
public:
    QString name() const override { return "Witness"; }
    bool selectPresetPressed(const quint32& ecKey) override { return note("pressed", ecKey); }
    bool selectPresetRelease(const quint32& ecKey) override { return note("released", ecKey); }
    bool isBindProgram(const quint32& ecKey) override { return note("bound?", ecKey); }
    bool clearPresetsPressed() override { return note("clear", 0); }
    bool takePressed(const quint32& ecKey) override { return note("take", ecKey); }
    bool cutPressed(const quint32& ecKey) override { return note("cut", ecKey); }
    void ecTBarChanged(const ECTBarValue& value) override { note("tbar", value.Value); }
    void updatePageIndex() override
    {
        IPresetCommandEx::updatePageIndex();
        note("page", quint32(page()));
    }

    // Touched on the application's thread alone.
    QStringList calls;
    bool isElsewhere = false;

private:
    bool note(const char* call, quint32 argument)
    {
        if (QThread::currentThread() != qApp->thread())
            isElsewhere = true; // a race, and a failure
        else
            calls.append(QString("%1 %2").arg(QLatin1String(call)).arg(argument));
        return true;
    }
};

struct Position {
    quint32 value;
    quint8 direction;
};

} // namespace

Q_DECLARE_METATYPE(QList<Position>)

/// Further extensions of the preset keys, the example among them.
class TestPresetExtension : public PresetTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void keysReachExtensionsOnTheApplicationsThread()
    {
        LogCapture log;
        presetKeys()->registerPresetCommand(nullptr); // changes nothing
        QVERIFY(log.contains("pPresetCmd is null"));
        CueLog example;
        QVERIFY(example.attach());
        Witness witness;
        attach(witness);
        QVERIFY(tap({keyOf(2), PageDown, keyOf(4)}));
        QVERIFY(waitLoaded(3));
        m_pRig->control().showPresetPage(3);
        QVERIFY(tap(Take));
        QVERIFY(QTest::qWaitFor(
            [&] { return m_pRig->screen(A, Stage)->state() == BizModel::Screen::State::Normal; }));
        QVERIFY(tap(Cut));
        QCOMPARE(
            witness.calls,
            (QStringList{
                "pressed 3", "bound? 3", "released 3", "page 1", "pressed 5", "bound? 5", "released 5",
                "page 3", "take 40", "cut 41"}));
        QVERIFY(!witness.isElsewhere);
        QCOMPARE(example.cues(), (QStringList{"preset 3", "preset 15", "take", "cut"}));
    }

    void theConsoleDoesNotWaitForExtensions()
    {
        CueLog example;
        QVERIFY(example.attach());
        Witness witness;
        attach(witness);
        for (const quint16 key : {keyOf(2), quint16(PageDown), keyOf(11)})
            console().tap(key);
        QVERIFY(console().settleWithoutEventLoop()); // as when the application is busy
        QCOMPARE(mode(), PresetOptMode::Noting); // the loads are through
        QVERIFY(witness.calls.isEmpty());
        // What comes on the application's own thread comes after what waits.
        m_pRig->control().showPresetPage(2);
        QCOMPARE(
            witness.calls,
            (QStringList{
                "pressed 3", "bound? 3", "released 3", "page 1", "pressed 2", "bound? 2", "released 2",
                "page 2"}));
        QCOMPARE(example.cues(), (QStringList{"preset 3", "preset 12"})); // by the page of the press
        QVERIFY(waitLoaded(12));
    }

    void aRegisteredExtensionHearsThePresentPageAndNoEarlierKey()
    {
        m_pRig->control().showPresetPage(2);
        Witness early;
        presetKeys()->registerPresetCommand(&early);
        QCOMPARE(early.calls, QStringList{"page 2"});
        console().tap(keyOf(2));
        QVERIFY(console().settleWithoutEventLoop());
        Witness late;
        presetKeys()->registerPresetCommand(&late);
        QVERIFY(console().settle());
        QCOMPARE(early.calls, (QStringList{"page 2", "pressed 3", "bound? 3", "released 3"}));
        QCOMPARE(late.calls, QStringList{"page 2"});

        LogCapture log;
        presetKeys()->registerPresetCommand(&late);
        QVERIFY(log.contains("Preset extension Witness refused: it is registered already."));
        QVERIFY(tap(keyOf(3)));
        QCOMPARE(late.calls.size(), 4); // once each
    }

    void aClearReachesEveryExtension()
    {
        Witness first;
        Witness second;
        attach(first);
        attach(second);
        QVERIFY(tap(Constants::VirtualKeyOffset + TestSupport::appNumber(ClearAll)));
        QVERIFY(first.calls.isEmpty());
        m_pRig->control().answerMessageBox(QMessageBox::Yes);
        QTRY_VERIFY(presets().isEmpty());
        QCOMPARE(first.calls, QStringList{"clear 0"});
        QCOMPARE(second.calls, QStringList{"clear 0"});
    }

    void theTBarIsToldWhenItLeavesAnEnd_data()
    {
        QTest::addColumn<QList<Position>>("positions");
        QTest::addColumn<QStringList>("told");
        const QString tbar = "tbar %1";
        // Every row ends in the middle, from where nothing is told; 0 begins it.
        QTest::newRow("from nothing") << QList<Position>{{5, BottomToTop}} << QStringList{tbar.arg(5)};
        QTest::newRow("from the bottom, up")
            << QList<Position>{{1, TopToBottom}, {1, BottomToTop}, {2, BottomToTop}, {3, BottomToTop}}
            << QStringList{tbar.arg(1), tbar.arg(2)};
        QTest::newRow("from the bottom, the wrong way")
            << QList<Position>{{1, TopToBottom}, {2, TopToBottom}} << QStringList{tbar.arg(1)};
        QTest::newRow("from the top, down")
            << QList<Position>{{64, BottomToTop}, {64, TopToBottom}, {63, TopToBottom}, {62, TopToBottom}}
            << QStringList{tbar.arg(64), tbar.arg(63)};
        QTest::newRow("from the top, the wrong way")
            << QList<Position>{{64, BottomToTop}, {63, BottomToTop}} << QStringList{tbar.arg(64)};
        QTest::newRow("through the middle")
            << QList<Position>{{30, BottomToTop}, {64, BottomToTop}, {30, TopToBottom}, {1, TopToBottom}}
            << QStringList{tbar.arg(30), tbar.arg(30)};
    }
    void theTBarIsToldWhenItLeavesAnEnd()
    {
        QFETCH(QList<Position>, positions);
        QFETCH(QStringList, told);
        QVERIFY(moveTBar(0));
        Witness witness;
        attach(witness);
        for (const Position& position : positions)
            console().tbar(position.value, position.direction);
        QVERIFY(console().settle());
        QCOMPARE(witness.calls, told);
        QVERIFY(!witness.isElsewhere);
        QVERIFY(moveTBar(1, TopToBottom)); // the screens' transition goes back
    }

    void aLockedTBarIsNotTold_data()
    {
        QTest::addColumn<bool>("keypad");
        QTest::newRow("keypad") << true;
        QTest::newRow("T-Bar") << false;
    }
    void aLockedTBarIsNotTold()
    {
        QFETCH(bool, keypad);
        ECManager* manager = ECManager::instance();
        QVERIFY(moveTBar(0));
        Witness witness;
        attach(witness);
        keypad ? manager->lockKeypad() : manager->lockTBar();
        QVERIFY(moveTBar(20));
        keypad ? manager->unlockKeypad() : manager->unlockTBar();
        QVERIFY(moveTBar(21));
        // A locked keypad keeps the position from every command; a locked T-Bar is only remembered.
        QCOMPARE(witness.calls, keypad ? QStringList{"tbar 21"} : QStringList());
        QVERIFY(moveTBar(1, TopToBottom));
    }

    void anExtensionMayGoAtAnyTime()
    {
        auto first = std::make_unique<Witness>();
        Witness second;
        attach(*first);
        attach(second);
        console().press(keyOf(2));
        QVERIFY(console().settleWithoutEventLoop());
        first.reset(); // while a call is on its way
        QVERIFY(console().settle());
        console().release(keyOf(2));
        QVERIFY(console().settle());
        QCOMPARE(second.calls.size(), 3);
        QVERIFY(waitLoaded(3));
    }

private:
    /// Registers it; what it is told of at once is another test's.
    static void attach(Witness& witness)
    {
        presetKeys()->registerPresetCommand(&witness);
        witness.calls.clear();
    }
    bool moveTBar(quint32 value, quint8 direction = BottomToTop)
    {
        console().tbar(value, direction);
        return console().settle();
    }
};

QTEST_MAIN(TestPresetExtension)
#include "tst_presetextension.moc"

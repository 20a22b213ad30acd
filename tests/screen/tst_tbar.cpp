#include "logcapture.h"
#include "screenscene.h"

#include <QDialog>

using namespace ScreenScene;
using TestSupport::LogCapture;

/// The T-Bar: what is sampled, when a transition starts and ends, what the LEDs beside the lever show.
class TestTBar : public ScreenTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void positionsBecomeProgress_data()
    {
        QTest::addColumn<QList<int>>("positions");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<int>("refused");
        QTest::addColumn<int>("started");
        QTest::addColumn<int>("stopped");
        using Positions = QList<int>;
        using Progress = QStringList;
        QTest::newRow("up to the end")
            << Positions{2, 32, 64} << Progress{"0.03125", "0.5", "1"} << 0 << 1 << 1;
        QTest::newRow("down to the end")
            << Positions{-63, -32, -1} << Progress{"0.015625", "0.5", "1"} << 0 << 1 << 1;
        QTest::newRow("up and back") << Positions{32, 1} << Progress{"0.5", "0"} << 0 << 1 << 1;
        QTest::newRow("down and back") << Positions{-32, -64} << Progress{"0.5", "0"} << 0 << 1 << 1;
        QTest::newRow("a first position at the start ends at once")
            << Positions{1} << Progress{"0"} << 0 << 1 << 1;
        QTest::newRow("the same position again")
            << Positions{32, 32, 33} << Progress{"0.5", "0.515625"} << 1 << 1 << 0;
        QTest::newRow("the same position in the other direction")
            << Positions{32, -32} << Progress{"0.5"} << 1 << 1 << 0;
        QTest::newRow("out of range")
            << Positions{65, 32, 1000, 33} << Progress{"0.5", "0.515625"} << 2 << 1 << 0;
        QTest::newRow("zero at first is a repetition") << Positions{0} << Progress{} << 1 << 0 << 0;
        QTest::newRow("zero ends a transition") << Positions{32, 0} << Progress{"0.5", "0"} << 0 << 1 << 1;
        QTest::newRow("one after the other")
            << Positions{32, 64, -63, -1} << Progress{"0.5", "1", "0.015625", "1"} << 0 << 2 << 2;
    }
    void positionsBecomeProgress()
    {
        QFETCH(QList<int>, positions);
        const LogCapture log;
        ScreenCommand command;
        move(command, positions);
        QTEST(progress(), "expected");
        QTEST(log.count("T-Bar Error: T-Bar value out of range, cur value is "), "refused");
        QTEST(log.count("T-Bar status: started."), "started");
        QTEST(log.count("T-Bar status: stopped."), "stopped");
    }

    void everyPositionIsEchoed()
    {
        ScreenCommand command;
        // Also those that are refused: a repetition and one beyond the end.
        move(command, {0, 1, 2, 5, 6, 32, 32, 63, 64, 65});
        const std::vector<quint32> expected{0, 0, 0, 0, 1, 6, 6, 11, 12, 12};
        QCOMPARE(console().takeTBarLevels(), expected);
        move(command, {-40});
        const auto down = console().takeRequests();
        QCOMPARE(std::get<ECTBarValue>(down.at(0).message).IsBottomToTop, TopToBottom);
    }

    void whileLockedPositionsAreOnlyRemembered()
    {
        ScreenCommand command;
        move(command, {32});
        for (const bool keypad : {true, false}) {
            const LogCapture log;
            if (keypad)
                ECManager::instance()->lockKeypad();
            else
                ECManager::instance()->lockTBar();
            m_rig.forget();
            // An end that is reached while locked does not end the transition.
            move(command, {40, 64});
            const QString line = "T-Bar Error: : T-Bar is started 1, T-Bar is locked %1, Panel is locked %2.";
            QVERIFY(log.contains(line.arg(!keypad).arg(keypad)));
            ECManager::instance()->unlockKeypad();
            ECManager::instance()->unlockTBar();
            move(command, {64, 63}); // the first is remembered: a repetition
            QCOMPARE(progress(), QStringList("0.984375"));
            QVERIFY(!log.contains("T-Bar status:"));
        }
    }

    void aRefusedStartIsTriedAgainWithTheNextPosition()
    {
        ScreenCommand command;
        const LogCapture log;
        {
            QDialog dialog;
            dialog.setObjectName("question");
            dialog.open();
            move(command, {10});
            QVERIFY(log.contains("T-Bar Error: There is a active widget, can not start T-Bar.question"));
        }
        QVERIFY(control().selectScreens(A, {}));
        move(command, {11});
        QVERIFY(log.contains("T-Bar Error: there is no screens can execute T-Bar task."));
        QVERIFY(control().activateDevice({}));
        move(command, {12});
        QVERIFY(log.contains("T-Bar Error: current actived device is nullptr."));
        QVERIFY(control().activateDevice(A) && control().selectScreens(A, {Stage}));
        QVERIFY(control().setScreenState(A, Side, State::Taking));
        move(command, {13});
        QVERIFY(log.contains("T-Bar Error: Please wait for last take finished."));
        QVERIFY(control().setScreenState(A, Side, State::Normal));
        fail(Operation::SetSamplingType);
        move(command, {14});
        QVERIFY(log.contains("T-Bar Error: sampling failed."));
        QVERIFY(progress().isEmpty());
        move(command, {15});
        QCOMPARE(progress().size(), 1);
    }

    void aDeviceThatGoesEndsTheTransition()
    {
        ScreenCommand command;
        const LogCapture log;
        move(command, {32});
        QVERIFY(waitState(State::Tbar_taking)); // the sampling has begun with the selection
        QVERIFY(control().selectScreens(A, {}));
        move(command, {64});
        QVERIFY(log.contains("T-Bar Error: there is no screens can stop T-Bar task."));
        QCOMPARE(log.count("T-Bar status: stopped."), 1);
        // The screens that had begun are taken all the same.
        QVERIFY(waitState(State::Normal));
        QCOMPARE(layer(SceneType::PGM), QString("next"));

        QVERIFY(control().selectScreens(A, {Stage}));
        move(command, {-32});
        QVERIFY(control().activateDevice({}));
        move(command, {-1});
        QVERIFY(log.contains("T-Bar Error: Device is nullptr."));
        QCOMPARE(log.count("T-Bar status: stopped."), 2);
    }

private:
    /// The progress values that were handed to the sampling thread.
    QStringList progress() const
    {
        QStringList values;
        for (const QString& arguments : m_rig.requested(Operation::SampleTBar))
            values.append(arguments.section("process=", 1));
        return values;
    }
    /// Positions downwards are negative.
    void move(ScreenCommand& command, const QList<int>& positions)
    {
        for (const int each : positions) {
            ECTBarValue value;
            value.Value = quint32(std::abs(each));
            value.IsBottomToTop = each < 0 ? TopToBottom : BottomToTop;
            command.slotECTBarChanged(value);
        }
    }
};

QTEST_MAIN(TestTBar)
#include "tst_tbar.moc"

#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has screens on the first four select keys; the first is
// selected and active.
constexpr int FirstScreenKey = 1;
constexpr int SecondScreenKey = 2;
constexpr int FreeScreenKey = 5;
constexpr int PageKey = 10;
constexpr int FreezeKey = 11;
constexpr int MatchKey = 12;
constexpr int FTBKey = 13;
constexpr int CutKey = 14;
constexpr int TakeKey = 15;
constexpr int TimeUpKey = 17;
constexpr int SwapKey = 19;
constexpr int PGMEditKey = 20;

const QString FirstScreen = "regular:1";
const QString SecondScreen = "regular:2";

} // namespace

/// Screens and the T-Bar worked from the console, with the in-memory model in the host's process.
class ScreenSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void selectKeySelectsAndDeselects()
    {
        for (const char* label : {"oled 512 \"Main wall\"", "oled 513 \"Side wall\"", "oled 521 \"Fade\""})
            QVERIFY(m_console->expect(label));
        QVERIFY(lights(SecondScreenKey, "yellow"));
        QVERIFY(lights(FreeScreenKey, "off"));
        tap(SecondScreenKey);
        QVERIFY(lights(SecondScreenKey, "green"));
        QVERIFY(lights(FirstScreenKey, "green")); // the device allows several
        QTRY_VERIFY_WITH_TIMEOUT(second("active").toBool(), PatienceMs);
        tap(SecondScreenKey);
        QVERIFY(lights(SecondScreenKey, "yellow"));
        QTRY_VERIFY_WITH_TIMEOUT(!second("selected").toBool(), PatienceMs);
        QVERIFY(second("active").toBool());
    }

    void takeBringsThePreviewToProgramInItsTime()
    {
        selectSecondScreen();
        const QJsonValue preview = second("pvw");
        const QJsonValue program = second("pgm");
        QVERIFY(isDone("setEffectTime", {{"screen", SecondScreen}, {"seconds", 3}}));
        tap(TakeKey);
        QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Taking,please wait..."}}));
        QCOMPARE(second("state"), QJsonValue("taking"));
        QCOMPARE(second("pgm"), program);
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QTRY_COMPARE_WITH_TIMEOUT(second("state"), QJsonValue("normal"), PatienceMs);
        QCOMPARE(second("pgm"), preview);
        QVERIFY(lights(TakeKey, "off"));
    }

    void takeRunningRefusesSelectKeysWithANotice()
    {
        tap(TakeKey); // one second: the longest without a waiting dialog
        tap(SecondScreenKey);
        QVERIFY(m_host->tells(
            "statusBarMessage", {{"type", "warning"}, {"text", "Taking,please wait..."}, {"ms", 3000}}));
        tap(TakeKey); // nor does a second take begin
        QVERIFY(m_host->waitForLog("Take operator error:takeCutNotEnabled."));
        QVERIFY(lights(SecondScreenKey, "yellow"));
    }

    void takeWithNothingSelectedIsRefused()
    {
        QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{}}}));
        press(TakeKey);
        QVERIFY(m_host->waitForLog("Take operator error:takeCutNotEnabled."));
        QVERIFY(lights(TakeKey, "off"));
    }

    void cutAndMatchActAtOnce()
    {
        selectSecondScreen();
        const QJsonValue program = second("pgm");
        press(MatchKey);
        QVERIFY(lights(MatchKey, "green"));
        QTRY_COMPARE_WITH_TIMEOUT(second("pvw"), program, PatienceMs);
        release(MatchKey);
        QVERIFY(lights(MatchKey, "off"));

        QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{FirstScreen}}}));
        const QJsonValue preview = screen(FirstScreen).value("pvw");
        tap(CutKey);
        QVERIFY(lights(CutKey, "off"));
        QTRY_COMPARE_WITH_TIMEOUT(
            screen(FirstScreen).value("pgm").toArray().size(), preview.toArray().size(), PatienceMs);
    }

    void flagKeyIsLitWhileItsFlagIsOn_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QByteArray>("colour");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QJsonObject>("arguments");
        const QJsonObject ofScreen = {{"screen", FirstScreen}};
        QTest::newRow("freeze") << FreezeKey << QByteArray("red") << "setFreeze" << ofScreen;
        QTest::newRow("FTB") << FTBKey << QByteArray("green") << "setFTB" << ofScreen;
        QTest::newRow("PGM edit") << PGMEditKey << QByteArray("green") << "setPGMEdit" << ofScreen;
        QTest::newRow("swap") << SwapKey << QByteArray("green") << "setSwap" << QJsonObject();
    }

    void flagKeyIsLitWhileItsFlagIsOn()
    {
        QFETCH(int, key);
        QFETCH(QByteArray, colour);
        QFETCH(QString, command);
        QFETCH(QJsonObject, arguments);
        tap(key);
        QVERIFY(lights(key, colour));
        tap(key);
        QVERIFY(lights(key, "off"));
        // Whoever changes it.
        for (const bool on : {true, false}) {
            arguments.insert("on", on);
            QVERIFY(isDone(command, arguments));
            QVERIFY(lights(key, on ? colour : "off"));
        }
        constexpr int quickPresses = 10;
        for (int i = 0; i < quickPresses; ++i)
            tap(key);
        for (int i = 0; i < 2 + quickPresses; ++i)
            QVERIFY(m_host->tells("keyClicked"));
        QVERIFY(lights(key, "off"));
        QVERIFY(lights(key, "off for 200"));
    }

    void freeKeyMakesAScreen()
    {
        tap(FreeScreenKey);
        QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Adding screen,please wait..."}}));
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QVERIFY(lights(FreeScreenKey, "yellow"));
        QVERIFY(m_console->expect("oled 516 \"Screen 4\""));
        QTRY_VERIFY_WITH_TIMEOUT(screen("regular:4").value("active").toBool(), PatienceMs);
        QVERIFY(isDone("removeScreen", {{"screen", "regular:4"}}));
        QVERIFY(lights(FreeScreenKey, "off"));
        QVERIFY(m_console->expect("oled 516 \"\""));
    }

    void failedCreationLeavesTheKeyFreeAndASecondOneWaits()
    {
        QVERIFY(isDone("fail", {{"operation", "AsyncCreateScreen"}}));
        tap(FreeScreenKey);
        QVERIFY(m_host->tells("operation", {{"operation", "AsyncCreateScreen"}, {"phase", "requested"}}));
        QVERIFY(m_host->waitForLog("Crate reguler screen has failed."));
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QVERIFY(lights(FreeScreenKey, "off"));

        QVERIFY(isDone("setOnline", {{"on", false}})); // no waiting dialog in the way
        QVERIFY(isDone("delay", {{"operation", "AsyncCreateScreen"}, {"ms", 1000}}));
        tap(FreeScreenKey);
        tap(FreeScreenKey + 1);
        QVERIFY(m_host->waitForLog(" Screen is creating ..."));
        QVERIFY(lights(FreeScreenKey, "yellow"));
        QVERIFY(lights(FreeScreenKey + 1, "off"));
        QVERIFY(isDone("addScreen"));
        QVERIFY(lights(FreeScreenKey + 1, "yellow"));
    }

    void creationStopsAtTheLimit()
    {
        const auto count = [this] { return m_host->command("screens").value("screens").toArray().size(); };
        while (isDone("addScreen")) { }
        const int limit = count();
        tap(PageKey); // to the second page, where keys are free
        QVERIFY(m_console->expect("oled 520 \"Page 2\""));
        tap(FreeScreenKey + 1);
        QVERIFY(m_host->tells("statusBarMessage", {{"text", "The number of screens exceeds the limit!"}}));
        QCOMPARE(count(), limit);
    }

    void heldTimeKeyWritesItsTimeOnceOnRelease()
    {
        selectSecondScreen(); // 0.5 s
        press(TimeUpKey);
        QVERIFY(m_console->expect("oled 522 \"0.8\""));
        QCOMPARE(second("effectSeconds").toDouble(), 0.5);
        release(TimeUpKey);
        QVERIFY(lights(TimeUpKey, "off"));
        QTRY_VERIFY_WITH_TIMEOUT(second("effectSeconds").toDouble() >= 0.8, PatienceMs);
        int writes = 0;
        for (const QJsonObject& line : m_host->lines())
            writes += line.value("operation") == "updateEffectSpeed";
        QCOMPARE(writes, 1);
    }

    void tbarSweepEndsWithThePreviewInProgram()
    {
        selectSecondScreen();
        const QJsonValue preview = second("pvw");
        m_console->writeLine("tbar-sweep 1 40 up 40");
        QTRY_COMPARE_WITH_TIMEOUT(second("state"), QJsonValue("tbarTaking"), PatienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(second("progress").toDouble(), 0.625, PatienceMs);
        m_console->writeLine("tbar-sweep 41 64 up 24");
        QVERIFY(m_console->expect("tbar-level 12 up"));
        QTRY_COMPARE_WITH_TIMEOUT(second("state"), QJsonValue("normal"), PatienceMs);
        QCOMPARE(second("pgm"), preview);

        QVector<int> levels; // one echo a position, in order
        for (const QJsonObject& line : m_console->lines()) {
            if (line.value("name") == "UpdateTBarValue")
                levels.append(line.value("level").toInt());
        }
        QCOMPARE(levels.size(), 64);
        for (int position = 2; position <= 64; ++position)
            QCOMPARE(levels.at(position - 1), position * 12 / 64);
    }

    void lockedTBarMovesNothing()
    {
        selectSecondScreen();
        QVERIFY(isDone("lockTBar"));
        QVERIFY(m_console->expect("lock tbar on"));
        m_console->writeLine("tbar-sweep 1 64 up 64");
        QVERIFY(m_console->expect("tbar-level 12")); // the LEDs follow the lever all the same
        QCOMPARE(second("state"), QJsonValue("normal"));
        QVERIFY(second("pgm") != second("pvw"));
    }

    void withoutADeviceKeysAreDark()
    {
        const QString device = m_host->command("screens").value("device").toString();
        QVERIFY(isDone("removeDevice", {{"device", device}}));
        QVERIFY(lights(FirstScreenKey, "off"));
        QVERIFY(m_console->expect("oled 512 \"\""));
        tap(TakeKey);
        QVERIFY(m_host->waitForLog("Take operator error: active device is nullptr."));
        m_console->writeLine("tbar-sweep 1 64 up 64");
        QVERIFY(m_console->expect("tbar-level 12"));
    }

private:
    QJsonValue second(const char* member) { return screen(SecondScreen).value(member); }
    /// Selects the second screen alone: one output, a preview that is not its program.
    void selectSecondScreen()
    {
        QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{SecondScreen}}}));
        QVERIFY(isDone("activateScreen", {{"screen", SecondScreen}}));
        QVERIFY(second("pgm") != second("pvw"));
    }
};

QTEST_GUILESS_MAIN(ScreenSessionTest)
#include "tst_screensession.moc"

#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has screens on the first four select keys; the first is
// selected and active, and has two layers in its preview.
constexpr int FirstScreenKey = 1;
constexpr int SecondScreenKey = 2;
constexpr int FreeScreenKey = 5;
constexpr int TakeKey = 15;
constexpr int TimeUpKey = 17;
constexpr int FreeLayerKey = 23;
constexpr int ClearKey = 40;
constexpr int ThirdInputKey = 47;

const QString FirstScreen = "regular:1";
const QString SecondScreen = "regular:2";

} // namespace

/// Screens, their layers and the T-Bar worked from the console, with the in-memory model in the host's
/// process.
class ScreenSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
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

    void freeKeyPlacesALayerOnTheNextOutput()
    {
        tap(FreeLayerKey);
        QVERIFY(lights(FreeLayerKey, "yellow"));
        QVERIFY(m_console->expect("oled 526 \"Layer 3\""));
        // Two layers are there: it is the first output's turn again, where one stands already.
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 3, PatienceMs);
        const QJsonArray window = layer(3).value("window").toArray();
        QVERIFY(window.at(0) == 60 && window.at(1) == 60);
        QCOMPARE(layer(3).value("input").toInt(), 1); // the first that is single-link and has a signal
    }

    void missingResourcesAndARunningTakeAreTold()
    {
        QVERIFY(isDone("fail", {{"operation", "CheckOperationResources"}, {"always", true}}));
        tap(FreeLayerKey);
        const QJsonObject notice = {{"type", "warning"}, {"text", "Not enough resources."}};
        QVERIFY(m_host->tells("statusBarMessage", notice));
        tap(ThirdInputKey);
        QVERIFY(m_host->tells("statusBarMessage", notice));
        QCOMPARE(layer(1).value("input").toInt(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(
            screen(FirstScreen).value("state").toString(), QString("normal"), PatienceMs);

        QVERIFY(isDone("setScreenState", {{"screen", FirstScreen}, {"state", "taking"}}));
        tap(FreeLayerKey);
        QVERIFY(m_host->tells(
            "statusBarMessage",
            {{"type", "error"},
             {"text", "The current operation cannot be completed during the screen taking."}}));
        QCOMPARE(preview().size(), 2);
    }

    void clearKeyMustBeHeldForThreeSeconds()
    {
        hold(ClearKey, 500);
        QVERIFY(lights(ClearKey, "off"));
        QCOMPARE(preview().size(), 2);
        press(ClearKey);
        QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Cleaning layers,please wait..."}}));
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 0, PatienceMs);
        QVERIFY(lights(ClearKey, "off")); // while it is still down
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
    QJsonArray preview() { return screen(FirstScreen).value("pvw").toArray(); }
    QJsonObject layer(int id)
    {
        for (const QJsonValue& one : preview()) {
            if (one.toObject().value("id") == id)
                return one.toObject();
        }
        return {};
    }
};

QTEST_GUILESS_MAIN(ScreenSessionTest)
#include "tst_screensession.moc"

#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has screens on the first four select keys; the first is
// selected and active.
constexpr int FirstScreenKey = 1;
constexpr int SecondScreenKey = 2;
constexpr int FreeScreenKey = 5;
constexpr int FreezeKey = 11;
constexpr int MatchKey = 12;
constexpr int FTBKey = 13;
constexpr int CutKey = 14;
constexpr int TakeKey = 15;
constexpr int TimeUpKey = 17;
constexpr int SwapKey = 19;
constexpr int PGMEditKey = 20;
constexpr char FreeScreenLabel[] = "oled 516";
constexpr char TimeUpLabel[] = "oled 522";

const QString FirstScreen = "regular:1";
const QString SecondScreen = "regular:2";

QByteArray led(int key, const char* look)
{
    return "led " + QByteArray::number(key) + ' ' + look;
}

} // namespace

/// Screens and the T-Bar worked from the console, with the in-memory model in the host's process.
class ScreenSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void consoleShowsTheScreensFromTheStart();
    void selectKeySelectsAndDeselects();
    void takeBringsThePreviewToProgramInItsTime();
    void longTakeShowsThatItWaits();
    void takeRunningRefusesSelectKeysWithANotice();
    void takeWithNothingSelectedIsRefused();
    void cutAndMatchActAtOnce();
    void flagKeyIsLitWhileItsFlagIsOn_data();
    void flagKeyIsLitWhileItsFlagIsOn();
    void freeKeyMakesAScreen();
    void failedCreationLeavesTheKeyFree();
    void secondCreationWaitsForTheFirst();
    void creationStopsAtTheLimit();
    void heldTimeKeyWritesItsTimeOnRelease();
    void tbarSweepEndsWithThePreviewInProgram();
    void lockedTBarMovesNothing();
    void withoutADeviceKeysAreDark();

private:
    QJsonObject screen(const QString& name) { return m_session->screen(name); }
    bool isDone(const char* command, const QJsonObject& arguments = {});
    /// Selects the second screen alone: one output, a preview that is not its program.
    void selectSecondScreen();

    std::unique_ptr<Session> m_session;
    Host* m_host = nullptr;
    Console* m_console = nullptr;
};

void ScreenSessionTest::init()
{
    m_session = std::make_unique<Session>();
    m_host = &m_session->host;
    m_console = &m_session->console;
    QVERIFY(m_session->start());
}

void ScreenSessionTest::cleanup()
{
    QVERIFY(m_session->end());
}

bool ScreenSessionTest::isDone(const char* command, const QJsonObject& arguments)
{
    return m_host->hasDone(command, arguments);
}

void ScreenSessionTest::selectSecondScreen()
{
    QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{SecondScreen}}}));
    QVERIFY(isDone("activateScreen", {{"screen", SecondScreen}}));
    QVERIFY(screen(SecondScreen).value("pgm") != screen(SecondScreen).value("pvw"));
}

void ScreenSessionTest::consoleShowsTheScreensFromTheStart()
{
    QVERIFY(m_console->expect("oled 512 \"Main wall\""));
    QVERIFY(m_console->expect("oled 513 \"Side wall\""));
    QVERIFY(m_console->expect(led(SecondScreenKey, "yellow")));
    QVERIFY(m_console->expect(led(FreeScreenKey, "off")));
    QVERIFY(m_console->expect(QByteArray(TimeUpLabel) + " \"1.0\""));
    QVERIFY(m_console->expect("oled 521 \"Fade\""));
}

void ScreenSessionTest::selectKeySelectsAndDeselects()
{
    m_console->tap(SecondScreenKey);
    QVERIFY(m_console->expect(led(SecondScreenKey, "green")));
    QVERIFY(m_console->expect(led(FirstScreenKey, "green"))); // the device allows several
    QTRY_VERIFY_WITH_TIMEOUT(screen(SecondScreen).value("active").toBool(), PatienceMs);
    m_console->tap(SecondScreenKey);
    QVERIFY(m_console->expect(led(SecondScreenKey, "yellow")));
    QTRY_VERIFY_WITH_TIMEOUT(!screen(SecondScreen).value("selected").toBool(), PatienceMs);
    QVERIFY(screen(SecondScreen).value("active").toBool());
}

void ScreenSessionTest::takeBringsThePreviewToProgramInItsTime()
{
    selectSecondScreen();
    const QJsonValue preview = screen(SecondScreen).value("pvw");
    const QJsonValue program = screen(SecondScreen).value("pgm");
    const auto hasState = [this](const char* state) {
        return QTest::qWaitFor(
            [=] { return screen(SecondScreen).value("state") == QLatin1String(state); }, PatienceMs);
    };
    QVERIFY(isDone("setEffectTime", {{"screen", SecondScreen}, {"seconds", 3}}));
    m_console->tap(TakeKey);
    QVERIFY(hasState("taking"));
    QCOMPARE(screen(SecondScreen).value("pgm"), program);
    QVERIFY(hasState("normal"));
    QCOMPARE(screen(SecondScreen).value("pgm"), preview);
    QVERIFY(m_console->expect(led(TakeKey, "off")));
}

void ScreenSessionTest::longTakeShowsThatItWaits()
{
    QVERIFY(isDone("setEffectTime", {{"screen", FirstScreen}, {"seconds", 2}}));
    m_console->tap(TakeKey);
    QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Taking,please wait..."}}));
    QVERIFY(m_host->tells("waitingDialogHidden"));
}

void ScreenSessionTest::takeRunningRefusesSelectKeysWithANotice()
{
    m_console->tap(TakeKey); // one second: the longest without a waiting dialog
    m_console->tap(SecondScreenKey);
    QVERIFY(m_host->tells(
        "statusBarMessage", {{"type", "warning"}, {"text", "Taking,please wait..."}, {"ms", 3000}}));
    m_console->tap(TakeKey); // nor does a second take begin
    QVERIFY(m_host->waitForLog("Take operator error:takeCutNotEnabled."));
    QVERIFY(m_console->expect(led(SecondScreenKey, "yellow")));
}

void ScreenSessionTest::takeWithNothingSelectedIsRefused()
{
    QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{}}}));
    m_console->writeLine("press " + QByteArray::number(TakeKey));
    QVERIFY(m_host->waitForLog("Take operator error:takeCutNotEnabled."));
    QVERIFY(m_console->expect(led(TakeKey, "off")));
}

void ScreenSessionTest::cutAndMatchActAtOnce()
{
    selectSecondScreen();
    const QJsonValue program = screen(SecondScreen).value("pgm");
    m_console->writeLine("press " + QByteArray::number(MatchKey));
    QVERIFY(m_console->expect(led(MatchKey, "green")));
    QTRY_COMPARE_WITH_TIMEOUT(screen(SecondScreen).value("pvw"), program, PatienceMs);
    m_console->writeLine("release " + QByteArray::number(MatchKey));
    QVERIFY(m_console->expect(led(MatchKey, "off")));

    QVERIFY(isDone("selectScreens", {{"screens", QJsonArray{FirstScreen}}}));
    const QJsonValue preview = screen(FirstScreen).value("pvw");
    m_console->tap(CutKey);
    QVERIFY(m_console->expect(led(CutKey, "off")));
    QTRY_COMPARE_WITH_TIMEOUT(
        screen(FirstScreen).value("pgm").toArray().size(), preview.toArray().size(), PatienceMs);
}

void ScreenSessionTest::flagKeyIsLitWhileItsFlagIsOn_data()
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

void ScreenSessionTest::flagKeyIsLitWhileItsFlagIsOn()
{
    QFETCH(int, key);
    QFETCH(QByteArray, colour);
    QFETCH(QString, command);
    QFETCH(QJsonObject, arguments);
    const auto lights = [&](const char* look) { return m_console->expect(led(key, look)); };
    m_console->tap(key);
    QVERIFY(lights(colour.constData()));
    m_console->tap(key);
    QVERIFY(lights("off"));
    // Whoever changes it.
    for (const bool on : {true, false}) {
        arguments.insert("on", on);
        QVERIFY(m_host->hasDone(command, arguments));
        QVERIFY(lights(on ? colour.constData() : "off"));
    }
    constexpr int quickPresses = 10;
    for (int i = 0; i < quickPresses; ++i)
        m_console->tap(key);
    for (int i = 0; i < 2 + quickPresses; ++i)
        QVERIFY(m_host->tells("keyClicked"));
    QVERIFY(lights("off"));
    QVERIFY(lights("off for 200"));
}

void ScreenSessionTest::freeKeyMakesAScreen()
{
    m_console->tap(FreeScreenKey);
    QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Adding screen,please wait..."}}));
    QVERIFY(m_host->tells("waitingDialogHidden"));
    QVERIFY(m_console->expect(led(FreeScreenKey, "yellow")));
    QVERIFY(m_console->expect(QByteArray(FreeScreenLabel) + " \"Screen 4\""));
    QTRY_VERIFY_WITH_TIMEOUT(screen("regular:4").value("active").toBool(), PatienceMs);
    QVERIFY(isDone("removeScreen", {{"screen", "regular:4"}}));
    QVERIFY(m_console->expect(led(FreeScreenKey, "off")));
    QVERIFY(m_console->expect(QByteArray(FreeScreenLabel) + " \"\""));
}

void ScreenSessionTest::failedCreationLeavesTheKeyFree()
{
    QVERIFY(isDone("fail", {{"operation", "AsyncCreateScreen"}}));
    m_console->tap(FreeScreenKey);
    QVERIFY(m_host->waitForLog("Crate reguler screen has failed."));
    QVERIFY(m_host->tells("waitingDialogHidden"));
    QVERIFY(m_console->expect(led(FreeScreenKey, "off")));
    m_console->tap(FreeScreenKey);
    QVERIFY(m_console->expect(led(FreeScreenKey, "yellow")));
}

void ScreenSessionTest::secondCreationWaitsForTheFirst()
{
    QVERIFY(isDone("setOnline", {{"on", false}})); // no waiting dialog in the way
    QVERIFY(isDone("delay", {{"operation", "AsyncCreateScreen"}, {"ms", 1000}}));
    m_console->tap(FreeScreenKey);
    m_console->tap(FreeScreenKey + 1);
    QVERIFY(m_host->waitForLog(" Screen is creating ..."));
    QVERIFY(m_console->expect(led(FreeScreenKey, "yellow")));
    QVERIFY(m_console->expect(led(FreeScreenKey + 1, "off")));
}

void ScreenSessionTest::creationStopsAtTheLimit()
{
    while (m_host->command("addScreen").value("event") == "done") { }
    const int count = m_host->command("screens").value("screens").toArray().size();
    m_console->writeLine("tap 10"); // to the second page, where keys are free
    QVERIFY(m_console->expect("oled 520 \"Page 2\""));
    m_console->tap(FreeScreenKey + 1);
    QVERIFY(m_host->tells("statusBarMessage", {{"text", "The number of screens exceeds the limit!"}}));
    QCOMPARE(m_host->command("screens").value("screens").toArray().size(), count);
}

void ScreenSessionTest::heldTimeKeyWritesItsTimeOnRelease()
{
    selectSecondScreen(); // 0.5 s
    m_console->writeLine("press " + QByteArray::number(TimeUpKey));
    QVERIFY(m_console->expect(QByteArray(TimeUpLabel) + " \"0.8\""));
    QCOMPARE(screen(SecondScreen).value("effectSeconds").toDouble(), 0.5);
    m_console->writeLine("release " + QByteArray::number(TimeUpKey));
    QVERIFY(m_console->expect(led(TimeUpKey, "off")));
    QTRY_VERIFY_WITH_TIMEOUT(screen(SecondScreen).value("effectSeconds").toDouble() >= 0.8, PatienceMs);
    int writes = 0;
    for (const QJsonObject& line : m_host->lines())
        writes += line.value("operation") == "updateEffectSpeed";
    QCOMPARE(writes, 1);
}

void ScreenSessionTest::tbarSweepEndsWithThePreviewInProgram()
{
    selectSecondScreen();
    const QJsonValue preview = screen(SecondScreen).value("pvw");
    m_console->writeLine("tbar-sweep 1 40 up 40");
    QTRY_COMPARE_WITH_TIMEOUT(
        screen(SecondScreen).value("state").toString(), QString("tbarTaking"), PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(screen(SecondScreen).value("progress").toDouble(), 0.625, PatienceMs);
    m_console->writeLine("tbar-sweep 41 64 up 24");
    QVERIFY(m_console->expect("tbar-level 12 up"));
    QTRY_COMPARE_WITH_TIMEOUT(screen(SecondScreen).value("state").toString(), QString("normal"), PatienceMs);
    QCOMPARE(screen(SecondScreen).value("pgm"), preview);

    QVector<int> levels; // one echo a position, in order
    for (const QJsonObject& line : m_console->lines()) {
        if (line.value("name") == "UpdateTBarValue")
            levels.append(line.value("level").toInt());
    }
    QCOMPARE(levels.size(), 64);
    for (int position = 2; position <= 64; ++position)
        QCOMPARE(levels.at(position - 1), position * 12 / 64);
}

void ScreenSessionTest::lockedTBarMovesNothing()
{
    selectSecondScreen();
    QVERIFY(isDone("lockTBar"));
    QVERIFY(m_console->expect("lock tbar on"));
    m_console->writeLine("tbar-sweep 1 64 up 64");
    QVERIFY(m_console->expect("tbar-level 12")); // the LEDs follow the lever all the same
    QCOMPARE(screen(SecondScreen).value("state").toString(), QString("normal"));
    QVERIFY(screen(SecondScreen).value("pgm") != screen(SecondScreen).value("pvw"));
}

void ScreenSessionTest::withoutADeviceKeysAreDark()
{
    const QString device = m_host->command("screens").value("device").toString();
    QVERIFY(isDone("removeDevice", {{"device", device}}));
    QVERIFY(m_console->expect(led(FirstScreenKey, "off")));
    QVERIFY(m_console->expect("oled 512 \"\""));
    m_console->tap(TakeKey);
    QVERIFY(m_host->waitForLog("Take operator error: active device is nullptr."));
    m_console->tap(FirstScreenKey);
    m_console->writeLine("tbar-sweep 1 64 up 64");
    QVERIFY(m_console->expect("tbar-level 12"));
    QVERIFY(m_console->expect(led(TakeKey, "off")));
}

QTEST_GUILESS_MAIN(ScreenSessionTest)
#include "tst_screensession.moc"

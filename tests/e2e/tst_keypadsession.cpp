#include "program.h"

#include <QTest>

namespace {

// Keys of the example keyboard.
constexpr int FirstDigit = 93;
constexpr int EnterKey = 103;
constexpr int BackKey = 104;
constexpr int UpKey = 105;
constexpr int DownKey = 106;
constexpr int ScreenKey = 1;
constexpr int NoKey = 999;
/// The on-screen console reports the application's number of a key, from here on.
constexpr int VirtualKeys = 0xFF0000;
constexpr int ApplicationNumberOffset = 1000;

QByteArray press(int key)
{
    return "press " + QByteArray::number(key);
}

QByteArray release(int key)
{
    return "release " + QByteArray::number(key);
}

QByteArray led(int key, const char* look)
{
    return "led " + QByteArray::number(key) + ' ' + look;
}

} // namespace

/// The console and an application on the real ports, each in its own process.
class KeypadSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void digitIsTypedAndItsKeyLitWhileItIsDown();
    void everyKeypadKeyDoesItsWork();
    void keypadTypesIntoAnOpenDialogAndOtherKeysWait();
    void quenorSilencesWhatTheDialogDoes();
    void lockedKeypadIsDeaf();
    void onScreenKeyWorksAsTheKeyItStandsFor();
    void keyOfNobodyIsNamedInTheLog();
    void brokenReportsAreNoKeys();
    void requestShowsOnTheConsole_data();
    void requestShowsOnTheConsole();
    void commandWithAFaultIsAnsweredAndChangesNothing();

private:
    std::unique_ptr<Session> m_session;
    Host* m_host = nullptr;
    Console* m_console = nullptr;
};

void KeypadSessionTest::init()
{
    m_session = std::make_unique<Session>();
    m_host = &m_session->host;
    m_console = &m_session->console;
    QVERIFY(m_session->start());
}

void KeypadSessionTest::cleanup()
{
    QVERIFY(m_session->end());
}

void KeypadSessionTest::digitIsTypedAndItsKeyLitWhileItIsDown()
{
    for (const int digit : {4, 2}) {
        m_console->writeLine(press(FirstDigit + digit));
        QVERIFY(m_console->expect(led(FirstDigit + digit, "0,255,0 steady")));
        QVERIFY(m_console->expect(led(FirstDigit + digit, "green for 30"))); // as long as it is down
        m_console->writeLine(release(FirstDigit + digit));
        QVERIFY(m_console->expect(led(FirstDigit + digit, "20,20,20 steady")));
    }
    QVERIFY(m_host->shows("field", "42"));
}

void KeypadSessionTest::everyKeypadKeyDoesItsWork()
{
    for (int digit = 0; digit <= 9; ++digit)
        m_console->tap(FirstDigit + digit);
    QVERIFY(m_host->shows("field", "0123456789"));
    m_console->tap(BackKey);
    QVERIFY(m_host->shows("field", "012345678"));
    m_console->tap(EnterKey);
    QVERIFY(m_host->tells("entered", {{"text", "012345678"}}));
    m_console->tap(UpKey);
    m_console->tap(DownKey);
    for (const int key : {Qt::Key_Up, Qt::Key_Down})
        QVERIFY(m_host->tells("standardKeyPressed", {{"key", key}}));
}

void KeypadSessionTest::keypadTypesIntoAnOpenDialogAndOtherKeysWait()
{
    QVERIFY(m_host->hasDone("openDialog"));
    m_console->writeLine(press(ScreenKey));
    QVERIFY(m_host->waitForLog("now there is an modal window."));

    m_console->writeLine(press(FirstDigit + 7));
    QVERIFY(m_console->expect(led(FirstDigit + 7, "green")));
    m_console->writeLine(release(FirstDigit + 7));
    QVERIFY(m_console->expect(led(FirstDigit + 7, "off")));
    QVERIFY(m_host->shows("dialogText", "7"));

    QVERIFY(m_host->hasDone("focus", {{"widget", "dialogNumber"}}));
    for (const int key : {UpKey, UpKey, DownKey})
        m_console->tap(key);
    for (const char* shown : {"1", "2", "1"})
        QVERIFY(m_host->shows("dialogNumber", shown));
    m_console->tap(EnterKey);
    QVERIFY(m_host->tells("dialogClosed", {{"accepted", true}, {"number", 1}}));

    m_console->tap(FirstDigit + 3);
    QVERIFY(m_host->shows("field", "3"));
    m_console->writeLine(press(ScreenKey));
    QVERIFY(m_host->tells("keyClicked", {{"key", ScreenKey}}));
}

void KeypadSessionTest::quenorSilencesWhatTheDialogDoes()
{
    QVERIFY(m_host->hasDone("setQuenor", {{"on", true}}));
    m_console->writeLine(press(ScreenKey));
    QVERIFY(m_host->waitForLog("now there is an modal window."));
    m_console->tap(FirstDigit + 5);
    QVERIFY(m_host->shows("field", "5"));
    m_console->writeLine("tbar 10 up");
    QVERIFY(m_host->waitForLog("T-Bar ignored: property Quenor is true"));

    QVERIFY(m_host->hasDone("setQuenor", {{"on", false}}));
    m_console->writeLine(press(ScreenKey));
    QVERIFY(m_host->tells("keyClicked", {{"key", ScreenKey}}));
}

void KeypadSessionTest::lockedKeypadIsDeaf()
{
    m_console->writeLine(press(FirstDigit + 1));
    QVERIFY(m_console->expect(led(FirstDigit + 1, "green")));
    QVERIFY(m_host->hasDone("lockKeypad"));
    QVERIFY(m_console->expect("lock keypad on"));
    QVERIFY(m_host->tells("keyboardLocked", {{"locked", true}}));

    // A release is not let through either: the key stays as it was.
    m_console->writeLine(release(FirstDigit + 1));
    m_console->writeLine(press(FirstDigit + 2));
    QVERIFY(m_host->waitForLog("now the keypad is locked."));
    QVERIFY(m_console->expect(led(FirstDigit + 1, "green")));

    QVERIFY(m_host->hasDone("unlockKeypad"));
    QVERIFY(m_console->expect("lock keypad off"));
    QVERIFY(m_host->tells("keyboardLocked", {{"locked", false}}));
    m_console->tap(FirstDigit + 3);
    QVERIFY(m_host->shows("field", "13"));
}

void KeypadSessionTest::onScreenKeyWorksAsTheKeyItStandsFor()
{
    const int key = FirstDigit + 5;
    m_console->writeLine(press(VirtualKeys + ApplicationNumberOffset + key));
    QVERIFY(m_console->expect(led(key, "green")));
    QVERIFY(m_host->shows("field", "5"));
    QVERIFY(m_host->command("state").value("virtualConsole").toBool());
    m_console->writeLine(release(VirtualKeys + ApplicationNumberOffset + key));
    QVERIFY(m_console->expect(led(key, "off")));

    m_console->tap(key);
    QVERIFY(m_host->shows("field", "55"));
    QVERIFY(!m_host->command("state").value("virtualConsole").toBool());
    int clicks = 0; // of the physical key alone
    for (const QJsonObject& line : m_host->lines())
        clicks += line.value("event") == "keyClicked";
    QCOMPARE(clicks, 1);
}

void KeypadSessionTest::keyOfNobodyIsNamedInTheLog()
{
    m_console->tap(NoKey);
    QVERIFY(m_host->waitForLog("[locate key no response] couldn't find command binding to key: 999"));
    m_console->tap(FirstDigit);
    QVERIFY(m_host->shows("field", "0"));
}

void KeypadSessionTest::brokenReportsAreNoKeys()
{
    for (const char* bytes :
         {"", "55", "EE55EE55", "55EE55EE01000001000009", "55EE55EE0100000100000900C9",
          "55EE55EE0100000100000900C90005005D0000", "55EE55EE0100000100000900FF0005005D00000000",
          "DEADBEEF0100000100000900C90005005D00000000"})
        m_console->writeLine(QByteArray("send \"") + bytes + '"');
    m_console->tap(FirstDigit + 8);
    QVERIFY(m_host->tells("field"));
    QCOMPARE(m_host->command("state").value("field").toString(), "8");
}

void KeypadSessionTest::requestShowsOnTheConsole_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("arguments");
    QTest::addColumn<QByteArray>("condition");

    const auto row = [](const char* command, const QJsonObject& arguments, const char* condition) {
        QTest::newRow(command) << QString::fromLatin1(command) << arguments << QByteArray(condition);
    };
    const QString on = "on";
    row("lockTBar", {}, "lock tbar on");
    row("setLight", {{"light", "front"}, {on, true}, {"brightness", 77}}, "light front on 77");
    row("setLuminance", {{"percent", 40}}, "luminance 40");
    row("switchSource", {{"source", 1}}, "source 1");
    row("showPeripheral", {{"visible", false}}, "peripheral off");
    row("listenKeyboardMouse", {{on, true}}, "listening on");
    row("sendSystemTime", {{"date", "2024-05-06"}, {"time", "07:08:09"}}, "time \"2024:05:06 07:08:09\"");
    row("sendSystemIP", {{"first", "a"}, {"second", "b"}, {"third", "c"}, {"fourth", "d"}},
        "network \"a@b@c@d\"");
    row("setIPMode", {{"index", 1}, {"mode", 2}}, "ip-mode 1 2");
    row("requestConsoleIP", {{"index", 3}}, "console-ip 0 0.0.0.0");
    row("restartConsole", {{"value", 5}}, "restart 5");
    row("resetMCU", {{"value", 6}}, "mcu-reset 6");
    row("sendFile", {{"file", QStringLiteral(EXAMPLE_KEYBOARD)}, {"type", "mcu"}, {"packSize", 1000}},
        "file keyboard.json");
}

void KeypadSessionTest::requestShowsOnTheConsole()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, arguments);
    QFETCH(QByteArray, condition);
    QVERIFY(m_host->hasDone(command, arguments));
    QVERIFY(m_console->expect(condition + ""));
}

void KeypadSessionTest::commandWithAFaultIsAnsweredAndChangesNothing()
{
    m_host->writeLine("{\"command\":\"setLuminance\",");
    m_host->writeLine("[1]");
    m_host->writeLine(R"({"percent":40})");
    for (int i = 0; i < 3; ++i)
        QVERIFY(m_host->tells("error"));
    const QString luminance = "setLuminance";
    const QString percent = "percent";
    for (const QJsonObject& faulty :
         {QJsonObject{}, {{percent, 101}}, {{percent, 1.5}}, {{percent, "7"}}, {{percent, 7}, {"more", 1}}}) {
        const QJsonObject answer = m_host->command(luminance, faulty);
        QCOMPARE(answer.value("event").toString(), "error");
        QVERIFY(!answer.value("reason").toString().isEmpty());
    }
    QCOMPARE(m_host->command("noSuchCommand").value("event").toString(), "error");
    QVERIFY(m_console->expect("luminance 100"));
    QVERIFY(m_host->hasDone(luminance, {{percent, 7}}));
    QVERIFY(m_console->expect("luminance 7"));
}

QTEST_GUILESS_MAIN(KeypadSessionTest)
#include "tst_keypadsession.moc"

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

} // namespace

/// The console and an application on the real ports, each in its own process.
class KeypadSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void digitIsTypedAndItsKeyLitWhileItIsDown()
    {
        for (const int digit : {4, 2}) {
            press(FirstDigit + digit);
            QVERIFY(lights(FirstDigit + digit, "0,255,0 steady"));
            QVERIFY(lights(FirstDigit + digit, "green for 30")); // as long as it is down
            release(FirstDigit + digit);
            QVERIFY(lights(FirstDigit + digit, "20,20,20 steady"));
        }
        QVERIFY(m_host->shows("field", "42"));
    }

    void everyKeypadKeyDoesItsWork()
    {
        for (int digit = 0; digit <= 9; ++digit)
            tap(FirstDigit + digit);
        QVERIFY(m_host->shows("field", "0123456789"));
        tap(BackKey);
        QVERIFY(m_host->shows("field", "012345678"));
        tap(EnterKey);
        QVERIFY(m_host->tells("entered", {{"text", "012345678"}}));
        tap(UpKey);
        tap(DownKey);
        for (const int key : {Qt::Key_Up, Qt::Key_Down})
            QVERIFY(m_host->tells("standardKeyPressed", {{"key", key}}));
    }

    void keypadTypesIntoAnOpenDialogAndOtherKeysWait()
    {
        QVERIFY(isDone("openDialog"));
        press(ScreenKey);
        QVERIFY(m_host->waitForLog("now there is an modal window."));

        press(FirstDigit + 7);
        QVERIFY(lights(FirstDigit + 7, "green"));
        release(FirstDigit + 7);
        QVERIFY(lights(FirstDigit + 7, "off"));
        QVERIFY(m_host->shows("dialogText", "7"));

        QVERIFY(isDone("focus", {{"widget", "dialogNumber"}}));
        for (const int key : {UpKey, UpKey, DownKey})
            tap(key);
        for (const char* shown : {"1", "2", "1"})
            QVERIFY(m_host->shows("dialogNumber", shown));
        tap(EnterKey);
        QVERIFY(m_host->tells("dialogClosed", {{"accepted", true}, {"number", 1}}));

        tap(FirstDigit + 3);
        QVERIFY(m_host->shows("field", "3"));
        press(ScreenKey);
        QVERIFY(m_host->tells("keyClicked", {{"key", ScreenKey}}));
    }

    void onScreenKeyWorksAsTheKeyItStandsFor()
    {
        const int key = FirstDigit + 5;
        const int onScreen = 0xFF0000 + 1000 + key; // by the application's number of the key
        press(onScreen);
        QVERIFY(lights(key, "green"));
        QVERIFY(m_host->shows("field", "5"));
        QVERIFY(m_host->command("state").value("virtualConsole").toBool());
        release(onScreen);
        QVERIFY(lights(key, "off"));

        tap(key);
        QVERIFY(m_host->shows("field", "55"));
        QVERIFY(!m_host->command("state").value("virtualConsole").toBool());
        int clicks = 0; // of the physical key alone
        for (const QJsonObject& line : m_host->lines())
            clicks += line.value("event") == "keyClicked";
        QCOMPARE(clicks, 1);
    }

    void requestShowsOnTheConsole_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QJsonObject>("arguments");
        QTest::addColumn<QByteArray>("condition");

        const auto row = [](const char* command, const QJsonObject& arguments, const char* condition) {
            QTest::newRow(command) << QString(command) << arguments << QByteArray(condition);
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

    void requestShowsOnTheConsole()
    {
        QFETCH(QString, command);
        QFETCH(QJsonObject, arguments);
        QFETCH(QByteArray, condition);
        QVERIFY(m_console->expect("no-" + condition + " within 0"));
        QVERIFY(isDone(command, arguments));
        QVERIFY(m_console->expect(condition));
    }

    void commandWithAFaultIsAnsweredAndChangesNothing()
    {
        m_host->writeLine("{\"command\":\"setLuminance\",");
        m_host->writeLine("[1]");
        m_host->writeLine(R"({"percent":40})");
        for (int i = 0; i < 3; ++i)
            QVERIFY(m_host->tells("error"));
        const QString luminance = "setLuminance";
        const QString percent = "percent";
        for (const QJsonObject& faulty :
             {QJsonObject{},
              {{percent, 101}},
              {{percent, 1.5}},
              {{percent, "7"}},
              {{percent, 7}, {"more", 1}}}) {
            const QJsonObject answer = m_host->command(luminance, faulty);
            QCOMPARE(answer.value("event").toString(), "error");
            QVERIFY(!answer.value("reason").toString().isEmpty());
        }
        QCOMPARE(m_host->command("noSuchCommand").value("event").toString(), "error");
        QVERIFY(m_console->expect("luminance 100"));
        QVERIFY(isDone(luminance, {{percent, 7}}));
        QVERIFY(m_console->expect("luminance 7"));
    }
};

QTEST_GUILESS_MAIN(KeypadSessionTest)
#include "tst_keypadsession.moc"

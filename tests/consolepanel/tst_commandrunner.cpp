#include "paneltestsupport.h"

#include <QFile>

using namespace PanelTest;
using namespace std::chrono_literals;

class TestCommandRunner : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void manualShowsEveryCommandAndNoOther()
    {
        QFile manual(QStringLiteral(MANUAL));
        QVERIFY(manual.open(QIODevice::ReadOnly));
        QStringList examples;
        bool isExample = false;
        for (const QString& line : QString::fromUtf8(manual.readAll()).split('\n')) {
            if (line.startsWith("```"))
                isExample = line == "```commands";
            else if (isExample)
                examples.append(line);
        }
        for (const QString& line : qAsConst(examples))
            QVERIFY2(std::holds_alternative<SimulatorCommand>(parseCommand(line)), qPrintable(line));

        QString prefix;
        for (const QString& usage : commandHelp()) {
            if (usage == "Conditions:") {
                prefix = "expect ";
                continue;
            }
            const QString begin = prefix + usage.trimmed().section(' ', 0, 0);
            const auto found = std::find_if(examples.cbegin(), examples.cend(), [&](const QString& line) {
                return line == begin || line.startsWith(begin + ' ');
            });
            QVERIFY2(found != examples.cend(), qPrintable(begin));
        }
    }

    void refusesWrongCommands_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* line, const char* reason) {
            QTest::newRow(line) << QString(line) << QString(reason);
        };
        row("jump 12", "there is no command \"jump\"");
        row("press", "KEY is missing (press KEY)");
        row("press 4294967296", "KEY must be a number from 0 to 4294967295, not \"4294967296\" (press KEY)");
        row("press -1", "KEY must be a number from 0 to 4294967295, not \"-1\" (press KEY)");
        row("press 12 13", "\"13\" is too much (press KEY)");
        row("hold 12", "MS is missing (hold KEY MS)");
        row("tbar 32 left", "DIRECTION must be one of up, down, not \"left\" (tbar POSITION up|down)");
        row("dvi 0", "SIGNAL is missing (dvi [INPUT SIGNAL]...)");
        row("send abc", "HEX must be pairs of hexadecimal digits, not \"abc\" (send HEX)");
        row("console-ip 0 1 300.0.0.1 0 0",
            "ADDRESS must be a network address, not \"300.0.0.1\" (console-ip INDEX STATUS ADDRESS MASK "
            "GATEWAY)");
        row("storm 12 1000", "count is missing (storm KEY... count N [rate PER_SECOND] [window N])");
        row("expect", "a condition is missing (expect [no-]CONDITION [within MS | for MS])");
        row("expect glow 12", "there is no condition \"glow\" (expect [no-]CONDITION [within MS | for MS])");
        row("expect led 12 0,256,0 within 200",
            "COLOUR must be R,G,B or a colour's name, not \"0,256,0\" (expect [no-]CONDITION [within MS | "
            "for "
            "MS])");
        row("expect led 12 green within soon",
            "MS must be a number from 0 to 86400000, not \"soon\" (expect [no-]CONDITION [within MS | for "
            "MS])");
        row("expect oled 512 \"Page 1 within 200", "a quote is not closed");
    }

    void refusesWrongCommands()
    {
        QFETCH(QString, line);
        QFETCH(QString, reason);
        const auto parsed = parseCommand(line);
        QVERIFY(std::holds_alternative<CommandFault>(parsed));
        QCOMPARE(std::get<CommandFault>(parsed).reason, reason);
    }

    void everyReportCommandSendsItsDatagram_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QByteArray>("hex");
        const auto row = [](const char* line, const char* hex) {
            QTest::newRow(line) << QString(line) << QByteArray(hex).replace(' ', "");
        };
        row("press 12", "55ee55ee01000001 0000 0900 c900 0500 0c000000 00");
        row("  press\t0xFF0005  # on-screen", "55ee55ee01000001 0000 0900 c900 0500 0500ff00 00");
        row("release 12", "55ee55ee01000001 0000 0900 ca00 0500 0c000000 01");
        row("tbar 32 up", "55ee55ee01000001 0000 0900 cb00 0500 20000000 01");
        row("tbar 65 down", "55ee55ee01000001 0000 0900 cb00 0500 41000000 40");
        row("report-tbar-lock 1", "55ee55ee01000001 0000 0500 cc00 0100 01");
        row("report-keypad-lock off", "55ee55ee01000001 0000 0500 cd00 0100 00");
        row("dvi", "55ee55ee01000001 0000 0400 ce00 0000");
        row("dvi 0 1 1 0", "55ee55ee01000001 0000 0800 ce00 0400 00010100");
        row("console-ip 2 1 192.168.0.10 255.255.255.0 0xC0A80001",
            "55ee55ee01000001 0000 1200 cf00 0e00 0201 0a00a8c0 00ffffff 0100a8c0");
        row("send 55EE 00", "55ee00");
    }

    void everyReportCommandSendsItsDatagram()
    {
        QFETCH(QString, line);
        QFETCH(QByteArray, hex);
        RunnerBench bench;
        bench.command(line.toUtf8().constData());
        QCOMPARE(bench.datagrams.size(), 1);
        QCOMPARE(bench.datagrams.first().toHex(), hex);
        QVERIFY(bench.runner.isIdle());
    }

    void commandsWaitForTheOneBeforeThem()
    {
        RunnerBench bench;
        for (const char* line :
             {"tap 1", "hold 2 300", "wait 20", "tap 3 0", "tbar-sweep 1 4 up 30", "tbar-sweep 2 1 down 10",
              "tbar-sweep 5 5 up 10", "show", "quit", "press 4"})
            bench.command(line);
        QVERIFY(!bench.runner.isIdle());
        bench.clock.advance(1s);
        QCOMPARE(
            bench.sentText(),
            "press 1@0 release 1@50 press 2@50 release 2@350 press 3@370 release 3@370 "
            "tbar 1 up@370 tbar 2 up@380 tbar 3 up@390 tbar 4 up@400 tbar 2 down@400 tbar 1 down@410 "
            "tbar 5 up@410 show");
        QVERIFY(bench.runner.hasQuit());
        QVERIFY(bench.runner.isIdle());
    }

    void conditionHoldsOnceItsRequestCame_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QByteArray>("datagram");
        const auto row = [](const char* condition, const QByteArray& datagram) {
            QTest::newRow(condition) << QString(condition) << datagram;
        };
        const auto hex = [](const char* digits) { return QByteArray::fromHex(digits); };
        row("led 12", led(12, "0000ff"));
        row("led 12 0,0,255", led(12, "0000ff"));
        row("led 12 Blue steady", led(12, "0000ff"));
        row("led 12 blue flashing", led(12, "0000ff", Protocol::Flashing));
        row("oled 512", label(512, "Page 1"));
        row("oled 512 \"Page 1\"", label(512, "Page 1"));
        row("oled 512 \"a \\\"text\\\" of more than thirty-two bytes\"",
            label(512, "a \"text\" of more than thirty-two bytes"));
        row("tbar-level 6", request(103, hex("0600000040")));
        row("tbar-level 6 down", request(103, hex("0600000040")));
        row("lock tbar on", request(104, {}));
        row("lock keypad on", request(107, {}));
        row("light logo on 15", request(111, hex("02010f")));
        row("dvi-status 3 off", request(123, hex("0300")));
        row("console-ip 0 192.168.0.10",
            hex("ee55ee5501000001 0d00 0400 7800 0e00 00 01 0a00a8c0 00ffffff 0100a8c0"));
        row("file a.b 4",
            hex("0000 0100 ee55ee5501000001 1300 1a00 7600 0000 01 04000000 00000000 0300 612e62 01020304"));
        row("received 1", request(104, {}));
        row("unreadable 1", "noise");
    }

    void conditionHoldsOnceItsRequestCame()
    {
        QFETCH(QString, condition);
        QFETCH(QByteArray, datagram);
        RunnerBench bench;
        bench.command(("expect no-" + condition + " within 0").toUtf8().constData());
        bench.command(("expect " + condition).toUtf8().constData());
        QVERIFY(!bench.runner.isIdle());
        bench.datagram(datagram);
        QVERIFY(bench.runner.isIdle());
        QCOMPARE(bench.outcomes, QStringList({"ok ", "ok "}));
    }

    void expectationWakesWithTheDatagramThatFulfilsIt()
    {
        RunnerBench bench;
        // Green shows between two datagrams only, and the next command runs before the second is looked at.
        for (const char* line : {"expect led 12 green within 200", "press 5", "expect led 12 off within 200"})
            bench.command(line);
        bench.clock.advance(199ms);
        bench.datagram(led(12, "00ff00"));
        QCOMPARE(bench.sentText(), "press 5@199");
        bench.datagram(led(12, "141414"));
        QVERIFY(bench.runner.isIdle());
        QCOMPARE(bench.runner.failures(), 0);
    }

    void expectationFailsWhenItsTimeIsOver()
    {
        RunnerBench bench;
        bench.command("expect led 12 green within 200");
        bench.datagram(led(12, "ff4800", Protocol::Flashing));
        bench.clock.advance(199ms);
        QVERIFY(bench.outcomes.isEmpty());
        bench.clock.advance(1ms);
        bench.command("expect oled 512 \"Page 2\" within 0");
        bench.command("expect lock keypad on within 0");
        QCOMPARE(
            bench.outcomes,
            QStringList(
                {"failed the console shows: 255,72,0 (Orange) flashing, brightness 100",
                 "failed the console shows: nothing came", "failed the console shows: off"}));
        QCOMPARE(bench.runner.failures(), 3);
    }

    void watchingFailsWithTheDatagramThatBreaksIt()
    {
        RunnerBench bench;
        bench.datagram(led(12, "141414"));
        bench.command("expect no-led 12 for 300");
        bench.datagram(led(12, "141414")); // repainting it alike is no change
        bench.clock.advance(300ms);
        bench.command("expect no-led 12 for 300");
        bench.clock.advance(299ms);
        bench.datagram(led(12, "ff0000"));
        bench.datagram(led(12, "141414"));
        bench.command("expect led 12 off for 100");
        bench.clock.advance(100ms);
        bench.command("expect led 12 red for 100"); // fails at once
        QCOMPARE(
            bench.outcomes,
            (QStringList{
                "ok ", "failed the console shows: 255,0,0 (Red), brightness 100", "ok ",
                "failed the console shows: 20,20,20 (Off), brightness 100"}));
    }

    void stormAtARateKeepsIt()
    {
        RunnerBench bench;
        bench.command("storm 1 count 5001 rate 5000");
        bench.clock.advance(500ms);
        QVERIFY2(
            qAbs(bench.datagrams.size() - 5000) <= 20, qPrintable(QString::number(bench.datagrams.size())));
        bench.clock.advance(501ms);
        QCOMPARE(bench.datagrams.size(), 10002);
        QVERIFY(bench.runner.isIdle());
    }

    void stormWithAWindowWaitsForAnswers()
    {
        RunnerBench bench;
        bench.command("storm 1 count 4 window 3");
        QCOMPARE(bench.datagrams.size(), 3);
        bench.datagram(led(1, "00ff00"));
        QCOMPARE(bench.datagrams.size(), 4);
        for (int answer = 0; answer < 6; ++answer)
            bench.datagram(led(1, "141414"));
        QCOMPARE(bench.datagrams.size(), 8);
        QVERIFY(!bench.runner.isIdle()); // the last answer is still out
        bench.datagram(led(1, "141414"));
        QVERIFY(bench.outcomes.first().startsWith("ok 4 presses"));

        bench.command("storm 1 count 4 window 3");
        bench.clock.advance(10s);
        QCOMPARE(bench.outcomes.last(), "failed 3 reports sent, 0 LED datagrams came, none for 5 s");
    }
};

QTEST_APPLESS_MAIN(TestCommandRunner)
#include "tst_commandrunner.moc"

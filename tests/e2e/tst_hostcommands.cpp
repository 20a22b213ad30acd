#include "program.h"

#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

namespace {

QJsonObject keyOf(const QJsonArray& keys, int number)
{
    for (const QJsonValue& key : keys) {
        if (key.toObject().value("key") == number)
            return key.toObject();
    }
    return {};
}

} // namespace

/// What a program that scripts the host relies on.
class HostCommandsTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { SessionTest::init(); }
    void cleanup() { SessionTest::cleanup(); }

    void takeIsToldWhenRequestedStartedAndEnded()
    {
        QVERIFY(m_host->hasDone("selectScreens", {{"screens", QJsonArray{"regular:1"}}}));
        QVERIFY(m_host->hasDone("setEffectTime", {{"screen", "regular:1"}, {"seconds", 0.3}}));
        m_console->writeLine("tap 15");
        int started = 0;
        for (const char* phase : {"requested", "started", "ended"}) {
            const QJsonObject told =
                m_host->next({{"event", "operation"}, {"operation", "ParallelTakeScreen"}, {"phase", phase}});
            QVERIFY2(!told.isEmpty(), phase);
            QCOMPARE(told.value("ok").toBool(), phase == QLatin1String("ended"));
            const int ms = told.value("ms").toInt();
            if (phase == QLatin1String("started"))
                started = ms;
            else if (phase == QLatin1String("ended"))
                QVERIFY2(ms - started >= 290, "the end is that of the transition");
        }
        QVERIFY(m_host->hasDone("fail", {{"operation", "ParallelTakeScreen"}, {"text", "no power"}}));
        m_console->writeLine("tap 15");
        QVERIFY(m_host->tells("operation", {{"phase", "ended"}, {"ok", false}, {"reason", "no power"}}));
    }

    void messageBoxCanBeAnsweredAsSoonAsItIsTold()
    {
        // Saving the device's data ends with a box that says so.
        m_console->writeLine("tap 107");
        QVERIFY(m_host->tells("messageBox"));
        QVERIFY(m_host->hasDone("answerMessageBox", {{"button", "ok"}}));
        QCOMPARE(
            m_host->command("answerMessageBox", {{"button", "ok"}}).value("reason"),
            "no message box is shown");
    }

    void refusalNamesWhatIsMissingOrForbidsIt_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QJsonObject>("arguments");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* command, const QJsonObject& arguments, const char* reason) {
            QTest::newRow(reason) << QString(command) << arguments << QString(reason);
        };
        row("setOnline", {{"on", true}, {"device", "x"}}, "there is no device x");
        row("setFreeze", {{"on", true}, {"screen", "regular:9"}}, "there is no screen regular:9");
        row("setFreeze", {{"on", true}, {"screen", "left"}}, "there is no screen left");
        row("removeLayer", {{"screen", "regular:1"}, {"layer", 77}}, "the screen has no layer 77 in its PVW");
        row("removeLayer", {{"screen", "regular:1"}, {"layer", 1}, {"scene", "PGM"}},
            "The screen's program is not being edited.");
        row("renameInput", {{"input", 99}, {"name", "x"}}, "the device has no input 99");
        row("removePreset", {{"slot", 99}}, "the device has no PVW preset in slot 99");
        row("setPGMEdit", {{"screen", "AUX:1"}, {"on", true}},
            "the program of regular screens only can be edited");
        row("pressVirtualKey", {{"key", 7}}, "no key has the number 7 in the application");
        row("injectBytes", {{"hex", "5"}}, "\"hex\" must be pairs of hexadecimal digits");
        row("setLight", {{"light", "left"}, {"lamp", 1}},
            "light is \"left\", expected one of gooseneck, front, logo; "
            "missing field \"on\", expected true or false; "
            "unknown field \"lamp\", expected command, id, light, on, brightness");
    }

    void refusalNamesWhatIsMissingOrForbidsIt()
    {
        QFETCH(QString, command);
        QFETCH(QJsonObject, arguments);
        QFETCH(QString, reason);
        QCOMPARE(m_host->command(command, arguments).value("reason").toString(), reason);
    }

    void reportsOfTheHostAreWorkedAsThoseOfTheConsole()
    {
        QVERIFY(m_host->hasDone("pressVirtualKey", {{"key", 1093}}));
        QVERIFY(m_console->expect("led 93 green"));
        QVERIFY(m_host->hasDone("releaseVirtualKey", {{"key", 1093}}));
        QVERIFY(m_console->expect("no-led 93 green"));
        QVERIFY(m_host->hasDone("reportKeypadLock", {{"locked", true}}));
        QVERIFY(m_console->expect("led 109 green"));
        QVERIFY(m_host->hasDone("reportKeypadLock", {{"locked", false}}));
        QVERIFY(m_console->expect("no-led 109 green"));
        QVERIFY(m_host->hasDone("reportTBarLock", {{"locked", false}}));
        QVERIFY(m_host->hasDone("reportTBar", {{"position", 32}, {"direction", "up"}}));
        QVERIFY(m_host->tells("operation", {{"operation", "TBarSampling"}}));
        // The head, the tag of a DVI report, and two inputs.
        QVERIFY(m_host->hasDone(
            "injectBytes",
            {{"hex",
              "55ee55ee"
              "0100000100000800"
              "ce000400"
              "00010100"}}));
        QVERIFY(m_console->expect("dvi-status 0 on"));
        QTRY_COMPARE(
            m_host->command("state").value("dviSignals").toObject(),
            (QJsonObject{{"0", true}, {"1", false}}));
        QVERIFY(m_host->hasDone("setPeripheral", {{"screens", 2}, {"target", 1}}));
        QVERIFY(
            !m_console->next({{"event", "down"}, {"name", "ControlPeripheral"}, {"screens", 2}}).isEmpty());
    }

    void bothConsolesWorkAtTheSameTime()
    {
        QVERIFY(m_host->hasDone("showConsole", {{"visible", true}, {"width", 1280}, {"height", 800}}));
        QTemporaryDir directory;
        const auto picture = [&] {
            const QString file = directory.filePath("console.png");
            const bool taken = m_host->hasDone("screenshot", {{"window", "console"}, {"file", file}});
            return taken ? QImage(file) : QImage();
        };
        const QImage before = picture();
        QCOMPARE(before.size(), QSize(1280, 800));
        m_console->writeLine("press 93");
        QVERIFY(m_console->expect("led 93 green"));
        QVERIFY(m_host->hasDone("pressVirtualKey", {{"key", 1094}}));
        QVERIFY(m_console->expect("led 94 green")); // each shows what the other one does
        QVERIFY(m_host->tells("field", {{"text", "01"}}));
        QTRY_VERIFY_WITH_TIMEOUT(picture() != before, PatienceMs);
        m_console->writeLine("release 93");
        QVERIFY(m_host->hasDone("releaseVirtualKey", {{"key", 1094}}));
        QVERIFY(m_console->expect("no-led 94 green"));
    }

    void stateAndKeysTellPagesAndBindings()
    {
        const QJsonArray keys = m_host->command("keys").value("keys").toArray();
        QCOMPARE(keys.size(), 113);
        const QJsonObject first = keyOf(keys, 1);
        QCOMPARE(first.value("function"), "select");
        QCOMPARE(first.value("bound"), "regular:1");
        QVERIFY(!keyOf(keys, 93).contains("bound"));
        m_console->writeLine("tap 10");
        QTRY_COMPARE(m_host->command("state").value("pages").toObject().value("ScreenCommand").toInt(), 1);
        QCOMPARE(keyOf(m_host->command("keys").value("keys").toArray(), 1).value("bound"), "");
    }

    void transitionTimesAreNumbersThatAUserWouldWrite()
    {
        QVERIFY(m_host->hasDone("selectScreens", {{"screens", QJsonArray{"regular:1"}}}));
        QVERIFY(m_host->hasDone("setEffectTime", {{"screen", "regular:1"}, {"seconds", 0.5}}));
        m_console->writeLine("tap 17");
        QTRY_VERIFY(screen("regular:1").value("effectSeconds") != 0.5);
        QCOMPARE(screen("regular:1").value("effectSeconds").toDouble(), 0.6);
        QVERIFY(screen("regular:1").value("effectSeconds") == QJsonValue(0.6));
    }

    void readyIsToldAndTheLogIsQuietWithoutEvents()
    {
        m_host->writeLine(R"({"command":"quit"})");
        QCOMPARE(m_host->exitStatus(), 0);
        Host host;
        static_cast<Program&>(host).start({"--headless", "--keyboard", EXAMPLE_KEYBOARD});
        QVERIFY(!host.next({{"event", "ready"}}).isEmpty());
        QVERIFY(host.hasDone("openDialog"));
        QVERIFY(host.hasDone("closeDialog"));
        QTemporaryFile empty;
        QVERIFY(empty.open());
        QVERIFY(host.hasDone("sendFile", {{"file", empty.fileName()}, {"type", "mcu"}, {"packSize", 0}}));
        host.writeLine(R"({"command":"quit"})");
        QCOMPARE(host.exitStatus(), 0);
        QVERIFY2(!host.log().contains("plugin does not") && !host.log().contains("XDG"), host.log());
    }
};

QTEST_GUILESS_MAIN(HostCommandsTest)
#include "tst_hostcommands.moc"

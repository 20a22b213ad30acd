#include "program.h"

#include "capturefile.h"

#include <QJsonArray>
#include <QTest>

using namespace Orvane::ConsolePanel;

namespace {

/// What the operator does: keys that act at once, a key that is held, the T-Bar, a key of the on-screen
/// console.
constexpr const char* QuickKeys[] = {"tap 2",  "expect led 2 green",  "tap 11", "expect led 11 red",
                                     "tap 19", "expect led 19 green", "tap 2",  "expect led 2 yellow",
                                     "tap 10"};
constexpr const char* SlowKeys[] = {
    "hold 108 2300",        "expect led 108 green",   "expect lock tbar on",     "hold 108 2300",
    "expect lock tbar off", "tbar-sweep 1 64 up 400", "expect tbar-level 12 up", "press 0xFF0449",
    "expect led 97 green",  "release 0xFF0449",       "expect led 97 off",       "malformed magic"};

std::vector<CapturedDatagram> datagramsOf(const QString& path)
{
    auto read = loadCapture(path);
    auto* const capture = std::get_if<Capture>(&read);
    return capture && !capture->isCutOff && capture->skipped == 0 ? std::move(capture->datagrams)
                                                                  : std::vector<CapturedDatagram>();
}

QVector<QByteArray> bytesOf(
    const std::vector<CapturedDatagram>& datagrams, CapturedDatagram::Direction direction)
{
    QVector<QByteArray> bytes;
    for (const CapturedDatagram& datagram : datagrams)
        if (datagram.direction == direction)
            bytes.append(datagram.bytes);
    return bytes;
}

} // namespace

/// A session that both programs write down, and that is played back to a new host.
class CaptureSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        record("quick", {std::begin(QuickKeys), std::end(QuickKeys)});
        if (QTest::currentTestFailed())
            return;
        record("slow", {std::begin(SlowKeys), std::end(SlowKeys)});
    }

    void bothEndsCaptureTheSameBytes()
    {
        for (const char* session : {"quick", "slow"}) {
            const auto console = datagramsOf(path(session, "console"));
            const auto host = datagramsOf(path(session, "host"));
            for (const auto direction : {CapturedDatagram::Up, CapturedDatagram::Down}) {
                QVERIFY(!bytesOf(console, direction).isEmpty());
                // The library sends on several threads; their requests may change places behind the route.
                QVector<QByteArray> one = bytesOf(console, direction);
                QVector<QByteArray> other = bytesOf(host, direction);
                std::sort(one.begin(), one.end());
                std::sort(other.begin(), other.end());
                QCOMPARE(one, other);
            }
        }
    }

    void replayShowsTheSameLights_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("speed");
        QTest::newRow("console's capture") << path("slow", "console") << "1";
        QTest::newRow("host's capture") << path("slow", "host") << "1";
        QTest::newRow("without holds, ten times as fast") << path("quick", "console") << "10";
    }

    void replayShowsTheSameLights()
    {
        QFETCH(QString, file);
        QFETCH(QString, speed);
        Console console;
        QVERIFY(console.start({"--replay", file, "--speed", speed}));
        Host host;
        QVERIFY(host.start({"--show", EXAMPLE_SHOW}));
        const QJsonObject result = console.next({{"event", "result"}});
        QVERIFY2(
            result.value("ok").toBool(),
            qPrintable(result.value("detail").toString() + differencesOf(console)));
        QCOMPARE(console.exitStatus(), 0);
    }

    void replayToAnotherShowListsWhatDiffers()
    {
        Console console;
        QVERIFY(console.start({"--replay", path("quick", "console"), "--speed", "10"}));
        Host host;
        QVERIFY(host.start()); // no screens
        QVERIFY(!console.next({{"event", "difference"}, {"when", "before the first report"}}).isEmpty());
        QVERIFY(!console.next({{"event", "difference"}, {"when", "at the end"}}).isEmpty());
        QCOMPARE(console.exitStatus(), 1);
    }

    void captureIsStartedAndStoppedByCommand()
    {
        Host host;
        QVERIFY(host.start());
        const QString file = m_directory.filePath("command.pcap");
        QVERIFY(!host.hasDone("stopCapture"));
        QCOMPARE(
            host.command("startCapture", {{"file", "/nowhere/a.pcap"}}).value("event"), QJsonValue("error"));
        QVERIFY(host.hasDone("startCapture", {{"file", file}}));
        QVERIFY(!host.hasDone("startCapture", {{"file", file}}));
        QVERIFY(host.hasDone("lockTBar"));
        QVERIFY(host.hasDone("injectBytes", {{"hex", "0102"}}));
        const QJsonObject done = host.command("stopCapture");
        QCOMPARE(done.value("lost"), QJsonValue(0));
        QVERIFY(host.hasDone("unlockTBar"));
        const auto datagrams = datagramsOf(file);
        QCOMPARE(done.value("datagrams").toInt(), int(datagrams.size()));
        QCOMPARE(bytesOf(datagrams, CapturedDatagram::Up), QVector<QByteArray>{QByteArray::fromHex("0102")});
        const auto requests = bytesOf(datagrams, CapturedDatagram::Down);
        QVERIFY(std::any_of(requests.begin(), requests.end(), [](const QByteArray& request) {
            return request.mid(12).toHex() == "68000000"; // locks the T-Bar
        }));
    }

private:
    QString path(const char* session, const char* program) const
    {
        return m_directory.filePath(QStringLiteral("%1-%2.pcap").arg(session, program));
    }

    static QString differencesOf(const Console& console)
    {
        QString text;
        for (const QJsonObject& line : console.lines())
            if (line.value("event") == "difference")
                text += QStringLiteral("; ") + line.value("when").toString() + ' '
                    + line.value("what").toString() + ' ' + line.value("expected").toString() + " / "
                    + line.value("shown").toString();
        return text;
    }

    void record(const char* session, const std::vector<const char*>& lines)
    {
        Console console;
        QVERIFY(console.start({"--capture", path(session, "console")}));
        Host host;
        QVERIFY(host.start({"--show", EXAMPLE_SHOW, "--capture", path(session, "host")}));
        QVERIFY(console.expect("oled 522 \"1.0\""));
        for (const QByteArray line : lines) {
            if (line.startsWith("expect "))
                QVERIFY(console.expect(line.mid(7)));
            else
                console.writeLine(line);
        }
        QVERIFY(console.expect("no-led 1 within 300")); // what the last key does is through
        host.writeLine(R"({"command":"quit"})");
        QCOMPARE(host.exitStatus(), 0);
        console.closeInput();
        QCOMPARE(console.exitStatus(), 0);
    }

    const QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(CaptureSessionTest)
#include "tst_capturesession.moc"

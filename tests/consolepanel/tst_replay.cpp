#include "paneltestsupport.h"

#include "capturefile.h"
#include "upmessage.h"

#include <QTemporaryDir>

using namespace PanelTest;
using namespace std::chrono_literals;

namespace {

QByteArray key(bool pressed, quint32 number)
{
    return encodeUp(KeyReport{pressed, number}, 0);
}

/// Puts a capture together, each datagram so many milliseconds after the first.
class Recording {
public:
    Recording& up(int ms, const QByteArray& bytes) { return add(CapturedDatagram::Up, ms, bytes); }
    Recording& down(int ms, const QByteArray& bytes) { return add(CapturedDatagram::Down, ms, bytes); }

    /// Writes it and gives the bench the command that plays it.
    void play(RunnerBench& bench, const char* how = "") const
    {
        const QString path = m_directory.filePath("a.pcap");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(captureFileHead() + m_records);
        file.close();
        bench.command(("replay " + path.toUtf8() + ' ' + how).constData());
    }

private:
    Recording& add(CapturedDatagram::Direction direction, int ms, const QByteArray& bytes)
    {
        const auto time = 1700000000s + std::chrono::milliseconds(ms);
        appendCaptureRecord(direction, time, bytes.constData(), bytes.size(), m_records);
        return *this;
    }

    QTemporaryDir m_directory;
    QByteArray m_records;
};

/// Key 1 is dark and goes green when it is pressed, and back when it is released.
void recordPress(Recording& recording)
{
    recording.down(0, led(1, "141414", 0, 1))
        .up(1000, key(true, 1))
        .down(1010, led(1, "00ff00", 0, 2))
        .up(1400, key(false, 1))
        .down(1420, led(1, "141414", 0, 3));
}

} // namespace

/// Captures played back to a library that the test stands in for.
class TestReplay : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hostThatDoesTheSameIsFoundToDoSo_data()
    {
        QTest::addColumn<QByteArray>("how");
        QTest::addColumn<QString>("sent");
        QTest::newRow("at its own speed") << QByteArray() << "press 1@300 release 1@700";
        QTest::newRow("ten times as fast") << QByteArray("speed 10") << "press 1@300 release 1@340";
        QTest::newRow("half as fast") << QByteArray("speed 0.5") << "press 1@300 release 1@1100";
    }

    void hostThatDoesTheSameIsFoundToDoSo()
    {
        QFETCH(QByteArray, how);
        QFETCH(QString, sent);
        RunnerBench bench;
        Recording recording;
        recordPress(recording);
        recording.play(bench, how.constData());
        bench.clock.advance(100ms);
        bench.datagram(led(1, "141414"));
        bench.clock.advance(199ms); // no report before the host has lit its console
        QVERIFY(bench.sent.isEmpty());
        bench.clock.advance(2ms);
        bench.datagram(led(1, "00ff00"));
        bench.clock.advance(900ms);
        QCOMPARE(bench.sentText(), sent);
        bench.datagram(led(1, "141414"));
        QVERIFY(bench.outcomes.isEmpty());
        bench.clock.advance(1s);
        QCOMPARE(bench.outcomes, QStringList("ok 2 reports, the console shows what was recorded"));
        QVERIFY(bench.differences.isEmpty() && !bench.runner.couldNotStart());
    }

    void differencesAreListedWhenTheHostHasHadItsTime()
    {
        RunnerBench bench;
        Recording recording;
        recording.down(0, led(1, "141414", 0, 1)).down(1, label(512, "Main", 2)).up(2, key(true, 1));
        recording.down(3, led(1, "00ff00", 0, 3)).down(4, led(2, "ff0000", 1, 4));
        recording.play(bench);
        bench.datagram(led(1, "141414"));
        bench.datagram(label(512, "Main"));
        bench.clock.advance(300ms);
        bench.datagram(label(512, "Side"));
        bench.datagram(led(3, "0000ff"));
        bench.clock.advance(4900ms);
        QVERIFY(bench.outcomes.isEmpty());
        bench.clock.advance(500ms);
        QCOMPARE(bench.outcomes, QStringList("failed 4 differences"));
        QCOMPARE(
            bench.differences,
            (QStringList{
                "at the end: key 1: expected 0,255,0 (Green), brightness 100, shown 20,20,20 (Off), "
                "brightness "
                "100",
                "at the end: key 2: expected 255,0,0 (Red) flashing, brightness 100, shown nothing came",
                "at the end: key 3: expected nothing came, shown 0,0,255 (Blue), brightness 100",
                "at the end: label 512: expected \"Main\", shown \"Side\""}));
        QCOMPARE(bench.runner.failures(), 1);
        QVERIFY(!bench.runner.couldNotStart());
    }

    void slowModelIsWaitedForAsLongAsItTookAndMore()
    {
        RunnerBench bench;
        Recording recording;
        recording.down(0, led(1, "141414", 0, 1)).up(1, key(true, 1)).down(2000, led(1, "141414", 0, 2));
        recording.play(bench, "speed 1000");
        bench.datagram(led(1, "141414"));
        bench.clock.advance(2100ms); // all is as recorded, but the transition may be going on
        QVERIFY(bench.outcomes.isEmpty());
        bench.datagram(led(1, "00ff00"));
        bench.clock.advance(4s);
        QVERIFY(bench.outcomes.isEmpty());
        bench.datagram(led(1, "141414"));
        bench.clock.advance(200ms);
        QCOMPARE(bench.outcomes.size(), 1);
        QVERIFY(bench.outcomes.first().startsWith("ok"));
    }

    void withoutAHostNothingStarts()
    {
        RunnerBench bench;
        Recording recording;
        recordPress(recording);
        recording.play(bench);
        bench.clock.advance(29s);
        QVERIFY(bench.outcomes.isEmpty());
        bench.clock.advance(1s);
        QCOMPARE(bench.outcomes, QStringList("failed no host has sent anything within 30 s"));
        QVERIFY(bench.runner.couldNotStart());
        QVERIFY(bench.sent.isEmpty());
    }

    void whatIsNoCaptureIsRefused()
    {
        RunnerBench bench;
        bench.command("replay /nowhere.pcap");
        Recording().down(0, led(1, "141414")).play(bench);
        QCOMPARE(bench.outcomes.size(), 2);
        QVERIFY(bench.outcomes.at(0).contains("No such file"));
        QVERIFY(bench.outcomes.at(1).contains("no report of the console is in it"));
        QVERIFY(bench.runner.couldNotStart());
    }

    void stepPlaysOneReportAndTellsWhatDiffersAfterIt()
    {
        RunnerBench bench;
        Recording recording;
        recordPress(recording);
        bench.command("step");
        QCOMPARE(
            bench.outcomes.takeFirst(), QString("failed no capture is open: \"replay FILE step\" opens one"));
        recording.play(bench, "step");
        bench.datagram(led(1, "141414"));
        bench.clock.advance(1s);
        QCOMPARE(bench.outcomes.takeFirst(), QString("ok 2 reports to be stepped through"));
        QVERIFY(bench.sent.isEmpty() && bench.runner.hasUnplayed());

        bench.command("step");
        QCOMPARE(bench.sent.takeFirst().section('@', 0, 0), QString("press 1"));
        bench.clock.advance(1s); // the host does nothing
        QCOMPARE(bench.outcomes.takeFirst(), QString("ok report 1 of 2"));
        QCOMPARE(bench.differences.size(), 1);
        QVERIFY(bench.differences.takeFirst().startsWith("after report 1 of 2: key 1: expected 0,255,0"));

        bench.command("step 5"); // more than there are
        bench.clock.advance(1s);
        QCOMPARE(bench.outcomes, QStringList("ok 2 reports, the console shows what was recorded"));
        QVERIFY(!bench.runner.hasUnplayed() && bench.differences.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestReplay)
#include "tst_replay.moc"

#include "paneltestsupport.h"

#include "capturewriter.h"

#include <QTemporaryDir>

#include <csignal>
#include <thread>

#include <sys/resource.h>

using namespace PanelTest;

namespace {

const QByteArray Press = QByteArray::fromHex("55ee55ee010000010100 0900 c900 0500 0c000000 00");
const QByteArray Green = led(12, "00ff00");

/// The same head as ours, in another byte order, with other times, or of another kind of packet.
QByteArray fileHead(const char* magicHex, const char* restHex)
{
    return QByteArray::fromHex(magicHex) + QByteArray::fromHex(restHex);
}

constexpr char LittleRest[] = "0200 0400 00000000 00000000 00000400";
constexpr char BigRest[] = "0002 0004 00000000 00000000 00040000";

/// A press of key 12 as an IP packet.
QByteArray pressPacket()
{
    QByteArray record;
    appendCaptureRecord(CapturedDatagram::Up, {}, Press.constData(), Press.size(), record);
    return record.mid(16);
}

QByteArray littleRecord(const QByteArray& packet, quint32 seconds, quint32 fraction)
{
    return number(seconds, 4) + number(fraction, 4) + number(packet.size(), 4) + number(packet.size(), 4)
        + packet;
}

QByteArray bigRecord(const QByteArray& packet, quint32 seconds, quint32 fraction)
{
    QByteArray record;
    for (const quint32 one : {seconds, fraction, quint32(packet.size()), quint32(packet.size())}) {
        const QByteArray little = number(one, 4);
        record.append(little.rbegin()[0]).append(little[2]).append(little[1]).append(little[0]);
    }
    return record + packet;
}

QByteArray ours(const QByteArray& records)
{
    return captureFileHead() + records;
}

QString faultOf(const QByteArray& file)
{
    const auto read = readCapture(file);
    const auto* fault = std::get_if<CaptureFault>(&read);
    return fault ? fault->reason : QString();
}

} // namespace

class TestCapture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recordIsAnIPPacketWithTheConsolesPorts()
    {
        QCOMPARE(
            captureFileHead().toHex(),
            QByteArray("d4c3b2a1020004000000000000000000"
                       "0000040065000000"));
        QByteArray record;
        const std::chrono::microseconds time =
            std::chrono::seconds(0x01020304) + std::chrono::microseconds(7);
        QVERIFY(appendCaptureRecord(CapturedDatagram::Up, time, Press.constData(), Press.size(), record));
        // 21 bytes in a packet of 49, and the IP head sums up to ffff.
        QCOMPARE(
            record.toHex(),
            QByteArray("04030201070000003100000031000000"
                       "450000310000400040113cba7f0000017f0000018ae38ae4001d0000")
                + Press.toHex());
        QVERIFY(appendCaptureRecord(CapturedDatagram::Down, time, nullptr, 0, record));
        QVERIFY(record.endsWith(QByteArray::fromHex("8ae38ae300080000")));
    }

    void otherProgramsFilesAreRead_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray packet = pressPacket();
        const QByteArray ethernet = QByteArray(12, '\0') + QByteArray::fromHex("0800");
        QTest::newRow("raw, microseconds")
            << fileHead("d4c3b2a1", LittleRest) + number(101, 4) + littleRecord(packet, 3, 5);
        QTest::newRow("nanoseconds") << fileHead("4d3cb2a1", LittleRest) + number(101, 4)
                + littleRecord(packet, 3, 5999);
        QTest::newRow("other byte order")
            << fileHead("a1b2c3d4", BigRest) + QByteArray::fromHex("00000065") + bigRecord(packet, 3, 5);
        QTest::newRow("loopback device, filled up to the shortest frame") << fileHead("d4c3b2a1", LittleRest)
                + number(1, 4) + littleRecord(ethernet + packet + QByteArray(9, '\0'), 3, 5);
        QTest::newRow("any device") << fileHead("d4c3b2a1", LittleRest) + number(113, 4)
                + littleRecord(QByteArray(14, '\0') + QByteArray::fromHex("0800") + packet, 3, 5);
        QTest::newRow("any device, second form") << fileHead("d4c3b2a1", LittleRest) + number(276, 4)
                + littleRecord(QByteArray::fromHex("0800") + QByteArray(18, '\0') + packet, 3, 5);
        QByteArray withOptions = packet;
        withOptions[0] = 0x46;
        withOptions[3] = char(withOptions[3] + 4);
        withOptions.insert(20, QByteArray(4, '\1'));
        QTest::newRow("IP head with options")
            << fileHead("d4c3b2a1", LittleRest) + number(101, 4) + littleRecord(withOptions, 3, 5);
    }

    void otherProgramsFilesAreRead()
    {
        QFETCH(QByteArray, file);
        const auto read = readCapture(file);
        QVERIFY2(std::holds_alternative<Capture>(read), qPrintable(faultOf(file)));
        const auto& capture = std::get<Capture>(read);
        QCOMPARE(capture.datagrams.size(), std::size_t(1));
        QCOMPARE(capture.datagrams[0].direction, CapturedDatagram::Up);
        QCOMPARE(capture.datagrams[0].bytes, Press);
        QCOMPARE(capture.datagrams[0].time.count(), 3000005);
        QVERIFY(!capture.isCutOff && capture.skipped == 0);
    }

    void packetsOfOthersAreSkipped()
    {
        const QByteArray packet = pressPacket();
        QByteArray file = captureFileHead();
        const auto add = [&file](QByteArray changed, int at, char byte) {
            changed[at] = byte;
            file += littleRecord(changed, 0, 0);
        };
        add(packet, 0, 0x65); // IPv6
        add(packet, 0, 0x44); // a head of 16 bytes
        add(packet, 0, 0x4F); // a head that leaves no room
        add(packet, 9, 6); // TCP
        add(packet, 6, 0x20); // more fragments follow
        add(packet, 7, 1); // a later fragment
        add(packet, 23, 53); // another port
        add(packet, 3, char(packet.size() + 1)); // cut by the capturing program
        add(packet, 25, 7); // shorter than its own head
        add(packet, 25, 30); // longer than its packet
        file += littleRecord(packet.left(27), 0, 0);
        file += littleRecord({}, 0, 0);
        file += littleRecord(packet, 0, 0);
        const auto capture = std::get<Capture>(readCapture(file));
        QCOMPARE(capture.datagrams.size(), std::size_t(1));
        QCOMPARE(capture.skipped, quint64(12));
    }

    void damagedFileIsRefusedWithAReason()
    {
        QVERIFY(faultOf({}).contains("0 bytes are too few"));
        QVERIFY(faultOf(captureFileHead().left(23)).contains("too few"));
        QVERIFY(faultOf(QByteArray(100, 'x')).contains("no pcap file"));
        QVERIFY(faultOf(QByteArray::fromHex("0a0d0d0a") + QByteArray(100, '\0')).contains("editcap"));
        QVERIFY(faultOf(captureFileHead().replace(4, 1, "\3")).contains("version 3"));
        QVERIFY(faultOf(captureFileHead().replace(20, 1, "\7")).contains("link type 7"));
        QByteArray endless = littleRecord(pressPacket(), 0, 0);
        endless.replace(8, 4, number(0xFFFFFFF0, 4));
        QVERIFY(faultOf(ours(littleRecord(pressPacket(), 0, 0) + endless)).contains("packet 2 would have"));
    }

    void fileThatEndsEarlyCountsUpToThere()
    {
        const QByteArray record = littleRecord(pressPacket(), 0, 0);
        const QByteArray whole = ours(record + record);
        for (int size = 24; size <= whole.size(); ++size) {
            const auto capture = std::get<Capture>(readCapture(whole.left(size)));
            const int records = (size - 24) / record.size();
            QCOMPARE(int(capture.datagrams.size()), records);
            QCOMPARE(capture.isCutOff, (size - 24) % record.size() != 0);
        }
    }

    void everyThreadsDatagramsAreInTheFileInTheirOrder()
    {
        const QTemporaryDir directory;
        CaptureWriter writer;
        QVERIFY(writer.open(directory.filePath("a.pcap")));
        constexpr int count = 5000;
        std::vector<std::thread> threads;
        for (const auto direction : {CapturedDatagram::Up, CapturedDatagram::Down})
            threads.emplace_back([&writer, direction] {
                for (int i = 0; i < count; ++i)
                    writer.add(direction, reinterpret_cast<const char*>(&i), sizeof(i));
            });
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(writer.close().datagrams, quint64(2 * count));
        writer.add(CapturedDatagram::Up, "late", 4);
        QCOMPARE(writer.close().lost, quint64(0));

        const auto capture = std::get<Capture>(loadCapture(writer.path()));
        QCOMPARE(capture.datagrams.size(), std::size_t(2 * count));
        int next[2] = {0, 0};
        std::chrono::microseconds before{};
        for (const CapturedDatagram& datagram : capture.datagrams) {
            QCOMPARE(datagram.bytes, number(quint32(next[datagram.direction]++), 4));
            QVERIFY(datagram.time >= before);
            before = datagram.time;
        }
    }

    void diskThatFillsUpEndsTheCaptureAndIsTold()
    {
        // The system's limit for files stands in for a disk without room.
        rlimit before{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        constexpr rlim_t room = 4096;
        const rlimit small{room, before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const QTemporaryDir directory;
        CaptureWriter writer;
        QVERIFY(writer.open(directory.filePath("a.pcap")));
        QSignalSpy failed(&writer, &CaptureWriter::signalFailed);
        constexpr int added = 100; // more than there is room for
        for (int i = 0; i < added; ++i)
            writer.add(CapturedDatagram::Down, Green.constData(), Green.size());
        QTRY_COMPARE(failed.count(), 1);
        const CaptureWriter::Summary summary = writer.close();
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(!summary.errorText.isEmpty());
        QCOMPARE(summary.datagrams + summary.lost, quint64(added));
        QVERIFY(std::get<Capture>(loadCapture(writer.path())).datagrams.size() >= summary.datagrams);
    }
};

QTEST_GUILESS_MAIN(TestCapture)
#include "tst_capture.moc"

#include "logcapture.h"
#include "orvaneecclientdecoder.h"
#include "uptlv_p.h"

#include <QLoggingCategory>
#include <QNetworkDatagram>
#include <QtTest>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

using namespace Orvane::ECProxy::Client;
using Internal::parseUpDatagram;
using Internal::UpReport;
using Orvane::TestSupport::LogCapture;

namespace {

constexpr int WaitLimitMs = 20000;

QByteArray bytesOf(const char* hex)
{
    return QByteArray::fromHex(hex);
}

/// Parses a copy that ends where its memory ends, so that a sanitizer sees any look beyond it.
template <typename Check> void parseExactly(const QByteArray& datagram, Check check)
{
    const std::size_t size = std::size_t(datagram.size());
    const std::unique_ptr<char[]> exact(new char[size]);
    std::copy_n(datagram.constData(), size, exact.get());
    check(parseUpDatagram(exact.get(), size), exact.get());
}

/// Takes reports as the decoder hands them out, the values as they are, without a copy.
class Reports {
public:
    UpTLVDecodeFinishedCallbackType callback()
    {
        return [this](const eECUpMessageTag& tag, const QByteArray& value) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_list.append({int(tag), value});
            return false; // nobody looks
        };
    }
    QList<QPair<int, QByteArray>> list() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_list;
    }
    int count() const { return list().size(); }

private:
    mutable std::mutex m_mutex; // guards m_list
    QList<QPair<int, QByteArray>> m_list;
};

QByteArray press(quint32 key)
{
    QByteArray datagram = bytesOf("55ee55ee 01000001 0000 0900 c900 0500 00000000 00");
    Wire::store<quint32>(key, datagram.data() + 16);
    return datagram;
}

} // namespace

class tst_decoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyReportHasItsBytes_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<int>("tag");
        QTest::addColumn<QByteArray>("value");

        QTest::newRow("201 pressed") << bytesOf("55ee55ee0100000101000900 c9000500 f403000000") << 201
                                     << bytesOf("f403000000");
        QTest::newRow("201 its length field denies the value")
            << bytesOf("55ee55ee0100000101000900 c9000000 f403000000") << 201 << bytesOf("f403000000");
        QTest::newRow("202 released, the rest of the head is anything")
            << bytesOf("55ee55eeffffffffffffffff ca00ffff f403000001") << 202 << bytesOf("f403000001");
        QTest::newRow("203") << bytesOf("55ee55ee0100000103000900 cb000500 4000000040") << 203
                             << bytesOf("4000000040");
        QTest::newRow("204") << bytesOf("55ee55ee0100000104000500 cc000100 01") << 204 << bytesOf("01");
        QTest::newRow("205") << bytesOf("55ee55ee0100000105000500 cd000100 00") << 205 << bytesOf("00");
        QTest::newRow("206 two inputs")
            << bytesOf("55ee55ee0100000106000800 ce000400 00010100") << 206 << bytesOf("00010100");
        QTest::newRow("206 none") << bytesOf("55ee55ee0100000106000400 ce000000") << 206 << QByteArray();
        QTest::newRow("207") << bytesOf("55ee55ee0100000107001200 cf000e00 0201c0a80105ffffff00c0a80101")
                             << 207 << bytesOf("0201c0a80105ffffff00c0a80101");
        QTest::newRow("a tag nobody knows")
            << bytesOf("55ee55ee0100000107000500 ffff0100 aa") << 65535 << bytesOf("aa");
        QTest::newRow("13 bytes") << bytesOf("55ee55ee0000000000000000 c9") << 201 << QByteArray();
        QTest::newRow("14 bytes") << bytesOf("55ee55ee0000000000000000 c901") << 457 << QByteArray();
        QTest::newRow("15 bytes") << bytesOf("55ee55ee0000000000000000 c90105") << 457 << QByteArray();
        QTest::newRow("12 bytes") << bytesOf("55ee55ee0000000000000000") << -1 << QByteArray();
        QTest::newRow("4 bytes") << bytesOf("55ee55ee") << -1 << QByteArray();
    }

    void everyReportHasItsBytes()
    {
        QFETCH(QByteArray, datagram);
        QFETCH(int, tag);
        QFETCH(QByteArray, value);
        parseExactly(datagram, [&](const UpReport& report, const char*) {
            QCOMPARE(report.kind == UpReport::Report, tag >= 0);
            QVERIFY(report.kind != UpReport::InvalidHead);
            if (tag >= 0)
                QCOMPARE(int(report.tag), tag);
            QCOMPARE(QByteArray(report.value, report.valueSize), value);
        });
    }

    void aWrongHeadIsToldWithItsNumber_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<QString>("head");
        QTest::newRow("nothing at all") << QByteArray() << "0";
        QTest::newRow("3 bytes of the right one") << bytesOf("55ee55") << "5631573";
        QTest::newRow("the other direction's") << bytesOf("ee55ee5501000001010004006800") << "1441682926";
        QTest::newRow("the right one further on") << bytesOf("0055ee55ee") + press(1) << "1441682688";
    }

    void aWrongHeadIsToldWithItsNumber()
    {
        QFETCH(QByteArray, datagram);
        QFETCH(QString, head);
        LogCapture log;
        Reports reports;
        ECClientDecoder decoder;
        decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        decoder.startDecode();
        decoder.appendDatagram(datagram);
        const QString line("Orvane ec up decoder receive invalid package. The head is " + head);
        QVERIFY2(log.waitFor(line), qPrintable(log.all()));
        decoder.stopDecode();
        QCOMPARE(reports.count(), 0);
    }

    void whatWaitsAtTheStartIsOneBatchInOrder()
    {
        LogCapture log;
        Reports reports;
        ECClientDecoder decoder;
        decoder.appendDatagram(press(1));
        decoder.appendDatagram(QNetworkDatagram(press(2)));
        decoder.appendDatagram(press(3));
        decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        decoder.startDecode();
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(), 3, WaitLimitMs);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(reports.list()[i], qMakePair(201, press(quint32(i + 1)).mid(16)));
        decoder.stopDecode();
        QCOMPARE(log.count("[locate key no response] received key command,parsing tlv."), 1);
        QCOMPARE(log.count("[locate key no response] tag: 201 body's size: 5"), 3);
        QCOMPARE(log.count("Orvane ec client decoder thread start"), 1);
        QCOMPARE(log.count("Orvane ec client decoder thread stop"), 1);
    }

    void withoutACallbackReportsAreLostWithAWarning()
    {
        LogCapture log;
        Reports reports;
        ECClientDecoder decoder;
        decoder.registerExDownTLVDecodeFinishedCB(reports.callback()); // never called
        decoder.startDecode();
        decoder.appendDatagram(press(1));
        QVERIFY(log.waitFor("[locate key no response] up tlv decoder callback is null."));
        decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        decoder.appendDatagram(press(2));
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(), 1, WaitLimitMs);
        QCOMPARE(reports.list().first().second, press(2).mid(16));
    }

    void everyStopReturnsHoweverOftenOthersStart()
    {
        ECClientDecoder decoder;
        QVERIFY(decoder.stopDecode()); // never started: at once
        std::atomic<bool> stopped{false};
        std::thread stopping([&] {
            for (int i = 0; i < 3000; ++i)
                decoder.stopDecode();
            stopped = true;
        });
        std::thread starting([&] {
            while (!stopped)
                decoder.startDecode();
        });
        const bool everyStopReturned = QTest::qWaitFor([&] { return stopped.load(); }, WaitLimitMs);
        stopped = true;
        decoder.stopDecode(); // frees one that hangs
        starting.join();
        stopping.join();
        QVERIFY(everyStopReturned);

        Reports reports;
        decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        decoder.appendDatagram(press(1));
        decoder.startDecode();
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(), 1, WaitLimitMs);
    }

    void aBatchThatHasBegunIsParsedWholeThoughItsCallbackStopsTheDecoder()
    {
        ECClientDecoder decoder;
        std::atomic<int> calls{0};
        std::atomic<bool> restarted{true};
        decoder.appendDatagram(press(1));
        decoder.appendDatagram(press(2));
        decoder.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            ++calls;
            decoder.stopDecode();
            restarted = decoder.startDecode();
            decoder.appendDatagram(press(3)); // no part of the batch
            return true;
        });
        decoder.startDecode();
        QVERIFY(decoder.wait(WaitLimitMs));
        QCOMPARE(calls.load(), 2);
        QVERIFY(!restarted);
        Reports reports;
        decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        decoder.startDecode();
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(), 2, WaitLimitMs);
    }

    void theCallbackMayReplaceItselfForTheRestOfTheBatch()
    {
        ECClientDecoder decoder;
        Reports reports;
        decoder.appendDatagram(press(1));
        decoder.appendDatagram(press(2));
        decoder.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            return decoder.registerUpTLVDecodeFinishedCB(reports.callback());
        });
        decoder.startDecode();
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(), 1, WaitLimitMs);
        QCOMPARE(reports.list().first().second, press(2).mid(16));
    }

    void aCallbackReplacedUnderWayIsFollowedByTheNextWithoutALoss()
    {
        QLoggingCategory::setFilterRules("orvane.ec.codec=false");
        constexpr int total = 20000;
        std::atomic<int> calls{0};
        ECClientDecoder decoder;
        const auto counting = [&calls] {
            return
                [&calls, held = std::make_shared<int>(0)](const eECUpMessageTag&, const QByteArray& value) {
                    *held += value.size(); // an instance of its own is never called by two at once
                    ++calls;
                    return true;
                };
        };
        decoder.registerUpTLVDecodeFinishedCB(counting());
        decoder.startDecode();
        std::thread appending([&decoder] {
            for (int i = 0; i < total; ++i)
                decoder.appendDatagram(press(quint32(i)));
        });
        for (int i = 0; i < 2000; ++i)
            decoder.registerUpTLVDecodeFinishedCB(counting());
        appending.join();
        QTRY_COMPARE_WITH_TIMEOUT(calls.load(), total, WaitLimitMs);
        QLoggingCategory::setFilterRules(QString());
    }

    // The way of such datagrams through the threads is fuzz_dispatch's; its queue packs them, so that a look
    // beyond one would go unseen there.
    void anObserverSeesEveryDatagramBeforeItsCallback()
    {
        ECClientDecoder decoder;
        std::mutex mutex;
        QVector<QByteArray> seen; // what was appended, and "parsed" for each that reached the callback
        const auto note = [&](const QByteArray& what) {
            const std::lock_guard lock(mutex);
            seen.append(what);
        };
        decoder.setDatagramObserver(note);
        decoder.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            note("parsed");
            return true;
        });
        const QByteArray press = QByteArray::fromHex("55ee55ee0100000100000900c90005000c00000000");
        const QByteArray nonsense("nonsense");
        decoder.appendDatagram(nonsense);
        decoder.appendDatagram(QNetworkDatagram(press));
        decoder.setDatagramObserver({});
        decoder.appendDatagram(press);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("invalid package"));
        decoder.startDecode();
        QTRY_COMPARE((std::lock_guard(mutex), seen.size()), 4);
        decoder.stopDecode();
        QCOMPARE(seen, (QVector<QByteArray>{nonsense, press, "parsed", "parsed"}));
    }
};

QTEST_GUILESS_MAIN(tst_decoder)
#include "tst_decoder.moc"

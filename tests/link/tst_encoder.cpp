#include "orvaneecclientencoder.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

using namespace Orvane::ECProxy::Client;

namespace {

using Build = std::function<bool(ECClientEncoder&, QByteArray&)>;

template <typename Record> std::shared_ptr<Record> shared(const Record& record)
{
    return std::make_shared<Record>(record);
}

ECOLEDText label(quint32 oledKey, quint16 ecKey, const char* text)
{
    ECOLEDText record;
    record.OledKey = oledKey;
    record.ECKey = ecKey;
    qstrncpy(record.OledText, text, sizeof(record.OledText));
    return record;
}

PeripheralControl peripheral()
{
    PeripheralControl record;
    record.ScreenNum = 2;
    record.TargetScreenIndex = 1;
    record.resolution[0] = 1920;
    record.resolution[31] = 0xABCD;
    return record;
}

quint16 sequenceOf(const QByteArray& datagram, int offset = 8)
{
    return Wire::load<quint16>(datagram.constData() + offset);
}

/// The next number that the process gives out, which this takes.
quint16 nextSequence()
{
    ECClientEncoder encoder;
    QByteArray out;
    encoder.getLockTBarRequest(out);
    return sequenceOf(out);
}

struct Row {
    const char* name;
    /// Bytes in hex; "ssss" stands for the sequence.
    QByteArray hex;
    Build build;
};

QByteArray zeros(int count)
{
    return QByteArray(count * 2, '0');
}

const std::vector<Row>& rows()
{
    using E = ECClientEncoder;
    static const std::vector<Row> all{
        {"101 key lit green", "ee55ee5501000001ssss0f00 65000b00 f4030000 0c00 00 00ff00 64",
         [](E& e, QByteArray& out) {
             return e.getECButtonColorRequest(shared(ECButtonColor{1012, 12, LightUp, 0, 255, 0, 100}), out);
         }},
        {"102 label", "ee55ee5501000001ssss2a00 66002600 00020000 0102 5061676520 31" + zeros(26),
         [](E& e, QByteArray& out) {
             return e.getECOledTextRequest(shared(label(512, 0x201, "Page 1")), out);
         }},
        {"103 T-Bar", "ee55ee5501000001ssss0900 67000500 3f000000 40",
         [](E& e, QByteArray& out) {
             return e.getECTBarValueRequest(shared(ECTBarValue{63, TopToBottom}), out);
         }},
        {"104", "ee55ee5501000001ssss0400 68000000",
         [](E& e, QByteArray& out) { return e.getLockTBarRequest(out); }},
        {"105", "ee55ee5501000001ssss0400 69000000",
         [](E& e, QByteArray& out) { return e.getUnlockTBarRequest(out); }},
        {"106", "ee55ee5501000001ssss0400 6a000000",
         [](E& e, QByteArray& out) { return e.getLockedTBarRequest(out); }},
        {"107", "ee55ee5501000001ssss0400 6b000000",
         [](E& e, QByteArray& out) { return e.getLockKeyboardRequest(out); }},
        {"108", "ee55ee5501000001ssss0400 6c000000",
         [](E& e, QByteArray& out) { return e.getUnlockedKeyboardRequest(out); }},
        {"109", "ee55ee5501000001ssss0400 6d000000",
         [](E& e, QByteArray& out) { return e.getLockedKeyboardRequest(out); }},
        {"110 byte beside a length of 0", "ee55ee5501000001ssss0500 6e000000 03",
         [](E& e, QByteArray& out) { return e.getDVIInSignalRequest(3, out); }},
        {"110 low byte of the index", "ee55ee5501000001ssss0500 6e000000 ff",
         [](E& e, QByteArray& out) { return e.getDVIInSignalRequest(-1, out); }},
        {"111", "ee55ee5501000001ssss0700 6f000300 01 01 0a",
         [](E& e, QByteArray& out) {
             return e.getCloseAllButtonLEDRequest(shared(LightControl{Front, 1, 10}), out);
         }},
        {"112", "ee55ee5501000001ssss0500 70000100 64",
         [](E& e, QByteArray& out) {
             return e.getScreenLuminanceRequest(shared(ScreenLuminance{100}), out);
         }},
        {"113", "ee55ee5501000001ssss4600 71004200 02 01 8007" + zeros(60) + "cdab",
         [](E& e, QByteArray& out) { return e.getPeripheralControlRequest(shared(peripheral()), out); }},
        {"114 byte beside a length of 0", "ee55ee5501000001ssss0500 72000000 01",
         [](E& e, QByteArray& out) { return e.getSwitchSourceRequest({arm_left}, out); }},
        {"115 19 characters", "ee55ee5501000001ssss1700 73001300 323032343a30353a30362030373a30383a3039",
         [](E& e, QByteArray& out) { return e.getUpdateSystemTime("2024:05:06 07:08:09", out); }},
        {"115 Latin-1, one byte a character", "ee55ee5501000001ssss0700 73000300 e93f62",
         [](E& e, QByteArray& out) { return e.getUpdateSystemTime(QString::fromUtf8("é✓b"), out); }},
        {"115 nothing", "ee55ee5501000001ssss0400 73000000",
         [](E& e, QByteArray& out) { return e.getUpdateSystemTime(QString(), out); }},
        {"116", "ee55ee5501000001ssss0700 74000300 614062",
         [](E& e, QByteArray& out) { return e.getUpdateSystemIP("a@b", out); }},
        {"119", "ee55ee5501000001ssss0500 77000100 07",
         [](E& e, QByteArray& out) { return e.getReqECDeviceIP(7, out); }},
        {"120 content length without the value",
         "ee55ee5501000001ssss0400 78000e00 01020304050607080910 11121314",
         [](E& e, QByteArray& out) {
             return e.getResECDeviceIP(QByteArray::fromHex("0102030405060708091011121314"), out);
         }},
        {"121", "ee55ee5501000001ssss0500 79000100 fe",
         [](E& e, QByteArray& out) { return e.getRestartConsolePack(0xFE, out); }},
        {"122 on", "ee55ee5501000001ssss0500 7a000100 01",
         [](E& e, QByteArray& out) { return e.getKeyboardMouseEventListenReq(true, out); }},
        {"122 off", "ee55ee5501000001ssss0500 7a000100 00",
         [](E& e, QByteArray& out) { return e.getKeyboardMouseEventListenReq(false, out); }},
        {"123", "ee55ee5501000001ssss0600 7b000200 02 01",
         [](E& e, QByteArray& out) {
             return e.getUpdateDVISignalStatusPack(shared(DVIInSignal{2, 1}), out);
         }},
        {"124", "ee55ee5501000001ssss0500 7c000100 01",
         [](E& e, QByteArray& out) { return e.getRestartMCUPack(1, out); }},
        {"125 content length without the value", "ee55ee5501000001ssss0400 7d000200 02 01",
         [](E& e, QByteArray& out) { return e.getChangeIPModeRequestPack(QByteArray("\x02\x01"), out); }},
        {"126", "ee55ee5501000001ssss0500 7e000100 01",
         [](E& e, QByteArray& out) {
             return e.getControlPeripheralStateRequest(shared(PeripheralControlVisibleState{1}), out);
         }},
        {"118 first pack of a file to write",
         "0000 0300 ee55ee5501000001ssss1900 76000000 01 e8030000 00000000 0300 612e62 aabbcc",
         [](E& e, QByteArray& out) {
             return e.getFileOperateFirstPackRequest(
                 OpeReadFile, 0, 3, MCU, 1000, 0, 3, "a.b", QByteArray("\xaa\xbb\xcc"), out);
         }},
        {"117 first pack of a file to read, name filled up",
         "0000 0100 ee55ee5501000001ssss1700 75000000 00 00000000 78563412 0400 61620000",
         [](E& e, QByteArray& out) {
             return e.getFileOperateFirstPackRequest(
                 OpeWriteFile, 0, 1, ALL, 0, 0x12345678, 4, "ab", QByteArray(), out);
         }},
        {"118 data pack", "0200 0300 ee55ee5501000001ssss0a00 76000000 aabb",
         [](E& e, QByteArray& out) {
             return e.getFileOperateRequest(OpeWriteFile, 2, 3, QByteArray("\xaa\xbb"), out);
         }},
        {"117 data pack without data", "0100 0200 ee55ee5501000001ssss0800 75000000",
         [](E& e, QByteArray& out) { return e.getFileOperateRequest(OpeReadFile, 1, 2, QByteArray(), out); }},
    };
    return all;
}

bool isFilePack(const Row& row)
{
    return !row.hex.startsWith("ee55");
}

} // namespace

class tst_encoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First of all, since the numbers of the process begin at its first message.
    void messagesAreNumberedFrom1To65534AndOnFrom0()
    {
        ECClientEncoder one;
        ECClientEncoder other;
        QByteArray out;
        for (int nth = 1; nth <= 65536; ++nth) {
            (nth % 2 ? one : other).getLockTBarRequest(out);
            if (sequenceOf(out) != nth % 65535)
                QFAIL(qPrintable(QString("message %1 carries %2").arg(nth).arg(sequenceOf(out))));
        }
    }

    void threadsNeverShareANumber()
    {
        constexpr int threadCount = 4;
        constexpr int each = 10000;
        std::vector<std::vector<quint16>> taken(threadCount);
        const quint16 before = nextSequence();
        std::vector<std::thread> threads;
        for (auto& numbers : taken) {
            threads.emplace_back([&numbers] {
                ECClientEncoder encoder;
                QByteArray out;
                for (int i = 0; i < each; ++i) {
                    encoder.getECButtonColorRequest(shared(ECButtonColor()), out);
                    numbers.push_back(sequenceOf(out));
                }
            });
        }
        for (auto& thread : threads)
            thread.join();

        std::vector<bool> seen(65535);
        for (const auto& numbers : taken) {
            for (const quint16 number : numbers) {
                QVERIFY(!seen.at(number));
                seen[number] = true;
            }
        }
        QCOMPARE(int(nextSequence()), (before + threadCount * each + 1) % 65535);
    }

    void everyMessageHasItsBytes_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < rows().size(); ++i)
            QTest::newRow(rows()[i].name) << int(i);
    }

    void everyMessageHasItsBytes()
    {
        QFETCH(int, index);
        const Row& row = rows()[std::size_t(index)];
        ECClientEncoder encoder;
        QByteArray out("content of before");

        const quint16 before = nextSequence();
        const bool answer = row.build(encoder, out);

        QCOMPARE(answer, !isFilePack(row)); // those answer false even when they were built
        const int sequenceAt = isFilePack(row) ? 12 : 8;
        QCOMPARE(sequenceOf(out, sequenceAt), quint16(before + 1));
        QByteArray expected = row.hex;
        expected.replace(' ', "").replace("ssss", out.mid(sequenceAt, 2).toHex());
        QCOMPARE(out.toHex(), expected);
    }

    void lengthsBeyond16BitsAreCutInTheFieldsOnly()
    {
        ECClientEncoder encoder;
        QByteArray out;
        encoder.getUpdateSystemTime(QString(70000, 'x'), out);
        QCOMPARE(out.size(), 70016);
        QCOMPARE(
            out.mid(10, 6).toHex(),
            QByteArray("7411"
                       "7300"
                       "7011"));

        encoder.getFileOperateRequest(OpeWriteFile, 1, 2, QByteArray(65536, 'x'), out);
        QCOMPARE(out.size(), 65536 + 20);
        QCOMPARE(out.mid(14, 2).toHex(), QByteArray("0800"));
    }

    void whatCannotBeBuiltTakesANumberAndLeavesTheArray()
    {
        ECClientEncoder encoder;
        const std::vector<Build> refused{
            [](ECClientEncoder& e, QByteArray& out) {
                return e.getFileOperateFirstPackRequest(OpeWriteFile, 0, 1, FPGA, 1, 0, 1, "a", "x", out);
            },
            [](ECClientEncoder& e, QByteArray& out) {
                return e.getFileOperateRequest(static_cast<eFlieOperType>(2), 1, 2, "x", out);
            },
            [](ECClientEncoder& e, QByteArray& out) { return e.getECButtonColorRequest(nullptr, out); },
        };
        for (const Build& build : refused) {
            QByteArray out("before");
            const quint16 before = nextSequence();
            QVERIFY(!build(encoder, out));
            QCOMPARE(out, QByteArray("before"));
            QCOMPARE(nextSequence(), quint16(before + 2));
        }
    }
};

QTEST_GUILESS_MAIN(tst_encoder)
#include "tst_encoder.moc"

#include "downdecoder.h"
#include "downdescription.h"
#include "requestrows.h"

#include <QtTest>

using namespace Orvane::ConsolePanel;

namespace {

QString read(const QByteArray& datagram)
{
    const auto result = decodeDown(datagram.constData(), datagram.size());
    if (const auto* unreadable = std::get_if<Unreadable>(&result))
        return "unreadable: " + unreadable->reason;
    return describe(std::get<DownDatagram>(result));
}

} // namespace

class TestDownDecoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfRequestAndNoPrefixOfOne_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<QString>("line");
        for (const auto& [name, hex, line] : PanelTest::requestRows())
            QTest::newRow(name) << hex << QString(line);
    }

    void readsEveryKindOfRequestAndNoPrefixOfOne()
    {
        QFETCH(QByteArray, hex);
        QFETCH(QString, line);
        const QByteArray whole = QByteArray::fromHex(hex);
        QCOMPARE(read(whole), line);
        for (int size = 0; size < whole.size(); ++size) {
            // A block of exactly this size, so that reading beyond it is noticed by the sanitizer.
            const std::vector<char> prefix(whole.begin(), whole.begin() + size);
            QVERIFY2(
                std::holds_alternative<Unreadable>(decodeDown(prefix.data(), size)),
                qPrintable(QString::number(size)));
        }
    }

    void refusesWhatTheServiceDoesNotExpect_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* hex, const char* reason) {
            QTest::newRow(name) << QByteArray(hex) << QString(reason);
        };
        row("nothing", "", "empty datagram");
        row("noise", "00112233445566778899aabbccddeeff", "no magic");
        row("a report", "55ee55ee01000001 0000 0900 c900 0500 0c00000000",
            "carries the magic of a report, not of a request");
        row("head alone", "ee55ee5501000001 0100 0400", "12 bytes are too few for a head and a tag");
        row("packet type", "ee55ee5502000001 0100 0400 6800 0000", "packet type is 2, expected 1");
        row("version", "ee55ee5501000100 0100 0400 6800 0000", "protocol version is 0x0001, expected 0x0100");
        row("sequence", "ee55ee5501000001 ffff 0400 6800 0000", "sequence is 65535, which is never sent");
        row("tag below", "ee55ee5501000001 0100 0400 6400 0000", "unknown tag 100");
        row("value too long", "ee55ee5501000001 0100 0500 6800 0100 00",
            "size of the value is 1, expected 0");
        row("value too short", "ee55ee5501000001 0100 0600 6f00 0200 0101",
            "size of the value is 2, expected 3");
        row("length field", "ee55ee5501000001 0100 0500 7000 0000 64", "length is 0, expected 1");
        row("110 with a regular length", "ee55ee5501000001 0500 0500 6e00 0100 03",
            "length is 1, expected 0");
        row("content length", "ee55ee5501000001 0100 0400 7000 0100 64", "content length is 4, expected 5");
        row("125 with a regular content length", "ee55ee5501000001 1200 0600 7d00 0200 0102",
            "content length is 6, expected 4");
        row("120 with a short record", "ee55ee5501000001 0d00 0400 7800 0200 0001",
            "size of the network record is 2, expected 14");
        row("button state", "ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 03 00ff00 64",
            "button state 3 is none of 0, 1, 2 and 255");
        row("light type", "ee55ee5501000001 0600 0700 6f00 0300 03 01 0a",
            "light type 3 is none of 0, 1, 2 and 255");
        row("file tag in the plain layout", "ee55ee5501000001 0600 0400 7500 0000",
            "a file pack without its pack numbering");
        row("short pack", "0000 0100 ee55ee5501000001 1300 0400", "16 bytes are too few for a file pack");
        row("pack with another tag", "0100 0200 ee55ee5501000001 1300 0800 6800 0000",
            "tag 104 in the layout of a file pack");
        row("pack's content length", "0100 0200 ee55ee5501000001 1300 0800 7600 0000 00",
            "content length is 8, expected 9");
        row("pack beyond the count", "0200 0200 ee55ee5501000001 1300 0800 7600 0000",
            "pack index 2 of 2 packs");
        row("first pack too short", "0000 0100 ee55ee5501000001 1300 0900 7600 0000 01",
            "21 bytes are too few for a first file pack");
        row("first pack of a gate array's file",
            "0000 0100 ee55ee5501000001 1300 1400 7500 0000 02 00000000 00000000 0100 61",
            "file type 2 has no first pack");
        row("file type and tag",
            "0000 0100 ee55ee5501000001 1300 1400 7500 0000 01 00000000 00000000 0100 61",
            "tag 117 does not belong to file type 1");
        row("reserved word", "0000 0100 ee55ee5501000001 1300 1400 7600 0000 01 00000000 01000000 0100 61",
            "reserved word is not zero");
        row("name beyond the end",
            "0000 0100 ee55ee5501000001 1300 1400 7600 0000 01 00000000 00000000 0200 61",
            "name of 2 bytes goes beyond the end");
        QTest::newRow("label behind its zero")
            << QByteArray("ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 410042" + PanelTest::zeros(29))
            << "label text goes on behind its terminating zero";
    }

    void refusesWhatTheServiceDoesNotExpect()
    {
        QFETCH(QByteArray, hex);
        QFETCH(QString, reason);
        QCOMPARE(read(QByteArray::fromHex(hex)), "unreadable: " + reason);
    }
};

QTEST_APPLESS_MAIN(TestDownDecoder)
#include "tst_downdecoder.moc"

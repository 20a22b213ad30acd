#include "downdecoder.h"
#include "downdescription.h"

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

QByteArray zeros(int count)
{
    return QByteArray(count * 2, '0');
}

} // namespace

class TestDownDecoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfRequestAndNoPrefixOfOne_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, const QByteArray& hex, const char* line) {
            QTest::newRow(name) << hex << QString(line);
        };
        row("101 a key lit green", "ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 00 00ff00 64",
            "#1 UpdateECButtonColor key=12 app=1012 state=LightUp color=0,255,0 brightness=100");
        row("101 all LEDs closed", "ee55ee5501000001 feff 0f00 6500 0b00 ff000000 ff00 02 000000 00",
            "#65534 UpdateECButtonColor key=255 app=255 state=CloseAllLight color=0,0,0 brightness=0");
        row("102 a label", "ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 50616765203100" + zeros(25),
            "#2 UpdateECOledText label=513 app=512 text=\"Page 1\"");
        row("102 a label cut within a character",
            "ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 " + QByteArray(30, 'a').toHex() + "e282",
            "#2 UpdateECOledText label=513 app=512 text=\"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\"");
        row("103 a T-Bar level", "ee55ee5501000001 0300 0900 6700 0500 06000000 01",
            "#3 UpdateTBarValue level=6 direction=up");
        row("104", "ee55ee5501000001 0400 0400 6800 0000", "#4 LockTBar");
        row("105", "ee55ee5501000001 0400 0400 6900 0000", "#4 UnlockTBar");
        row("106", "ee55ee5501000001 0400 0400 6a00 0000", "#4 ReadLockedTBar");
        row("107", "ee55ee5501000001 0400 0400 6b00 0000", "#4 LockKeyboard");
        row("108", "ee55ee5501000001 0400 0400 6c00 0000", "#4 UnlockKeyboard");
        row("109", "ee55ee5501000001 0400 0400 6d00 0000", "#4 ReadLockedKeyboard");
        row("110 carries a byte its length denies", "ee55ee5501000001 0500 0500 6e00 0000 03",
            "#5 ReadDVIInSignal input=3");
        row("111", "ee55ee5501000001 0600 0700 6f00 0300 01 01 0a",
            "#6 ControlLight light=front on=true brightness=10");
        row("112", "ee55ee5501000001 0700 0500 7000 0100 64", "#7 UpdateScreenLuminance brightness=100");
        row("113", "ee55ee5501000001 0800 4600 7100 4200 02 01 8007 3804" + zeros(60),
            "#8 ControlPeripheral screens=2 target=1 resolution=1920,1080"
            ",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0");
        row("114 carries a byte its length denies", "ee55ee5501000001 0900 0500 7200 0000 01",
            "#9 ControlMVRSignal source=arm_left");
        row("115", "ee55ee5501000001 0a00 0900 7300 0500 30373a3038", "#10 UpdateSystemTime text=\"07:08\"");
        row("115 without a text", "ee55ee5501000001 0a00 0400 7300 0000", "#10 UpdateSystemTime text=\"\"");
        row("116 with a line end", "ee55ee5501000001 0b00 0700 7400 0300 61400a",
            "#11 UpdateNetworkInfo text=\"a@\\x0a\"");
        row("119", "ee55ee5501000001 0c00 0500 7700 0100 02", "#12 ReadECDeviceIPData index=2");
        row("120 counts the tag only",
            "ee55ee5501000001 0d00 0400 7800 0e00 00 01 0a00a8c0 00ffffff 0100a8c0",
            "#13 UpdateECDeviceIPData index=0 status=1 address=192.168.0.10 mask=255.255.255.0 "
            "gateway=192.168.0.1");
        row("121", "ee55ee5501000001 0e00 0500 7900 0100 01", "#14 RestartConsole value=1");
        row("122", "ee55ee5501000001 0f00 0500 7a00 0100 01", "#15 ControlKeyboard on=true");
        row("123", "ee55ee5501000001 1000 0600 7b00 0200 01 00",
            "#16 UpdateDVISignalStatus input=1 signal=false");
        row("124", "ee55ee5501000001 1100 0500 7c00 0100 01", "#17 ResetMCU value=1");
        row("125 counts the tag only", "ee55ee5501000001 1200 0400 7d00 0200 01 02",
            "#18 ChangeIPMode index=1 mode=2");
        row("126", "ee55ee5501000001 0000 0500 7e00 0100 01", "#0 ControlPeripheralState visible=true");
        row("118 first pack of a microcontroller's file",
            "0000 0300 ee55ee5501000001 1300 1a00 7600 0000 01 0a000000 00000000 0300 612e62 01020304",
            "#19 WriteFile pack=0 packs=3 file=\"a.b\" type=1 size=10 bytes=4");
        row("117 first pack of another file",
            "0000 0100 ee55ee5501000001 1300 1400 7500 0000 00 00000000 00000000 0100 61",
            "#19 ReadFile pack=0 packs=1 file=\"a\" type=0 size=0 bytes=0");
        row("118 data pack", "0200 0300 ee55ee5501000001 1500 0a00 7600 0000 0506",
            "#21 WriteFile pack=2 packs=3 bytes=2");
        row("117 data pack without data", "0200 0300 ee55ee5501000001 1500 0800 7500 0000",
            "#21 ReadFile pack=2 packs=3 bytes=0");
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
            << QByteArray("ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 410042" + zeros(29))
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

#include "downdecoder.h"
#include "downdescription.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QtTest>

using namespace Orvane::ConsolePanel;
namespace Protocol = Orvane::ECProxy::Client;

namespace {

QByteArray bytesOf(const char* hex)
{
    return QByteArray::fromHex(hex);
}

QString read(const QByteArray& datagram)
{
    const auto result = decodeDown(datagram.constData(), datagram.size());
    if (const auto* unreadable = std::get_if<Unreadable>(&result))
        return QStringLiteral("unreadable: ") + unreadable->reason;
    return describe(std::get<DownDatagram>(result));
}

struct Row {
    const char* name;
    QByteArray hex;
    const char* line;
};

QByteArray zeros(int count)
{
    return QByteArray(count * 2, '0');
}

QVector<Row> readableRows()
{
    return {
        {"101 a key lit green", "ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 00 00ff00 64",
         "#1 UpdateECButtonColor key=12 app=1012 state=LightUp color=0,255,0 brightness=100"},
        {"101 all LEDs closed", "ee55ee5501000001 feff 0f00 6500 0b00 ff000000 ff00 02 000000 00",
         "#65534 UpdateECButtonColor key=255 app=255 state=CloseAllLight color=0,0,0 brightness=0"},
        {"102 a label", "ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 50616765203100" + zeros(25),
         "#2 UpdateECOledText label=513 app=512 text=\"Page 1\""},
        {"103 a T-Bar level", "ee55ee5501000001 0300 0900 6700 0500 06000000 01",
         "#3 UpdateTBarValue level=6 direction=up"},
        {"104", "ee55ee5501000001 0400 0400 6800 0000", "#4 LockTBar"},
        {"105", "ee55ee5501000001 0400 0400 6900 0000", "#4 UnlockTBar"},
        {"106", "ee55ee5501000001 0400 0400 6a00 0000", "#4 ReadLockedTBar"},
        {"107", "ee55ee5501000001 0400 0400 6b00 0000", "#4 LockKeyboard"},
        {"108", "ee55ee5501000001 0400 0400 6c00 0000", "#4 UnlockKeyboard"},
        {"109", "ee55ee5501000001 0400 0400 6d00 0000", "#4 ReadLockedKeyboard"},
        {"110 carries a byte its length denies", "ee55ee5501000001 0500 0500 6e00 0000 03",
         "#5 ReadDVIInSignal input=3"},
        {"111", "ee55ee5501000001 0600 0700 6f00 0300 01 01 0a",
         "#6 ControlLight light=front on=true brightness=10"},
        {"112", "ee55ee5501000001 0700 0500 7000 0100 64", "#7 UpdateScreenLuminance brightness=100"},
        {"113", "ee55ee5501000001 0800 4600 7100 4200 02 01 8007 3804" + zeros(60),
         "#8 ControlPeripheral screens=2 target=1 resolution=1920,1080"
         ",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"},
        {"114 carries a byte its length denies", "ee55ee5501000001 0900 0500 7200 0000 01",
         "#9 ControlMVRSignal source=arm_left"},
        {"115", "ee55ee5501000001 0a00 0900 7300 0500 30373a3038", "#10 UpdateSystemTime text=\"07:08\""},
        {"115 without a text", "ee55ee5501000001 0a00 0400 7300 0000", "#10 UpdateSystemTime text=\"\""},
        {"116 with a line end", "ee55ee5501000001 0b00 0700 7400 0300 61400a",
         "#11 UpdateNetworkInfo text=\"a@\\x0a\""},
        {"119", "ee55ee5501000001 0c00 0500 7700 0100 02", "#12 ReadECDeviceIPData index=2"},
        {"120 counts the tag only", "ee55ee5501000001 0d00 0400 7800 0e00 00 01 0a00a8c0 00ffffff 0100a8c0",
         "#13 UpdateECDeviceIPData index=0 status=1 address=192.168.0.10 mask=255.255.255.0 "
         "gateway=192.168.0.1"},
        {"121", "ee55ee5501000001 0e00 0500 7900 0100 01", "#14 RestartConsole value=1"},
        {"122", "ee55ee5501000001 0f00 0500 7a00 0100 01", "#15 ControlKeyboard on=true"},
        {"123", "ee55ee5501000001 1000 0600 7b00 0200 01 00",
         "#16 UpdateDVISignalStatus input=1 signal=false"},
        {"124", "ee55ee5501000001 1100 0500 7c00 0100 01", "#17 ResetMCU value=1"},
        {"125 counts the tag only", "ee55ee5501000001 1200 0400 7d00 0200 01 02",
         "#18 ChangeIPMode index=1 mode=2"},
        {"126", "ee55ee5501000001 0000 0500 7e00 0100 01", "#0 ControlPeripheralState visible=true"},
        {"118 first pack of a microcontroller's file",
         "0000 0300 ee55ee5501000001 1300 1a00 7600 0000 01 0a000000 00000000 0300 612e62 01020304",
         "#19 WriteFile pack=0 packs=3 file=\"a.b\" type=1 size=10 bytes=4"},
        {"117 first pack of another file",
         "0000 0100 ee55ee5501000001 1300 1400 7500 0000 00 00000000 00000000 0100 61",
         "#19 ReadFile pack=0 packs=1 file=\"a\" type=0 size=0 bytes=0"},
        {"118 data pack", "0200 0300 ee55ee5501000001 1500 0a00 7600 0000 0506",
         "#21 WriteFile pack=2 packs=3 bytes=2"},
        {"117 data pack without data", "0200 0300 ee55ee5501000001 1500 0800 7500 0000",
         "#21 ReadFile pack=2 packs=3 bytes=0"},
    };
}

} // namespace

class TestDownDecoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfRequest_data();
    void readsEveryKindOfRequest();
    void refusesWhatTheServiceDoesNotExpect_data();
    void refusesWhatTheServiceDoesNotExpect();
    void everyPrefixOfADatagramIsRefused();
    void labelCutWithinACharacterShowsTheWholeOnes();
    void jsonHasTheFieldsOfTheLine();
    void mutatedDatagramsAreReadOrRefused();
};

void TestDownDecoder::readsEveryKindOfRequest_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("line");
    for (const Row& row : readableRows())
        QTest::newRow(row.name) << row.hex << QString::fromLatin1(row.line);
}

void TestDownDecoder::readsEveryKindOfRequest()
{
    QFETCH(QByteArray, hex);
    QFETCH(QString, line);
    QCOMPARE(read(QByteArray::fromHex(hex)), line);
}

void TestDownDecoder::refusesWhatTheServiceDoesNotExpect_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const char* hex, const char* reason) {
        QTest::newRow(name) << QByteArray(hex) << QString::fromLatin1(reason);
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
    row("tag above", "ee55ee5501000001 0100 0400 7f00 0000", "unknown tag 127");
    row("value too long", "ee55ee5501000001 0100 0500 6800 0100 00", "size of the value is 1, expected 0");
    row("value too short", "ee55ee5501000001 0100 0600 6f00 0200 0101", "size of the value is 2, expected 3");
    row("length field", "ee55ee5501000001 0100 0500 7000 0000 64", "length is 0, expected 1");
    row("110 with a regular length", "ee55ee5501000001 0500 0500 6e00 0100 03", "length is 1, expected 0");
    row("content length", "ee55ee5501000001 0100 0400 7000 0100 64", "content length is 4, expected 5");
    row("125 with a regular content length", "ee55ee5501000001 1200 0600 7d00 0200 0102",
        "content length is 6, expected 4");
    row("120 with a short record", "ee55ee5501000001 0d00 0400 7800 0200 0001",
        "size of the network record is 2, expected 14");
    row("125 with a long record", "ee55ee5501000001 1200 0400 7d00 0300 010203",
        "size of the network mode record is 3, expected 2");
    row("button state", "ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 03 00ff00 64",
        "button state 3 is none of 0, 1, 2 and 255");
    row("light type", "ee55ee5501000001 0600 0700 6f00 0300 03 01 0a",
        "light type 3 is none of 0, 1, 2 and 255");
    row("file tag in the plain layout", "ee55ee5501000001 0600 0400 7500 0000",
        "a file pack without its pack numbering");
    row("short pack", "0000 0100 ee55ee5501000001 1300 0400", "16 bytes are too few for a file pack");
    row("pack with another tag", "0100 0200 ee55ee5501000001 1300 0800 6800 0000",
        "tag 104 in the layout of a file pack");
    row("pack with a length", "0100 0200 ee55ee5501000001 1300 0900 7600 0100 00", "length is 1, expected 0");
    row("pack's content length", "0100 0200 ee55ee5501000001 1300 0800 7600 0000 00",
        "content length is 8, expected 9");
    row("pack beyond the count", "0200 0200 ee55ee5501000001 1300 0800 7600 0000", "pack index 2 of 2 packs");
    row("no packs", "0000 0000 ee55ee5501000001 1300 0800 7600 0000", "pack index 0 of 0 packs");
    row("first pack too short", "0000 0100 ee55ee5501000001 1300 0900 7600 0000 01",
        "21 bytes are too few for a first file pack");
    row("first pack of a gate array's file",
        "0000 0100 ee55ee5501000001 1300 1400 7500 0000 02 00000000 00000000 0100 61",
        "file type 2 has no first pack");
    row("file type and tag", "0000 0100 ee55ee5501000001 1300 1400 7500 0000 01 00000000 00000000 0100 61",
        "tag 117 does not belong to file type 1");
    row("reserved word", "0000 0100 ee55ee5501000001 1300 1400 7600 0000 01 00000000 01000000 0100 61",
        "reserved word is not zero");
    row("name beyond the end", "0000 0100 ee55ee5501000001 1300 1400 7600 0000 01 00000000 00000000 0200 61",
        "name of 2 bytes goes beyond the end");
    QTest::newRow("label behind its zero")
        << QByteArray("ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 410042" + zeros(29))
        << QStringLiteral("label text goes on behind its terminating zero");
}

void TestDownDecoder::refusesWhatTheServiceDoesNotExpect()
{
    QFETCH(QByteArray, hex);
    QFETCH(QString, reason);
    QCOMPARE(read(QByteArray::fromHex(hex)), QStringLiteral("unreadable: ") + reason);
}

void TestDownDecoder::everyPrefixOfADatagramIsRefused()
{
    for (const Row& row : readableRows()) {
        const QByteArray whole = QByteArray::fromHex(row.hex);
        for (int size = 0; size < whole.size(); ++size) {
            // A block of exactly this size, so that reading beyond it is noticed by the sanitizer.
            const std::vector<char> prefix(whole.begin(), whole.begin() + size);
            QVERIFY2(
                std::holds_alternative<Unreadable>(decodeDown(prefix.data(), size)),
                qPrintable(QStringLiteral("%1, %2 bytes").arg(QLatin1String(row.name)).arg(size)));
        }
    }
}

void TestDownDecoder::labelCutWithinACharacterShowsTheWholeOnes()
{
    Protocol::ECOLEDText label;
    const QByteArray text = QByteArray(30, 'a') + "\xe2\x82"; // a euro sign without its last byte
    std::copy(text.begin(), text.end(), label.OledText);
    QCOMPARE(labelText(label), QString(30, QLatin1Char('a')));
}

void TestDownDecoder::jsonHasTheFieldsOfTheLine()
{
    const QByteArray datagram = bytesOf("ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 01 00ff00 64");
    const auto result = decodeDown(datagram.constData(), datagram.size());
    QCOMPARE(
        QJsonDocument(toJson(std::get<DownDatagram>(result))).toJson(QJsonDocument::Compact),
        QByteArray(R"({"app":1012,"brightness":100,"color":"0,255,0","key":12,"name":"UpdateECButtonColor",)"
                   R"("seq":1,"state":"Flashing","tag":101})"));
}

void TestDownDecoder::mutatedDatagramsAreReadOrRefused()
{
    QRandomGenerator random(20240506);
    QVector<QByteArray> seeds;
    for (const Row& row : readableRows())
        seeds.append(QByteArray::fromHex(row.hex));
    constexpr int Rounds = 100000;
    int readable = 0;
    for (int round = 0; round < Rounds; ++round) {
        QByteArray mutated = seeds.at(random.bounded(seeds.size()));
        for (int change = random.bounded(1, 4); change > 0 && !mutated.isEmpty(); --change) {
            const int place = random.bounded(mutated.size());
            switch (random.bounded(4)) {
            case 0:
                mutated[place] = char(random.bounded(256));
                break;
            case 1:
                mutated.truncate(place);
                break;
            case 2:
                mutated.insert(place, char(random.bounded(256)));
                break;
            default:
                mutated[place] = char(mutated.at(place) ^ (1 << random.bounded(8)));
            }
        }
        const std::vector<char> exact(mutated.begin(), mutated.end());
        const auto result = decodeDown(exact.data(), int(exact.size()));
        if (const auto* datagram = std::get_if<DownDatagram>(&result)) {
            ++readable;
            QVERIFY(!describe(*datagram).isEmpty());
            QVERIFY(!toJson(*datagram).isEmpty());
        } else {
            QVERIFY(!std::get<Unreadable>(result).reason.isEmpty());
        }
    }
    // Both ways out must have been taken often, or the mutations miss the point.
    QVERIFY2(readable > Rounds / 20 && readable < Rounds * 19 / 20, qPrintable(QString::number(readable)));
}

QTEST_APPLESS_MAIN(TestDownDecoder)
#include "tst_downdecoder.moc"

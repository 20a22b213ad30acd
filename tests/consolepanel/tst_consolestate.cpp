#include "paneltestsupport.h"

#include "consolepicture.h"

using namespace PanelTest;

namespace {

ConsoleLayout smallLayout()
{
    ConsoleLayout layout;
    layout.name = "Desk";
    layout.groups.push_back({"ScreenCommand", {{1, 501}, {2, 502}, {3, {}}}});
    layout.groups.push_back({"NumberCommand", {{20, {}}}});
    return layout;
}

QByteArray firstPack(quint16 count, quint32 size, const QByteArray& name, const QByteArray& chunk)
{
    return number(0, 2) + number(count, 2) + QByteArray::fromHex("ee55ee55010000010000")
        + number(19 + name.size() + chunk.size(), 2) + number(118, 2) + number(0, 2) + number(1, 1)
        + number(size, 4) + number(0, 4) + number(name.size(), 2) + name + chunk;
}

QByteArray dataPack(quint16 index, quint16 count, const QByteArray& chunk)
{
    return number(index, 2) + number(count, 2) + QByteArray::fromHex("ee55ee55010000010000")
        + number(8 + chunk.size(), 2) + number(118, 2) + number(0, 2) + chunk;
}

void receive(ConsoleRecorder& console, const QByteArray& bytes)
{
    console.receive(bytes.constData(), bytes.size());
}

} // namespace

class TestConsoleState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void closingAllLedsDarkensEveryKeyOnce()
    {
        ConsoleRecorder console;
        const auto& keys = console.state().keys;
        receive(console, led(1, "ff0000"));
        receive(console, led(2, "0000ff"));
        for (int i = 0; i < 2; ++i)
            receive(console, request(101, QByteArray::fromHex("ff000000ff000200000000")));
        for (const quint16 number : {1, 2}) {
            QVERIFY(!keys.at(number).isLit);
            QCOMPARE(keys.at(number).changes, quint64(2));
        }
        QCOMPARE(keys.count(255), std::size_t(0));
        receive(console, led(1, "ff0000"));
        receive(console, request(101, QByteArray::fromHex("ff000000ff0000ffffff64"))); // a key like others
        QVERIFY(keys.at(1).isLit && keys.at(255).isLit);
    }

    void fileComesWholeFromItsPacks()
    {
        ConsoleRecorder console;
        receive(console, firstPack(3, 8, "mcu.bin", "abcd"));
        receive(console, led(1, "ff0000")); // other requests may come between
        receive(console, dataPack(1, 3, "efgh"));
        QVERIFY(console.files().empty());
        receive(console, dataPack(2, 3, "")); // a file of whole packs ends with an empty one
        QCOMPARE(console.files().at("mcu.bin").content, QByteArray("abcdefgh"));
        receive(console, firstPack(1, 0, "empty", ""));
        QCOMPARE(console.files().size(), std::size_t(2));
        QCOMPARE(console.fileFaults(), quint64(0));
    }

    void fileFaultsAreCountedAndTheNextFileStillComes_data()
    {
        QTest::addColumn<QVector<QByteArray>>("packs");
        QTest::newRow("no first pack") << QVector<QByteArray>{dataPack(1, 3, "x")};
        QTest::newRow("pack left out") << QVector<QByteArray>{firstPack(3, 3, "f", "a"), dataPack(2, 3, "c")};
        QTest::newRow("pack twice") << QVector<QByteArray>{
            firstPack(4, 4, "f", "a"), dataPack(1, 4, "b"), dataPack(1, 4, "b")};
        QTest::newRow("other count") << QVector<QByteArray>{firstPack(3, 3, "f", "a"), dataPack(1, 4, "b")};
        QTest::newRow("too short") << QVector<QByteArray>{firstPack(2, 9, "f", "a"), dataPack(1, 2, "b")};
        QTest::newRow("too long") << QVector<QByteArray>{firstPack(3, 1, "f", "ab")};
        QTest::newRow("never finished") << QVector<QByteArray>{firstPack(3, 3, "f", "a")};
    }

    void fileFaultsAreCountedAndTheNextFileStillComes()
    {
        QFETCH(QVector<QByteArray>, packs);
        ConsoleRecorder console;
        for (const QByteArray& pack : packs)
            receive(console, pack);
        receive(console, firstPack(2, 2, "next", "a"));
        receive(console, dataPack(1, 2, "b"));
        QCOMPARE(console.fileFaults(), quint64(1));
        QCOMPARE(console.files().size(), std::size_t(1));
        QCOMPARE(console.files().at("next").content, QByteArray("ab"));
    }

    void sequencesTellLossFromLateness_data()
    {
        QTest::addColumn<QVector<int>>("numbers");
        QTest::addColumn<QString>("missingLateRepeatedRestarts");
        QTest::newRow("in order") << QVector<int>{1, 2, 3} << "0 0 0 0";
        QTest::newRow("around the end") << QVector<int>{65533, 65534, 0, 1} << "0 0 0 0";
        QTest::newRow("lost around the end") << QVector<int>{65533, 0, 2} << "2 0 0 0";
        QTest::newRow("two threads") << QVector<int>{1, 3, 2, 4} << "0 1 0 0";
        QTest::newRow("one lost") << QVector<int>{1, 3, 4} << "1 0 0 0";
        QTest::newRow("twice") << QVector<int>{1, 2, 2, 3} << "0 0 1 0";
        QTest::newRow("late and again") << QVector<int>{1, 3, 2, 2} << "0 1 1 0";
        QTest::newRow("sender begins anew") << QVector<int>{7, 8, 1, 2} << "0 0 0 1";
        QTest::newRow("begins in the middle") << QVector<int>{500, 501} << "0 0 0 0";
        QTest::newRow("many lost") << QVector<int>{1, 10002} << "10000 0 0 0";
    }

    void sequencesTellLossFromLateness()
    {
        QFETCH(QVector<int>, numbers);
        QFETCH(QString, missingLateRepeatedRestarts);
        SequenceWatch watch;
        for (const int number : numbers)
            watch.add(quint16(number));
        QCOMPARE(
            QStringLiteral("%1 %2 %3 %4")
                .arg(watch.missing())
                .arg(watch.late())
                .arg(watch.repeated())
                .arg(watch.restarts()),
            missingLateRepeatedRestarts);
    }

    void pictureShowsKeysUnderTheirLabels()
    {
        ConsoleRecorder console;
        receive(console, led(1, "00ff00", 0, 1));
        receive(console, led(2, "102030", Protocol::Flashing, 2));
        receive(console, led(77, "141414", 0, 3));
        receive(console, label(501, "Screen 1", 4));
        receive(console, label(502, "a label that is too long", 5));
        receive(console, label(900, "odd\x1b", 6));
        receive(console, request(103, QByteArray::fromHex("0600000001"), 7));
        receive(console, request(107, {}, 8));
        receive(console, request(111, QByteArray::fromHex("00010a"), 9));
        receive(console, request(111, QByteArray::fromHex("02000f"), 10));
        receive(console, request(112, QByteArray::fromHex("64"), 11));
        receive(console, request(126, QByteArray::fromHex("01"), 12));
        receive(console, request(115, "2024:05:06 07:08:09", 13));
        receive(console, "noise");

        const ConsoleLayout layout = smallLayout();
        QCOMPARE(
            ConsolePicture(layout, console, {false, 31}).lines(),
            QStringList({
                "Desk",
                "ScreenCommand",
                " Screen 1  a label th",
                "[1 Green ] [2*102030]",
                "[3       ]",
                "NumberCommand",
                "[20      ]",
                "Other keys",
                "[77 Off  ]",
                "Other labels: 900 \"odd\\x1b\"",
                "T-Bar [######------] 6 up, T-Bar unlocked, keypad locked",
                "Lights: gooseneck on 10, logo off, luminance 100",
                "Console: peripheral visible",
                "Time: 2024:05:06 07:08:09",
                "Datagrams: 13 received, 1 unreadable, 0 missing, 0 late, 0 repeated, 0 restarts",
            }));
    }
};

QTEST_APPLESS_MAIN(TestConsoleState)
#include "tst_consolestate.moc"

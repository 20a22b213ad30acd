#include "program.h"

#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

namespace {

constexpr int FirstDigit = 93;
constexpr int EnterKey = 103;
constexpr quint16 ReportPort = 35556;

} // namespace

/// How the two processes find each other, and how the host comes and goes.
class StartAndEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startWithoutWhatItNeedsIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("message");

        const QStringList keyboard = {"--keyboard", EXAMPLE_KEYBOARD};
        QTest::newRow("no keyboard") << QStringList() << 2 << QByteArray("--keyboard");
        QTest::newRow("unknown option") << keyboard + QStringList("--loud") << 2 << QByteArray("loud");
        QTest::newRow("stray argument") << keyboard + QStringList("stray") << 2 << QByteArray("stray");
        QTest::newRow("missing file")
            << QStringList{"--keyboard", "/nowhere.json"} << 1 << QByteArray("/nowhere.json");
    }

    void startWithoutWhatItNeedsIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QByteArray, message);
        Program host(HOST_BINARY);
        host.start(arguments + QStringList("--headless"));
        QCOMPARE(host.exitStatus(), status);
        QVERIFY2(host.log().contains(message), host.log().constData());
    }

    void exampleIsFoundWhereItIsInstalled()
    {
        QTemporaryDir data;
        const QString directory = data.filePath("orvaneecproxyclient");
        QVERIFY(QDir().mkdir(directory));
        QVERIFY(QFile::copy(EXAMPLE_KEYBOARD, directory + "/keyboard.json"));
        const QByteArray before = qgetenv("XDG_DATA_DIRS");
        qputenv("XDG_DATA_DIRS", data.path().toLocal8Bit());
        Program without(HOST_BINARY);
        without.start({"--headless", "--example"});
        QCOMPARE(without.exitStatus(), 1);
        QVERIFY2(without.log().contains("orvaneecproxyclient/show.json"), without.log().constData());

        QVERIFY(QFile::copy(EXAMPLE_SHOW, directory + "/show.json"));
        Program host(HOST_BINARY);
        host.start({"--headless", "--example"});
        QVERIFY(!host.next({{"event", "ready"}}).isEmpty());
        qputenv("XDG_DATA_DIRS", before);
    }

    void portOfAnotherIsNotShared()
    {
        const auto isRefused = [] {
            Host host;
            return !host.start() && host.exitStatus() == 1 && host.log().contains("35556");
        };
        QUdpSocket exclusive;
        QVERIFY(exclusive.bind(QHostAddress::AnyIPv4, ReportPort, QAbstractSocket::DontShareAddress));
        QVERIFY(isRefused());
        exclusive.close();
        Host first;
        QVERIFY(first.start());
        QVERIFY(isRefused());
        QVERIFY(first.hasDone("state"));
    }

    void eitherMayStartFirst_data()
    {
        QTest::addColumn<bool>("hostFirst");
        QTest::newRow("host") << true;
        QTest::newRow("console") << false;
    }

    void eitherMayStartFirst()
    {
        QFETCH(bool, hostFirst);
        Host host;
        auto console = std::make_unique<Console>();
        if (hostFirst)
            QVERIFY(host.start());
        QVERIFY(console->start());
        if (!hostFirst)
            QVERIFY(host.start());

        // The console that comes back after it was away is the same to the host.
        for (const char* key : {"93", "94"}) {
            console->writeLine(QByteArray("press ") + key);
            QVERIFY(console->expect(QByteArray("led ") + key + " green"));
            console->closeInput();
            QCOMPARE(console->exitStatus(), 0);
            console = std::make_unique<Console>();
            QVERIFY(console->start());
        }
        console->writeLine("press 103");
        QVERIFY(host.tells("entered", {{"text", "01"}}));
    }

    void aConsoleThatComesLateOrAgainIsLitWithoutAPress()
    {
        Host host;
        QVERIFY(host.start({"--show", EXAMPLE_SHOW}));
        QCOMPARE(host.lines().first().value("service").toString(), QString("absent"));
        for (int round = 0; round < 3; ++round) {
            Console console;
            QVERIFY(console.start());
            for (const char* shown :
                 {"led 1 green", "oled 512 \"Main wall\"", "light front on", "luminance 100"})
                QVERIFY2(console.expect(shown), shown);
            QVERIFY(host.tells("serviceState", {{"state", "present"}}));
            if (round == 0)
                QVERIFY(host.hasDone("lockTBar"));
            QVERIFY(console.expect("lock tbar on"));
            console.closeInput();
            QCOMPARE(console.exitStatus(), 0);
            QVERIFY(host.tells("serviceState", {{"state", "absent"}}));
        }
    }

    void aConsoleThatIsReplacedAtOnceIsLit()
    {
        Host host;
        QVERIFY(host.start({"--show", EXAMPLE_SHOW}));
        for (int round = 0; round < 5; ++round) {
            // The former one ends when the new one is asking for the port: there may be no moment without.
            Console console;
            QVERIFY(console.start());
            QVERIFY(console.expect("led 1 green"));
            QVERIFY(console.expect("light front on"));
        }
    }

    void aSecondReceiverOfTheReportsIsNoticed()
    {
        Host host;
        QVERIFY(host.start());
        QUdpSocket second;
        QVERIFY(second.bind(
            QHostAddress::AnyIPv4, ReportPort, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint));
        QVERIFY(host.tells("sessionError"));
    }

    void endIsOrderly_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("command") << 0;
        QTest::newRow("termination request") << 1;
        QTest::newRow("end of input") << 2;
    }

    void endIsOrderly()
    {
        QFETCH(int, way);
        Console console;
        QVERIFY(console.start());
        Host host;
        QVERIFY(host.start());
        QVERIFY(host.hasDone("openDialog"));
        console.writeLine("storm 93 94 count 20000"); // keys go on coming while it ends
        QVERIFY(host.tells("standardKeyPressed"));

        QElapsedTimer clock;
        clock.start();
        if (way == 0)
            host.writeLine(R"({"command":"quit"})");
        else if (way == 1)
            host.terminate();
        else
            host.closeInput();
        QCOMPARE(host.exitStatus(), 0);
        QVERIFY2(clock.elapsed() < 10000, "the threads of the link take a second to end at most");
    }

    void manualNamesEveryHostCommandWithItsArguments()
    {
        QFile manual(HOST_MANUAL);
        QVERIFY(manual.open(QIODevice::ReadOnly));
        const QString text =
            QString::fromUtf8(manual.readAll()).section("## Commands", 1).section("## Events", 0, 0);
        QHash<QString, QString> rows; // a row of a table, by each command that it is about
        const QRegularExpression code("`(\\w+)`");
        for (const QString& line : text.split('\n')) {
            auto names = code.globalMatch(line.startsWith("| ") ? line.section('|', 1, 1) : QString());
            while (names.hasNext())
                rows.insert(names.next().captured(1), line);
        }
        Host host;
        QVERIFY(host.start());
        for (const QJsonValue& value : host.command("help").value("commands").toArray()) {
            const QString name = value.toString();
            if (name == "help")
                continue;
            QVERIFY2(rows.contains(name), qPrintable(name));
            const QString row = rows.take(name);
            const QJsonObject help = host.command("help", {{"of", name}});
            for (const QString& argument : help.value("arguments").toObject().keys()) {
                // Every command on a device takes one; "first" to "fourth" stand for those between.
                const bool isPlain = argument != "device" && argument != "second" && argument != "third";
                QVERIFY2(!isPlain || row.contains('`' + argument + '`'), qPrintable(name + ": " + argument));
            }
        }
        QVERIFY2(rows.isEmpty(), qPrintable(QStringList(rows.keys()).join(' ')));
    }

    void hundredThousandPressesArriveOnceAndInOrder()
    {
        constexpr int presses = 100000;
        Host host;
        QVERIFY(host.start());
        Program console(SIMULATOR_BINARY);
        console.start({"--json", "--quiet"});

        // Each round types the ten digits and takes them over.
        const QString digits = "0123456789";
        QByteArray storm = "storm";
        QVector<int> round;
        for (int digit = 0; digit < digits.size(); ++digit) {
            storm += ' ' + QByteArray::number(FirstDigit + digit);
            round.append(Qt::Key_0 + digit);
        }
        storm += ' ' + QByteArray::number(EnterKey);
        round.append(Qt::Key_Enter);
        console.writeLine(storm + " count " + QByteArray::number(presses) + " window 400");
        console.writeLine("expect missing 0");
        console.closeInput();
        QVERIFY(QTest::qWaitFor([&] { return !console.isRunning(); }, 10 * PatienceMs));
        QCOMPARE(console.exitStatus(), 0);

        const auto pressed = [&host] {
            QVector<int> keys;
            for (const QJsonObject& line : host.lines()) {
                if (line.value("event") == "standardKeyPressed")
                    keys.append(line.value("key").toInt());
            }
            return keys;
        };
        QTRY_COMPARE_WITH_TIMEOUT(pressed().size(), presses, PatienceMs);
        // Nothing more comes behind them: the answer would stand behind it.
        const QJsonObject state = host.command("state");
        const QVector<int> keys = pressed();
        QCOMPARE(keys.size(), presses);
        for (int i = 0; i < presses; ++i)
            QVERIFY2(keys.at(i) == round.at(i % round.size()), qPrintable(QString::number(i)));
        for (const QJsonObject& line : host.lines())
            QVERIFY(line.value("event") != "entered" || line.value("text") == digits);
        QCOMPARE(state.value("field").toString(), digits.left(presses % round.size()));
    }
};

QTEST_GUILESS_MAIN(StartAndEndTest)
#include "tst_startandend.moc"

#include "paneltestsupport.h"

#include "servicelink.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkDatagram>
#include <QProcess>
#include <QTemporaryDir>
#include <QUdpSocket>

using namespace PanelTest;

namespace {

constexpr int RunLimitMs = 30000;
constexpr auto SharedMode = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;

/// The library's end of the wire, as a few lines: bound to the same two ports, it lights a key that goes down
/// green and one that comes up dim.
class LibraryPeer : public QObject {
public:
    LibraryPeer()
    {
        m_bIsBound = m_sender.bind(Protocol::ECServicePort, SharedMode)
            && m_receiver.bind(QHostAddress::AnyIPv4, Protocol::ECClientPort, SharedMode);
        connect(&m_receiver, &QUdpSocket::readyRead, this, [this] {
            while (m_receiver.hasPendingDatagrams()) {
                const QNetworkDatagram report = m_receiver.receiveDatagram();
                if (report.senderPort() == Protocol::ECServicePort)
                    answer(report.data());
            }
        });
    }
    bool isBound() const { return m_bIsBound; }
    void send(const QByteArray& datagram)
    {
        m_sender.writeDatagram(datagram, QHostAddress::LocalHost, Protocol::ECServicePort);
    }

    QVector<QByteArray> reports;

private:
    void answer(const QByteArray& report)
    {
        reports.append(report);
        if (report.size() < 18) // malformed, or of no key
            return;
        const auto tag = Protocol::Wire::load<quint16>(report.constData() + 12);
        if (tag != Protocol::ReportECButtonPressed && tag != Protocol::ReportECButtonRelease)
            return;
        const auto key = Protocol::Wire::load<quint16>(report.constData() + 16);
        m_nSequence = m_nSequence == 65534 ? 0 : m_nSequence + 1;
        send(led(key, tag == Protocol::ReportECButtonPressed ? "00ff00" : "141414", 0, m_nSequence));
    }

    QUdpSocket m_sender;
    QUdpSocket m_receiver;
    quint16 m_nSequence = 0;
    bool m_bIsBound = false;
};

} // namespace

/// Runs the real program against a peer of our own.
class TestSimulator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_output.clear();
        m_peer = std::make_unique<LibraryPeer>();
        QVERIFY(m_peer->isBound());
    }

    void cleanup()
    {
        if (m_program.state() != QProcess::NotRunning) {
            m_program.kill();
            m_program.waitForFinished(RunLimitMs);
        }
        m_peer.reset();
    }

    void scriptPlaysASession()
    {
        const int status = runScript(
            "# a key lights while it is down\n"
            "press 12\n"
            "expect led 12 0,255,0 within 20000\n"
            "release 12\n"
            "expect led 12 off within 20000\n"
            "tap 13 0\n"
            "expect led 13 off within 20000\n"
            "expect no-led 14 for 50\n"
            "report-keypad-lock 1\n"
            "show\n",
            {"--keyboard", QStringLiteral(EXAMPLE_KEYBOARD), "--no-color"});
        QVERIFY2(status == 0, m_output.constData());
        QTRY_COMPARE(m_peer->reports.size(), 5);
        QCOMPARE(m_peer->reports.at(0).mid(12).toHex(), QByteArray("c90005000c00000000"));
        QCOMPARE(m_peer->reports.at(4).mid(12).toHex(), QByteArray("cd00010001"));
        for (const char* shown :
             {"< #1 UpdateECButtonColor key=12 app=0 state=LightUp color=0,255,0",
              "ok line 3: expect led 12 0,255,0 within 20000", "\nScreenCommand\n", "[12 Off  ] [13 Off  ]",
              "4 received, 0 unreadable, 0 missing"})
            QVERIFY2(m_output.contains(shown), m_output.constData());
    }

    void scriptEndsAtItsFirstFailure()
    {
        QCOMPARE(runScript("press 12\nexpect led 12 red within 200\npress 13\n"), 1);
        QVERIFY2(
            m_output.contains(
                "FAILED line 2: expect led 12 red within 200 - the console shows: 0,255,0 (Green)"),
            m_output.constData());
        QVERIFY(!m_output.contains("press 13"));
    }

    void unreadableDatagramIsShownAndFailsTheRun_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("by itself") << QStringList{} << 1;
        QTest::newRow("tolerated") << QStringList{"--tolerate-unreadable"} << 0;
    }

    void unreadableDatagramIsShownAndFailsTheRun()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        start(arguments);
        QVERIFY(prints("listening"));
        m_peer->send(QByteArray::fromHex("ee55ee55010000010100040068000100"));
        QVERIFY(prints("unreadable, length is 1, expected 0: 16 bytes ee55ee55010000010100040068000100"));
        m_peer->send(QByteArray(65507, 'x')); // the largest there are
        QVERIFY(prints("65507 bytes"));
        m_program.closeWriteChannel();
        QCOMPARE(ended(), status);
    }

    void typedCommandsEndWithTheInput()
    {
        start({});
        m_program.write("press 12\nexpect led 12 gre");
        m_program.write("en within 20000\njump\nexpect led 12 green within 20000\nrelease 12"); // no end
        m_program.closeWriteChannel();
        QCOMPARE(ended(), 1); // "jump" is none of the commands, and the others still run
        QVERIFY2(m_output.contains("\"jump\": there is no command \"jump\""), m_output.constData());
        QCOMPARE(m_output.count("ok expect led 12 green within 20000"), 2);
        QTRY_COMPARE(m_peer->reports.size(), 2);
    }

    void wrongStartsAreToldOnStandardError_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        const QString script = file("faulty", "press 1\njump\n\npress\n");
        const QString keyboard = file("keyboard", "{\"Name\": 5}");
        QTest::newRow("option") << QStringList{"--loud"} << "Unknown option 'loud'.";
        QTest::newRow("argument") << QStringList{"x"} << "unexpected argument \"x\"";
        QTest::newRow("width") << QStringList{"--width", "wide"}
                               << "--width must be from 10 to 1000, not \"wide\"";
        QTest::newRow("no script") << QStringList{"--script", "/nowhere"}
                                   << "/nowhere: No such file or directory";
        QTest::newRow("nothing to describe") << QStringList{"--describe", keyboard} << "Name is 5";
        QTest::newRow("script's first fault")
            << QStringList{"--script", script} << "line 2: there is no command \"jump\"";
        QTest::newRow("script's second fault")
            << QStringList{"--script", script} << "line 4: KEY is missing (press KEY)";
        QTest::newRow("no keyboard") << QStringList{"--keyboard", "/nowhere"} << "/nowhere";
        QTest::newRow("faulty keyboard") << QStringList{"--keyboard", keyboard} << "Name";
    }

    void wrongStartsAreToldOnStandardError()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        start(arguments);
        QCOMPARE(ended(), 2);
        const QString said = QString::fromUtf8(m_program.readAllStandardError());
        QVERIFY2(said.contains(error), qPrintable(said));
        QVERIFY2(m_output.isEmpty(), m_output.constData());
    }

    void checkListsEveryProblemOfAKeyboardFile()
    {
        const QByteArray keyboard =
            R"({"Name":"n","IconName":"i","ModelId":1,"m_commands":[{"Name":"InputCommand",
            "m_buttons":[{"ECKey":1,"OrvaneECKey":1,"OrvaneKey":1,"OrderIndex":0},
                         {"ECKey":2,"OrvaneECKey":1,"OrvaneKey":4,"OrderIndex":0},
                         {"ECKey":3,"OrvaneECKey":1,"OrvaneKey":2,"OrderIndex":0}]}]})";
        start({"--check", file("keyboard", keyboard)});
        QCOMPARE(ended(), 1);
        const QString group = QStringLiteral("group 1 \"InputCommand\"");
        const QString all = QString::fromUtf8(m_output);
        for (const QString& problem :
             {"error: " + group + ", key 2 (ECKey 2): OrvaneKey is 4, expected a whole number from 0 to 3",
              QStringLiteral(
                  "warning: keyboard: no group \"LayerCommand\", so none of its functions has a key"),
              "warning: " + group + ": 1 of 1 select keys have no label that shows the input's name: ECKey 1",
              "warning: " + group + ", key 3 (ECKey 3): has no label that shows the page"})
            QVERIFY2(all.contains(problem + '\n'), m_output.constData());
        QVERIFY2(!all.contains("no key for"), "the key that could not be read may be the missing one");
        QVERIFY(m_program.readAllStandardError().isEmpty());

        m_output.clear();
        start({"--check", file("list", "[1]"), "--json"});
        QCOMPARE(ended(), 1);
        const QJsonObject problem = QJsonDocument::fromJson(m_output).object();
        QCOMPARE(problem.value("kind").toString(), QString("error"));
        QCOMPARE(problem.value("place").toString(), QString("keyboard"));
        QCOMPARE(problem.value("text").toString(), QString("is a list, expected an object"));
    }

    void operatorGuideIsThePageOfTheExample()
    {
        start({"--describe", QStringLiteral(EXAMPLE_KEYBOARD)});
        QCOMPARE(ended(), 0);
        QFile guide(QStringLiteral(OPERATOR_GUIDE));
        QVERIFY(guide.open(QIODevice::ReadOnly));
        QCOMPARE(m_output, guide.readAll());
    }

    void takenPortIsToldOnStandardError()
    {
        m_peer.reset();
        const auto complaint = [this] {
            start({});
            return ended() == 2 ? m_program.readAllStandardError() : QByteArray();
        };
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, Protocol::ECServicePort, QUdpSocket::DontShareAddress));
        QCOMPARE(
            complaint(),
            "orvane-console-simulator: cannot bind 127.0.0.1 port 35555: Address already in use\n");
        holder.close();
        ServiceLink other([] {});
        QVERIFY(other.open());
        QCOMPARE(
            complaint(),
            "orvane-console-simulator: 127.0.0.1 port 35555 is taken by another console or service\n");
    }

private:
    QString file(const QString& name, const QByteArray& content)
    {
        QFile out(m_directory.filePath(name));
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            qFatal("cannot write %s", qUtf8Printable(name));
        return out.fileName();
    }
    void start(const QStringList& arguments) { m_program.start(QStringLiteral(SIMULATOR), arguments); }
    /// Lets the peer work until the program has ended; its exit status, -1 when it did not end.
    int ended()
    {
        const bool hasEnded =
            QTest::qWaitFor([this] { return m_program.state() == QProcess::NotRunning; }, RunLimitMs);
        m_output += m_program.readAllStandardOutput();
        return hasEnded && m_program.exitStatus() == QProcess::NormalExit ? m_program.exitCode() : -1;
    }
    /// Waits for a text in the output.
    bool prints(const char* text)
    {
        return QTest::qWaitFor(
            [&] {
                m_output += m_program.readAllStandardOutput();
                return m_output.contains(text);
            },
            RunLimitMs);
    }
    int runScript(const QByteArray& script, const QStringList& arguments = {})
    {
        start(QStringList{"--script", file("script", script)} + arguments);
        return ended();
    }

    QTemporaryDir m_directory;
    QProcess m_program;
    QByteArray m_output;
    std::unique_ptr<LibraryPeer> m_peer;
};

QTEST_GUILESS_MAIN(TestSimulator)
#include "tst_simulator.moc"

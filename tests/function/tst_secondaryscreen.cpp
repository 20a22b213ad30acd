#include "functionscene.h"
#include "logcapture.h"

#include "ecmanager.h"

#include <QElapsedTimer>
#include <QTest>

#include <mutex>

using namespace FunctionScene;
using TestSupport::LogCapture;

Q_DECLARE_METATYPE(Orvane::ConsolePanel::DviReport)

namespace {

// The secondary screen takes 300 ms to change its source.
constexpr qint64 SwitchMs = 300;

/// What the console and the application get to know of the source, in order.
class SourceLog {
public:
    explicit SourceLog(TestSupport::ConsoleRig& console)
        : m_console(console)
    {
        m_console.takeRequests();
        QObject::connect(
            ECManager::instance(), &ECManager::signalPropertyPopupVisible, &m_context,
            [this](bool visible) {
                const std::lock_guard<std::mutex> lock(m_mutex);
                takeRequests();
                m_steps.append(visible ? QStringLiteral("show") : QStringLiteral("hide"));
            },
            Qt::DirectConnection);
    }

    QStringList steps()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        takeRequests();
        return m_steps;
    }

private:
    void takeRequests()
    {
        for (const auto& request : m_console.takeRequests()) {
            if (const auto* control = std::get_if<MVRSignalControl>(&request.message))
                m_steps.append(control->SignalIndex == dvi1 ? QStringLiteral("dvi1") : QStringLiteral("arm"));
            const auto* led = std::get_if<ECButtonColor>(&request.message);
            if (led && led->ECKey == Mvr)
                m_steps.append(colourName({led->R, led->G, led->B}));
        }
    }

    static QString colourName(const ConsolePanel::KeyColour& colour)
    {
        if (colour == TestSupport::colourOf(ECLEDColor::Green))
            return QStringLiteral("green");
        return colour == TestSupport::colourOf(ECLEDColor::Yellow) ? QStringLiteral("yellow")
                                                                   : QStringLiteral("off");
    }

    TestSupport::ConsoleRig& m_console;
    // m_mutex guards m_steps.
    std::mutex m_mutex;
    QStringList m_steps;
    QObject m_context;
};

} // namespace

/// The source of the secondary screen: the MVR key and the signal at DVI input 0.
class TestSecondaryScreen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_pRig.reset(); }

    void theKeyExchangesTheSource_data();
    void theKeyExchangesTheSource();
    void theKeyIsRefused_data();
    void theKeyIsRefused();
    void theSourceFollowsTheSignal_data();
    void theSourceFollowsTheSignal();
    void onTheGuiThreadNothingWaits();
    void keysAndSignalsTakeTurns();
    void theConsoleMayEndInTheMiddle();

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    void report(bool signal) { console().report(ConsolePanel::DviReport{{{0, quint8(signal)}}}); }
    /// The same report, as if it came on the GUI thread.
    static void reportOnGuiThread(bool signal)
    {
        ECManager::instance()->upTLVDecodeFinished(
            ReportDVIInSignal, signal ? QByteArray("\0\1", 2) : QByteArray("\0\0", 2));
    }
    /// Brings source and signal to a known state.
    void start(DVISource source, bool signal);

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

void TestSecondaryScreen::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
}

void TestSecondaryScreen::start(DVISource source, bool signal)
{
    ECManager::instance()->switchSource(source);
    report(signal); // may switch
    QVERIFY(console().settle());
    ECManager::instance()->switchSource(source);
}

void TestSecondaryScreen::theKeyExchangesTheSource_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("to the computer")
        << int(arm_left)
        << QStringList{QStringLiteral("dvi1"), QStringLiteral("green"), QStringLiteral("hide")}
        << QStringList{
               QStringLiteral("functionkeyboard MVR key clicked start."),
               QStringLiteral("mvr pressed: switch source dvi1"),
               QStringLiteral("functionkeyboard MVR key clicked end. current is arm_left")};
    QTest::newRow("to the application")
        << int(dvi1) << QStringList{QStringLiteral("yellow"), QStringLiteral("show"), QStringLiteral("arm")}
        << QStringList{
               QStringLiteral("functionkeyboard MVR key clicked start."),
               QStringLiteral("mvr pressed: switch source arm_left"),
               QStringLiteral("functionkeyboard MVR key clicked end. current is dvi1")};
}

void TestSecondaryScreen::theKeyExchangesTheSource()
{
    QFETCH(int, from);
    QFETCH(QStringList, steps);
    QFETCH(QStringList, lines);
    start(DVISource(from), true);
    SourceLog source(console());
    LogCapture log;
    QElapsedTimer elapsed;
    elapsed.start();
    console().press(Mvr);
    QVERIFY(console().settle());
    QCOMPARE(source.steps(), QStringList()); // it acts when released
    console().release(Mvr);
    QVERIFY(console().settle());
    QVERIFY(elapsed.elapsed() >= SwitchMs);
    QCOMPARE(source.steps(), steps);
    for (const QString& line : lines)
        QCOMPARE(log.count(line), 1);
}

void TestSecondaryScreen::theKeyIsRefused_data()
{
    QTest::addColumn<bool>("signal");
    QTest::addColumn<bool>("quenor");
    QTest::newRow("without a signal") << false << false;
    QTest::newRow("while the application says so") << true << true;
}

void TestSecondaryScreen::theKeyIsRefused()
{
    QFETCH(bool, signal);
    QFETCH(bool, quenor);
    start(arm_left, signal);
    qApp->setProperty(Constants::QuenorProperty, quenor);
    SourceLog source(console());
    console().tap(Mvr);
    QVERIFY(console().settle());
    qApp->setProperty(Constants::QuenorProperty, false);
    QCOMPARE(source.steps(), QStringList());
    QCOMPARE(ECManager::instance()->getCurrentSource(), arm_left);
}

void TestSecondaryScreen::theSourceFollowsTheSignal_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<ConsolePanel::DviReport>("report");
    QTest::addColumn<QStringList>("steps");
    const QString show = QStringLiteral("show");
    const QString arm = QStringLiteral("arm");
    const QStringList lost{show, arm, QStringLiteral("off")};
    const ConsolePanel::DviReport present{{{0, 1}}};
    QTest::newRow("lost at the computer") << int(dvi1) << ConsolePanel::DviReport{{{0, 0}}} << lost;
    QTest::newRow("lost at the application") << int(arm_left) << ConsolePanel::DviReport{{{0, 0}}} << lost;
    QTest::newRow("not reported") << int(dvi1) << ConsolePanel::DviReport{{{1, 1}}} << lost;
    QTest::newRow("there at the application")
        << int(arm_left) << present << QStringList{show, arm, QStringLiteral("yellow")};
    QTest::newRow("there at the computer")
        << int(dvi1) << present
        << QStringList{QStringLiteral("dvi1"), QStringLiteral("hide"), QStringLiteral("green")};
}

void TestSecondaryScreen::theSourceFollowsTheSignal()
{
    QFETCH(int, from);
    QFETCH(ConsolePanel::DviReport, report);
    QFETCH(QStringList, steps);
    start(DVISource(from), true);
    SourceLog source(console());
    console().report(report);
    QVERIFY(console().settle());
    QCOMPARE(source.steps(), steps);
}

void TestSecondaryScreen::onTheGuiThreadNothingWaits()
{
    start(dvi1, true);
    SourceLog source(console());
    QElapsedTimer elapsed;
    elapsed.start();
    reportOnGuiThread(false);
    reportOnGuiThread(true); // finds the application's source, which the first report brought about
    QVERIFY(elapsed.elapsed() < SwitchMs);
    const QStringList steps{QStringLiteral("show"), QStringLiteral("arm"), QStringLiteral("off"),
                            QStringLiteral("show"), QStringLiteral("arm"), QStringLiteral("yellow")};
    QTRY_COMPARE(source.steps(), steps);
    QVERIFY(elapsed.elapsed() >= 2 * SwitchMs);
}

void TestSecondaryScreen::keysAndSignalsTakeTurns()
{
    start(arm_left, true);
    SourceLog source(console());
    reportOnGuiThread(true);
    QTRY_COMPARE(source.steps(), QStringList{QStringLiteral("show")}); // it has begun
    console().tap(Mvr);
    QVERIFY(console().settle());
    const QStringList steps{QStringLiteral("show"), QStringLiteral("arm"),   QStringLiteral("yellow"),
                            QStringLiteral("dvi1"), QStringLiteral("green"), QStringLiteral("hide")};
    QCOMPARE(source.steps(), steps);
}

/// The last test: there is one console a process.
void TestSecondaryScreen::theConsoleMayEndInTheMiddle()
{
    start(dvi1, true);
    QElapsedTimer elapsed;
    elapsed.start();
    for (int i = 0; i < 10; ++i)
        reportOnGuiThread(i % 2 == 0);
    m_pRig->endConsole();
    QVERIFY(elapsed.elapsed() < 3 * SwitchMs); // those that had not begun are dropped
}

QTEST_MAIN(TestSecondaryScreen)
#include "tst_secondaryscreen.moc"

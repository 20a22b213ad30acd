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
                m_steps.append(visible ? "show" : "hide");
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
                m_steps.append(control->SignalIndex == dvi1 ? "dvi1" : "arm");
            const auto* led = std::get_if<ECButtonColor>(&request.message);
            if (led && led->ECKey == Mvr)
                m_steps.append(colorName({led->R, led->G, led->B}));
        }
    }

    static QString colorName(const ConsolePanel::KeyColour& colour)
    {
        if (colour == TestSupport::colourOf(ECLEDColor::Green))
            return "green";
        return colour == TestSupport::colourOf(ECLEDColor::Yellow) ? "yellow" : "off";
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
    void initTestCase() { m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard()); }

    void cleanupTestCase() { m_pRig.reset(); }

    void theReleasedKeyExchangesTheSource()
    {
        LogCapture log;
        start(arm_left, false);
        console().tap(Mvr);
        QVERIFY(console().settle());
        QCOMPARE(ECManager::instance()->getCurrentSource(), arm_left); // without a signal it stays
        QVERIFY(log.contains("MVR key: DVI input 0 has no signal"));

        start(arm_left, true);
        SourceLog source(console());
        QElapsedTimer elapsed;
        elapsed.start();
        console().press(Mvr);
        QVERIFY(console().settle());
        QCOMPARE(source.steps(), QStringList());
        console().release(Mvr);
        QVERIFY(console().settle());
        QVERIFY(elapsed.elapsed() >= SwitchMs);
        QCOMPARE(source.steps(), (QStringList{"dvi1", "green", "hide"}));
        console().tap(Mvr);
        QVERIFY(console().settle());
        const QStringList bothWays{"dvi1", "green", "hide", "yellow", "show", "arm"};
        QCOMPARE(source.steps(), bothWays);

        qApp->setProperty(Constants::QuenorProperty, true);
        console().tap(Mvr);
        QVERIFY(console().settle());
        qApp->setProperty(Constants::QuenorProperty, false);
        QCOMPARE(source.steps(), bothWays);
    }

    void theSourceFollowsTheSignal_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<ConsolePanel::DviReport>("report");
        QTest::addColumn<QStringList>("steps");
        using Report = ConsolePanel::DviReport;
        const QStringList lost{"show", "arm", "off"};
        QTest::newRow("lost at the computer") << int(dvi1) << Report{{{0, 0}}} << lost;
        QTest::newRow("lost at the application") << int(arm_left) << Report{{{0, 0}}} << lost;
        QTest::newRow("not reported") << int(dvi1) << Report{{{1, 1}}} << lost;
        QTest::newRow("there at the application")
            << int(arm_left) << Report{{{0, 1}}} << QStringList{"show", "arm", "yellow"};
        QTest::newRow("there at the computer")
            << int(dvi1) << Report{{{0, 1}}} << QStringList{"dvi1", "hide", "green"};
    }
    void theSourceFollowsTheSignal()
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

    void onTheGuiThreadNothingWaitsAndReportsMerge()
    {
        start(dvi1, true);
        SourceLog source(console());
        QElapsedTimer elapsed;
        elapsed.start();
        reportOnGuiThread(false);
        QVERIFY(elapsed.elapsed() < SwitchMs);
        QTRY_COMPARE(source.steps(), QStringList{"show"}); // it has begun
        for (const bool signal : {true, false, false, true})
            reportOnGuiThread(signal);
        QVERIFY(elapsed.elapsed() < SwitchMs);
        // One change for the four, with the last signal, at the source that the first report brought about.
        const QStringList steps{"show", "arm", "off", "show", "arm", "yellow"};
        QTRY_COMPARE(source.steps(), steps);
        QVERIFY(elapsed.elapsed() >= 2 * SwitchMs);
        console().tap(Mvr); // finds none under way
        QVERIFY(console().settle());
        QCOMPARE(source.steps(), (steps + QStringList{"dvi1", "green", "hide"}));
    }

    void consoleKeysDoNotWaitForChangesOfTheGuiThread()
    {
        start(arm_left, true);
        SourceLog source(console());
        for (int i = 0; i < 10; ++i)
            reportOnGuiThread(true);
        QTRY_COMPARE(source.steps(), QStringList{"show"}); // one has begun
        reportOnGuiThread(true);
        QElapsedTimer elapsed;
        elapsed.start();
        console().tap(Mvr);
        console().tap(Save);
        QVERIFY(console().settle());
        QVERIFY(elapsed.elapsed() < SwitchMs);
        // The key is next; what waits is then brought in line with the source that it chose.
        const QStringList steps{"show", "arm", "yellow", "dvi1", "green", "hide", "dvi1", "hide", "green"};
        QTRY_COMPARE(source.steps(), steps);
    }

    void aKeyThatWaitedWhileTheSignalWentDoesNothing()
    {
        start(arm_left, true);
        LogCapture log;
        SourceLog source(console());
        reportOnGuiThread(true);
        QTRY_COMPARE(source.steps(), QStringList{"show"}); // it has begun
        console().tap(Mvr);
        QVERIFY(console().settle());
        reportOnGuiThread(false);
        const QStringList steps{"show", "arm", "yellow", "show", "arm", "off"};
        QTRY_COMPARE(source.steps(), steps);
        QVERIFY(log.contains("MVR key: the signal of DVI input 0 was lost meanwhile"));
    }

    /// The last test: there is one console a process.
    void theConsoleMayEndInTheMiddle()
    {
        start(dvi1, true);
        QElapsedTimer elapsed;
        elapsed.start();
        for (int i = 0; i < 10; ++i)
            reportOnGuiThread(i % 2 == 0);
        m_pRig->endConsole();
        QVERIFY(elapsed.elapsed() < 2 * SwitchMs); // what had not begun is dropped
    }

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    /// A report about the input, as if it came on the GUI thread.
    static void reportOnGuiThread(bool signal)
    {
        ECManager::instance()->upTLVDecodeFinished(
            ReportDVIInSignal, signal ? QByteArray("\0\1", 2) : QByteArray("\0\0", 2));
    }
    /// Brings source and signal to a known state.
    void start(DVISource source, bool signal)
    {
        ECManager::instance()->switchSource(source);
        console().report(ConsolePanel::DviReport{{{0, quint8(signal)}}}); // may switch
        QVERIFY(console().settle());
        ECManager::instance()->switchSource(source);
    }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

QTEST_MAIN(TestSecondaryScreen)
#include "tst_secondaryscreen.moc"

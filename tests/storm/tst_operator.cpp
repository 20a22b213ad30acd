#include "operator.h"
#include "processuse.h"
#include "showclock_p.h"
#include "timerlog.h"

#include "showfile.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Storm;
using TestSupport::ProcessUse;

namespace {

constexpr int DefaultSeconds = 20;
/// Three seconds of holding a key are thirty milliseconds.
constexpr int ShowRate = 100;
/// Whoever runs for this long has made all the threads and caches that there are.
constexpr int WarmUpSeconds = 10;

} // namespace

/// A random operator of all groups of keys; after each thing that he does every light and label of the
/// console is compared with what the documents say.
///
/// ORVANE_OPERATOR_SEED repeats a run, ORVANE_OPERATOR_SECONDS says how long it is. With
/// ORVANE_OPERATOR_SOCKETS console and library are joined by real sockets, which fail at times.
class TestOperator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whateverIsDoneTheConsoleShowsWhatTheDocumentsSay()
    {
        ShowClock::setRate(ShowRate);
        const Keyboard keyboard(QStringLiteral(EXAMPLE_KEYBOARD));
        QVERIFY(keyboard.config());
        QStringList faults;
        const auto show = MemoryModel::loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
        QVERIFY2(show, qPrintable(faults.join(QLatin1Char('\n'))));
        QStringList devices;
        for (const auto& device : show->devices)
            devices.append(device.ipMacSn);
        QTemporaryDir directory;
        QVERIFY(directory.isValid());

        bool isSet = false;
        const int fromEnvironment = qEnvironmentVariableIntValue("ORVANE_OPERATOR_SECONDS", &isSet);
        const int seconds = isSet ? fromEnvironment : DefaultSeconds;
        const quint32 given = quint32(qEnvironmentVariableIntValue("ORVANE_OPERATOR_SEED", &isSet));
        const quint32 seed = isSet ? given : QRandomGenerator::global()->generate() >> 1;
        qInfo("ORVANE_OPERATOR_SEED=%u", seed);
        auto log = std::make_unique<TimerLog>();

        std::unique_ptr<TestSupport::ConsoleWire> wire = TestSupport::makeDirectWire();
        if (qEnvironmentVariableIsSet("ORVANE_OPERATOR_SOCKETS"))
            wire = std::make_unique<TestSupport::SocketWire>();

        QString wrong;
        quint64 comparisons = 0, presses = 0, linkFaults = 0, unreadable = 0;
        ProcessUse before, after;
        {
            TestSupport::ModelRig rig(keyboard.config(), std::move(wire));
            const bool isLoaded = rig.load(*show);
            rig.model().setShowFile(directory.filePath(QStringLiteral("show.json")));
            Operator person(rig, keyboard, devices, seed);
            QElapsedTimer timer;
            timer.start();
            while (isLoaded && wrong.isEmpty() && timer.elapsed() < seconds * 1000LL) {
                wrong = person.step();
                rig.forget();
                if (before.threads == 0 && timer.elapsed() > WarmUpSeconds * 1000)
                    before = ProcessUse::present();
            }
            after = ProcessUse::present();
            if (wrong.isEmpty() && before.threads != 0)
                wrong = after.growthSince(before);
            comparisons = person.comparisons();
            presses = person.presses();
            linkFaults = person.linkFaults();
            unreadable = rig.console().unreadableRequests();
        }
        log.reset();
        qInfo(
            "%llu comparisons, %llu key presses, %llu faults of the link",
            static_cast<unsigned long long>(comparisons), static_cast<unsigned long long>(presses),
            static_cast<unsigned long long>(linkFaults));
        qInfo(
            "memory %lld kB, then %lld; threads %d, then %d; descriptors %d, then %d", before.memoryKb,
            after.memoryKb, before.threads, after.threads, before.descriptors, after.descriptors);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        QVERIFY(comparisons > 0);
        QCOMPARE(unreadable, quint64(0));
    }
};

QTEST_MAIN(TestOperator)
#include "tst_operator.moc"

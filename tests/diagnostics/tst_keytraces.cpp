#include "everykey.h"

#include "eckeytracer.h"
#include "ecmanager.h"

#include <QDialog>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace EveryKey;
using Event = ECKeyTrace::Event;
using MemoryModel::Operation;
using Traces = QList<ECKeyTrace>;

namespace {

void lockKeypad(bool locked)
{
    locked ? ECManager::instance()->lockKeypad() : ECManager::instance()->unlockKeypad();
}

bool contains(const Traces& traces, Event event, quint32 ecKey, const QString& reason)
{
    return std::any_of(traces.cbegin(), traces.cend(), [&](const ECKeyTrace& trace) {
        return trace.event == event && trace.ecKey == ecKey && trace.reason.contains(reason);
    });
}

QString told(const Traces& traces)
{
    QString text;
    for (const ECKeyTrace& trace : traces)
        text += QStringLiteral("key %1, event %2: \"%3\"\n")
                    .arg(trace.ecKey)
                    .arg(int(trace.event))
                    .arg(trace.reason);
    return text;
}

} // namespace

/// The state that a test brings about, and takes back.
using Arrange = std::function<void(TestSupport::ModelRig& rig, bool on)>;
Q_DECLARE_METATYPE(Arrange)

/// What a tracer says of the keys: the way of each event, and why nothing came of it.
class TestKeyTraces : public TestSupport::ModelTest {
    Q_OBJECT

public:
    TestKeyTraces()
        : ModelTest(keyboard())
    {
    }

private Q_SLOTS:
    void init()
    {
        m_rig.operations().clearAllOrders();
        QVERIFY(m_rig.load(show()));
        m_rig.forget();
    }

    void aHandledPressTellsItsWayFromTheReportToTheLight()
    {
        ECKeyTracer tracer;
        const quint16 digit = keyOf("NumberCommand", "Enter");
        console().press(digit);
        QVERIFY(console().settle());
        const Traces traces = tracer.take();
        QCOMPARE(traces.size(), 1);
        const ECKeyTrace& trace = traces.first();
        QCOMPARE(trace.event, Event::Pressed);
        QCOMPARE(trace.report.size(), int(sizeof(ECButtonOperState)));
        QCOMPARE(trace.key, quint32(digit));
        QCOMPARE(trace.owner, QString("NumberCommand"));
        QCOMPARE(trace.function, QString("Enter"));
        QCOMPARE(trace.guards.size(), 6);
        QCOMPARE(trace.handled, std::optional<bool>(true));
        QCOMPARE(trace.sent.size(), 1);
        QCOMPARE(int(quint8(trace.sent.first().at(12))), int(UpdateECButtonColor));
        QVERIFY2(trace.reason.isEmpty(), qPrintable(trace.reason));
        console().release(digit);
        QVERIFY(console().settle());
    }

    void eachGuardIsTheReasonOfEachKeyThatItStops_data()
    {
        QTest::addColumn<Arrange>("arrange");
        QTest::addColumn<unsigned>("passesPress");
        QTest::addColumn<unsigned>("passesRelease");
        QTest::addColumn<QString>("reason");
        const auto dialog = [](const QString& name) -> Arrange {
            return [name, dialog = std::make_shared<QDialog>()](TestSupport::ModelRig&, bool on) {
                dialog->setObjectName(name);
                dialog->setModal(true);
                dialog->setVisible(on);
            };
        };
        const auto guard = [](const char* name, Arrange arrange, unsigned press, unsigned release,
                              const QString& reason) {
            QTest::newRow(name) << std::move(arrange) << press << release << reason;
        };
        using namespace Internal;
        guard(
            "device upgrade", [](auto& rig, bool on) { rig.control().setUpgrading(Device, on); }, NoTraits,
            NoTraits, "upgrade");
        guard(
            "compatible upgrade", [](auto& rig, bool on) { rig.control().setCompatibleUpgrading(on); },
            NoTraits, NoTraits, "upgrade");
        guard("dialog", dialog("options"), PressPassesDialog, ReleasePassesDialog, "open: \"options\"");
        guard("waiting", dialog("waitingDialog"), PressPassesDialog, ReleasePassesDialog, "waitingDialog");
        guard(
            "Quenor", [](auto&, bool on) { qApp->setProperty("Quenor", on); }, PressPassesDialog,
            ReleasePassesDialog, "Quenor");
        guard(
            "keypad lock", [](auto&, bool on) { lockKeypad(on); }, PassesKeypadLock, NoTraits, "locked");
    }
    void eachGuardIsTheReasonOfEachKeyThatItStops()
    {
        QFETCH(Arrange, arrange);
        QFETCH(unsigned, passesPress);
        QFETCH(unsigned, passesRelease);
        QFETCH(QString, reason);
        arrange(m_rig, true);
        QVERIFY(console().settle());
        for (const Key& key : keys()) {
            ECKeyTracer tracer;
            QVERIFY(tap(key.ecKey));
            for (const auto& trace : tracer.take()) {
                if (trace.event != Event::Pressed && trace.event != Event::Released)
                    continue;
                const unsigned passing = trace.event == Event::Pressed ? passesPress : passesRelease;
                const bool passes = (key.row.traits & passing) != 0;
                QVERIFY2(trace.guards.last().isPassed == passes, qPrintable(functionOf(key)));
                QVERIFY2(passes || !trace.handled, qPrintable(functionOf(key)));
                QVERIFY2(passes || trace.reason.contains(reason), qPrintable(trace.reason));
            }
        }
        arrange(m_rig, false);
    }

    void eachKeyThatDoesNothingHasAReason_data()
    {
        QTest::addColumn<Arrange>("arrange");
        const auto row = [](const char* name, Arrange arrange) { QTest::newRow(name) << std::move(arrange); };
        row("all is well", [](auto&, bool) {});
        row("no device", [](auto& rig, bool on) { rig.control().activateDevice(on ? QString() : Device); });
        row("no screen", [](auto& rig, bool) { rig.control().removeScreen(Device, Stage); });
        row("offline", [](auto& rig, bool) { rig.control().setOnline(Device, false); });
        row("nothing selected", [](auto& rig, bool) {
            rig.control().selectLayers(Device, Stage, BizModel::SceneType::PVW, {});
            rig.control().selectScreens(Device, {});
        });
        row("the screen is taking", [](auto& rig, bool on) {
            using State = BizModel::Screen::State;
            rig.control().setScreenState(Device, Stage, on ? State::Taking : State::Normal);
        });
        row("the model refuses all", [](auto& rig, bool) {
            for (const QString& name : MemoryModel::operationNames())
                rig.operations().fail(
                    *MemoryModel::findOperation(name), "refused", MemoryModel::Times::Always);
        });
    }
    void eachKeyThatDoesNothingHasAReason()
    {
        QFETCH(Arrange, arrange);
        for (const Key& key : keys()) {
            if (key.row.code == 0)
                continue;
            init();
            arrange(m_rig, true);
            QVERIFY(console().settle());
            m_rig.forget();
            ECKeyTracer tracer;
            console().press(key.ecKey);
            QVERIFY(console().settle());
            const Traces traces = tracer.take();
            const auto pressed = std::find_if(traces.cbegin(), traces.cend(), [](const ECKeyTrace& trace) {
                return trace.event == Event::Pressed;
            });
            QVERIFY(pressed != traces.cend());
            const bool isRefused = !pressed->handled.value_or(false);
            const bool didNothing = pressed->sent.isEmpty() && !isAnythingAsked() && m_rig.notices().empty();
            const QString where =
                QStringLiteral("%1 %2: %3").arg(key.group, functionOf(key), pressed->reason);
            QVERIFY2(!pressed->reason.isEmpty() || !(isRefused || didNothing), qPrintable(where));
            QVERIFY2(!pressed->reason.contains("nothing to do"), qPrintable(where));
            console().release(key.ecKey);
            QVERIFY(console().settle());
            arrange(m_rig, false);
            control().answerMessageBox(QMessageBox::No);
        }
    }

    void theReasonIsTheOneThatAnOperatorWouldAskFor_data()
    {
        QTest::addColumn<Arrange>("arrange");
        QTest::addColumn<quint16>("key");
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("reason");
        const auto row = [](
                             const char* group, const char* name, Event event, const QString& reason,
                             Arrange arrange = [](auto&, bool) {}) {
            QTest::newRow(qPrintable(reason)) << std::move(arrange) << keyOf(group, name) << event << reason;
        };
        const Arrange nothingSelected = [](auto& rig, bool) {
            rig.control().selectLayers(Device, Stage, BizModel::SceneType::PVW, {});
        };
        row("InputCommand", "select", Event::Pressed, "no layer is selected", nothingSelected);
        row("InputCommand", "select", Event::Pressed, "unable to find input",
            [](auto& rig, bool) { rig.control().removeInput(Device, 1); });
        row("FunctionCommand", "copy layers", Event::Pressed, "select layer is empty", nothingSelected);
        row("FunctionCommand", "lock keypad (hold)", Event::Released, "before the end of its hold");
        row("FunctionCommand", "switch source", Event::Pressed, "acts when it is released");
        row("FunctionCommand", "switch source", Event::Released, "DVI input 0 has no signal");
        row("FunctionCommand", "DVI input light", Event::Pressed, "nothing is bound to a press");
        row("PresetCommand", "load to PGM or PVW", Event::Pressed, "does not allow loading to PGM");
        row("ScreenCommand", "page up", Event::Released, "minimum page number");
        row("LayerCommand", "full screen", Event::Held, "no layer that may be resized", nothingSelected);
    }
    void theReasonIsTheOneThatAnOperatorWouldAskFor()
    {
        QFETCH(Arrange, arrange);
        QFETCH(quint16, key);
        QFETCH(Event, event);
        QFETCH(QString, reason);
        QVERIFY(key != 0);
        arrange(m_rig, true);
        QVERIFY(console().settle());
        ECKeyTracer tracer;
        QVERIFY(tap(key));
        Traces traces;
        const bool isFound = QTest::qWaitFor([&] {
            traces += tracer.take();
            return contains(traces, event, key, reason);
        });
        QVERIFY2(isFound, qPrintable(told(traces)));
    }

    void aKeyOfNoGroupAndAReportCutShortAreTold()
    {
        ECKeyTracer tracer;
        console().press(60000);
        QVERIFY(console().settle());
        QVERIFY(contains(tracer.take(), Event::Pressed, 60000, "no group"));
        ECManager::instance()->upTLVDecodeFinished(ReportECButtonRelease, QByteArray(4, '\1'));
        const Traces traces = tracer.take();
        QCOMPARE(traces.size(), 1);
        QVERIFY2(traces.first().reason.contains("length"), qPrintable(traces.first().reason));
    }

    void aHoldIsTracedToThePressThatBeganIt()
    {
        ECKeyTracer tracer;
        const quint16 full = keyOf("LayerCommand", "full screen");
        QVERIFY(tap(full));
        Traces traces;
        QVERIFY(QTest::qWaitFor([&] {
            traces += tracer.take();
            return contains(traces, Event::Held, full, QString());
        }));
        const ECKeyTrace& held = traces.last();
        QCOMPARE(held.event, Event::Held);
        QCOMPARE(held.cause, traces.first().number);
        QCOMPARE(held.owner, QString("LayerCommand"));
    }

    void aTracerTellsOfItsEventsOnceAndKeepsTheNewestThousand()
    {
        ECKeyTracer tracer;
        int told = 0;
        connect(&tracer, &ECKeyTracer::signalTracesPending, this, [&told] { ++told; });
        const quint16 digit = keyOf("NumberCommand", "Enter");
        for (int i = 0; i <= ECKeyTracer::MaxTraces; ++i)
            console().press(digit);
        QVERIFY(console().settle());
        QCOMPARE(told, 1);
        const Traces traces = tracer.take();
        QCOMPARE(traces.size(), int(ECKeyTracer::MaxTraces));
        QCOMPARE(traces.last().number - traces.first().number, quint64(ECKeyTracer::MaxTraces - 1));
        console().release(digit);
        QVERIFY(console().settle());
        QCOMPARE(told, 2);
    }

private:
    bool isAnythingAsked() const
    {
        const QStringList names = MemoryModel::operationNames();
        return std::any_of(names.cbegin(), names.cend(), [this](const QString& name) {
            return !m_rig.asked(*MemoryModel::findOperation(name)).isEmpty();
        });
    }
};

QTEST_MAIN(TestKeyTraces)
#include "tst_keytraces.moc"

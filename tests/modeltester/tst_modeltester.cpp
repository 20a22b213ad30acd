#include "brokenmodel.h"
#include "flawedkit.h"
#include "modelcheck.h"
#include "ownmodel/presets.h"
#include "parallelcontrol/parallelmanager.h"

#include <QProcess>
#include <QtTest>

Q_DECLARE_METATYPE(Orvane::ModelTest::Test::Flaw)
Q_DECLARE_METATYPE(Orvane::ModelTest::Test::KitFlaw)

using namespace Orvane;
using namespace Orvane::ModelTest;
using namespace Orvane::ModelTest::Test;
using namespace std::chrono_literals;

namespace {

ModelLimits shortLimits()
{
    ModelLimits limits;
    limits.query = 300ms;
    limits.request = 400ms;
    limits.completion = 1500ms;
    limits.announcement = 600ms;
    limits.removal = 1000ms;
    return limits;
}

/// The example of a model of one's own, as its last step makes it.
class OwnModel final : public ModelFixture {
public:
    bool create(QString&) override
    {
        m_p = std::make_unique<Parts>();
        Own::addScreens(m_p->list.device());
        Own::addInputs(m_p->list.device());
        m_p->list.device().setMaxPresetCount(20);
        return true;
    }
    void destroy() override { m_p.reset(); }

private:
    struct Parts {
        Bridge::ItemDeviceList list{std::make_shared<Bridge::DeviceItem>("wall")};
        Own::PresetControllerFactory controllers;
        Own::ParallelManager requests;
        Bridge::ItemSamplingThread sampling;
    };
    std::unique_ptr<Parts> m_p;
};

QString text(const QList<ModelFault>& faults)
{
    QStringList lines;
    for (const ModelFault& fault : faults)
        lines += fault.rule + QStringLiteral(" | ") + fault.call + QStringLiteral(" | ") + fault.seen;
    return lines.join(QLatin1Char('\n'));
}

/// Whether the row's fault is among those that were found, and, if asked for, no other rule's.
void checkNamed(const QList<ModelFault>& faults, bool alone)
{
    QFETCH(QString, rule);
    QFETCH(QString, call);
    const bool named = std::any_of(faults.cbegin(), faults.cend(), [&](const ModelFault& fault) {
        return fault.rule == rule && fault.call == call && !fault.seen.isEmpty();
    });
    QVERIFY2(named, qPrintable(text(faults)));
    for (const ModelFault& fault : faults)
        QVERIFY2(
            !alone || fault.rule == rule || fault.call.contains("freeze", Qt::CaseInsensitive),
            qPrintable(text(faults)));
}

} // namespace

class TestModelTester : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aModelThatKeepsTheRulesIsPassed()
    {
        BrokenModel model(Flaw::None);
        const auto faults = checkModel(model, shortLimits());
        QVERIFY2(faults.isEmpty(), qPrintable(text(faults)));
    }

    void theModelInMemoryKeepsTheRules()
    {
        FlawedKit model;
        const auto faults = checkModel(model);
        QVERIFY2(faults.isEmpty(), qPrintable(text(faults)));
    }

    void theExampleOfAModelOfOnesOwnKeepsTheRules()
    {
        OwnModel model;
        const auto faults = checkModel(model);
        QVERIFY2(faults.isEmpty(), qPrintable(text(faults)));
    }

    void aBrokenRuleIsNamed_data()
    {
        QTest::addColumn<Flaw>("flaw");
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("call");
        QTest::newRow("freeze without its signal") << Flaw::FreezeWithoutSignal << "completion-after-signals"
                                                   << "ParallelFreezeScreen";
        QTest::newRow("a change that nobody hears of") << Flaw::SilentRename << "signal-after-change"
                                                       << "screen 2:1 name";
        QTest::newRow("states not set before the request returns")
            << Flaw::StatesAfterReturn << "states-before-return"
            << "ParallelTakeScreen";
        QTest::newRow("a task count that comes late")
            << Flaw::TaskCountAfterReturn << "task-count-before-return"
            << "ParallelTakeScreen";
        QTest::newRow("a task count that goes late")
            << Flaw::TaskCountAfterCompletion << "task-count-at-completion"
            << "ParallelTakeScreen";
        QTest::newRow("a completion that never comes") << Flaw::CompletionNever << "completion-comes"
                                                       << "AsyncSaveDeviceData";
        QTest::newRow("a completion that comes twice") << Flaw::CompletionTwice << "completion-once"
                                                       << "AsyncSaveDeviceData";
        QTest::newRow("a completion before its signal")
            << Flaw::CompletionBeforeSignal << "completion-after-signals"
            << "ParallelSetSwapStatus";
        QTest::newRow("a freeze that is announced twice") << Flaw::FreezeAnnouncedTwice << "signal-once"
                                                          << "ParallelFreezeScreen";
        QTest::newRow("a signal before the change") << Flaw::SignalBeforeChange << "signal-after-change"
                                                    << "device test swap";
        QTest::newRow("a failure without a reason") << Flaw::FailureWithoutReason << "refusal-with-reason"
                                                    << "ParallelFTBScreen";
        QTest::newRow("a failure that has changed something")
            << Flaw::FailureChanges << "refusal-without-change"
            << "ParallelSetSwapStatus";
        QTest::newRow("a request that says true and does nothing")
            << Flaw::SuccessWithoutEffect << "success-with-effect"
            << "ParallelFreezeScreen";
        QTest::newRow("a selection that is made later") << Flaw::SelectionAfterReturn << "success-with-effect"
                                                        << "setSelected";
        QTest::newRow("a refusal that changes something")
            << Flaw::RefusalDeselects << "refusal-without-change"
            << "setSelected";
        QTest::newRow("a request that returns late") << Flaw::SlowRequest << "request-in-time"
                                                     << "ParallelTakeScreen";
        QTest::newRow("a query that waits for the GUI thread") << Flaw::QueryWaitsForGui << "query-in-time"
                                                               << "queries of the active device";
        QTest::newRow("a signal under a lock") << Flaw::SignalUnderLock << "query-during-signal"
                                               << "signalSwapStateChanged";
        QTest::newRow("a removed object that stays") << Flaw::RemovedScreenKept << "removed-objects-expire"
                                                     << "signalScreenRemoved";
    }
    void aBrokenRuleIsNamed()
    {
        QFETCH(Flaw, flaw);
        BrokenModel model(flaw);
        // A query that hangs makes everything late.
        checkNamed(
            checkModel(model, shortLimits()),
            flaw != Flaw::QueryWaitsForGui && flaw != Flaw::SignalUnderLock);
    }

    void aBrokenRuleOfLayersAndPresetsIsNamed_data()
    {
        QTest::addColumn<KitFlaw>("flaw");
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("call");
        const auto row = [](const char* name, KitFlaw flaw, const char* rule, const char* call) {
            QTest::newRow(name) << flaw << QString(rule) << QString(call);
        };
        row("a new layer below the others", KitFlaw::LayerBelow, "success-with-effect", "addLayer");
        row("a layer that is announced twice", KitFlaw::LayerAddedTwice, "signal-once", "signalLayerAdded");
        row("a removed layer that stays", KitFlaw::LayerStays, "success-with-effect", "removeLayers");
        row("a signal about what was removed", KitFlaw::RenamedAfterRemoval, "signals-in-order",
            "signalLayerNameChanged");
        row("an order that stays", KitFlaw::OrderKept, "success-with-effect", "topZOrder");
        row("a refused order that is made", KitFlaw::RefusalReorders, "refusal-without-change", "topZOrder");
        row("a selection that replaces nothing", KitFlaw::SelectionAppends, "success-with-effect",
            "layer setSelected");
        row("a window that stays", KitFlaw::WindowKept, "success-with-effect", "updateWindow");
        row("a source for one of two layers", KitFlaw::OneLayerBound, "success-with-effect", "bindSource");
        row("a preset that is not there", KitFlaw::NoPreset, "success-with-effect", "createPresetFile");
        row("a preset refused without a reason", KitFlaw::NoPresetNoReason, "refusal-with-reason",
            "createPresetFile");
        row("a removed preset that stays", KitFlaw::PresetStays, "success-with-effect", "removeFile");
        row("an overwritten preset that nobody hears of", KitFlaw::CoverUnannounced, "signal-after-change",
            "coverPreset");
        row("a load that nobody hears of", KitFlaw::LoadUnannounced, "signal-after-change",
            "updatePresetModelData");
        row("a load that does not come", KitFlaw::LoadDropped, "success-with-effect", "s_LoadPresetSampling");
        row("a T-Bar without an end", KitFlaw::TBarDropped, "success-with-effect", "s_TBarSampling");
        row("a clearing that completes first", KitFlaw::ClearCompletesFirst, "success-with-effect",
            "AsyncRemoveLayer");
        row("a copy that is missing", KitFlaw::CopyMissing, "success-with-effect", "AsyncAddCopyLayers");
        row("a failure that makes a screen", KitFlaw::FailureCreates, "refusal-without-change",
            "AsyncCreateScreen");
        row("presets cleared one by one", KitFlaw::ClearedOneByOne, "signal-once", "AsyncRemoveFile");
    }
    void aBrokenRuleOfLayersAndPresetsIsNamed()
    {
        QFETCH(KitFlaw, flaw);
        FlawedKit model(flaw);
        checkNamed(checkModel(model, shortLimits()), true);
    }

    void aQueryThatNeverReturnsEndsTheCheck()
    {
        QProcess check;
        check.start(HANGING_MODEL, QStringList());
        QVERIFY(check.waitForFinished(60000));
        QCOMPARE(check.exitStatus(), QProcess::NormalExit);
        QCOMPARE(check.exitCode(), 1);
        const QByteArray output = check.readAllStandardOutput();
        QVERIFY2(output.contains("query-in-time: queries of the active device"), output);
        QVERIFY2(output.contains("call-returns: selecting a screen"), output);
    }

    void aTesterLeavesTheModelAsItFoundIt()
    {
        BrokenModel model(Flaw::None);
        QString error;
        QVERIFY(model.create(error));
        auto* const before = ParallelControl::ParallelManager::instance();
        {
            const ModelTester tester(*BizModel::DeviceList::instance());
            QVERIFY(ParallelControl::ParallelManager::instance() != before);
        }
        QCOMPARE(ParallelControl::ParallelManager::instance(), before);
        model.destroy();
        QCOMPARE(checkModel(model).size(), 0); // made anew
    }
};

QTEST_GUILESS_MAIN(TestModelTester)
#include "tst_modeltester.moc"

#include "bareplatform.h"
#include "flawedkit.h"
#include "modelcheck.h"
#include "ownmodel/presets.h"
#include "parallelcontrol/parallelmanager.h"

#include <QProcess>
#include <QtTest>

#include <mutex>

Q_DECLARE_METATYPE(Orvane::ModelTest::Test::Flaw)

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

bool names(const QList<ModelFault>& faults, const QString& rule, const QString& call)
{
    return std::any_of(faults.cbegin(), faults.cend(), [&](const ModelFault& fault) {
        return fault.rule == rule && fault.call == call && !fault.seen.isEmpty();
    });
}

} // namespace

class TestModelTester : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        const auto row = [](const char* name, Flaw flaw, const char* rule, const char* call) {
            QTest::newRow(name) << flaw << QString(rule) << QString(call);
        };
        row("a new layer below the others", Flaw::LayerBelow, "success-with-effect", "addLayer");
        row("a layer that is announced twice", Flaw::LayerAddedTwice, "signal-once", "signalLayerAdded");
        row("a removed layer that stays", Flaw::LayerStays, "success-with-effect", "removeLayers");
        row("a signal about what was removed", Flaw::RenamedAfterRemoval, "signals-in-order",
            "signalLayerNameChanged");
        row("an order that stays", Flaw::OrderKept, "success-with-effect", "topZOrder");
        row("a refused order that is made", Flaw::RefusalReorders, "refusal-without-change", "topZOrder");
        row("a selection that replaces nothing", Flaw::SelectionAppends, "success-with-effect",
            "layer setSelected");
        row("a window that stays", Flaw::WindowKept, "success-with-effect", "updateWindow");
        row("a source for one of two layers", Flaw::OneLayerBound, "success-with-effect", "bindSource");
        row("a preset that is not there", Flaw::NoPreset, "success-with-effect", "createPresetFile");
        row("a preset refused without a reason", Flaw::NoPresetNoReason, "refusal-with-reason",
            "createPresetFile");
        row("a removed preset that stays", Flaw::PresetStays, "success-with-effect", "removeFile");
        row("an overwritten preset that nobody hears of", Flaw::CoverUnannounced, "signal-after-change",
            "coverPreset");
        row("a load that nobody hears of", Flaw::LoadUnannounced, "signal-after-change",
            "updatePresetModelData");
        row("a load that does not come", Flaw::LoadDropped, "success-with-effect", "s_LoadPresetSampling");
        row("a T-Bar without an end", Flaw::TBarDropped, "success-with-effect", "s_TBarSampling");
        row("a clearing that completes first", Flaw::ClearCompletesFirst, "success-with-effect",
            "AsyncRemoveLayer");
        row("a copy that is missing", Flaw::CopyMissing, "success-with-effect", "AsyncAddCopyLayers");
        row("a failure that makes a screen", Flaw::FailureCreates, "refusal-without-change",
            "AsyncCreateScreen");
        row("presets cleared one by one", Flaw::ClearedOneByOne, "signal-once", "AsyncRemoveFile");
        row("a removed layer that is held on to", Flaw::LayerKept, "removed-objects-expire",
            "signalLayerRemoved");
        row("a completion that never comes", Flaw::CompletionNever, "completion-comes",
            "AsyncSaveDeviceData");
        row("a completion that comes twice", Flaw::CompletionTwice, "completion-once", "AsyncSaveDeviceData");
        row("states not set before the request returns", Flaw::StatesAfterReturn, "states-before-return",
            "ParallelTakeScreen");
        row("a task count that comes late", Flaw::TaskCountAfterReturn, "task-count-before-return",
            "ParallelTakeScreen");
        row("a task count that goes late", Flaw::TaskCountAfterCompletion, "task-count-at-completion",
            "ParallelTakeScreen");
        row("a failure without a reason", Flaw::FailureWithoutReason, "refusal-with-reason",
            "ParallelFTBScreen");
        row("a freeze that does nothing", Flaw::FreezeDropped, "success-with-effect", "ParallelFreezeScreen");
        row("a request that returns late", Flaw::SlowRequest, "request-in-time", "ParallelTakeScreen");
    }
    void aBrokenRuleIsNamed()
    {
        QFETCH(Flaw, flaw);
        QFETCH(QString, rule);
        QFETCH(QString, call);
        FlawedKit model(flaw);
        const auto faults = checkModel(model, shortLimits());
        QVERIFY2(names(faults, rule, call), qPrintable(text(faults)));
        if (flaw == Flaw::StatesAfterReturn || flaw == Flaw::TaskCountAfterCompletion)
            return; // they break other rules along with theirs
        for (const ModelFault& fault : faults)
            QVERIFY2(fault.rule == rule, qPrintable(text(faults)));
    }

    void queriesThatWaitForTheGUIThreadOrForALockAreNamed()
    {
        class SlowScreen : public TestSupport::BareScreen {
        public:
            using BareScreen::BareScreen;
            State state() const override
            {
                if (m_bAsksGui && QThread::currentThread() != qApp->thread())
                    QMetaObject::invokeMethod(
                        qApp, [] {}, Qt::BlockingQueuedConnection);
                const std::lock_guard lock(m_mutex);
                return State::Normal;
            }
            std::atomic<bool> m_bAsksGui{false};
            mutable std::recursive_mutex m_mutex;
        };
        class OneDeviceList : public TestSupport::BareDeviceList {
        public:
            std::weak_ptr<BizModel::Device> activedDevice() const override { return m_pDevice; }
            const std::shared_ptr<TestSupport::BareDevice> m_pDevice =
                std::make_shared<TestSupport::BareDevice>();
        } list;
        const auto screen = std::make_shared<SlowScreen>(1);
        list.m_pDevice->m_screens += screen;
        ModelTester tester(list, shortLimits());
        {
            const std::lock_guard lock(screen->m_mutex);
            Q_EMIT list.signalSwapStateChanged(list.m_pDevice);
        }
        QVERIFY(names(tester.faults(), "query-during-signal", "signalSwapStateChanged"));
        screen->m_bAsksGui = true;
        tester.check();
        QThread::msleep(500); // as in a long operation, longer than a query may take
        QTRY_VERIFY(names(tester.faults(), "query-in-time", "queries of the active device"));
        QVERIFY(tester.stop());
    }

    void aCallThatNeverReturnsEndsTheCheck()
    {
        QProcess check;
        check.start(HANGING_MODEL, QStringList());
        QVERIFY(check.waitForFinished(60000));
        QCOMPARE(check.exitStatus(), QProcess::NormalExit);
        QCOMPARE(check.exitCode(), 1);
        const QByteArray output = check.readAllStandardOutput();
        QVERIFY2(output.contains("call-returns: selecting a screen"), output);
    }

    void aTesterLeavesTheModelAsItFoundIt()
    {
        FlawedKit model;
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

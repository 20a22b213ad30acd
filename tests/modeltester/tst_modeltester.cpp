#include "brokenmodel.h"
#include "memorymodel.h"
#include "modelcheck.h"
#include "parallelcontrol/parallelmanager.h"

#include <QtTest>

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

class MemoryFixture : public ModelFixture {
public:
    bool create(QString& error) override
    {
        m_pModel = std::make_unique<MemoryModel::MemoryModel>();
        QStringList faults;
        const bool ok = m_pModel->loadFile(EXAMPLE_SHOW, faults);
        m_pModel->setShowFile({}); // a failing save must complete too
        error = faults.join(QLatin1Char('\n'));
        return ok;
    }
    void destroy() override { m_pModel.reset(); }

private:
    std::unique_ptr<MemoryModel::MemoryModel> m_pModel;
};

QString text(const QList<ModelFault>& faults)
{
    QStringList lines;
    for (const ModelFault& fault : faults)
        lines += fault.rule + QStringLiteral(" | ") + fault.call + QStringLiteral(" | ") + fault.seen;
    return lines.join(QLatin1Char('\n'));
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
        MemoryFixture model;
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
        QFETCH(QString, rule);
        QFETCH(QString, call);
        BrokenModel model(flaw);
        const auto faults = checkModel(model, shortLimits());
        const bool named = std::any_of(faults.cbegin(), faults.cend(), [&](const ModelFault& fault) {
            return fault.rule == rule && fault.call == call && !fault.seen.isEmpty();
        });
        QVERIFY2(named, qPrintable(text(faults)));
        // One flaw is not taken for many; a query that hangs makes everything late.
        if (flaw != Flaw::QueryWaitsForGui && flaw != Flaw::SignalUnderLock) {
            for (const ModelFault& fault : faults)
                QVERIFY2(
                    fault.rule == rule || fault.call.contains("freeze", Qt::CaseInsensitive),
                    qPrintable(text(faults)));
        }
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

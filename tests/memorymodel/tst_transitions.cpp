#include "modeltestsupport.h"

#include "modelcontrol/asyncmanager.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <future>
#include <thread>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ParallelControl;
using BizModel::LayerType;
using BizModel::SceneType;
using State = BizModel::Screen::State;
using Ids = QList<quint32>;

namespace {

/// Starts a task of the type on the group of the device.
template <typename Task>
bool run(Model& m, bool wait, const Completion& completion = {}, QString* error = nullptr)
{
    return ParallelManager::instance()->startParallelRequest(
        m.device(),
        [](const auto& device) {
            return ParallelTask(Task{device, Mask, {}});
        },
        wait, error, completion);
}

bool runSwap(Model& m, bool on, bool wait, const Completion& completion)
{
    return ParallelManager::instance()->startParallelRequest(
        m.device(),
        [on](const auto& device) {
            return ParallelTask(ParallelSetSwapStatus{device, on});
        },
        wait, nullptr, completion);
}

bool sample(Model& m, double process)
{
    auto* const thread = TaskSampling::SamplingThread::instance();
    const auto record = std::make_shared<TaskSampling::s_TBarSampling>();
    record->process = process;
    record->pCurDevice = m.device();
    return thread->setSamplingType(TaskSampling::TBar) && thread->appendData(record);
}

/// A job that the sampling thread is held up by; returns once it has begun.
void holdSampling(Model& m, double process)
{
    const auto begun = std::make_shared<std::promise<void>>();
    auto reached = begun->get_future();
    m.model.operations().delay(Operation::SampleTBar, std::chrono::milliseconds(100), Times::Once);
    m.model.operations().setListener([begun](const JournalEntry& entry) {
        if (entry.operation == operationName(Operation::SampleTBar)
            && entry.phase == JournalEntry::Phase::Started)
            begun->set_value();
    });
    QVERIFY(sample(m, process));
    QCOMPARE(reached.wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    m.model.operations().setListener({});
}

void clearPreview(Model& m, const Completion& completion)
{
    ModelControl::AsyncManager::instance()->startAsyncRequest(ModelControl::AsyncRemoveLayer{
        m.device(), m.screen(1), SceneType::PVW, LayerType::AllLayerType, completion});
}

} // namespace

class TestTransitions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void waitingOnAThreadOfTheModelIsRefused()
    {
        Model m;
        std::promise<bool> second;
        auto answer = second.get_future();
        runSwap(m, true, false, [&](bool, const QString&) { second.set_value(runSwap(m, false, true, {})); });
        QCOMPARE(answer.wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
        QVERIFY(!answer.get());
        QVERIFY(m.device()->swapEnable());
    }

    void waitingTBarSamplesAreCoalescedButNoEndIsLost()
    {
        Model m;
        holdSampling(m, 0.8);
        QStringList carriedOut;
        std::mutex mutex;
        m.model.operations().setListener([&](const JournalEntry& entry) {
            const std::lock_guard lock(mutex);
            if (entry.phase == JournalEntry::Phase::Started
                && entry.operation == operationName(Operation::SampleTBar))
                carriedOut += entry.arguments.section('=', -1);
        });
        // The lever reaches the end and starts back while the device is still busy with an earlier position.
        for (const double process : {0.9, 1.0, 0.1, 0.2})
            QVERIFY(sample(m, process));
        QVERIFY(waitUntil([&] {
            const std::lock_guard lock(mutex);
            return carriedOut.size() == 2;
        }));
        QVERIFY(m.waitForState(1, State::Tbar_taking));
        QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 2}));
        m.model.stop();
        QCOMPARE(carriedOut, (QStringList{"1", "0.2"}));
    }

    void stopEndsWhatRuns()
    {
        Model m;
        m.control().setEffectTime(A, First, 10.0);
        for (const auto operation : {Operation::ParallelSetSwapStatus, Operation::AsyncRemoveLayer})
            m.model.operations().delay(operation, std::chrono::hours(1), Times::Always);
        const std::array<Outcome, 4> outcomes;
        QVERIFY(run<ParallelTakeScreen>(m, false, outcomes[0].completion()));
        QVERIFY(runSwap(m, true, false, outcomes[1].completion()));
        clearPreview(m, outcomes[2].completion());
        clearPreview(m, outcomes[3].completion()); // has not begun yet
        QElapsedTimer clock;
        clock.start();
        m.model.stop();
        QVERIFY(clock.elapsed() < WaitMs);
        for (const Outcome& outcome : outcomes)
            QVERIFY(outcome.called() && !outcome.ok());
        QVERIFY(!m.device()->swapEnable());
        QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 2}));
        QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
        QString error;
        QVERIFY(!run<ParallelTakeScreen>(m, false, {}, &error));
        QVERIFY(!error.isEmpty());
    }

    void stoppingInTheMiddleTellsEveryRequest()
    {
        for (int round = 0; round < 20; ++round) {
            Model m;
            std::atomic<int> asked{0};
            std::atomic<int> told{0};
            std::atomic<bool> stopped{false};
            const auto completion = [&told](bool, const QString&) { ++told; };
            std::vector<std::thread> threads;
            for (int i = 0; i < 3; ++i) {
                threads.emplace_back([&] {
                    while (!stopped) {
                        clearPreview(m, completion);
                        asked += run<ParallelTakeScreen>(m, false, completion) ? 2 : 1;
                    }
                });
            }
            QTest::qWait(10);
            m.model.stop();
            stopped = true;
            for (std::thread& thread : threads)
                thread.join();
            // Not one is forgotten, and not one told twice.
            QCOMPARE(told.load(), asked.load());
            QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
        }
    }

    void nothingChangesOnADeviceThatIsGone()
    {
        Model m;
        const auto device = m.device();
        const auto screen = m.screen(1);
        const Outcome outcome;
        QVERIFY(run<ParallelTakeScreen>(m, false, outcome.completion()));
        QVERIFY(m.control().removeDevice(A));
        QVERIFY(outcome.wait());
        QCOMPARE(screen->layerCount(SceneType::PGM, LayerType::AllLayerType), 1);
        QCOMPARE(m.log.count("signalDeviceScreenLayersChanged"), 0);
        for (const auto& gone : {device, std::shared_ptr<BizModel::Device>()}) {
            QString error;
            QVERIFY(!ParallelManager::instance()->startParallelRequest(
                gone,
                [](const auto& each) {
                    return ParallelTask(ParallelTakeScreen{each, Mask, {}});
                },
                true, &error, {}));
            QVERIFY(!error.isEmpty());
        }
    }

    void replacedShowsLeaveNoThreads()
    {
        Model m;
        const QByteArray show = m.model.show();
        const auto threads = [] {
            return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        };
        const int before = threads();
        for (int i = 0; i < 5; ++i) {
            QStringList faults;
            QVERIFY(m.model.load(show, faults));
            QVERIFY(run<ParallelCutScreen>(m, true));
        }
        // The present device's and, until it is looked for, the last one's.
        QVERIFY2(threads() <= before + 2, qPrintable(QString::number(threads() - before)));
    }
};

QTEST_GUILESS_MAIN(TestTransitions)
#include "tst_transitions.moc"

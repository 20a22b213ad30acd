#include "bareplatform.h"

#include "bridge/guiasyncmanager.h"
#include "bridge/guiparallelmanager.h"
#include "bridge/sharedvalue.h"
#include "openrequest.h"

#include <QtTest>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

using namespace Orvane;
using namespace Orvane::ParallelControl;
using namespace std::chrono_literals;

namespace {

/// Counts the calls of a completion.
struct Outcome {
    Completion completion()
    {
        return [this](bool ok, const QString& reason) {
            succeeded = ok;
            text = reason;
            ++calls;
        };
    }
    std::atomic<int> calls{0};
    std::atomic<bool> succeeded{false};
    QString text;
};

class OneDeviceList : public TestSupport::BareDeviceList {
public:
    std::weak_ptr<BizModel::Device> activedDevice() const override { return m_pDevice; }

    const std::shared_ptr<TestSupport::BareDevice> m_pDevice = std::make_shared<TestSupport::BareDevice>();
};

class AsyncBridge : public Bridge::GuiAsyncManager {
public:
    void perform(const ModelControl::AsyncRequest&, OpenRequest end) override
    {
        m_pThread = QThread::currentThread();
        end.fail("Disk full.");
    }
    QThread* m_pThread = nullptr;
};

class ParallelBridge : public Bridge::GuiParallelManager {
public:
    using GuiParallelManager::GuiParallelManager;

    void begin(const ParallelTask&) override { m_state.set(QStringLiteral("Taking")); }
    void perform(const ParallelTask& task, OpenRequest end) override
    {
        if (m_bForgetful)
            return;
        m_bOnGuiThread = QThread::currentThread() == qApp->thread();
        m_open.push_back(std::move(end));
        if (std::holds_alternative<ParallelFreezeScreen>(task))
            m_open.back().succeed();
    }

    Bridge::SharedValue<QString> m_state{QStringLiteral("Normal")};
    std::vector<OpenRequest> m_open;
    bool m_bForgetful = false;
    bool m_bOnGuiThread = false;
};

template <typename Task> ParallelTaskFactory factory(Task task = {})
{
    return [task](const std::weak_ptr<BizModel::Device>& device) {
        Task each = task;
        each.device = device;
        return each;
    };
}

} // namespace

class TestRequests : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRequestEndsOnceWhoeverEndsItFirst()
    {
        Outcome outcome;
        const OpenRequest request("save", outcome.completion());
        QTest::ignoreMessage(
            QtWarningMsg, "The request save has ended already, its second result is ignored.");
        std::thread([request] { request.succeed(); }).join();
        QVERIFY(!request.isOpen());
        QVERIFY(!request.fail("late"));
        QCOMPARE(outcome.calls.load(), 1);
        QVERIFY(outcome.succeeded);
    }

    void aForgottenRequestFailsWithItsLastCopy()
    {
        Outcome outcome;
        {
            const OpenRequest request("save", outcome.completion());
            const OpenRequest copy = request; // NOLINT(performance-unnecessary-copy-initialization)
            QCOMPARE(outcome.calls.load(), 0);
            QTest::ignoreMessage(
                QtWarningMsg, "The request save was dropped without a result, it counts as failed.");
        }
        QCOMPARE(outcome.calls.load(), 1);
        QVERIFY(!outcome.succeeded && !outcome.text.isEmpty());
    }

    void anAsyncRequestIsCarriedOutOnTheGuiThread()
    {
        AsyncBridge bridge;
        Outcome outcome;
        std::thread([&] {
            bridge.startAsyncRequest(ModelControl::AsyncSaveDeviceData{{}, outcome.completion()});
        }).join();
        QCOMPARE(outcome.calls.load(), 0);
        QTRY_COMPARE(outcome.calls.load(), 1);
        QCOMPARE(bridge.m_pThread, QThread::currentThread());
        QCOMPARE(outcome.text, QString("Disk full."));
    }

    void aTakeIsMarkedBeforeItReturnsAndEndsWithItsTask()
    {
        const OneDeviceList list;
        ParallelBridge bridge;
        Outcome done;
        Outcome outcome;
        std::thread([&] {
            ParallelTakeScreen take;
            take.done = done.completion();
            bridge.startParallelRequest(list.m_pDevice, factory(take), outcome.completion());
        }).join();
        QCOMPARE(bridge.m_state.get(), QString("Taking"));
        QCOMPARE(bridge.currentTaskCount(), 1);
        QTRY_COMPARE(bridge.m_open.size(), std::size_t(1));
        QVERIFY(bridge.m_bOnGuiThread);
        QCOMPARE(outcome.calls.load(), 0);
        bridge.m_open.front().succeed();
        QCOMPARE(bridge.currentTaskCount(), 0);
        QCOMPARE(done.calls.load(), 1);
        QVERIFY(outcome.calls == 1 && outcome.succeeded);
    }

    void aWaitingThreadHearsTheResultButNeverWaitsForever()
    {
        const OneDeviceList list;
        ParallelBridge bridge(2s); // long enough for a slow machine, short enough to be waited for
        const auto waits = [&](const ParallelTaskFactory& tasks) {
            auto result = std::async(std::launch::async, [&] {
                QString error;
                return bridge.startParallelRequest(list.m_pDevice, tasks, true, &error, {}) ? "ok" : error;
            });
            const bool ended =
                QTest::qWaitFor([&] { return result.wait_for(0s) == std::future_status::ready; });
            return ended ? result.get() : QStringLiteral("hangs");
        };
        QCOMPARE(waits(factory<ParallelFreezeScreen>()), QString("ok"));
        QCOMPARE(waits(factory<ParallelTakeScreen>()), QString("The request has not ended in time."));
        QString error;
        QVERIFY(!bridge.startParallelRequest(
            list.m_pDevice, factory<ParallelFreezeScreen>(), true, &error, {})); // here nobody would work it
        QVERIFY(!error.isEmpty());
        QCOMPARE(bridge.currentTaskCount(), 1);
    }

    void whatTheModelForgetsOrLeavesBehindFails()
    {
        const OneDeviceList list;
        Outcome forgotten;
        Outcome left;
        {
            ParallelBridge bridge;
            bridge.m_bForgetful = true;
            bridge.startParallelRequest(list.m_pDevice, factory<ParallelCutScreen>(), forgotten.completion());
            const QRegularExpression dropped("^The request ParallelCutScreen was dropped");
            QTest::ignoreMessage(QtWarningMsg, dropped);
            QTRY_COMPARE(forgotten.calls.load(), 1);
            QVERIFY(!forgotten.succeeded);
            bridge.startParallelRequest(list.m_pDevice, factory<ParallelCutScreen>(), left.completion());
            QTest::ignoreMessage(QtWarningMsg, dropped);
        }
        QCOMPARE(left.calls.load(), 1);
        QVERIFY(!left.succeeded);
    }
};

QTEST_GUILESS_MAIN(TestRequests)
#include "tst_requests.moc"

#include "holdtimer_p.h"

#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <future>
#include <thread>

using Orvane::ECProxy::Client::Internal::HoldTimer;
using namespace std::chrono_literals;

namespace {

constexpr int WaitLimitMs = 5000;

bool ends(const HoldTimer& timer)
{
    return QTest::qWaitFor([&] { return !timer.isRunning(); }, WaitLimitMs);
}

/// Something that one thread waits for until another lets it through. No wait is longer than the limit.
class Gate {
public:
    void open() { m_promise.set_value(); }
    bool pass()
    {
        return m_open.wait_for(std::chrono::milliseconds(WaitLimitMs)) == std::future_status::ready;
    }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_open = m_promise.get_future().share();
};

} // namespace

class tst_holdtimer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyHeldLongEnoughActsOnceAndOneReleasedEarlierNever()
    {
        std::atomic<int> fired{0};
        HoldTimer timer([&] { ++fired; });
        QVERIFY(!timer.stop()); // nothing was ever started
        QVERIFY(!timer.isRunning());

        timer.restart(1h);
        QVERIFY(timer.isRunning());
        QVERIFY(timer.stop());
        QVERIFY(!timer.stop());
        QVERIFY(ends(timer));
        QCOMPARE(fired.load(), 0);

        QElapsedTimer held;
        held.start();
        timer.restart(50ms);
        QTRY_COMPARE_WITH_TIMEOUT(fired.load(), 1, WaitLimitMs);
        QVERIFY(held.elapsed() >= 50);
        QVERIFY(!timer.stop());
        QVERIFY(ends(timer));
        QCOMPARE(fired.load(), 1);
    }

    void aReleaseAtTheLastMomentEitherCancelsOrComesTooLateAndKnowsWhich()
    {
        std::atomic<int> fired{0};
        HoldTimer timer([&] { ++fired; });
        QRandomGenerator random(7);
        int tooLate = 0;
        for (int hold = 0; hold < 1500; ++hold) {
            timer.restart(1ms);
            std::this_thread::sleep_for(std::chrono::microseconds(700 + random.bounded(600)));
            if (!timer.stop()) {
                ++tooLate;
                QTRY_COMPARE_WITH_TIMEOUT(fired.load(), tooLate, WaitLimitMs);
            }
        }
        QVERIFY(ends(timer));
        QCOMPARE(fired.load(), tooLate);
    }

    // The old time-out may be at its last step before the callback when the key is pressed again.
    void aPressAtTheLastMomentOfTheFormerHoldStartsAWholeNewOne()
    {
        std::atomic<bool> pressedAgain{false};
        std::atomic<int> early{0};
        HoldTimer timer([&] { early += pressedAgain ? 1 : 0; });
        QRandomGenerator random(7);
        int cancelled = 0;
        for (int hold = 0; hold < 1000; ++hold) {
            pressedAgain = false;
            timer.restart(1ms);
            std::this_thread::sleep_for(std::chrono::microseconds(700 + random.bounded(600)));
            if (timer.stop()) {
                ++cancelled;
                pressedAgain = true;
                timer.restart(1h);
            }
            timer.stop();
            QVERIFY(ends(timer));
        }
        QCOMPARE(early.load(), 0);
        QVERIFY(cancelled > 0);
    }

    void ofPressesOnSeveralThreadsTheLastOneHolds()
    {
        std::atomic<int> fired{0};
        HoldTimer timer([&] { ++fired; });
        for (int round = 0; round < 300; ++round) {
            const auto press = [&timer] { timer.restart(2ms); };
            std::thread other(press);
            press();
            other.join();
            QTRY_VERIFY_WITH_TIMEOUT(fired.load() > 0, WaitLimitMs);
            QVERIFY(ends(timer));
            fired = 0;
        }
    }

    void aKeyThatRepeatsStopsForGoodWhenItIsReleasedDuringAStep()
    {
        std::atomic<int> steps{0};
        Gate inStep;
        Gate released;
        HoldTimer* self = nullptr;
        HoldTimer timer([&] {
            if (++steps == 3) {
                inStep.open();
                released.pass();
            }
            self->restart(1ms);
        });
        self = &timer;
        timer.restart(1ms);
        QVERIFY(inStep.pass());
        QVERIFY(!timer.stop()); // the step is under way and ends
        released.open();
        QVERIFY(ends(timer));
        QCOMPARE(steps.load(), 3);
        QVERIFY2(!timer.stop(), "the step's own restart was refused, so nothing may be pending");
    }

    void destructionWaitsForACallbackThatUsesItsTimer()
    {
        std::atomic<bool> left{false};
        Gate entered;
        HoldTimer* self = nullptr;
        auto timer = std::make_unique<HoldTimer>([&] {
            entered.open();
            QThread::msleep(100); // far longer than the destructor needs to begin
            self->restart(0ms);
            self->stop();
            left = true;
        });
        self = timer.get();
        timer->restart(0ms);
        QVERIFY(entered.pass());
        timer.reset();
        QVERIFY(left);
    }
};

QTEST_GUILESS_MAIN(tst_holdtimer)
#include "tst_holdtimer.moc"

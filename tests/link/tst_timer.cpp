#include "logcapture.h"
#include "orvaneectimer.h"

#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

using Orvane::ECProxy::Client::OrvaneECTimer;
using Orvane::TestSupport::LogCapture;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr int HourMs = 3600 * 1000;
constexpr int WaitLimitMs = 5000;

qint64 msSince(Clock::time_point begin)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
}

/// Counts from any thread and can be waited on.
class Counter {
public:
    void add()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }
    int count() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_count;
    }
    bool waitFor(int count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(
            lock, std::chrono::milliseconds(WaitLimitMs), [&] { return m_count >= count; });
    }

private:
    mutable std::mutex m_mutex; // guards m_count
    std::condition_variable m_changed;
    int m_count = 0;
};

} // namespace

class tst_timer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void singleShotFiresOnceOnItsOwnThread()
    {
        LogCapture log;
        Counter fired;
        std::atomic<QThread*> thread{nullptr};
        const auto timer = OrvaneECTimer::create([&] {
            thread = QThread::currentThread();
            fired.add();
        });
        timer->setSingleShot(true);
        const auto begin = Clock::now();
        timer->startTimer(100);
        QVERIFY(fired.waitFor(1));
        QVERIFY2(msSince(begin) >= 100, "before its time");
        QVERIFY(timer->wait(WaitLimitMs));
        QCOMPARE(fired.count(), 1);
        QCOMPARE(thread.load(), static_cast<QThread*>(timer.get()));
        QCOMPARE(log.all(), QString("EC timer start 100\nEC timer finished"));
    }

    void stoppedInItsWaitItEndsAtOnceWithoutCallback()
    {
        LogCapture log;
        Counter fired;
        const auto timer = OrvaneECTimer::create([&] { fired.add(); });
        timer->startTimer(HourMs);
        QVERIFY(log.waitFor("EC timer start 3600000"));
        QThread::msleep(50); // into the wait, which cannot be seen from outside
        timer->stopTimer();
        QVERIFY(timer->wait(WaitLimitMs));
        QVERIFY(log.contains("EC timer terminate"));
        QCOMPARE(fired.count(), 0);
    }

    void repeatingMeasuresFromTheEndOfTheCallback()
    {
        Counter fired;
        std::vector<Clock::time_point> begins; // written before, read after the thread's end
        const auto timer = OrvaneECTimer::create([&] {
            begins.push_back(Clock::now());
            QThread::msleep(30);
            fired.add();
        });
        timer->startTimer(40);
        QVERIFY(fired.waitFor(4));
        timer->stopTimer();
        QVERIFY(timer->wait(WaitLimitMs));
        for (std::size_t i = 1; i < begins.size(); ++i)
            QVERIFY(begins[i] - begins[i - 1] >= 70ms);
    }

    void startOfARunningTimerGivesANewIntervalForTheNextWaitOnly()
    {
        LogCapture log;
        Counter fired;
        const auto timer = OrvaneECTimer::create([&] { fired.add(); });
        timer->startTimer(150);
        QVERIFY(log.waitFor("EC timer start 150"));
        QThread::msleep(50); // into the wait, which cannot be seen from outside
        timer->startTimer(HourMs);
        QVERIFY(fired.waitFor(1)); // the wait goes on as it was
        QThread::msleep(200);
        QCOMPARE(fired.count(), 1);
        QCOMPARE(log.count("EC timer start"), 1);
    }

    // A key that is pressed again while the time-out of the last press is at work.
    void stopThenStartAtOnceIsNeverLost()
    {
        Counter fired;
        const auto timer = OrvaneECTimer::create([&] { fired.add(); });
        timer->setSingleShot(true);
        for (int press = 1; press <= 3000; ++press) {
            timer->stopTimer();
            timer->startTimer(0);
            QVERIFY2(fired.waitFor(press), qPrintable(QString("press %1").arg(press)));
        }
        QVERIFY(timer->wait(WaitLimitMs));
        QCOMPARE(fired.count(), 3000);
    }

    void anOldTimeOutNeverFiresAfterItsStop()
    {
        constexpr int intervalMs = 60;
        struct Key {
            Counter fired;
            std::shared_ptr<OrvaneECTimer> timer;
            bool stoppedInTime = false;
        };
        std::vector<Key> keys(60);
        for (Key& key : keys) {
            key.timer = OrvaneECTimer::create([&key] { key.fired.add(); });
            key.timer->setSingleShot(true);
            const auto begin = Clock::now();
            key.timer->startTimer(intervalMs);
            std::this_thread::sleep_for(std::chrono::microseconds(QRandomGenerator::global()->bounded(2000)));
            key.timer->stopTimer();
            key.stoppedInTime = msSince(begin) < intervalMs; // a busy machine may have let it come first
            key.timer->startTimer(HourMs);
        }
        QThread::msleep(2 * intervalMs);
        int checked = 0;
        for (const Key& key : keys) {
            QVERIFY(!key.stoppedInTime || key.fired.count() == 0);
            checked += key.stoppedInTime ? 1 : 0;
        }
        QVERIFY(checked > 0);
    }

    void theCallbackCannotTakeBackAStopFromElsewhere_data()
    {
        QTest::addColumn<bool>("stopsToo");
        QTest::newRow("it starts") << false;
        QTest::newRow("it stops and starts") << true;
    }

    void theCallbackCannotTakeBackAStopFromElsewhere()
    {
        QFETCH(bool, stopsToo);
        Counter fired;
        Counter stopped;
        std::weak_ptr<OrvaneECTimer> self;
        const auto timer = OrvaneECTimer::create([&] {
            fired.add();
            stopped.waitFor(1);
            if (stopsToo)
                self.lock()->stopTimer();
            self.lock()->startTimer(0);
        });
        self = timer;
        timer->startTimer(0);
        QVERIFY(fired.waitFor(1));
        timer->stopTimer();
        stopped.add();
        QVERIFY(timer->wait(WaitLimitMs));
        QCOMPARE(fired.count(), 1);
        timer->startTimer(0); // and from elsewhere it starts anew
        QVERIFY(fired.waitFor(2));
        timer->stopTimer();
        QVERIFY(timer->wait(WaitLimitMs)); // the callback holds the timer now and then, and uses what is here
    }

    void theCallbackCannotStopAStartFromElsewhere()
    {
        Counter fired;
        Counter restarted;
        std::weak_ptr<OrvaneECTimer> self;
        const auto timer = OrvaneECTimer::create([&] {
            fired.add();
            restarted.waitFor(1);
            if (fired.count() == 1)
                self.lock()->stopTimer(); // of the time-out that was stopped before
        });
        self = timer;
        timer->setSingleShot(true);
        timer->startTimer(0);
        QVERIFY(fired.waitFor(1));
        timer->stopTimer();
        timer->startTimer(0);
        restarted.add();
        QVERIFY(fired.waitFor(2));
        QVERIFY(timer->wait(WaitLimitMs));
    }

    void aTimerMadeByItsConstructorWorksAndItsDestructorWaits()
    {
        LogCapture log;
        Counter entered;
        std::atomic<bool> left{false};
        auto timer = std::make_shared<OrvaneECTimer>(
            [&] {
                entered.add();
                QThread::msleep(1100);
                left = true;
            },
            nullptr);
        timer->startTimer(1);
        QVERIFY(entered.waitFor(1));
        timer.reset();
        QVERIFY(left);
        QCOMPARE(entered.count(), 1);
        QCOMPARE(log.count("EC timer: its callback has not returned within 1000 ms"), 1);
    }

    void threadsThatStartAndStopLeaveATimerThatWorks()
    {
        Counter fired;
        const auto timer = OrvaneECTimer::create([&] { fired.add(); });
        std::vector<std::thread> threads;
        for (quint32 seed = 1; seed <= 4; ++seed) {
            threads.emplace_back([&timer, seed] {
                QRandomGenerator random(seed);
                for (int i = 0; i < 3000; ++i) {
                    switch (random.bounded(5)) {
                    case 0:
                    case 1:
                        timer->stopTimer();
                        break;
                    case 2:
                        timer->setSingleShot(random.bounded(2) == 0);
                        break;
                    default:
                        timer->startTimer(random.bounded(2));
                    }
                }
            });
        }
        for (auto& thread : threads)
            thread.join();

        timer->stopTimer();
        QVERIFY(timer->wait(WaitLimitMs));
        const int before = fired.count();
        timer->setSingleShot(true);
        timer->startTimer(0);
        QVERIFY(fired.waitFor(before + 1));
        QVERIFY(timer->wait(WaitLimitMs));
        QCOMPARE(fired.count(), before + 1);
    }

    void destructionEndsAWaitAtOnceAndLetsACallbackFinish()
    {
        auto waiting = OrvaneECTimer::create(nullptr);
        waiting->startTimer(HourMs);
        waiting.reset();

        Counter entered;
        std::atomic<bool> left{false};
        auto busy = OrvaneECTimer::create([&] {
            entered.add();
            QThread::msleep(100); // far longer than the interval
            left = true;
        });
        busy->startTimer(1);
        QVERIFY(entered.waitFor(1));
        busy.reset();
        QVERIFY(left);
        QCOMPARE(entered.count(), 1);
    }

    void theCallbackMayLetGoOfTheLastPointer()
    {
        for (int i = 0; i < 50; ++i) {
            auto token = std::make_shared<int>(i); // goes with the callback, hence with the timer
            std::weak_ptr<int> alive = token;
            Counter fired;
            std::mutex mutex;
            std::shared_ptr<OrvaneECTimer> only;
            {
                // The callback finds the pointer only once it is there.
                const std::lock_guard<std::mutex> lock(mutex);
                only = OrvaneECTimer::create([&, held = token] {
                    std::shared_ptr<OrvaneECTimer> last;
                    {
                        const std::lock_guard<std::mutex> inner(mutex);
                        last.swap(only);
                    }
                    last.reset();
                    fired.add();
                });
                only->startTimer(0);
            }
            QVERIFY(fired.waitFor(1));
            token.reset();
            QTRY_VERIFY_WITH_TIMEOUT(alive.expired(), WaitLimitMs);
            QCOMPARE(fired.count(), 1);
        }
    }
};

QTEST_GUILESS_MAIN(tst_timer)
#include "tst_timer.moc"

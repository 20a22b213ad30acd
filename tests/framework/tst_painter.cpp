#include "painter_p.h"

#include <QCoreApplication>
#include <QTest>

#include <atomic>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using Orvane::ECProxy::Client::Internal::Painter;

namespace {

using namespace std::chrono_literals;

constexpr auto Limit = 10s;

/// A job that another thread runs until it is let go.
class HeldJob {
public:
    explicit HeldJob(Painter& painter)
        : m_thread([this, &painter] {
            painter.paint("held", [this] {
                m_begun.set_value();
                m_letGo.get_future().wait_for(Limit);
            });
        })
    {
        m_isHeld = m_begun.get_future().wait_for(Limit) == std::future_status::ready;
    }
    ~HeldJob() { end(); }
    HeldJob(const HeldJob&) = delete;
    HeldJob& operator=(const HeldJob&) = delete;

    bool isHeld() const { return m_isHeld; }
    void letGo() { m_letGo.set_value(); }
    /// Waits until the other thread has painted all that waits.
    void end()
    {
        if (!m_thread.joinable())
            return;
        letGo();
        m_thread.join();
    }

private:
    std::promise<void> m_begun;
    std::promise<void> m_letGo;
    bool m_isHeld = false;
    std::thread m_thread;
};

} // namespace

class TestPainter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whileAnotherThreadPaintsItTakesTheNewestJobOfEachSubject()
    {
        Painter painter;
        std::string order;
        std::thread::id painted;
        HeldJob held(painter);
        QVERIFY(held.isHeld());
        const std::pair<Orvane::ECProxy::Client::Internal::PaintSubject, char> jobs[] = {
            {"label", 'a'}, {{"key", 1}, 'b'}, {{"key", 2}, 'c'}, {"label", 'd'}};
        for (const auto& [subject, letter] : jobs) {
            painter.paint(subject, [&, letter = letter] {
                order += letter;
                painted = std::this_thread::get_id();
            });
        }
        QVERIFY(order.empty());
        held.end();
        QCOMPARE(order, std::string("bcd"));
        QVERIFY(painted != std::this_thread::get_id());
    }

    void jobsThatPostEachOtherLeaveTheRestToTheEventLoop()
    {
        Painter painter;
        int runs = 0;
        std::function<void()> again = [&] {
            if (++runs < 40)
                painter.paint("again", again);
        };
        painter.paint("again", again);
        QCOMPARE(runs, Painter::MaxJobsInARow);
        QCoreApplication::processEvents();
        QTRY_COMPARE(runs, 40);
    }

    void aSingleRequestIsRepaintedOnlyWhenAJobMayHaveReadTheOldState()
    {
        Painter painter;
        std::string sent;
        const auto send = [&](const std::function<void()>& meanwhile) {
            painter.sendAtOnce(
                "key",
                [&] {
                    sent += 's';
                    meanwhile();
                },
                [&] { sent += 'r'; });
        };
        send([] {});
        QCOMPARE(sent, std::string("s"));
        send([&] { std::thread([&] { painter.paint("page", [] {}); }).join(); });
        QCOMPARE(sent, std::string("ssr"));
        HeldJob held(painter);
        QVERIFY(held.isHeld());
        send([] {});
        QCOMPARE(sent, std::string("ssrs"));
        held.end();
        QCOMPARE(sent, std::string("ssrsr"));
    }

    void stoppingWaitsForTheRunningJobAndDropsTheRest()
    {
        const auto painter = std::make_unique<Painter>();
        std::atomic<int> painted{0};
        HeldJob held(*painter);
        QVERIFY(held.isHeld());
        painter->paint("page", [&] { ++painted; });
        auto stopped = std::async(std::launch::async, [&] { painter->stop(); });
        QVERIFY(stopped.wait_for(50ms) == std::future_status::timeout);
        held.end();
        QVERIFY(stopped.wait_for(Limit) == std::future_status::ready);
        painter->paint("page", [&] { ++painted; });
        QCOMPARE(painted.load(), 0);
    }

    void aJobMayStopAndDestroyItsPainter()
    {
        auto painter = std::make_unique<Painter>();
        bool isDone = false;
        painter->paint("page", [&] {
            painter.reset();
            isDone = true;
        });
        QVERIFY(isDone);
    }

    void theLastWordIsTheLastStateHoweverManyThreadsWriteIt()
    {
        constexpr int threads = 4;
        constexpr int changes = 20000;
        Painter painter;
        std::atomic<int> state{0};
        int shown = -1; // written by jobs only
        std::atomic<int> overlapping{0};
        std::atomic<bool> hasOverlapped{false};
        const auto show = [&] {
            hasOverlapped = hasOverlapped || overlapping.fetch_add(1) != 0;
            shown = state;
            --overlapping;
        };
        std::vector<std::thread> writers;
        for (int writer = 0; writer < threads; ++writer) {
            writers.emplace_back([&] {
                for (int change = 0; change < changes; ++change) {
                    ++state;
                    painter.paint("state", show);
                }
            });
        }
        for (auto& writer : writers)
            writer.join();
        QTRY_COMPARE(shown, threads * changes);
        QVERIFY(!hasOverlapped);
    }

    void singleRequestsOfManyThreadsEndWithTheLastState()
    {
        Painter painter;
        for (int round = 0; round < 2000; ++round) {
            std::atomic<int> state{0};
            std::atomic<int> shown{-1};
            const auto send = [&] { shown = state.load(); };
            const auto change = [&](int value) {
                state = value;
                painter.sendAtOnce("state", send, send);
            };
            std::thread other([&] { change(1); });
            change(2);
            other.join();
            QTRY_COMPARE(shown.load(), state.load());
        }
    }
};

QTEST_GUILESS_MAIN(TestPainter)
#include "tst_painter.moc"

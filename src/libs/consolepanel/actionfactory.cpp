#include "actionfactory.h"

#include "replayaction.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;
using Duration = PanelClock::Duration;
using Progress = RunnerAction::Progress;
using namespace std::chrono_literals;

namespace {

Progress succeeded(const QString& text = {})
{
    return {Progress::Succeeded, {}, text};
}

class PauseAction : public RunnerAction {
public:
    PauseAction(const Pause& pause, Duration now)
        : m_end(now + pause.duration)
    {
    }
    Progress proceed(Duration now) override
    {
        return now >= m_end ? succeeded() : Progress{Progress::Goes, m_end, {}};
    }

private:
    Duration m_end;
};

class TapAction : public RunnerAction {
public:
    TapAction(const TapKey& tap, Send send, Duration now)
        : m_nKey(tap.key)
        , m_send(std::move(send))
        , m_release(now + tap.duration)
    {
        m_send(KeyReport{true, m_nKey});
    }
    Progress proceed(Duration now) override
    {
        if (now < m_release)
            return {Progress::Goes, m_release, {}};
        m_send(KeyReport{false, m_nKey});
        return succeeded();
    }

private:
    quint32 m_nKey;
    Send m_send;
    Duration m_release;
};

class SweepAction : public RunnerAction {
public:
    SweepAction(const SweepTBar& sweep, Send send, Duration now)
        : m_sweep(sweep)
        , m_send(std::move(send))
        , m_begin(now)
        , m_nSteps(qint64(std::max(sweep.from, sweep.to)) - std::min(sweep.from, sweep.to))
    {
    }
    Progress proceed(Duration now) override
    {
        while (m_nNext <= m_nSteps && timeOf(m_nNext) <= now) {
            const qint64 offset = m_sweep.to >= m_sweep.from ? m_nNext : -m_nNext;
            ECTBarValue position;
            position.Value = quint32(m_sweep.from + offset);
            position.IsBottomToTop = m_sweep.direction;
            m_send(position);
            ++m_nNext;
        }
        return m_nNext > m_nSteps ? succeeded() : Progress{Progress::Goes, timeOf(m_nNext), {}};
    }

private:
    Duration timeOf(qint64 step) const
    {
        const Duration offset = Duration(m_sweep.duration) * step / std::max<qint64>(m_nSteps, 1);
        return m_begin + offset;
    }

    SweepTBar m_sweep;
    Send m_send;
    Duration m_begin;
    qint64 m_nSteps;
    qint64 m_nNext = 0;
};

class StormAction : public RunnerAction {
public:
    StormAction(const StormKeys& storm, const ConsoleRecorder& console, Send send, Duration now)
        : m_storm(storm)
        , m_console(console)
        , m_send(std::move(send))
        , m_begin(now)
        , m_lastAnswer(now)
        , m_nAnswersBefore(console.state().ledMessages)
    {
    }
    bool watchesConsole() const override { return m_storm.window != 0; }

    Progress proceed(Duration now) override
    {
        noteAnswers(now);
        const quint64 target =
            std::min({allowedByRate(now), allowedByWindow(), m_nSent + ReportsAtOnce, reports()});
        for (; m_nSent < target; ++m_nSent) {
            const quint32 key = m_storm.keys[(m_nSent / 2) % m_storm.keys.size()];
            m_send(KeyReport{m_nSent % 2 == 0, key});
        }
        const bool isAnswered = m_storm.window == 0 || m_nAnswers >= reports();
        if (m_nSent == reports() && isAnswered)
            return succeeded(
                QStringLiteral("%1 presses in %2 ms")
                    .arg(m_storm.count)
                    .arg(std::chrono::duration_cast<std::chrono::milliseconds>(now - m_begin).count()));
        if (m_storm.window != 0 && now >= m_lastAnswer + AnswerLimit)
            return {
                Progress::Failed,
                {},
                QStringLiteral("%1 reports sent, %2 LED datagrams came, none for %3 s")
                    .arg(m_nSent)
                    .arg(m_nAnswers)
                    .arg(AnswerLimit.count())};
        return {Progress::Goes, nextTime(now), {}};
    }

private:
    /// Between so many reports the event loop gets its turn, or the answers would pile up in the socket.
    static constexpr quint64 ReportsAtOnce = 128;
    static constexpr std::chrono::seconds AnswerLimit = 5s;

    quint64 reports() const { return m_storm.count * 2; }

    void noteAnswers(Duration now)
    {
        const quint64 answers = m_console.state().ledMessages - m_nAnswersBefore;
        if (answers != m_nAnswers)
            m_lastAnswer = now;
        m_nAnswers = answers;
    }

    /// How many reports the rate lets out by now.
    quint64 allowedByRate(Duration now) const
    {
        if (m_storm.perSecond == 0)
            return reports();
        return (quint64((now - m_begin).count()) * m_storm.perSecond / MicrosInSecond + 1) * 2;
    }

    /// How many reports the answers let out so far.
    quint64 allowedByWindow() const { return m_storm.window == 0 ? reports() : m_nAnswers + m_storm.window; }

    Duration nextTime(Duration now) const
    {
        if (m_nSent == reports() || m_nSent >= allowedByWindow())
            return m_lastAnswer + AnswerLimit;
        if (m_nSent < allowedByRate(now))
            return now;
        // More than one step of the clock ahead, or a high rate would ring all the time.
        const Duration due = m_begin + Duration(m_nSent / 2 * MicrosInSecond / m_storm.perSecond);
        return std::max(due, now + Duration(1ms));
    }

    static constexpr quint64 MicrosInSecond = 1000000;
    StormKeys m_storm;
    const ConsoleRecorder& m_console;
    Send m_send;
    Duration m_begin;
    Duration m_lastAnswer;
    quint64 m_nAnswersBefore;
    quint64 m_nAnswers = 0;
    quint64 m_nSent = 0;
};

class ExpectAction : public RunnerAction {
public:
    ExpectAction(const Expect& expect, const ConsoleRecorder& console, Duration now)
        : m_expect(expect)
        , m_console(console)
        , m_check(expect.condition.begin(console))
        , m_end(now + expect.duration)
    {
    }
    bool watchesConsole() const override { return true; }

    Progress proceed(Duration now) override
    {
        const bool holds = m_check(m_console) != m_expect.isNegated;
        const bool isDecided = m_expect.kind == Expect::Within ? holds : !holds;
        if (!isDecided && now < m_end)
            return {Progress::Goes, m_end, {}};
        if (holds)
            return succeeded();
        return {
            Progress::Failed,
            {},
            QStringLiteral("the console shows: ") + m_expect.condition.actual(m_console)};
    }

private:
    Expect m_expect;
    const ConsoleRecorder& m_console;
    Condition::Check m_check;
    Duration m_end;
};

} // namespace

std::unique_ptr<RunnerAction> makeAction(
    const SimulatorCommand& command, const RunnerAction::Surroundings& surroundings, Duration now)
{
    using Made = std::unique_ptr<RunnerAction>;
    const ConsoleRecorder& console = surroundings.console;
    const RunnerAction::Send& send = surroundings.send;
    return std::visit(
        Overloaded{
            [&](const Pause& pause) -> Made { return std::make_unique<PauseAction>(pause, now); },
            [&](const TapKey& tap) -> Made { return std::make_unique<TapAction>(tap, send, now); },
            [&](const SweepTBar& sweep) -> Made { return std::make_unique<SweepAction>(sweep, send, now); },
            [&](const StormKeys& storm) -> Made {
                return std::make_unique<StormAction>(storm, console, send, now);
            },
            [&](const Expect& expect) -> Made {
                return std::make_unique<ExpectAction>(expect, console, now);
            },
            [&](const PlayCapture& play) -> Made {
                return std::make_unique<PlayCaptureAction>(play, surroundings, loadCapture(play.file), now);
            },
            [&](const StepCapture& step) -> Made {
                return std::make_unique<StepCaptureAction>(step, surroundings);
            },
            [](const auto&) -> Made { return nullptr; },
        },
        command);
}

} // namespace Orvane::ConsolePanel

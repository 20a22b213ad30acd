#include "replayaction.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

using namespace std::chrono_literals;
using Duration = PanelClock::Duration;
using Progress = RunnerAction::Progress;

namespace {

/// As long as this no datagram comes once the library is through with a report.
constexpr Duration QuietTime = 200ms;
/// Time for somebody to start the host.
constexpr Duration HostLimit = 30s;
/// Time for a host to light its console.
constexpr Duration StartLimit = 5s;
/// Time for the answer to a single report.
constexpr Duration StepLimit = 1s;
/// Time for what a model still does after the last report.
constexpr Duration EndLimit = 5s;

QString faultOf(const std::variant<Capture, CaptureFault>& capture)
{
    const auto* const fault = std::get_if<CaptureFault>(&capture);
    return fault ? fault->reason : QString();
}

std::shared_ptr<Replay> replayOf(std::variant<Capture, CaptureFault>& capture)
{
    auto* const whole = std::get_if<Capture>(&capture);
    return std::make_shared<Replay>(whole ? std::move(*whole) : Capture());
}

} // namespace

Settling::Settling(Duration earliest, Duration latest)
    : m_earliest(earliest)
    , m_latest(latest)
{
}

Settling::Result Settling::look(const Replay& replay, const ConsoleRecorder& console, Duration now)
{
    const quint64 seen = console.received() + console.unreadable();
    if (m_nSeen != seen)
        m_quietSince = now;
    m_nSeen = seen;
    const Duration quiet = std::max(m_quietSince + QuietTime, m_earliest);
    m_next = std::min(now < quiet ? quiet : m_latest, m_latest);
    if (now < quiet && now < m_latest)
        return Waits;
    if (replay.differences(console.state()).empty())
        return Same;
    return now < m_latest ? Waits : Different;
}

ReplayAction::ReplayAction(Surroundings surroundings, std::shared_ptr<Replay> replay)
    : m_surroundings(std::move(surroundings))
    , m_replay(std::move(replay))
{
}

void ReplayAction::playNext()
{
    m_surroundings.sendBytes(m_replay->next());
    m_replay->advance();
}

void ReplayAction::beginToSettle(Duration now, Duration latest)
{
    const Duration answer = m_replay->atEnd() ? std::min(m_replay->tail(), EndLimit) : 0ms;
    m_settling.emplace(now + answer, now + answer + latest);
}

Settling::Result ReplayAction::settle(Duration now)
{
    return m_settling->look(*m_replay, m_surroundings.console, now);
}

int ReplayAction::tellDifferences(const QString& when) const
{
    const auto found = m_replay->differences(m_surroundings.console.state());
    m_surroundings.tell(when, found);
    return int(found.size());
}

Progress ReplayAction::verdict(Settling::Result result) const
{
    if (result == Settling::Same)
        return {
            Progress::Succeeded,
            {},
            QStringLiteral("%1 reports, the console shows what was recorded").arg(m_replay->count())};
    const int count = tellDifferences(QStringLiteral("at the end"));
    return {Progress::Failed, {}, QStringLiteral("%1 differences").arg(count)};
}

PlayCaptureAction::PlayCaptureAction(
    const PlayCapture& play, Surroundings surroundings, std::variant<Capture, CaptureFault> capture,
    Duration now)
    : ReplayAction(std::move(surroundings), replayOf(capture))
    , m_play(play)
    , m_strFault(faultOf(capture))
    , m_giveUp(now + HostLimit)
{
    if (m_strFault.isEmpty() && m_replay->count() == 0)
        m_strFault = QStringLiteral("no report of the console is in it");
}

Progress PlayCaptureAction::proceed(Duration now)
{
    if (!m_strFault.isEmpty())
        return {Progress::CouldNotStart, {}, m_strFault};
    if (m_phase == WaitsForHost) {
        Progress progress = waitForHost(now);
        if (m_phase == WaitsForHost)
            return progress;
    }
    if (m_phase == Plays)
        return play(now);
    const Settling::Result result = settle(now);
    return result == Settling::Waits ? waits() : verdict(result);
}

Progress PlayCaptureAction::waitForHost(Duration now)
{
    if (m_surroundings.console.received() == 0) {
        if (now < m_giveUp)
            return {Progress::Goes, m_giveUp, {}};
        return {
            Progress::CouldNotStart,
            {},
            QStringLiteral("no host has sent anything within %1 s").arg(HostLimit / 1s)};
    }
    if (!std::exchange(m_bHasHost, true))
        beginToSettle(now, StartLimit);
    const Settling::Result result = settle(now);
    if (result == Settling::Waits)
        return waits();
    if (result == Settling::Different)
        tellDifferences(QStringLiteral("before the first report"));
    if (m_play.isStepped) {
        m_surroundings.steppedReplay = m_replay;
        return {
            Progress::Succeeded,
            {},
            QStringLiteral("%1 reports to be stepped through").arg(m_replay->count())};
    }
    m_phase = Plays;
    m_begin = now;
    return {};
}

Progress PlayCaptureAction::play(Duration now)
{
    const auto due = [this] {
        return m_begin + std::chrono::duration_cast<Duration>(m_replay->nextTime() / m_play.speed);
    };
    while (!m_replay->atEnd() && due() <= now)
        playNext();
    if (!m_replay->atEnd())
        return {Progress::Goes, due(), {}};
    m_phase = Settles;
    beginToSettle(now, EndLimit);
    settle(now);
    return waits();
}

StepCaptureAction::StepCaptureAction(const StepCapture& step, const Surroundings& surroundings)
    : ReplayAction(surroundings, surroundings.steppedReplay)
    , m_nLeft(step.count)
{
}

Progress StepCaptureAction::proceed(Duration now)
{
    if (!m_replay)
        return {Progress::Failed, {}, QStringLiteral("no capture is open: \"replay FILE step\" opens one")};
    for (;;) {
        if (!m_bSettles) {
            playNext();
            m_bSettles = true;
            beginToSettle(now, m_replay->atEnd() ? EndLimit : StepLimit);
        }
        const Settling::Result result = settle(now);
        if (result == Settling::Waits)
            return waits();
        if (m_replay->atEnd()) {
            m_surroundings.steppedReplay.reset();
            return verdict(result);
        }
        const QString place =
            QStringLiteral("report %1 of %2").arg(m_replay->played()).arg(m_replay->count());
        if (result == Settling::Different)
            tellDifferences(QStringLiteral("after ") + place);
        if (--m_nLeft == 0)
            return {Progress::Succeeded, {}, place};
        m_bSettles = false;
    }
}

} // namespace Orvane::ConsolePanel

#pragma once

#include "replay.h"
#include "runneraction.h"

namespace Orvane::ConsolePanel {

/// Waits until the console shows what was recorded and no datagram has come for a while.
class Settling {
public:
    /// @param earliest the wait ends no sooner, even when all is as recorded
    /// @param latest the wait ends then, whatever the console shows
    Settling(PanelClock::Duration earliest, PanelClock::Duration latest);

    enum Result { Waits, Same, Different };
    Result look(const Replay& replay, const ConsoleRecorder& console, PanelClock::Duration now);
    /// When to look again if nothing comes.
    PanelClock::Duration nextLook() const { return m_next; }

private:
    PanelClock::Duration m_earliest;
    PanelClock::Duration m_latest;
    PanelClock::Duration m_next{};
    PanelClock::Duration m_quietSince{};
    std::optional<quint64> m_nSeen; ///< datagrams so far; empty before the first look
};

/// Common part of playing a capture as a whole and by single reports.
class ReplayAction : public RunnerAction {
public:
    ReplayAction(Surroundings surroundings, std::shared_ptr<Replay> replay);
    bool watchesConsole() const override { return true; }

protected:
    using Duration = PanelClock::Duration;

    /// Reports what was recorded next.
    void playNext();
    /// Has `settle` wait anew. With the end of the capture before it, the wait is as long as the answer took
    /// when it was recorded, and then as long as a slow model may need.
    void beginToSettle(Duration now, Duration latest);
    Settling::Result settle(Duration now);
    Progress waits() const { return {Progress::Goes, m_settling->nextLook(), {}}; }
    /// Lists what differs now. @return how many things
    int tellDifferences(const QString& when) const;
    /// How the whole replay came out, once it has settled.
    Progress verdict(Settling::Result result) const;

    const Surroundings m_surroundings;
    const std::shared_ptr<Replay> m_replay;

private:
    std::optional<Settling> m_settling;
};

/// Waits for a host and plays the capture, or opens it to be played by single reports.
class PlayCaptureAction : public ReplayAction {
public:
    PlayCaptureAction(
        const PlayCapture& play, Surroundings surroundings, std::variant<Capture, CaptureFault> capture,
        Duration now);
    Progress proceed(Duration now) override;

private:
    Progress waitForHost(Duration now);
    Progress play(Duration now);

    const PlayCapture m_play;
    QString m_strFault; ///< why the capture cannot be played
    Duration m_giveUp; ///< if no host has sent anything until then
    enum { WaitsForHost, Plays, Settles } m_phase = WaitsForHost;
    bool m_bHasHost = false; ///< something has come from it
    Duration m_begin{}; ///< of the first report
};

/// Plays some reports of the capture that is open, each when the console has answered the one before.
class StepCaptureAction : public ReplayAction {
public:
    StepCaptureAction(const StepCapture& step, const Surroundings& surroundings);
    Progress proceed(Duration now) override;

private:
    quint64 m_nLeft;
    bool m_bSettles = false;
};

} // namespace Orvane::ConsolePanel

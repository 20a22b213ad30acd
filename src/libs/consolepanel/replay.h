#pragma once

#include "capturefile.h"
#include "consoledifference.h"
#include "consolerecorder.h"
#include "panelclock.h"

namespace Orvane::ConsolePanel {

/// The console's side of a capture, to be reported once more, and what the console showed then.
///
/// Touches neither a socket nor a clock: whoever plays it sends `next()` when `nextTime()` has come and calls
/// `advance`.
class Replay {
public:
    explicit Replay(Capture capture);

    /// Reports in all.
    std::size_t count() const { return m_nReports; }
    /// How many of them are played.
    std::size_t played() const { return m_nPlayed; }
    bool atEnd() const { return m_nPlayed == m_nReports; }

    /// The report that comes next; not at the end.
    const QByteArray& next() const { return m_datagrams[m_nNext].bytes; }
    /// When it was made, counted from the first report.
    PanelClock::Duration nextTime() const { return m_datagrams[m_nNext].time - m_first; }
    /// What the console still showed after the last report, counted from that: how long its answer took.
    PanelClock::Duration tail() const { return m_tail; }
    void advance();

    /// What differs between the console as it was recorded right before the next report, at the end of the
    /// capture where none follows, and this one.
    std::vector<ConsoleDifference> differences(const ConsoleState& shown) const;

private:
    void takeAnswers();

    std::vector<CapturedDatagram> m_datagrams;
    std::size_t m_nNext = 0; ///< in m_datagrams: the next report, or the end
    std::size_t m_nReports = 0;
    std::size_t m_nPlayed = 0;
    PanelClock::Duration m_first{}; ///< time of the first report
    PanelClock::Duration m_tail{};
    Knowledge m_knowledge = Knowledge::Partial;
    ConsoleRecorder m_recorded;
};

} // namespace Orvane::ConsolePanel

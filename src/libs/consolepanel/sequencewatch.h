#pragma once

#include <QtGlobal>

#include <optional>
#include <set>

namespace Orvane::ConsolePanel {

/// Tells from the sequence numbers whether datagrams were lost, came late or came twice. The numbers run
/// 1, 2, ... 65534, 0, 1, ...
class SequenceWatch {
public:
    void add(quint16 sequence);

    /// Numbers that were skipped and have not come since.
    quint64 missing() const { return m_nForgotten + m_missing.size(); }
    /// Numbers that came behind a higher one.
    quint64 late() const { return m_nLate; }
    /// Numbers that came again, or are too old to tell.
    quint64 repeated() const { return m_nRepeated; }
    /// How often the sender began anew with 1.
    quint64 restarts() const { return m_nRestarts; }

private:
    std::optional<quint16> m_last; ///< highest so far
    std::set<quint16> m_missing; ///< skipped recently
    quint64 m_nForgotten = 0; ///< skipped, too many to remember
    quint64 m_nLate = 0;
    quint64 m_nRepeated = 0;
    quint64 m_nRestarts = 0;
};

} // namespace Orvane::ConsolePanel

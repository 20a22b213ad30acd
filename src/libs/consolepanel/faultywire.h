#pragma once

#include "panelclock.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <random>
#include <vector>

namespace Orvane::ConsolePanel {

/// What goes wrong on the way from the console to the library. Rates are per cent of the datagrams.
struct WireFaults {
    int dropRate = 0;
    int duplicateRate = 0;
    int delayRate = 0;
    std::chrono::milliseconds delay{100};
    int reorderRate = 0; ///< overtaken by the datagram behind
    bool losesNextRelease = false;
};

/// Decides what becomes of each report on its way. The same seed and the same reports give the same faults.
/// Touches neither a socket nor a clock.
class FaultyWire {
public:
    /// A datagram that arrives, so much later than it was sent.
    struct Arrival {
        QByteArray datagram;
        std::chrono::milliseconds after{};
    };

    /// Has all that follows fail as it would have from the beginning.
    void seed(quint32 seed) { m_random.seed(seed); }
    WireFaults& faults() { return m_faults; }
    const WireFaults& faults() const { return m_faults; }

    /// In the order in which they arrive; none when it is lost, or is waiting to be overtaken.
    std::vector<Arrival> pass(const QByteArray& datagram);
    /// What waits to be overtaken, when nothing comes behind it.
    std::optional<QByteArray> takeWaiting() { return std::exchange(m_waiting, std::nullopt); }
    bool isWaiting() const { return m_waiting.has_value(); }

private:
    bool happens(int rate);

    WireFaults m_faults;
    std::mt19937 m_random{1};
    std::optional<QByteArray> m_waiting;
};

/// The ways in which a datagram can be malformed: `short`, `magic`, `tag`, `length`, `value`.
QStringList malformedKinds();
/// A key report that is malformed in the way with this place in the list.
QByteArray malformedDatagram(int kind);

} // namespace Orvane::ConsolePanel

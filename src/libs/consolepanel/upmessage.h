#pragma once

/// What the console can report, and its bytes.

#include "downmessage.h"

#include <optional>
#include <vector>

namespace Orvane::ConsolePanel {

/// A key went down or came up. Keys of an on-screen console are offset by 0xFF0000.
struct KeyReport {
    bool pressed = false;
    quint32 key = 0;
};

/// The console's own T-Bar or keypad lock was switched.
struct LockReport {
    LockTarget target = LockTarget::TBar;
    bool locked = false;
};

/// Which inputs carry a signal; may be empty.
struct DviReport {
    std::vector<Protocol::DVIInSignal> signalStates;
};

using UpMessage =
    std::variant<KeyReport, Protocol::ECTBarValue, LockReport, DviReport, Protocol::ECDeviceIPData>;

/// The datagram of a report. The number goes into the head's sequence field, which nobody reads.
QByteArray encodeUp(const UpMessage& message, quint16 sequence);

/// Reads a report as the library does: by its magic, its tag and the size of the value. Empty when the
/// library would refuse it.
std::optional<UpMessage> decodeUp(const QByteArray& datagram);

/// The report as one readable line without a line end.
QString describe(const UpMessage& message);

} // namespace Orvane::ConsolePanel

#pragma once

#include "downmessage.h"

namespace Orvane::ConsolePanel {

/// Why a datagram could not be read.
struct Unreadable {
    QString reason;
};

/// Reads one datagram to the console, strictly: the head, the tag, every length field and the size of the
/// value must be what the tag demands, file packs in their own layout included. Bytes that select from an
/// enumeration must be one of its values; a flag may be any byte. Reads nothing outside `size` bytes.
std::variant<DownDatagram, Unreadable> decodeDown(const char* bytes, int size);

} // namespace Orvane::ConsolePanel

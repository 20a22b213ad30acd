#pragma once

#include "upmessage.h"

namespace Orvane::ConsoleHost {

/// Hands a report to the library as if the console had sent it: it waits in the decoder's queue behind what
/// the console sent before, and its key's handler runs on the decoder's thread. On the GUI thread.
/// @return false, and nothing happens, when the link is not open
bool injectReport(const ConsolePanel::UpMessage& report);

/// The same with the bytes of a datagram, whatever they are.
bool injectBytes(const QByteArray& datagram);

} // namespace Orvane::ConsoleHost

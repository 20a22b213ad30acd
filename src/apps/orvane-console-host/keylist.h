#pragma once

#include <QJsonArray>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ConsoleHost {

/// Whether a key of the on-screen console can be found by this number of the application.
bool hasAppKey(const EC::s_ECKeyboardConfig& keyboard, quint32 appKey);

/// Every key of the keyboard: its numbers, its function and, of a select key, what it is bound to on the page
/// that its group shows on the active device.
QJsonArray keysToJson(const EC::s_ECKeyboardConfig& keyboard);

} // namespace Orvane::ConsoleHost

#pragma once

#include <QString>

namespace Orvane::ConsolePanel {

/// The text with its control characters as `\xNN`, so that it stays on one line and moves no cursor.
QString printable(const QString& text);

} // namespace Orvane::ConsolePanel

#pragma once

#include <QString>

class QWidget;

namespace Orvane::ConsolePanel {

/// Whether a window can be shown; to be known before there is an application object.
bool hasDisplay();

/// Puts the window, which is not shown yet, on a half of the display that it will be shown on: `left` or
/// `right`.
void placeOnHalf(QWidget& window, const QString& half);

} // namespace Orvane::ConsolePanel

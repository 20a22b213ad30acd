#pragma once

#include <QStringList>

class QWidget;

namespace Orvane::ConsolePanel {

/// `left`, `right`: the halves of the display that a window can be put on.
QStringList displayHalves();

/// Puts the window, which is not shown yet, on a half of the display that it will be shown on.
void placeOnHalf(QWidget& window, const QString& half);

} // namespace Orvane::ConsolePanel

#include "windowplace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace Orvane::ConsolePanel {

QStringList displayHalves()
{
    return {QStringLiteral("left"), QStringLiteral("right")};
}

void placeOnHalf(QWidget& window, const QString& half)
{
    QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    area.setWidth(area.width() / 2);
    if (half == displayHalves().last())
        area.translate(area.width(), 0);
    window.setGeometry(area);
}

} // namespace Orvane::ConsolePanel

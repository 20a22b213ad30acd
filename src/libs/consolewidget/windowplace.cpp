#include "windowplace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace Orvane::ConsolePanel {

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY")
        || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

void placeOnHalf(QWidget& window, const QString& half)
{
    QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    area.setWidth(area.width() / 2);
    if (half == QLatin1String("right"))
        area.translate(area.width(), 0);
    window.setGeometry(area);
}

} // namespace Orvane::ConsolePanel

#include "networkaddress.h"

#include <QHostAddress>

namespace Orvane::ConsolePanel {

QString addressText(quint32 address)
{
    return QHostAddress(address).toString();
}

std::optional<quint32> addressFromText(const QString& text)
{
    bool ok = false;
    const quint32 number = text.toUInt(&ok, 0);
    if (ok)
        return number;
    // Short forms, as 10.1, are mistakes here.
    const quint32 address = QHostAddress(text).toIPv4Address(&ok);
    return ok && text.count(QLatin1Char('.')) == 3 ? std::optional(address) : std::nullopt;
}

} // namespace Orvane::ConsolePanel

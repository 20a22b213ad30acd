#include "networkaddress.h"

#include <QStringList>

namespace Orvane::ConsolePanel {

QString addressText(quint32 address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address >> 24)
        .arg((address >> 16) & 0xFF)
        .arg((address >> 8) & 0xFF)
        .arg(address & 0xFF);
}

std::optional<quint32> addressFromText(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    bool ok = false;
    if (parts.size() == 1) {
        const quint32 number = text.toUInt(&ok, 0);
        return ok ? std::optional(number) : std::nullopt;
    }
    if (parts.size() != 4)
        return std::nullopt;
    quint32 address = 0;
    for (const QString& part : parts) {
        const ushort byte = part.toUShort(&ok);
        if (!ok || byte > 255)
            return std::nullopt;
        address = address << 8 | byte;
    }
    return address;
}

} // namespace Orvane::ConsolePanel

#include "keycolour.h"

#include <QStringList>

namespace Orvane::ConsolePanel {

namespace {

constexpr struct NamedColour {
    const char* name;
    KeyColour colour;
} NamedColours[] = {
    {"Red", {255, 0, 0}},  {"Blue", {0, 0, 255}},     {"Green", {0, 255, 0}},   {"Yellow", {255, 255, 0}},
    {"Off", {20, 20, 20}}, {"Purple", {255, 0, 255}}, {"Orange", {255, 72, 0}}, {"On", {255, 255, 255}},
};

} // namespace

QString colourName(const KeyColour& colour)
{
    for (const NamedColour& named : NamedColours)
        if (named.colour == colour)
            return QLatin1String(named.name);
    return {};
}

QString colourText(const KeyColour& colour)
{
    const QString numbers = QStringLiteral("%1,%2,%3").arg(colour.red).arg(colour.green).arg(colour.blue);
    const QString name = colourName(colour);
    return name.isEmpty() ? numbers : QStringLiteral("%1 (%2)").arg(numbers, name);
}

std::optional<KeyColour> colourFromText(const QString& text)
{
    for (const NamedColour& named : NamedColours)
        if (text.compare(QLatin1String(named.name), Qt::CaseInsensitive) == 0)
            return named.colour;
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 3)
        return std::nullopt;
    quint8 values[3] = {};
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        const ushort value = parts.at(i).toUShort(&ok);
        if (!ok || value > 255)
            return std::nullopt;
        values[i] = quint8(value);
    }
    return KeyColour{values[0], values[1], values[2]};
}

} // namespace Orvane::ConsolePanel

#pragma once

#include <QString>

#include <optional>

namespace Orvane::ConsolePanel {

/// Colour of a key's LED, each part from 0 to 255.
struct KeyColour {
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;

    bool operator==(const KeyColour& other) const
    {
        return red == other.red && green == other.green && blue == other.blue;
    }
    bool operator!=(const KeyColour& other) const { return !(*this == other); }
};

/// The name of a colour that the key commands use (`Green`, `Off`, ...), empty for any other.
QString colourName(const KeyColour& colour);

/// `0,255,0 (Green)`, or the three numbers alone.
QString colourText(const KeyColour& colour);

/// Reads `0,255,0` or a colour's name in any case; empty when the text is neither.
std::optional<KeyColour> colourFromText(const QString& text);

} // namespace Orvane::ConsolePanel

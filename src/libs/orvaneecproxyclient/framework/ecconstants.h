#pragma once

/// Names and numbers that the key commands, the item store and the host share.

#include <QList>
#include <QPair>
#include <QString>

namespace Orvane::ECProxy::Client {

/// Colour of a key's LED. `Off` is a dim grey, so that an unlit key stays faintly visible in the dark.
enum class ECLEDColor { Red = 0, Blue = 1, Green = 2, Yellow = 3, Off = 4, Purple = 5, Orange = 6, On = 7 };

/// Which group of keys an item belongs to.
enum class KeyboardType { Screen = 0, Layer = 1, Input = 2, Preset = 3, PresetEx = 4 };

/// A model object as the key items know it: (server id, index). Screen: (screen id, screen type); layer:
/// (screen id, layer id, or `Constants::UnboundLayerIndex` while the key is free); input: (interface id, 0);
/// preset: (file id, file type).
using ECObjectId = QPair<quint64, quint32>;
/// Objects in the order in which they were bound.
using ECObjectIdList = QList<ECObjectId>;

namespace Enum {
/// What a repaint sends: LED and label together, LEDs only, or labels only.
enum class UpdateConsoleType { All = 0, Key = 1, OLED = 2 };
} // namespace Enum

namespace Constants {

/// Names of the groups of keys, as keyboard files have them.
/// @{
inline const QString SCREENCOMMANDNAME = QStringLiteral("ScreenCommand");
inline const QString LAYERCOMMANDNAME = QStringLiteral("LayerCommand");
inline const QString INPUTCOMMANSDNAME = QStringLiteral("InputCommand");
inline const QString PRESETCOMMANDNAME = QStringLiteral("PresetCommand");
inline const QString IPRESETCOMMANDEXNAME = QStringLiteral("IPresetCommandEX");
/// @}

/// Name of the application object's dynamic property that makes the console ignore most keys.
constexpr char QuenorProperty[] = "Quenor";

/// Key values from here on come from the on-screen console: the rest is an `OrvaneECKey`.
constexpr quint32 VirtualKeyOffset = 0xFF0000;
/// "No such key" of the lookups that return an `ECKey`.
constexpr quint32 InvalidECKey = 0xFFFFFFFF;
/// The index member of a layer binding that stands for no layer.
constexpr quint32 UnboundLayerIndex = 65535;

} // namespace Constants

} // namespace Orvane::ECProxy::Client

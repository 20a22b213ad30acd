#pragma once

#include "downmessage.h"
#include "keycolour.h"

#include <map>
#include <optional>

namespace Orvane::ConsolePanel {

/// A key's LED as the last datagram for it left it.
struct KeyState {
    bool isLit = false; ///< shows `colour`; false before the first datagram and after it was closed
    KeyColour colour;
    quint8 brightness = 0; ///< per cent
    quint8 buttonState = Protocol::LightUp; ///< eButtonState
    quint32 appKey = 0; ///< the application's number of the key
    quint64 changes = 0; ///< how often any of the above that is visible changed

    bool looksLike(const KeyState& other) const;
};

/// An OLED label as the last datagram for it left it.
struct LabelState {
    QByteArray text; ///< UTF-8, without the padding
    quint32 appKey = 0; ///< the application's number of the label
    quint64 changes = 0;
};

struct LightState {
    bool isOn = false;
    quint8 brightness = 0;
};

/// Everything that the console shows and has been told. It records and never answers. Keys and labels go by
/// the console's own numbers, each in a space of its own.
struct ConsoleState {
    std::map<quint16, KeyState> keys;
    std::map<quint16, LabelState> labels;
    std::map<quint8, LightState> lights; ///< by eY2LightType
    std::map<quint8, bool> dviStatus; ///< by input
    std::map<quint8, Protocol::ECDeviceIPData> deviceIPs; ///< by index
    std::map<quint8, quint8> ipModes; ///< by index
    bool isTBarLocked = false;
    bool isKeypadLocked = false;
    std::optional<Protocol::ECTBarValue> tbarLevel;
    std::optional<quint8> luminance; ///< per cent
    std::optional<quint8> source; ///< DVISource
    std::optional<Protocol::PeripheralControl> peripheral;
    std::optional<bool> isPeripheralVisible;
    std::optional<bool> isListening; ///< keyboard and mouse events
    std::optional<quint8> restart; ///< last restart value
    std::optional<quint8> mcuReset; ///< last reset value
    std::optional<QString> systemTime;
    std::optional<QString> networkInfo;
    quint64 ledMessages = 0;
    quint64 labelMessages = 0;

    /// Takes in one request; file packs and questions leave the state as it is.
    void apply(const DownMessage& message);

private:
    void applyLed(const Protocol::ECButtonColor& record);
    void applyLabel(const Protocol::ECOLEDText& record);
    void closeAllLeds();
};

} // namespace Orvane::ConsolePanel

#include "consolestate.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

/// Number that, as key and application key at once, stands for every key when all LEDs are closed.
constexpr quint16 AllKeys = 255;

bool closesAllLeds(const ECButtonColor& record)
{
    return record.ButtonKey == AllKeys && record.ECKey == AllKeys && record.ButtonState == CloseAllLight;
}

} // namespace

bool KeyState::looksLike(const KeyState& other) const
{
    return isLit == other.isLit && colour == other.colour && brightness == other.brightness
        && buttonState == other.buttonState;
}

void ConsoleState::apply(const DownMessage& message)
{
    std::visit(
        Overloaded{
            [this](const ECButtonColor& record) { applyLed(record); },
            [this](const ECOLEDText& record) { applyLabel(record); },
            [this](const ECTBarValue& record) { tbarLevel = record; },
            [this](const LockRequest& request) {
                if (request.action == LockRequest::Read)
                    return;
                bool& isLocked = request.target == LockTarget::TBar ? isTBarLocked : isKeypadLocked;
                isLocked = request.action == LockRequest::Lock;
            },
            [this](const LightControl& record) {
                lights[record.LightType] = LightState{record.IsEnabled != 0, record.Brightness};
            },
            [this](const ScreenLuminance& record) { luminance = record.Brightness; },
            [this](const PeripheralControl& record) { peripheral = record; },
            [this](const PeripheralControlVisibleState& record) {
                isPeripheralVisible = record.visible != 0;
            },
            [this](const MVRSignalControl& record) { source = record.SignalIndex; },
            [this](const SystemTime& record) { systemTime = record.text; },
            [this](const NetworkInfo& record) { networkInfo = record.text; },
            [this](const ECDeviceIPData& record) { deviceIPs[record.Index] = record; },
            [this](const ECDeviceIPModeData& record) { ipModes[record.Index] = record.Mode; },
            [this](const ConsoleRestart& record) { restart = record.value; },
            [this](const McuReset& record) { mcuReset = record.value; },
            [this](const KeyboardListening& record) { isListening = record.on; },
            [this](const DVIInSignal& record) { dviStatus[record.Index] = record.Signal != 0; },
            [](const DVIInSignalRead&) {},
            [](const ConsoleIPRequest&) {},
            [](const FileFirstPack&) {},
            [](const FileDataPack&) {},
        },
        message);
}

void ConsoleState::applyLed(const ECButtonColor& record)
{
    ++ledMessages;
    if (closesAllLeds(record)) {
        closeAllLeds();
        return;
    }
    KeyState& key = keys[record.ECKey];
    KeyState next = key;
    next.isLit = record.ButtonState == LightUp || record.ButtonState == Flashing;
    next.colour = {record.R, record.G, record.B};
    next.brightness = record.brightness;
    next.buttonState = record.ButtonState;
    next.appKey = record.ButtonKey;
    if (!next.looksLike(key))
        ++next.changes;
    key = next;
}

void ConsoleState::applyLabel(const ECOLEDText& record)
{
    ++labelMessages;
    LabelState& label = labels[record.ECKey];
    const QByteArray text(record.OledText, int(qstrnlen(record.OledText, sizeof(record.OledText))));
    if (label.text != text)
        ++label.changes;
    label.text = text;
    label.appKey = record.OledKey;
}

void ConsoleState::closeAllLeds()
{
    for (auto& [number, key] : keys) {
        KeyState dark = key;
        dark.isLit = false;
        dark.colour = {};
        dark.brightness = 0;
        dark.buttonState = CloseAllLight;
        if (!dark.looksLike(key))
            ++dark.changes;
        key = dark;
    }
}

} // namespace Orvane::ConsolePanel

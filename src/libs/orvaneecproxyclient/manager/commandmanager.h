#pragma once

#include "ecprotocol.h"
#include "modelpointers.h"
#include "orvaneecproxyclient_global.h"

#include <QList>
#include <QMap>
#include <QMessageBox>
#include <QObject>

#include <memory>
#include <string>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ECProxy::Client {

class Command;

namespace Internal {
class CommandManagerPrivate;
}

/// Owns the console's commands, routes key and T-Bar events to them through the guards that make the
/// console ignore input, and forwards the model's notifications to all of them.
///
/// Key values below 0xFF0000 are the physical console's key numbers; from 0xFF0000 on they come from the
/// on-screen console and carry the application's key number. A key configured in two groups belongs to the
/// command that comes first: Screen, Layer, Input, Preset, Number, Function.
///
/// Threads: create it on the GUI thread, with the application's device list in place, whose signals it
/// connects to; those slots run on the GUI thread. The three routing slots run the handlers on the caller's
/// thread, which for the physical console is the decoder thread.
///
/// Failure: a refused event is dropped. A press and a movement of the T-Bar say so in the log; a release says
/// so only while a device is being upgraded.
class ORVANEECPROXYCLIENT_EXPORT CommandManager : public QObject {
    Q_OBJECT

public:
    /// On the GUI thread, with the device list in place.
    explicit CommandManager(QObject* parent = nullptr);
    ~CommandManager() override;

    /// Creates the six commands and gives each its group of the configuration; an empty configuration
    /// leaves them without keys. A second call appends six more, behind the first, which keep the keys, the
    /// T-Bar and the notifications and get the new configuration.
    void registerCommand(const std::shared_ptr<EC::s_ECKeyboardConfig>& config);

    /// The console's number of the key with that application number; 0xFFFFFFFF, with a log line, for none.
    quint32 getECKeyByOrvaneECKey(const quint32& orvaneECKey) const;
    /// The same lookup under its other name.
    quint32 getOrderIndexByECKey(const quint32& key) const;
    /// Resolves a received key value and says whether it came from the on-screen console.
    quint32 getOperateECKey(const quint32& key, bool& isVirtual) const;

    /// Whether something is bound to the named command's key.
    bool isAlreadyBind(const QString& name, const quint16& key) const;
    /// The first of the named commands that has `key` among its selectable keys; empty when none has.
    QString isCommandsContainsKey(const QList<QString>& names, const quint16& key) const;
    /// The preset command; empty before `registerCommand()`.
    std::weak_ptr<Command> presetCommand() const;
    /// The page that the named command's keys show, from 0; 0 when there is none.
    int page(const std::string& name) const;
    /// Tells the commands that presets load to program from now on, or no longer.
    void setLoadToPGMStateChanged(const bool& loadToPGM);
    /// Writes the labels that are words once more.
    void retranslateUi();
    /// Repaints every key but the function keys.
    void updateKeyboard();
    /// Sends the lights again that `updateKeyboard()` leaves out.
    void showFunctionKeyLights();
    /// Has every command send what a repaint sends, for a thread that draws it.
    void showSurface();
    /// Whether the last key that a command knew was pressed on the on-screen console.
    /// @{
    bool getVirtualConsoleMode() const;
    void setIsVirtualConsoleMode(bool isVirtual);
    /// @}

public Q_SLOTS:
    /// Takes a press, a release or a position of the T-Bar through the guards to the command that serves it,
    /// on the caller's thread.
    /// @{
    void slotECButtonPressed(const quint32& key);
    void slotECButtonRelease(const quint32& key);
    void slotECTBarChanged(const Orvane::ECProxy::Client::ECTBarValue& value);

    /// @}
    /// Moves the items of a device to its new address; the commands are not notified.
    void slotDeviceIPChanged(WeakDevice device);

    /// The model's notifications, on the GUI thread: each goes to every command's slot of the same name.
    /// @{
    void slotActivedDeviceChanged();
    void slotDeviceRemoved(DevicePtr device);
    void slotSelectedScreensChanged(WeakDevice device);
    void slotDeviceScreenIndexChanged(WeakDevice device, WeakScreen screen);
    void slotActivedScreenChanged(WeakDevice device, WeakScreen screen);
    void slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen);
    virtual void slotDeviceScreenMoved(WeakDevice device, WeakScreen screen, WeakScreen other);
    void slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen);
    void slotDeviceScreenBaseNameChanged(WeakDevice device, WeakScreen screen);
    void slotScreenBasePGMFrozenStateChanged(WeakDevice device, WeakScreen screen);
    void slotScreenBasePGMFTBStateChanged(WeakDevice device, WeakScreen screen);
    void slotDeviceSwapStateChanged(WeakDevice device);
    void slotScreenBasePGMEditStateChanged(WeakDevice device, WeakScreen screen);
    void slotScreenEffectChanged(WeakDevice device, WeakScreen screen);
    void slotTbarLocked(bool locked);
    void slotKeyboardLocked(bool locked);
    void slotDeviceLoadToPGMStateChanged(WeakDevice device);
    void slotDeviceScreenBaseLayerAdded(WeakDevice device, WeakScreen screen, WeakLayer layer);
    void slotDeviceScreenBaseLayerRemoved(WeakDevice device, WeakScreen screen, LayerPtr layer);
    void slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen);
    void slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type);
    void slotLayerNameChanged(WeakDevice device, WeakScreen screen, WeakLayer layer);
    void slotDeviceInputNameChanged(WeakDevice device, WeakInterface interface);
    void slotDeviceInputAdded(WeakDevice device, WeakInput input);
    void slotDeviceInputCleared(WeakDevice device);
    void slotSelectedInputChanged(WeakDevice device);
    void slotDeviceInputRemoved(WeakDevice device, InputPtr input);
    void slotLayerSourceChanged(WeakDevice device, WeakScreen screen, WeakLayer layer);
    void slotInterfaceOverLoadChanged(WeakDevice device, WeakInterface interface);
    void slotInterfaceCapacityChanged(WeakDevice device, WeakSubcard subcard, WeakConnector connector);
    void slotDevicePresetAdded(WeakDevice device, WeakPreset preset);
    void slotDevicePresetRemoved(WeakDevice device, PresetPtr preset);
    void slotDeviceDevicePresetCleared(WeakDevice device);
    void slotPresetNameChanged(WeakDevice device, WeakFile file);
    void slotDevicePresetSelectChanged(WeakDevice device);
    void slotDevicePresetCovered(WeakDevice device, WeakPreset preset);
    void slotKeypadChanged(WeakDevice device, WeakFile file);
    void slotFramelessMessageBoxClosed(QMessageBox::StandardButton button);
    void slotDVISignalChanged(QMap<int, bool> signalOfInput);
    /// @}

Q_SIGNALS:
    /// A key of the physical console passed the guards; emitted before its handler runs.
    void signalECKeyClicked(bool isAleadyBind, quint16 nECKey);

private:
    Internal::CommandManagerPrivate* const d;
};

} // namespace Orvane::ECProxy::Client

#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include "orvaneplatform/bizmodel/fwd.h"

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
    void slotDeviceIPChanged(std::weak_ptr<BizModel::Device> device);

    /// The model's notifications, on the GUI thread: each goes to every command's slot of the same name.
    /// @{
    void slotActivedDeviceChanged();
    void slotDeviceRemoved(std::shared_ptr<BizModel::Device> device);
    void slotSelectedScreensChanged(std::weak_ptr<BizModel::Device> device);
    void slotDeviceScreenIndexChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotActivedScreenChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotDeviceRegulerScreenAdded(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    virtual void slotDeviceScreenMoved(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen,
        std::weak_ptr<BizModel::Screen> other);
    void slotDeviceRegulerScreenRemoved(
        std::weak_ptr<BizModel::Device> device, std::shared_ptr<BizModel::Screen> screen);
    void slotDeviceScreenBaseNameChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotScreenBasePGMFrozenStateChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotScreenBasePGMFTBStateChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotDeviceSwapStateChanged(std::weak_ptr<BizModel::Device> device);
    void slotScreenBasePGMEditStateChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotScreenEffectChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotTbarLocked(bool locked);
    void slotKeyboardLocked(bool locked);
    void slotDeviceLoadToPGMStateChanged(std::weak_ptr<BizModel::Device> device);
    void slotDeviceScreenBaseLayerAdded(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen,
        std::weak_ptr<BizModel::Layer> layer);
    void slotDeviceScreenBaseLayerRemoved(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen,
        std::shared_ptr<BizModel::Layer> layer);
    void slotSelectedRegularLayersChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen);
    void slotNotifyUpdateLayer(const QList<std::weak_ptr<BizModel::Screen>>& screens, int type);
    void slotLayerNameChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen,
        std::weak_ptr<BizModel::Layer> layer);
    void slotDeviceInputNameChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Interface> interface);
    void slotDeviceInputAdded(std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Input> input);
    void slotDeviceInputCleared(std::weak_ptr<BizModel::Device> device);
    void slotSelectedInputChanged(std::weak_ptr<BizModel::Device> device);
    void slotDeviceInputRemoved(
        std::weak_ptr<BizModel::Device> device, std::shared_ptr<BizModel::Input> input);
    void slotLayerSourceChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Screen> screen,
        std::weak_ptr<BizModel::Layer> layer);
    void slotInterfaceOverLoadChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Interface> interface);
    void slotInterfaceCapacityChanged(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Subcard> subcard,
        std::weak_ptr<BizModel::Connector> connector);
    void slotDevicePresetAdded(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Preset> preset);
    void slotDevicePresetRemoved(
        std::weak_ptr<BizModel::Device> device, std::shared_ptr<BizModel::Preset> preset);
    void slotDeviceDevicePresetCleared(std::weak_ptr<BizModel::Device> device);
    void slotPresetNameChanged(std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::File> file);
    void slotDevicePresetSelectChanged(std::weak_ptr<BizModel::Device> device);
    void slotDevicePresetCovered(
        std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Preset> preset);
    void slotKeypadChanged(std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::File> file);
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

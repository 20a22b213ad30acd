#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// Function codes of the function keys.
enum class FunctionCallbackType {
    eNothing = 0,
    eSaveDataToDeviceCB = 1,
    eLockECTBarCB = 2,
    eLockECKeyboardCB = 3,
    eSwitchSecondaryScreenSignalCB = 4,
    eLayerCopy = 5,
    eLayerMirCopy = 6,
    eDVIInSignalChangedCB = 7,
    FunctionCallbackTypeCnt = 8
};

namespace Internal {
class FunctionCommandPrivate;
}

/// The console's group of keys for device functions.
///
/// Save makes the device keep its state. T-Bar lock and keypad lock act when held for two seconds; the first
/// toggles, the second only locks, and the keypad is unlocked by the application. MVR exchanges the source of
/// the secondary screen, and its light follows the signal at DVI input 0. Copy and mirror copy double the
/// selected layers.
///
/// A change of the secondary screen's source takes 300 ms, which a console thread waits for. On the GUI
/// thread nothing waits: there the change goes on in the background.
class ORVANEECPROXYCLIENT_EXPORT FunctionCommand : public Command {
    Q_OBJECT

public:
    /// Made by the command manager, on the GUI thread.
    explicit FunctionCommand(QObject* parent = nullptr);
    ~FunctionCommand() override;

    QString name() const override;
    /// One item for each function key.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    void updateSelectModeButtonConfig() override;
    /// Does nothing: the keys keep their lights. See `showLights()`.
    void updateKeyboard() override;
    /// Sends the lights of the lock keys and the MVR key again, as for a console that was away.
    void showLights();

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{

    /// Where the T-Bar's lock differs from what the lock key knows, the key follows: its next hold toggles
    /// what is so, its light shows it, and a hold that had begun ends without acting.
    void slotTbarLocked(bool locked) override;
    /// The lock key's light follows. Unlocking ends a hold that had begun.
    void slotKeyboardLocked(bool locked) override;
    void slotDVISignalChanged(QMap<int, bool> signalOfInput) override;
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    /// @}

private:
    const std::unique_ptr<Internal::FunctionCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client

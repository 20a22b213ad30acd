#pragma once

#include "command.h"
#include "presetcallbacktype.h"

namespace Orvane::ECProxy::Client {

namespace Internal {
class PresetCommandPrivate;
}

/// The console's group of keys for presets: one key a slot, on pages, and the function keys.
///
/// It keeps the application's preset mode: Save and Remove arm what the next preset key does, Clear all asks
/// (on-screen console) or must be held for three seconds (physical console), Load to PGM chooses where
/// presets go. What a preset key does to the device is its page extension's, `OrvanePresetCommand`; presses,
/// takes, cuts and the T-Bar's leaving of an end go to the registered extensions as well.
class ORVANEECPROXYCLIENT_EXPORT PresetCommand : public Command {
    Q_OBJECT

public:
    /// Made on the GUI thread, with the application's device list in place.
    explicit PresetCommand(QObject* parent = nullptr);
    ~PresetCommand() override;

    QString name() const override;
    /// Pages that the active device's presets take; 8 without one.
    int maxPage() override;
    int pageSize() const override;
    void retranslateUi() override;
    /// Copies of the active device's items, with the colors of its keypad file unless that means another
    /// preset as the active one.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    using Command::updatePageOled;
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override;
    void updateSelectModeButtonConfig() override;
    int getMinUnusedECButtonIndex(int& orderIndex) const override;
    std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const override;
    void updateKeyboard() override;
    void takeKeyPressed(const quint32& ecKey) override;
    void cutKeyPressed(const quint32& ecKey) override;
    bool isAllowedKeyReleased(const quint16& ecKey) override;
    bool containsSelectedECButtonConfigByECKey(const quint32& ecKey) const override;

    /// A preset was removed by key: the press that did it ends the remove mode.
    /// @{
    bool clearStatus() const;
    void setClearStatus(bool armed);
    /// @}

    /// Gives a further command, such as a registered extension, this group's entry of the configuration, so
    /// that it can light the group's keys. False, with a warning, when either is missing.
    bool makeCommandCfg(Command* command);

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotActivedDeviceChanged() override;
    void slotDeviceRemoved(DevicePtr device) override;
    void slotDeviceLoadToPGMStateChanged(WeakDevice device) override;
    void slotDevicePresetAdded(WeakDevice device, WeakPreset preset) override;
    void slotDevicePresetRemoved(WeakDevice device, PresetPtr preset) override;
    void slotDeviceDevicePresetCleared(WeakDevice device) override;
    void slotPresetNameChanged(WeakDevice device, WeakFile file) override;
    void slotDevicePresetSelectChanged(WeakDevice device) override;
    void slotDevicePresetCovered(WeakDevice device, WeakPreset preset) override;
    void slotKeypadChanged() override;
    void slotECTBarChanged(const ECTBarValue& value) override;
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    void slotFramelessMessageBoxClosed(QMessageBox::StandardButton button) override;
    /// @}

public:
    /// Adds an extension, which from then on belongs to the application's thread and stays the caller's
    /// property, and has it take over the present page. Call it on the thread that the extension lives on.
    /// Null, and an extension that is registered already, are refused with a warning.
    void registerPresetCommand(IPresetCommandEx* command) override;

private:
    const std::unique_ptr<Internal::PresetCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client

#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// Function codes of the screen group's keys.
enum class ScreenCallbackType {
    eNothing = 0,
    eSelectScreenCB = 1,
    ePageUp = 2,
    ePageDown = 3,
    eFreezePGMCB = 4,
    eMatchPGMCB = 5,
    eFTBPGMCB = 6,
    eCutToPGMCB = 7,
    eTakeToPGMCB = 8,
    eSetTransitionMixTypeCB = 9,
    eSetTransitionTimeCB = 10,
    eSetSwapStatusCB = 11,
    /// Reserved: no key does anything yet.
    eSetWipeCB = 12,
    /// Reserved: no key does anything yet.
    eSetFreezePVWCB = 13,
    eSetPGMEdit = 14,
    eSetTransitionTimeReduceCB = 15,
    ScreenCallbackTypeCnt = 16
};

namespace Internal {
class ScreenCommandPrivate;
}

/// The console's keys for screens and for what goes to program, and the T-Bar.
///
/// A select key selects its screen, or creates one when it has none; the others take, cut, match, fade to
/// black, freeze, swap, set the transition and program edit of the active device. Presses act on the model
/// on the caller's thread, the decoder thread for the physical console, which cut and freeze hold until the
/// device has carried them out; what the keys show follows the model's notifications on the GUI thread. The
/// transition time keys repeat on timer threads while held.
///
/// Every refusal is one log line and, where the operator has to know, a notice through the device list.
///
/// Destroy it on the GUI thread, with no event of the console or the model under way. Requests to the model
/// may still end after that.
class ORVANEECPROXYCLIENT_EXPORT ScreenCommand : public Command {
    Q_OBJECT

public:
    /// Made by the command manager, on the GUI thread.
    explicit ScreenCommand(QObject* parent = nullptr);
    ~ScreenCommand() override;

    QString name() const override;
    int maxPage() override;
    /// Number of select keys.
    int pageSize() const override;
    /// Rewrites the labels that are words.
    void retranslateUi() override;
    /// One item for each select key on each page, of the active device.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    using Command::updatePageOled;
    /// Also shows the screens of that page.
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override;
    void updateSelectModeButtonConfig() override;
    int getMinUnusedECButtonIndex(int& orderIndex) const override;
    std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const override;
    /// Repaints every key of the group.
    void updateKeyboard() override;
    /// True for a select key with a screen.
    bool isAlreadyBind(const quint16& ecKey) override;
    bool isTakeKeyPressed(const quint32& ecKey) override;
    bool isCutKeyPressed(const quint32& ecKey) override;
    /// True for the function keys: a dialog that opens while one is held must not keep it held.
    bool isAllowedKeyReleased(const quint16& ecKey) override;
    bool containsSelectedECButtonConfigByECKey(const quint32& ecKey) const override;

    /// Color of a key with a screen: of a selected one when `selected` is not 0.
    ECLEDColor getScreenBtnColor(int selected) const;
    /// Kept for hosts that call it; no effect.
    void setIsJump(bool isJump);

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotActivedDeviceChanged() override;
    void slotDeviceRemoved(DevicePtr device) override;
    void slotActivedScreenChanged(WeakDevice device, WeakScreen screen) override;
    void slotSelectedScreensChanged(WeakDevice device) override;
    void slotDeviceScreenIndexChanged(WeakDevice device, WeakScreen screen) override;
    void slotDeviceScreenMoved(WeakDevice device, WeakScreen screen, WeakScreen other) override;
    void slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen) override;
    void slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen) override;
    void slotDeviceScreenBaseNameChanged(WeakDevice device, WeakScreen screen) override;
    void slotScreenBasePGMFrozenStateChanged(WeakDevice device, WeakScreen screen) override;
    void slotScreenBasePGMFTBStateChanged(WeakDevice device, WeakScreen screen) override;
    void slotScreenEffectChanged(WeakDevice device, WeakScreen screen) override;
    void slotDeviceSwapStateChanged(WeakDevice device) override;
    void slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type) override;
    void slotScreenBasePGMEditStateChanged(WeakDevice device, WeakScreen screen) override;
    /// One position of the T-Bar, from 1 to 64. Always on the same thread.
    void slotECTBarChanged(const ECTBarValue& value) override;
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    /// @}

private:
    friend class Internal::ScreenCommandPrivate;

    const std::unique_ptr<Internal::ScreenCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client

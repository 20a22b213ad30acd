#pragma once

#include "activeddevicewatch_p.h"
#include "coalescer_p.h"
#include "holdtimer_p.h"
#include "keytable_p.h"
#include "screencommand.h"
#include "screencommandbindings_p.h"
#include "transitiontimehold_p.h"

#include "completion.h"

#include <QObject>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

// What the state keys show, and toggle. Freeze and fade to black count for the device's whole group.

using DeviceState = bool (*)(const BizModel::Device& device);
bool isPGMFrozen(const BizModel::Device& device);
bool isPGMFadedToBlack(const BizModel::Device& device);
bool isSwapEnabled(const BizModel::Device& device);
bool isPGMEdited(const BizModel::Device& device);

/// What a toggle key asked the model for last. While that request is under way, the next press asks for its
/// opposite: quick presses alternate although the state follows later. Any thread.
class ToggleRequest {
public:
    struct Asked {
        WeakDevice device;
        bool on = false;
        std::atomic<bool> isEnded{false};
    };

    /// Asks for the opposite of what is under way for that device or, with nothing under way, of its state.
    /// The caller sets `isEnded` when the request has ended.
    std::shared_ptr<Asked> askOpposite(const DevicePtr& device, DeviceState isOn);

private:
    std::shared_ptr<Asked> last();

    // m_mutex guards m_pLast: keys of the console are pressed on the decoder thread, those of the on-screen
    // console on the GUI thread.
    std::mutex m_mutex;
    std::shared_ptr<Asked> m_pLast;
};

/// What the screen group's keys, the T-Bar and the model's notifications do. Key handlers run on the
/// thread that delivers the console's events, repeats on timer threads, repaints on the GUI thread and where
/// a page is turned.
class ScreenCommandPrivate : public QObject {
public:
    explicit ScreenCommandPrivate(ScreenCommand* command);

    /// The keys, in the order of a repaint.
    static const std::vector<KeyRow<ScreenCommandPrivate>>& keys();

    // Releases that nothing follows.

    bool ignoreRelease(const quint32&) { return true; }
    bool leaveRelease(const quint32&) { return false; }

    // Select keys.

    bool selectScreenPressed(const quint32& ecKey);
    bool createScreen(const quint32& ecKey);
    ScreenPtr findBindingScreen(const quint32& ecKey) const;
    /// Whether the group has its configuration; logs when it has none.
    bool hasConfig() const;

    // Keys of the program.

    bool takeToPGMPressed(const quint32& ecKey);
    bool cutToPGMPressed(const quint32& ecKey);
    bool matchPGMPressed(const quint32& ecKey);
    bool matchPGMRelease(const quint32& ecKey);
    /// Ends a press whose release was lost.
    void restMatchPGM(const quint32& ecKey);
    bool freezePGMPressed(const quint32& ecKey);
    bool ftbPGMPressed(const quint32& ecKey);
    bool setSwapStatusPressed(const quint32& ecKey);
    bool setPGMEditPressed(const quint32& ecKey);

    // Keys of the transition.

    bool setTransitionMixTypePressed(const quint32& ecKey);
    bool setTransitionTimePressed(const quint32& ecKey);
    bool setTransitionTimeRelease(const quint32& ecKey);
    bool setTransitionTimeReducePressed(const quint32& ecKey);
    bool setTransitionTimeReduceRelease(const quint32& ecKey);
    // End the key's hold without writing its time. Both labels then show the screen's time: the framework
    // repaints them after the first, the second does so itself.
    void restTransitionTime(const quint32& ecKey);
    void restTransitionTimeReduce(const quint32& ecKey);

    // The T-Bar. All on the thread that delivers the console's events.

    void updateTBarValue(const ECTBarValue& value);
    void tbarTake(const ECTBarValue& value);
    void tbarStart();
    void tbarStop(qreal percent);
    void takeTBarProcess(qreal percent);

    // What the keys and labels show. Steps of the table of keys take a key's number, which they do not need:
    // they find the key by its function.

    /// Everything: for another device, and when the host asks.
    void updateKeyboard();
    /// Page label, state keys and transition labels, in the order of the table of keys.
    void updateScreenKeyboard();
    /// Binds the active device's screens to keys and gives the keys their colors and labels, without sending
    /// anything.
    void updateECCommandItems();
    void repaintScreenKeys(Enum::UpdateConsoleType type);
    void updateECPageIndexOLED(const quint32& = 0);
    void updateFTBColor(const quint32& = 0);
    void updateFreezeColor(const quint32& = 0);
    void updatePGMEditColor(const quint32& = 0);
    void updateSwapColor(const quint32& = 0);
    void updateMixType(const quint32& = 0);
    /// The transition time of the active screen; blank without one.
    void updateTimeFunData(const quint32& = 0);
    /// Writes a time, in seconds, to the labels of both time keys.
    void updateTimeSpeedOledText(double seconds);
    /// Lights the key with that function, in `color` or dark. Warns when the group has no such key.
    void updateECButtonColor(bool on, ScreenCallbackType type, ECLEDColor color);
    void updateFunctionOled(ScreenCallbackType type, const QString& text);
    /// The layers of screens changed; many such notifications make one repaint.
    void notifyUpdateLayer();
    void slotUpdateTakeScreenTimeout();

    ScreenCommand* const m_pCommand;

    const std::shared_ptr<ScreenBindings> m_pBindings =
        std::make_shared<ScreenBindings>(quint16(ScreenCallbackType::eSelectScreenCB));
    ActivedDeviceWatch m_activedDeviceWatch;
    /// A screen creation is in flight. Shared with its completion.
    const std::shared_ptr<std::atomic<bool>> m_isCreatingScreen = std::make_shared<std::atomic<bool>>(false);

    // The T-Bar's state, touched only on the thread that delivers the console's events.

    quint32 m_iPreValue = 0; ///< last position that was accepted or came while locked
    bool m_tbarStart = false; ///< a transition by the T-Bar is running
    bool m_bLockTbar = false; ///< locks as of the last position
    bool m_bLockPanel = false;
    bool m_bLockTbarEnable = true; ///< positions between the ends are accepted
    bool m_offTbarLed = true; ///< set when a transition has been stopped; nothing asks for it
    bool m_bReaderEenable = true; ///< kept, without effect
    quint32 m_tbarTimerId = 0xFFFFFFFF; ///< kept, without effect

private:
    struct Toggle;

    bool isPositionAccepted(quint32 position);

    bool toggleSelection(const DevicePtr& device, const ScreenPtr& screen) const;
    bool reserveKey(const quint32& ecKey, const DevicePtr& device, const ScreenPtr& screen);
    Completion screenCreated(const DevicePtr& device, const ScreenPtr& screen) const;

    bool refuse(const quint32& ecKey, const char* text);
    void showTakeWaitingDialog(double transitionMs);
    void hideWaitingdialog();
    Completion matchEnded(const quint32& ecKey, int press);
    bool toggle(const Toggle& what);
    bool updateTransitionTime(bool reduce);
    void showTransitionStep(bool reduce, double seconds);

    /// Lights a key as long as the active device is in the state; dark without a device.
    void showState(ScreenCallbackType type, ECLEDColor color, DeviceState isOn);
    void showMatchKey(const quint32& ecKey);

    ToggleRequest m_freezeRequest;
    ToggleRequest m_ftbRequest;
    ToggleRequest m_swapRequest;
    std::atomic<int> m_nMatchPress{0}; ///< number of the last press of the match key
    std::atomic<int> m_nMatchLit{0}; ///< number of the press that the match key is lit for; 0 for none

    // Last, so that no time-out comes while the rest is destroyed.
    HoldTimer m_pWaitingDialogTimer{[this] { hideWaitingdialog(); }};
    TransitionTimeHold m_transitionTime{
        [this](bool reduce, double seconds) { showTransitionStep(reduce, seconds); },
        [this] { updateTimeFunData(); }};
    Coalescer m_pUpdateTakeTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

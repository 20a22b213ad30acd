#pragma once

#include "coalescer_p.h"
#include "holdtimer_p.h"
#include "screencommand.h"
#include "screencommandbindings_p.h"
#include "selectkeys_p.h"

#include "completion.h"

#include <QObject>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

// What the state keys show, and toggle. Freeze and fade to black count for the device's whole group.

bool isPGMFrozen(const BizModel::Device& device);
bool isPGMFadedToBlack(const BizModel::Device& device);
bool isPGMEdited(const BizModel::Device& device);

/// A transition time in seconds as the labels show it.
QString transitionTimeText(double seconds);

using Clock = std::chrono::steady_clock;

/// The waiting dialog of a take that lasts: hidden when the take has ended, or when its time is up. Held by
/// shared pointer, because the take may end after the command is gone. Any thread.
class TakeWaitingDialog {
public:
    /// Shows the dialog, for `limit` at most. Answers the number to hide it by.
    int show(std::chrono::milliseconds limit);
    /// Hides the dialog, unless it is hidden or a later take has shown its own.
    void hide(int number);
    /// Tells the application in any case to hide what it shows.
    void hide();

private:
    void timeIsUp();

    // m_mutex guards m_nShown, m_nLast and m_limit, and keeps the timer in step with them.
    std::mutex m_mutex;
    int m_nShown = 0; ///< 0 while no dialog is shown
    int m_nLast = 0;
    Clock::time_point m_limit; ///< of the dialog that was shown last
    HoldTimer m_waitingDialogTimer{[this] { timeIsUp(); }};
};

/// What the screen group's keys, the T-Bar and the model's notifications do. Key handlers run on the
/// thread that delivers the console's events, repeats on timer threads, repaints on the GUI thread and where
/// a page is turned.
class ScreenCommandPrivate : public QObject {
public:
    explicit ScreenCommandPrivate(ScreenCommand* command);

    // Select keys.

    bool selectScreenPressed(const quint32& ecKey);
    bool createScreen(const quint32& ecKey);
    std::shared_ptr<BizModel::Screen> findBindingScreen(const quint32& ecKey) const;
    bool isKeyOfType(const quint32& ecKey, ScreenCallbackType type) const;

    // Keys that bring something to program.

    bool takeToPGMPressed(const quint32& ecKey);
    bool cutToPGMPressed(const quint32& ecKey);
    bool matchPGMPressed(const quint32& ecKey);
    bool matchPGMRelease(const quint32& ecKey);
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

    // The T-Bar. All on the thread that delivers the console's events.

    void updateTBarValue(const ECTBarValue& value);
    void tbarTake(const ECTBarValue& value);
    void tbarStart();
    void tbarStop(qreal percent);
    void takeTBarProcess(qreal percent);

    // What the keys and labels show.

    /// Everything: for another device, and when the host asks.
    void updateKeyboard();
    /// Page label, state keys and transition labels.
    void updateScreenKeyboard();
    /// Binds the active device's screens to keys and gives the keys their colours and labels, without sending
    /// anything.
    void updateECCommandItems();
    void repaintScreenKeys(Enum::UpdateConsoleType type);
    void updateECPageIndexOLED();
    void updateFTBColor();
    void updateFreezeColor();
    void updatePGMEditColor();
    void updateSwapColor();
    void updateMixType();
    /// The transition time of the active screen; blank without one.
    void updateTimeFunData();
    void updateTimeSpeedOledText(double seconds);
    /// Lights the key with that function, in `color` or dark. Warns when the group has no such key.
    void updateECButtonColor(bool on, ScreenCallbackType type, ECLEDColor color);
    void updateFunctionOled(ScreenCallbackType type, const QString& text);
    /// The layers of screens changed; many such notifications make one repaint.
    void notifyUpdateLayer();
    void slotUpdateTakeScreenTimeout();

    ScreenCommand* const m_pCommand;

    SelectKeys m_screenButtonCfgs;
    const std::shared_ptr<ScreenBindings> m_pBindings = std::make_shared<ScreenBindings>();
    /// A screen creation is in flight. Shared with its completion.
    const std::shared_ptr<std::atomic<bool>> m_isCreatingScreen = std::make_shared<std::atomic<bool>>(false);
    const std::shared_ptr<TakeWaitingDialog> m_pTakeWaitingDialog = std::make_shared<TakeWaitingDialog>();

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
    bool reserveKey(
        const quint32& ecKey, const std::shared_ptr<BizModel::Device>& device,
        const std::shared_ptr<BizModel::Screen>& screen);
    Completion screenCreated(
        const std::shared_ptr<BizModel::Device>& device,
        const std::shared_ptr<BizModel::Screen>& screen) const;

    /// Puts the key out and logs why. Always false.
    bool refuse(const quint32& ecKey, const char* text);

    void darkenMomentaryKeys();
    /// Lights a key as long as the active device is in the state; dark without a device.
    void showState(
        ScreenCallbackType type, ECLEDColor color, const std::function<bool(const BizModel::Device&)>& isOn);

    bool updateTransitionTime(bool reduce);
    void increaseEffectTime();
    void reduceEffectTime();
    void repeatEffectStep(bool reduce);
    void stepEffectTime(bool reduce, int hold);
    void rearmEffectTimer(bool reduce, int hold);

    // m_effectSpeedMutex guards m_bRelease, m_nHold, m_effectSpeed, m_bEffectTimeReduce, m_takeMilliSecTime
    // and m_nextRepeat, and keeps the repeat timers in step with them.
    std::mutex m_effectSpeedMutex;
    bool m_bRelease = true; ///< no time key is held: no step may follow
    int m_nHold = 0; ///< number of the hold that is going on or was last
    double m_effectSpeed = 0.5; ///< transition time that a held key edits, in seconds
    bool m_bEffectTimeReduce = true; ///< the held key counts down
    int m_takeMilliSecTime = 350; ///< from one step to the next
    Clock::time_point m_nextRepeat; ///< no repeat comes before

    // Last, so that no time-out comes while the rest goes.
    HoldTimer m_effectTimer{[this] { increaseEffectTime(); }};
    HoldTimer m_effectReduceTimer{[this] { reduceEffectTime(); }};
    Coalescer m_updateTakeTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "functioncommand.h"
#include "holdtimer_p.h"
#include "keygroup_p.h"
#include "keytable_p.h"
#include "painter_p.h"
#include "secondaryscreen_p.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

class FunctionCommandPrivate {
public:
    static constexpr std::chrono::milliseconds LockHoldDuration{2000};

    FunctionCommandPrivate(FunctionCommand* command, Painter& painter);

    /// One row a function key.
    static const std::vector<KeyRow<FunctionCommandPrivate>>& keys();

    // Key handlers.

    bool saveDataToDevicePressed(const quint32& ecKey);
    bool saveDataToDeviceRelease(const quint32&) { return true; }
    bool lockECTBarPressed(const quint32& ecKey) { return holdPressed(ecKey, m_tbarKey); }
    bool lockECTBarRelease(const quint32& ecKey) { return holdRelease(ecKey, m_tbarKey); }
    bool lockECKeyboardPressed(const quint32& ecKey) { return holdPressed(ecKey, m_keypadKey); }
    bool lockECKeyboardRelease(const quint32& ecKey) { return holdRelease(ecKey, m_keypadKey); }
    bool switchSecondaryScreenSignalPressed(const quint32& ecKey);
    bool switchSecondaryScreenSignalRelease(const quint32& ecKey);
    bool layerCopyPressed(const quint32& ecKey) { return copyPressed(ecKey, "copy", false); }
    bool layerMirCopyPressed(const quint32& ecKey) { return copyPressed(ecKey, "mirror copy", true); }
    bool layerCopyRelease(const quint32& ecKey);

    // Notifications.

    void followTBarLock(bool locked);
    void followKeypadLock(bool locked);
    void followDVISignal(bool hasSignal) { m_secondaryScreen.follow(hasSignal); }

    /// All keys of the group that have a function.
    KeyGroup m_keys{std::nullopt, 0};

private:
    /// A key that locks when it is held.
    struct LockKey {
        bool isLit() const { return held || locked || reported; }

        const FunctionCallbackType type;
        const std::atomic<bool>& locked;
        HoldTimer& timer;
        std::atomic<bool> held{false}; ///< and its time is not up
        /// Locked, by report or by the host. A short press clears it, unless the key itself has locked.
        std::atomic<bool> reported{false};
    };

    /// Lights the key with that function, in `color` or dark. Warns when there is no such key.
    void updateEcButtonColor(bool on, FunctionCallbackType type, ECLEDColor color);

    void saveDataToDevice();
    bool copyPressed(const quint32& ecKey, const char* what, bool mirrored);
    /// Asks for copies of the selected layers of the active screen.
    void copySelectedLayers(bool mirrored);

    bool holdPressed(const quint32& ecKey, LockKey& key);
    bool holdRelease(const quint32& ecKey, LockKey& key);
    /// False when the hold has acted already, or none had begun.
    static bool endHold(LockKey& key);
    void slotLockTBarTimeOut();
    void slotLockECKeyboardTimeOut();
    void lightLockKey(const LockKey& key);
    /// Sends a light at once; when another thread sends one meanwhile, what is true then follows.
    void sendLight(const LockKey& key, const Painter::Job& send);
    void showLight(const LockKey& key);

    // Steps of the table's rows.

    void endTBarHold(const quint32&) { endHold(m_tbarKey); }
    void endKeypadHold(const quint32&) { endHold(m_keypadKey); }
    void showTBarKey(const quint32&) { showLight(m_tbarKey); }
    void showKeypadKey(const quint32&) { showLight(m_keypadKey); }
    void showMvrKey(const quint32&) { m_secondaryScreen.showLight(); }

    FunctionCommand* const m_pCommand;
    Painter& m_painter;

    /// No save is running. Shared with the save's completion.
    const std::shared_ptr<std::atomic<bool>> m_isSavedFinished = std::make_shared<std::atomic<bool>>(true);

    // What the keys take for locked: set by their own time-outs and by the locks of others.
    std::atomic<bool> m_bLockTBar{false};
    std::atomic<bool> m_bLockECKeyboard{false};

    LockKey m_tbarKey{FunctionCallbackType::eLockECTBarCB, m_bLockTBar, m_pLockTBarTimer};
    LockKey m_keypadKey{FunctionCallbackType::eLockECKeyboardCB, m_bLockECKeyboard, m_pLockECKeyboardTimer};

    // Last, so that they end first: what they run uses all of the above.
    SecondaryScreen m_secondaryScreen;
    HoldTimer m_pLockTBarTimer;
    HoldTimer m_pLockECKeyboardTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

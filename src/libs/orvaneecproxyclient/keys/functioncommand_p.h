#pragma once

#include "functioncommand.h"
#include "holdtimer_p.h"
#include "secondaryscreen_p.h"
#include "selectkeys_p.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace Orvane::ECProxy::Client::Internal {

class FunctionCommandPrivate {
public:
    static constexpr std::chrono::milliseconds LockHoldDuration{2000};

    explicit FunctionCommandPrivate(FunctionCommand* command);

    // Key handlers.

    bool saveDataToDevicePressed(const quint32& ecKey);
    bool saveDataToDeviceRelease(const quint32& ecKey);
    bool lockECTBarPressed(const quint32& ecKey);
    bool lockECTBarRelease(const quint32& ecKey);
    bool lockECKeyboardPressed(const quint32& ecKey);
    bool lockECKeyboardRelease(const quint32& ecKey);
    bool switchSecondaryScreenSignalPressed(const quint32& ecKey);
    bool switchSecondaryScreenSignalRelease(const quint32& ecKey);
    bool layerCopyPressed(const quint32& ecKey);
    bool layerMirCopyPressed(const quint32& ecKey);
    bool layerCopyRelease(const quint32& ecKey);

    /// Lights the key with that function, in `color` or dark. Warns when there is no such key.
    void updateEcButtonColor(bool on, FunctionCallbackType type, ECLEDColor color);

    FunctionCommand* const m_pCommand;
    SelectKeys m_functionButtonCfgs;
    /// Locked by this group's keys. Set by timer threads, and the second cleared by whoever unlocks.
    std::atomic<bool> m_bLockTBar{false};
    std::atomic<bool> m_bLockECKeyboard{false};
    SecondaryScreen m_secondaryScreen;

private:
    void saveDataToDevice();
    bool layerCopyPressed(const quint32& ecKey, bool mirrored);
    /// Asks for copies of the selected layers of the active screen.
    void copySelectedLayers(bool mirrored);
    bool holdPressed(const quint32& ecKey, HoldTimer& timer);
    bool holdRelease(const quint32& ecKey, HoldTimer& timer, const std::atomic<bool>& locked);
    void slotLockTBarTimeOut();
    void slotLockECKeyboardTimeOut();

    /// No save is running. Shared with the save's completion.
    const std::shared_ptr<std::atomic<bool>> m_isSavedFinished = std::make_shared<std::atomic<bool>>(true);

    // Last, so that they end first: what they run uses all of the above.
    HoldTimer m_pLockTBarTimer;
    HoldTimer m_pLockECKeyboardTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "holdtimer_p.h"
#include "orvanepresetcommand.h"
#include "presetcommand.h"
#include "presetextensions_p.h"
#include "selectkeys_p.h"

#include "bizmodel/enums.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

class PresetCommandPrivate {
public:
    static constexpr std::chrono::milliseconds ClearAllHoldDuration{3000};
    static constexpr int PagesWithoutDevice = 8;

    explicit PresetCommandPrivate(PresetCommand* command);

    // Key handlers.

    bool selectPresetPressed(const quint32& ecKey);
    bool selectPresetRelease(const quint32& ecKey);
    bool pageUpRelease(const quint32& ecKey);
    bool pageDownRelease(const quint32& ecKey);
    bool removeSelectedPresetPressed(const quint32& ecKey);
    bool clearPresetsPressed(const quint32& ecKey);
    bool clearPresetsRelease(const quint32& ecKey);
    bool savePresetPressed(const quint32& ecKey);
    bool loadToPGMPresetPressed(const quint32& ecKey);
    /// The release of a key that acts when pressed.
    bool ignoreRelease(const quint32& ecKey);

    void messageBoxClosed(QMessageBox::StandardButton button);
    void tbarChanged(const ECTBarValue& value);

    // Pages, labels and items.

    QList<std::shared_ptr<ECCommandItem>> commandItems() const;
    void connectPages();
    void disconnectPages();
    void showPage(int page);
    /// Brings the page into the present number of pages.
    void clampPage();
    /// Hands the page to the extensions.
    void updatePageIndex();
    void udpatePageOLEDText();
    void updateAllKeyboard();
    void slotLoadToPGMUpDate();
    void rememberActivedPresetKey(const BizModel::Device& device);

    PresetCommand* const m_pCommand;
    SelectKeys m_presetButtonCfgs;
    const std::unique_ptr<OrvanePresetCommand> m_pOrvanePresetCmd = std::make_unique<OrvanePresetCommand>();
    PresetExtensions m_extensions;
    std::atomic<bool> m_clearStatus{false};

private:
    /// Page and key of a preset.
    struct PageKey {
        quint32 page = 0;
        quint32 ecKey = Constants::InvalidECKey;
    };

    int clamped(int page) const;
    bool turnPage(bool (Command::*turn)(const quint32&), const quint32& ecKey);
    /// Arms a mode, or leaves it when it is armed already.
    bool toggleMode(
        const quint32& ecKey, BizModel::Enum::Preset::PresetOptMode mode, PresetCallbackType own,
        PresetCallbackType other);
    /// Has every extension remove all presets.
    void clearEverywhere();
    void slotClearAllTimeOut();
    void slotClearPresetsPressed();
    bool isLoadToPGMStateEnable() const;
    void setLoadToPGMState(BizModel::Enum::Device::LoadToPGMStatus status);
    void setPageIndexECKey(const PageKey& pageKey);
    PageKey pageIndexECKey() const;

    /// A question to clear all is open, or was answered with no.
    std::atomic<bool> m_currentModule{false};
    /// A question to load to PGM is open.
    std::atomic<bool> m_currentLoadToPGMModule{false};
    /// Last position of the T-Bar.
    std::atomic<quint32> m_preTbarValue{0};

    // m_pageKeyMutex guards m_pageIndexECKey, the preset key that was pressed last.
    mutable std::mutex m_pageKeyMutex;
    PageKey m_pageIndexECKey;

    // Last, so that it ends first: its callback uses all of the above.
    HoldTimer m_pClearAllTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

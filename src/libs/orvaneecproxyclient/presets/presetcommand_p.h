#pragma once

#include "holdtimer_p.h"
#include "keygroup_p.h"
#include "keytable_p.h"
#include "orvanepresetcommand.h"
#include "presetcommand.h"
#include "presetextensions_p.h"
#include "presetmodes_p.h"
#include "presetpages_p.h"

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

    PresetCommandPrivate(PresetCommand* command, Painter& painter);

    /// The group's keys.
    static const std::vector<KeyRow<PresetCommandPrivate>>& keys();

    // Key handlers.

    bool selectPresetPressed(const quint32& ecKey);
    bool selectPresetRelease(const quint32& ecKey);
    bool pageUpRelease(const quint32& ecKey) { return m_pages.turn(&Command::pageUpRelease, ecKey); }
    bool pageDownRelease(const quint32& ecKey) { return m_pages.turn(&Command::pageDownRelease, ecKey); }
    bool removeSelectedPresetPressed(const quint32& ecKey);
    bool clearPresetsPressed(const quint32& ecKey);
    bool clearPresetsRelease(const quint32& ecKey);
    bool savePresetPressed(const quint32& ecKey);
    bool loadToPGMPresetPressed(const quint32& ecKey);
    /// A release that nothing follows.
    bool leaveRelease(const quint32&) { return false; }
    void restClearPresets(const quint32& ecKey);

    // What a repaint shows on a key.

    void showRemoveKey(const quint32& ecKey) { m_modes.paint(ecKey, PresetModes::Mode::Clear); }
    void showClearKey(const quint32& ecKey) { m_modes.paint(ecKey, PresetModes::Mode::ClearAll); }
    void showSaveKey(const quint32& ecKey) { m_modes.paint(ecKey, PresetModes::Mode::Save); }
    void showLoadTarget(const quint32& ecKey);

    /// Ends a hold of the clear-all key without acting: its light goes, and a dark key never clears.
    void endHeldClear();
    void messageBoxClosed(QMessageBox::StandardButton button);
    void tbarChanged(const ECTBarValue& value);

    // Items, lights and labels.

    /// Makes the items of the pages that the active device needs and that are not there yet.
    void makeMissingItems();
    QList<std::shared_ptr<ECCommandItem>> commandItems() const;
    /// Paints light and label of the load-to-PGM key.
    void slotLoadToPGMUpDate();
    void rememberActivedPresetKey(const BizModel::Device& device);

    PresetCommand* const m_pCommand;
    Painter& m_painter;
    KeyGroup m_keys{KeyboardType::Preset, quint16(PresetCallbackType::eSelectPresetCB)};
    PresetModes m_modes;
    const std::unique_ptr<OrvanePresetCommand> m_pOrvanePresetCmd;
    PresetExtensions m_extensions;
    PresetPages m_pages;

private:
    /// Page and key of a preset.
    struct PageKey {
        quint32 page = 0;
        quint32 ecKey = Constants::InvalidECKey;
    };

    /// Has every extension remove all presets. False, and nothing is done, when another device than at the
    /// key's press is active.
    bool clearEverywhere();
    void slotClearAllTimeOut();
    void slotClearPresetsPressed();
    bool isLoadToPGMStateEnable() const;
    void sendLoadTarget(quint32 ecKey);
    void setLoadToPGMState(BizModel::Enum::Device::LoadToPGMStatus status);
    void setPageIndexECKey(const PageKey& pageKey);
    PageKey pageIndexECKey() const;

    /// A question to clear all is open, or was not answered with yes.
    std::atomic<bool> m_currentModule{false};
    /// A question to load to PGM is open.
    std::atomic<bool> m_currentLoadToPGMModule{false};
    /// Last position of the T-Bar.
    std::atomic<quint32> m_preTbarValue{0};

    // m_mutex guards m_pageIndexECKey, the preset key that was pressed last, and m_clearAllDevice, the device
    // that was active when the clear-all key was pressed last.
    mutable std::mutex m_mutex;
    PageKey m_pageIndexECKey;
    WeakDevice m_clearAllDevice;

    // Last, so that it ends first: its callback uses all of the above.
    HoldTimer m_pClearAllTimer;
};

} // namespace Orvane::ECProxy::Client::Internal

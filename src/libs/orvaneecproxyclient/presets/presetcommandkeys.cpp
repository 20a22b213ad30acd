// The handlers of the preset group's keys, and what shows on them.
#include "presetcommand_p.h"

#include "consolerequests_p.h"
#include "consumetime_p.h"
#include "eccommanditem.h"
#include "ecconsolemanager.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "presetgroup_p.h"
#include "presetkeycolors_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "parallelcontrol/parallelmanager.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::FramelessMessageBoxMsgType;
using BizModel::Enum::Device::LoadToPGMStatus;
using BizModel::Enum::Preset::PresetOptMode;

namespace Translate = BizModel::Translate;

namespace {

constexpr quint32 TBarBottom = 1;
constexpr quint32 TBarTop = 64;

/// Whether a position of the T-Bar leaves the end that it was at.
bool leavesEnd(quint32 previous, const ECTBarValue& value)
{
    switch (previous) {
    case 0:
        return value.Value != 0;
    case TBarBottom:
        return value.Value != TBarBottom && value.IsBottomToTop == BottomToTop;
    case TBarTop:
        return value.Value != TBarTop && value.IsBottomToTop == TopToBottom;
    default:
        return false;
    }
}

} // namespace

const std::vector<KeyRow<PresetCommandPrivate>>& PresetCommandPrivate::keys()
{
    using Type = PresetCallbackType;
    using Own = PresetCommandPrivate;
    static const std::vector<KeyRow<Own>> rows{
        {Type::eSelectPresetCB, &Own::selectPresetPressed, &Own::selectPresetRelease},
        {Type::ePageUp, &Command::pageUpPressed, &Own::pageUpRelease, HasPageLabel, KeyLight::Momentary},
        {Type::ePageDown, &Command::pageDownPressed, &Own::pageDownRelease, NoTraits, KeyLight::Momentary},
        {Type::eRemoveSelectedPresetCB, &Own::removeSelectedPresetPressed, &Own::leaveRelease,
         ReleasePassesDialog, KeyLight::Lasting, &Own::showRemoveKey},
        {Type::eClearPresetsCB, &Own::clearPresetsPressed, &Own::clearPresetsRelease, ReleasePassesDialog,
         KeyLight::Lasting, &Own::showClearKey, &Own::restClearPresets},
        {Type::eSavePresetCB, &Own::savePresetPressed, &Own::leaveRelease, ReleasePassesDialog,
         KeyLight::Lasting, &Own::showSaveKey},
        {Type::eCut, nullptr, nullptr},
        {Type::eTake, nullptr, nullptr},
        {Type::eLoadToPgm, &Own::loadToPGMPresetPressed, &Own::leaveRelease, ReleasePassesDialog,
         KeyLight::Lasting, &Own::showLoadTarget},
    };
    return rows;
}

PresetCommandPrivate::PresetCommandPrivate(PresetCommand* command, Painter& painter)
    : m_pCommand(command)
    , m_painter(painter)
    , m_modes(*command, painter)
    , m_pOrvanePresetCmd(std::make_unique<OrvanePresetCommand>(*command, m_modes, m_keys))
    , m_extensions([command] { return command->currentPageIndex(); })
    , m_pages(*command, painter, *m_pOrvanePresetCmd, m_extensions)
    , m_pClearAllTimer([this] { slotClearAllTimeOut(); })
{
}

// ---- Preset keys ----------------------------------------------------------------------------------------

bool PresetCommandPrivate::selectPresetPressed(const quint32& ecKey)
{
    logConsumeTime("preset consume time: AllStarted, ECButton pressed start.");
    const PresetOptMode mode = m_modes.beginSelect();
    const bool bound = m_extensions.selectPresetPressed(ecKey);
    m_pOrvanePresetCmd->selectPresetPressed(ecKey, bound);
    if (m_modes.takeClearStatus())
        m_modes.end(PresetOptMode::Clear);

    const auto page = quint32(m_pCommand->currentPageIndex());
    if (mode == PresetOptMode::Clear) {
        const PageKey last = pageIndexECKey();
        if (last.page != page || last.ecKey != ecKey)
            return false;
    }
    logConsumeTime("preset consume time: ECButtonPressed, setCurPageAndKey");
    setPageIndexECKey({page, ecKey});
    logConsumeTime("preset consume time: ECButton pressed end");
    return true;
}

bool PresetCommandPrivate::selectPresetRelease(const quint32& ecKey)
{
    m_extensions.call(&IPresetCommandEx::selectPresetRelease, ecKey);
    return true;
}

// ---- Modes ----------------------------------------------------------------------------------------------

bool PresetCommandPrivate::removeSelectedPresetPressed(const quint32& ecKey)
{
    endHeldClear();
    m_modes.toggle(ecKey, PresetOptMode::Clear);
    return true;
}

bool PresetCommandPrivate::savePresetPressed(const quint32& ecKey)
{
    endHeldClear();
    m_modes.toggle(ecKey, PresetOptMode::Save);
    return true;
}

// ---- Clearing all presets -------------------------------------------------------------------------------

bool PresetCommandPrivate::clearPresetsPressed(const quint32& ecKey)
{
    ecDebug(lcKeys, "Clear all presets pressed.");
    {
        const WeakDevice device = activedDevice();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_clearAllDevice = device;
    }
    m_modes.armClearAll(ecKey);
    if (m_pCommand->getVirtualConsoleMode()) {
        m_currentModule = true;
        showFramelessMessageBox(
            FramelessMessageBoxMsgType::Question, Translate::tr(Translate::TR_THE_FUNCTION_CLEARALLPRESET));
    } else {
        m_pClearAllTimer.restart(ClearAllHoldDuration);
    }
    return true;
}

bool PresetCommandPrivate::clearPresetsRelease(const quint32& ecKey)
{
    if (m_pClearAllTimer.stop())
        KeyTracing::refuse(KeyTracing::ReleasedTooSoon);
    // Remove or Save may be armed: a dialog keeps the press from this key and lets the release through.
    m_modes.endAny();
    m_modes.offClearKey(ecKey);
    return false;
}

void PresetCommandPrivate::restClearPresets(const quint32&)
{
    endHeldClear();
    m_modes.endClearAll(); // the question of the on-screen key may be open
}

void PresetCommandPrivate::endHeldClear()
{
    if (!m_pClearAllTimer.stop())
        return;
    ecWarning(
        lcKeys, "Clear all presets refused: the key went dark, or its release was dropped, during the hold.");
    m_modes.endClearAll();
}

bool PresetCommandPrivate::clearEverywhere()
{
    WeakDevice asked;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        asked = m_clearAllDevice;
    }
    if (asked.lock() != activedDevice()) {
        ecWarning(
            lcKeys, "Clear all presets refused: the device is no longer the one whose presets were meant.");
        return false;
    }
    m_extensions.clearPresetsPressed();
    m_pOrvanePresetCmd->clearPresetsPressed();
    return true;
}

void PresetCommandPrivate::slotClearAllTimeOut()
{
    // The key's release may have been dropped meanwhile, so a hold does not act under a guard that drops it.
    if (isUpgrading() || isKeypadLocked()) {
        ecWarning(
            lcKeys,
            "Clear all presets refused: the keypad was locked or an upgrade began while the key was held.");
        m_modes.end(PresetOptMode::ClearAll);
        return;
    }
    if (!clearEverywhere()) {
        m_modes.end(PresetOptMode::ClearAll);
        return;
    }
    setPageIndexECKey({quint32(m_pCommand->currentPageIndex()), Constants::InvalidECKey});
    m_modes.offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
}

void PresetCommandPrivate::slotClearPresetsPressed()
{
    m_currentModule = false;
    clearEverywhere();
}

void PresetCommandPrivate::messageBoxClosed(QMessageBox::StandardButton button)
{
    if (m_currentModule) {
        if (button == QMessageBox::Yes)
            slotClearPresetsPressed();
        endHeldClear();
        m_modes.endAny();
        m_modes.offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
    } else if (m_currentLoadToPGMModule.exchange(false)) {
        if (button == QMessageBox::Yes)
            setLoadToPGMState(LoadToPGMStatus::LoadToPGM);
    } else {
        endHeldClear();
        m_modes.offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
    }
}

// ---- Load to PGM ----------------------------------------------------------------------------------------

bool PresetCommandPrivate::loadToPGMPresetPressed(const quint32&)
{
    ecDebug(lcKeys, "loadToPGMPresetPressed.");
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Load target refused: there is no active device.");
        return false;
    }
    if (!device->deviceConfig().loadToPGMEnabled) {
        ecWarning(lcKeys, "Load target refused: the device does not allow loading to PGM.");
        return false;
    }
    if (isLoadToPGMStateEnable()) {
        setLoadToPGMState(LoadToPGMStatus::LoadToPVW);
        return true;
    }
    m_currentLoadToPGMModule = true;
    showFramelessMessageBox(
        FramelessMessageBoxMsgType::Question, Translate::tr(Translate::TR_THE_PRESET_LOAD_TO_PGM));
    return true;
}

bool PresetCommandPrivate::isLoadToPGMStateEnable() const
{
    const auto device = activedDevice();
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    if (!device || !devices)
        return false;
    const auto members = devices->groupDevices(device, true, false);
    for (auto member = members.crbegin(); member != members.crend(); ++member) {
        if (const auto last = member->lock())
            return last->loadToPGMEnable();
    }
    return false;
}

void PresetCommandPrivate::setLoadToPGMState(LoadToPGMStatus status)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Load target refused: there is no active device.");
        return;
    }
    const auto factory = [status](WeakDevice member) {
        return ParallelControl::ParallelSetLoadToPresetPGMStatus{member, status};
    };
    const auto completion = [](bool ok, const QString& error) {
        if (!ok)
            ecWarning(lcModel, "swap set failed. %s", qUtf8Printable(error));
    };
    auto* const parallel = ParallelControl::ParallelManager::instance();
    if (!parallel || !parallel->startParallelRequest(device, factory, completion))
        completion(false, QStringLiteral("The request could not be started."));
}

void PresetCommandPrivate::slotLoadToPGMUpDate()
{
    const auto config = m_pCommand->ecCommandConfig();
    const auto button =
        config ? config->findECButtonConfigByOrvaneKey(quint16(PresetCallbackType::eLoadToPgm)) : nullptr;
    if (button)
        showLoadTarget(button->ECKey);
}

void PresetCommandPrivate::showLoadTarget(const quint32& ecKey)
{
    m_painter.paint({"preset load target", ecKey}, [this, ecKey] { sendLoadTarget(ecKey); });
}

void PresetCommandPrivate::sendLoadTarget(quint32 ecKey)
{
    const bool isOn = isLoadToPGMStateEnable();
    const auto device = activedDevice();
    QString text;
    if (device && device->deviceConfig().loadToPGMEnabled)
        text = Translate::tr(isOn ? Translate::TR_THE_LOAD_TO_PGM : Translate::TR_THE_LOAD_TO_PVW);
    const auto config = m_pCommand->ecCommandConfig();
    const auto button = config ? config->findECButtonConfigByECKey(ecKey) : nullptr;
    if (button && button->pECOledCfg)
        m_pCommand->updateECOledText(button->pECOledCfg->OrvaneECKey, button->pECOledCfg->ECKey, text);
    else
        ecWarning(lcPaint, " Button oled config is nullptr");
    m_pCommand->updateECButtonColor(ecKey, isOn ? ECLEDColor::Red : ECLEDColor::Off);
}

// ---- T-Bar ----------------------------------------------------------------------------------------------

void PresetCommandPrivate::tbarChanged(const ECTBarValue& value)
{
    const quint32 previous = m_preTbarValue.exchange(value.Value);
    if (isKeypadLocked() || isTBarLocked())
        return;
    if (leavesEnd(previous, value))
        m_extensions.ecTBarChanged(value);
}

// ---- Items ----------------------------------------------------------------------------------------------

void PresetCommandPrivate::makeMissingItems()
{
    const int size = m_keys.pageSize();
    if (size <= 0)
        return;
    // At the start for every preset that most devices have; more when a device with more appears.
    const int pages = std::max(m_pCommand->maxPage(), pageCount(MaxKeyPresets, size));
    ECConsoleManager* const store = ECConsoleManager::instance();
    const auto present = [store] { return store->presetECCommandExItems().size(); };
    if (present() >= pages * size)
        return;
    m_keys.writeItems([&] {
        const auto missing = m_keys.makeItems(pages).mid(present());
        for (const auto& item : missing) {
            store->appendECCommandItem(KeyboardType::Preset, item);
            store->appendECCommandItem(KeyboardType::PresetEx, std::make_shared<ECCommandItem>(*item));
        }
    });
}

QList<std::shared_ptr<ECCommandItem>> PresetCommandPrivate::commandItems() const
{
    const auto items = m_pOrvanePresetCmd->commandItems();
    const int pageSize = m_keys.pageSize();
    if (items.isEmpty() || pageSize <= 0 || items.size() % pageSize != 0)
        ecWarning(
            lcPaint, "ECCommandItem config error...Preset config size:%d Max pageSize :%d", items.size(),
            pageSize);
    const auto device = activedDevice();
    if (const auto keypad = device ? keypadFile(*device) : nullptr)
        applyKeypadColors(items, *keypad);
    return items;
}

void PresetCommandPrivate::rememberActivedPresetKey(const BizModel::Device& device)
{
    const int pageSize = m_keys.pageSize();
    const int slot = device.activedPresetKeyNo() - 1;
    const auto button = slot >= 0 && pageSize > 0 ? m_keys.button(slot % pageSize) : nullptr;
    setPageIndexECKey(
        {quint32(m_pCommand->currentPageIndex()), button ? button->ECKey : Constants::InvalidECKey});
}

void PresetCommandPrivate::setPageIndexECKey(const PageKey& pageKey)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pageIndexECKey = pageKey;
}

PresetCommandPrivate::PageKey PresetCommandPrivate::pageIndexECKey() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pageIndexECKey;
}

} // namespace Orvane::ECProxy::Client::Internal

// The handlers of the preset group's keys, and what shows on them.
#include "presetcommand_p.h"

#include "consumetime_p.h"
#include "eccommanditem.h"
#include "ecmanager.h"
#include "modelaccess_p.h"
#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/keypad.h"
#include "bizmodel/preset.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "parallelcontrol/parallelmanager.h"

#include <algorithm>
#include <limits>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::FramelessMessageBoxMsgType;
using BizModel::Enum::Device::LoadToPGMStatus;
using BizModel::Enum::Preset::PresetOptMode;

namespace Translate = BizModel::Translate;

namespace {

/// Second argument of an LED request for a key that stays armed.
constexpr int ArmedKeyState = Flashing;

constexpr quint32 TBarBottom = 1;
constexpr quint32 TBarTop = 64;

/// Leaves a mode, with the light of the key that armed it.
void endMode(PresetOptMode mode)
{
    setPresetOperateMode(PresetOptMode::Noting);
    if (mode == PresetOptMode::Clear)
        offFunctionkeyColor(PresetCallbackType::eRemoveSelectedPresetCB);
    else if (mode == PresetOptMode::Save)
        offFunctionkeyColor(PresetCallbackType::eSavePresetCB);
}

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

/// True when the keypad file tells of the state that the active preset left.
bool isOfActivedPreset(const BizModel::Keypad& keypad, const BizModel::Device& device)
{
    const auto actived = device.activedPreset().lock();
    if (!actived)
        return false;
    const auto& loaded = keypad.keypadInfo().presetInfo;
    return loaded.lastPVWPreset == actived->fileId() || loaded.lastPGMPreset == actived->fileId();
}

/// Gives bound items the colours of the device's keypad file. The items are the caller's own.
void mergeKeypadColors(const QList<std::shared_ptr<ECCommandItem>>& items)
{
    const auto device = activedDevice();
    const auto keypad = device ? keypadFile(*device) : nullptr;
    if (!keypad || !isOfActivedPreset(*keypad, *device))
        return;
    for (const auto& item : items) {
        const qint32 buttonId = item->ecButtonIndex() + 1;
        if (!item->isBindKeyPad() || buttonId > std::numeric_limits<quint8>::max())
            continue;
        const auto color = keypad->buttonColor(quint8(buttonId));
        if (color && *color <= quint8(ECLEDColor::On))
            item->setECButtonColor(ECLEDColor(*color));
    }
}

} // namespace

PresetCommandPrivate::PresetCommandPrivate(PresetCommand* command)
    : m_pCommand(command)
    , m_pClearAllTimer([this] { slotClearAllTimeOut(); })
{
}

// ---- Preset keys ----------------------------------------------------------------------------------------

bool PresetCommandPrivate::selectPresetPressed(const quint32& ecKey)
{
    logConsumeTime("preset consume time: AllStarted, ECButton pressed start.");
    const PresetOptMode mode = presetOperateMode();
    if (mode != PresetOptMode::Clear && mode != PresetOptMode::Save)
        setPresetOperateMode(PresetOptMode::Select);
    const bool bound = m_extensions.selectPresetPressed(ecKey);
    m_pOrvanePresetCmd->selectPresetPressed(ecKey, bound);
    if (m_clearStatus.exchange(false))
        endMode(PresetOptMode::Clear);

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
    m_extensions.forEach([ecKey](IPresetCommandEx& extension) { extension.selectPresetRelease(ecKey); });
    return true;
}

bool PresetCommandPrivate::ignoreRelease(const quint32&)
{
    return false;
}

// ---- Modes ----------------------------------------------------------------------------------------------

bool PresetCommandPrivate::removeSelectedPresetPressed(const quint32& ecKey)
{
    return toggleMode(
        ecKey, PresetOptMode::Clear, PresetCallbackType::eRemoveSelectedPresetCB,
        PresetCallbackType::eSavePresetCB);
}

bool PresetCommandPrivate::savePresetPressed(const quint32& ecKey)
{
    return toggleMode(
        ecKey, PresetOptMode::Save, PresetCallbackType::eSavePresetCB,
        PresetCallbackType::eRemoveSelectedPresetCB);
}

bool PresetCommandPrivate::toggleMode(
    const quint32& ecKey, PresetOptMode mode, PresetCallbackType own, PresetCallbackType other)
{
    if (presetOperateMode() == mode) {
        setPresetOperateMode(PresetOptMode::Noting);
        offFunctionkeyColor(own);
        return true;
    }
    setPresetOperateMode(mode);
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Yellow, ArmedKeyState);
    offFunctionkeyColor(other);
    offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
    return true;
}

// ---- Clearing all presets -------------------------------------------------------------------------------

bool PresetCommandPrivate::clearPresetsPressed(const quint32& ecKey)
{
    qDebug("Clear all presets pressed.");
    setPresetOperateMode(PresetOptMode::ClearAll);
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    offFunctionkeyColor(PresetCallbackType::eRemoveSelectedPresetCB);
    offFunctionkeyColor(PresetCallbackType::eSavePresetCB);
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
    m_pClearAllTimer.stop();
    setPresetOperateMode(PresetOptMode::Noting);
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return false;
}

void PresetCommandPrivate::clearEverywhere()
{
    m_extensions.forEach([](IPresetCommandEx& extension) { extension.clearPresetsPressed(); });
    m_pOrvanePresetCmd->clearPresetsPressed();
}

void PresetCommandPrivate::slotClearAllTimeOut()
{
    clearEverywhere();
    setPageIndexECKey({quint32(m_pCommand->currentPageIndex()), Constants::InvalidECKey});
    offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
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
        endMode(presetOperateMode());
        offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
    } else if (m_currentLoadToPGMModule.exchange(false)) {
        if (button == QMessageBox::Yes)
            setLoadToPGMState(LoadToPGMStatus::LoadToPGM);
    } else {
        offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
    }
}

// ---- Load to PGM ----------------------------------------------------------------------------------------

bool PresetCommandPrivate::loadToPGMPresetPressed(const quint32&)
{
    qDebug("loadToPGMPresetPressed.");
    const auto device = activedDevice();
    if (!device || !device->deviceConfig().loadToPGMEnabled)
        return false;
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
    if (!device)
        return;
    const auto factory = [status](std::weak_ptr<BizModel::Device> member) {
        return ParallelControl::ParallelSetLoadToPresetPGMStatus{member, status};
    };
    const auto completion = [](bool ok, const QString& error) {
        if (!ok)
            qWarning("swap set failed. %s", qUtf8Printable(error));
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
    if (!button)
        return;
    const bool isOn = isLoadToPGMStateEnable();
    const auto device = activedDevice();
    QString text;
    if (device && device->deviceConfig().loadToPGMEnabled)
        text = Translate::tr(isOn ? Translate::TR_THE_LOAD_TO_PGM : Translate::TR_THE_LOAD_TO_PVW);
    if (button->pECOledCfg)
        m_pCommand->updateECOledText(button->pECOledCfg->OrvaneECKey, button->pECOledCfg->ECKey, text);
    else
        qWarning(" Button oled config is nullptr");
    m_pCommand->updateECButtonColor(button->ECKey, isOn ? ECLEDColor::Red : ECLEDColor::Off);
}

// ---- T-Bar ----------------------------------------------------------------------------------------------

void PresetCommandPrivate::tbarChanged(const ECTBarValue& value)
{
    const quint32 previous = m_preTbarValue.exchange(value.Value);
    const ECManager* manager = ECManager::instance();
    if (manager && (manager->isLockedKeypad() || manager->isLockedTBar()))
        return;
    if (leavesEnd(previous, value))
        m_extensions.forEach([value](IPresetCommandEx& extension) { extension.ecTBarChanged(value); });
}

// ---- Pages ----------------------------------------------------------------------------------------------

bool PresetCommandPrivate::pageUpRelease(const quint32& ecKey)
{
    return turnPage(&Command::pageUpRelease, ecKey);
}

bool PresetCommandPrivate::pageDownRelease(const quint32& ecKey)
{
    return turnPage(&Command::pageDownRelease, ecKey);
}

bool PresetCommandPrivate::turnPage(bool (Command::*turn)(const quint32&), const quint32& ecKey)
{
    disconnectPages(); // our own announcement is not to come back
    const bool isTurned = (m_pCommand->*turn)(ecKey);
    updatePageIndex();
    updateAllKeyboard();
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        Q_EMIT devices->signalPageChanged(m_pCommand->currentPageIndex());
    connectPages();
    return isTurned;
}

void PresetCommandPrivate::connectPages()
{
    if (const BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        QObject::connect(
            devices, &BizModel::DeviceList::signalPageChanged, m_pCommand,
            &PresetCommand::slotPageModifySelectedItems, Qt::UniqueConnection);
}

void PresetCommandPrivate::disconnectPages()
{
    if (const BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        QObject::disconnect(
            devices, &BizModel::DeviceList::signalPageChanged, m_pCommand,
            &PresetCommand::slotPageModifySelectedItems);
}

void PresetCommandPrivate::showPage(int page)
{
    m_pCommand->updateCurrentPageIndex(clamped(page));
    updatePageIndex();
    udpatePageOLEDText();
    updateAllKeyboard();
}

void PresetCommandPrivate::clampPage()
{
    const int page = m_pCommand->currentPageIndex();
    if (clamped(page) != page)
        m_pCommand->updateCurrentPageIndex(clamped(page));
}

int PresetCommandPrivate::clamped(int page) const
{
    return std::clamp(page, 0, std::max(0, m_pCommand->maxPage() - 1));
}

void PresetCommandPrivate::updatePageIndex()
{
    m_pOrvanePresetCmd->updatePageIndex();
    // Another thread may turn the page meanwhile: the last page that is told is the one that is shown.
    for (int told = -1; told != m_pCommand->currentPageIndex();) {
        told = m_pCommand->currentPageIndex();
        m_extensions.tellPage(told);
    }
}

void PresetCommandPrivate::udpatePageOLEDText()
{
    if (!m_pOrvanePresetCmd) {
        qWarning("OrvanePresetCmd is nullptr. Can not access page index.");
        return;
    }
    const auto command = presetCommand();
    if (!command) {
        qWarning("Find preset command data error.");
        return;
    }
    const auto config = command->ecCommandConfig();
    const auto button =
        config ? config->findECButtonConfigByOrvaneKey(quint16(PresetCallbackType::ePageUp)) : nullptr;
    if (!button || !button->pECOledCfg) {
        qWarning("command has invalid page button");
        return;
    }
    m_pOrvanePresetCmd->showCurrentPage(
        [&](quint32 page) { m_pCommand->updatePageOled(button->pECOledCfg->ECKey, page); });
}

void PresetCommandPrivate::updateAllKeyboard()
{
    const auto command = presetCommand();
    if (!command) {
        qWarning("Preset command is nullptr...");
        return;
    }
    // The page extension's keys are the preset command's.
    command->updateCommandKeypad(Enum::UpdateConsoleType::All);
}

QList<std::shared_ptr<ECCommandItem>> PresetCommandPrivate::commandItems() const
{
    const auto items = m_pOrvanePresetCmd->commandItems();
    const int pageSize = m_presetButtonCfgs.count();
    if (items.isEmpty() || pageSize <= 0 || items.size() % pageSize != 0)
        qWarning(
            "ECCommandItem config error...Preset config size:%d Max pageSize :%d", items.size(), pageSize);
    mergeKeypadColors(items);
    return items;
}

void PresetCommandPrivate::rememberActivedPresetKey(const BizModel::Device& device)
{
    const int pageSize = m_presetButtonCfgs.count();
    const int slot = device.activedPresetKeyNo() - 1;
    const auto button = slot >= 0 && pageSize > 0 ? m_presetButtonCfgs.at(slot % pageSize) : nullptr;
    setPageIndexECKey(
        {quint32(m_pCommand->currentPageIndex()), button ? button->ECKey : Constants::InvalidECKey});
}

void PresetCommandPrivate::setPageIndexECKey(const PageKey& pageKey)
{
    const std::lock_guard<std::mutex> lock(m_pageKeyMutex);
    m_pageIndexECKey = pageKey;
}

PresetCommandPrivate::PageKey PresetCommandPrivate::pageIndexECKey() const
{
    const std::lock_guard<std::mutex> lock(m_pageKeyMutex);
    return m_pageIndexECKey;
}

} // namespace Orvane::ECProxy::Client::Internal

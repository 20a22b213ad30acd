#include "presetcommand.h"

#include "consumetime_p.h"
#include "eccommanditem.h"
#include "ecconsolemanager.h"
#include "modelaccess_p.h"
#include "presetcommand_p.h"
#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "ec/eckeyboardconfig.h"

#include <algorithm>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

using BizModel::Enum::Preset::PresetOptMode;

/// The keys that neither have a preset nor tell the mode or the load target.
bool isDarkInMode(PresetCallbackType type, PresetOptMode mode)
{
    switch (type) {
    case PresetCallbackType::ePageUp:
    case PresetCallbackType::ePageDown:
        return true;
    case PresetCallbackType::eRemoveSelectedPresetCB:
        return mode != PresetOptMode::Clear;
    case PresetCallbackType::eClearPresetsCB:
        return mode != PresetOptMode::ClearAll;
    case PresetCallbackType::eSavePresetCB:
        return mode != PresetOptMode::Save;
    default:
        return false;
    }
}

} // namespace

} // namespace Internal

using Internal::PresetCommandPrivate;

PresetCommand::PresetCommand(QObject* parent)
    : Command(parent)
    , d(new PresetCommandPrivate(this))
{
    using Handler = bool (PresetCommandPrivate::*)(const quint32&);
    const auto bind = [this](PresetCallbackType type, Handler pressed, Handler released) {
        bindKey(
            quint32(type), std::bind(pressed, d, std::placeholders::_1),
            std::bind(released, d, std::placeholders::_1));
    };
    bind(
        PresetCallbackType::eSelectPresetCB, &PresetCommandPrivate::selectPresetPressed,
        &PresetCommandPrivate::selectPresetRelease);
    bindKey(
        quint32(PresetCallbackType::ePageUp), std::bind(&Command::pageUpPressed, this, std::placeholders::_1),
        std::bind(&PresetCommandPrivate::pageUpRelease, d, std::placeholders::_1));
    bindKey(
        quint32(PresetCallbackType::ePageDown),
        std::bind(&Command::pageDownPressed, this, std::placeholders::_1),
        std::bind(&PresetCommandPrivate::pageDownRelease, d, std::placeholders::_1));
    bind(
        PresetCallbackType::eRemoveSelectedPresetCB, &PresetCommandPrivate::removeSelectedPresetPressed,
        &PresetCommandPrivate::ignoreRelease);
    bind(
        PresetCallbackType::eClearPresetsCB, &PresetCommandPrivate::clearPresetsPressed,
        &PresetCommandPrivate::clearPresetsRelease);
    bind(
        PresetCallbackType::eSavePresetCB, &PresetCommandPrivate::savePresetPressed,
        &PresetCommandPrivate::ignoreRelease);
    bind(
        PresetCallbackType::eLoadToPgm, &PresetCommandPrivate::loadToPGMPresetPressed,
        &PresetCommandPrivate::ignoreRelease);
    d->connectPages();
}

PresetCommand::~PresetCommand()
{
    delete d;
}

// ---- The group of keys ----------------------------------------------------------------------------------

QString PresetCommand::name() const
{
    return Constants::PRESETCOMMANDNAME;
}

int PresetCommand::maxPage()
{
    const int size = pageSize();
    const auto device = Internal::activedDevice();
    return device && size > 0 ? Internal::pageCount(device->maxPresetCount(), size)
                              : PresetCommandPrivate::PagesWithoutDevice;
}

int PresetCommand::pageSize() const
{
    return d->m_presetButtonCfgs.count();
}

void PresetCommand::retranslateUi()
{
    d->udpatePageOLEDText();
    d->slotLoadToPGMUpDate();
}

QList<std::shared_ptr<ECCommandItem>> PresetCommand::commandItems() const
{
    return d->commandItems();
}

bool PresetCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    return Command::updatePageOled(oledECKey, pageIndex);
}

void PresetCommand::updateSelectModeButtonConfig()
{
    const auto config = ecCommandConfig();
    d->m_presetButtonCfgs.collect(config, quint16(PresetCallbackType::eSelectPresetCB));
    if (!config) {
        qWarning("Find preset command config error.");
        return;
    }
    makeCommandCfg(d->m_pOrvanePresetCmd.get());
    ECConsoleManager* const store = ECConsoleManager::instance();
    store->clearECCommandItems(KeyboardType::Preset);
    store->clearECCommandItems(KeyboardType::PresetEx);
    const int size = pageSize();
    if (size <= 0)
        return;
    // Keys for every preset that a device may bring when it appears later.
    const int pages = std::max(maxPage(), Internal::pageCount(Internal::MaxKeyPresets, size));
    const auto items = d->m_presetButtonCfgs.makeItems(pages);
    for (const auto& item : items) {
        store->appendECCommandItem(KeyboardType::Preset, item);
        store->appendECCommandItem(KeyboardType::PresetEx, std::make_shared<ECCommandItem>(*item));
    }
}

int PresetCommand::getMinUnusedECButtonIndex(int&) const
{
    return -1;
}

std::shared_ptr<EC::s_ECButtonConfig> PresetCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_presetButtonCfgs.at(index);
}

void PresetCommand::updateKeyboard()
{
    if (!Internal::configuredPresetCommand())
        return;
    d->updatePageIndex();
    darkenKeys([mode = Internal::presetOperateMode()](quint16 orvaneKey) {
        return Internal::isDarkInMode(PresetCallbackType(orvaneKey), mode);
    });
    if (const auto oled = findPageOled(quint16(PresetCallbackType::ePageUp)))
        showCurrentPage([&](quint32 page) { updatePageOled(oled->ECKey, page); });
    d->m_pOrvanePresetCmd->updateECCommandItems();
    d->updateAllKeyboard();
    d->slotLoadToPGMUpDate();
}

void PresetCommand::takeKeyPressed(const quint32& ecKey)
{
    d->m_extensions.forEach([ecKey](IPresetCommandEx& extension) { extension.takePressed(ecKey); });
}

void PresetCommand::cutKeyPressed(const quint32& ecKey)
{
    d->m_extensions.forEach([ecKey](IPresetCommandEx& extension) { extension.cutPressed(ecKey); });
}

bool PresetCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    return Internal::isPresetKeyReleaseAllowed(*this, ecKey);
}

bool PresetCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return isKeyOfFunction(ecKey, quint16(PresetCallbackType::eSelectPresetCB));
}

bool PresetCommand::clearStatus() const
{
    return d->m_clearStatus;
}

void PresetCommand::setClearStatus(bool armed)
{
    d->m_clearStatus = armed;
}

bool PresetCommand::makeCommandCfg(Command* command)
{
    if (!command) {
        qWarning("Find preset command data error.");
        return false;
    }
    const auto config = ecCommandConfig();
    if (!config) {
        qWarning("Find preset command config error.");
        return false;
    }
    command->setCommandConfig(config);
    return true;
}

void PresetCommand::registerPresetCommand(IPresetCommandEx* command)
{
    if (!command) {
        qWarning("pPresetCmd is null");
        return;
    }
    d->m_extensions.add(command);
}

// ---- Keys and T-Bar -------------------------------------------------------------------------------------

void PresetCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void PresetCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

void PresetCommand::slotECTBarChanged(const ECTBarValue& value)
{
    d->tbarChanged(value);
}

void PresetCommand::slotFramelessMessageBoxClosed(QMessageBox::StandardButton button)
{
    d->messageBoxClosed(button);
}

void PresetCommand::slotPageModifySelectedItems(int page)
{
    d->showPage(page);
}

// ---- The model's notifications: the page extension first, which binds the items, then the keys ------------

void PresetCommand::slotActivedDeviceChanged()
{
    d->m_pOrvanePresetCmd->slotActivedDeviceChanged();
    d->clampPage();
    updateKeyboard();
}

void PresetCommand::slotDeviceRemoved(std::shared_ptr<BizModel::Device> device)
{
    d->m_pOrvanePresetCmd->slotDeviceRemoved(device);
    d->clampPage();
    updateKeyboard();
}

void PresetCommand::slotDeviceLoadToPGMStateChanged(std::weak_ptr<BizModel::Device> device)
{
    d->m_pOrvanePresetCmd->slotDeviceLoadToPGMStateChanged(device);
    d->slotLoadToPGMUpDate();
}

void PresetCommand::slotDevicePresetAdded(
    std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Preset> preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetAdded(device, preset);
    d->updatePageIndex();
    d->udpatePageOLEDText();
    d->updateAllKeyboard();
}

void PresetCommand::slotDevicePresetRemoved(
    std::weak_ptr<BizModel::Device> device, std::shared_ptr<BizModel::Preset> preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetRemoved(device, preset);
    d->updateAllKeyboard();
}

void PresetCommand::slotDeviceDevicePresetCleared(std::weak_ptr<BizModel::Device> device)
{
    d->m_pOrvanePresetCmd->slotDeviceDevicePresetCleared(device);
    d->updateAllKeyboard();
}

void PresetCommand::slotPresetNameChanged(
    std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::File> file)
{
    d->m_pOrvanePresetCmd->slotPresetNameChanged(device, file);
    d->updatePageIndex();
    d->udpatePageOLEDText();
    d->updateAllKeyboard();
}

void PresetCommand::slotDevicePresetSelectChanged(std::weak_ptr<BizModel::Device> weakDevice)
{
    d->m_pOrvanePresetCmd->slotDevicePresetSelectChanged(weakDevice);
    if (const auto device = weakDevice.lock())
        d->rememberActivedPresetKey(*device);
    d->udpatePageOLEDText();
    updateCommandKeypad(Enum::UpdateConsoleType::Key);
}

void PresetCommand::slotDevicePresetCovered(
    std::weak_ptr<BizModel::Device> device, std::weak_ptr<BizModel::Preset> preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetCovered(device, preset);
    d->updatePageIndex();
    d->udpatePageOLEDText();
    d->updateAllKeyboard();
}

void PresetCommand::slotKeypadChanged()
{
    Internal::logConsumeTime("preset consume time:PresetCommand update Keypad start.");
    updateCommandKeypad(Enum::UpdateConsoleType::Key);
    Internal::logConsumeTime("preset consume time:PresetCommand update Keypad end.");
}

} // namespace Orvane::ECProxy::Client

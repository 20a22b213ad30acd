#include "presetcommand.h"

#include "consumetime_p.h"
#include "eccommanditem.h"
#include "ecconsolemanager.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "presetcommand_p.h"
#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "ec/eckeyboardconfig.h"

namespace Orvane::ECProxy::Client {

using Internal::PresetCommandPrivate;

PresetCommand::PresetCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<PresetCommandPrivate>(this, painter()))
{
    setKeyTable({this, d.get(), PresetCommandPrivate::keys()});
}

PresetCommand::~PresetCommand()
{
    stopPainting();
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
    return d->m_keys.pageSize();
}

void PresetCommand::retranslateUi()
{
    d->m_pages.udpatePageOLEDText();
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
    d->m_keys.collect(config);
    if (!config) {
        ecWarning(lcPaint, "Find preset command config error.");
        return;
    }
    makeCommandCfg(d->m_pOrvanePresetCmd.get());
    ECConsoleManager* const store = ECConsoleManager::instance();
    store->clearECCommandItems(KeyboardType::Preset);
    store->clearECCommandItems(KeyboardType::PresetEx);
    d->makeMissingItems();
    // Not when it is made: further commands of this name get no configuration and have no keys to turn.
    d->m_pages.connectModel();
}

int PresetCommand::getMinUnusedECButtonIndex(int&) const
{
    return -1;
}

std::shared_ptr<EC::s_ECButtonConfig> PresetCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_keys.button(index);
}

void PresetCommand::updateKeyboard()
{
    if (!ecCommandConfig()) {
        ecWarning(lcPaint, "Find preset command config error.");
        return;
    }
    d->makeMissingItems();
    d->m_pages.updatePageIndex();
    darkenMomentaryKeys();
    d->m_modes.paint();
    d->m_pages.udpatePageOLEDText();
    d->m_pOrvanePresetCmd->updateECCommandItems();
    d->m_pages.updateAllKeyboard();
    d->slotLoadToPGMUpDate();
}

void PresetCommand::takeKeyPressed(const quint32& ecKey)
{
    d->m_extensions.call(&IPresetCommandEx::takePressed, ecKey);
}

void PresetCommand::cutKeyPressed(const quint32& ecKey)
{
    d->m_extensions.call(&IPresetCommandEx::cutPressed, ecKey);
}

bool PresetCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    if (!ecCommandConfig()) {
        ecWarning(lcKeys, "Find preset command data error.");
        return false;
    }
    return Command::isAllowedKeyReleased(ecKey);
}

bool PresetCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return d->m_keys.contains(ecKey);
}

bool PresetCommand::clearStatus() const
{
    return d->m_modes.clearStatus();
}

void PresetCommand::setClearStatus(bool armed)
{
    d->m_modes.setClearStatus(armed);
}

bool PresetCommand::makeCommandCfg(Command* command)
{
    if (!command) {
        ecWarning(lcPaint, "Find preset command data error.");
        return false;
    }
    const auto config = ecCommandConfig();
    if (!config) {
        ecWarning(lcPaint, "Find preset command config error.");
        return false;
    }
    command->setCommandConfig(config);
    return true;
}

void PresetCommand::registerPresetCommand(IPresetCommandEx* command)
{
    if (!command) {
        ecWarning(lcKeys, "pPresetCmd is null");
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

// ---- The model's notifications: the page extension first, which binds the items, then the keys ------------

void PresetCommand::slotActivedDeviceChanged()
{
    d->m_pOrvanePresetCmd->slotActivedDeviceChanged();
    d->m_pages.clamp();
    updateKeyboard();
}

void PresetCommand::slotDeviceRemoved(DevicePtr device)
{
    d->m_pOrvanePresetCmd->slotDeviceRemoved(device);
    d->m_pages.clamp();
    updateKeyboard();
}

void PresetCommand::slotDeviceLoadToPGMStateChanged(WeakDevice device)
{
    d->m_pOrvanePresetCmd->slotDeviceLoadToPGMStateChanged(device);
    d->slotLoadToPGMUpDate();
}

void PresetCommand::slotDevicePresetAdded(WeakDevice device, WeakPreset preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetAdded(device, preset);
    d->m_pages.updatePageIndex();
    d->m_pages.udpatePageOLEDText();
    d->m_pages.updateAllKeyboard();
}

void PresetCommand::slotDevicePresetRemoved(WeakDevice device, PresetPtr preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetRemoved(device, preset);
    d->m_pages.updateAllKeyboard();
}

void PresetCommand::slotDeviceDevicePresetCleared(WeakDevice device)
{
    d->endHeldClear(); // the page extension darkens the key
    d->m_pOrvanePresetCmd->slotDeviceDevicePresetCleared(device);
    d->m_pages.updateAllKeyboard();
}

void PresetCommand::slotPresetNameChanged(WeakDevice device, WeakFile file)
{
    d->m_pOrvanePresetCmd->slotPresetNameChanged(device, file);
    d->m_pages.updatePageIndex();
    d->m_pages.udpatePageOLEDText();
    d->m_pages.updateAllKeyboard();
}

void PresetCommand::slotDevicePresetSelectChanged(WeakDevice weakDevice)
{
    d->m_pOrvanePresetCmd->slotDevicePresetSelectChanged(weakDevice);
    if (const auto device = weakDevice.lock())
        d->rememberActivedPresetKey(*device);
    d->m_pages.udpatePageOLEDText();
    updateCommandKeypad(Enum::UpdateConsoleType::Key);
}

void PresetCommand::slotDevicePresetCovered(WeakDevice device, WeakPreset preset)
{
    d->m_pOrvanePresetCmd->slotDevicePresetCovered(device, preset);
    d->m_pages.updatePageIndex();
    d->m_pages.udpatePageOLEDText();
    d->m_pages.updateAllKeyboard();
}

void PresetCommand::slotKeypadChanged()
{
    Internal::logConsumeTime("preset consume time:PresetCommand update Keypad start.");
    updateCommandKeypad(Enum::UpdateConsoleType::Key);
    Internal::logConsumeTime("preset consume time:PresetCommand update Keypad end.");
}

} // namespace Orvane::ECProxy::Client

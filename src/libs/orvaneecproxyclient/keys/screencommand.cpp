#include "screencommand.h"

#include "modelaccess_p.h"
#include "screencommand_p.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"

namespace Orvane::ECProxy::Client {

using Internal::ScreenCommandPrivate;

namespace {

constexpr int PageCount = 8;

using Type = ScreenCallbackType;

QString activeDeviceIp()
{
    const auto device = Internal::activedDevice();
    return device ? device->ipMacSn() : QString();
}

bool isActive(const WeakDevice& device)
{
    const auto locked = device.lock();
    return locked && locked == Internal::activedDevice();
}

} // namespace

ScreenCommand::ScreenCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<ScreenCommandPrivate>(this))
{
    setKeyTable({this, d.get(), ScreenCommandPrivate::keys()});
}

ScreenCommand::~ScreenCommand()
{
    stopPainting();
}

QString ScreenCommand::name() const
{
    return Constants::SCREENCOMMANDNAME;
}

int ScreenCommand::maxPage()
{
    return PageCount;
}

int ScreenCommand::pageSize() const
{
    return d->m_pBindings->pageSize();
}

void ScreenCommand::retranslateUi()
{
    d->updateECPageIndexOLED();
    d->updateMixType();
}

QList<std::shared_ptr<ECCommandItem>> ScreenCommand::commandItems() const
{
    return d->m_pBindings->items(activeDeviceIp());
}

bool ScreenCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const bool shown = Command::updatePageOled(oledECKey, pageIndex);
    d->repaintScreenKeys(Enum::UpdateConsoleType::All);
    return shown;
}

void ScreenCommand::updateSelectModeButtonConfig()
{
    d->m_pBindings->make(ecCommandConfig(), maxPage());
}

int ScreenCommand::getMinUnusedECButtonIndex(int& orderIndex) const
{
    return d->m_pBindings->minUnusedButtonIndex(commandItems(), orderIndex);
}

std::shared_ptr<EC::s_ECButtonConfig> ScreenCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_pBindings->button(index);
}

void ScreenCommand::updateKeyboard()
{
    d->updateKeyboard();
}

bool ScreenCommand::isAlreadyBind(const quint16& ecKey)
{
    return containsSelectedECButtonConfigByECKey(ecKey) && d->findBindingScreen(ecKey);
}

bool ScreenCommand::isTakeKeyPressed(const quint32& ecKey)
{
    return d->hasConfig() && Command::isTakeKeyPressed(ecKey);
}

bool ScreenCommand::isCutKeyPressed(const quint32& ecKey)
{
    return d->hasConfig() && Command::isCutKeyPressed(ecKey);
}

bool ScreenCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    return Command::isAllowedKeyReleased(ecKey);
}

bool ScreenCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return d->m_pBindings->contains(ecKey);
}

ECLEDColor ScreenCommand::getScreenBtnColor(int selected) const
{
    return Internal::screenKeyColor(selected != 0);
}

void ScreenCommand::setIsJump(bool) { }

// ---- Notifications ----------------------------------------------------------------------------------------

void ScreenCommand::slotActivedDeviceChanged()
{
    // Also called when the group of a device changes: the operator's page stays then.
    if (d->m_activedDeviceWatch.isAnother())
        updateCurrentPageIndex(0);
    d->updateKeyboard();
}

void ScreenCommand::slotDeviceRemoved(DevicePtr device)
{
    if (device)
        d->m_pBindings->forgetDevice(device->ipMacSn());
    d->updateKeyboard();
}

void ScreenCommand::slotActivedScreenChanged(WeakDevice, WeakScreen screen)
{
    if (!checkScreenType(screen))
        return;
    d->updateECPageIndexOLED();
    d->repaintScreenKeys(Enum::UpdateConsoleType::All);
    d->updateMixType();
    d->updateTimeFunData();
}

void ScreenCommand::slotSelectedScreensChanged(WeakDevice)
{
    d->repaintScreenKeys(Enum::UpdateConsoleType::Key);
    d->updateScreenKeyboard();
}

void ScreenCommand::slotDeviceScreenIndexChanged(WeakDevice, WeakScreen)
{
    d->repaintScreenKeys(Enum::UpdateConsoleType::All);
}

void ScreenCommand::slotDeviceScreenMoved(WeakDevice, WeakScreen, WeakScreen)
{
    d->repaintScreenKeys(Enum::UpdateConsoleType::All);
}

void ScreenCommand::slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen)
{
    // The whole page: the new screen may have taken its place from another one.
    if (isActive(device) && checkScreenType(screen))
        d->repaintScreenKeys(Enum::UpdateConsoleType::All);
}

void ScreenCommand::slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen)
{
    const auto owner = device.lock();
    if (!owner || !checkScreenType(screen))
        return;
    d->m_pBindings->forgetScreen(*owner, *screen);
    if (!isActive(owner))
        return;
    d->repaintScreenKeys(Enum::UpdateConsoleType::All);
    d->updateTimeFunData(); // it may have been the active one
}

void ScreenCommand::slotDeviceScreenBaseNameChanged(WeakDevice device, WeakScreen screen)
{
    // All labels of the page, for the page may just be turning.
    if (isActive(device) && checkScreenType(screen))
        d->repaintScreenKeys(Enum::UpdateConsoleType::OLED);
}

void ScreenCommand::slotScreenBasePGMFrozenStateChanged(WeakDevice, WeakScreen)
{
    d->updateFreezeColor();
}

void ScreenCommand::slotScreenBasePGMFTBStateChanged(WeakDevice, WeakScreen)
{
    d->updateFTBColor();
}

void ScreenCommand::slotScreenEffectChanged(WeakDevice, WeakScreen screen)
{
    const auto changed = screen.lock();
    if (!changed || changed != Internal::activedScreen())
        return;
    d->updateTimeFunData();
    d->updateMixType();
}

void ScreenCommand::slotDeviceSwapStateChanged(WeakDevice)
{
    d->updateSwapColor();
}

void ScreenCommand::slotNotifyUpdateLayer(const QList<WeakScreen>&, int)
{
    d->notifyUpdateLayer();
}

void ScreenCommand::slotScreenBasePGMEditStateChanged(WeakDevice, WeakScreen)
{
    d->updatePGMEditColor();
}

void ScreenCommand::slotECTBarChanged(const ECTBarValue& value)
{
    d->updateTBarValue(value);
    d->tbarTake(value);
}

void ScreenCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void ScreenCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

} // namespace Orvane::ECProxy::Client

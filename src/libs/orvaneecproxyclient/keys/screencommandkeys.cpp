#include "screencommand_p.h"

#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::Enum::Screen::RegularAndAUXScreens;
using BizModel::Enum::Screen::RegularScreen;

namespace {

bool isAnyScreenTaking(const BizModel::Device& device)
{
    const auto screens = device.screens(RegularAndAUXScreens);
    return std::any_of(screens.cbegin(), screens.cend(), [](const WeakScreen& weakScreen) {
        const auto screen = weakScreen.lock();
        const int state = screen ? screen->state() : BizModel::Enum::Screen::Normal;
        return state == BizModel::Enum::Screen::Taking || state == BizModel::Enum::Screen::Tbar_taking
            || state == BizModel::Enum::Screen::Cut;
    });
}

} // namespace

const std::vector<KeyRow<ScreenCommandPrivate>>& ScreenCommandPrivate::keys()
{
    using P = ScreenCommandPrivate;
    using Type = ScreenCallbackType;
    constexpr auto momentary = KeyLight::Momentary;
    constexpr auto lasting = KeyLight::Lasting;
    // A dialog that opens while a key is held must not keep it held.
    constexpr unsigned throughDialog = ReleasePassesDialog;
    static const std::vector<KeyRow<P>> s_keys{
        {Type::eSelectScreenCB, &P::selectScreenPressed, &P::ignoreRelease, NoTraits, lasting},
        {Type::ePageUp, &Command::pageUpPressed, &Command::pageUpRelease, throughDialog, momentary,
         &P::updateECPageIndexOLED},
        {Type::ePageDown, &Command::pageDownPressed, &Command::pageDownRelease, throughDialog, momentary},
        {Type::eFTBPGMCB, &P::ftbPGMPressed, &P::ignoreRelease, throughDialog, lasting, &P::updateFTBColor},
        {Type::eFreezePGMCB, &P::freezePGMPressed, &P::ignoreRelease, throughDialog, lasting,
         &P::updateFreezeColor},
        {Type::eSetPGMEdit, &P::setPGMEditPressed, &P::leaveRelease, throughDialog, lasting,
         &P::updatePGMEditColor},
        {Type::eSetSwapStatusCB, &P::setSwapStatusPressed, &P::ignoreRelease, throughDialog, lasting,
         &P::updateSwapColor},
        {Type::eSetTransitionMixTypeCB, &P::setTransitionMixTypePressed, &P::ignoreRelease, throughDialog,
         lasting, &P::updateMixType},
        {Type::eSetTransitionTimeCB, &P::setTransitionTimePressed, &P::setTransitionTimeRelease,
         throughDialog, momentary, &P::updateTimeFunData, &P::restTransitionTime},
        // The row of the up key shows both labels.
        {Type::eSetTransitionTimeReduceCB, &P::setTransitionTimeReducePressed,
         &P::setTransitionTimeReduceRelease, throughDialog, momentary, nullptr, &P::restTransitionTimeReduce},
        {Type::eMatchPGMCB, &P::matchPGMPressed, &P::matchPGMRelease, throughDialog, momentary, nullptr,
         &P::restMatchPGM},
        {Type::eCutToPGMCB, &P::cutToPGMPressed, &P::ignoreRelease, throughDialog | IsCutKey, momentary},
        {Type::eTakeToPGMCB, &P::takeToPGMPressed, &P::ignoreRelease, throughDialog | IsTakeKey, momentary},
        // Keys that do nothing are dark.
        {Type::eSetWipeCB, nullptr, nullptr, NoTraits, momentary},
        {Type::eSetFreezePVWCB, nullptr, nullptr, NoTraits, momentary},
        {Type::eNothing, nullptr, nullptr, NoTraits, momentary}};
    return s_keys;
}

ScreenPtr ScreenCommandPrivate::findBindingScreen(const quint32& ecKey) const
{
    const auto device = activedDevice();
    return device ? m_pBindings->find(device, m_pCommand->findECButtonIndex(ecKey)) : nullptr;
}

bool ScreenCommandPrivate::selectScreenPressed(const quint32& ecKey)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Actived device is nullptr");
        return false;
    }
    const int buttonIndex = m_pCommand->findECButtonIndex(ecKey);
    auto screen = m_pBindings->find(device, buttonIndex);
    if (isAnyScreenTaking(*device)) {
        ecWarning(lcKeys, "Find a screen state is not normal, Screen key pressed operation failed.");
        showStatusBarMsg(
            BizModel::StatusBarMsgType::Warning,
            BizModel::Translate::tr(BizModel::Translate::TR_THE_TAKE_WAIT));
        return false;
    }
    if (!screen) {
        // The notification of a new screen may still be on its way: its key must not create another one.
        m_pBindings->rebuild(device);
        screen = m_pBindings->find(device, buttonIndex);
    }
    if (!screen) {
        if (!device->isScreenLimited(RegularScreen))
            return createScreen(ecKey);
        showStatusBarMsg(
            BizModel::StatusBarMsgType::Warning,
            BizModel::Translate::tr(BizModel::Translate::TR_THE_SCREEN_SCREENLIMIT));
        ecWarning(lcKeys, "The number of screens exceeds the limit!");
        return false;
    }

    return toggleSelection(device, screen);
}

bool ScreenCommandPrivate::toggleSelection(const DevicePtr& device, const ScreenPtr& screen) const
{
    const auto controller = ModelControl::Device::screenModelControl(RegularScreen, device);
    const auto deviceController = ModelControl::Device::create(device);
    if (!controller || !deviceController) {
        ecWarning(lcModel, "Screen key pressed operation failed: the device has no controller.");
        return false;
    }
    if (device->isScreenSelected(screen)) {
        if (controller->cancelSelected({screen}, true))
            return true;
        ecWarning(lcModel, "Screen key pressed operation failed: the model refused to deselect the screen.");
        return false;
    }
    const auto mode =
        device->isMultiScreens() ? BizModel::SelectedType::Append : BizModel::SelectedType::Cover;
    if (!controller->setSelected({screen}, mode, true, true)) {
        ecWarning(lcModel, "Screen key pressed operation failed: the model refused to select the screen.");
        return false;
    }
    deviceController->setActivedScreen(screen);
    return true;
}

bool ScreenCommandPrivate::createScreen(const quint32& ecKey)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Actived device is nullptr");
        return false;
    }
    if (m_isCreatingScreen->exchange(true)) {
        ecWarning(lcKeys, " Screen is creating ...");
        return false;
    }
    const auto giveUp = [this] {
        hideWaitingDialog();
        *m_isCreatingScreen = false;
        return false;
    };
    if (device->onlineFlag())
        showWaitingDialog(BizModel::Translate::tr(BizModel::Translate::TR_THE_ADDSCREEN_WAIT));
    const auto screen = device->createDefaultScreen(RegularScreen);
    if (!screen) {
        ecWarning(lcModel, "Create default screen is nullptr");
        return giveUp();
    }
    const auto output = device->firstUnsedOutput();
    if (!output.expired())
        screen->addOutput(output);
    if (!reserveKey(ecKey, device, screen)) {
        ecWarning(lcKeys, " Binding screen data error... Key %u cannot take a new screen.", ecKey);
        return giveUp();
    }
    const Completion created = screenCreated(device, screen);
    auto* const manager = ModelControl::AsyncManager::instance();
    if (!manager) {
        created(false, QStringLiteral("No request manager is installed."));
        return false;
    }
    manager->startAsyncRequest(ModelControl::AsyncCreateScreen{device, {screen}, created});
    return true;
}

bool ScreenCommandPrivate::reserveKey(const quint32& ecKey, const DevicePtr& device, const ScreenPtr& screen)
{
    const int pageIndex = m_pCommand->currentPageIndex();
    const int orderIndex = m_pCommand->findECButtonOrderIndex(ecKey);
    const KeyPlace place{pageIndex * m_pCommand->pageSize() + orderIndex, orderIndex, pageIndex};
    if (!m_pBindings->itemAt(device->ipMacSn(), place))
        return false;
    screen->setUiScreenIndex(place.buttonIndex);
    return m_pBindings->reserve(device, screen, place);
}

/// Called when the model has created the screen or has failed to. That is on a thread of the model, perhaps
/// after the command is gone, so it holds what it needs.
Completion ScreenCommandPrivate::screenCreated(const DevicePtr& device, const ScreenPtr& screen) const
{
    return [bindings = m_pBindings, isCreating = m_isCreatingScreen, device = WeakDevice(device),
            ip = device->ipMacSn(), screen](bool ok, const QString& text) {
        if (ok) {
            bindings->bindReserved();
            if (const auto controller = ModelControl::Device::create(device))
                controller->setActivedScreen(screen);
        } else {
            ecWarning(lcModel, "Crate reguler screen has failed. %s", qUtf8Printable(text));
            if (!bindings->unbindReserved()) {
                const QString line = QStringLiteral("Failed to unbind，Device:%1,pRegulerScreen:%2");
                ecWarning(lcModel, "%s", qUtf8Printable(line.arg(ip).arg(screen->screenId())));
            }
        }
        hideWaitingDialog();
        *isCreating = false;
    };
}

bool ScreenCommandPrivate::hasConfig() const
{
    if (m_pCommand->ecCommandConfig())
        return true;
    ecWarning(lcKeys, "The command is null");
    return false;
}

} // namespace Orvane::ECProxy::Client::Internal

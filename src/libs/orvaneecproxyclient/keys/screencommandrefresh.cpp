#include "screencommand_p.h"

#include "consumetime_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// A burst of layer notifications that is shorter makes one repaint.
constexpr std::chrono::milliseconds LayerNotificationWindow{10};

template <typename Predicate> bool isAnySelected(const BizModel::Device& device, Predicate predicate)
{
    const auto screens = device.selectedScreen(BizModel::Enum::Screen::RegularAndAUXScreens);
    return std::any_of(screens.cbegin(), screens.cend(), [&](const std::weak_ptr<BizModel::Screen>& screen) {
        const auto locked = screen.lock();
        return locked && predicate(*locked);
    });
}

template <typename Predicate> bool isAnySelectedInGroup(const BizModel::Device& device, Predicate predicate)
{
    if (isAnySelected(device, predicate))
        return true;
    const auto* const list = BizModel::DeviceList::instance();
    const QString groupId = device.groupId();
    if (!list || groupId == BizModel::Device::defaultDeviceGroupId)
        return false;
    const auto members = list->groupDevices(groupId);
    return std::any_of(members.cbegin(), members.cend(), [&](const std::weak_ptr<BizModel::Device>& member) {
        const auto locked = member.lock();
        return locked && isAnySelected(*locked, predicate);
    });
}

/// Sends what is true until it still is afterwards: of several threads that show the same thing, none may
/// have the last word with what it has read before the others.
template <typename Read, typename Show> void showUntilTrue(Read read, Show show)
{
    auto value = read();
    for (bool isTrue = false; !isTrue;) {
        show(value);
        auto now = read();
        isTrue = now == value;
        value = now;
    }
}

/// Keys whose colour tells a state; the others are lit only while they are pressed.
bool hasLastingColor(ScreenCallbackType type)
{
    switch (type) {
    case ScreenCallbackType::eSelectScreenCB:
    case ScreenCallbackType::eFreezePGMCB:
    case ScreenCallbackType::eFTBPGMCB:
    case ScreenCallbackType::eSetTransitionMixTypeCB:
    case ScreenCallbackType::eSetSwapStatusCB:
    case ScreenCallbackType::eSetPGMEdit:
        return true;
    default:
        return false;
    }
}

} // namespace

bool isPGMFrozen(const BizModel::Device& device)
{
    return isAnySelectedInGroup(device, [](const BizModel::Screen& screen) { return screen.freeze(); });
}

bool isPGMFadedToBlack(const BizModel::Device& device)
{
    return isAnySelectedInGroup(device, [](const BizModel::Screen& screen) { return screen.FTBEnable(); });
}

bool isPGMEdited(const BizModel::Device& device)
{
    return isAnySelected(device, [](const BizModel::Screen& screen) { return screen.PGMEditEnable(); });
}

ScreenCommandPrivate::ScreenCommandPrivate(ScreenCommand* command)
    : m_pCommand(command)
    , m_pUpdateTakeTimer(LayerNotificationWindow, [this] { slotUpdateTakeScreenTimeout(); })
{
}

void ScreenCommandPrivate::updateKeyboard()
{
    darkenMomentaryKeys();
    repaintScreenKeys(Enum::UpdateConsoleType::All);
    updateScreenKeyboard();
}

void ScreenCommandPrivate::darkenMomentaryKeys()
{
    const auto config = m_pCommand->ecCommandConfig();
    if (!config)
        return;
    for (const auto& button : qAsConst(config->m_buttons)) {
        if (button && !hasLastingColor(ScreenCallbackType(button->OrvaneKey)))
            m_pCommand->updateECButtonColor(button->ECKey, ECLEDColor::Off);
    }
}

void ScreenCommandPrivate::updateScreenKeyboard()
{
    updateECPageIndexOLED();
    updateFTBColor();
    updateFreezeColor();
    updatePGMEditColor();
    updateSwapColor();
    updateMixType();
    updateTimeFunData();
}

void ScreenCommandPrivate::updateECCommandItems()
{
    const auto device = activedDevice();
    if (device && m_pCommand->ecCommandConfig()) // else the items are another command's
        m_pBindings->rebuild(device, m_pCommand->pageSize());
}

void ScreenCommandPrivate::repaintScreenKeys(Enum::UpdateConsoleType type)
{
    if (!m_pCommand->ecCommandConfig())
        return;
    updateECCommandItems();
    m_pCommand->updateCommandKeypad(type);
}

void ScreenCommandPrivate::updateECPageIndexOLED()
{
    if (!m_pCommand->ecCommandConfig())
        return;
    const auto oled = m_pCommand->findPageOled(quint16(ScreenCallbackType::ePageUp));
    if (!oled)
        return;
    showUntilTrue(
        [this] { return m_pCommand->currentPageIndex(); },
        [&](int pageIndex) {
            m_pCommand->updatePageOled(std::weak_ptr<EC::s_ECOledConfig>(oled), quint32(pageIndex));
        });
}

void ScreenCommandPrivate::updateFTBColor()
{
    showState(ScreenCallbackType::eFTBPGMCB, ECLEDColor::Green, isPGMFadedToBlack);
}

void ScreenCommandPrivate::updateFreezeColor()
{
    showState(ScreenCallbackType::eFreezePGMCB, ECLEDColor::Red, isPGMFrozen);
}

void ScreenCommandPrivate::updatePGMEditColor()
{
    showState(ScreenCallbackType::eSetPGMEdit, ECLEDColor::Green, isPGMEdited);
}

void ScreenCommandPrivate::updateSwapColor()
{
    showState(ScreenCallbackType::eSetSwapStatusCB, ECLEDColor::Green, [](const BizModel::Device& device) {
        return device.swapEnable();
    });
}

void ScreenCommandPrivate::updateMixType()
{
    updateFunctionOled(
        ScreenCallbackType::eSetTransitionMixTypeCB,
        BizModel::Translate::tr(BizModel::Translate::TR_THE_FADE));
    const auto always = [](const BizModel::Device&) { return true; };
    showState(ScreenCallbackType::eSetTransitionMixTypeCB, ECLEDColor::Green, always);
}

void ScreenCommandPrivate::showState(
    ScreenCallbackType type, ECLEDColor color, const std::function<bool(const BizModel::Device&)>& isOn)
{
    showUntilTrue(
        [&] {
            const auto device = activedDevice();
            return device && isOn(*device);
        },
        [&](bool on) { updateECButtonColor(on, type, color); });
}

void ScreenCommandPrivate::updateTimeFunData()
{
    // The texts are compared, not the times: a time that is not a number is never equal to itself.
    showUntilTrue(
        [] {
            const auto screen = activedScreen();
            return screen ? transitionTimeText(screen->switchEffectTime()) : QString();
        },
        [this](const QString& text) { updateTimeSpeedOledText(text); });
}

void ScreenCommandPrivate::updateTimeSpeedOledText(const QString& text)
{
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeCB, text);
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeReduceCB, text);
}

void ScreenCommandPrivate::showTransitionStep(bool reduce, double seconds)
{
    updateFunctionOled(
        reduce ? ScreenCallbackType::eSetTransitionTimeReduceCB : ScreenCallbackType::eSetTransitionTimeCB,
        transitionTimeText(seconds));
}

void ScreenCommandPrivate::updateECButtonColor(bool on, ScreenCallbackType type, ECLEDColor color)
{
    if (!m_pCommand->ecCommandConfig())
        return;
    if (const auto button = m_pCommand->findFunctionButton(quint16(type)))
        m_pCommand->setEcButtonLedColor(button->OrvaneECKey, button->ECKey, on, color);
    else
        qWarning(" command has invalid page button . ScreenCallbackType: %d", int(type));
}

void ScreenCommandPrivate::updateFunctionOled(ScreenCallbackType type, const QString& text)
{
    const auto button = m_pCommand->findFunctionButton(quint16(type));
    if (button && button->pECOledCfg)
        m_pCommand->updateECOledText(button->pECOledCfg->OrvaneECKey, button->pECOledCfg->ECKey, text);
}

void ScreenCommandPrivate::notifyUpdateLayer()
{
    logConsumeTime("preset consume time: Update ScreenCommand Notify Timer start.");
    m_pUpdateTakeTimer.trigger();
}

void ScreenCommandPrivate::slotUpdateTakeScreenTimeout()
{
    logConsumeTime("preset consume time: Timeout, Update ScreenCommand Notify Timer start.");
    repaintScreenKeys(Enum::UpdateConsoleType::Key);
    logConsumeTime("preset consume time: Update ScreenCommand Notify Timer end.");
}

} // namespace Orvane::ECProxy::Client::Internal

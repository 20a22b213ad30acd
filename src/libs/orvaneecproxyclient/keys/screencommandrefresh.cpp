#include "screencommand_p.h"

#include "consumetime_p.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "painter_p.h"

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
    return std::any_of(screens.cbegin(), screens.cend(), [&](const WeakScreen& screen) {
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
    return std::any_of(members.cbegin(), members.cend(), [&](const WeakDevice& member) {
        const auto locked = member.lock();
        return locked && isAnySelected(*locked, predicate);
    });
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

bool isSwapEnabled(const BizModel::Device& device)
{
    return device.swapEnable();
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
    m_pCommand->darkenMomentaryKeys();
    repaintScreenKeys(Enum::UpdateConsoleType::All);
    updateScreenKeyboard();
}

void ScreenCommandPrivate::updateScreenKeyboard()
{
    // Not showKeys(): what misses its key or label says so in the log.
    for (const auto& row : keys()) {
        const auto button = m_pCommand->findFunctionButton(row.code);
        if (row.show)
            (this->*row.show)(button ? button->ECKey : Constants::InvalidECKey);
    }
}

void ScreenCommandPrivate::updateECCommandItems()
{
    const auto device = activedDevice();
    if (device && m_pCommand->ecCommandConfig()) // else the items are another command's
        m_pBindings->rebuild(device);
}

void ScreenCommandPrivate::repaintScreenKeys(Enum::UpdateConsoleType type)
{
    if (!m_pCommand->ecCommandConfig())
        return;
    updateECCommandItems();
    m_pCommand->updateCommandKeypad(type);
}

void ScreenCommandPrivate::updateECPageIndexOLED(const quint32&)
{
    if (!m_pCommand->ecCommandConfig())
        return;
    m_pCommand->painter().paint("page label", [this] {
        const auto oled = m_pCommand->findPageOled(quint16(ScreenCallbackType::ePageUp));
        if (oled)
            m_pCommand->updatePageOled(
                std::weak_ptr<EC::s_ECOledConfig>(oled), quint32(m_pCommand->currentPageIndex()));
    });
}

void ScreenCommandPrivate::updateFTBColor(const quint32&)
{
    showState(ScreenCallbackType::eFTBPGMCB, ECLEDColor::Green, isPGMFadedToBlack);
}

void ScreenCommandPrivate::updateFreezeColor(const quint32&)
{
    showState(ScreenCallbackType::eFreezePGMCB, ECLEDColor::Red, isPGMFrozen);
}

void ScreenCommandPrivate::updatePGMEditColor(const quint32&)
{
    showState(ScreenCallbackType::eSetPGMEdit, ECLEDColor::Green, isPGMEdited);
}

void ScreenCommandPrivate::updateSwapColor(const quint32&)
{
    showState(ScreenCallbackType::eSetSwapStatusCB, ECLEDColor::Green, isSwapEnabled);
}

void ScreenCommandPrivate::updateMixType(const quint32&)
{
    m_pCommand->painter().paint("mix label", [this] {
        updateFunctionOled(
            ScreenCallbackType::eSetTransitionMixTypeCB,
            BizModel::Translate::tr(BizModel::Translate::TR_THE_FADE));
    });
    const auto always = [](const BizModel::Device&) { return true; };
    showState(ScreenCallbackType::eSetTransitionMixTypeCB, ECLEDColor::Green, always);
}

void ScreenCommandPrivate::showState(ScreenCallbackType type, ECLEDColor color, DeviceState isOn)
{
    m_pCommand->painter().paint({"state", quint64(type)}, [this, type, color, isOn] {
        const auto device = activedDevice();
        updateECButtonColor(device && isOn(*device), type, color);
    });
}

void ScreenCommandPrivate::updateTimeFunData(const quint32&)
{
    m_pCommand->painter().paint("times", [this] {
        if (const auto screen = activedScreen()) {
            updateTimeSpeedOledText(screen->switchEffectTime());
            return;
        }
        updateFunctionOled(ScreenCallbackType::eSetTransitionTimeCB, QString());
        updateFunctionOled(ScreenCallbackType::eSetTransitionTimeReduceCB, QString());
    });
}

void ScreenCommandPrivate::updateTimeSpeedOledText(double seconds)
{
    const QString text = transitionTimeText(seconds);
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
        ecWarning(lcPaint, " command has invalid page button . ScreenCallbackType: %d", int(type));
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

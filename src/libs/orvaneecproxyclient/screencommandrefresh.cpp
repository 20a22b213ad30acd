#include "screencommand_p.h"

#include "consumetime.h"
#include "ecconsolemanager.h"
#include "modelaccess.h"

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

QString transitionTimeText(double seconds)
{
    return QStringLiteral("%1").arg(seconds, 0, 'f', 1);
}

ScreenCommandPrivate::ScreenCommandPrivate(ScreenCommand* command)
    : m_pCommand(command)
    , m_updateTakeTimer(LayerNotificationWindow, [this] { slotUpdateTakeScreenTimeout(); })
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
    if (const auto device = activedDevice())
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
    int pageIndex = m_pCommand->currentPageIndex();
    for (int shown = -1; shown != pageIndex; pageIndex = m_pCommand->currentPageIndex()) {
        // Once more if the page is turned while this is under way.
        shown = pageIndex;
        m_pCommand->updatePageOled(std::weak_ptr<EC::s_ECOledConfig>(oled), quint32(pageIndex));
    }
}

void ScreenCommandPrivate::updateFTBColor()
{
    const auto device = activedDevice();
    updateECButtonColor(
        device && isPGMFadedToBlack(*device), ScreenCallbackType::eFTBPGMCB, ECLEDColor::Green);
}

void ScreenCommandPrivate::updateFreezeColor()
{
    const auto device = activedDevice();
    updateECButtonColor(device && isPGMFrozen(*device), ScreenCallbackType::eFreezePGMCB, ECLEDColor::Red);
}

void ScreenCommandPrivate::updatePGMEditColor()
{
    const auto device = activedDevice();
    updateECButtonColor(device && isPGMEdited(*device), ScreenCallbackType::eSetPGMEdit, ECLEDColor::Green);
}

void ScreenCommandPrivate::updateSwapColor()
{
    const auto device = activedDevice();
    updateECButtonColor(
        device && device->swapEnable(), ScreenCallbackType::eSetSwapStatusCB, ECLEDColor::Green);
}

void ScreenCommandPrivate::updateMixType()
{
    updateFunctionOled(
        ScreenCallbackType::eSetTransitionMixTypeCB,
        BizModel::Translate::tr(BizModel::Translate::TR_THE_FADE));
    const bool hasDevice = activedDevice() != nullptr;
    updateECButtonColor(hasDevice, ScreenCallbackType::eSetTransitionMixTypeCB, ECLEDColor::Green);
}

void ScreenCommandPrivate::updateTimeFunData()
{
    if (const auto screen = activedScreen()) {
        updateTimeSpeedOledText(screen->switchEffectTime());
        return;
    }
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeCB, QString());
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeReduceCB, QString());
}

void ScreenCommandPrivate::updateTimeSpeedOledText(double seconds)
{
    const QString text = transitionTimeText(seconds);
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeCB, text);
    updateFunctionOled(ScreenCallbackType::eSetTransitionTimeReduceCB, text);
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

void ScreenCommandPrivate::updateScreenName(const BizModel::Screen& screen)
{
    updateECCommandItems();
    const auto device = activedDevice();
    const auto item = device ? ECConsoleManager::instance()->findBindingECItem(
                          device->ipMacSn(), KeyboardType::Screen, screenObjectId(screen))
                             : nullptr;
    if (item && item->ecButtonPageIndex() == m_pCommand->currentPageIndex())
        m_pCommand->updateECOledTextByBtnECKey(quint32(item->ecButtonKey()), item->ecOledText());
}

void ScreenCommandPrivate::notifyUpdateLayer()
{
    logConsumeTime("preset consume time: Update ScreenCommand Notify Timer start.");
    m_updateTakeTimer.trigger();
}

void ScreenCommandPrivate::slotUpdateTakeScreenTimeout()
{
    logConsumeTime("preset consume time: Timeout, Update ScreenCommand Notify Timer start.");
    repaintScreenKeys(Enum::UpdateConsoleType::Key);
    logConsumeTime("preset consume time: Update ScreenCommand Notify Timer end.");
}

} // namespace Orvane::ECProxy::Client::Internal

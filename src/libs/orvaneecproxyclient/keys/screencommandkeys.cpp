#include "screencommand_p.h"

#include "ecconsolemanager.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"

#include <algorithm>
#include <cmath>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::Enum::Screen::RegularAndAUXScreens;
using BizModel::Enum::Screen::RegularScreen;
using std::chrono::milliseconds;
using WeakDevice = std::weak_ptr<BizModel::Device>;
using WeakScreen = std::weak_ptr<BizModel::Screen>;

namespace {

/// A longer transition shows the waiting dialog.
constexpr double ShortTransitionMs = 1000;
/// How long the waiting dialog outlasts the transition at most.
constexpr double WaitingDialogExtraMs = 300;

constexpr double ShortestTransition = 0.1; // seconds
constexpr double LongestTransition = 10.0;
constexpr double TransitionStep = 0.1;

constexpr int FirstRepeatMs = 350;
constexpr int RepeatSpeedUpMs = 100;
constexpr int FastestRepeatMs = 10;

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

bool takeCutEnabled(const std::shared_ptr<BizModel::Device>& device)
{
    const auto controller = ModelControl::Device::create(device);
    return controller && controller->takeCutEnabled();
}

std::shared_ptr<ModelControl::Screen> screenController(const std::shared_ptr<BizModel::Device>& device)
{
    return ModelControl::Device::screenModelControl(RegularScreen, device);
}

/// Hands a task for the device and its group to the model.
bool startParallelRequest(
    const std::shared_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
    bool waitForResult, const Completion& callback = {})
{
    auto* const manager = ParallelControl::ParallelManager::instance();
    return manager && manager->startParallelRequest(device, factory, waitForResult, nullptr, callback);
}

double inTenths(double seconds)
{
    return std::round(seconds * 10) * 0.1;
}

double stepped(double seconds, bool reduce)
{
    if (reduce)
        return inTenths(seconds) <= ShortestTransition ? LongestTransition : seconds - TransitionStep;
    return inTenths(seconds) >= LongestTransition ? ShortestTransition : seconds + TransitionStep;
}

} // namespace

// ---- The waiting dialog of a take -----------------------------------------------------------------------

int TakeWaitingDialog::show(milliseconds limit)
{
    int number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        number = m_nShown = ++m_nLast;
        m_limit = Clock::now() + limit;
        m_waitingDialogTimer.restart(limit);
    }
    showWaitingDialog(BizModel::Translate::tr(BizModel::Translate::TR_THE_TAKE_WAIT));
    return number;
}

void TakeWaitingDialog::hide(int number)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (number == 0 || m_nShown != number)
            return;
        m_nShown = 0;
        m_waitingDialogTimer.stop();
    }
    hideWaitingDialog();
}

void TakeWaitingDialog::hide()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_nShown = 0;
        m_waitingDialogTimer.stop();
    }
    hideWaitingDialog();
}

void TakeWaitingDialog::timeIsUp()
{
    int number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (Clock::now() < m_limit)
            return; // a later take has shown its own meanwhile
        number = m_nShown;
    }
    hide(number);
}

// ---- Select keys ----------------------------------------------------------------------------------------

std::shared_ptr<BizModel::Screen> ScreenCommandPrivate::findBindingScreen(const quint32& ecKey) const
{
    const auto device = activedDevice();
    return device ? m_pBindings->find(device, m_pCommand->findECButtonIndex(ecKey)) : nullptr;
}

bool ScreenCommandPrivate::selectScreenPressed(const quint32& ecKey)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("Actived device is nullptr");
        return false;
    }
    const int buttonIndex = m_pCommand->findECButtonIndex(ecKey);
    auto screen = m_pBindings->find(device, buttonIndex);
    if (isAnyScreenTaking(*device)) {
        qWarning("Find a screen state is not normal, Screen key pressed operation failed.");
        showStatusBarMsg(
            BizModel::StatusBarMsgType::Warning,
            BizModel::Translate::tr(BizModel::Translate::TR_THE_TAKE_WAIT));
        return false;
    }
    if (!screen) {
        // The news of a screen may still be on its way: its key must not make another one.
        m_pBindings->rebuild(device, m_pCommand->pageSize());
        screen = m_pBindings->find(device, buttonIndex);
    }
    if (!screen) {
        if (!device->isScreenLimited(RegularScreen))
            return createScreen(ecKey);
        showStatusBarMsg(
            BizModel::StatusBarMsgType::Warning,
            BizModel::Translate::tr(BizModel::Translate::TR_THE_SCREEN_SCREENLIMIT));
        qWarning("The number of screens exceeds the limit!");
        return false;
    }

    const auto controller = screenController(device);
    const auto deviceController = ModelControl::Device::create(device);
    if (!controller || !deviceController) {
        qWarning("Screen key pressed operation failed: the device has no controller.");
        return false;
    }
    if (device->isScreenSelected(screen))
        return controller->cancelSelected({screen}, true);
    const auto mode =
        device->isMultiScreens() ? BizModel::SelectedType::Append : BizModel::SelectedType::Cover;
    if (!controller->setSelected({screen}, mode, true, true)) {
        qWarning("Screen key pressed operation failed: the screen cannot be selected.");
        return false;
    }
    deviceController->setActivedScreen(screen);
    return true;
}

bool ScreenCommandPrivate::createScreen(const quint32& ecKey)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("Actived device is nullptr");
        return false;
    }
    if (m_isCreatingScreen->exchange(true)) {
        qWarning(" Screen is creating ...");
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
        qWarning("Create default screen is nullptr");
        return giveUp();
    }
    const auto output = device->firstUnsedOutput();
    if (!output.expired())
        screen->addOutput(output);
    if (!reserveKey(ecKey, device, screen)) {
        qWarning(" Binding screen data error... Key %u cannot take a new screen.", ecKey);
        return giveUp();
    }
    const Completion created = screenCreated(device, screen);
    auto* const manager = ModelControl::AsyncManager::instance();
    if (!manager) {
        created(false, QStringLiteral("There is nobody to create it."));
        return false;
    }
    manager->startAsyncRequest(ModelControl::AsyncCreateScreen{device, {screen}, created});
    return true;
}

bool ScreenCommandPrivate::reserveKey(
    const quint32& ecKey, const std::shared_ptr<BizModel::Device>& device,
    const std::shared_ptr<BizModel::Screen>& screen)
{
    const int pageIndex = m_pCommand->currentPageIndex();
    const int orderIndex = m_pCommand->findECButtonOrderIndex(ecKey);
    const int buttonIndex = pageIndex * m_pCommand->pageSize() + orderIndex;
    const auto item = ECConsoleManager::instance()->findEcCommandItem(
        device->ipMacSn(), KeyboardType::Screen, orderIndex, pageIndex);
    if (!item)
        return false;
    screen->setUiScreenIndex(buttonIndex);
    return m_pBindings->reserve(device, screen, *item, buttonIndex);
}

/// What happens when the model has created the screen or has given up. That is on a thread of the model,
/// perhaps when the command is gone: it holds what it needs.
Completion ScreenCommandPrivate::screenCreated(
    const std::shared_ptr<BizModel::Device>& device, const std::shared_ptr<BizModel::Screen>& screen) const
{
    return [bindings = m_pBindings, isCreating = m_isCreatingScreen, device = WeakDevice(device),
            ip = device->ipMacSn(), screen](bool ok, const QString& text) {
        if (ok) {
            bindings->bindReserved();
            if (const auto controller = ModelControl::Device::create(device))
                controller->setActivedScreen(screen);
        } else {
            qWarning("Crate reguler screen has failed. %s", qUtf8Printable(text));
            if (!bindings->unbindReserved()) {
                const QString line = QStringLiteral("Failed to unbind，Device:%1,pRegulerScreen:%2");
                qWarning("%s", qUtf8Printable(line.arg(ip).arg(screen->screenId())));
            }
        }
        hideWaitingDialog();
        *isCreating = false;
    };
}

bool ScreenCommandPrivate::isKeyOfType(const quint32& ecKey, ScreenCallbackType type) const
{
    if (!m_pCommand->ecCommandConfig()) {
        qWarning("The command is null");
        return false;
    }
    return m_pCommand->isKeyOfFunction(ecKey, quint16(type));
}

// ---- Keys that bring something to program ---------------------------------------------------------------

bool ScreenCommandPrivate::refuse(const quint32& ecKey, const char* text)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    qWarning("%s", text);
    return false;
}

bool ScreenCommandPrivate::takeToPGMPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    qDebug("Take operator begin to take.");
    const auto device = activedDevice();
    if (!device)
        return refuse(ecKey, "Take operator error: active device is nullptr.");
    if (!takeCutEnabled(device))
        return refuse(ecKey, "Take operator error:takeCutNotEnabled.");
    const auto screen = device->activedScreen().lock();
    if (!screen)
        return refuse(ecKey, "Take operator error: active screen is nullptr.");

    const double transitionMs = screen->switchEffectTime() * 1000;
    const bool isLong = transitionMs > ShortTransitionMs;
    const auto dialog = m_pTakeWaitingDialog;
    const int dialogNumber =
        isLong ? dialog->show(milliseconds(int(transitionMs + WaitingDialogExtraMs))) : 0;
    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelTakeScreen{
            each, RegularAndAUXScreens, [](bool ok, const QString& text) {
                if (!ok)
                    qWarning("Take operator error: Take failed. %s", qUtf8Printable(text));
            }};
    };
    // A dialog that is shown stays until the take has ended.
    const bool isHandedOver = startParallelRequest(
        device, task, false, [dialog, dialogNumber](bool, const QString&) { dialog->hide(dialogNumber); });
    if (!isLong || !isHandedOver)
        dialog->hide();
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return isHandedOver;
}

bool ScreenCommandPrivate::cutToPGMPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    qDebug("Take operator begin to CUT.");
    const auto device = activedDevice();
    if (!device)
        return refuse(ecKey, "Take operator error: active device is nullptr.");
    if (!takeCutEnabled(device))
        return refuse(ecKey, "Take operator error:takeCutNotEnabled.");

    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelCutScreen{
            each, RegularAndAUXScreens, [](bool ok, const QString& text) {
                if (!ok)
                    qWarning("Cut operator error: Cut failed. %s", qUtf8Printable(text));
            }};
    };
    if (!startParallelRequest(device, task, true))
        return refuse(ecKey, "Take operator error: CUT failed.");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

bool ScreenCommandPrivate::matchPGMPressed(const quint32& ecKey)
{
    qDebug("matchPGM operator begin to match PGM.");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    const auto device = activedDevice();
    if (!device)
        return refuse(ecKey, "matchPGM operator error: active device is nullptr.");
    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelMatchPGM{each, RegularAndAUXScreens};
    };
    if (!startParallelRequest(device, task, true))
        return refuse(ecKey, "matchPGM operator error: Match PGM failed.");
    return true;
}

bool ScreenCommandPrivate::matchPGMRelease(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

bool ScreenCommandPrivate::freezePGMPressed(const quint32&)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("Freeze PGM failed:The device is null.");
        return false;
    }
    const bool freeze = !isPGMFrozen(*device);
    const auto task = [freeze](const WeakDevice& each) {
        return ParallelControl::ParallelFreezeScreen{each, RegularAndAUXScreens, freeze};
    };
    if (startParallelRequest(device, task, true))
        return true;
    qWarning("Freeze PGM failed:The request was refused.");
    return false;
}

bool ScreenCommandPrivate::ftbPGMPressed(const quint32&)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("FTB PGM failed:The device is null.");
        return false;
    }
    const bool fadeToBlack = !isPGMFadedToBlack(*device);
    const auto task = [fadeToBlack](const WeakDevice& each) {
        return ParallelControl::ParallelFTBScreen{each, RegularAndAUXScreens, fadeToBlack};
    };
    if (startParallelRequest(device, task, true))
        return true;
    qWarning("FTB PGM failed:The request was refused.");
    return false;
}

bool ScreenCommandPrivate::setSwapStatusPressed(const quint32&)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("Swap failed:The device is null.");
        return false;
    }
    const bool swap = !device->swapEnable();
    const auto task = [swap](const WeakDevice& each) {
        return ParallelControl::ParallelSetSwapStatus{each, swap};
    };
    if (startParallelRequest(device, task, true))
        return true;
    qWarning("Swap failed:The request was refused.");
    return false;
}

bool ScreenCommandPrivate::setPGMEditPressed(const quint32&)
{
    const auto device = activedDevice();
    const auto controller = device ? screenController(device) : nullptr;
    if (!controller) {
        qWarning("PGM edit failed:The device is null.");
        return false;
    }
    const auto screens = device->selectedScreen(RegularScreen);
    const bool edit = std::any_of(screens.cbegin(), screens.cend(), [](const WeakScreen& weakScreen) {
        const auto screen = weakScreen.lock();
        return screen && !screen->PGMEditEnable();
    });
    if (screens.isEmpty() || !controller->updatePGMEditStatus(screens, edit)) {
        qWarning("PGM edit failed:%s", screens.isEmpty() ? "No screen is selected." : "It was refused.");
        return false;
    }
    updatePGMEditColor();
    return true;
}

// ---- Keys of the transition -----------------------------------------------------------------------------

bool ScreenCommandPrivate::setTransitionMixTypePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    const auto controller = screen ? screenController(device) : nullptr;
    if (controller && controller->updateEffectType({{screen, BizModel::EffectType::fade}}))
        return true;
    qWarning("Mix type error: %s", screen ? "The screen does not take it." : "No active screen!");
    updateMixType(); // dark without a device
    return false;
}

bool ScreenCommandPrivate::setTransitionTimePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    return updateTransitionTime(false);
}

bool ScreenCommandPrivate::setTransitionTimeReducePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    return updateTransitionTime(true);
}

bool ScreenCommandPrivate::updateTransitionTime(bool reduce)
{
    const auto device = activedDevice();
    if (!device) {
        qWarning("Effect time error: No active device!");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        qWarning("Effect time error: No active screen!");
        return false;
    }
    const double seconds = screen->switchEffectTime();
    int hold = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        m_bEffectTimeReduce = reduce;
        m_takeMilliSecTime = FirstRepeatMs;
        m_nextRepeat = Clock::now() + milliseconds(FirstRepeatMs);
        m_bRelease = false;
        hold = ++m_nHold;
        m_effectSpeed = seconds;
    }
    stepEffectTime(reduce, hold);
    return true;
}

void ScreenCommandPrivate::increaseEffectTime()
{
    repeatEffectStep(false);
}

void ScreenCommandPrivate::reduceEffectTime()
{
    repeatEffectStep(true);
}

void ScreenCommandPrivate::repeatEffectStep(bool reduce)
{
    int hold = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        if (m_bEffectTimeReduce != reduce || Clock::now() < m_nextRepeat)
            return; // a time-out of an earlier hold
        hold = m_nHold;
    }
    stepEffectTime(reduce, hold);
}

void ScreenCommandPrivate::stepEffectTime(bool reduce, int hold)
{
    double seconds = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        if (m_bRelease || m_nHold != hold)
            return; // released meanwhile, or the other key was pressed
        seconds = m_effectSpeed = stepped(m_effectSpeed, reduce);
    }
    const double shown = inTenths(seconds);
    const QString text = transitionTimeText(shown);
    qDebug("IncreaseEffectTime m_effectSpeed= :%f", seconds);
    qDebug("IncreaseEffectTime speed= :%f", shown);
    qDebug("IncreaseEffectTime speedStr= :%s", qUtf8Printable(text));
    using Type = ScreenCallbackType;
    updateFunctionOled(reduce ? Type::eSetTransitionTimeReduceCB : Type::eSetTransitionTimeCB, text);
    rearmEffectTimer(reduce, hold);
}

void ScreenCommandPrivate::rearmEffectTimer(bool reduce, int hold)
{
    {
        // The lock keeps two steps from starting the timer into each other; a release comes before or after.
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        if (!m_bRelease && m_nHold == hold) {
            const milliseconds interval(m_takeMilliSecTime);
            m_nextRepeat = Clock::now() + interval;
            (reduce ? m_effectReduceTimer : m_effectTimer).restart(interval);
            m_takeMilliSecTime = std::max(m_takeMilliSecTime - RepeatSpeedUpMs, FastestRepeatMs);
            return;
        }
        if (!m_bRelease)
            return;
    }
    updateTimeFunData(); // the step was shown after the release: back to what is true
}

bool ScreenCommandPrivate::setTransitionTimeRelease(const quint32& ecKey)
{
    bool wasHeld = false;
    double seconds = 0;
    {
        const std::lock_guard<std::mutex> lock(m_effectSpeedMutex);
        wasHeld = !m_bRelease;
        m_bRelease = true;
        seconds = inTenths(m_effectSpeed);
        m_effectTimer.stop();
        m_effectReduceTimer.stop(); // it may be the other key that repeats
    }
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    if (!wasHeld)
        return true; // its press was refused: nothing was edited

    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    const bool isRegular = screen && screen->screenType() == RegularScreen;
    const auto controller = isRegular ? screenController(device) : nullptr;
    if (controller && controller->updateEffectSpeed({{screen, seconds}}))
        return true;
    qWarning("Effect time error: The time was not changed.");
    updateTimeFunData(); // back to what is true
    return false;
}

bool ScreenCommandPrivate::setTransitionTimeReduceRelease(const quint32& ecKey)
{
    return setTransitionTimeRelease(ecKey); // one hold at a time, whichever key began it
}

} // namespace Orvane::ECProxy::Client::Internal

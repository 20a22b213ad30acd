#include "screencommand_p.h"

#include "hoststate_p.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "painter_p.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <limits>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::Enum::Screen::RegularAndAUXScreens;
using BizModel::Enum::Screen::RegularScreen;
using std::chrono::milliseconds;

namespace {

/// A longer transition shows the waiting dialog.
constexpr double ShortTransitionMs = 1000;
/// The waiting dialog's limit beyond the transition's time.
constexpr double WaitingDialogExtraMs = 300;

bool takeCutEnabled(const DevicePtr& device)
{
    const auto controller = ModelControl::Device::create(device);
    return controller && controller->takeCutEnabled();
}

std::shared_ptr<ModelControl::Screen> screenController(const DevicePtr& device)
{
    return ModelControl::Device::screenModelControl(RegularScreen, device);
}

/// Hands a task for the device and its group to the model.
bool startParallelRequest(
    const DevicePtr& device, const ParallelControl::ParallelTaskFactory& factory, bool waitForResult,
    QString* error = nullptr, const Completion& callback = {})
{
    if (auto* const manager = ParallelControl::ParallelManager::instance())
        return manager->startParallelRequest(device, factory, waitForResult, error, callback);
    ecWarning(lcModel, "No manager of parallel requests is installed.");
    return false;
}

} // namespace

/// Turns the key off and logs why. Always returns false.
bool ScreenCommandPrivate::refuse(const quint32& ecKey, const char* text)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    ecWarning(lcKeys, "%s", text);
    return false;
}

// ---- Take, cut, match -----------------------------------------------------------------------------------

bool ScreenCommandPrivate::takeToPGMPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    ecDebug(lcKeys, "Take operator begin to take.");
    const auto device = activedDevice();
    if (!device)
        return refuse(ecKey, "Take operator error: active device is nullptr.");
    if (!takeCutEnabled(device))
        return refuse(ecKey, "Take operator error:takeCutNotEnabled.");
    const auto screen = device->activedScreen().lock();
    if (!screen)
        return refuse(ecKey, "Take operator error: active screen is nullptr.");

    showTakeWaitingDialog(screen->switchEffectTime() * 1000);
    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelTakeScreen{
            each, RegularAndAUXScreens, [](bool ok, const QString& text) {
                if (!ok)
                    ecWarning(lcModel, "Take operator error: Take failed. %s", qUtf8Printable(text));
            }};
    };
    const bool isHandedOver = startParallelRequest(device, task, false);
    if (!isHandedOver)
        ecWarning(lcModel, "Take operator error: the model did not start the take.");
    hideWaitingdialog();
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return isHandedOver;
}

/// Shows the waiting dialog for the time that the model takes to start a long transition. The timer hides it
/// when that takes longer than the transition itself.
void ScreenCommandPrivate::showTakeWaitingDialog(double transitionMs)
{
    if (!(transitionMs > ShortTransitionMs))
        return;
    showWaitingDialog(BizModel::Translate::tr(BizModel::Translate::TR_THE_TAKE_WAIT));
    const double limitMs =
        std::min(transitionMs + WaitingDialogExtraMs, double(std::numeric_limits<int>::max()));
    m_pWaitingDialogTimer.restart(milliseconds(int(limitMs)));
}

void ScreenCommandPrivate::hideWaitingdialog()
{
    m_pWaitingDialogTimer.stop();
    hideWaitingDialog();
}

bool ScreenCommandPrivate::cutToPGMPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    ecDebug(lcKeys, "Take operator begin to CUT.");
    const auto device = activedDevice();
    if (!device)
        return refuse(ecKey, "Take operator error: active device is nullptr.");
    if (!takeCutEnabled(device))
        return refuse(ecKey, "Take operator error:takeCutNotEnabled.");

    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelCutScreen{
            each, RegularAndAUXScreens, [](bool ok, const QString& text) {
                if (!ok)
                    ecWarning(lcModel, "Cut operator error: Cut failed. %s", qUtf8Printable(text));
            }};
    };
    if (!startParallelRequest(device, task, true))
        return refuse(ecKey, "Take operator error: CUT failed.");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

bool ScreenCommandPrivate::matchPGMPressed(const quint32& ecKey)
{
    ecDebug(lcKeys, "matchPGM operator begin to match PGM.");
    const int press = ++m_nMatchPress;
    m_nMatchLit = press;
    showMatchKey(ecKey);
    const auto device = activedDevice();
    if (!device) {
        m_nMatchLit = 0;
        return refuse(ecKey, "matchPGM operator error: active device is nullptr.");
    }
    const auto task = [](const WeakDevice& each) {
        return ParallelControl::ParallelMatchPGM{each, RegularAndAUXScreens};
    };
    QString error;
    if (startParallelRequest(device, task, false, &error, matchEnded(ecKey, press)))
        return true;
    ecWarning(lcModel, "matchPGM operator error: Match PGM failed. %s", qUtf8Printable(error));
    return !matchPGMRelease(ecKey);
}

/// The model calls it on a thread of its own when the match has ended, perhaps after the command is gone. The
/// light is left to the GUI thread: commands are destroyed on that thread only.
Completion ScreenCommandPrivate::matchEnded(const quint32& ecKey, int press)
{
    return [self = QPointer<ScreenCommandPrivate>(this), ecKey, press](bool ok, const QString& text) {
        if (ok)
            return;
        ecWarning(lcModel, "matchPGM operator error: Match PGM failed. %s", qUtf8Printable(text));
        auto* const app = QCoreApplication::instance();
        if (!app)
            return;
        const auto show = [self, ecKey, press] {
            // The key may have been released, or pressed once more.
            int lit = press;
            if (self && self->m_nMatchLit.compare_exchange_strong(lit, 0))
                self->showMatchKey(ecKey);
        };
        if (HostState::isGuiThread())
            show();
        else
            QMetaObject::invokeMethod(app, show, Qt::QueuedConnection);
    };
}

bool ScreenCommandPrivate::matchPGMRelease(const quint32& ecKey)
{
    restMatchPGM(ecKey);
    showMatchKey(ecKey);
    return true;
}

void ScreenCommandPrivate::restMatchPGM(const quint32&)
{
    m_nMatchLit = 0;
}

/// Sends at once, on the thread that presses or releases. When a failed match turns the key off at the same
/// time on the GUI thread, a repaint follows, which shows what is so by then.
void ScreenCommandPrivate::showMatchKey(const quint32& ecKey)
{
    const auto send = [this, ecKey] {
        m_pCommand->updateECButtonColor(ecKey, m_nMatchLit == 0 ? ECLEDColor::Off : ECLEDColor::Green);
    };
    m_pCommand->painter().sendAtOnce("match", send, send);
}

// ---- Freeze, fade to black, swap, program edit ----------------------------------------------------------

/// A state of the device that a key turns on and off.
struct ScreenCommandPrivate::Toggle {
    const char* name; ///< for the log
    ToggleRequest* request;
    DeviceState isOn;
    ParallelControl::ParallelTask (*task)(const WeakDevice& device, bool on);
    /// Only freeze waits for its result: a slow model must not hold up the keys that follow.
    bool waitForResult = false;
};

bool ScreenCommandPrivate::freezePGMPressed(const quint32&)
{
    const auto task = [](const WeakDevice& device, bool on) -> ParallelControl::ParallelTask {
        return ParallelControl::ParallelFreezeScreen{device, RegularAndAUXScreens, on};
    };
    return toggle({"Freeze PGM", &m_freezeRequest, isPGMFrozen, task, true});
}

bool ScreenCommandPrivate::ftbPGMPressed(const quint32&)
{
    const auto task = [](const WeakDevice& device, bool on) -> ParallelControl::ParallelTask {
        return ParallelControl::ParallelFTBScreen{device, RegularAndAUXScreens, on};
    };
    return toggle({"FTB PGM", &m_ftbRequest, isPGMFadedToBlack, task});
}

bool ScreenCommandPrivate::setSwapStatusPressed(const quint32&)
{
    const auto task = [](const WeakDevice& device, bool on) -> ParallelControl::ParallelTask {
        return ParallelControl::ParallelSetSwapStatus{device, on};
    };
    return toggle({"Swap", &m_swapRequest, isSwapEnabled, task});
}

/// Asks the model for the opposite of the present state. The light follows the model's notification, never
/// the press.
bool ScreenCommandPrivate::toggle(const Toggle& what)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "%s failed:The device is null.", what.name);
        return false;
    }
    const auto asked = what.request->askOpposite(device, what.isOn);
    const auto ended = [asked, name = what.name](bool ok, const QString& error) {
        asked->isEnded = true;
        if (!ok)
            ecWarning(lcModel, "%s failed:The request was refused. %s", name, qUtf8Printable(error));
        return ok;
    };
    const auto task = [make = what.task, on = asked->on](const WeakDevice& each) { return make(each, on); };
    const Completion callback = what.waitForResult ? Completion() : Completion(ended);
    QString error;
    const bool isStarted = startParallelRequest(device, task, what.waitForResult, &error, callback);
    // A request with a callback ends in it; one without, or one that was not started, has ended now.
    return isStarted && !what.waitForResult ? true : ended(isStarted, error);
}

std::shared_ptr<ToggleRequest::Asked> ToggleRequest::askOpposite(const DevicePtr& device, DeviceState isOn)
{
    const auto asked = std::make_shared<Asked>();
    asked->device = device;
    for (;;) {
        // The state is read after the look at the request: one that ends in between would leave the old state
        // read and no request to reverse, and the press would ask for what is so already.
        const auto seen = last();
        const bool isUnderWay = seen && !seen->isEnded && seen->device.lock() == device;
        asked->on = isUnderWay ? !seen->on : !isOn(*device);
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pLast != seen)
            continue; // the key was pressed on another thread meanwhile
        m_pLast = asked;
        return asked;
    }
}

std::shared_ptr<ToggleRequest::Asked> ToggleRequest::last()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pLast;
}

bool ScreenCommandPrivate::setPGMEditPressed(const quint32&)
{
    const auto device = activedDevice();
    const auto controller = device ? screenController(device) : nullptr;
    if (!controller) {
        ecWarning(
            lcKeys, "PGM edit failed:%s", device ? "The device has no controller." : "The device is null.");
        return false;
    }
    const auto screens = device->selectedScreen(RegularScreen);
    const bool edit = std::any_of(screens.cbegin(), screens.cend(), [](const WeakScreen& weakScreen) {
        const auto screen = weakScreen.lock();
        return screen && !screen->PGMEditEnable();
    });
    // With no screen selected there is nothing to change, and whether the model takes the request says
    // nothing.
    if (!controller->updatePGMEditStatus(screens, edit) && !screens.isEmpty()) {
        ecWarning(lcModel, "PGM edit failed:The model refused to turn it %s.", edit ? "on" : "off");
        return false;
    }
    m_pCommand->painter().sendAtOnce(
        "edit", [&] { updateECButtonColor(edit, ScreenCallbackType::eSetPGMEdit, ECLEDColor::Green); },
        [this] { updatePGMEditColor(); });
    return true;
}

// ---- The transition -------------------------------------------------------------------------------------

bool ScreenCommandPrivate::setTransitionMixTypePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    const auto controller = screen ? screenController(device) : nullptr;
    if (controller && controller->updateEffectType({{screen, BizModel::EffectType::fade}}))
        return true;
    ecWarning(lcKeys, "Mix type error: %s", screen ? "The model refused to set it." : "No active screen!");
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
        ecWarning(lcKeys, "Effect time error: No active device!");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        ecWarning(lcKeys, "Effect time error: No active screen!");
        return false;
    }
    m_transitionTime.press(reduce, screen->switchEffectTime());
    return true;
}

bool ScreenCommandPrivate::setTransitionTimeRelease(const quint32& ecKey)
{
    const auto seconds = m_transitionTime.release();
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    if (!seconds)
        return true; // its press was refused: nothing was edited

    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    const bool isRegular = screen && screen->screenType() == RegularScreen;
    const auto controller = isRegular ? screenController(device) : nullptr;
    if (controller && controller->updateEffectSpeed({{screen, *seconds}}))
        return true;
    ecWarning(
        lcKeys, "Effect time error: The time was not changed. %s",
        !screen           ? "No active screen!"
            : !isRegular  ? "The active screen is not a regular one."
            : !controller ? "The device has no controller."
                          : "The model refused it.");
    updateTimeFunData(); // back to what is true
    return false;
}

bool ScreenCommandPrivate::setTransitionTimeReduceRelease(const quint32& ecKey)
{
    return setTransitionTimeRelease(ecKey); // one hold at a time, whichever key began it
}

void ScreenCommandPrivate::restTransitionTime(const quint32&)
{
    m_transitionTime.cancel(false);
}

void ScreenCommandPrivate::restTransitionTimeReduce(const quint32&)
{
    m_transitionTime.cancel(true);
    updateTimeFunData();
}

} // namespace Orvane::ECProxy::Client::Internal

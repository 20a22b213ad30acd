#include "functioncommand_p.h"

#include "consolerequests_p.h"
#include "hoststate_p.h"
#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "bizmodel/subcard.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "modelcontrol/asyncmanager.h"

namespace Orvane::ECProxy::Client::Internal {

using BizModel::FramelessMessageBoxMsgType;
using BizModel::SceneType;
using BizModel::StatusBarMsgType;

namespace Translate = BizModel::Translate;

namespace {

constexpr int MvrInput = 0;

/// What the console reported last. It is asked as well; its next report is too late for this key.
bool hasSignal(int input)
{
    const auto console = ConsoleRequests::installed();
    return console && console->hasDVISignal(input);
}

/// Logs why a key does nothing.
bool refuse(const char* key, const char* reason)
{
    ecWarning(lcKeys, "[locate key no response] %s key: %s.", key, reason);
    return false;
}

/// Number of layers in a scene that the cards behind the screen can show.
int layerLimit(const BizModel::Screen& screen)
{
    int limit = 0;
    const auto cards = screen.subCards();
    for (const auto& weakCard : cards) {
        if (const auto card = weakCard.lock())
            limit += card->layerCapacity();
    }
    return limit;
}

/// Scene of the first of the layers that is still there.
SceneType sceneOf(const QList<WeakLayer>& layers)
{
    for (const auto& weakLayer : layers) {
        if (const auto layer = weakLayer.lock())
            return layer->sceneType();
    }
    return SceneType::PVW;
}

/// Whether the scene has room for copies of the selected layers. Shows the user when it has not.
bool hasRoomFor(const BizModel::Screen& screen, const QList<WeakLayer>& selected)
{
    const bool isPreview = sceneOf(selected) == SceneType::PVW;
    const int present = isPreview ? screen.PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers).size()
                                  : screen.PGMLayers(BizModel::Enum::Layer::RegularAndAUXLayers).size();
    const int limit = layerLimit(screen);
    if (present + selected.size() <= limit)
        return true;
    if (isPreview)
        ecWarning(lcKeys, "Create layer by CopyAndMirror failed:Layer count is more than PVW");
    else
        ecWarning(lcKeys, "Create layer by CopyAndMirror failed:Layer count is more than PGM");
    showStatusBarMsg(
        StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_FUNCTION_LAYER_LIMIT).arg(limit));
    return false;
}

void showSaveResult(bool ok, const QString& reason)
{
    hideWaitingDialog();
    if (ok) {
        showFramelessMessageBox(
            FramelessMessageBoxMsgType::Information, Translate::tr(Translate::TR_THE_FUNCTION_SAVE_SUCCESS));
        return;
    }
    ecWarning(lcModel, "Save device data has failed. %s", qUtf8Printable(reason));
    showFramelessMessageBox(
        FramelessMessageBoxMsgType::Warning, Translate::tr(Translate::TR_THE_FUNCTION_SAVE_FAILURE));
}

} // namespace

FunctionCommandPrivate::FunctionCommandPrivate(FunctionCommand* command, Painter& painter)
    : m_pCommand(command)
    , m_painter(painter)
    , m_secondaryScreen(
          painter,
          [this](ECLEDColor color) {
              updateEcButtonColor(
                  color != ECLEDColor::Off, FunctionCallbackType::eSwitchSecondaryScreenSignalCB, color);
          })
    , m_pLockTBarTimer([this] { slotLockTBarTimeOut(); })
    , m_pLockECKeyboardTimer([this] { slotLockECKeyboardTimeOut(); })
{
}

const std::vector<KeyRow<FunctionCommandPrivate>>& FunctionCommandPrivate::keys()
{
    using Type = FunctionCallbackType;
    using P = FunctionCommandPrivate;
    static const std::vector<KeyRow<P>> rows{
        {Type::eSaveDataToDeviceCB, &P::saveDataToDevicePressed, &P::saveDataToDeviceRelease,
         ReleasePassesDialog, KeyLight::Momentary},
        {Type::eLockECTBarCB, &P::lockECTBarPressed, &P::lockECTBarRelease, ReleasePassesDialog,
         KeyLight::Lasting, &P::showTBarKey, &P::endTBarHold},
        {Type::eLockECKeyboardCB, &P::lockECKeyboardPressed, &P::lockECKeyboardRelease,
         ReleasePassesDialog | PassesKeypadLock, KeyLight::Lasting, &P::showKeypadKey, &P::endKeypadHold},
        {Type::eSwitchSecondaryScreenSignalCB, &P::switchSecondaryScreenSignalPressed,
         &P::switchSecondaryScreenSignalRelease, NoTraits, KeyLight::Lasting, &P::showMvrKey},
        {Type::eLayerCopy, &P::layerCopyPressed, &P::layerCopyRelease, ReleasePassesDialog,
         KeyLight::Momentary},
        {Type::eLayerMirCopy, &P::layerMirCopyPressed, &P::layerCopyRelease, ReleasePassesDialog,
         KeyLight::Momentary},
        {Type::eDVIInSignalChangedCB, nullptr, nullptr},
    };
    return rows;
}

void FunctionCommandPrivate::updateEcButtonColor(bool on, FunctionCallbackType type, ECLEDColor color)
{
    const auto config = m_pCommand->ecCommandConfig();
    if (!config) {
        ecWarning(lcPaint, " m_pCommand is nullptr or m_pECCommandCfg is nullptr");
        return;
    }
    const auto button = config->findECButtonConfigByOrvaneKey(quint16(type));
    if (!button) {
        ecWarning(lcPaint, " command has invalid page button");
        return;
    }
    m_pCommand->setEcButtonLedColor(button->OrvaneECKey, button->ECKey, on, color);
}

// ---- Saving ---------------------------------------------------------------------------------------------

bool FunctionCommandPrivate::saveDataToDevicePressed(const quint32& ecKey)
{
    if (HostState::hasModalWindow())
        return refuse("save", "a dialog is open");
    if (!m_isSavedFinished->exchange(false))
        return refuse("save", "the last save has not ended");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    saveDataToDevice();
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

void FunctionCommandPrivate::saveDataToDevice()
{
    const auto device = activedDevice();
    if (!device || !device->onlineFlag()) {
        refuse("save", "there is no active device, or it is offline");
        *m_isSavedFinished = true;
        return;
    }
    showWaitingDialog(Translate::tr(Translate::TR_THE_FUNCTION_SAVE_WAIT));
    // May be called when the command is gone: it uses nothing of it.
    const auto completion = [finished = m_isSavedFinished](bool ok, const QString& reason) {
        showSaveResult(ok, reason);
        *finished = true;
    };
    if (auto* requests = ModelControl::AsyncManager::instance())
        requests->startAsyncRequest(ModelControl::AsyncSaveDeviceData{device, completion});
    else
        completion(false, QStringLiteral("The model takes no requests."));
}

// ---- Locks ----------------------------------------------------------------------------------------------

bool FunctionCommandPrivate::holdPressed(const quint32& ecKey, LockKey& key)
{
    key.held = true;
    sendLight(key, [&] { m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green); });
    key.timer.restart(LockHoldDuration);
    return true;
}

bool FunctionCommandPrivate::holdRelease(const quint32& ecKey, LockKey& key)
{
    if (endHold(key))
        KeyTracing::refuse(KeyTracing::ReleasedTooSoon);
    sendLight(key, [&] {
        if (key.locked)
            return;
        key.reported = false;
        m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    });
    return true;
}

bool FunctionCommandPrivate::endHold(LockKey& key)
{
    const bool isEarly = key.timer.stop();
    key.held = false;
    return isEarly;
}

void FunctionCommandPrivate::slotLockTBarTimeOut()
{
    const bool locked = !m_bLockTBar;
    m_bLockTBar = locked;
    m_tbarKey.held = false;
    ecDebug(lcLock, "current T-Bar status is %s", locked ? "true" : "false");
    m_pCommand->lockedTBar(locked);
    sendLight(m_tbarKey, [this] { lightLockKey(m_tbarKey); });
}

void FunctionCommandPrivate::slotLockECKeyboardTimeOut()
{
    m_bLockECKeyboard = true;
    m_keypadKey.held = false;
    m_pCommand->lockedKeyPad(true);
    // Dark when the application has unlocked meanwhile.
    sendLight(m_keypadKey, [this] { lightLockKey(m_keypadKey); });
}

void FunctionCommandPrivate::followTBarLock(bool locked)
{
    if (m_bLockTBar.exchange(locked) == locked)
        return;
    endHold(m_tbarKey); // it was to toggle what has just been toggled
    sendLight(m_tbarKey, [this] { lightLockKey(m_tbarKey); });
}

void FunctionCommandPrivate::followKeypadLock(bool locked)
{
    m_keypadKey.reported = locked;
    if (!locked) {
        m_bLockECKeyboard = false;
        endHold(m_keypadKey);
    }
    sendLight(m_keypadKey, [this] { lightLockKey(m_keypadKey); });
}

void FunctionCommandPrivate::lightLockKey(const LockKey& key)
{
    updateEcButtonColor(key.isLit(), key.type, ECLEDColor::Green);
}

void FunctionCommandPrivate::sendLight(const LockKey& key, const Painter::Job& send)
{
    m_painter.sendAtOnce({"lock key", quint64(key.type)}, send, [this, &key] { lightLockKey(key); });
}

void FunctionCommandPrivate::showLight(const LockKey& key)
{
    m_painter.paint({"lock key", quint64(key.type)}, [this, &key] { lightLockKey(key); });
}

// ---- Source of the secondary screen ---------------------------------------------------------------------

bool FunctionCommandPrivate::switchSecondaryScreenSignalPressed(const quint32&)
{
    KeyTracing::refuse("the key acts when it is released");
    return true;
}

bool FunctionCommandPrivate::switchSecondaryScreenSignalRelease(const quint32&)
{
    ecDebug(lcKeys, "functionkeyboard MVR key clicked start.");
    if (HostState::isQuenor())
        return refuse("MVR", "the property \"Quenor\" is set");
    if (!hasSignal(MvrInput))
        return refuse("MVR", "DVI input 0 has no signal");
    m_secondaryScreen.exchange();
    return true;
}

// ---- Layer copies ---------------------------------------------------------------------------------------

bool FunctionCommandPrivate::copyPressed(const quint32& ecKey, const char* what, bool mirrored)
{
    if (HostState::hasModalWindow())
        return refuse(what, "a dialog is open");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    copySelectedLayers(mirrored);
    return true;
}

bool FunctionCommandPrivate::layerCopyRelease(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

void FunctionCommandPrivate::copySelectedLayers(bool mirrored)
{
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    if (!screen) {
        ecWarning(lcKeys, "Create layer by Copy failed: actived screen is null.");
        return;
    }
    const auto selected = screen->selectedLayers();
    if (selected.isEmpty()) {
        ecWarning(lcKeys, "Create layer by Copy failed: select layer is empty.");
        return;
    }
    if (!hasRoomFor(*screen, selected))
        return;
    const auto completion = [](bool ok, const QString& reason) {
        if (ok)
            return;
        ecWarning(lcModel, "Create layer by Copy failed: %s", qUtf8Printable(reason));
        showStatusBarMsg(StatusBarMsgType::Warning, reason);
    };
    if (auto* requests = ModelControl::AsyncManager::instance())
        requests->startAsyncRequest(
            ModelControl::AsyncAddCopyLayers{device, screen, selected, mirrored, completion});
    else
        ecWarning(lcModel, "Create layer by Copy failed: the model takes no requests.");
}

} // namespace Orvane::ECProxy::Client::Internal

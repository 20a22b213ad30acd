#include "functioncommand.h"

#include "eccommanditem.h"
#include "functioncommand_p.h"

#include "ec/eckeyboardconfig.h"

namespace Orvane::ECProxy::Client {

using Internal::FunctionCommandPrivate;

FunctionCommand::FunctionCommand(QObject* parent)
    : Command(parent)
    , d(new FunctionCommandPrivate(this))
{
    using Handler = bool (FunctionCommandPrivate::*)(const quint32&);
    const auto bind = [this](FunctionCallbackType type, Handler pressed, Handler released) {
        bindKey(
            quint32(type), std::bind(pressed, d, std::placeholders::_1),
            std::bind(released, d, std::placeholders::_1));
    };
    bind(
        FunctionCallbackType::eSaveDataToDeviceCB, &FunctionCommandPrivate::saveDataToDevicePressed,
        &FunctionCommandPrivate::saveDataToDeviceRelease);
    bind(
        FunctionCallbackType::eLockECTBarCB, &FunctionCommandPrivate::lockECTBarPressed,
        &FunctionCommandPrivate::lockECTBarRelease);
    bind(
        FunctionCallbackType::eLockECKeyboardCB, &FunctionCommandPrivate::lockECKeyboardPressed,
        &FunctionCommandPrivate::lockECKeyboardRelease);
    bind(
        FunctionCallbackType::eSwitchSecondaryScreenSignalCB,
        &FunctionCommandPrivate::switchSecondaryScreenSignalPressed,
        &FunctionCommandPrivate::switchSecondaryScreenSignalRelease);
    bind(
        FunctionCallbackType::eLayerCopy, &FunctionCommandPrivate::layerCopyPressed,
        &FunctionCommandPrivate::layerCopyRelease);
    bind(
        FunctionCallbackType::eLayerMirCopy, &FunctionCommandPrivate::layerMirCopyPressed,
        &FunctionCommandPrivate::layerCopyRelease);
}

FunctionCommand::~FunctionCommand()
{
    stopPainting();
    delete d;
}

QString FunctionCommand::name() const
{
    return QStringLiteral("FunctionCommand");
}

QList<std::shared_ptr<ECCommandItem>> FunctionCommand::commandItems() const
{
    return d->m_functionButtonCfgs.makeItems(1);
}

void FunctionCommand::updateSelectModeButtonConfig()
{
    d->m_functionButtonCfgs.collectFunctions(ecCommandConfig());
}

void FunctionCommand::updateKeyboard() { }

bool FunctionCommand::isLockKeyPadKey(const quint16& ecKey)
{
    return isKeyOfFunction(ecKey, quint16(FunctionCallbackType::eLockECKeyboardCB));
}

bool FunctionCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    switch (FunctionCallbackType(findOrvaneKey(ecKey))) {
    case FunctionCallbackType::eSaveDataToDeviceCB:
    case FunctionCallbackType::eLockECTBarCB:
    case FunctionCallbackType::eLockECKeyboardCB:
    case FunctionCallbackType::eLayerCopy:
    case FunctionCallbackType::eLayerMirCopy:
        return true;
    default:
        return false;
    }
}

void FunctionCommand::slotKeyboardLocked(bool locked)
{
    if (!locked)
        d->m_bLockECKeyboard = false;
    d->updateEcButtonColor(locked, FunctionCallbackType::eLockECKeyboardCB, ECLEDColor::Green);
}

void FunctionCommand::slotDVISignalChanged(QMap<int, bool> signalOfInput)
{
    d->m_secondaryScreen.follow(signalOfInput.value(0, false));
}

void FunctionCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void FunctionCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

} // namespace Orvane::ECProxy::Client

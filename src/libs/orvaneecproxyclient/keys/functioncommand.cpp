#include "functioncommand.h"

#include "functioncommand_p.h"

namespace Orvane::ECProxy::Client {

using Internal::FunctionCommandPrivate;

FunctionCommand::FunctionCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<FunctionCommandPrivate>(this, painter()))
{
    setKeyTable({this, d.get(), FunctionCommandPrivate::keys()});
}

FunctionCommand::~FunctionCommand()
{
    stopPainting();
}

QString FunctionCommand::name() const
{
    return QStringLiteral("FunctionCommand");
}

QList<std::shared_ptr<ECCommandItem>> FunctionCommand::commandItems() const
{
    return d->m_keys.items();
}

void FunctionCommand::updateSelectModeButtonConfig()
{
    d->m_keys.make(ecCommandConfig(), 1);
}

void FunctionCommand::updateKeyboard() { }

void FunctionCommand::showLights()
{
    showKeys();
}

void FunctionCommand::slotTbarLocked(bool locked)
{
    d->followTBarLock(locked);
}

void FunctionCommand::slotKeyboardLocked(bool locked)
{
    d->followKeypadLock(locked);
}

void FunctionCommand::slotDVISignalChanged(QMap<int, bool> signalOfInput)
{
    d->followDVISignal(signalOfInput.value(0, false));
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

#include "lockcontrol.h"

#include "ecmanager.h"

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECManager;

void setKeypadLocked(bool locked)
{
    ECManager* const manager = ECManager::instance();
    if (locked)
        manager->lockKeypad();
    else
        manager->unlockKeypad();
    // The requests themselves tell nobody: whoever makes them does.
    Q_EMIT manager->signalKeyboardLocked(manager->isLockedKeypad());
}

void setTBarLocked(bool locked)
{
    ECManager* const manager = ECManager::instance();
    if (locked)
        manager->lockTBar();
    else
        manager->unlockTBar();
    Q_EMIT manager->signalTbarLocked(manager->isLockedTBar());
}

} // namespace Orvane::ConsoleHost

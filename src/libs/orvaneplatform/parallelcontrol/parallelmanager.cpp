#include "parallelcontrol/parallelmanager.h"

#include "installed_p.h"

namespace Orvane::ParallelControl {

namespace {
Internal::Installed<ParallelManager> installedManager;
}

ParallelManager::ParallelManager()
{
    installedManager.install(this);
}

ParallelManager::~ParallelManager()
{
    installedManager.uninstall(this);
}

ParallelManager* ParallelManager::instance()
{
    return installedManager.get();
}

} // namespace Orvane::ParallelControl

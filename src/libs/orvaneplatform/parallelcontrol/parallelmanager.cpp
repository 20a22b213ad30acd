#include "parallelcontrol/parallelmanager.h"

#include "installed_p.h"

#include <utility>

namespace Orvane::ParallelControl {

namespace {
Internal::Installed<ParallelManager> installedManager(
    "ParallelManager", "take, cut, match, freeze, FTB, swap and the load target do nothing");
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

bool ParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, Completion completion,
    int)
{
    return startParallelRequest(device, factory, false, nullptr, std::move(completion));
}

} // namespace Orvane::ParallelControl

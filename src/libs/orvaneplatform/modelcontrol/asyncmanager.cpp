#include "modelcontrol/asyncmanager.h"

#include "installed_p.h"

namespace Orvane::ModelControl {

namespace {
Internal::Installed<AsyncManager> installedManager(
    "AsyncManager", "creating screens, clearing layers and presets, copies and saving do nothing");
}

AsyncManager::AsyncManager()
{
    installedManager.install(this);
}

AsyncManager::~AsyncManager()
{
    installedManager.uninstall(this);
}

AsyncManager* AsyncManager::instance()
{
    return installedManager.get();
}

} // namespace Orvane::ModelControl

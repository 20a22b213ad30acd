#include "bizmodel/resourcecheck.h"

#include "bizmodel/screen.h"
#include "installed_p.h"

namespace Orvane::BizModel {

namespace {
Internal::Installed<ResourceCheck> installedCheck("ResourceCheck", "resources always count as enough");
}

ResourceCheck::ResourceCheck()
{
    installedCheck.install(this);
}

ResourceCheck::~ResourceCheck()
{
    installedCheck.uninstall(this);
}

bool ResourceCheck::CheckOperationResources(const std::shared_ptr<Screen>& screen, const LayerRects& rects)
{
    if (!screen)
        return false;
    return CheckOperationResources(screen, rects, screen->outputs(), SceneType::PVW, {});
}

bool ResourceCheck::CheckOperationResources(
    const std::shared_ptr<Screen>& screen, const LayerRects& rects,
    const QList<std::weak_ptr<Output>>& outputs, SceneType scene, const std::weak_ptr<Layer>& layer)
{
    const ResourceCheck* check = installedCheck.get();
    if (!check)
        return screen != nullptr; // resources are always enough
    return screen && check->checkResources(screen, rects, outputs, scene, layer);
}

} // namespace Orvane::BizModel

#include "memoryresourcecheck.h"

#include "layers.h"
#include "operationtext.h"

#include <utility>

namespace Orvane::MemoryModel {

MemoryResourceCheck::MemoryResourceCheck(std::shared_ptr<ModelHub> hub)
    : m_pHub(std::move(hub))
{
}

bool MemoryResourceCheck::checkResources(
    const std::shared_ptr<BizModel::Screen>& screen, const LayerRects& rects,
    const QList<std::weak_ptr<BizModel::Output>>& outputs, BizModel::SceneType scene,
    const std::weak_ptr<BizModel::Layer>& layer) const
{
    QList<std::weak_ptr<BizModel::Layer>> named;
    for (const auto& rect : rects)
        named += rect.first;
    const QString arguments =
        QStringLiteral("%1 scene=%2 %3").arg(screenText(*screen), sceneText(scene), layersText(named));
    if (m_pHub->operations.perform(Operation::CheckOperationResources, arguments))
        return false;
    const auto own = std::dynamic_pointer_cast<MemoryScreen>(screen);
    const std::shared_ptr<MemoryDevice> device = own ? ownObject<MemoryDevice>(own->device()) : nullptr;
    if (!device)
        return false;
    QList<PlannedWindow> planned;
    for (const auto& rect : rects) {
        if (const auto present = ownObject<MemoryLayer>(rect.first))
            planned += PlannedWindow{present, rect.second};
    }
    QList<std::shared_ptr<MemoryOutput>> places;
    for (const std::weak_ptr<BizModel::Output>& output : outputs) {
        if (const auto present = ownObject<MemoryOutput>(output))
            places += present;
    }
    return hasResources(Guard(*m_pHub), *device, own, planned, places, scene, ownObject<MemoryLayer>(layer));
}

} // namespace Orvane::MemoryModel

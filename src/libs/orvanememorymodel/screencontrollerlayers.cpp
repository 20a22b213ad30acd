#include "screencontroller.h"

#include "layers.h"
#include "operationtext.h"

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::LayerType;
using BizModel::SceneType;

std::shared_ptr<BizModel::Layer> ScreenController::addLayer(
    const std::weak_ptr<BizModel::Screen>& screen, LayerType type, SceneType scene, int sourceId,
    int sourceType, const QRect& window)
{
    const QString arguments = QStringLiteral("%1 type=%2 scene=%3 source=%4:%5 %6")
                                  .arg(screenText(screen))
                                  .arg(int(type))
                                  .arg(sceneText(scene))
                                  .arg(sourceType)
                                  .arg(sourceId)
                                  .arg(windowText(window));
    if (!start(Operation::AddLayer, arguments))
        return nullptr;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> owner = device(change);
    const std::shared_ptr<MemoryScreen> present = this->screen(change, screen);
    const LayerType fitting = m_type == ScreenType::AUXScreen ? LayerType::AUX : LayerType::Regular;
    if (!present || present->screenType() != m_type || type != fitting
        || sourceType != BizModel::SourceType::Input)
        return nullptr;
    const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(quint32(sourceId));
    if (!input)
        return nullptr;
    LayerRecord record;
    record.type = type;
    record.inputId = input->interfaceId();
    record.window = window;
    record.capacity = newLayerCapacity(change, *owner, *input);
    QString error;
    return MemoryModel::addLayer(change, *owner, present, scene, record, error);
}

bool ScreenController::removeLayers(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
    QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed)
{
    const QString arguments = screenText(screen) + QLatin1Char(' ') + layersText(layers);
    const auto failure = m_pHub->operations.perform(
        Operation::RemoveLayers, deviceText(m_pDevice) + QLatin1Char(' ') + arguments);
    Change change(*m_pHub);
    const std::shared_ptr<MemoryScreen> present = this->screen(change, screen);
    MemoryScreen::Layers removed;
    bool ok = true;
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        const auto layer = ownObject<MemoryLayer>(each);
        if (!layer)
            continue;
        const SceneType scene = layer->data(change).scene;
        QString error = failure.value_or(QString());
        if (!failure && (!present || !present->data(change).layers(scene).contains(layer)))
            error = QStringLiteral("The layer is gone.");
        else if (!failure && isSceneEditable(change, *present, scene, error))
            removed += layer;
        if (error.isEmpty())
            continue;
        failed += {BizModel::s_ScreenLayerId{layer->screenId(), scene, layer->layerId()}, error};
        ok = false;
    }
    if (present)
        MemoryModel::removeLayers(change, present, removed);
    return ok;
}

bool ScreenController::topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::TopZOrder, screen, layers, [](auto& scene, const auto& marked) {
        std::stable_partition(
            scene.begin(), scene.end(), [&marked](const auto& layer) { return !marked.contains(layer); });
    });
}

bool ScreenController::incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::IncrZOrder, screen, layers, [](auto& scene, const auto& marked) {
        for (int i = scene.size() - 2; i >= 0; --i) {
            if (marked.contains(scene[i]) && !marked.contains(scene[i + 1]))
                scene.swapItemsAt(i, i + 1);
        }
    });
}

bool ScreenController::bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::BottomZOrder, screen, layers, [](auto& scene, const auto& marked) {
        std::stable_partition(
            scene.begin(), scene.end(), [&marked](const auto& layer) { return marked.contains(layer); });
    });
}

bool ScreenController::decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::DecrZOrder, screen, layers, [](auto& scene, const auto& marked) {
        for (int i = 1; i < scene.size(); ++i) {
            if (marked.contains(scene[i]) && !marked.contains(scene[i - 1]))
                scene.swapItemsAt(i, i - 1);
        }
    });
}

bool ScreenController::reorder(
    Operation operation, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, Reorder order)
{
    if (!start(operation, screenText(screen) + QLatin1Char(' ') + layersText(layers)))
        return false;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryScreen> present = this->screen(change, screen);
    if (!present || layers.isEmpty())
        return false;
    MemoryScreen::Layers marked;
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        const auto layer = ownObject<MemoryLayer>(each);
        QString error;
        if (!layer || !present->data(change).layers(layer->data(change).scene).contains(layer)
            || !isSceneEditable(change, *present, layer->data(change).scene, error))
            return false;
        marked += layer;
    }
    order(present->data(change).pgm, marked);
    order(present->data(change).pvw, marked);
    change.markChanged();
    return true;
}

} // namespace Orvane::MemoryModel

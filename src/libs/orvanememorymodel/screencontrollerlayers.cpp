#include "screencontroller.h"

#include "bridge/layerorder_p.h"
#include "layers.h"
#include "operationtext.h"

#include <QtDebug>

#include <algorithm>
#include <utility>

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
    const LayerType fitting = m_type == ScreenType::AUXScreen ? LayerType::AUX : LayerType::Regular;
    if (!start(Operation::AddLayer, arguments) || type != fitting
        || sourceType != BizModel::SourceType::Input)
        return nullptr;
    LayerRecord record;
    record.type = type;
    record.inputId = quint32(sourceId);
    record.window = window;
    LayerJob job;
    {
        // Tried and undone, so that the processor hears only of what the model accepts.
        Change trial(*m_pHub);
        const auto layer = makeLayer(trial, screen, scene, record);
        if (!layer)
            return nullptr;
        const std::shared_ptr<MemoryScreen> present = this->screen(trial, screen);
        job = jobOf(trial, *present, *layer);
        MemoryModel::removeLayers(trial, present, {layer});
        trial.forgetAnnouncements();
    }
    QString error;
    if (!m_processor.addLayer(job, error)) {
        qWarning("The processor has refused a new layer: %s", qUtf8Printable(error));
        return nullptr;
    }
    const auto layer = [&] {
        Change change(*m_pHub);
        return makeLayer(change, screen, scene, record);
    }();
    if (!layer)
        m_processor.removeLayer(job, error); // the model has changed meanwhile
    return layer;
}

std::shared_ptr<MemoryLayer> ScreenController::makeLayer(
    Change& change, const std::weak_ptr<BizModel::Screen>& screen, SceneType scene, LayerRecord record) const
{
    const std::shared_ptr<MemoryDevice> owner = device(change);
    const std::shared_ptr<MemoryScreen> present = this->screen(change, screen);
    const auto input = owner ? owner->data(change).inputs.value(record.inputId) : nullptr;
    if (!present || present->screenType() != m_type || !input)
        return nullptr;
    record.capacity = newLayerCapacity(change, *owner, *input);
    QString error;
    return MemoryModel::addLayer(change, *owner, present, scene, record, error);
}

bool ScreenController::removeLayers(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
    QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed)
{
    const QString arguments = screenText(screen) + QLatin1Char(' ') + layersText(layers);
    QString failure;
    const bool isAccepted = start(Operation::RemoveLayers, arguments, &failure);
    QList<std::pair<std::shared_ptr<MemoryLayer>, LayerJob>> planned;
    bool ok = true;
    {
        const Guard guard(*m_pHub);
        const std::shared_ptr<const MemoryScreen> present = this->screen(guard, screen);
        for (const std::weak_ptr<BizModel::Layer>& each : layers) {
            const auto layer = ownObject<MemoryLayer>(each);
            if (!layer)
                continue;
            const SceneType scene = std::as_const(*layer).data(guard).scene;
            QString error = failure;
            if (isAccepted && (!present || !present->data(guard).layers(scene).contains(layer)))
                error = QStringLiteral("The layer is gone.");
            else if (isAccepted && isSceneEditable(guard, *present, scene, error))
                planned += {layer, jobOf(guard, *present, *layer)};
            if (error.isEmpty())
                continue;
            failed += {BizModel::s_ScreenLayerId{layer->screenId(), scene, layer->layerId()}, error};
            ok = false;
        }
    }
    MemoryScreen::Layers removed;
    for (const auto& [layer, job] : std::as_const(planned)) {
        QString error;
        if (m_processor.removeLayer(job, error)) {
            removed += layer;
            continue;
        }
        failed += {BizModel::s_ScreenLayerId{job.screen.id, job.scene, job.layer}, error};
        ok = false;
    }
    Change change(*m_pHub);
    if (const std::shared_ptr<MemoryScreen> present = this->screen(change, screen))
        MemoryModel::removeLayers(change, present, removed);
    return ok;
}

bool ScreenController::topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::TopZOrder, screen, layers, &Bridge::Internal::moveToFront);
}

bool ScreenController::incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::IncrZOrder, screen, layers, &Bridge::Internal::stepToFront);
}

bool ScreenController::bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::BottomZOrder, screen, layers, &Bridge::Internal::moveToBack);
}

bool ScreenController::decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers)
{
    return reorder(Operation::DecrZOrder, screen, layers, &Bridge::Internal::stepToBack);
}

bool ScreenController::reorder(
    Operation operation, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, Reorder order)
{
    if (!start(operation, screenText(screen) + QLatin1Char(' ') + layersText(layers)))
        return false;
    struct Scene {
        SceneType type;
        QList<quint32> order;
    };
    QList<Scene> changed;
    MemoryScreen::Layers marked;
    QString device;
    ScreenKey key;
    {
        const Guard guard(*m_pHub);
        marked = editable(guard, screen, layers);
        if (marked.isEmpty())
            return false;
        const std::shared_ptr<MemoryScreen> present = this->screen(guard, screen);
        device = std::as_const(*this->device(guard)).data(guard).ipMacSn;
        key = present->key();
        for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
            const MemoryScreen::Layers& before = std::as_const(*present).data(guard).layers(scene);
            MemoryScreen::Layers after = before;
            order(after, marked);
            if (after == before)
                continue;
            changed += {scene, {}};
            for (const std::shared_ptr<MemoryLayer>& layer : std::as_const(after))
                changed.last().order += layer->layerId();
        }
    }
    for (const Scene& scene : std::as_const(changed)) {
        QString error;
        if (!m_processor.orderLayers(device, key, scene.type, scene.order, error)) {
            qWarning("The processor has refused an order of layers: %s", qUtf8Printable(error));
            return false;
        }
    }
    Change change(*m_pHub);
    const std::shared_ptr<MemoryScreen> present = this->screen(change, screen);
    if (!present)
        return false;
    order(present->data(change).pgm, marked);
    order(present->data(change).pvw, marked);
    change.markChanged();
    return true;
}

MemoryScreen::Layers ScreenController::editable(
    const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) const
{
    MemoryScreen::Layers found;
    const std::shared_ptr<const MemoryScreen> present = find(guard, screen, layers, found);
    const bool areEditable = std::all_of(found.cbegin(), found.cend(), [&](const auto& layer) {
        QString error;
        return present && isSceneEditable(guard, *present, std::as_const(*layer).data(guard).scene, error);
    });
    return areEditable ? found : MemoryScreen::Layers();
}

} // namespace Orvane::MemoryModel

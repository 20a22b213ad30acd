#include "layercontroller.h"

#include "layers.h"
#include "operationtext.h"

#include <QtDebug>

#include <utility>

namespace Orvane::MemoryModel {

using BizModel::SceneType;

LayerController::LayerController(const ControllerParts& parts)
    : ControllerParts(parts)
{
}

bool LayerController::setSelected(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
    bool notify)
{
    const QString arguments = QStringLiteral("%1 %2 mode=%3 notify=%4")
                                  .arg(screenText(screen), layersText(layers))
                                  .arg(int(mode))
                                  .arg(int(notify));
    if (!start(Operation::SetLayersSelected, arguments))
        return false;
    Change change(*m_pHub);
    MemoryScreen::Layers wanted;
    const std::shared_ptr<MemoryScreen> present = find(change, screen, layers, wanted);
    if (!present)
        return false;
    setSelectedLayers(change, present, wanted, mode == BizModel::SelectedType::Append, notify);
    return true;
}

bool LayerController::cancelSelected(
    const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify)
{
    const QString arguments =
        QStringLiteral("%1 %2 notify=%3").arg(screenText(screen), layersText(layers)).arg(int(notify));
    if (!start(Operation::CancelLayersSelected, arguments))
        return false;
    Change change(*m_pHub);
    MemoryScreen::Layers wanted;
    const std::shared_ptr<MemoryScreen> present = find(change, screen, layers, wanted);
    if (!present)
        return false;
    bool changed = false;
    for (const std::shared_ptr<MemoryLayer>& layer : std::as_const(wanted))
        changed |= std::exchange(layer->data(change).selected, false);
    if (changed)
        announceSelectedLayers(change, present, notify);
    return true;
}

bool LayerController::updateWindow(const std::weak_ptr<BizModel::Layer>& layer, const QRect& window)
{
    const QString arguments = layersText({layer}) + QLatin1Char(' ') + windowText(window);
    if (!start(Operation::UpdateWindow, arguments))
        return false;
    const auto present = ownObject<MemoryLayer>(layer);
    const auto move = [&](Change& change) {
        const std::shared_ptr<MemoryScreen> screen = screenOf(change, present);
        QString error;
        return screen && moveLayer(change, screen, present, window, error) ? screen : nullptr;
    };
    LayerJob job;
    {
        // Tried and undone, so that the processor hears only of what the model accepts.
        Change trial(*m_pHub);
        const QRect before = present ? present->data(trial).window : QRect();
        const std::shared_ptr<MemoryScreen> screen = move(trial);
        if (!screen)
            return false;
        job = jobOf(trial, *screen, *present);
        present->data(trial).window = before;
        trial.forgetAnnouncements();
    }
    QString error;
    if (!m_processor.moveLayer(job, error)) {
        qWarning("The processor has refused a layer's window: %s", qUtf8Printable(error));
        return false;
    }
    Change change(*m_pHub);
    return move(change) != nullptr;
}

bool LayerController::bindSource(const Layers& layers, quint32 sourceId, int sourceType)
{
    const QString arguments =
        layersText(layers) + QStringLiteral(" source=%1:%2").arg(sourceType).arg(sourceId);
    if (!start(Operation::BindSource, arguments) || sourceType != BizModel::SourceType::Input)
        return false;
    QList<std::pair<std::shared_ptr<MemoryLayer>, LayerJob>> planned;
    {
        Change trial(*m_pHub);
        const std::shared_ptr<MemoryDevice> device = this->device(trial);
        const auto input = device ? device->data(trial).inputs.value(sourceId) : nullptr;
        MemoryScreen::Layers editable;
        for (const std::weak_ptr<BizModel::Layer>& each : layers) {
            const auto layer = ownObject<MemoryLayer>(each);
            const std::shared_ptr<MemoryScreen> screen = screenOf(trial, layer);
            QString error;
            if (!screen || !isSceneEditable(trial, *screen, layer->data(trial).scene, error))
                continue;
            editable += layer;
            planned += {layer, jobOf(trial, *screen, *layer)};
            planned.last().second.input = sourceId;
        }
        if (!input || !canBindLayers(trial, *device, editable, *input))
            return false;
    }
    MemoryScreen::Layers bound;
    for (const auto& [layer, job] : std::as_const(planned)) {
        QString error;
        if (m_processor.bindSource(job, error))
            bound += layer;
        else
            qWarning("The processor has refused a layer's source: %s", qUtf8Printable(error));
    }
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = this->device(change);
    const auto input = device ? device->data(change).inputs.value(sourceId) : nullptr;
    return input && bindLayers(change, *device, bound, *input) && !layers.isEmpty()
        && bound.size() == layers.size();
}

} // namespace Orvane::MemoryModel

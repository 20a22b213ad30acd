#include "memoryscreen.h"

#include "operationtext.h"

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::LayerType;
using BizModel::SceneType;

MemoryScreen::MemoryScreen(
    std::shared_ptr<ModelHub> hub, std::weak_ptr<BizModel::Device> device, ScreenKey key, Data data)
    : m_pHub(std::move(hub))
    , m_pDevice(std::move(device))
    , m_key(key)
    , m_data(std::move(data))
{
}

void MemoryScreen::setState(State state)
{
    const QString arguments = screenText(*this) + QStringLiteral(" state=%1").arg(state);
    if (m_pHub->operations.perform(Operation::SetScreenState, arguments))
        return;
    Change change(*m_pHub);
    Data& screen = data(change);
    // A transition that has begun in the meantime ends by itself.
    const bool marks = screen.state == State::Normal && state == State::Resource_out;
    const bool resets = screen.state == State::Resource_out && state == State::Normal;
    if (!marks && !resets)
        return;
    screen.state = state;
    change.markChanged();
}

bool MemoryScreen::isComplete() const
{
    const Guard guard(*m_pHub);
    const auto& places = data(guard).outputs;
    return std::all_of(places.cbegin(), places.cend(), [&guard](const OutputPlace& place) {
        return place.output->online(guard);
    });
}

void MemoryScreen::setUiScreenIndex(int index)
{
    const QString arguments = screenText(*this) + QStringLiteral(" index=%1").arg(index);
    if (m_pHub->operations.perform(Operation::SetUiScreenIndex, arguments))
        return;
    Change change(*m_pHub);
    setUiScreenIndex(change, index);
}

bool MemoryScreen::setUiScreenIndex(Change& change, int index)
{
    Data& screen = data(change);
    if (index < -1 || index > MaxScreenIndex)
        return false;
    if (screen.registered)
        change.set(
            screen.uiScreenIndex, index, &BizModel::DeviceList::signalScreenIndexChanged, m_pDevice,
            weak_from_this());
    else
        screen.uiScreenIndex = index;
    return true;
}

QList<std::weak_ptr<BizModel::Output>> MemoryScreen::outputs() const
{
    const Guard guard(*m_pHub);
    QList<std::weak_ptr<BizModel::Output>> list;
    for (const OutputPlace& place : data(guard).outputs)
        list += place.output;
    return list;
}

void MemoryScreen::addOutput(const std::weak_ptr<BizModel::Output>& output)
{
    const auto added = std::dynamic_pointer_cast<MemoryOutput>(output.lock());
    const QString arguments = screenText(*this)
        + QStringLiteral(" output=%1").arg(added ? QString::number(added->outputId()) : QString());
    if (m_pHub->operations.perform(Operation::AddOutput, arguments) || !added)
        return;
    Change change(*m_pHub);
    Data& screen = data(change);
    if (screen.registered || shows(change, added))
        return;
    const QRect whole = mosaic(change);
    const int left = whole.isEmpty() ? 0 : whole.x() + whole.width();
    const QRect rect(QPoint(left, whole.y()), added->size());
    if (isUsableWindow(rect))
        screen.outputs += OutputPlace{added, rect};
}

QRectF MemoryScreen::mosaicRect(const std::weak_ptr<BizModel::Output>& output) const
{
    const std::shared_ptr<BizModel::Output> wanted = output.lock();
    const Guard guard(*m_pHub);
    for (const OutputPlace& place : data(guard).outputs) {
        if (place.output == wanted)
            return place.rect;
    }
    return {};
}

bool MemoryScreen::shows(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const
{
    const auto& places = data(guard).outputs;
    return std::any_of(places.cbegin(), places.cend(), [&output](const OutputPlace& place) {
        return place.output == output;
    });
}

QRect MemoryScreen::mosaic(const Guard& guard) const
{
    QRect whole;
    for (const OutputPlace& place : data(guard).outputs)
        whole |= place.rect;
    return whole;
}

QList<std::weak_ptr<BizModel::Subcard>> MemoryScreen::subCards() const
{
    return weakList<BizModel::Subcard>(subcards(Guard(*m_pHub)));
}

QList<std::shared_ptr<MemorySubcard>> MemoryScreen::subcards(const Guard& guard) const
{
    QList<std::shared_ptr<MemorySubcard>> list;
    for (const OutputPlace& place : data(guard).outputs) {
        const std::shared_ptr<MemorySubcard> card = place.output->subcard();
        if (card && !list.contains(card))
            list += card;
    }
    return list;
}

int MemoryScreen::layerCapacity(const Guard& guard) const
{
    int sum = 0;
    const auto cards = subcards(guard);
    for (const std::shared_ptr<MemorySubcard>& card : cards)
        sum += card->layerCapacity();
    return sum;
}

QList<std::weak_ptr<BizModel::Layer>> MemoryScreen::layers(SceneType scene, int layerTypeMask) const
{
    return weakList<BizModel::Layer>(data(Guard(*m_pHub)).layers(scene), [layerTypeMask](const auto& layer) {
        return layer.layerType() & layerTypeMask;
    });
}

QList<std::weak_ptr<BizModel::Layer>> MemoryScreen::selectedLayers(int sceneMask) const
{
    const Guard guard(*m_pHub);
    QList<std::weak_ptr<BizModel::Layer>> list;
    for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
        if (scene & sceneMask)
            list += weakList<BizModel::Layer>(data(guard).layers(scene), [&guard](const auto& layer) {
                return layer.data(guard).selected;
            });
    }
    return list;
}

quint32 MemoryScreen::freeLayerId(const Guard& guard, SceneType scene) const
{
    const Layers& present = data(guard).layers(scene);
    quint32 id = 1;
    while (std::any_of(
        present.cbegin(), present.cend(), [id](const auto& layer) { return layer->layerId() == id; }))
        ++id;
    return id;
}

std::shared_ptr<BizModel::Layer> MemoryScreen::createProbeLayer(
    const std::weak_ptr<BizModel::Input>& source, BizModel::CapacityMode capacity) const
{
    const std::shared_ptr<BizModel::Input> input = source.lock();
    if (!input)
        return nullptr;
    LayerRecord probe;
    probe.type = m_key.type == ScreenType::AUXScreen ? LayerType::AUX : LayerType::Regular;
    probe.inputId = input->interfaceId();
    probe.capacity = capacity;
    probe.window = QRect(QPoint(0, 0), defaultLayerSize(capacity));
    return makeLayer(SceneType::PVW, probe);
}

std::shared_ptr<MemoryLayer> MemoryScreen::makeLayer(SceneType scene, const LayerRecord& record) const
{
    return std::make_shared<MemoryLayer>(m_pHub, shared_from_this(), m_key.id, scene, record);
}

ScreenRecord MemoryScreen::record(const Guard& guard) const
{
    const Data& screen = data(guard);
    ScreenRecord record;
    static_cast<ScreenSettings&>(record) = screen;
    record.key = m_key;
    for (const OutputPlace& place : screen.outputs)
        record.outputs += ScreenOutputRecord{place.output->outputId(), place.rect};
    for (const std::shared_ptr<MemoryLayer>& layer : screen.pgm)
        record.pgm += std::as_const(*layer).data(guard);
    for (const std::shared_ptr<MemoryLayer>& layer : screen.pvw)
        record.pvw += std::as_const(*layer).data(guard);
    return record;
}

QString layerName(quint32 layerId)
{
    return QStringLiteral("Layer %1").arg(layerId);
}

} // namespace Orvane::MemoryModel

#include "bridge/screenitem.h"

#include "bizmodel/input.h"
#include "bizmodel/output.h"
#include "bizmodel/subcard.h"
#include "bridge/announce_p.h"

namespace Orvane::Bridge {

using BizModel::DeviceList;
using BizModel::SceneType;
using Internal::announce;

/// An output, what it shows, and the card that it is on.
class ScreenItem::Place final : public BizModel::Output, public BizModel::Subcard {
public:
    Place(const QRectF& rect, int layerCapacity)
        : m_rect(rect)
        , m_nLayerCapacity(layerCapacity)
    {
    }

    QRectF rect() const { return m_rect; }
    int layerCapacity() const override { return m_nLayerCapacity; }

private:
    const QRectF m_rect;
    const int m_nLayerCapacity;
};

ScreenItem::ScreenItem(quint32 id, const QString& name)
    : m_nId(id)
    , m_name(name)
{
}

ScreenItem::~ScreenItem() = default;

QList<std::weak_ptr<BizModel::Output>> ScreenItem::outputs() const
{
    return QList<std::weak_ptr<BizModel::Output>>(m_places.begin(), m_places.end());
}

QRectF ScreenItem::mosaicRect(const std::weak_ptr<BizModel::Output>& output) const
{
    const std::shared_ptr<BizModel::Output> wanted = output.lock();
    for (const std::shared_ptr<Place>& place : m_places) {
        if (place == wanted)
            return place->rect();
    }
    return {};
}

QList<std::weak_ptr<BizModel::Subcard>> ScreenItem::subCards() const
{
    return QList<std::weak_ptr<BizModel::Subcard>>(m_places.begin(), m_places.end());
}

QList<std::weak_ptr<BizModel::Layer>> ScreenItem::layers(SceneType scene, int layerTypeMask) const
{
    QList<std::weak_ptr<BizModel::Layer>> found;
    const LayerList all = layerList(scene);
    for (const std::shared_ptr<LayerItem>& layer : all) {
        if (layer->layerType() & layerTypeMask)
            found += layer;
    }
    return found;
}

QList<std::weak_ptr<BizModel::Layer>> ScreenItem::selectedLayers(int sceneMask) const
{
    QList<std::weak_ptr<BizModel::Layer>> found;
    for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
        const LayerList all = sceneMask & scene ? layerList(scene) : LayerList();
        for (const std::shared_ptr<LayerItem>& layer : all) {
            if (layer->isSelected())
                found += layer;
        }
    }
    return found;
}

std::shared_ptr<BizModel::Layer> ScreenItem::createProbeLayer(
    const std::weak_ptr<BizModel::Input>& source, BizModel::CapacityMode capacity) const
{
    const std::shared_ptr<BizModel::Input> input = source.lock();
    if (!input)
        return nullptr;
    const BizModel::s_ScreenLayerId place{
        m_nId, SceneType::PVW, nextLayerId(SceneType::PVW, BizModel::LayerType::Regular)};
    auto probe = std::make_shared<LayerItem>(
        place, input->interfaceId(), QRect(QPoint(), mosaicWindowRect().size() / 2));
    probe->setCapacity(capacity);
    return probe;
}

void ScreenItem::setName(const QString& name)
{
    if (m_name.set(name))
        announce(&DeviceList::signalScreenNameChanged, m_pDevice, m_pSelf);
}

void ScreenItem::setFrozen(bool frozen)
{
    if (m_bFrozen.exchange(frozen) != frozen)
        announce(&DeviceList::signalScreenPGMFreezeChanged, m_pDevice, m_pSelf);
}

void ScreenItem::setFadedToBlack(bool black)
{
    if (m_bBlack.exchange(black) != black)
        announce(&DeviceList::signalScreenFTBChanged, m_pDevice, m_pSelf);
}

void ScreenItem::setProgramEdited(bool edited)
{
    if (m_bProgramEdited.exchange(edited) != edited)
        announce(&DeviceList::signalScreenPGMEditChanged, m_pDevice, m_pSelf);
}

void ScreenItem::setTransitionTime(double seconds)
{
    if (!qFuzzyCompare(m_transitionSeconds.exchange(seconds), seconds))
        announce(&DeviceList::signalScreenEffectChanged, m_pDevice, m_pSelf);
}

void ScreenItem::addOutputPlace(const QRectF& place, int layerCapacity)
{
    m_places += std::make_shared<Place>(place, layerCapacity);
}

ScreenItem::LayerList ScreenItem::layerList(SceneType scene) const
{
    const std::lock_guard lock(m_mutex);
    return scene == SceneType::PGM ? m_program : m_preview;
}

/// With the mutex held.
ScreenItem::LayerList& ScreenItem::sceneLayers(SceneType scene)
{
    return scene == SceneType::PGM ? m_program : m_preview;
}

void ScreenItem::setLayerList(SceneType scene, const LayerList& layers)
{
    {
        const std::lock_guard lock(m_mutex);
        sceneLayers(scene) = layers;
    }
    announce(
        &DeviceList::signalDeviceScreenLayersChanged, QList<std::weak_ptr<BizModel::Screen>>{m_pSelf}, 0);
}

void ScreenItem::addLayer(const std::shared_ptr<LayerItem>& layer)
{
    {
        const std::lock_guard lock(m_mutex);
        sceneLayers(layer->sceneType()) += layer;
    }
    announce(&DeviceList::signalLayerAdded, m_pDevice, m_pSelf, layer);
}

bool ScreenItem::removeLayer(const std::shared_ptr<LayerItem>& layer)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!sceneLayers(layer->sceneType()).removeOne(layer))
            return false;
    }
    announce(&DeviceList::signalLayerRemoved, m_pDevice, m_pSelf, layer);
    if (layer->setSelected(false))
        announceSelectedLayers();
    return true;
}

void ScreenItem::reorderLayers(SceneType scene, const std::function<void(LayerList&)>& reorder)
{
    // Not under the lock, so again when another thread has changed the scene meanwhile.
    for (;;) {
        const LayerList before = layerList(scene);
        LayerList after = before;
        reorder(after);
        const std::lock_guard lock(m_mutex);
        if (sceneLayers(scene) != before)
            continue;
        sceneLayers(scene) = after;
        return;
    }
}

void ScreenItem::setLayerSource(const std::shared_ptr<LayerItem>& layer, quint32 inputId)
{
    if (layer->setSource(inputId))
        announce(&DeviceList::signalLayerSourceChanged, m_pDevice, m_pSelf, layer);
}

void ScreenItem::announceSelectedLayers() const
{
    announce(&DeviceList::signalSelectedLayersChanged, m_pDevice, m_pSelf);
}

} // namespace Orvane::Bridge

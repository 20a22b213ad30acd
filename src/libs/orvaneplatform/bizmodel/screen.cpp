#include "bizmodel/screen.h"

#include "bizmodel/layer.h"
#include "bizmodel/subcard.h"

#include <algorithm>

namespace Orvane::BizModel {

Screen::~Screen() = default;

void Screen::setState(State) { }

SceneType Screen::operationTarget() const
{
    return PGMEditEnable() ? SceneType::PGM : SceneType::PVW;
}

void Screen::setUiScreenIndex(int) { }

void Screen::addOutput(const std::weak_ptr<Output>&) { }

QRectF Screen::mosaicRect(const std::weak_ptr<Output>&) const
{
    return {};
}

QRect Screen::mosaicWindowRect() const
{
    QRectF whole;
    const auto all = outputs();
    for (const std::weak_ptr<Output>& output : all)
        whole |= mosaicRect(output);
    return whole.toAlignedRect();
}

QList<std::weak_ptr<Layer>> Screen::layers(SceneType, int) const
{
    return {};
}

int Screen::layerCount(SceneType scene, int layerTypeMask) const
{
    return layers(scene, layerTypeMask).size();
}

QList<std::weak_ptr<Layer>> Screen::selectedLayers(int) const
{
    return {};
}

int Screen::maxLayerCount() const
{
    int sum = 0;
    const auto cards = subCards();
    for (const std::weak_ptr<Subcard>& each : cards) {
        if (const std::shared_ptr<Subcard> card = each.lock())
            sum += card->layerCapacity();
    }
    return sum;
}

quint32 Screen::nextLayerId(SceneType scene, LayerType) const
{
    const auto present = layers(scene, LayerType::AllLayerType);
    quint32 id = 1;
    const auto taken = [&id](const std::weak_ptr<Layer>& each) {
        const std::shared_ptr<Layer> layer = each.lock();
        return layer && layer->layerId() == id;
    };
    while (std::any_of(present.cbegin(), present.cend(), taken))
        ++id;
    return id;
}

QString Screen::nextLayerName(SceneType scene, LayerType type) const
{
    return QStringLiteral("Layer %1").arg(nextLayerId(scene, type));
}

std::shared_ptr<Layer> Screen::createProbeLayer(const std::weak_ptr<Input>&, CapacityMode) const
{
    return nullptr;
}

} // namespace Orvane::BizModel

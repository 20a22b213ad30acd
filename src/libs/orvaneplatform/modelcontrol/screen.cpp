#include "modelcontrol/screen.h"

#include "bizmodel/layer.h"
#include "modelcontrol/controllerfactory.h"

namespace Orvane::ModelControl {

Screen::~Screen() = default;

std::shared_ptr<Layer> Screen::layerModelControl(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = ControllerFactory::instance();
    return factory ? factory->createLayer(type, device) : nullptr;
}

bool Screen::updateEffectSpeed(const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>&)
{
    return false;
}

bool Screen::updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>&)
{
    return false;
}

bool Screen::updatePGMEditStatus(const Screens&, bool)
{
    return false;
}

std::shared_ptr<BizModel::Layer> Screen::addLayer(
    const std::weak_ptr<BizModel::Screen>&, BizModel::LayerType, BizModel::SceneType, int, int, const QRect&)
{
    return nullptr;
}

bool Screen::removeLayers(
    const std::weak_ptr<BizModel::Screen>&, const Layers& layers,
    QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed)
{
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        if (const std::shared_ptr<BizModel::Layer> layer = each.lock())
            failed += {layer->screenLayerId(), QStringLiteral("The model does not remove layers.")};
    }
    return false;
}

bool Screen::topZOrder(const std::weak_ptr<BizModel::Screen>&, const Layers&)
{
    return false;
}

bool Screen::incrZOrder(const std::weak_ptr<BizModel::Screen>&, const Layers&)
{
    return false;
}

bool Screen::bottomZOrder(const std::weak_ptr<BizModel::Screen>&, const Layers&)
{
    return false;
}

bool Screen::decrZOrder(const std::weak_ptr<BizModel::Screen>&, const Layers&)
{
    return false;
}

} // namespace Orvane::ModelControl

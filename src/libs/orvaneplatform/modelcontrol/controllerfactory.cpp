#include "modelcontrol/controllerfactory.h"

#include "installed_p.h"

namespace Orvane::ModelControl {

namespace {
Internal::Installed<ControllerFactory> installedFactory(
    "ControllerFactory", "keys that change screens, layers, inputs or presets do nothing");
}

ControllerFactory::ControllerFactory()
{
    installedFactory.install(this);
}

ControllerFactory::~ControllerFactory()
{
    installedFactory.uninstall(this);
}

ControllerFactory* ControllerFactory::instance()
{
    return installedFactory.get();
}

std::shared_ptr<Layer> ControllerFactory::createLayer(
    BizModel::LayerType, const std::weak_ptr<BizModel::Device>&)
{
    return nullptr;
}

std::shared_ptr<Preset> ControllerFactory::createPreset(const std::weak_ptr<BizModel::Device>&)
{
    return nullptr;
}

} // namespace Orvane::ModelControl

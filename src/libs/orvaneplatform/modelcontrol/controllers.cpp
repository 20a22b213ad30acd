#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"

#include "installed_p.h"

namespace Orvane::ModelControl {

namespace {
Internal::Installed<ControllerFactory> installedFactory;
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

Device::~Device() = default;
Layer::~Layer() = default;
Preset::~Preset() = default;
Screen::~Screen() = default;

std::shared_ptr<Device> Device::create(const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = installedFactory.get();
    return factory ? factory->createDevice(device) : nullptr;
}

std::shared_ptr<Screen> Device::screenModelControl(
    BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = installedFactory.get();
    return factory ? factory->createScreen(type, device) : nullptr;
}

std::shared_ptr<Layer> Screen::layerModelControl(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = installedFactory.get();
    return factory ? factory->createLayer(type, device) : nullptr;
}

std::shared_ptr<Preset> Preset::create(const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = installedFactory.get();
    return factory ? factory->createPreset(device) : nullptr;
}

} // namespace Orvane::ModelControl

#include "bridge/itemcontrollerfactory.h"

#include "bridge/itemcontrollers_p.h"

namespace Orvane::Bridge {

namespace {

template <typename Controller>
std::shared_ptr<Controller> make(
    ItemControllerFactory& factory, const std::weak_ptr<BizModel::Device>& device)
{
    auto item = std::dynamic_pointer_cast<DeviceItem>(device.lock());
    return item ? std::make_shared<Controller>(factory, item) : nullptr;
}

} // namespace

ItemControllerFactory::ItemControllerFactory() = default;
ItemControllerFactory::~ItemControllerFactory() = default;

std::shared_ptr<ModelControl::Device> ItemControllerFactory::createDevice(
    const std::weak_ptr<BizModel::Device>& device)
{
    return make<DeviceController>(*this, device);
}

std::shared_ptr<ModelControl::Screen> ItemControllerFactory::createScreen(
    BizModel::Enum::Screen::ScreenType, const std::weak_ptr<BizModel::Device>& device)
{
    return make<ScreenController>(*this, device);
}

std::shared_ptr<ModelControl::Layer> ItemControllerFactory::createLayer(
    BizModel::LayerType, const std::weak_ptr<BizModel::Device>& device)
{
    return make<LayerController>(*this, device);
}

std::shared_ptr<ModelControl::Preset> ItemControllerFactory::createPreset(
    const std::weak_ptr<BizModel::Device>& device)
{
    return make<PresetController>(*this, device);
}

bool ItemControllerFactory::editProgram(ScreenItem&, bool)
{
    return true;
}

bool ItemControllerFactory::setTransitionTime(ScreenItem&, double)
{
    return true;
}

bool ItemControllerFactory::addLayer(ScreenItem&, LayerItem&)
{
    return true;
}

bool ItemControllerFactory::removeLayer(ScreenItem&, LayerItem&)
{
    return true;
}

bool ItemControllerFactory::orderLayers(ScreenItem&, BizModel::SceneType, const ScreenItem::LayerList&)
{
    return true;
}

bool ItemControllerFactory::moveLayer(ScreenItem&, LayerItem&, const QRect&)
{
    return true;
}

bool ItemControllerFactory::bindSource(ScreenItem&, LayerItem&, quint32)
{
    return true;
}

bool ItemControllerFactory::storePreset(DeviceItem&, PresetItem&, QString& error)
{
    error = QStringLiteral("The model does not store presets.");
    return false;
}

bool ItemControllerFactory::loadPreset(DeviceItem&, PresetItem&, QString& error)
{
    error = QStringLiteral("The model does not load presets.");
    return false;
}

bool ItemControllerFactory::removePreset(DeviceItem&, PresetItem&, QString&)
{
    return true;
}

} // namespace Orvane::Bridge

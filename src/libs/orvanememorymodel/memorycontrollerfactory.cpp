#include "memorycontrollerfactory.h"

#include "devicecontroller.h"
#include "layercontroller.h"
#include "presetcontroller.h"
#include "screencontroller.h"

#include <utility>

namespace Orvane::MemoryModel {

MemoryControllerFactory::MemoryControllerFactory(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
{
}

/// Empty when the device is none of the model's.
template <typename Controller, typename... More>
std::shared_ptr<Controller> MemoryControllerFactory::make(
    const std::weak_ptr<BizModel::Device>& device, More... more)
{
    if (!m_list.own(Guard(*m_pHub), device))
        return nullptr;
    return std::make_shared<Controller>(ControllerParts(m_pHub, m_list, m_processor, device), more...);
}

std::shared_ptr<ModelControl::Device> MemoryControllerFactory::createDevice(
    const std::weak_ptr<BizModel::Device>& device)
{
    return make<DeviceController>(device);
}

std::shared_ptr<ModelControl::Screen> MemoryControllerFactory::createScreen(
    ScreenType type, const std::weak_ptr<BizModel::Device>& device)
{
    const bool isKnown = type == ScreenType::RegularScreen || type == ScreenType::AUXScreen;
    return isKnown ? make<ScreenController>(device, type) : nullptr;
}

std::shared_ptr<ModelControl::Layer> MemoryControllerFactory::createLayer(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    const bool isKnown = (type & BizModel::Enum::Layer::RegularAndAUXLayers) != 0;
    return isKnown ? make<LayerController>(device) : nullptr;
}

std::shared_ptr<ModelControl::Preset> MemoryControllerFactory::createPreset(
    const std::weak_ptr<BizModel::Device>& device)
{
    return make<PresetController>(device);
}

} // namespace Orvane::MemoryModel

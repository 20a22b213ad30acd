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

std::shared_ptr<ModelControl::Device> MemoryControllerFactory::createDevice(
    const std::weak_ptr<BizModel::Device>& device)
{
    if (!isPresent(device))
        return nullptr;
    return std::make_shared<DeviceController>(m_pHub, m_list, m_processor, device);
}

std::shared_ptr<ModelControl::Screen> MemoryControllerFactory::createScreen(
    ScreenType type, const std::weak_ptr<BizModel::Device>& device)
{
    if (!isPresent(device) || (type != ScreenType::RegularScreen && type != ScreenType::AUXScreen))
        return nullptr;
    return std::make_shared<ScreenController>(m_pHub, m_list, m_processor, type, device);
}

std::shared_ptr<ModelControl::Layer> MemoryControllerFactory::createLayer(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    if (!isPresent(device) || !(type & BizModel::Enum::Layer::RegularAndAUXLayers))
        return nullptr;
    return std::make_shared<LayerController>(m_pHub, m_list, m_processor, device);
}

std::shared_ptr<ModelControl::Preset> MemoryControllerFactory::createPreset(
    const std::weak_ptr<BizModel::Device>& device)
{
    if (!isPresent(device))
        return nullptr;
    return std::make_shared<PresetController>(m_pHub, m_list, m_processor, device);
}

bool MemoryControllerFactory::isPresent(const std::weak_ptr<BizModel::Device>& device) const
{
    return m_list.own(Guard(*m_pHub), device) != nullptr;
}

} // namespace Orvane::MemoryModel

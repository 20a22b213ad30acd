#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/modelcontrol/controllerfactory.h"
#include "processor.h"

namespace Orvane::MemoryModel {

class MemoryControllerFactory final : public ModelControl::ControllerFactory {
public:
    MemoryControllerFactory(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor);

    std::shared_ptr<ModelControl::Device> createDevice(
        const std::weak_ptr<BizModel::Device>& device) override;
    /// Regular and AUX screens have controllers.
    std::shared_ptr<ModelControl::Screen> createScreen(
        ScreenType type, const std::weak_ptr<BizModel::Device>& device) override;
    /// Regular and AUX layers have controllers.
    std::shared_ptr<ModelControl::Layer> createLayer(
        BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device) override;
    std::shared_ptr<ModelControl::Preset> createPreset(
        const std::weak_ptr<BizModel::Device>& device) override;

private:
    template <typename Controller, typename... More>
    std::shared_ptr<Controller> make(const std::weak_ptr<BizModel::Device>& device, More... more);

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;
};

} // namespace Orvane::MemoryModel

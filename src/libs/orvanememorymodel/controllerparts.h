#pragma once

#include "memorydevicelist.h"
#include "processor.h"

namespace Orvane::MemoryModel {

/// What each controller of a device works on, and the steps that all of them take.
class ControllerParts {
public:
    ControllerParts(
        std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor,
        std::weak_ptr<BizModel::Device> device);

protected:
    using ScreenList = QList<std::weak_ptr<BizModel::Screen>>;
    using LayerList = QList<std::weak_ptr<BizModel::Layer>>;

    /// Writes the operation into the journal; false, with the text in @p error, when it has to fail.
    bool start(Operation operation, const QString& arguments, QString* error = nullptr) const;

    /// The device and its own objects; empty when they are not there.
    /// @{
    std::shared_ptr<MemoryDevice> device(const Guard& guard) const;
    std::shared_ptr<MemoryScreen> screen(
        const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const;
    /// All of the screens, or none when one is not there.
    MemoryDevice::Screens screens(const Guard& guard, const ScreenList& screens) const;
    /// @}
    /// The screen and those of the layers that are on it; no screen when one of them is not.
    std::shared_ptr<MemoryScreen> find(
        const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen, const LayerList& layers,
        MemoryScreen::Layers& found) const;
    /// The screen that the layer is on now; empty when it is on none of this device.
    std::shared_ptr<MemoryScreen> screenOf(
        const Guard& guard, const std::shared_ptr<MemoryLayer>& layer) const;
    /// The device and the others of its group; none when the device is gone.
    MemoryDeviceList::Devices group(const Guard& guard) const;

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;
    const std::weak_ptr<BizModel::Device> m_pDevice;
};

} // namespace Orvane::MemoryModel

#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/modelcontrol/device.h"
#include "processor.h"

namespace Orvane::MemoryModel {

class DeviceController final : public ModelControl::Device {
public:
    DeviceController(
        std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor,
        std::weak_ptr<BizModel::Device> device);

    void setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen) override;
    /// Whatever the screens are doing; a take passes over those that are busy.
    QList<std::weak_ptr<BizModel::Screen>> getTakeScreens(
        int screenTypeMask, const ModelControl::s_SwitchEffectBody& effect, bool onlySelected) const override;
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override;
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override;

private:
    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;
    const std::weak_ptr<BizModel::Device> m_pDevice;
};

} // namespace Orvane::MemoryModel

#pragma once

#include "memorydevice.h"
#include "modelhub.h"
#include "modelsignals.h"

namespace Orvane::MemoryModel {

class MemoryDeviceList final : public ModelSignals {
public:
    using Devices = QList<std::shared_ptr<MemoryDevice>>;

    struct Data {
        Devices devices;
        std::shared_ptr<MemoryDevice> activeDevice;
        bool compatibleUpgrading = false;
        BizModel::Enum::Preset::PresetOptMode presetMode = BizModel::Enum::Preset::Noting;
    };

    explicit MemoryDeviceList(std::shared_ptr<ModelHub> hub);
    ~MemoryDeviceList() override;

    std::weak_ptr<BizModel::Device> activedDevice() const override;
    bool isCompatibleUpgrading() const override;
    QList<std::weak_ptr<BizModel::Device>> groupDevices(
        const QString& groupId, bool includeOffline = true, bool excludeActived = false) const override;
    QList<std::weak_ptr<BizModel::Device>> groupDevices(
        const std::weak_ptr<BizModel::Device>& device, bool includeOffline,
        bool excludeActived) const override;
    BizModel::Enum::Preset::PresetOptMode presetOperateMode() const override;
    void setPresetOperateMode(BizModel::Enum::Preset::PresetOptMode mode) override;

    QList<std::weak_ptr<BizModel::Device>> devices() const override;

    const Data& data(const Guard& guard) const { return m_data.get(guard); }
    Data& data(Change& change) { return m_data.get(change); }
    std::shared_ptr<MemoryDevice> device(const Guard& guard, const QString& ipMacSn) const;
    /// The device when it is one of this list, else empty.
    std::shared_ptr<MemoryDevice> own(
        const Guard& guard, const std::weak_ptr<BizModel::Device>& device) const;
    /// Takes the device out of the list and announces it; what runs on its screens ends without effect.
    void retire(Change& change, const std::shared_ptr<MemoryDevice>& device);
    /// The device, then the others of its group.
    Devices group(const Guard& guard, const std::shared_ptr<MemoryDevice>& device) const;

private:
    const std::shared_ptr<ModelHub> m_pHub;
    Guarded<Data> m_data;
};

} // namespace Orvane::MemoryModel

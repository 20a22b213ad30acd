#pragma once

#include "orvaneplatform/bizmodel/devicelist.h"
#include "orvaneplatform/bridge/deviceitem.h"

namespace Orvane::Bridge {

/// The list of an application that controls one device. Make it first: items announce what changes once it is
/// there.
class ORVANEPLATFORM_EXPORT ItemDeviceList : public BizModel::DeviceList {
public:
    /// The one device, which is active from the start.
    explicit ItemDeviceList(std::shared_ptr<DeviceItem> device);
    ~ItemDeviceList() override;

    std::weak_ptr<BizModel::Device> activedDevice() const override { return m_pDevice; }
    /// The device.
    DeviceItem& device() const { return *m_pDevice; }

private:
    const std::shared_ptr<DeviceItem> m_pDevice;
};

} // namespace Orvane::Bridge

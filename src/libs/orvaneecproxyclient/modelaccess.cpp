#include "modelaccess.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"

namespace Orvane::ECProxy::Client::Internal {

std::shared_ptr<BizModel::Device> activedDevice()
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    return devices ? devices->activedDevice().lock() : nullptr;
}

std::shared_ptr<BizModel::Screen> activedScreen()
{
    const auto device = activedDevice();
    return device ? device->activedScreen().lock() : nullptr;
}

bool isUpgrading()
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    if (!devices)
        return false;
    if (devices->isCompatibleUpgrading())
        return true;
    const auto device = devices->activedDevice().lock();
    return device && device->isDeviceUpgrading();
}

} // namespace Orvane::ECProxy::Client::Internal

#include "bridge/itemdevicelist.h"

#include <utility>

namespace Orvane::Bridge {

ItemDeviceList::ItemDeviceList(std::shared_ptr<DeviceItem> device)
    : m_pDevice(std::move(device))
{
}

ItemDeviceList::~ItemDeviceList() = default;

} // namespace Orvane::Bridge

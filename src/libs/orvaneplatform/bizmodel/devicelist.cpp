#include "bizmodel/devicelist.h"

#include "bizmodel/device.h"
#include "installed_p.h"

namespace Orvane::BizModel {

namespace {
Internal::Installed<DeviceList> installedList(
    "DeviceList", "there is no active device, so all keys but the numeric keypad and the locks do nothing");
}

DeviceList::DeviceList(QObject* parent)
    : QObject(parent)
{
    registerPlatformMetaTypes();
    installedList.install(this);
}

DeviceList::~DeviceList()
{
    installedList.uninstall(this);
}

DeviceList* DeviceList::instance()
{
    return installedList.get();
}

QList<std::weak_ptr<Device>> DeviceList::groupDevices(
    const QString& groupId, bool includeOffline, bool excludeActived) const
{
    const std::shared_ptr<Device> active = activedDevice().lock();
    if (!active || excludeActived || !(includeOffline || active->onlineFlag()))
        return {};
    if (groupId != Device::defaultDeviceGroupId && groupId != active->groupId())
        return {};
    return {active};
}

QList<std::weak_ptr<Device>> DeviceList::groupDevices(
    const std::weak_ptr<Device>& device, bool includeOffline, bool excludeActived) const
{
    const std::shared_ptr<Device> own = device.lock();
    QList<std::weak_ptr<Device>> members;
    if (!own)
        return members;
    if ((includeOffline || own->onlineFlag()) && !(excludeActived && activedDevice().lock() == own))
        members += own;
    const QString groupId = own->groupId();
    if (groupId == Device::defaultDeviceGroupId)
        return members;
    const auto others = groupDevices(groupId, includeOffline, excludeActived);
    for (const std::weak_ptr<Device>& other : others) {
        if (other.lock() != own)
            members += other;
    }
    return members;
}

QList<std::weak_ptr<Preset>> DeviceList::groupDevicePresets(const std::weak_ptr<Device>& device) const
{
    const std::shared_ptr<Device> own = device.lock();
    if (!own)
        return {};
    QList<std::weak_ptr<Preset>> presets = own->presets();
    const auto members = groupDevices(device, true, false);
    for (const std::weak_ptr<Device>& member : members) {
        const std::shared_ptr<Device> other = member.lock();
        if (other && other != own)
            presets += other->presets();
    }
    return presets;
}

} // namespace Orvane::BizModel

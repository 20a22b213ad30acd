#include "memorydevicelist.h"

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

MemoryDeviceList::MemoryDeviceList(std::shared_ptr<ModelHub> hub)
    : m_pHub(std::move(hub))
{
    m_pHub->setSignals(this);
}

MemoryDeviceList::~MemoryDeviceList()
{
    m_pHub->setSignals(nullptr);
}

std::weak_ptr<BizModel::Device> MemoryDeviceList::activedDevice() const
{
    return data(Guard(*m_pHub)).activeDevice;
}

bool MemoryDeviceList::isCompatibleUpgrading() const
{
    return data(Guard(*m_pHub)).compatibleUpgrading;
}

QList<std::weak_ptr<BizModel::Device>> MemoryDeviceList::groupDevices(
    const QString& groupId, bool includeOffline, bool excludeActived) const
{
    const Guard guard(*m_pHub);
    const Data& state = data(guard);
    const bool alone = groupId == BizModel::Device::defaultDeviceGroupId;
    QList<std::weak_ptr<BizModel::Device>> list;
    for (const std::shared_ptr<MemoryDevice>& device : state.devices) {
        const MemoryDevice::Data& each = device->data(guard);
        const bool active = device == state.activeDevice;
        const bool member = alone ? active : each.groupId == groupId;
        if (member && (each.online || includeOffline) && !(active && excludeActived))
            list += device;
    }
    return list;
}

QList<std::weak_ptr<BizModel::Device>> MemoryDeviceList::groupDevices(
    const std::weak_ptr<BizModel::Device>& device, bool includeOffline, bool excludeActived) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryDevice> present = own(guard, device);
    QList<std::weak_ptr<BizModel::Device>> list;
    if (!present)
        return list;
    const Devices members = group(guard, present);
    for (const std::shared_ptr<MemoryDevice>& member : members) {
        const bool active = member == data(guard).activeDevice;
        if ((member->data(guard).online || includeOffline) && !(active && excludeActived))
            list += member;
    }
    return list;
}

BizModel::Enum::Preset::PresetOptMode MemoryDeviceList::presetOperateMode() const
{
    return data(Guard(*m_pHub)).presetMode;
}

void MemoryDeviceList::setPresetOperateMode(BizModel::Enum::Preset::PresetOptMode mode)
{
    const QString arguments = QStringLiteral("mode=%1").arg(int(mode));
    if (m_pHub->operations.perform(Operation::SetPresetOperateMode, arguments))
        return;
    Change change(*m_pHub);
    data(change).presetMode = mode;
    change.markChanged();
}

QList<std::weak_ptr<BizModel::Device>> MemoryDeviceList::devices() const
{
    return weakList<BizModel::Device>(data(Guard(*m_pHub)).devices);
}

std::shared_ptr<MemoryDevice> MemoryDeviceList::device(const Guard& guard, const QString& ipMacSn) const
{
    return findIn(
        data(guard).devices, [&](const auto& each) { return each->data(guard).ipMacSn == ipMacSn; });
}

std::shared_ptr<MemoryDevice> MemoryDeviceList::own(
    const Guard& guard, const std::weak_ptr<BizModel::Device>& device) const
{
    return findIn(data(guard).devices, [wanted = device.lock()](const auto& each) { return each == wanted; });
}

void MemoryDeviceList::retire(Change& change, const std::shared_ptr<MemoryDevice>& device)
{
    data(change).devices.removeOne(device);
    for (const std::shared_ptr<MemoryScreen>& screen : std::as_const(device->data(change).screens))
        screen->data(change).registered = false;
    change.announce(&DeviceList::signalDeviceRemoved, device);
}

MemoryDeviceList::Devices MemoryDeviceList::group(
    const Guard& guard, const std::shared_ptr<MemoryDevice>& device) const
{
    Devices members{device};
    const QString& groupId = device->data(guard).groupId;
    if (groupId == BizModel::Device::defaultDeviceGroupId)
        return members;
    for (const std::shared_ptr<MemoryDevice>& other : data(guard).devices) {
        if (other != device && other->data(guard).groupId == groupId)
            members += other;
    }
    return members;
}

} // namespace Orvane::MemoryModel

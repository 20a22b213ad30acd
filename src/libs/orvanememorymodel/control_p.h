#pragma once

#include "control.h"
#include "memorydevicelist.h"

#include <utility>

namespace Orvane::MemoryModel {

/// Calls @p function with the change and the device; false when it is not there.
template <typename Function> bool Control::onDevice(const QString& device, Function function)
{
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> present = m_list.device(change, device);
    return present && function(change, present);
}

/// The same with one of its screens.
template <typename Function>
bool Control::onScreen(const QString& device, const ScreenKey& screen, Function function)
{
    return onDevice(device, [&](Change& change, const std::shared_ptr<MemoryDevice>& owner) {
        const std::shared_ptr<MemoryScreen> present = owner->screen(change, screen);
        return present && function(change, owner, present);
    });
}

/// Sets the value and, when it was another, announces it with a signal about the device.
template <typename T, typename Signal>
bool setAndAnnounce(
    Change& change, T& value, const T& wanted, const std::shared_ptr<MemoryDevice>& device, Signal signal)
{
    if (std::exchange(value, wanted) != wanted) {
        change.announce([device = std::weak_ptr<BizModel::Device>(device), signal](MemoryDeviceList& list) {
            Q_EMIT(list.*signal)(device);
        });
    }
    return true;
}

/// The same with a signal about the device and something of it.
template <typename T, typename Object, typename Signal>
bool setAndAnnounce(
    Change& change, T& value, const T& wanted, const std::shared_ptr<MemoryDevice>& device,
    const std::shared_ptr<Object>& object, Signal signal)
{
    if (std::exchange(value, wanted) != wanted) {
        change.announce([device = std::weak_ptr<BizModel::Device>(device),
                         object = std::weak_ptr<Object>(object), signal](MemoryDeviceList& list) {
            Q_EMIT(list.*signal)(device, object);
        });
    }
    return true;
}

} // namespace Orvane::MemoryModel

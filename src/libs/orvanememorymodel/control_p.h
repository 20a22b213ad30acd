#pragma once

#include "control.h"
#include "memorydevicelist.h"
#include "operationtext.h"

#include <utility>

namespace Orvane::MemoryModel {

/// `regular:1`, as users write it.
inline QString screenKeyText(const ScreenKey& key)
{
    return QStringLiteral("%1:%2").arg(screenTypeText(key.type)).arg(key.id);
}

/// Calls @p function with the change and the device; refused when it is not there.
template <typename Function> ControlResult Control::onDevice(const QString& device, Function function)
{
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> present = m_list.device(change, device);
    if (!present)
        return ControlResult::refused(
            device.isEmpty() ? QStringLiteral("no device is active and none is named")
                             : QStringLiteral("there is no device %1").arg(device));
    return function(change, present);
}

/// The same with one of its screens.
template <typename Function>
ControlResult Control::onScreen(const QString& device, const ScreenKey& screen, Function function)
{
    return onDevice(device, [&](Change& change, const std::shared_ptr<MemoryDevice>& owner) {
        const std::shared_ptr<MemoryScreen> present = owner->screen(change, screen);
        if (!present)
            return ControlResult::refused(QStringLiteral("there is no screen %1").arg(screenKeyText(screen)));
        return ControlResult(function(change, owner, present));
    });
}

/// Sets the value and, when it was another, announces it with a signal about the device.
template <typename T, typename Signal>
ControlResult setAndAnnounce(
    Change& change, T& value, const T& wanted, const std::shared_ptr<MemoryDevice>& device, Signal signal)
{
    if (std::exchange(value, wanted) != wanted) {
        change.announce([device = std::weak_ptr<BizModel::Device>(device), signal](ModelSignals& list) {
            Q_EMIT(list.*signal)(device);
        });
    }
    return ControlResult::done();
}

/// The same with a signal about the device and something of it.
template <typename T, typename Object, typename Signal>
ControlResult setAndAnnounce(
    Change& change, T& value, const T& wanted, const std::shared_ptr<MemoryDevice>& device,
    const std::shared_ptr<Object>& object, Signal signal)
{
    if (std::exchange(value, wanted) != wanted) {
        change.announce([device = std::weak_ptr<BizModel::Device>(device),
                         object = std::weak_ptr<Object>(object), signal](ModelSignals& list) {
            Q_EMIT(list.*signal)(device, object);
        });
    }
    return ControlResult::done();
}

} // namespace Orvane::MemoryModel

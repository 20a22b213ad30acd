#pragma once

#include "control.h"
#include "memorydevicelist.h"
#include "operationtext.h"

#include <type_traits>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;

/// `regular:1`, as users write it.
inline QString screenKeyText(const ScreenKey& key)
{
    return QStringLiteral("%1:%2").arg(screenTypeText(key.type)).arg(key.id);
}

inline ControlResult noInput(quint32 inputId)
{
    return ControlResult::refused(QStringLiteral("the device has no input %1").arg(inputId));
}

/// What the function returns; done when it returns nothing.
template <typename Function, typename... Arguments>
ControlResult resultOf(const Function& function, Arguments&... arguments)
{
    if constexpr (!std::is_void_v<std::invoke_result_t<Function, Arguments&...>>)
        return function(arguments...);
    else
        function(arguments...);
    return ControlResult::done();
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
    return resultOf(function, change, present);
}

/// Sets a value of the device and announces it, if there is a signal for it.
template <typename Member, typename T, typename... Signal>
ControlResult Control::setOnDevice(const QString& device, Member member, const T& value, Signal... signal)
{
    return onDevice(device, [&](Change& change, const std::shared_ptr<MemoryDevice>& present) {
        if constexpr (sizeof...(signal) != 0)
            return change.set(present->data(change).*member, value, signal..., present);
        present->data(change).*member = value;
        change.markChanged();
    });
}

/// The same as `onDevice` with one of the device's screens.
template <typename Function>
ControlResult Control::onScreen(const QString& device, const ScreenKey& screen, Function function)
{
    return onDevice(device, [&](Change& change, const std::shared_ptr<MemoryDevice>& owner) {
        const std::shared_ptr<MemoryScreen> present = owner->screen(change, screen);
        if (!present)
            return ControlResult::refused(QStringLiteral("there is no screen %1").arg(screenKeyText(screen)));
        return resultOf(function, change, owner, present);
    });
}

} // namespace Orvane::MemoryModel

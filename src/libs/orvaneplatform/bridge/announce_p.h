#pragma once

#include "bizmodel/devicelist.h"

#include <utility>

namespace Orvane::Bridge::Internal {

/// Emits a signal of the device list; nobody is there to hear it before there is one. Never under a lock.
template <typename Signal, typename... Arguments> void announce(Signal signal, Arguments&&... arguments)
{
    if (BizModel::DeviceList* const list = BizModel::DeviceList::instance())
        Q_EMIT(list->*signal)(std::forward<Arguments>(arguments)...);
}

} // namespace Orvane::Bridge::Internal

#pragma once

#include "modelaccess_p.h"

#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// Tells another active device from news of the same one: the model announces both in one way. Any thread.
class ActivedDeviceWatch {
public:
    /// Whether another device is active than at the last call, or one is where none was, or none where one
    /// was.
    bool isAnother()
    {
        const WeakDevice now = activedDevice();
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool isSame = !now.owner_before(m_pDevice) && !m_pDevice.owner_before(now);
        m_pDevice = now;
        return !isSame;
    }

private:
    // m_mutex guards m_pDevice, the device of the last call.
    std::mutex m_mutex;
    WeakDevice m_pDevice;
};

} // namespace Orvane::ECProxy::Client::Internal

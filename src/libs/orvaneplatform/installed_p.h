#pragma once

#include <atomic>

namespace Orvane::Internal {

/// Slot for the one object of a kind that the process works with. Kept inside the library's own source
/// files, so that every library of the process sees the same slot.
template <typename T> class Installed final {
public:
    T* get() const noexcept { return m_pObject.load(std::memory_order_acquire); }

    void install(T* object) noexcept { m_pObject.store(object, std::memory_order_release); }

    /// Empties the slot, unless another object has taken it in the meantime.
    void uninstall(T* object) noexcept
    {
        m_pObject.compare_exchange_strong(object, nullptr, std::memory_order_acq_rel);
    }

private:
    std::atomic<T*> m_pObject{nullptr};
};

} // namespace Orvane::Internal

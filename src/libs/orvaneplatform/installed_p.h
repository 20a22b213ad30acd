#pragma once

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace Orvane::Internal {

/// Place for the object of a kind that the process works with: the one that came last. When it goes, the one
/// before it is back, so that an object can stand in front of another for a time. Kept inside the library's
/// own source files, so that every library of the process sees the same place.
template <typename T> class Installed final {
public:
    T* get() const noexcept { return m_pLast.load(std::memory_order_acquire); }

    void install(T* object)
    {
        const std::lock_guard lock(m_mutex);
        m_objects.push_back(object);
        m_pLast.store(object, std::memory_order_release);
    }

    void uninstall(T* object)
    {
        const std::lock_guard lock(m_mutex);
        m_objects.erase(std::remove(m_objects.begin(), m_objects.end(), object), m_objects.end());
        m_pLast.store(m_objects.empty() ? nullptr : m_objects.back(), std::memory_order_release);
    }

private:
    std::atomic<T*> m_pLast{nullptr};
    /// Guards m_objects, and m_pLast against a second writer.
    std::mutex m_mutex;
    std::vector<T*> m_objects;
};

} // namespace Orvane::Internal

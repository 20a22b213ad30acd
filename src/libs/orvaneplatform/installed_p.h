#pragma once

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace Orvane::Internal {

/// A kind of object that the process works with, by its name, and what does not work without one. Lives as
/// long as the process.
class InstalledPart {
public:
    /// @param consequence ends the sentence "No NAME is installed: "
    InstalledPart(const char* name, const char* consequence);

    virtual bool isInstalled() const noexcept = 0;
    const char* name() const noexcept { return m_name; }
    const char* consequence() const noexcept { return m_consequence; }

    /// Every kind there is, in no order.
    static std::vector<const InstalledPart*> all();

protected:
    ~InstalledPart() = default;

    void setKnown() noexcept { m_bKnown.store(true, std::memory_order_relaxed); }
    /// Logs that there is none. Once, and not when there was one: then the application is ending.
    void reportMissing() noexcept;

private:
    const char* const m_name;
    const char* const m_consequence;
    std::atomic<bool> m_bKnown{false}; ///< installed before, or reported as missing
};

/// Place for the object of a kind that the process works with: the one that came last. When it goes, the one
/// before it is back, so that an object can stand in front of another for a time. Kept inside the library's
/// own source files, so that every library of the process sees the same place.
template <typename T> class Installed final : public InstalledPart {
public:
    using InstalledPart::InstalledPart;

    /// Null, with a log line the first time, when there is none.
    T* get() noexcept
    {
        T* const last = m_pLast.load(std::memory_order_acquire);
        if (!last)
            reportMissing();
        return last;
    }

    bool isInstalled() const noexcept override { return m_pLast.load(std::memory_order_acquire) != nullptr; }

    void install(T* object)
    {
        setKnown();
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

#pragma once

#include <QtGlobal>

#include <mutex>
#include <utility>

namespace Orvane::Bridge {

/// A value that one thread keeps and others read: what a model on the GUI thread answers queries from. Any
/// thread may call any member; nobody ever waits for another thread's work.
template <typename T> class SharedValue final {
public:
    SharedValue() = default;
    /// Begins with the value.
    explicit SharedValue(T value)
        : m_value(std::move(value))
    {
    }

    /// A copy of the value.
    T get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_value;
    }
    /// True when the value was another one: the change is to be announced.
    bool set(T value)
    {
        const std::lock_guard lock(m_mutex);
        const bool changed = !(m_value == value);
        m_value = std::move(value);
        return changed;
    }
    /// Sets the value if it is @p expected; false, without a change, otherwise.
    bool replace(const T& expected, T value)
    {
        const std::lock_guard lock(m_mutex);
        if (!(m_value == expected))
            return false;
        m_value = std::move(value);
        return true;
    }

private:
    Q_DISABLE_COPY_MOVE(SharedValue)

    /// Guards m_value.
    mutable std::mutex m_mutex;
    T m_value{};
};

} // namespace Orvane::Bridge

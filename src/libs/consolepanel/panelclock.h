#pragma once

#include <chrono>
#include <functional>

namespace Orvane::ConsolePanel {

/// The time that commands go by, with one alarm. Tests wind it themselves.
class PanelClock {
public:
    using Duration = std::chrono::microseconds;

    virtual ~PanelClock() = default;

    /// Time since a fixed moment; never goes back.
    virtual Duration now() const = 0;
    /// Has the alarm rung once at this time or as soon as possible after it, never from inside this call.
    /// A new time replaces the one before.
    virtual void setAlarm(Duration when) = 0;
    virtual void clearAlarm() = 0;

    /// What the alarm calls.
    void onAlarm(std::function<void()> ring) { m_ring = std::move(ring); }

protected:
    void ring() const
    {
        if (m_ring)
            m_ring();
    }

private:
    std::function<void()> m_ring;
};

} // namespace Orvane::ConsolePanel

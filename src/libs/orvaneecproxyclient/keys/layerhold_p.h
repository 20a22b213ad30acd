#pragma once

#include "holdtimer_p.h"
#include "modelpointers.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Orvane::ECProxy::Client::Internal {

/// The screen that a key was pressed for, and its device. Both may be gone by now.
struct LayerTarget {
    WeakDevice device;
    WeakScreen screen;

    /// The active screen of the active device; empty members when there is none.
    static LayerTarget actived();
    /// Whether the active screen is still the same one.
    bool isActived() const;
    /// Whether the application still has both.
    bool isPresent() const;
};

/// A key that acts when it is held: on the screen that was active when it was pressed, or not at all.
///
/// Any thread: the physical console presses and releases on the decoder thread, the model announces on the
/// GUI thread, and `act` runs on the timer's own. Destruction waits for a running callback.
class LayerHold {
public:
    static constexpr std::chrono::milliseconds Duration{3000};

    /// `act` is called once when the key was held for `Duration`, `refuse` when the hold ends without acting
    /// before the key is released. `name` begins the log lines that give the reason.
    LayerHold(
        const char* name, std::function<void(const LayerTarget&)> act, std::function<void()> refuse = {});

    void press();
    /// The screen of the press, when the key was released early and that screen is still active.
    std::optional<LayerTarget> release();
    /// Ends the hold when another screen is active than at the press, whose layers the operator did not mean.
    void endUnlessActived();
    /// Ends the hold without acting, and logs the reason if one is given. Nothing when no hold is going on.
    void cancel(const char* reason = nullptr);

private:
    void timeout();
    LayerTarget target() const;

    const char* const m_strName;
    const std::function<void(const LayerTarget&)> m_act;
    const std::function<void()> m_refuse;

    // m_mutex guards m_target, which a press writes while the GUI thread or the time-out may read it.
    mutable std::mutex m_mutex;
    LayerTarget m_target;

    // Last, so that it ends first: its callback uses all of the above.
    HoldTimer m_timer;
};

} // namespace Orvane::ECProxy::Client::Internal

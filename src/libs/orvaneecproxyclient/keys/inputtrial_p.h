#pragma once

#include "modelpointers.h"

#include <QList>

#include <atomic>
#include <memory>

namespace Orvane::ECProxy::Client::Internal {

/// The press of an input key while it is being checked, from construction to destruction.
///
/// The check gives the selected layers the input's capacity and afterwards their own back. A press of the
/// other console's key, which comes on another thread, would take the trial's capacity for the layers' own
/// and leave them with it. So one press is checked at a time, until its source is bound.
class InputTrial {
public:
    /// `running` is shared by the presses that exclude each other.
    explicit InputTrial(std::atomic<bool>& running);
    ~InputTrial();
    InputTrial(const InputTrial&) = delete;
    InputTrial& operator=(const InputTrial&) = delete;

    /// False when another press is being checked: this one must not go on.
    explicit operator bool() const { return m_bStarted; }

    /// Whether the hardware has the resources for the screen's selected layers with the input's capacity. The
    /// layers have their own capacities again when this returns; others can see the trial's until then.
    bool hasResourcesFor(
        const ScreenPtr& screen, const QList<WeakLayer>& selected, const InputPtr& input) const;

private:
    std::atomic<bool>& m_running;
    const bool m_bStarted;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "panelclock.h"
#include "simulatorcommand.h"

#include <functional>
#include <memory>

namespace Orvane::ConsolePanel {

/// A command that takes its time. It does what is due each time it is asked to proceed.
class RunnerAction {
public:
    struct Progress {
        enum State { Goes, Succeeded, Failed } state = Goes;
        PanelClock::Duration wakeAt{}; ///< while it goes: when it wants to proceed next
        QString text; ///< for the log when it has ended; may be empty
    };

    virtual ~RunnerAction() = default;
    virtual Progress proceed(PanelClock::Duration now) = 0;
    /// Whether it wants to proceed after every datagram too.
    virtual bool watchesConsole() const { return false; }

    using Send = std::function<void(const UpMessage&)>;
    /// The action of a command that takes time, begun at `now`; empty for every other command. `send` and
    /// `console` must live as long as the action.
    static std::unique_ptr<RunnerAction> make(
        const SimulatorCommand& command, const ConsoleRecorder& console, Send send, PanelClock::Duration now);
};

} // namespace Orvane::ConsolePanel

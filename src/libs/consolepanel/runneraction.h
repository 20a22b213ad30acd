#pragma once

#include "consoledifference.h"
#include "panelclock.h"
#include "simulatorcommand.h"

#include <functional>
#include <memory>

namespace Orvane::ConsolePanel {

class Replay;

/// A command that takes its time. It does what is due each time it is asked to proceed.
class RunnerAction {
public:
    struct Progress {
        enum State { Goes, Succeeded, Failed, CouldNotStart } state = Goes;
        PanelClock::Duration wakeAt{}; ///< while it goes: when it wants to proceed next
        QString text; ///< for the log when it has ended; may be empty
    };

    virtual ~RunnerAction() = default;
    virtual Progress proceed(PanelClock::Duration now) = 0;
    /// Whether it wants to proceed after every datagram too.
    virtual bool watchesConsole() const { return false; }

    using Send = std::function<void(const UpMessage&)>;
    /// What an action works on; all of it lives as long as the action.
    struct Surroundings {
        const ConsoleRecorder& console;
        Send send;
        std::function<void(const QByteArray&)> sendBytes;
        /// Lists what a console shows that it should not.
        std::function<void(const QString& when, const std::vector<ConsoleDifference>&)> tell;
        /// The capture that is played by single reports; empty for none.
        std::shared_ptr<Replay>& steppedReplay;
    };
};

} // namespace Orvane::ConsolePanel

#pragma once

#include <chrono>

namespace Orvane::ECProxy::Client::Internal {

/// Keeps keys and time-outs from being worked while the process ends around them: an application that returns
/// from `main()` or calls `exit()` with the channel open destroys the application object and all static
/// objects while the library's threads run.
///
/// The end begins when the application object goes, or else with the process's exit handlers.
class ProcessEnd {
public:
    /// Called before a thread is started that works time-outs or keys.
    static void watch();
    /// The same for the link's threads, which work for the next application object, too, once they are
    /// started for it.
    static void watchAnew();

    /// Work begun now would be refused. Any thread.
    static bool hasBegun();

    /// Stands around what a thread of the library does for a datagram or a time-out. The end waits for it.
    class Work {
    public:
        Work();
        ~Work();
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;
        /// False after the end has begun: nothing may be done then, logging included.
        explicit operator bool() const { return m_bAllowed; }

    private:
        bool m_bAllowed = false;
    };

    /// How long the end waits. Then it goes on: a handler that waits for the ending thread would hang the
    /// process.
    static constexpr std::chrono::seconds Patience{2};
};

} // namespace Orvane::ECProxy::Client::Internal

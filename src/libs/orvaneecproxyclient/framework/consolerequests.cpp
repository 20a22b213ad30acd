#include "consolerequests_p.h"

#include <future>
#include <mutex>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// The installed requests. Their owner keeps them alive; the shared pointer only counts who uses them.
struct Installed {
    // Guards both members.
    std::mutex m_mutex;
    std::shared_ptr<ConsoleRequests> m_pRequests;
    /// Becomes ready when the last user has let go.
    std::future<void> m_released;
};

Installed& installation()
{
    static Installed& s_installed = *new Installed; // threads use it until the process is gone
    return s_installed;
}

} // namespace

std::shared_ptr<ConsoleRequests> ConsoleRequests::installed()
{
    Installed& state = installation();
    const std::lock_guard<std::mutex> lock(state.m_mutex);
    return state.m_pRequests;
}

void ConsoleRequests::install(ConsoleRequests& requests)
{
    withdraw();
    const auto released = std::make_shared<std::promise<void>>();
    Installed& state = installation();
    const std::lock_guard<std::mutex> lock(state.m_mutex);
    state.m_released = released->get_future();
    state.m_pRequests =
        std::shared_ptr<ConsoleRequests>(&requests, [released](ConsoleRequests*) { released->set_value(); });
}

void ConsoleRequests::withdraw()
{
    Installed& state = installation();
    std::future<void> released;
    {
        std::shared_ptr<ConsoleRequests> requests; // let go of without the lock
        const std::lock_guard<std::mutex> lock(state.m_mutex);
        requests.swap(state.m_pRequests);
        released = std::move(state.m_released);
    }
    if (released.valid())
        released.wait();
}

bool isKeypadLocked()
{
    const auto console = ConsoleRequests::installed();
    return console && console->isKeypadLocked();
}

bool isTBarLocked()
{
    const auto console = ConsoleRequests::installed();
    return console && console->isTBarLocked();
}

} // namespace Orvane::ECProxy::Client::Internal

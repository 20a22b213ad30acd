#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

/// A state of the console that requests change (a lock, the source of a monitor): what was last asked for.
///
/// Any thread may call any member. The requests of one state are sent one after another in the order in which
/// they come, so the value ends as what was sent last. The first caller sends; one that comes meanwhile, from
/// within a send route too, leaves its request to the first and goes on at once. Nobody waits, and no lock is
/// held while a route, which is the host's code, is called.
template <typename Value> class RequestedState {
public:
    /// @param send sends the request for the value that it is given
    RequestedState(Value initial, std::function<void(Value)> send)
        : m_send(std::move(send))
        , m_value(initial)
    {
    }

    Value value() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_value;
    }

    void request(Value value)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_asked = value;
        if (m_bSending)
            m_value = value; // so that the caller reads back what it has just asked for
        sendNext(lock);
    }

    /// Sends once more what was asked for last, even while that is being sent; nothing if nothing was ever
    /// asked for.
    void repeat()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_asked)
            sendNext(lock);
    }

private:
    void sendNext(std::unique_lock<std::mutex>& lock)
    {
        m_waiting.push_back(*m_asked);
        if (std::exchange(m_bSending, true))
            return;
        while (!m_waiting.empty()) {
            const Value next = m_waiting.front();
            m_waiting.pop_front();
            lock.unlock();
            m_send(next);
            lock.lock();
            if (m_waiting.empty())
                m_value = next;
        }
        m_bSending = false;
    }

    const std::function<void(Value)> m_send;

    // m_mutex guards all that follows.
    mutable std::mutex m_mutex;
    Value m_value;
    std::optional<Value> m_asked; ///< by the latest request; m_value follows once that has been sent
    std::deque<Value> m_waiting; ///< still to be sent; empty unless a thread is sending
    bool m_bSending = false;
};

} // namespace Orvane::ECProxy::Client::Internal

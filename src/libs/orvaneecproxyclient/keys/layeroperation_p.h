#pragma once

#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// What a key is doing to the layers: making one, or removing some. One thing at a time.
///
/// The keys of the physical console begin and end it on the decoder thread, those of the on-screen console on
/// the GUI thread. The model announces on the GUI thread what the key has done. The keys are only half
/// changed then, so the notification leaves its repaint to the end of the operation.
class LayerOperation {
public:
    enum class Kind { None, Creating, Removing };

    /// Begins the operation. Returns `None` when it has begun, otherwise the running one that excludes it.
    Kind begin(Kind kind)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const Kind excluding = m_running;
        if (excluding == Kind::None)
            m_running = kind;
        return excluding;
    }

    /// Ends the operation that `begin` has begun; true when a notification has left its repaint to it.
    bool end()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_running = Kind::None;
        const bool isRepaintLeft = m_bRepaintLeft;
        m_bRepaintLeft = false;
        return isRepaintLeft;
    }

    Kind running() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_running;
    }

    /// Leaves the repaint to the operation that runs, and returns it; `None` when the caller must repaint.
    Kind leaveRepaint()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bRepaintLeft = m_bRepaintLeft || m_running != Kind::None;
        return m_running;
    }
    /// The same for one kind only; false when the caller must repaint.
    bool leaveRepaint(Kind kind)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bRepaintLeft = m_bRepaintLeft || m_running == kind;
        return m_running == kind;
    }

private:
    // m_mutex guards m_running and m_bRepaintLeft together. With a lock for each, the operation could end
    // between a notification's check and its mark, and the repaint would be lost.
    mutable std::mutex m_mutex;
    Kind m_running = Kind::None;
    bool m_bRepaintLeft = false;
};

} // namespace Orvane::ECProxy::Client::Internal

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

    /// Begins the operation; `None` when it runs now, otherwise the one that is running and excludes it.
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

    /// True while that operation runs, which then repaints at its end.
    bool leaveRepaint(Kind kind)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_running != kind)
            return false;
        m_bRepaintLeft = true;
        return true;
    }

private:
    // m_mutex guards both. Looked at apart, an operation could end between the look at what is running and
    // the mark, and nobody would repaint.
    mutable std::mutex m_mutex;
    Kind m_running = Kind::None;
    bool m_bRepaintLeft = false;
};

} // namespace Orvane::ECProxy::Client::Internal

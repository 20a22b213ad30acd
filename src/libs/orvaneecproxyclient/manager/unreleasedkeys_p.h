#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <set>

namespace Orvane::ECProxy::Client::Internal {

/// Remembers the keys whose press was let through and whose release a guard dropped, and has each put to rest
/// when the guard has ended: otherwise it stays lit or goes on repeating until somebody presses it again.
///
/// Not every guard announces its end (an upgrade does not), so while a key is remembered the guards are
/// looked at every `CheckInterval` on the GUI thread. Any thread may call any member. Make and destroy it
/// on the GUI thread.
class UnreleasedKeys : public QObject {
public:
    /// Puts the key to rest; returns false, and does nothing, while its release would still be dropped.
    /// Called on the GUI thread, without a lock.
    using PutToRest = std::function<bool(quint32 ecKey)>;

    static constexpr std::chrono::milliseconds CheckInterval{50};

    explicit UnreleasedKeys(PutToRest putToRest);

    /// For a press that was let through, before its handler runs. Waits while this key is being put to rest,
    /// which would end what the press begins.
    void pressed(quint32 ecKey);
    /// For a release that was let through.
    void released(quint32 ecKey);
    /// Ignores a key whose press was not let through.
    void releaseDropped(quint32 ecKey);

private:
    void check();

    const PutToRest m_putToRest;
    QTimer m_timer{this};

    // Guards all that follows.
    std::mutex m_mutex;
    std::set<quint32> m_pressed;
    std::set<quint32> m_dropped;
    std::optional<quint32> m_resting;
    std::condition_variable m_rested;
};

} // namespace Orvane::ECProxy::Client::Internal

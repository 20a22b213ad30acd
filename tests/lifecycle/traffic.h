#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace Life {

/// Sends datagrams to the library's port, one after the other and from the first again, until it goes. On a
/// thread of its own.
class Traffic {
public:
    Traffic(std::vector<QByteArray> datagrams, std::chrono::microseconds pause);
    ~Traffic();
    quint64 sent() const { return m_nSent; }

private:
    void run();

    const std::vector<QByteArray> m_datagrams;
    const std::chrono::microseconds m_pause;
    std::atomic<bool> m_bStop{false};
    std::atomic<quint64> m_nSent{0};
    std::thread m_thread;
};

/// A press and a release of each key.
std::vector<QByteArray> taps(const std::vector<quint32>& keys);

} // namespace Life

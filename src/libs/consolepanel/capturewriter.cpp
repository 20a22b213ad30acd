#include "capturewriter.h"

#include <utility>

namespace Orvane::ConsolePanel {

namespace {
/// Beyond so many bytes the disk does not keep up, and memory is needed for other things.
constexpr int MostPending = 64 * 1024 * 1024;
/// What the two buffers keep between batches.
constexpr int UsualPending = 64 * 1024;
} // namespace

CaptureWriter::CaptureWriter(QObject* parent)
    : QObject(parent)
{
}

CaptureWriter::~CaptureWriter()
{
    close();
}

bool CaptureWriter::open(const QString& path)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return false;
    if (!write(captureFileHead()))
        return false;
    m_begin = std::chrono::system_clock::now();
    m_steadyBegin = std::chrono::steady_clock::now();
    m_pending.reserve(UsualPending);
    m_bOpen = true;
    m_thread = std::thread([this] { writeUntilClosed(); });
    return true;
}

void CaptureWriter::add(CapturedDatagram::Direction direction, const char* bytes, int size)
{
    bool wasEmpty = false;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_bOpen) {
            if (!m_summary.errorText.isEmpty())
                ++m_summary.lost;
            return;
        }
        // Under the lock, so that the times in the file rise.
        const auto time = m_begin.time_since_epoch() + (std::chrono::steady_clock::now() - m_steadyBegin);
        const bool isTaken = m_pending.size() < MostPending
            && appendCaptureRecord(
                                 direction, std::chrono::duration_cast<std::chrono::microseconds>(time),
                                 bytes, size, m_pending);
        if (!isTaken) {
            ++m_summary.lost;
            return;
        }
        wasEmpty = m_nPending++ == 0;
    }
    if (wasEmpty)
        m_wake.notify_one();
}

CaptureWriter::Summary CaptureWriter::close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_bOpen = false;
    }
    m_wake.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
        m_file.close();
    }
    const std::lock_guard lock(m_mutex);
    return m_summary;
}

void CaptureWriter::writeUntilClosed()
{
    QByteArray batch;
    batch.reserve(UsualPending);
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return !m_bOpen || m_nPending != 0; });
        if (m_nPending == 0)
            return;
        m_pending.swap(batch);
        const quint64 count = std::exchange(m_nPending, 0);
        lock.unlock();
        const bool isWritten = write(batch);
        const QString error = isWritten ? QString() : m_file.errorString();
        batch.resize(0);
        lock.lock();
        if (isWritten) {
            m_summary.datagrams += count;
            continue;
        }
        m_bOpen = false;
        m_summary.errorText = error;
        m_summary.lost += count + std::exchange(m_nPending, 0);
        lock.unlock();
        Q_EMIT signalFailed(error);
        return;
    }
}

bool CaptureWriter::write(const QByteArray& records)
{
    return m_file.write(records) == records.size();
}

} // namespace Orvane::ConsolePanel

#pragma once

#include "capturefile.h"

#include <QFile>
#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace Orvane::ConsolePanel {

/// Writes datagrams with their times to a capture file, on a thread of its own: whoever adds one never waits
/// for the disk. What was added reaches the file at once, so that a program that is killed leaves all of it
/// behind.
///
/// `open`, then `add` on any thread, then `close`. A datagram that is added while the file is not open is
/// dropped without a word.
///
/// Failure: `open` returns false. When the file cannot be written any more, `signalFailed` is emitted once
/// and the writing ends; when the disk falls far behind, datagrams are dropped. `close` gives the number of
/// those that are missing in the file in either case.
class CaptureWriter : public QObject {
    Q_OBJECT

public:
    /// What became of a capture.
    struct Summary {
        quint64 datagrams = 0; ///< in the file
        quint64 lost = 0; ///< added, and not in the file
        QString errorText; ///< why the writing ended early; empty when it did not
    };

    explicit CaptureWriter(QObject* parent = nullptr);
    /// Closes.
    ~CaptureWriter() override;

    /// Begins a file; one of this name is overwritten. To be called once.
    /// @return false with `errorText` when it cannot be written
    bool open(const QString& path);
    QString path() const { return m_file.fileName(); }
    QString errorText() const { return m_file.errorString(); }

    /// Takes the time and a copy of the bytes. Any thread.
    void add(CapturedDatagram::Direction direction, const char* bytes, int size);

    /// Waits until all that was added is written. Later calls return the same.
    Summary close();

Q_SIGNALS:
    /// The file cannot be written any more. Emitted on the writing thread.
    void signalFailed(const QString& text);

private:
    void writeUntilClosed();
    bool write(const QByteArray& records);

    QFile m_file; ///< used by the thread while it runs
    std::thread m_thread;
    std::chrono::system_clock::time_point m_begin; ///< both clocks at the same moment: the times in the file
    std::chrono::steady_clock::time_point m_steadyBegin; ///< never go back, whatever is done to the clock

    /// Wakes the thread for records or the end.
    std::condition_variable m_wake;
    /// Guards all that follows: those who add fill m_pending, the thread takes it.
    std::mutex m_mutex;
    QByteArray m_pending; ///< records that are not in the file yet
    quint64 m_nPending = 0; ///< how many
    bool m_bOpen = false; ///< records are taken
    Summary m_summary;
};

} // namespace Orvane::ConsolePanel

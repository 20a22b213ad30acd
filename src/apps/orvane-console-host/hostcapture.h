#pragma once

#include "capturewriter.h"

#include <QJsonObject>

namespace Orvane::ConsoleHost {

class CommandTable;
class EventWriter;

/// Writes a capture of the console's link in this process: what the library sends, by a send route of its
/// own, and what comes in, where the decoder takes it. Both are there without a right to look at the
/// machine's network, and nothing of the way to the console and back is changed. Datagrams of the on-screen
/// console and of commands are in it too; what the receiver drops because a stranger sent it is not.
///
/// On the GUI thread. Ends with the object, after the session.
class HostCapture {
public:
    explicit HostCapture(EventWriter& events);
    ~HostCapture();
    HostCapture(const HostCapture&) = delete;
    HostCapture& operator=(const HostCapture&) = delete;

    /// Requests are captured from now on, reports once the link is open.
    /// @return why not; empty when it runs
    QString start(const QString& path);
    /// To be called when the link has been opened.
    void watchReports();
    bool isRunning() const { return m_pWriter != nullptr; }
    /// @return what became of it; empty members when none was running
    QJsonObject stop();

private:
    EventWriter& m_events;
    std::shared_ptr<ConsolePanel::CaptureWriter> m_pWriter; ///< null: not running; shared with the two taps
    int m_nRoute = 0;
};

/// Adds the commands that start and stop a capture.
void addCaptureCommands(CommandTable& table, HostCapture& capture);

} // namespace Orvane::ConsoleHost

#pragma once

#include "consolestate.h"
#include "downdecoder.h"
#include "filereceiver.h"
#include "sequencewatch.h"

namespace Orvane::ConsolePanel {

/// What became of one datagram.
struct Reception {
    std::variant<DownDatagram, Unreadable> datagram;
    FileReceiver::Outcome file; ///< of a file pack; `Continues` for everything else
};

/// The console as a passive peer: reads every datagram, keeps what it shows and counts. Used from one
/// thread; whoever shows the console asks it after each `receive`.
class ConsoleRecorder {
public:
    Reception receive(const char* bytes, int size);
    /// The console starts anew: it forgets what it showed; the counters go on.
    void restart() { m_state = ConsoleState(); }

    const ConsoleState& state() const { return m_state; }
    const std::map<QString, ReceivedFile>& files() const { return m_fileReceiver.files(); }
    const SequenceWatch& sequences() const { return m_sequences; }
    quint64 received() const { return m_nReceived; } ///< readable datagrams
    quint64 unreadable() const { return m_nUnreadable; }
    quint64 fileFaults() const { return m_nFileFaults; }

private:
    ConsoleState m_state;
    FileReceiver m_fileReceiver;
    SequenceWatch m_sequences;
    quint64 m_nReceived = 0;
    quint64 m_nUnreadable = 0;
    quint64 m_nFileFaults = 0;
};

} // namespace Orvane::ConsolePanel

#pragma once

#include "consolewire.h"
#include "ecconsolesession.h"

#include <QProcess>

#include <atomic>
#include <mutex>
#include <thread>

namespace Orvane::TestSupport {

/// Real sockets on the real ports: the session's on the library's side, and those of a service that is a
/// process of its own. What can happen to that process and to the datagrams is done from the GUI thread.
class SocketWire : public ConsoleWire {
public:
    SocketWire();
    ~SocketWire() override;

    /// Returns when both sides have their ports.
    void join(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, Receive receive) override;
    void report(const QByteArray& datagram) override;
    void end() override;

    ECProxy::Client::ECConsoleSession& session() { return *m_pSession; }
    /// Waits until the library receives. False when it does not.
    static bool waitUntilReceiving();

    /// Without notice, as a process that crashes.
    void killService();
    /// Returns when it has its port.
    void startService();
    /// Neither sends nor receives until it goes on: what comes meanwhile waits.
    void holdUpService();
    void letServiceGoOn();
    /// Reports and requests, each while it is true.
    void loseReports(bool lose) { m_bLosesReports = lose; }
    void loseRequests(bool lose) { m_bLosesRequests = lose; }

private:
    void readRequests();
    void signalService(int signal);

    int m_nOwnEnd = -1; ///< of the socket to the service; the other one is the service's
    int m_nServiceEnd = -1;
    std::unique_ptr<QProcess> m_pService;
    std::unique_ptr<ECProxy::Client::ECConsoleSession> m_pSession;
    Receive m_receive;
    std::atomic<bool> m_bLosesReports{false};
    std::atomic<bool> m_bLosesRequests{false};
    std::atomic<int> m_nReady{0}; ///< services that had their port
    std::thread m_reader;
};

/// A UDP port of this machine, as the kernel tells.
struct PortState {
    bool isOpen = false;
    quint64 dropped = 0; ///< datagrams for which there was no room
};
PortState portState(quint16 port);

} // namespace Orvane::TestSupport

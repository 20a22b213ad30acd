#pragma once

#include "capturewriter.h"

#include <QSocketNotifier>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Orvane::ConsolePanel {

/// The event controller service's end of the wire: 127.0.0.1 port 35555, from where reports go to port
/// 35556. The library's send socket is bound to the same port of any address; the kernel gives what is sent
/// to 127.0.0.1 to the socket bound to exactly that address, whichever was there first.
///
/// A thread of its own empties the socket, so that nothing is lost while the user of the link is busy or
/// waits for a slow terminal. Everything else is used from the thread that made the link, which needs an
/// event loop.
class ServiceLink {
public:
    /// `arrived` is called from the event loop when datagrams wait to be taken.
    explicit ServiceLink(std::function<void()> arrived);
    ~ServiceLink();
    ServiceLink(const ServiceLink&) = delete;
    ServiceLink& operator=(const ServiceLink&) = delete;

    /// Binds the port and begins to receive. False with `errorText` when that is not possible, also when
    /// another program has bound exactly this address: of two such sockets only one would get anything.
    bool open();
    QString errorText() const { return m_strError; }

    /// False with `errorText` when the system refuses the datagram.
    bool send(const QByteArray& datagram);

    /// Writes every datagram of both directions there from now on; null for no more. Those of the library
    /// with the time at which the receive thread got them, reports right before they leave: no answer stands
    /// before what it answers.
    void setCapture(std::shared_ptr<CaptureWriter> capture);

    /// Hands over each datagram that has come, in order; the bytes are valid during the call.
    void takeReceived(const std::function<void(const char* bytes, int size)>& take);

    /// Bytes that the kernel gave for what waits in the socket.
    int receiveBufferSize() const { return m_nReceiveBuffer; }
    /// Datagrams that the kernel threw away because the socket was full.
    quint64 dropped() const { return m_nDropped; }

private:
    /// Datagrams back to back.
    struct Batch {
        std::vector<char> bytes;
        std::vector<int> sizes;
    };
    struct ReceiveBuffers;
    bool fail(const QString& what);
    void setReceiveBuffer();
    void receiveLoop();
    void readBatch(ReceiveBuffers& buffers);
    std::shared_ptr<CaptureWriter> capture();

    std::function<void()> m_arrived;
    QString m_strError;
    int m_nSocket = -1;
    int m_nWake = -1; ///< eventfd: there is something to take
    int m_nStop = -1; ///< eventfd: the receive thread shall end
    int m_nReceiveBuffer = 0;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    std::thread m_thread;
    std::atomic<quint64> m_nDropped{0};
    Batch m_taken; ///< kept for its memory

    /// Guards m_received and m_pCapture, which the receive thread uses too.
    std::mutex m_mutex;
    Batch m_received;
    std::shared_ptr<CaptureWriter> m_pCapture;
};

} // namespace Orvane::ConsolePanel

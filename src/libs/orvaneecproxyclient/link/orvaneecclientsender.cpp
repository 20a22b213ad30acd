#include "orvaneecclientsender.h"

#include "datagramqueue_p.h"
#include "ecprotocol.h"
#include "log_p.h"
#include "threadlifecycle_p.h"

#include <QHostAddress>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QUdpSocket>

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

/// A destination for a socket of either family; an IPv4 address is kept in its IPv6-mapped form.
struct Target {
    sockaddr_in6 address{};

    static Target make(const QHostAddress& host, quint16 port)
    {
        Target target;
        target.address.sin6_family = AF_INET6;
        target.address.sin6_port = htons(port);
        const Q_IPV6ADDR bytes = host.toIPv6Address();
        static_assert(sizeof(bytes) == sizeof(target.address.sin6_addr));
        std::memcpy(&target.address.sin6_addr, &bytes, sizeof(bytes));
        if (const QString scope = host.scopeId(); !scope.isEmpty())
            target.address.sin6_scope_id = quint32(QNetworkInterface::interfaceIndexFromName(scope));
        return target;
    }

    sockaddr_in toIPv4() const
    {
        sockaddr_in ipv4{};
        ipv4.sin_family = AF_INET;
        ipv4.sin_port = address.sin6_port;
        constexpr int prefixSize = sizeof(address.sin6_addr) - sizeof(ipv4.sin_addr);
        std::memcpy(&ipv4.sin_addr, address.sin6_addr.s6_addr + prefixSize, sizeof(ipv4.sin_addr));
        return ipv4;
    }
};

/// Datagrams to be written, each with its destination.
class DownQueue {
public:
    void append(const QByteArray& bytes, const Target& target)
    {
        m_datagrams.append(bytes.constData(), std::size_t(bytes.size()));
        m_targets.push_back(target);
    }

    bool isEmpty() const { return m_datagrams.isEmpty(); }

    void clear()
    {
        m_datagrams.clear();
        clearForReuse(m_targets);
    }

    void swap(DownQueue& other) noexcept
    {
        m_datagrams.swap(other.m_datagrams);
        m_targets.swap(other.m_targets);
    }

    template <typename Write> void forEach(Write&& write) const
    {
        for (std::size_t i = 0; i < m_datagrams.count(); ++i)
            write(m_datagrams.at(i), m_targets[i]);
    }

private:
    DatagramQueue m_datagrams;
    std::vector<Target> m_targets;
};

} // namespace

class ECClientSenderPrivate {
public:
    explicit ECClientSenderPrivate(ECClientSender& sender)
        : m_lifecycle(sender, m_mtxSend, m_bStopSend)
    {
    }

    void openSocket();
    void sendUntilStopped();
    void write(const DownQueue& batch);

    /// Made, used and deleted on the send thread.
    std::unique_ptr<QUdpSocket> m_pSocket;
    /// The family of the socket: AF_INET6, for both kinds of addresses, or AF_INET on a machine without IPv6.
    int m_nFamily = AF_INET6;
    /// Wakes the thread for datagrams or a stop.
    std::condition_variable m_wcSend;
    /// Guards m_datagramQueue and the writing of m_bStopSend.
    std::mutex m_mtxSend;
    DownQueue m_datagramQueue;
    std::atomic<bool> m_bStopSend{false};

    ThreadLifecycle m_lifecycle;
};

void ECClientSenderPrivate::openSocket()
{
    m_pSocket = std::make_unique<QUdpSocket>();
    if (!m_pSocket->bind(ECServicePort, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        ecWarning(
            lcLink, "Orvane ec client sender bind has filed : %s", qUtf8Printable(m_pSocket->errorString()));
    }
    if (!m_pSocket->open(QIODevice::WriteOnly)) {
        ecWarning(
            lcLink, "Orvane ec client sender open has filed : %s", qUtf8Printable(m_pSocket->errorString()));
    }
    socklen_t size = sizeof(m_nFamily);
    getsockopt(int(m_pSocket->socketDescriptor()), SOL_SOCKET, SO_DOMAIN, &m_nFamily, &size);
}

void ECClientSenderPrivate::sendUntilStopped()
{
    DownQueue batch;
    std::unique_lock<std::mutex> lock(m_mtxSend);
    while (!m_bStopSend) {
        if (m_datagramQueue.isEmpty()) {
            m_wcSend.wait(lock);
            continue;
        }
        m_datagramQueue.swap(batch);
        lock.unlock();
        write(batch);
        batch.clear();
        lock.lock();
    }
}

void ECClientSenderPrivate::write(const DownQueue& batch)
{
    // Not through QUdpSocket, whose own work for each datagram takes as long as the kernel's.
    const int descriptor = int(m_pSocket->socketDescriptor());
    batch.forEach([&](DatagramQueue::Datagram datagram, const Target& target) {
        const auto sendTo = [&](const auto& address) {
            return sendto(
                descriptor, datagram.bytes, datagram.size, MSG_NOSIGNAL,
                reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        };
        const ssize_t written = m_nFamily == AF_INET ? sendTo(target.toIPv4()) : sendTo(target.address);
        if (written <= 0)
            ecWarning(lcLink, "Orvane ec client sender send data has failed.");
    });
}

} // namespace Internal

ECClientSender::ECClientSender(QObject* parent)
    : QThread(parent)
    , d(std::make_unique<Internal::ECClientSenderPrivate>(*this))
{
    setObjectName(QStringLiteral("ECClientSender"));
}

ECClientSender::~ECClientSender()
{
    stopSend();
}

bool ECClientSender::startSend()
{
    d->m_lifecycle.start();
    return true;
}

bool ECClientSender::stopSend()
{
    d->m_lifecycle.stop([this] { d->m_wcSend.notify_one(); });
    return true;
}

bool ECClientSender::appendDatagram(const QNetworkDatagram& datagram)
{
    return appendDatagram(
        datagram.data(), datagram.destinationAddress(), static_cast<quint16>(datagram.destinationPort()));
}

bool ECClientSender::appendDatagram(const QByteArray& bytes, const QHostAddress& target, quint16 port)
{
    const Internal::Target destination = Internal::Target::make(target, port);
    {
        const std::lock_guard<std::mutex> lock(d->m_mtxSend);
        d->m_datagramQueue.append(bytes, destination);
    }
    d->m_wcSend.notify_one(); // unlocked, so that the woken thread does not block on the mutex
    return true;
}

void ECClientSender::run()
{
    ecInfo(lcLink, "Orvane ec client sender start send");
    d->openSocket();
    d->sendUntilStopped();
    d->m_pSocket.reset();
    ecInfo(lcLink, "Orvane ec client sender stop send");
    d->m_lifecycle.leave();
}

} // namespace Orvane::ECProxy::Client

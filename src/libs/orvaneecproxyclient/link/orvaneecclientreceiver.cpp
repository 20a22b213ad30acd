#include "orvaneecclientreceiver.h"

#include "log_p.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientdecoder_p.h"
#include "processend_p.h"
#include "threadlifecycle_p.h"

#include <QElapsedTimer>
#include <QUdpSocket>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

/// The longest wait for data. The thread looks at the stop flag after it at the latest.
constexpr std::chrono::seconds LongestWait(1);
constexpr int ReceiveBufferSize = 8388608;

/// Reads many datagrams with one system call, each whole, into memory of its own.
class DatagramReader {
public:
    DatagramReader()
        : m_memory(new char[SlotCount * SlotStride]) // the kernel gives a page when a datagram needs it
    {
        for (std::size_t i = 0; i < SlotCount; ++i) {
            m_parts[i] = {m_memory.get() + i * SlotStride, SlotSize};
            m_messages[i].msg_hdr.msg_iov = &m_parts[i];
            m_messages[i].msg_hdr.msg_iovlen = 1;
            m_messages[i].msg_hdr.msg_name = &m_senders[i];
            m_messages[i].msg_hdr.msg_namelen = sizeof(m_senders[i]);
        }
    }

    /// Waits for a datagram as long as the socket is set to, then takes all that are there.
    /// @return how many were read; -1 with errno set as recvmmsg() does
    int read(int descriptor)
    {
        return recvmmsg(descriptor, m_messages.data(), SlotCount, MSG_WAITFORONE, nullptr);
    }

    /// The sender's IPv4 address, in the machine's byte order.
    quint32 sender(int index) const { return ntohl(m_senders[std::size_t(index)].sin_addr.s_addr); }

    void copyTo(DatagramQueue& queue, int index) const { queue.append(begin(index), size(index)); }
    QByteArray datagram(int index) const { return QByteArray(begin(index), int(size(index))); }

private:
    static constexpr std::size_t SlotCount = 64;
    static constexpr std::size_t SlotSize = 65536; ///< more than any UDP datagram carries
    /// A cache line more, so that the beginnings of the slots do not all compete for the same few lines.
    static constexpr std::size_t SlotStride = SlotSize + 64;

    const char* begin(int index) const { return m_memory.get() + std::size_t(index) * SlotStride; }
    std::size_t size(int index) const { return m_messages[std::size_t(index)].msg_len; }

    std::unique_ptr<char[]> m_memory;
    std::array<iovec, SlotCount> m_parts{};
    std::array<sockaddr_in, SlotCount> m_senders{};
    std::array<mmsghdr, SlotCount> m_messages{};
};

/// Lets through what this machine and the service send. Used on the receive thread, but for the address.
class SenderCheck {
public:
    void setServiceAddress(quint32 address) { m_serviceAddress = address; }

    bool accepts(quint32 sender) const
    {
        constexpr quint32 loopbackNet = 127;
        return sender >> 24 == loopbackNet || sender == m_serviceAddress.load(std::memory_order_relaxed);
    }

    void logRefused(quint32 sender)
    {
        constexpr std::chrono::milliseconds logInterval(1000);
        ++m_refused;
        if (m_lastLogged.isValid() && !m_lastLogged.hasExpired(logInterval.count()))
            return;
        m_lastLogged.start();
        ecWarning(
            lcLink,
            "Orvane ec client receiver: %llu datagrams dropped, the last from %s, which is neither loopback "
            "nor the service's address.",
            std::exchange(m_refused, 0), qUtf8Printable(QHostAddress(sender).toString()));
    }

private:
    std::atomic<quint32> m_serviceAddress{0}; ///< 0: none
    QElapsedTimer m_lastLogged;
    quint64 m_refused = 0; ///< since the last line
};

} // namespace

class ECClientReceiverPrivate {
public:
    explicit ECClientReceiverPrivate(ECClientReceiver& receiver);

    void stop();
    void openSocket();
    void receiveUntilStopped();
    void closeSocket();

    /// Made, used and deleted on the receive thread.
    std::unique_ptr<QUdpSocket> m_pSocket;
    std::atomic<bool> m_bStopReceive{false};
    const std::shared_ptr<ECClientDecoder> m_pECClientDecoder;

    /// Guards m_nDescriptor and the writing of m_bStopReceive.
    std::mutex m_mtxReceive;
    /// Ends the waiting of a thread that has no socket to wait on.
    std::condition_variable m_wcReceive;
    /// The socket's descriptor while the thread may wait on it, else -1.
    int m_nDescriptor = -1;
    SenderCheck m_senderCheck;
    QElapsedTimer m_lastWaitLogged;
    ThreadLifecycle m_lifecycle;

private:
    void setReceiveBuffer(int descriptor);
    void waitWithoutSocket();
    bool handOver(const DatagramReader& reader, int count);
    void waitForDecoder();
};

ECClientReceiverPrivate::ECClientReceiverPrivate(ECClientReceiver& receiver)
    : m_pECClientDecoder(new ECClientDecoder, &deleteThreadObject)
    , m_lifecycle(receiver, m_mtxReceive, m_bStopReceive)
{
}

void ECClientReceiverPrivate::stop()
{
    m_lifecycle.stop([this] {
        m_wcReceive.notify_all();
        // Ends a blocking read, though the kernel reports that there was no connection to shut down.
        if (m_nDescriptor >= 0)
            shutdown(m_nDescriptor, SHUT_RD);
    });
}

void ECClientReceiverPrivate::openSocket()
{
    m_pSocket = std::make_unique<QUdpSocket>();
    if (!m_pSocket->bind(
            QHostAddress::AnyIPv4, ECClientPort, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        ecWarning(
            lcLink, "Orvane ec client receiver bind has filed : %s",
            qUtf8Printable(m_pSocket->errorString()));
    }
    if (!m_pSocket->open(QIODevice::ReadOnly)) {
        ecWarning(
            lcLink, "Orvane ec client receiver open has filed : %s",
            qUtf8Printable(m_pSocket->errorString()));
    }
    m_pSocket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, ReceiveBufferSize);
    const int descriptor = int(m_pSocket->socketDescriptor());
    if (descriptor < 0)
        return;
    setReceiveBuffer(descriptor);

    // From here on the thread reads the descriptor itself and waits in the read: one system call for all
    // datagrams that are there, where QUdpSocket makes five for each.
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    const timeval longestWait{LongestWait.count(), 0};
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &longestWait, sizeof(longestWait));

    const std::lock_guard<std::mutex> lock(m_mtxReceive);
    m_nDescriptor = descriptor;
}

void ECClientReceiverPrivate::setReceiveBuffer(int descriptor)
{
    // Without CAP_NET_ADMIN the kernel silently gives no more than net.core.rmem_max.
    setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &ReceiveBufferSize, sizeof(ReceiveBufferSize));
    int given = 0;
    socklen_t size = sizeof(given);
    getsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &given, &size);
    given /= 2; // the kernel doubles what it is asked for, for its own book-keeping
    ecInfo(lcLink, "Orvane ec client receiver buffer: %d bytes of %d", given, ReceiveBufferSize);
}

void ECClientReceiverPrivate::closeSocket()
{
    {
        const std::lock_guard<std::mutex> lock(m_mtxReceive);
        m_nDescriptor = -1; // no stop shuts down what others open under this number
    }
    m_pSocket->close();
    m_pSocket.reset();
}

void ECClientReceiverPrivate::waitWithoutSocket()
{
    std::unique_lock<std::mutex> lock(m_mtxReceive);
    m_wcReceive.wait_for(lock, LongestWait, [this] { return m_bStopReceive.load(); });
}

/// The decoder is behind: what comes now waits in the kernel.
void ECClientReceiverPrivate::waitForDecoder()
{
    constexpr std::chrono::milliseconds step(1);
    constexpr std::chrono::milliseconds logInterval(1000);
    if (!m_lastWaitLogged.isValid() || m_lastWaitLogged.hasExpired(logInterval.count())) {
        m_lastWaitLogged.start();
        ecWarning(lcLink, "Orvane ec client receiver waits: reports come faster than they are worked.");
    }
    std::unique_lock<std::mutex> lock(m_mtxReceive);
    while (!m_bStopReceive && m_pECClientDecoder->d->isBehind())
        m_wcReceive.wait_for(lock, step);
}

/// @return whether the decoder keeps up
bool ECClientReceiverPrivate::handOver(const DatagramReader& reader, int count)
{
    int refused = 0;
    for (int i = 0; i < count; ++i) {
        if (!m_senderCheck.accepts(reader.sender(i)) && !ProcessEnd::hasBegun()) {
            m_senderCheck.logRefused(reader.sender(i));
            ++refused;
        }
    }
    if (refused == count)
        return true;
    const auto isAccepted = [&](int i) { return refused == 0 || m_senderCheck.accepts(reader.sender(i)); };
    ECClientDecoderPrivate& decoder = *m_pECClientDecoder->d;
    for (int i = 0; i < count && decoder.isObserved(); ++i) {
        if (isAccepted(i))
            decoder.observe(reader.datagram(i));
    }
    return !decoder.append([&](DatagramQueue& queue) {
        for (int i = 0; i < count; ++i) {
            if (isAccepted(i))
                reader.copyTo(queue, i);
        }
    });
}

void ECClientReceiverPrivate::receiveUntilStopped()
{
    const int descriptor = int(m_pSocket->socketDescriptor());
    DatagramReader reader;
    bool failing = false;
    while (!m_bStopReceive) {
        if (descriptor < 0) {
            waitWithoutSocket();
            continue;
        }
        const int count = reader.read(descriptor);
        if (m_bStopReceive)
            break; // the read may have returned an empty datagram that nobody sent
        if (count > 0) {
            if (!handOver(reader, count))
                waitForDecoder();
            failing = false;
        } else if (errno != EAGAIN && errno != EINTR) {
            if (!failing)
                ecWarning(
                    lcLink, "Orvane ec client receiver read has failed : %s",
                    qUtf8Printable(qt_error_string()));
            failing = true;
            waitWithoutSocket();
        }
    }
}

} // namespace Internal

ECClientReceiver::ECClientReceiver(QObject* parent)
    : QThread(parent)
    , d(std::make_unique<Internal::ECClientReceiverPrivate>(*this))
{
    setObjectName(QStringLiteral("ECClientReceiver"));
    d->m_pECClientDecoder->startDecode();
}

ECClientReceiver::~ECClientReceiver()
{
    stopReceive();
    d->m_pECClientDecoder->stopDecode();
}

void ECClientReceiver::setServiceAddress(const QHostAddress& address)
{
    d->m_senderCheck.setServiceAddress(address.toIPv4Address()); // 0 if it has no IPv4 form
}

bool ECClientReceiver::startReceive()
{
    d->m_lifecycle.start();
    return true;
}

bool ECClientReceiver::stopReceive()
{
    d->stop();
    return true;
}

bool ECClientReceiver::registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb)
{
    return d->m_pECClientDecoder->registerUpTLVDecodeFinishedCB(std::move(cb));
}

std::shared_ptr<ECClientDecoder> ECClientReceiver::ecClientDecoder() const
{
    return d->m_pECClientDecoder;
}

void ECClientReceiver::run()
{
    ecInfo(lcLink, "Orvane ec client receiver start receive");
    d->openSocket();
    d->receiveUntilStopped();
    d->closeSocket();
    ecInfo(lcLink, "Orvane ec server receiver stop receive");
    d->m_lifecycle.leave();
}

} // namespace Orvane::ECProxy::Client

#include "servicelink.h"

#include "ecprotocol.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

constexpr int WantedReceiveBuffer = 32 * 1024 * 1024;
constexpr int ReceiveSize = 65536;
constexpr int DatagramsAtOnce = 32;

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// Whether a socket is bound to exactly 127.0.0.1 and this port. False too where the kernel does not tell.
bool isBoundAlready(quint16 port)
{
    QFile table(QStringLiteral("/proc/self/net/udp"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    // The address is printed as the machine's own number of its four bytes.
    const QByteArray wanted =
        QByteArray::number(quint32(htonl(INADDR_LOOPBACK)), 16).toUpper().rightJustified(8, '0') + ':'
        + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
    for (const QByteArray& line : table.readAll().split('\n'))
        if (line.simplified().split(' ').value(1) == wanted)
            return true;
    return false;
}

void signalEvent(int eventDescriptor)
{
    const quint64 one = 1;
    // Can only fail when the counter is full, and then the reader is woken anyway.
    [[maybe_unused]] const auto written = ::write(eventDescriptor, &one, sizeof(one));
}

/// How many datagrams the socket had to drop so far, if this message says so.
void noteDropped(msghdr& message, std::atomic<quint64>& dropped)
{
    for (cmsghdr* control = CMSG_FIRSTHDR(&message); control; control = CMSG_NXTHDR(&message, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SO_RXQ_OVFL)
            continue;
        quint32 count = 0;
        std::memcpy(&count, CMSG_DATA(control), sizeof(count));
        dropped = count;
    }
}

} // namespace

/// Buffers of one recvmmsg call.
struct ServiceLink::ReceiveBuffers {
    std::vector<char> bytes = std::vector<char>(std::size_t(DatagramsAtOnce) * ReceiveSize);
    std::array<iovec, DatagramsAtOnce> vectors{};
    std::array<mmsghdr, DatagramsAtOnce> messages{};
    alignas(cmsghdr) std::array<std::array<char, CMSG_SPACE(sizeof(quint32))>, DatagramsAtOnce> controls{};

    const char* begin(int i) const { return bytes.data() + std::size_t(i) * ReceiveSize; }
    int size(int i) const { return int(messages[std::size_t(i)].msg_len); }

    void prepare()
    {
        for (std::size_t i = 0; i < messages.size(); ++i) {
            vectors[i] = {bytes.data() + i * ReceiveSize, ReceiveSize};
            messages[i] = {};
            messages[i].msg_hdr.msg_iov = &vectors[i];
            messages[i].msg_hdr.msg_iovlen = 1;
            messages[i].msg_hdr.msg_control = controls[i].data();
            messages[i].msg_hdr.msg_controllen = controls[i].size();
        }
    }
};

ServiceLink::ServiceLink(std::function<void()> arrived)
    : m_arrived(std::move(arrived))
{
}

ServiceLink::~ServiceLink()
{
    if (m_thread.joinable()) {
        signalEvent(m_nStop);
        m_thread.join();
    }
    m_pNotifier.reset();
    for (const int descriptor : {m_nSocket, m_nWake, m_nStop})
        if (descriptor >= 0)
            ::close(descriptor);
}

bool ServiceLink::open()
{
    const QString place = QStringLiteral("127.0.0.1 port %1").arg(ECServicePort);
    if (isBoundAlready(ECServicePort)) {
        m_strError = QStringLiteral("%1 is taken by another console or service").arg(place);
        return false;
    }
    m_nSocket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    m_nWake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    m_nStop = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_nSocket < 0 || m_nWake < 0 || m_nStop < 0)
        return fail(QStringLiteral("cannot make a socket"));

    const int on = 1;
    ::setsockopt(m_nSocket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    ::setsockopt(m_nSocket, SOL_SOCKET, SO_RXQ_OVFL, &on, sizeof(on));
    setReceiveBuffer();
    const sockaddr_in address = loopback(ECServicePort);
    if (::bind(m_nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        return fail(QStringLiteral("cannot bind %1").arg(place));

    m_pNotifier = std::make_unique<QSocketNotifier>(m_nWake, QSocketNotifier::Read);
    QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(), [this] {
        quint64 count = 0;
        [[maybe_unused]] const auto size = ::read(m_nWake, &count, sizeof(count));
        m_arrived();
    });
    m_thread = std::thread([this] { receiveLoop(); });
    return true;
}

bool ServiceLink::send(const QByteArray& datagram)
{
    const sockaddr_in address = loopback(ECClientPort);
    if (const auto writer = capture())
        writer->add(CapturedDatagram::Up, datagram.constData(), datagram.size());
    const auto written = ::sendto(
        m_nSocket, datagram.constData(), std::size_t(datagram.size()), 0,
        reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    return written == datagram.size() || fail(QStringLiteral("cannot send %1 bytes").arg(datagram.size()));
}

void ServiceLink::setCapture(std::shared_ptr<CaptureWriter> capture)
{
    const std::lock_guard lock(m_mutex);
    m_pCapture.swap(capture);
}

std::shared_ptr<CaptureWriter> ServiceLink::capture()
{
    const std::lock_guard lock(m_mutex);
    return m_pCapture;
}

void ServiceLink::takeReceived(const std::function<void(const char*, int)>& take)
{
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_received, m_taken);
    }
    const char* bytes = m_taken.bytes.data();
    for (const int size : m_taken.sizes) {
        take(bytes, size);
        bytes += size;
    }
    m_taken.bytes.clear();
    m_taken.sizes.clear();
}

bool ServiceLink::fail(const QString& what)
{
    m_strError = QStringLiteral("%1: %2").arg(what, qt_error_string(errno));
    return false;
}

void ServiceLink::setReceiveBuffer()
{
    // The forced size ignores the system's limit, where we are allowed to.
    const int wanted = WantedReceiveBuffer;
    if (::setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &wanted, sizeof(wanted)) != 0)
        ::setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUF, &wanted, sizeof(wanted));
    socklen_t size = sizeof(m_nReceiveBuffer);
    ::getsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUF, &m_nReceiveBuffer, &size);
}

void ServiceLink::receiveLoop()
{
    std::array<pollfd, 2> watched{{{m_nSocket, POLLIN, 0}, {m_nStop, POLLIN, 0}}};
    ReceiveBuffers buffers;
    for (;;) {
        if (::poll(watched.data(), watched.size(), -1) < 0 && errno != EINTR)
            return;
        if (watched[1].revents != 0)
            return;
        readBatch(buffers);
    }
}

void ServiceLink::readBatch(ReceiveBuffers& buffers)
{
    buffers.prepare();
    const int count =
        ::recvmmsg(m_nSocket, buffers.messages.data(), buffers.messages.size(), MSG_DONTWAIT, nullptr);
    if (count <= 0)
        return;
    noteDropped(buffers.messages[std::size_t(count - 1)].msg_hdr, m_nDropped);
    if (const auto writer = capture())
        for (int i = 0; i < count; ++i)
            writer->add(CapturedDatagram::Down, buffers.begin(i), buffers.size(i));
    bool wasEmpty = false;
    {
        const std::lock_guard lock(m_mutex);
        wasEmpty = m_received.sizes.empty();
        for (int i = 0; i < count; ++i) {
            const char* const begin = buffers.begin(i);
            m_received.bytes.insert(m_received.bytes.end(), begin, begin + buffers.size(i));
            m_received.sizes.push_back(buffers.size(i));
        }
    }
    if (wasEmpty)
        signalEvent(m_nWake);
}

} // namespace Orvane::ConsolePanel

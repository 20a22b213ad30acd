#include "consolesocket.h"

#include "subject.h"

#include "ecprotocol.h"

#include <netinet/udp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Orvane::Benchmark {

sockaddr_in loopbackAddress(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void setReceiveBuffer(int socket)
{
    // Forced, it ignores the system's limit; the kernel allows that only to some.
    if (::setsockopt(socket, SOL_SOCKET, SO_RCVBUFFORCE, &ReceiveBufferSize, sizeof(ReceiveBufferSize)) != 0)
        ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &ReceiveBufferSize, sizeof(ReceiveBufferSize));
}

int boundSocket(std::uint32_t address, std::uint16_t port)
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    setReceiveBuffer(socket);
    sockaddr_in local = loopbackAddress(port);
    local.sin_addr.s_addr = htonl(address);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&local), sizeof(local)) != 0) {
        std::perror("cannot bind a port of the console");
        std::exit(2);
    }
    return socket;
}

ConsoleSocket::ConsoleSocket()
    : m_nSocket(boundSocket(INADDR_LOOPBACK, ECProxy::Client::ECServicePort))
    , m_host(loopbackAddress(ECProxy::Client::ECClientPort))
{
    const timeval longestWait{0, 100'000};
    ::setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &longestWait, sizeof(longestWait));
}

ConsoleSocket::~ConsoleSocket()
{
    ::close(m_nSocket);
}

void ConsoleSocket::send(const std::vector<char>& datagram) const
{
    ::sendto(
        m_nSocket, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&m_host),
        sizeof(m_host));
}

int ConsoleSocket::sendMany(const std::vector<char>& datagram, int count) const
{
    // The kernel cuts one long message into datagrams, or the sender would be slower than some it measures.
    constexpr int batchSize = 64;
    const auto size = std::uint16_t(datagram.size());
    std::vector<char> batch;
    for (int i = 0; i < batchSize; ++i)
        batch.insert(batch.end(), datagram.begin(), datagram.end());

    iovec part{batch.data(), 0};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(size))]{};
    msghdr message{};
    message.msg_name = const_cast<sockaddr_in*>(&m_host);
    message.msg_namelen = sizeof(m_host);
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof(control);
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_UDP;
    header->cmsg_type = UDP_SEGMENT;
    header->cmsg_len = CMSG_LEN(sizeof(size));
    std::memcpy(CMSG_DATA(header), &size, sizeof(size));

    int sent = 0;
    while (sent < count) {
        const int now = std::min(batchSize, count - sent);
        part.iov_len = datagram.size() * std::size_t(now);
        if (::sendmsg(m_nSocket, &message, 0) < 0)
            break;
        sent += now;
    }
    return sent;
}

bool ConsoleSocket::receive() const
{
    char datagram[2048];
    return ::recv(m_nSocket, datagram, sizeof(datagram), 0) > 0;
}

void ConsoleSocket::drain() const
{
    char datagram[2048];
    while (::recv(m_nSocket, datagram, sizeof(datagram), MSG_DONTWAIT) > 0) { }
}

} // namespace Orvane::Benchmark

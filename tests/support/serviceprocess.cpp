/// The console's service, as a process of its own that a test can kill, hold up and replace: what comes to
/// its port goes to the test, what the test says goes to the library's port.
///   orvane_test_service DESCRIPTOR      a SOCK_SEQPACKET socket to the test; "ready" is said there first

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr std::uint16_t ServicePort = 35555;
constexpr std::uint16_t LibraryPort = 35556;

sockaddr_in localAddress(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int openPort()
{
    const int port = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(port, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on)); // the library's send socket has it, too
    const int bufferSize = 8 << 20;
    if (setsockopt(port, SOL_SOCKET, SO_RCVBUFFORCE, &bufferSize, sizeof(bufferSize)) != 0)
        setsockopt(port, SOL_SOCKET, SO_RCVBUF, &bufferSize, sizeof(bufferSize));
    const sockaddr_in address = localAddress(ServicePort);
    return bind(port, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 ? port : -1;
}

} // namespace

int main(int argc, char** argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int test = argc == 2 ? std::atoi(argv[1]) : -1;
    const int port = openPort();
    if (test < 0 || port < 0 || send(test, "ready", 5, 0) != 5)
        return 1;
    const sockaddr_in library = localAddress(LibraryPort);
    static char datagram[65536];
    pollfd ends[] = {{port, POLLIN, 0}, {test, POLLIN, 0}};
    while (poll(ends, 2, -1) > 0) {
        if (ends[0].revents & POLLIN) {
            const ssize_t size = recv(port, datagram, sizeof(datagram), 0);
            if (size > 0 && send(test, datagram, std::size_t(size), 0) != size)
                return 1;
        }
        if (ends[1].revents != 0) {
            const ssize_t size = recv(test, datagram, sizeof(datagram), 0);
            if (size <= 0)
                return 0; // the test has ended
            sendto(
                port, datagram, std::size_t(size), 0, reinterpret_cast<const sockaddr*>(&library),
                sizeof(library));
        }
    }
    return 1;
}

#pragma once

#include <netinet/in.h>

#include <chrono>
#include <cstdint>
#include <vector>

namespace Orvane::Benchmark {

sockaddr_in loopbackAddress(std::uint16_t port);

/// Asks for the receive buffer that every subject's socket has.
void setReceiveBuffer(int socket);

/// A blocking UDP socket with that buffer. Ends the process, saying why, when the port is not to be had.
int boundSocket(std::uint32_t address, std::uint16_t port);

/// The console service's end of the wire.
class ConsoleSocket {
public:
    ConsoleSocket();
    ~ConsoleSocket();
    ConsoleSocket(const ConsoleSocket&) = delete;
    ConsoleSocket& operator=(const ConsoleSocket&) = delete;

    void send(const std::vector<char>& datagram) const;

    /// Sends the same datagram `count` times with as few system calls as possible.
    /// @return how many the system took
    int sendMany(const std::vector<char>& datagram, int count) const;

    /// Waits for one datagram. False when none came within a tenth of a second.
    bool receive() const;

    /// Throws away whatever has come.
    void drain() const;

private:
    int m_nSocket;
    sockaddr_in m_host;
};

} // namespace Orvane::Benchmark

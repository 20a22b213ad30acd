/// What the library is measured against.

#include "consolesocket.h"
#include "subject.h"

#include "ecprotocol.h"

#include <lo/lo.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <thread>

namespace Orvane::Benchmark {

using namespace ECProxy::Client;

namespace {

constexpr std::size_t LargestDatagram = 65536;

/// The key's LED in green, with a sequence number, as the library's answer has it.
std::vector<char> ledDatagram(const char* report)
{
    static std::uint16_t s_nSequence = 0;
    ECProtocolHead head;
    head.Sequence = ++s_nSequence;
    head.ContentLength = ECTLSize + sizeof(ECButtonColor);
    ECProtocolTL tl;
    tl.Tag = UpdateECButtonColor;
    tl.Length = sizeof(ECButtonColor);
    ECButtonColor color;
    color.ButtonKey = Wire::load<quint32>(report + ECValueOffset);
    color.ECKey = quint16(color.ButtonKey);
    color.G = 255;
    color.brightness = 100;

    std::vector<char> datagram(ECValueOffset + sizeof(ECButtonColor));
    Wire::write(head, datagram.data());
    Wire::write(tl, datagram.data() + ECHeadSize);
    Wire::write(color, datagram.data() + ECValueOffset);
    return datagram;
}

void send(int socket, const std::vector<char>& datagram, const sockaddr_in& target)
{
    ::sendto(
        socket, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&target),
        sizeof(target));
}

/// A queue between two threads, the way one writes it without a thought.
class Queue {
public:
    void push(std::vector<char> datagram)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_datagrams.push_back(std::move(datagram));
        }
        m_filled.notify_one();
    }

    std::vector<char> pop()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_filled.wait(lock, [this] { return !m_datagrams.empty(); });
        std::vector<char> datagram = std::move(m_datagrams.front());
        m_datagrams.pop_front();
        return datagram;
    }

private:
    // m_mutex guards m_datagrams.
    std::mutex m_mutex;
    std::condition_variable m_filled;
    std::deque<std::vector<char>> m_datagrams;
};

} // namespace

int serveRaw(Duty duty, SharedState& shared)
{
    const int socket = boundSocket(INADDR_ANY, ECClientPort);
    const sockaddr_in console = loopbackAddress(ECServicePort);
    std::vector<char> buffer(LargestDatagram);
    for (;;) {
        if (::recvfrom(socket, buffer.data(), buffer.size(), 0, nullptr, nullptr) < ECValueOffset)
            continue;
        if (duty == Duty::Answer)
            send(socket, ledDatagram(buffer.data()), console);
        shared.handled.fetch_add(1, std::memory_order_relaxed);
    }
}

int serveRelay(Duty duty, SharedState& shared)
{
    const int socket = boundSocket(INADDR_ANY, ECClientPort);
    const sockaddr_in console = loopbackAddress(ECServicePort);
    Queue received;
    Queue answers;
    std::thread worker([&] {
        for (;;) {
            const std::vector<char> report = received.pop();
            if (duty == Duty::Answer)
                answers.push(ledDatagram(report.data()));
            shared.handled.fetch_add(1, std::memory_order_relaxed);
        }
    });
    std::thread sender([&] {
        for (;;)
            send(socket, answers.pop(), console);
    });
    std::vector<char> buffer(LargestDatagram);
    for (;;) {
        const auto size = ::recvfrom(socket, buffer.data(), buffer.size(), 0, nullptr, nullptr);
        if (size >= ECValueOffset)
            received.push(std::vector<char>(buffer.data(), buffer.data() + size));
    }
}

int serveLiblo(SubjectKind kind, SharedState& shared)
{
    const std::string port = std::to_string(ECClientPort);
    const auto fail = [](int, const char* text, const char* path) {
        std::fprintf(stderr, "liblo: %s %s\n", text, path ? path : "");
    };
    const auto count = [](const char*, const char*, lo_arg**, int, lo_message, void* state) {
        static_cast<SharedState*>(state)->handled.fetch_add(1, std::memory_order_relaxed);
        return 0;
    };
    if (kind == SubjectKind::LibloThread) {
        const lo_server_thread server = lo_server_thread_new(port.c_str(), fail);
        if (!server)
            return 2;
        setReceiveBuffer(lo_server_get_socket_fd(lo_server_thread_get_server(server)));
        lo_server_thread_add_method(server, OscKeyAddress, "i", count, &shared);
        lo_server_thread_start(server);
        for (;;)
            ::pause();
    }
    const lo_server server = lo_server_new(port.c_str(), fail);
    if (!server)
        return 2;
    setReceiveBuffer(lo_server_get_socket_fd(server));
    lo_server_add_method(server, OscKeyAddress, "i", count, &shared);
    for (;;)
        lo_server_recv(server);
}

} // namespace Orvane::Benchmark

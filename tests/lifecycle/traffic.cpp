#include "traffic.h"

#include "upmessage.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Life {

using namespace Orvane;

Traffic::Traffic(std::vector<QByteArray> datagrams, std::chrono::microseconds pause)
    : m_datagrams(std::move(datagrams))
    , m_pause(pause)
    , m_thread([this] { run(); })
{
}

Traffic::~Traffic()
{
    m_bStop = true;
    m_thread.join();
}

void Traffic::run()
{
    const int socketToLibrary = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in library{};
    library.sin_family = AF_INET;
    library.sin_port = htons(ECProxy::Client::ECClientPort);
    library.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    while (!m_bStop) {
        const QByteArray& datagram = m_datagrams[m_nSent % m_datagrams.size()];
        sendto(
            socketToLibrary, datagram.constData(), std::size_t(datagram.size()), 0,
            reinterpret_cast<const sockaddr*>(&library), sizeof(library));
        ++m_nSent;
        if (m_pause.count() > 0)
            std::this_thread::sleep_for(m_pause);
    }
    close(socketToLibrary);
}

std::vector<QByteArray> taps(const std::vector<quint32>& keys)
{
    std::vector<QByteArray> reports;
    for (const quint32 key : keys) {
        for (const bool pressed : {true, false})
            reports.push_back(ConsolePanel::encodeUp(ConsolePanel::KeyReport{pressed, key}, 1));
    }
    return reports;
}

} // namespace Life

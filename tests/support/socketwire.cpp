#include "socketwire.h"

#include "ecconsolesession.h"
#include "ecprotocol.h"

#include <QFile>
#include <QTest>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace Orvane::TestSupport {

using namespace ECProxy::Client;

namespace {
constexpr int PatienceMs = 20000;
} // namespace

SocketWire::SocketWire()
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0)
        qFatal("No pair of sockets.");
    m_nOwnEnd = ends[0];
    m_nServiceEnd = ends[1];
}

SocketWire::~SocketWire()
{
    killService();
    close(m_nOwnEnd);
    close(m_nServiceEnd);
}

void SocketWire::join(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, Receive receive)
{
    m_receive = std::move(receive);
    m_reader = std::thread([this] { readRequests(); });
    startService();
    m_pSession = std::make_unique<ECConsoleSession>();
    if (!m_pSession->start(keyboard))
        qFatal("%s", qUtf8Printable(m_pSession->errorString()));
    if (!waitUntilReceiving())
        qFatal("The library does not receive.");
}

bool SocketWire::waitUntilReceiving()
{
    return QTest::qWaitFor([] { return portState(ECClientPort).isOpen; }, PatienceMs);
}

void SocketWire::report(const QByteArray& datagram)
{
    if (!m_bLosesReports)
        send(m_nOwnEnd, datagram.constData(), std::size_t(datagram.size()), 0);
}

void SocketWire::end()
{
    m_pSession.reset();
    shutdown(m_nOwnEnd, SHUT_RDWR);
    if (m_reader.joinable())
        m_reader.join();
}

void SocketWire::readRequests()
{
    std::vector<char> datagram(65536);
    for (;;) {
        const ssize_t size = recv(m_nOwnEnd, datagram.data(), datagram.size(), 0);
        if (size <= 0)
            return;
        if (QByteArray::fromRawData(datagram.data(), int(size)) == "ready")
            ++m_nReady;
        else if (!m_bLosesRequests)
            m_receive(datagram.data(), int(size));
    }
}

void SocketWire::startService()
{
    const int before = m_nReady;
    m_pService = std::make_unique<QProcess>();
    m_pService->setProcessChannelMode(QProcess::ForwardedChannels);
    m_pService->start(QStringLiteral(TEST_SERVICE), {QString::number(m_nServiceEnd)});
    if (!QTest::qWaitFor([&] { return m_nReady > before; }, PatienceMs))
        qFatal("The service does not get its port.");
}

void SocketWire::killService()
{
    if (!m_pService)
        return;
    m_pService->kill();
    m_pService->waitForFinished();
    m_pService.reset();
}

void SocketWire::holdUpService()
{
    signalService(SIGSTOP);
}

void SocketWire::letServiceGoOn()
{
    signalService(SIGCONT);
}

void SocketWire::signalService(int signal)
{
    if (m_pService)
        kill(pid_t(m_pService->processId()), signal);
}

PortState portState(quint16 port)
{
    PortState state;
    QFile table(QStringLiteral("/proc/self/net/udp"));
    if (!table.open(QIODevice::ReadOnly))
        return state;
    const auto lines = table.readAll().split('\n');
    for (const QByteArray& line : lines) {
        // Number, local address, remote address, ..., drops.
        const QList<QByteArray> columns = line.simplified().split(' ');
        bool isNumber = false;
        if (columns.size() < 3 || columns[1].mid(columns[1].indexOf(':') + 1).toInt(&isNumber, 16) != port)
            continue;
        state.isOpen = true;
        state.dropped += columns.last().toULongLong();
    }
    return state;
}

} // namespace Orvane::TestSupport

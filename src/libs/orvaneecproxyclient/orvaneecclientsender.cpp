#include "orvaneecclientsender.h"

#include "datagramqueue_p.h"
#include "eclinklog_p.h"
#include "ecprotocol.h"
#include "threadlifecycle_p.h"

#include <QHostAddress>
#include <QNetworkDatagram>
#include <QUdpSocket>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

/// Datagrams to be written, each with its destination.
class DownQueue {
public:
    void append(const QByteArray& bytes, const QHostAddress& target, quint16 port)
    {
        m_datagrams.append(bytes.constData(), std::size_t(bytes.size()));
        m_targets.push_back({target, port});
    }

    bool isEmpty() const { return m_datagrams.isEmpty(); }

    void clear()
    {
        m_datagrams.clear();
        m_targets.clear();
    }

    void swap(DownQueue& other) noexcept
    {
        m_datagrams.swap(other.m_datagrams);
        m_targets.swap(other.m_targets);
    }

    template <typename Write> void forEach(Write&& write) const
    {
        for (std::size_t i = 0; i < m_datagrams.count(); ++i)
            write(m_datagrams.at(i), m_targets[i].address, m_targets[i].port);
    }

private:
    struct Target {
        QHostAddress address;
        quint16 port;
    };

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
        qCWarning(
            lcECLink, "Orvane ec client sender bind has filed : %s",
            qUtf8Printable(m_pSocket->errorString()));
    }
    if (!m_pSocket->open(QIODevice::WriteOnly)) {
        qCWarning(
            lcECLink, "Orvane ec client sender open has filed : %s",
            qUtf8Printable(m_pSocket->errorString()));
    }
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
    batch.forEach([this](DatagramQueue::Datagram datagram, const QHostAddress& address, quint16 port) {
        if (m_pSocket->writeDatagram(datagram.bytes, qint64(datagram.size), address, port) <= 0)
            qCWarning(lcECLink, "Orvane ec client sender send data has failed.");
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
    d->m_lifecycle.stop([this] { d->m_wcSend.notify_all(); });
    return true;
}

bool ECClientSender::appendDatagram(const QNetworkDatagram& datagram)
{
    return appendDatagram(
        datagram.data(), datagram.destinationAddress(), static_cast<quint16>(datagram.destinationPort()));
}

bool ECClientSender::appendDatagram(const QByteArray& bytes, const QHostAddress& target, quint16 port)
{
    std::unique_lock<std::mutex> lock(d->m_mtxSend);
    const bool mayWait = d->m_datagramQueue.isEmpty();
    d->m_datagramQueue.append(bytes, target, port);
    lock.unlock();
    if (mayWait)
        d->m_wcSend.notify_all(); // after the mutex is free, or the woken thread waits once more, for it
    return true;
}

void ECClientSender::run()
{
    qCInfo(Internal::lcECLink, "Orvane ec client sender start send");
    d->openSocket();
    d->sendUntilStopped();
    d->m_pSocket.reset();
    qCInfo(Internal::lcECLink, "Orvane ec client sender stop send");
    d->m_lifecycle.leave();
}

} // namespace Orvane::ECProxy::Client

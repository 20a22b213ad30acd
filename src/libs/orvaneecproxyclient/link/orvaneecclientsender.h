#pragma once

#include "orvaneecproxyclient_global.h"

#include <QThread>

#include <memory>

class QByteArray;
class QHostAddress;
class QNetworkDatagram;

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECClientSenderPrivate;
}

/// Writes datagrams to the service on a thread of its own, so that lighting a key never waits for the
/// network.
///
/// The socket lives on that thread and is bound to ECServicePort on every address, shared with the service
/// itself. Failures to bind or write are logged and not reported otherwise; nothing is written twice.
///
/// All functions may be called from any thread.
class ORVANEECPROXYCLIENT_EXPORT ECClientSender : public QThread {
    Q_OBJECT

public:
    explicit ECClientSender(QObject* parent = nullptr);
    /// Stops first.
    ~ECClientSender() override;

    /// @return true
    bool startSend();
    /// Waits for the thread. What is still queued then is not sent before the next start.
    /// @return true
    bool stopSend();

    /// Queues a datagram to its destination. Datagrams of one thread are written in the order of the calls.
    /// @return true
    bool appendDatagram(const QNetworkDatagram& datagram);
    /// The same without the cost of making a QNetworkDatagram.
    /// @return true
    bool appendDatagram(const QByteArray& bytes, const QHostAddress& target, quint16 port);

protected:
    void run() override;

private:
    const std::unique_ptr<Internal::ECClientSenderPrivate> d;
};

} // namespace Orvane::ECProxy::Client

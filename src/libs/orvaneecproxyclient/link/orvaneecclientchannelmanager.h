#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace Orvane::ECProxy::Client {

class ECClientDecoder;

namespace Internal {
class ECClientChannelManagerPrivate;
}

/// The connection to the service: a send, a receive and a decode thread between openChannel() and
/// closeChannel(), which may follow each other any number of times.
///
/// Failures in the threads, such as a port that cannot be bound, are logged and not reported otherwise.
///
/// All functions may be called from any thread, also from the callback.
class ORVANEECPROXYCLIENT_EXPORT ECClientChannelManager : public QObject {
    Q_OBJECT

public:
    /// Closed at first.
    explicit ECClientChannelManager(QObject* parent = nullptr);
    /// Closes first.
    ~ECClientChannelManager() override;

    /// Starts the threads; an open channel only takes over the address. Reports are taken from that address
    /// and from this machine's loopback addresses; all others are dropped with a warning.
    /// @param address where the service is, as numbers: "127.0.0.1". Anything else, host names included, is
    /// logged as a bad address: the channel opens all the same and takes reports from loopback, but its
    /// requests reach no service.
    /// @return true
    bool openChannel(const QString& address);
    /// Ends the threads and waits for them. Requests still queued and reports not yet taken by the decoder
    /// are dropped. If another thread is closing already, waits for that to end, too. The callback that
    /// closes its own channel does not wait for itself: it and the rest of its batch run to their end.
    /// @return true
    bool closeChannel();

    /// Queues a datagram to the service. It has not been written when this returns.
    /// @return false when the channel is not open
    bool sendDownTLVRequest(const QByteArray& bytes);

    /// Registers what is called with every report, on the decode thread. It may be registered before the
    /// channel is opened and stays registered when it is closed.
    /// @return true
    bool registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType callback);

    /// Empty while the channel is closed.
    std::shared_ptr<ECClientDecoder> ecClientDecoder() const;

private:
    const std::shared_ptr<Internal::ECClientChannelManagerPrivate> d;
};

} // namespace Orvane::ECProxy::Client

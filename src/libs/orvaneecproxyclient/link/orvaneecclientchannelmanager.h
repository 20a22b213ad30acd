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
/// What fails in the threads, a port that cannot be bound for one, is told in the log and nowhere else.
///
/// All functions may be called from any thread, those that open and close from the callback too.
class ORVANEECPROXYCLIENT_EXPORT ECClientChannelManager : public QObject {
    Q_OBJECT

public:
    explicit ECClientChannelManager(QObject* parent = nullptr);
    /// Closes first.
    ~ECClientChannelManager() override;

    /// Starts the threads; an open channel only takes over the address.
    /// @param address where the service is, as numbers: "127.0.0.1"
    /// @return true
    bool openChannel(const QString& address);
    /// Ends the threads and waits for them. What is queued for the service or not yet decoded is dropped.
    /// @return true
    bool closeChannel();

    /// Queues a datagram to the service. It has not been written when this returns.
    /// @return false when the channel is not open
    bool sendDownTLVRequest(const QByteArray& bytes);

    /// Has `callback` called with every report, on the decode thread. It may be registered before the channel
    /// is opened and stays when it is closed.
    /// @return true
    bool registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType callback);

    /// Empty while the channel is closed.
    std::shared_ptr<ECClientDecoder> ecClientDecoder() const;

private:
    const std::shared_ptr<Internal::ECClientChannelManagerPrivate> d;
};

} // namespace Orvane::ECProxy::Client

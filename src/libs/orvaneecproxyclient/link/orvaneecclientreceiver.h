#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QHostAddress>
#include <QThread>

#include <memory>

namespace Orvane::ECProxy::Client {

class ECClientDecoder;

namespace Internal {
class ECClientReceiverPrivate;
}

/// Reads the service's datagrams on a thread of its own and hands them to its decoder.
///
/// The socket lives on that thread and is bound to ECClientPort on every IPv4 address. Datagrams are taken
/// from this machine's loopback addresses and from the service's address; all others are dropped, with a
/// warning at most once a second, so that nobody else on the network can press keys. If the port cannot be
/// bound, the log says so; the thread keeps running and receives nothing.
///
/// All functions may be called from any thread.
class ORVANEECPROXYCLIENT_EXPORT ECClientReceiver : public QThread {
    Q_OBJECT

public:
    /// Creates the decoder and starts it.
    explicit ECClientReceiver(QObject* parent = nullptr);
    /// Stops the receiver, then the decoder.
    ~ECClientReceiver() override;

    /// Sets the address, beside loopback, whose datagrams are taken. At first there is none.
    /// @param address IPv4, also in its IPv6-mapped form; any other means loopback only
    void setServiceAddress(const QHostAddress& address);

    /// @return true
    bool startReceive();
    /// Waits for the thread, which ends at once.
    /// @return true
    bool stopReceive();

    /// Passes the callback to the decoder.
    /// @return true
    bool registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb);

    /// Never empty. The decoder runs until the receiver is destroyed and parses nothing after it; whoever
    /// watches it holds a weak pointer.
    std::shared_ptr<ECClientDecoder> ecClientDecoder() const;

protected:
    void run() override;

private:
    const std::unique_ptr<Internal::ECClientReceiverPrivate> d;
};

} // namespace Orvane::ECProxy::Client

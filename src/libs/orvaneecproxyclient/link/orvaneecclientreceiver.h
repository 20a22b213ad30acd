#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QThread>

#include <memory>

namespace Orvane::ECProxy::Client {

class ECClientDecoder;

namespace Internal {
class ECClientReceiverPrivate;
}

/// Reads the service's datagrams on a thread of its own and hands them to its decoder.
///
/// The socket lives on that thread and is bound to ECClientPort on every IPv4 address. What cannot be
/// bound is told in the log and nowhere else: the thread runs on and sees nothing.
///
/// All functions may be called from any thread.
class ORVANEECPROXYCLIENT_EXPORT ECClientReceiver : public QThread {
    Q_OBJECT

public:
    /// Makes the decoder and starts it.
    explicit ECClientReceiver(QObject* parent = nullptr);
    /// Stops the receiver, then the decoder.
    ~ECClientReceiver() override;

    /// @return true
    bool startReceive();
    /// Waits for the thread, which leaves at once.
    /// @return true
    bool stopReceive();

    /// Hands the callback to the decoder.
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

#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QByteArray>
#include <QThread>

#include <memory>

class QNetworkDatagram;

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECClientDecoderPrivate;
class ECClientReceiverPrivate;
} // namespace Internal

/// Turns the service's datagrams into tags and values, on a thread of its own.
///
/// The receiver makes and starts it and appends what arrives; whoever wants the reports registers a callback,
/// before or after the start. Each datagram yields at most one call, in the order of arrival, on this
/// thread and without a lock held; datagrams parsed while no callback is registered are lost with a
/// warning. Datagrams that do not begin with the service's magic are dropped with a warning.
///
/// All functions may be called from any thread, those that start and stop from the callback too: there
/// stopDecode() does not wait.
class ORVANEECPROXYCLIENT_EXPORT ECClientDecoder : public QThread {
    Q_OBJECT

public:
    explicit ECClientDecoder(QObject* parent = nullptr);
    /// Stops first.
    ~ECClientDecoder() override;

    /// @return true; false only from the callback of a decoder that is being stopped
    bool startDecode();
    /// Waits until a call that is under way has returned. Datagrams not yet parsed by then are not parsed
    /// before the next start, or dropped where their batch had begun.
    /// @return true
    bool stopDecode();

    /// @return true
    bool appendDatagram(const QNetworkDatagram& datagram);
    /// Takes `bytes` as if they had been received.
    /// @return true
    bool appendDatagram(const QByteArray& bytes);

    /// Replaces the callback; an empty one removes it. It must not throw. The value it is handed is its own
    /// to keep. A call to the one that was replaced may still be under way when this returns.
    /// @return true
    bool registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb);
    /// A second place for a callback, for extended reports. It is kept and not called.
    /// @return true
    bool registerExDownTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb);

protected:
    void run() override;

private:
    friend class Internal::ECClientReceiverPrivate; // hands over whole batches
    const std::unique_ptr<Internal::ECClientDecoderPrivate> d;
};

} // namespace Orvane::ECProxy::Client

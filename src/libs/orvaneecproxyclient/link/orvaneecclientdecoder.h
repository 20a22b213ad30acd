#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QByteArray>
#include <QThread>

#include <functional>
#include <memory>

class QNetworkDatagram;

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECClientDecoderPrivate;
class ECClientReceiverPrivate;
} // namespace Internal

/// Turns the service's datagrams into tags and values, on a thread of its own.
///
/// The receiver creates and starts it and appends what arrives. A callback for the reports is registered
/// before or after the start. Each datagram yields at most one call, in the order of arrival, on this thread
/// and without a lock held; datagrams parsed while no callback is registered are lost with a warning.
/// Datagrams that do not begin with the service's magic are dropped with a warning.
///
/// All functions may be called from any thread, those that start and stop from the callback too: there
/// stopDecode() does not wait.
class ORVANEECPROXYCLIENT_EXPORT ECClientDecoder : public QThread {
    Q_OBJECT

public:
    /// Stopped at first.
    explicit ECClientDecoder(QObject* parent = nullptr);
    /// Stops first.
    ~ECClientDecoder() override;

    /// @return true; false only from the callback of a decoder that is being stopped
    bool startDecode();
    /// Waits until the thread has parsed the batch that it took from the queue, callbacks included. Datagrams
    /// still in the queue then are parsed after the next start.
    /// @return true
    bool stopDecode();

    /// @return true
    bool appendDatagram(const QNetworkDatagram& datagram);
    /// Parses `bytes` as if they had been received.
    /// @return true
    bool appendDatagram(const QByteArray& bytes);

    /// Replaces the callback; an empty one removes it. It must not throw. It may keep
    /// the value that it gets. A call to the one that was replaced may still be under way when this returns.
    /// @return true
    bool registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb);
    /// Called with each datagram that is appended, whatever its bytes are.
    using DatagramObserver = std::function<void(const QByteArray& datagram)>;
    /// Has an observer see every datagram right before it is queued, to record it for one; an empty one
    /// removes it. It runs on the thread that appends (the receive thread for what comes from the service),
    /// which waits for it, on several at once and without a lock held; it must not throw. A call to the one
    /// that was replaced may still be under way when this returns.
    void setDatagramObserver(DatagramObserver observer);

    /// Stores a second callback, for extended reports. It is never called.
    /// @return true
    bool registerExDownTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb);

protected:
    /// Parses batch after batch until it is stopped.
    void run() override;

private:
    friend class Internal::ECClientReceiverPrivate; // hands over whole batches
    const std::unique_ptr<Internal::ECClientDecoderPrivate> d;
};

} // namespace Orvane::ECProxy::Client

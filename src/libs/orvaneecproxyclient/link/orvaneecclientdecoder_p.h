#pragma once

#include "datagramqueue_p.h"
#include "orvaneecclientdecoder.h"
#include "threadlifecycle_p.h"

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

class ECClientDecoderPrivate : public QObject {
public:
    explicit ECClientDecoderPrivate(ECClientDecoder& decoder)
        : m_lifecycle(decoder, m_mtxDecode, m_bStopDecode)
    {
    }

    /// Appends what `fill` puts into the queue it is handed: one lock and one wake for all of it.
    template <typename Fill> void append(Fill&& fill)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mtxDecode);
            fill(m_datagramQueue);
        }
        m_wcDecode.notify_one(); // unlocked, so that the woken thread does not block on the mutex
    }

    bool isObserved() const { return m_bObserved.load(std::memory_order_relaxed); }
    void observe(const QByteArray& datagram);
    void setObserver(ECClientDecoder::DatagramObserver&& observer);

    /// A callback shared between threads: it stays alive until a call to it has returned, even if it is
    /// replaced meanwhile.
    using SharedCallback = std::shared_ptr<const UpTLVDecodeFinishedCallbackType>;

    void setCallback(SharedCallback& slot, UpTLVDecodeFinishedCallbackType&& cb);
    void decodeUntilStopped();
    void stop();

    /// Wakes the thread for datagrams or a stop.
    std::condition_variable m_wcDecode;
    /// Guards m_datagramQueue and the writing of m_bStopDecode.
    std::mutex m_mtxDecode;
    std::atomic<bool> m_bStopDecode{false};
    DatagramQueue m_datagramQueue;

    /// Guards both callbacks and the observer.
    std::mutex m_mtxCallback;
    std::shared_ptr<const ECClientDecoder::DatagramObserver> m_pObserver;
    /// Whether there is an observer: nobody takes the mutex for none.
    std::atomic<bool> m_bObserved{false};
    SharedCallback m_cbUpTLVDecodeFinished;
    SharedCallback m_cbTLVExDecodeFinished;
    /// Counts the changes of the callbacks: the thread takes the mutex only when there is a new one.
    std::atomic<unsigned> m_nCallbackChange{0};

    ThreadLifecycle m_lifecycle;

private:
    void decode(const DatagramQueue& batch);
    SharedCallback upCallback();
};

} // namespace Orvane::ECProxy::Client::Internal

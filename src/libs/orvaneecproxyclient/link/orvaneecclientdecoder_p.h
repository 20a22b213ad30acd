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
    /// @return whether more waits now than `isBehind()` allows
    template <typename Fill> bool append(Fill&& fill)
    {
        bool isLong = false;
        {
            const std::lock_guard<std::mutex> lock(m_mtxDecode);
            fill(m_datagramQueue);
            isLong = isTooLong(m_datagramQueue);
        }
        m_wcDecode.notify_one(); // unlocked, so that the woken thread does not block on the mutex
        return isLong;
    }

    /// So much waits that the receive thread should leave the rest to the kernel, which keeps what its buffer
    /// holds and drops what comes then. Far more than a console can report while a handler waits; without a
    /// limit a flood of the port would take the process's memory, and keys would act ever later.
    bool isBehind()
    {
        const std::lock_guard<std::mutex> lock(m_mtxDecode);
        return isTooLong(m_datagramQueue);
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
    static bool isTooLong(const DatagramQueue& queue)
    {
        constexpr std::size_t mostDatagrams = 16384;
        constexpr std::size_t mostBytes = 4u << 20;
        return queue.count() > mostDatagrams || queue.byteCount() > mostBytes;
    }

    void decode(const DatagramQueue& batch);
    SharedCallback upCallback();
};

} // namespace Orvane::ECProxy::Client::Internal

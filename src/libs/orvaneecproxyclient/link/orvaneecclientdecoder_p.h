#pragma once

#include "datagramqueue_p.h"
#include "orvaneecclientdecoder.h"
#include "threadlifecycle_p.h"
#include "waitcondition_p.h"

#include <QObject>

#include <atomic>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

class ECClientDecoderPrivate : public QObject {
public:
    explicit ECClientDecoderPrivate(ECClientDecoder& decoder)
        : m_lifecycle(decoder, m_mtxDecode, m_bStopDecode)
    {
    }

    /// Appends what `fill` puts into the queue it is handed: one lock and at most one wake for all of it.
    template <typename Fill> void append(Fill&& fill)
    {
        std::unique_lock<std::mutex> lock(m_mtxDecode);
        fill(m_datagramQueue);
        m_wcDecode.wakeAndUnlock(lock);
    }

    /// A callback as the threads share it, so that a call goes on while another takes its place.
    using SharedCallback = std::shared_ptr<const UpTLVDecodeFinishedCallbackType>;

    void setCallback(SharedCallback& slot, UpTLVDecodeFinishedCallbackType&& cb);
    void decodeUntilStopped();
    void stop();

    WaitCondition m_wcDecode;
    /// Guards m_wcDecode, m_datagramQueue and the writing of m_bStopDecode.
    std::mutex m_mtxDecode;
    std::atomic<bool> m_bStopDecode{false};
    DatagramQueue m_datagramQueue;

    /// Guards both callbacks.
    std::mutex m_mtxCallback;
    SharedCallback m_cbUpTLVDecodeFinished;
    SharedCallback m_cbTLVExDecodeFinished;
    /// Counts the changes of the callbacks, so that the thread takes the mutex only when there is a new one.
    std::atomic<unsigned> m_nCallbackChange{0};

    ThreadLifecycle m_lifecycle;

private:
    void decode(const DatagramQueue& batch);
    SharedCallback upCallback();
};

} // namespace Orvane::ECProxy::Client::Internal

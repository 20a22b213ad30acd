#include "orvaneecclientdecoder.h"
#include "orvaneecclientdecoder_p.h"

#include "log_p.h"
#include "processend_p.h"
#include "uptlv_p.h"

#include <QNetworkDatagram>

#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

void decode(DatagramQueue::Datagram datagram, const UpTLVDecodeFinishedCallbackType* callback)
{
    const UpReport report = parseUpDatagram(datagram.bytes, datagram.size);
    if (report.kind == UpReport::InvalidHead) {
        ecWarning(lcCodec, "Orvane ec up decoder receive invalid package. The head is %u", report.head);
        return;
    }
    if (report.kind == UpReport::Nothing)
        return;
    if (!callback) {
        ecWarning(lcCodec, "[locate key no response] up tlv decoder callback is null.");
        return;
    }
    ecDebug(
        lcCodec, "[locate key no response] tag: %u body's size: %u", unsigned(report.tag),
        unsigned(report.valueSize));
    (*callback)(report.tag, QByteArray(report.value, report.valueSize));
}

} // namespace

void ECClientDecoderPrivate::setCallback(SharedCallback& slot, UpTLVDecodeFinishedCallbackType&& cb)
{
    SharedCallback other; // outlives the lock: the old callback's contents are destroyed without it held
    if (cb)
        other = std::make_shared<const UpTLVDecodeFinishedCallbackType>(std::move(cb));
    const std::lock_guard<std::mutex> lock(m_mtxCallback);
    slot.swap(other);
    m_nCallbackChange.fetch_add(1, std::memory_order_release);
}

ECClientDecoderPrivate::SharedCallback ECClientDecoderPrivate::upCallback()
{
    const std::lock_guard<std::mutex> lock(m_mtxCallback);
    return m_cbUpTLVDecodeFinished;
}

void ECClientDecoderPrivate::setObserver(ECClientDecoder::DatagramObserver&& observer)
{
    std::shared_ptr<const ECClientDecoder::DatagramObserver> other; // outlives the lock, as a callback does
    if (observer)
        other = std::make_shared<const ECClientDecoder::DatagramObserver>(std::move(observer));
    const std::lock_guard<std::mutex> lock(m_mtxCallback);
    m_bObserved.store(other != nullptr, std::memory_order_relaxed);
    m_pObserver.swap(other);
}

void ECClientDecoderPrivate::observe(const QByteArray& datagram)
{
    std::shared_ptr<const ECClientDecoder::DatagramObserver> observer;
    {
        const std::lock_guard<std::mutex> lock(m_mtxCallback);
        observer = m_pObserver;
    }
    if (observer)
        (*observer)(datagram);
}

void ECClientDecoderPrivate::stop()
{
    m_lifecycle.stop([this] { m_wcDecode.notify_one(); });
}

void ECClientDecoderPrivate::decodeUntilStopped()
{
    ecInfo(lcLink, "Orvane ec client decoder thread start");
    DatagramQueue batch;
    std::unique_lock<std::mutex> lock(m_mtxDecode);
    while (!m_bStopDecode) {
        if (m_datagramQueue.isEmpty() || ProcessEnd::hasBegun()) {
            m_wcDecode.wait(lock); // without a limit: every stop wakes the thread
            continue;
        }
        m_datagramQueue.swap(batch);
        lock.unlock();
        if (const ProcessEnd::Work work; work) {
            ecInfo(lcCodec, "[locate key no response] received key command,parsing tlv.");
            decode(batch);
        }
        batch.clear();
        lock.lock();
    }
    lock.unlock();
    ecInfo(lcLink, "Orvane ec client decoder thread stop");
    m_lifecycle.leave();
}

void ECClientDecoderPrivate::decode(const DatagramQueue& batch)
{
    unsigned known = m_nCallbackChange.load(std::memory_order_acquire);
    SharedCallback callback = upCallback();
    // Whole, also after a stop: only what is still in the queue waits for the next start.
    for (std::size_t i = 0; i < batch.count() && !ProcessEnd::hasBegun(); ++i) {
        const unsigned change = m_nCallbackChange.load(std::memory_order_acquire);
        if (change != known) {
            known = change;
            callback = upCallback();
        }
        Internal::decode(batch.at(i), callback.get());
    }
}

} // namespace Internal

ECClientDecoder::ECClientDecoder(QObject* parent)
    : QThread(parent)
    , d(std::make_unique<Internal::ECClientDecoderPrivate>(*this))
{
    setObjectName(QStringLiteral("ECClientDecoder"));
}

ECClientDecoder::~ECClientDecoder()
{
    stopDecode();
}

bool ECClientDecoder::startDecode()
{
    return d->m_lifecycle.start();
}

bool ECClientDecoder::stopDecode()
{
    d->stop();
    return true;
}

bool ECClientDecoder::appendDatagram(const QNetworkDatagram& datagram)
{
    return appendDatagram(datagram.data());
}

bool ECClientDecoder::appendDatagram(const QByteArray& bytes)
{
    if (d->isObserved())
        d->observe(bytes);
    d->append([&bytes](Internal::DatagramQueue& queue) {
        queue.append(bytes.constData(), std::size_t(bytes.size()));
    });
    return true;
}

bool ECClientDecoder::registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb)
{
    d->setCallback(d->m_cbUpTLVDecodeFinished, std::move(cb));
    return true;
}

void ECClientDecoder::setDatagramObserver(DatagramObserver observer)
{
    d->setObserver(std::move(observer));
}

bool ECClientDecoder::registerExDownTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType cb)
{
    d->setCallback(d->m_cbTLVExDecodeFinished, std::move(cb));
    return true;
}

void ECClientDecoder::run()
{
    d->decodeUntilStopped();
}

} // namespace Orvane::ECProxy::Client

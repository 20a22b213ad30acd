#include "orvaneecclientchannelmanager.h"

#include "log_p.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientreceiver.h"
#include "orvaneecclientsender.h"
#include "threadlifecycle_p.h"

#include <QHostAddress>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

/// What closeChannel() takes out of an open channel.
struct ChannelThreads {
    std::shared_ptr<ECClientReceiver> receiver;
    std::shared_ptr<ECClientSender> sender;

    bool isDecodingOnCurrentThread() const
    {
        return receiver && QThread::currentThread() == receiver->ecClientDecoder().get();
    }

    /// Stops all three threads and waits for them, except for the one that it is called on.
    void stop() const
    {
        if (sender)
            sender->stopSend();
        if (!receiver)
            return;
        receiver->stopReceive();
        receiver->ecClientDecoder()->stopDecode();
    }
};

class ECClientChannelManagerPrivate {
public:
    using Locker = std::lock_guard<std::mutex>;

    std::vector<std::shared_ptr<const ChannelThreads>> takeThreads();

    /// Guards all members. Never held while waiting for one of the threads, whose callbacks may take it.
    mutable std::mutex m_mtxChannel;
    std::shared_ptr<ECClientReceiver> m_pECClientReceiver;
    std::shared_ptr<ECClientSender> m_pECClientSender;
    QHostAddress m_targetAddress;
    /// What closeChannel() is stopping right now, on any thread.
    std::vector<std::weak_ptr<const ChannelThreads>> m_closing;
    /// Kept for the next receivers.
    UpTLVDecodeFinishedCallbackType m_cbUpTLVDecodeFinished;
    /// The log says once that a request was sent without a channel, until there is one again.
    bool m_bLoggedClosed = false;
};

/// Takes the threads of the open channel, if any, as the first; then those that other threads are stopping.
std::vector<std::shared_ptr<const ChannelThreads>> ECClientChannelManagerPrivate::takeThreads()
{
    const auto own = std::make_shared<ChannelThreads>();
    std::vector<std::shared_ptr<const ChannelThreads>> all{own};
    std::vector<std::weak_ptr<const ChannelThreads>> closing{own};
    const Locker lock(m_mtxChannel);
    own->receiver.swap(m_pECClientReceiver);
    own->sender.swap(m_pECClientSender);
    for (const auto& weak : m_closing) {
        if (const auto threads = weak.lock()) {
            all.push_back(threads);
            closing.push_back(weak);
        }
    }
    m_closing.swap(closing);
    return all;
}

} // namespace Internal

using Locker = Internal::ECClientChannelManagerPrivate::Locker;

ECClientChannelManager::ECClientChannelManager(QObject* parent)
    : QObject(parent)
    , d(std::make_shared<Internal::ECClientChannelManagerPrivate>())
{
}

ECClientChannelManager::~ECClientChannelManager()
{
    closeChannel();
}

bool ECClientChannelManager::openChannel(const QString& address)
{
    const QHostAddress target(address);
    if (target.isNull())
        ecWarning(lcLink, "Orvane ec client channel has no such address: %s", qUtf8Printable(address));

    std::shared_ptr<ECClientReceiver> receiver;
    std::shared_ptr<ECClientSender> sender;
    {
        const Locker lock(d->m_mtxChannel);
        d->m_targetAddress = target;
        d->m_bLoggedClosed = false;
        if (!d->m_pECClientReceiver) {
            d->m_pECClientReceiver.reset(new ECClientReceiver, &Internal::deleteThreadObject);
            d->m_pECClientReceiver->registerUpTLVDecodeFinishedCB(d->m_cbUpTLVDecodeFinished);
        }
        if (!d->m_pECClientSender)
            d->m_pECClientSender.reset(new ECClientSender, &Internal::deleteThreadObject);
        d->m_pECClientReceiver->setServiceAddress(target);
        receiver = d->m_pECClientReceiver;
        sender = d->m_pECClientSender;
    }
    receiver->startReceive();
    sender->startSend();
    return true;
}

bool ECClientChannelManager::closeChannel()
{
    const auto closing = d->takeThreads();
    closing.front()->stop();
    // A callback does not wait for other closers, because they may be waiting for it.
    const auto isOwn = [](const auto& threads) { return threads->isDecodingOnCurrentThread(); };
    if (std::none_of(closing.begin(), closing.end(), isOwn))
        std::for_each(closing.begin() + 1, closing.end(), [](const auto& threads) { threads->stop(); });
    return true;
}

bool ECClientChannelManager::sendDownTLVRequest(const QByteArray& bytes)
{
    std::shared_ptr<ECClientSender> sender;
    QHostAddress target;
    bool logClosed = false;
    {
        const Locker lock(d->m_mtxChannel);
        sender = d->m_pECClientSender;
        target = d->m_targetAddress;
        logClosed = !sender && !d->m_bLoggedClosed;
        d->m_bLoggedClosed = !sender;
    }
    if (logClosed)
        ecWarning(lcLink, "Orvane ec client channel sends nothing, it is not open.");
    return sender && sender->appendDatagram(bytes, target, ECServicePort);
}

bool ECClientChannelManager::registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType callback)
{
    std::shared_ptr<ECClientReceiver> receiver;
    UpTLVDecodeFinishedCallbackType kept = callback; // becomes the old one, destroyed without the lock
    {
        const Locker lock(d->m_mtxChannel);
        d->m_cbUpTLVDecodeFinished.swap(kept);
        receiver = d->m_pECClientReceiver;
    }
    return !receiver || receiver->registerUpTLVDecodeFinishedCB(std::move(callback));
}

std::shared_ptr<ECClientDecoder> ECClientChannelManager::ecClientDecoder() const
{
    const Locker lock(d->m_mtxChannel);
    return d->m_pECClientReceiver ? d->m_pECClientReceiver->ecClientDecoder() : nullptr;
}

} // namespace Orvane::ECProxy::Client

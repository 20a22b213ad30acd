#include "orvaneecclientchannelmanager.h"

#include "eclinklog_p.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientreceiver.h"
#include "orvaneecclientsender.h"
#include "threadlifecycle_p.h"

#include <QHostAddress>

#include <mutex>
#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

class ECClientChannelManagerPrivate {
public:
    using Locker = std::lock_guard<std::mutex>;

    /// Guards all members. Its holder never waits for one of the threads.
    mutable std::mutex m_mtxChannel;
    std::shared_ptr<ECClientReceiver> m_pECClientReceiver;
    std::shared_ptr<ECClientSender> m_pECClientSender;
    QHostAddress m_targetAddress;
    /// Kept for the receivers to come.
    UpTLVDecodeFinishedCallbackType m_cbUpTLVDecodeFinished;
    /// A host that sends without a channel is told once, until there is one again.
    bool m_bToldClosed = false;
};

} // namespace Internal

using Locker = Internal::ECClientChannelManagerPrivate::Locker;
using Internal::lcECLink;

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
        qCWarning(lcECLink, "Orvane ec client channel has no such address: %s", qUtf8Printable(address));

    std::shared_ptr<ECClientReceiver> receiver;
    std::shared_ptr<ECClientSender> sender;
    {
        const Locker lock(d->m_mtxChannel);
        d->m_targetAddress = target;
        d->m_bToldClosed = false;
        if (!d->m_pECClientReceiver) {
            d->m_pECClientReceiver.reset(new ECClientReceiver, &Internal::deleteThreadObject);
            d->m_pECClientReceiver->registerUpTLVDecodeFinishedCB(d->m_cbUpTLVDecodeFinished);
        }
        if (!d->m_pECClientSender)
            d->m_pECClientSender.reset(new ECClientSender, &Internal::deleteThreadObject);
        receiver = d->m_pECClientReceiver;
        sender = d->m_pECClientSender;
    }
    receiver->startReceive();
    sender->startSend();
    return true;
}

bool ECClientChannelManager::closeChannel()
{
    std::shared_ptr<ECClientReceiver> receiver;
    std::shared_ptr<ECClientSender> sender;
    {
        const Locker lock(d->m_mtxChannel);
        receiver.swap(d->m_pECClientReceiver);
        sender.swap(d->m_pECClientSender);
    }
    if (sender)
        sender->stopSend();
    sender.reset();
    if (receiver)
        receiver->stopReceive();
    return true;
}

bool ECClientChannelManager::sendDownTLVRequest(const QByteArray& bytes)
{
    std::shared_ptr<ECClientSender> sender;
    QHostAddress target;
    bool tell = false;
    {
        const Locker lock(d->m_mtxChannel);
        sender = d->m_pECClientSender;
        target = d->m_targetAddress;
        tell = !sender && !d->m_bToldClosed;
        d->m_bToldClosed = !sender;
    }
    if (tell)
        qCWarning(lcECLink, "Orvane ec client channel sends nothing, it is not open.");
    return sender && sender->appendDatagram(bytes, target, ECServicePort);
}

bool ECClientChannelManager::registerUpTLVDecodeFinishedCB(UpTLVDecodeFinishedCallbackType callback)
{
    std::shared_ptr<ECClientReceiver> receiver;
    UpTLVDecodeFinishedCallbackType kept = callback; // then the one before, which goes after the lock
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

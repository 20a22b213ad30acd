#include "reportinjector.h"

#include "ecmanager.h"
#include "orvaneecclientdecoder.h"

namespace Orvane::ConsoleHost {

bool injectReport(const ConsolePanel::UpMessage& report)
{
    constexpr quint16 unreadSequence = 0;
    return injectBytes(encodeUp(report, unreadSequence));
}

bool injectBytes(const QByteArray& datagram)
{
    const auto decoder = ECProxy::Client::ECManager::instance()->ecClientDecoder().lock();
    return decoder && decoder->appendDatagram(datagram);
}

} // namespace Orvane::ConsoleHost

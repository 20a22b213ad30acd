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
    const auto* const manager = ECProxy::Client::ECManager::instance();
    const auto decoder = manager ? manager->ecClientDecoder().lock() : nullptr;
    return decoder && decoder->appendDatagram(datagram);
}

} // namespace Orvane::ConsoleHost

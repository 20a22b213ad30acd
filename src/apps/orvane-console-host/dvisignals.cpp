#include "dvisignals.h"

#include "ecmanager.h"
#include "orvaneecclientdecoder.h"

namespace Orvane::ConsoleHost {

using namespace ECProxy::Client;

void DviSignals::watch()
{
    ECManager* const manager = ECManager::instance();
    const auto decoder = manager->ecClientDecoder().lock();
    if (!decoder)
        return;
    decoder->registerUpTLVDecodeFinishedCB(
        [this, manager](const eECUpMessageTag& tag, const QByteArray& value) {
            const bool isTaken = manager->upTLVDecodeFinished(tag, value);
            if (isTaken && tag == ReportDVIInSignal)
                takeReport(value);
            return isTaken;
        });
}

/// Each report replaces the one before.
void DviSignals::takeReport(const QByteArray& value)
{
    std::map<quint8, bool> reported;
    for (int i = 0; i + int(sizeof(DVIInSignal)) <= value.size(); i += sizeof(DVIInSignal)) {
        const auto index = quint8(value.at(i + int(offsetof(DVIInSignal, Index))));
        reported[index] = value.at(i + int(offsetof(DVIInSignal, Signal))) != 0;
    }
    const std::lock_guard lock(m_mutex);
    m_signals.swap(reported);
}

QJsonObject DviSignals::toJson() const
{
    const std::lock_guard lock(m_mutex);
    QJsonObject object;
    for (const auto& [index, hasSignal] : m_signals)
        object.insert(QString::number(index), hasSignal);
    return object;
}

} // namespace Orvane::ConsoleHost

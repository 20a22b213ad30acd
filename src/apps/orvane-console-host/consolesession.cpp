#include "consolesession.h"

#include "ecmanager.h"

#include <QUdpSocket>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECClientPort;
using ECProxy::Client::ECManager;
using ECProxy::Client::eECUpMessageTag;

ConsoleSession::ConsoleSession(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard)
{
    ECManager* const manager = ECManager::instance();

    // 1. The link: from here on the threads that receive, decode and send are running.
    m_channel.openChannel(QStringLiteral("127.0.0.1"));

    // 2. What the console reports goes to the manager; key handlers run on the decoder's thread.
    m_channel.registerUpTLVDecodeFinishedCB([manager](const eECUpMessageTag& tag, const QByteArray& value) {
        return manager->upTLVDecodeFinished(tag, value);
    });
    manager->setECClientDecoder(m_channel.ecClientDecoder());

    // 3. What the manager requests goes to the console. Requests before this are dropped.
    manager->addSendDownTLVRequstCB(
        [this](const QByteArray& datagram) { return m_channel.sendDownTLVRequest(datagram); });

    // 4. The commands, with their keys.
    manager->init(keyboard);

    // 5. The console's lights and its plug-in display, as they were left.
    manager->updateECConsoleLight();
    manager->updateECConsolePluginSettings();

    // 6. The keys, as the model is already: by themselves they follow its changes only.
    manager->slotOrvanePluginModeChanged();
}

ConsoleSession::~ConsoleSession()
{
    // No thread of the link may run any more when the manager goes. The channel waits for them, a second at
    // most.
    m_channel.closeChannel();
    ECManager::instance()->uninit();
    ECManager::deleteInstance();
}

QString reportPortProblem()
{
    QUdpSocket probe;
    if (probe.bind(QHostAddress::AnyIPv4, ECClientPort, QAbstractSocket::DontShareAddress))
        return {};
    return QStringLiteral(
               "UDP port %1, where the console reports, cannot be had: %2. Is another host running?")
        .arg(ECClientPort)
        .arg(probe.errorString());
}

} // namespace Orvane::ConsoleHost

#include "ecconsolesession.h"

#include "ecmanager.h"
#include "log_p.h"
#include "orvaneecclientchannelmanager.h"
#include "udpportusers_p.h"

#include <QAction>
#include <QTimer>
#include <QUdpSocket>

#include <chrono>
#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

using ServiceState = ECConsoleSession::ServiceState;

/// How often the session looks for the service. A service that comes back is lit again after this at the
/// latest.
constexpr std::chrono::milliseconds WatchInterval(250);

/// Why the port cannot be bound in this mode; empty when it can.
QString bindProblem(const QHostAddress& address, quint16 port, QAbstractSocket::BindMode mode)
{
    QUdpSocket probe;
    return probe.bind(address, port, mode) ? QString() : probe.errorString();
}

QString portProblem()
{
    const QAbstractSocket::BindMode shared =
        QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint;
    QString reason = bindProblem(QHostAddress::AnyIPv4, ECClientPort, QAbstractSocket::DontShareAddress);
    if (!reason.isEmpty())
        return QStringLiteral(
                   "UDP port %1, where the console reports, cannot be opened: %2. Is another host running?")
            .arg(ECClientPort)
            .arg(reason);
    reason = bindProblem(QHostAddress::Any, ECServicePort, shared);
    if (!reason.isEmpty())
        return QStringLiteral("UDP port %1, from which the console gets its requests, cannot be opened: %2.")
            .arg(ECServicePort)
            .arg(reason);
    return {};
}

} // namespace

class ECConsoleSessionPrivate {
public:
    explicit ECConsoleSessionPrivate(ECConsoleSession* session);

    bool start(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, const QString& address);
    void stop();
    /// Looks which processes have the two ports open and acts on what has changed.
    void watch();
    void showService();
    void setServiceState(ServiceState state);
    bool refuse(const QString& reason);
    void report(const QString& text);
    /// Reads the manager's state: a signal of another thread comes queued and may be out of date.
    void showLock()
    {
        m_pUnlockKeypad->setEnabled(ECManager::instance() && ECManager::instance()->isLockedKeypad());
    }
    void unlockKeypad();

    ECConsoleSession* const m_pSession;
    /// Shared with the manager's send route, which may be in use on another thread when the session goes.
    const std::shared_ptr<ECClientChannelManager> m_pChannel = std::make_shared<ECClientChannelManager>();
    QAction* const m_pUnlockKeypad;
    QTimer m_watchTimer;
    bool m_bRunning = false;
    bool m_bSharesReports = false; ///< another process receives, too; reported once
    int m_nRoute = 0; ///< number of the manager's send route
    std::shared_ptr<EC::s_ECKeyboardConfig> m_pKeyboard; ///< the one that the commands were made for
    bool m_bServiceIsHere = false; ///< the service's sockets are in this machine's tables
    SocketInodes m_services;
    ServiceState m_serviceState = ServiceState::Unknown;
    QString m_strError;
};

ECConsoleSessionPrivate::ECConsoleSessionPrivate(ECConsoleSession* session)
    : m_pSession(session)
    , m_pUnlockKeypad(new QAction(ECConsoleSession::tr("Unlock keypad"), session))
{
    m_pUnlockKeypad->setEnabled(false);
    QObject::connect(m_pUnlockKeypad, &QAction::triggered, session, [this] { unlockKeypad(); });
    m_watchTimer.setInterval(WatchInterval);
    QObject::connect(&m_watchTimer, &QTimer::timeout, session, [this] { watch(); });
    if (ECManager* const manager = ECManager::instance())
        QObject::connect(manager, &ECManager::signalKeyboardLocked, session, [this] { showLock(); });
}

bool ECConsoleSessionPrivate::start(
    const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, const QString& address)
{
    stop();
    ECManager* const manager = ECManager::instance();
    if (!manager)
        return refuse(
            QStringLiteral("The manager was destroyed: a process has one, which cannot be made again."));
    if (!keyboard)
        return refuse(QStringLiteral("There is no keyboard configuration."));
    if (QHostAddress(address).isNull())
        return refuse(QStringLiteral("\"%1\" is no address.").arg(address));
    const QString problem = portProblem();
    if (!problem.isEmpty())
        return refuse(problem);
    m_strError.clear();
    m_bRunning = true;

    // The link: from here on the threads that receive, decode and send are running.
    m_pChannel->registerUpTLVDecodeFinishedCB([manager](const eECUpMessageTag& tag, const QByteArray& value) {
        return manager->upTLVDecodeFinished(tag, value);
    });
    m_pChannel->openChannel(address);
    manager->setECClientDecoder(m_pChannel->ecClientDecoder());
    // Requests before this are dropped.
    m_nRoute = manager->addSendRoute(
        [channel = std::weak_ptr<ECClientChannelManager>(m_pChannel)](const QByteArray& datagram) {
            const auto open = channel.lock();
            return open && open->sendDownTLVRequest(datagram);
        });
    if (std::exchange(m_pKeyboard, keyboard) != keyboard)
        manager->init(keyboard);

    m_bServiceIsHere = QHostAddress(address).isLoopback();
    m_services = socketsOfOthers(ECServicePort);
    m_bSharesReports = false;
    m_watchTimer.start();
    m_pSession->repaint();
    showService();
    return m_bRunning; // a receiver of the signal may have stopped the session
}

void ECConsoleSessionPrivate::stop()
{
    if (!std::exchange(m_bRunning, false))
        return;
    m_watchTimer.stop();
    m_pChannel->closeChannel();
    if (ECManager* const manager = ECManager::instance())
        manager->removeSendRoute(m_nRoute);
    setServiceState(ServiceState::Unknown);
}

void ECConsoleSessionPrivate::watch()
{
    const SocketInodes services = socketsOfOthers(ECServicePort);
    const SocketInodes known = std::exchange(m_services, services);
    showService();
    if (!m_bRunning)
        return; // stopped by a receiver of the signal
    // A service that was ended and started between two looks has another socket.
    if (!(services - known).isEmpty())
        m_pSession->repaint();

    const bool sharesReports = !socketsOfOthers(ECClientPort).isEmpty();
    if (std::exchange(m_bSharesReports, sharesReports) != sharesReports && sharesReports)
        report(QStringLiteral(
                   "Another process has opened UDP port %1: the console's reports go to only one of the two.")
                   .arg(ECClientPort));
}

void ECConsoleSessionPrivate::showService()
{
    if (m_bServiceIsHere)
        setServiceState(m_services.isEmpty() ? ServiceState::Absent : ServiceState::Present);
}

void ECConsoleSessionPrivate::setServiceState(ServiceState state)
{
    if (std::exchange(m_serviceState, state) == state)
        return;
    if (state == ServiceState::Absent)
        ecWarning(
            lcLink, "The console's service is absent: no process has opened UDP port %d.",
            int(ECServicePort));
    else if (state == ServiceState::Present)
        ecInfo(lcLink, "The console's service is present.");
    Q_EMIT m_pSession->serviceStateChanged(state);
}

bool ECConsoleSessionPrivate::refuse(const QString& reason)
{
    m_strError = reason;
    ecWarning(lcLink, "The console session cannot start: %s", qUtf8Printable(reason));
    return false;
}

void ECConsoleSessionPrivate::report(const QString& text)
{
    m_strError = text;
    ecWarning(lcLink, "%s", qUtf8Printable(text));
    Q_EMIT m_pSession->errorOccurred(text);
}

void ECConsoleSessionPrivate::unlockKeypad()
{
    ECManager* const manager = ECManager::instance();
    if (!manager)
        return;
    manager->unlockKeypad();
    // The request itself emits nothing; the keypad's lock light follows the signal.
    Q_EMIT manager->signalKeyboardLocked(manager->isLockedKeypad());
}

} // namespace Internal

using Internal::ECConsoleSessionPrivate;

ECConsoleSession::ECConsoleSession(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<ECConsoleSessionPrivate>(this))
{
}

ECConsoleSession::~ECConsoleSession()
{
    d->stop();
    if (ECManager* const manager = ECManager::instance())
        manager->uninit();
    ECManager::deleteInstance();
}

bool ECConsoleSession::start(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, const QString& address)
{
    return d->start(keyboard, address);
}

void ECConsoleSession::stop()
{
    d->stop();
}

bool ECConsoleSession::isRunning() const
{
    return d->m_bRunning;
}

QString ECConsoleSession::errorString() const
{
    return d->m_strError;
}

ECConsoleSession::ServiceState ECConsoleSession::serviceState() const
{
    return d->m_serviceState;
}

QAction* ECConsoleSession::unlockKeypadAction() const
{
    return d->m_pUnlockKeypad;
}

void ECConsoleSession::repaint()
{
    ECManager* const manager = ECManager::instance();
    if (!manager)
        return;
    manager->updateECConsoleLight();
    manager->updateECConsolePluginSettings();
    manager->repeatLocks();
    manager->slotOrvanePluginModeChanged();
    manager->showFunctionKeyLights();
}

} // namespace Orvane::ECProxy::Client

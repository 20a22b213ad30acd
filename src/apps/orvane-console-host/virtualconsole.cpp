#include "virtualconsole.h"

#include "consolewidget.h"
#include "ecconstants.h"
#include "ecmanager.h"
#include "reportinjector.h"

#include <QElapsedTimer>

#include <mutex>
#include <vector>

namespace Orvane::ConsoleHost {

using namespace ConsolePanel;
using ECProxy::Client::ECManager;
namespace Constants = ECProxy::Client::Constants;

namespace {
constexpr QSize FirstSize(1100, 640);
}

struct VirtualConsole::Inbox {
    // Guards datagrams and pWindow: routes add on any thread, the window takes, and clears itself when it
    // goes.
    std::mutex mutex;
    std::vector<QByteArray> datagrams;
    VirtualConsole* pWindow = nullptr;
};

VirtualConsole::VirtualConsole(const EC::s_ECKeyboardConfig& keyboard)
    : m_pInbox(std::make_shared<Inbox>())
{
    const ConsoleLayout layout = ConsoleLayout::fromConfig(keyboard);
    for (const ConsoleLayout::Group& group : layout.groups)
        for (const ConsoleLayout::Key& key : group.keys)
            m_appKeys.emplace(key.number, key.appKey);
    setObjectName(QStringLiteral("virtualConsole"));
    setWindowTitle(QStringLiteral("Orvane on-screen console"));
    setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false); // the host's window decides about that
    setAttribute(Qt::WA_GroupLeader); // no dialog of the application stops it
    resize(FirstSize);
    m_pConsole = new ConsoleWidget(layout, m_recorder);
    m_pConsole->setFocusPolicy(Qt::NoFocus);
    setCentralWidget(m_pConsole);
    connect(m_pConsole, &ConsoleWidget::signalKeyMoved, this, &VirtualConsole::reportKey);
    connect(m_pConsole, &ConsoleWidget::signalTBarMoved, this, [](quint32 position, quint8 direction) {
        injectReport(ECProxy::Client::ECTBarValue{position, direction});
    });
    connect(this, &VirtualConsole::signalPending, this, &VirtualConsole::takeDatagrams, Qt::QueuedConnection);

    m_pInbox->pWindow = this;
    m_nRoute = ECManager::instance()->addSendRoute([inbox = m_pInbox](const QByteArray& datagram) {
        const std::lock_guard lock(inbox->mutex);
        if (!inbox->pWindow)
            return false;
        // Under the lock, or the window might go in between; all it does is post an event.
        if (inbox->datagrams.empty())
            Q_EMIT inbox->pWindow->signalPending();
        inbox->datagrams.push_back(datagram);
        return true;
    });
}

VirtualConsole::~VirtualConsole()
{
    delete m_pConsole; // which lets go of its keys
    if (ECManager* const manager = ECManager::instance())
        manager->removeSendRoute(m_nRoute);
    const std::lock_guard lock(m_pInbox->mutex);
    m_pInbox->pWindow = nullptr;
}

void VirtualConsole::takeDatagrams()
{
    std::vector<QByteArray> datagrams;
    {
        const std::lock_guard lock(m_pInbox->mutex);
        datagrams.swap(m_pInbox->datagrams);
    }
    static const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    const std::chrono::microseconds now(clock.nsecsElapsed() / 1000);
    for (const QByteArray& datagram : datagrams) {
        const Reception reception = m_recorder.receive(datagram.constData(), datagram.size());
        if (const auto* readable = std::get_if<DownDatagram>(&reception.datagram))
            m_pConsole->history().noteDown(now, *readable);
    }
    m_pConsole->consoleChanged();
}

void VirtualConsole::reportKey(quint16 key, bool isDown)
{
    const auto appKey = m_appKeys.find(key);
    if (appKey != m_appKeys.end())
        injectReport(KeyReport{isDown, Constants::VirtualKeyOffset + quint16(appKey->second)});
}

} // namespace Orvane::ConsoleHost

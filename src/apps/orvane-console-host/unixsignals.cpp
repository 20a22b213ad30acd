#include "unixsignals.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace Orvane::ConsoleHost {

namespace {

volatile std::sig_atomic_t s_writeEnd = -1;

extern "C" void wakeEventLoop(int)
{
    const char byte = 0;
    // A full pipe has woken the event loop already.
    const ssize_t ignored = ::write(s_writeEnd, &byte, 1);
    static_cast<void>(ignored);
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

UnixSignals::UnixSignals(QObject* parent)
    : QObject(parent)
{
    setHandler(SIGPIPE, SIG_IGN);
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning("Interrupts end the process at once: no pipe is to be had.");
        return;
    }
    s_writeEnd = m_pipe[1];
    m_pNotifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_pNotifier.get(), &QSocketNotifier::activated, this, [this] {
        m_pNotifier->setEnabled(false);
        Q_EMIT signalTerminate();
    });
    setHandler(SIGINT, wakeEventLoop);
    setHandler(SIGTERM, wakeEventLoop);
}

UnixSignals::~UnixSignals()
{
    setHandler(SIGINT, SIG_DFL);
    setHandler(SIGTERM, SIG_DFL);
    m_pNotifier.reset();
    for (const int end : m_pipe) {
        if (end >= 0)
            ::close(end);
    }
}

} // namespace Orvane::ConsoleHost

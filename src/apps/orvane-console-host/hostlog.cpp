#include "hostlog.h"

#include <QLoggingCategory>

#include <cstdio>

namespace Orvane::ConsoleHost {

namespace {

/// What Qt says of the display that nobody sees, and of a machine where nobody is logged in: nothing that
/// concerns the host.
bool isAboutDisplay(const QString& text)
{
    return text.startsWith(QLatin1String("This plugin does not support "))
        || text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"));
}

HostLog* s_pLog = nullptr; // set before the first thread is started, cleared after the last has ended

} // namespace

HostLog::HostLog(bool isVerbose)
{
    // At the information level the link has a line for every thread and timer, the codec one for every key.
    if (!isVerbose) {
        QLoggingCategory::setFilterRules(
            QStringLiteral("*.debug=false\norvane.ec.link.info=false\norvane.ec.codec.info=false"));
    }
    qSetMessagePattern(
        QStringLiteral("%{time hh:mm:ss.zzz} "
                       "%{if-debug}debug   %{endif}%{if-info}info    %{endif}%{if-warning}warning %{endif}"
                       "%{if-critical}critical%{endif}%{if-fatal}fatal   %{endif} %{message}"));
    s_pLog = this;
    qInstallMessageHandler(&HostLog::handle);
}

HostLog::~HostLog()
{
    qInstallMessageHandler(nullptr);
    s_pLog = nullptr;
}

void HostLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (isAboutDisplay(text))
        return;
    const QString line = qFormatLogMessage(type, context, text);
    std::fprintf(stderr, "%s\n", qUtf8Printable(line));
    s_pLog->append(line);
}

void HostLog::append(const QString& line)
{
    bool wasEmpty = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        wasEmpty = m_pending.isEmpty();
        m_pending.append(line);
        if (m_pending.size() > MaxPendingLines)
            m_pending.removeFirst();
    }
    if (wasEmpty)
        Q_EMIT signalLinesPending();
}

QStringList HostLog::takeLines()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_pending, QStringList());
}

} // namespace Orvane::ConsoleHost

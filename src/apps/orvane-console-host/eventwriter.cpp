#include "eventwriter.h"

#include <QJsonDocument>
#include <QThread>

#include <unistd.h>

namespace Orvane::ConsoleHost {

EventWriter::EventWriter(Scope scope, QObject* parent)
    : QObject(parent)
    , m_scope(scope)
{
    connect(this, &EventWriter::signalPending, this, &EventWriter::writePending, Qt::QueuedConnection);
    if (!m_output.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered))
        qWarning("No events can be written: %s", qUtf8Printable(m_output.errorString()));
}

void EventWriter::writeEvent(const QString& name, const QJsonObject& members)
{
    if (m_scope == Everything)
        writeAnswer(name, members);
}

void EventWriter::writeAnswer(const QString& name, const QJsonObject& members)
{
    // QJsonObject sorts its members; for a human reader the name comes first.
    QByteArray line = "{\"event\":\"" + name.toLatin1() + '"';
    if (!members.isEmpty())
        line += ',' + QJsonDocument(members).toJson(QJsonDocument::Compact).mid(1);
    else
        line += '}';
    line += '\n';

    bool isFirst = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        isFirst = m_pending.empty();
        m_pending.append(line.constData(), std::size_t(line.size()));
    }
    if (QThread::currentThread() == thread())
        writePending();
    else if (isFirst)
        Q_EMIT signalPending();
}

void EventWriter::writePending()
{
    std::string lines;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        lines.swap(m_pending);
    }
    if (lines.empty() || !m_output.isOpen())
        return;
    if (m_output.write(lines.data(), qint64(lines.size())) != qint64(lines.size())) {
        qWarning("Events are no longer written: %s", qUtf8Printable(m_output.errorString()));
        m_output.close();
    }
}

} // namespace Orvane::ConsoleHost

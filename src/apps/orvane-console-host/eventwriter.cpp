#include "eventwriter.h"

#include <QJsonDocument>
#include <QThread>

#include <unistd.h>

namespace Orvane::ConsoleHost {

EventWriter::EventWriter(Scope scope, QObject* parent)
    : QObject(parent)
    , m_scope(scope)
{
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
    if (QThread::currentThread() == thread())
        write(name, members);
    else
        QMetaObject::invokeMethod(
            this, [=] { write(name, members); }, Qt::QueuedConnection);
}

void EventWriter::write(const QString& name, const QJsonObject& members)
{
    if (!m_output.isOpen())
        return;
    // QJsonObject sorts its members; for a human reader the name comes first.
    QByteArray line = "{\"event\":\"" + name.toLatin1() + '"';
    if (!members.isEmpty())
        line += ',' + QJsonDocument(members).toJson(QJsonDocument::Compact).mid(1);
    else
        line += '}';
    line += '\n';
    if (m_output.write(line) != line.size()) {
        qWarning("Events are no longer written: %s", qUtf8Printable(m_output.errorString()));
        m_output.close();
    }
}

} // namespace Orvane::ConsoleHost

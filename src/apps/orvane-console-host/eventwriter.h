#pragma once

#include <QFile>
#include <QJsonObject>
#include <QObject>

#include <mutex>
#include <string>

namespace Orvane::ConsoleHost {

/// Writes what happens in the host to standard output, a JSON object a line, whose first member "event" is
/// the event's name.
///
/// Any thread may call it. The lines stand in the order of the calls; they are written on the thread that the
/// writer lives on, those of other threads with one of its next turns. A reader that is slow holds that
/// thread up; one that has gone away ends the writing.
class EventWriter : public QObject {
    Q_OBJECT

public:
    /// Which of the two kinds of lines are wanted; answers always are.
    enum Scope { AnswersOnly, Everything };

    explicit EventWriter(Scope scope, QObject* parent = nullptr);

    /// Something happened. Dropped when only answers are wanted.
    void writeEvent(const QString& name, const QJsonObject& members = {});
    /// What became of a command.
    void writeAnswer(const QString& name, const QJsonObject& members);

Q_SIGNALS:
    /// Another thread has added the first of new lines.
    void signalPending();

private:
    void writePending();

    const Scope m_scope;
    QFile m_output;

    // m_mutex guards m_pending.
    std::mutex m_mutex;
    std::string m_pending;
};

} // namespace Orvane::ConsoleHost

#pragma once

#include <QFile>
#include <QJsonObject>
#include <QObject>

namespace Orvane::ConsoleHost {

/// Writes what happens in the host to standard output, a JSON object a line, whose first member "event" is
/// the event's name.
///
/// Any thread may call it. Lines are written on the thread that the writer lives on: those of other threads
/// follow with one of its next turns, in the order of the calls. A reader that is slow holds the host up; one
/// that has gone away ends the writing.
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

private:
    void write(const QString& name, const QJsonObject& members);

    const Scope m_scope;
    QFile m_output;
};

} // namespace Orvane::ConsoleHost

#pragma once

#include "enumwords_p.h"
#include "eventwriter.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Orvane::ConsoleHost {

/// An argument of a command: its name and what may be given.
class Parameter {
public:
    static Parameter flag(const char* name);
    static Parameter integer(const char* name, qint64 minimum, qint64 maximum);
    static Parameter number(const char* name, double minimum, double maximum);
    static Parameter text(const char* name);
    static Parameter texts(const char* name);
    /// A list of whole numbers from 0 on.
    static Parameter numbers(const char* name);
    /// One of some words.
    static Parameter choice(const char* name, const QStringList& words);
    /// One of the words of an enumeration.
    template <typename Enum> static Parameter choice(const char* name)
    {
        return choice(name, Internal::wordsOf<Enum>());
    }

    /// The same as an argument that may be left out.
    Parameter orElse(const QJsonValue& fallback) const;

    QString name() const { return m_strName; }
    /// Stands in for an argument that was left out; undefined when there must be one.
    QJsonValue fallback() const { return m_fallback; }
    bool accepts(const QJsonValue& value) const;
    /// What may be given, in words.
    QString expected() const;

private:
    enum Kind { Flag, Integer, Number, Numbers, Text, Texts, Choice };
    Parameter(Kind kind, const char* name);

    bool isInRange(const QJsonValue& value) const;

    Kind m_kind;
    QString m_strName;
    double m_nMinimum = 0;
    double m_nMaximum = 0;
    QStringList m_words;
    QJsonValue m_fallback = QJsonValue::Undefined;
};

/// The arguments that a command was given, each of the right kind.
class Arguments {
public:
    explicit Arguments(const QJsonObject& values)
        : m_values(values)
    {
    }

    bool flag(const char* name) const { return m_values[QLatin1String(name)].toBool(); }
    int integer(const char* name) const { return m_values[QLatin1String(name)].toInt(); }
    double number(const char* name) const { return m_values[QLatin1String(name)].toDouble(); }
    QString text(const char* name) const { return m_values[QLatin1String(name)].toString(); }
    QStringList texts(const char* name) const;
    QList<quint32> numbers(const char* name) const;
    /// A number that may be as large as an id can.
    quint32 id(const char* name) const { return quint32(number(name)); }
    /// The value that a word of the enumeration stands for.
    template <typename Enum> Enum choice(const char* name) const
    {
        return Internal::valueOf<Enum>(text(name));
    }
    /// Place among the words that a choice has.
    int choice(const char* name, const QStringList& words) const { return words.indexOf(text(name)); }

private:
    const QJsonObject m_values;
};

/// What a command comes to.
struct Answer {
    /// Why it was not done; empty when it was.
    QString refusal;
    /// What it has to tell.
    QJsonObject members;

    static Answer done(const QJsonObject& members = {}) { return {QString(), members}; }
    static Answer refused(const QString& why) { return {why, {}}; }
};

struct HostCommand {
    QString name;
    QString purpose;
    std::vector<Parameter> parameters;
    std::function<Answer(const Arguments& arguments)> run;
};

/// The host's commands by name, and the way from a line of standard input to the answer.
///
/// A line is a JSON object: "command" is the command's name, "id" anything that the answer repeats, and the
/// other members are its arguments. The answer is the event "done" or the event "error" with the reason. A
/// line with a fault, an unknown or missing argument among them, does nothing.
class CommandTable {
public:
    explicit CommandTable(EventWriter& events);

    void add(HostCommand command);
    void execute(const QByteArray& line);

private:
    Answer run(const QJsonObject& object) const;
    const HostCommand* find(const QString& name) const;
    /// All names, or everything about the command of that name.
    Answer help(const QString& name) const;

    EventWriter& m_events;
    std::vector<HostCommand> m_commands;
};

} // namespace Orvane::ConsoleHost

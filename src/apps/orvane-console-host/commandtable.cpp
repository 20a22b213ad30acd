#include "commandtable.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane::ConsoleHost {

namespace {

const QString CommandMember = QStringLiteral("command");
const QString IdMember = QStringLiteral("id");
const QString ReasonMember = QStringLiteral("reason");

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

bool isWhole(const QJsonValue& value)
{
    return std::trunc(value.toDouble()) == value.toDouble();
}

Answer noCommand(const QString& name)
{
    return Answer::refused(QStringLiteral("there is no command ") + quoted(name));
}

template <typename Accepts> bool isListOf(const QJsonValue& value, Accepts accepts)
{
    const QJsonArray array = value.toArray();
    return value.isArray() && std::all_of(array.begin(), array.end(), accepts);
}

} // namespace

Parameter::Parameter(Kind kind, const char* name)
    : m_kind(kind)
    , m_strName(QLatin1String(name))
{
}

Parameter Parameter::flag(const char* name)
{
    return Parameter(Flag, name);
}

Parameter Parameter::integer(const char* name, qint64 minimum, qint64 maximum)
{
    Parameter parameter(Integer, name);
    parameter.m_nMinimum = double(minimum);
    parameter.m_nMaximum = double(maximum);
    return parameter;
}

Parameter Parameter::number(const char* name, double minimum, double maximum)
{
    Parameter parameter(Number, name);
    parameter.m_nMinimum = minimum;
    parameter.m_nMaximum = maximum;
    return parameter;
}

Parameter Parameter::numbers(const char* name)
{
    return Parameter(Numbers, name);
}

Parameter Parameter::texts(const char* name)
{
    return Parameter(Texts, name);
}

Parameter Parameter::text(const char* name)
{
    return Parameter(Text, name);
}

Parameter Parameter::choice(const char* name, const QStringList& words)
{
    Parameter parameter(Choice, name);
    parameter.m_words = words;
    return parameter;
}

Parameter Parameter::orElse(const QJsonValue& fallback) const
{
    Parameter optional = *this;
    optional.m_fallback = fallback;
    return optional;
}

bool Parameter::isInRange(const QJsonValue& value) const
{
    return value.isDouble() && value.toDouble() >= m_nMinimum && value.toDouble() <= m_nMaximum;
}

bool Parameter::accepts(const QJsonValue& value) const
{
    switch (m_kind) {
    case Flag:
        return value.isBool();
    case Integer:
        return isInRange(value) && isWhole(value);
    case Number:
        return isInRange(value);
    case Numbers:
        return isListOf(value, [](const QJsonValue& one) {
            constexpr double highest = std::numeric_limits<quint32>::max();
            return one.isDouble() && isWhole(one) && one.toDouble() >= 0 && one.toDouble() <= highest;
        });
    case Texts:
        return isListOf(value, [](const QJsonValue& one) { return one.isString(); });
    case Text:
        return value.isString();
    case Choice:
        return value.isString() && m_words.contains(value.toString());
    }
    return false;
}

QString Parameter::expected() const
{
    switch (m_kind) {
    case Flag:
        return QStringLiteral("true or false");
    case Integer:
        return QStringLiteral("a whole number from %1 to %2").arg(qint64(m_nMinimum)).arg(qint64(m_nMaximum));
    case Number:
        return QStringLiteral("a number from %1 to %2").arg(m_nMinimum).arg(m_nMaximum);
    case Numbers:
        return QStringLiteral("a list of whole numbers from 0 on");
    case Texts:
        return QStringLiteral("a list of texts");
    case Text:
        return QStringLiteral("a text");
    case Choice:
        return QStringLiteral("one of ") + m_words.join(QStringLiteral(", "));
    }
    return {};
}

QStringList Arguments::texts(const char* name) const
{
    QStringList texts;
    const QJsonArray array = m_values[QLatin1String(name)].toArray();
    for (const QJsonValue& one : array)
        texts.append(one.toString());
    return texts;
}

QList<quint32> Arguments::numbers(const char* name) const
{
    QList<quint32> numbers;
    const QJsonArray array = m_values[QLatin1String(name)].toArray();
    for (const QJsonValue& one : array)
        numbers.append(quint32(one.toDouble()));
    return numbers;
}

CommandTable::CommandTable(EventWriter& events)
    : m_events(events)
{
    add(
        {QStringLiteral("help"),
         QStringLiteral("lists the commands, or tells what one does and takes"),
         {Parameter::text("of").orElse(QString())},
         [this](const Arguments& arguments) { return help(arguments.text("of")); }});
}

void CommandTable::add(HostCommand command)
{
    m_commands.push_back(std::move(command));
}

void CommandTable::execute(const QByteArray& line)
{
    if (line.trimmed().isEmpty())
        return;
    QJsonParseError fault;
    const QJsonDocument document = QJsonDocument::fromJson(line, &fault);
    if (!document.isObject()) {
        const QString reason = fault.error == QJsonParseError::NoError
            ? QStringLiteral("a command is a JSON object")
            : QStringLiteral("no JSON: %1 at character %2").arg(fault.errorString()).arg(fault.offset);
        m_events.writeAnswer(QStringLiteral("error"), {{ReasonMember, reason}});
        return;
    }
    const QJsonObject object = document.object();
    const Answer answer = run(object);
    QJsonObject members = answer.members;
    for (const QString& name : {CommandMember, IdMember}) {
        if (object.contains(name))
            members.insert(name, object.value(name));
    }
    if (answer.refusal.isEmpty()) {
        m_events.writeAnswer(QStringLiteral("done"), members);
        return;
    }
    members.insert(ReasonMember, answer.refusal);
    m_events.writeAnswer(QStringLiteral("error"), members);
}

Answer CommandTable::run(const QJsonObject& object) const
{
    if (!object.contains(CommandMember))
        return Answer::refused(QStringLiteral("\"command\" is missing"));
    if (!object.value(CommandMember).isString())
        return Answer::refused(QStringLiteral("\"command\" must be a text"));
    const QString name = object.value(CommandMember).toString();
    const HostCommand* const command = find(name);
    if (!command)
        return noCommand(name);

    QJsonObject given = object;
    given.remove(CommandMember);
    given.remove(IdMember);
    QJsonObject arguments;
    QStringList problems;
    for (const Parameter& parameter : command->parameters) {
        const QJsonValue value =
            given.contains(parameter.name()) ? given.take(parameter.name()) : parameter.fallback();
        if (value.isUndefined())
            problems += QStringLiteral("%1 is missing").arg(quoted(parameter.name()));
        else if (!parameter.accepts(value))
            problems += QStringLiteral("%1 must be %2").arg(quoted(parameter.name()), parameter.expected());
        arguments.insert(parameter.name(), value);
    }
    for (const QString& unknown : given.keys())
        problems += QStringLiteral("there is no argument ") + quoted(unknown);
    if (!problems.isEmpty())
        return Answer::refused(problems.join(QStringLiteral("; ")));
    return command->run(Arguments(arguments));
}

const HostCommand* CommandTable::find(const QString& name) const
{
    const auto command = std::find_if(
        m_commands.begin(), m_commands.end(), [&](const HostCommand& known) { return known.name == name; });
    return command == m_commands.end() ? nullptr : &*command;
}

Answer CommandTable::help(const QString& name) const
{
    if (name.isEmpty()) {
        QJsonArray names;
        for (const HostCommand& command : m_commands)
            names.append(command.name);
        return Answer::done({{QStringLiteral("commands"), names}});
    }
    const HostCommand* const command = find(name);
    if (!command)
        return noCommand(name);
    QJsonObject parameters;
    for (const Parameter& parameter : command->parameters) {
        const bool mayBeLeftOut = !parameter.fallback().isUndefined();
        parameters.insert(
            parameter.name(),
            parameter.expected() + (mayBeLeftOut ? QStringLiteral("; may be left out") : QString()));
    }
    return Answer::done(
        {{QStringLiteral("purpose"), command->purpose}, {QStringLiteral("arguments"), parameters}});
}

} // namespace Orvane::ConsoleHost

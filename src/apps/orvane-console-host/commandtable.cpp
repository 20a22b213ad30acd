#include "commandtable.h"

#include "jsontext_p.h"

#include <QJsonArray>

#include <algorithm>

namespace Orvane::ConsoleHost {

namespace {

const QString CommandMember = QStringLiteral("command");
const QString IdMember = QStringLiteral("id");
const QString ReasonMember = QStringLiteral("reason");

Answer noCommand(const QString& name)
{
    return Answer::refused(QStringLiteral("there is no command \"%1\"").arg(name));
}

} // namespace

Parameter Parameter::orElse(const QJsonValue& fallback) const
{
    Parameter optional = *this;
    optional.m_fallback = fallback;
    return optional;
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
    add("help", "lists the commands, or tells what one does and takes",
        {Parameter::text("of").orElse(QString())},
        [this](const Arguments& arguments) { return help(arguments.text("of")); });
}

void CommandTable::execute(const QByteArray& line)
{
    if (line.trimmed().isEmpty())
        return;
    QList<Internal::TextFault> faults;
    const QJsonValue value = Internal::parseJson(line, faults).value_or(QJsonValue());
    const QJsonObject object = value.toObject();
    const Answer answer = faults.isEmpty()
        ? run(value)
        : Answer::refused(faults.first().place + QStringLiteral(": ") + faults.first().text);
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

Answer CommandTable::run(const QJsonValue& line) const
{
    QStringList problems;
    Internal::JsonReader reader(
        line, [&problems](const QString&, const QString& fault) { problems += fault; });
    const auto name = reader.take(CommandMember, Parameter::Kind::text());
    if (!name)
        return Answer::refused(problems.join(QStringLiteral("; ")));
    const HostCommand* const command = find(name->toString());
    if (!command)
        return noCommand(name->toString());

    reader.take(IdMember, Parameter::Kind::anything(), Internal::Presence::Optional);
    QJsonObject arguments;
    for (const Parameter& parameter : command->parameters) {
        const auto presence =
            parameter.mayBeLeftOut() ? Internal::Presence::Optional : Internal::Presence::Required;
        const auto given = reader.take(parameter.name(), parameter.kind(), presence);
        arguments.insert(parameter.name(), given.value_or(parameter.fallback()));
    }
    reader.noteUnknown();
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
        const QString expected = parameter.kind().expected();
        parameters.insert(
            parameter.name(),
            parameter.mayBeLeftOut() ? expected + QStringLiteral("; may be left out") : expected);
    }
    return Answer::done(
        {{QStringLiteral("purpose"), command->purpose}, {QStringLiteral("arguments"), parameters}});
}

} // namespace Orvane::ConsoleHost

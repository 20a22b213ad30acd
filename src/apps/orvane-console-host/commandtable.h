#pragma once

#include "enumwords_p.h"
#include "eventwriter.h"
#include "jsonreader_p.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace Orvane::ConsoleHost {

/// An argument of a command: its name and what may be given.
class Parameter {
public:
    using Kind = Internal::JsonKind;

    static Parameter flag(const char* name) { return {name, Kind::flag()}; }
    static Parameter integer(const char* name, qint64 minimum, qint64 maximum)
    {
        return {name, Kind::integer(minimum, maximum)};
    }
    static Parameter number(const char* name, double minimum, double maximum)
    {
        return {name, Kind::number(minimum, maximum)};
    }
    static Parameter text(const char* name) { return {name, Kind::text()}; }
    static Parameter texts(const char* name) { return {name, Kind::texts()}; }
    /// A list of whole numbers from 0 on.
    static Parameter numbers(const char* name) { return {name, Kind::numbers()}; }
    /// One of some words.
    static Parameter choice(const char* name, const QStringList& words) { return {name, Kind::word(words)}; }
    /// One of the words of an enumeration.
    template <typename Enum> static Parameter choice(const char* name)
    {
        return choice(name, Internal::wordsOf<Enum>());
    }

    /// The same as an argument that may be left out.
    Parameter orElse(const QJsonValue& fallback) const;

    QString name() const { return m_strName; }
    /// What may be given.
    const Kind& kind() const { return m_kind; }
    bool mayBeLeftOut() const { return !m_fallback.isUndefined(); }
    /// Stands in for an argument that was left out.
    QJsonValue fallback() const { return m_fallback; }

private:
    Parameter(const char* name, Kind kind)
        : m_strName(QLatin1String(name))
        , m_kind(std::move(kind))
    {
    }

    QString m_strName;
    Kind m_kind;
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

/// The argument as a call takes it; numbers, flags, texts, lists of them, words of an enumeration. Calls that
/// take anything else specialize it.
template <typename Value> Value argumentAs(const Arguments& arguments, const char* name)
{
    if constexpr (std::is_same_v<Value, bool>)
        return arguments.flag(name);
    else if constexpr (std::is_enum_v<Value>)
        return arguments.choice<Value>(name);
    else if constexpr (std::is_arithmetic_v<Value>)
        return Value(arguments.number(name));
    else if constexpr (std::is_same_v<Value, QList<quint32>>)
        return arguments.numbers(name);
    else
        return arguments.text(name);
}

/// What a command comes to.
struct Answer {
    /// Why it was not done; empty when it was.
    QString refusal;
    /// What it has to tell.
    QJsonObject members;

    static Answer done(const QJsonObject& members = {}) { return {QString(), members}; }
    static Answer refused(const QString& why) { return {why, {}}; }
    /// Done unless there is a problem.
    static Answer of(const QString& problem) { return {problem, {}}; }
};

/// Calls the function with the arguments that it takes, in the order of the parameters.
template <typename... Values, typename Function>
auto callWith(const std::vector<Parameter>& parameters, const Arguments& arguments, const Function& function)
{
    [[maybe_unused]] auto next = parameters.cbegin(); // a call may take nothing
    const std::tuple<std::decay_t<Values>...> values{
        argumentAs<std::decay_t<Values>>(arguments, (next++)->name().toLatin1())...};
    return std::apply(function, values);
}

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

    /// @param call is called with the arguments, or with nothing; returns an `Answer`, what there is to tell,
    ///        or nothing when it cannot fail
    template <typename Run>
    void add(const char* name, const char* purpose, std::vector<Parameter> parameters, Run call)
    {
        m_commands.push_back(
            {QLatin1String(name), QLatin1String(purpose), std::move(parameters),
             [call = std::move(call)](const Arguments& arguments) { return answerOf(call, arguments); }});
    }
    /// The same for a call of the object with just these arguments.
    template <typename Object, typename... Values>
    void add(
        const char* name, const char* purpose, const std::vector<Parameter>& parameters, Object& object,
        void (Object::*call)(Values...))
    {
        add(name, purpose, parameters, [parameters, &object, call](const Arguments& arguments) {
            callWith<Values...>(
                parameters, arguments, [&](const auto&... values) { (object.*call)(values...); });
        });
    }
    void execute(const QByteArray& line);

private:
    template <typename Run> static Answer answerOf(const Run& call, const Arguments& arguments)
    {
        if constexpr (std::is_invocable_v<const Run&>)
            return answerOf([&call](const Arguments&) { return call(); }, arguments);
        else if constexpr (std::is_same_v<decltype(call(arguments)), Answer>)
            return call(arguments);
        else if constexpr (std::is_same_v<decltype(call(arguments)), QJsonObject>)
            return Answer::done(call(arguments));
        else
            return call(arguments), Answer::done();
    }

    Answer run(const QJsonValue& line) const;
    const HostCommand* find(const QString& name) const;
    /// All names, or everything about the command of that name.
    Answer help(const QString& name) const;

    EventWriter& m_events;
    std::vector<HostCommand> m_commands;
};

} // namespace Orvane::ConsoleHost

#include "arguments.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>

#include <cstdio>
#include <memory>

namespace Orvane::CommandLine {

namespace {

/// Not the parser's own help option: with it comes one for Qt's options, of which there are none here.
QCommandLineOption helpOption()
{
    return {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
}

QCommandLineOption versionOption()
{
    return {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")};
}

/// The parser breaks the lines of options only.
QString wrapped(const QString& text, const QString& indent = {})
{
    constexpr int columns = 79;
    QStringList lines{QString()};
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString& word : words) {
        if (!lines.last().isEmpty() && indent.size() + lines.last().size() + 1 + word.size() > columns)
            lines.append(QString());
        lines.last() += (lines.last().isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return lines.join(QLatin1Char('\n') + indent);
}

void describe(const Program& program, QCommandLineParser& parser)
{
    QString description =
        QLatin1String(program.name) + QStringLiteral(" - ") + QLatin1String(program.purpose);
    for (const char* paragraph : program.description)
        description += QStringLiteral("\n\n") + wrapped(QLatin1String(paragraph));
    parser.setApplicationDescription(description);
    parser.addOptions({helpOption(), versionOption()});
    for (const Option& option : program.options)
        parser.addOption(QCommandLineOption(
            QLatin1String(option.name), QLatin1String(option.text), QLatin1String(option.value),
            QLatin1String(option.preset)));
    for (const Entry& argument : program.arguments)
        parser.addPositionalArgument(QLatin1String(argument.term), QLatin1String(argument.text));
}

QString helpText(const Program& program, const QCommandLineParser& parser)
{
    // The parser asks the application for the program's name.
    int argc = 1;
    QByteArray name(program.name);
    char* argv[] = {name.data(), nullptr};
    std::unique_ptr<QCoreApplication> application;
    if (!QCoreApplication::instance())
        application = std::make_unique<QCoreApplication>(argc, argv);
    QString text = parser.helpText();
    text += QStringLiteral("\nExit status:\n");
    for (const Entry& status : program.statuses)
        text +=
            QStringLiteral("  %1  %2\n")
                .arg(
                    QLatin1String(status.term), wrapped(QLatin1String(status.text), QStringLiteral("     ")));
    return text;
}

/// What is wrong with the value of an option that takes one of several.
QString choiceProblem(const Option& option, const QString& value)
{
    const QStringList choices = QString(QLatin1String(option.value)).split(QLatin1Char('|'));
    if (choices.size() < 2 || value.isEmpty() || choices.contains(value))
        return {};
    return QStringLiteral("--%1 must be %2, not \"%3\"")
        .arg(QLatin1String(option.name), choices.join(QStringLiteral(" or ")), value);
}

/// What is wrong with the arguments that are no options.
QString argumentProblem(const Program& program, const QStringList& arguments)
{
    const auto known = int(program.arguments.size());
    if (arguments.size() > known)
        return QStringLiteral("unexpected argument \"%1\"").arg(arguments.at(known));
    if (arguments.size() < known)
        return QStringLiteral("%1 is missing").arg(QLatin1String(program.arguments[arguments.size()].term));
    return {};
}

} // namespace

std::variant<Arguments, ExitStatus> readArguments(const Program& program, const QStringList& commandLine)
{
    QCommandLineParser parser;
    describe(program, parser);
    if (!parser.parse(commandLine))
        return refuse(program, parser.errorText());
    if (parser.isSet(helpOption())) {
        std::fputs(qUtf8Printable(helpText(program, parser)), stdout);
        return ExitOk;
    }
    if (parser.isSet(versionOption())) {
        std::printf("%s %s\n", program.name, ORVANE_VERSION);
        return ExitOk;
    }
    Arguments read;
    read.m_arguments = parser.positionalArguments();
    QString problem = argumentProblem(program, read.m_arguments);
    for (const Option& option : program.options) {
        const QString name = QLatin1String(option.name);
        if (parser.isSet(name))
            read.m_given.append(name);
        if (option.value)
            read.m_values.insert(name, parser.value(name));
        if (problem.isEmpty())
            problem = choiceProblem(option, read.m_values.value(name));
    }
    if (!problem.isEmpty())
        return refuse(program, problem);
    return read;
}

std::variant<Arguments, ExitStatus> readArguments(const Program& program, int argc, char* argv[])
{
    QStringList commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine.append(QString::fromLocal8Bit(argv[i]));
    return readArguments(program, commandLine);
}

void complain(const Program& program, const QString& problem)
{
    std::fprintf(stderr, "%s: %s\n", program.name, qUtf8Printable(problem));
}

ExitStatus refuse(const Program& program, const QString& problem)
{
    complain(program, problem);
    std::fprintf(stderr, "Try '%s --help'.\n", program.name);
    return ExitRefused;
}

QString installedFile(const QString& name)
{
    const QString file = QStringLiteral("orvaneecproxyclient/") + name;
    const QString path = QStandardPaths::locate(QStandardPaths::GenericDataLocation, file);
    return path.isEmpty() ? file : path;
}

QString helpText(const Program& program)
{
    QCommandLineParser parser;
    describe(program, parser);
    return helpText(program, parser);
}

} // namespace Orvane::CommandLine

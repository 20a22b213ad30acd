#include "options.h"

#include "windowplace.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace Orvane::ConsoleHost {

namespace {

ExitStatus refuse(const QString& problem)
{
    std::fprintf(
        stderr, "orvane-console-host: %s\nTry 'orvane-console-host --help'.\n", qUtf8Printable(problem));
    return BadUsage;
}

} // namespace

std::variant<Options, ExitStatus> readOptions(int argc, char* argv[])
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Works a processor in memory from its physical control console."));
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version."));
    const QCommandLineOption keyboard(
        QStringLiteral("keyboard"), QStringLiteral("Which key of the console does what (JSON)."),
        QStringLiteral("file"));
    const QCommandLineOption show(
        QStringLiteral("show"), QStringLiteral("The devices, screens and presets (JSON)."),
        QStringLiteral("file"));
    const QCommandLineOption console(
        QStringLiteral("console"), QStringLiteral("Show the on-screen console in a window of its own."));
    const QCommandLineOption half(
        QStringLiteral("half"), QStringLiteral("Put the window on this half of the display."),
        QStringLiteral("left|right"));
    const QCommandLineOption headless(
        QStringLiteral("headless"), QStringLiteral("Run without a window; no display is needed."));
    const QCommandLineOption events(
        QStringLiteral("events"), QStringLiteral("Write every event as a line of JSON on standard output."));
    const QCommandLineOption quitAtEnd(
        QStringLiteral("quit-at-end"), QStringLiteral("Quit when standard input ends, rather than run on."));
    const QCommandLineOption verbose(
        QStringLiteral("verbose"), QStringLiteral("Log what each key does, not only what went wrong."));
    parser.addOptions({help, version, keyboard, show, console, half, headless, events, quitAtEnd, verbose});

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (!parser.parse(arguments))
        return refuse(parser.errorText());

    if (parser.isSet(help)) {
        const QCoreApplication namesItself(argc, argv); // the help's first line is the program's name
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return Success;
    }
    if (parser.isSet(version)) {
        std::puts("orvane-console-host " ORVANE_VERSION);
        return Success;
    }
    if (!parser.positionalArguments().isEmpty())
        return refuse(
            QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst()));
    if (parser.value(keyboard).isEmpty())
        return refuse(QStringLiteral("Which keyboard? --keyboard FILE is needed."));

    Options options;
    options.keyboardFile = parser.value(keyboard);
    options.showFile = parser.value(show);
    options.half = parser.value(half);
    if (!options.half.isEmpty() && !ConsolePanel::displayHalves().contains(options.half))
        return refuse(QStringLiteral("--half must be left or right, not '%1'.").arg(options.half));
    options.console = parser.isSet(console);
    options.headless = parser.isSet(headless);
    options.events = parser.isSet(events);
    options.quitAtEnd = parser.isSet(quitAtEnd);
    options.verbose = parser.isSet(verbose);
    return options;
}

} // namespace Orvane::ConsoleHost

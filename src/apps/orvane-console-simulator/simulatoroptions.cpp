#include "simulatoroptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

std::optional<SimulatorOptions> readOptions(const QStringList& arguments, int& status)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Plays the physical console: shows what the library sends to 127.0.0.1 port 35555 and reports keys,\n"
        "T-Bar positions and locks to port 35556. Commands come from standard input or a script; \"help\"\n"
        "lists them. Ends with 1 when an expectation failed or an unreadable datagram came, with 2 when it\n"
        "cannot start."));
    const QCommandLineOption keyboard(
        QStringLiteral("keyboard"),
        QStringLiteral("Keyboard configuration that the picture is laid out from."), QStringLiteral("file"));
    const QCommandLineOption script(
        QStringLiteral("script"), QStringLiteral("Run the commands of this file, then end."),
        QStringLiteral("file"));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Print one JSON object a line."));
    const QCommandLineOption noColour(
        QStringLiteral("no-color"), QStringLiteral("Draw the picture without colours."));
    const QCommandLineOption width(
        QStringLiteral("width"), QStringLiteral("Draw the picture this many columns wide (100)."),
        QStringLiteral("columns"), QStringLiteral("100"));
    const QCommandLineOption quiet(
        QStringLiteral("quiet"),
        QStringLiteral("Print failures and what is asked for only, not the traffic."));
    const QCommandLineOption keepGoing(
        QStringLiteral("keep-going"), QStringLiteral("Go on with a script after a failure."));
    const QCommandLineOption tolerate(
        QStringLiteral("tolerate-unreadable"), QStringLiteral("Unreadable datagrams are no failure."));
    // Not the parser's own help option: with it comes one for Qt's options, of which there are none here.
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version."));
    parser.addOptions({help, version, keyboard, script, json, noColour, width, quiet, keepGoing, tolerate});

    const auto refuse = [&status](const QString& what) {
        std::fprintf(stderr, "orvane-console-simulator: %s\n", qUtf8Printable(what));
        status = ExitCannotStart;
        return std::nullopt;
    };
    status = ExitOk;
    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    if (parser.isSet(help)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return std::nullopt;
    }
    if (parser.isSet(version)) {
        std::printf("orvane-console-simulator %s\n", qUtf8Printable(QCoreApplication::applicationVersion()));
        return std::nullopt;
    }
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first()));

    SimulatorOptions options;
    options.keyboardFile = parser.value(keyboard);
    options.scriptFile = parser.value(script);
    options.json = parser.isSet(json);
    options.colour = !parser.isSet(noColour);
    options.quiet = parser.isSet(quiet);
    options.keepGoing = parser.isSet(keepGoing);
    options.tolerateUnreadable = parser.isSet(tolerate);
    bool ok = false;
    options.columns = parser.value(width).toInt(&ok);
    if (!ok || options.columns < 10 || options.columns > 1000)
        return refuse(QStringLiteral("--width must be from 10 to 1000, not \"%1\"").arg(parser.value(width)));
    return options;
}

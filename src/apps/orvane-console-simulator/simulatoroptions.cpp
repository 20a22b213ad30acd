#include "simulatoroptions.h"

#include "windowplace.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

bool readSize(const QString& text, QSize& size)
{
    constexpr int largest = 16384;
    const QStringList sides = text.split(QLatin1Char('x'));
    bool hasWidth = false;
    bool hasHeight = false;
    const QSize read(sides.value(0).toInt(&hasWidth), sides.value(1).toInt(&hasHeight));
    const bool isUsable = sides.size() == 2 && hasWidth && hasHeight && read.width() > 0 && read.height() > 0
        && read.width() <= largest && read.height() <= largest;
    if (isUsable)
        size = read;
    return isUsable;
}

} // namespace

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
    const QCommandLineOption window(
        QStringLiteral("window"), QStringLiteral("Show the console in a window, which stays open."));
    const QCommandLineOption size(
        QStringLiteral("size"), QStringLiteral("Size of the window (1280x800)."),
        QStringLiteral("WIDTHxHEIGHT"), QStringLiteral("1280x800"));
    const QCommandLineOption half(
        QStringLiteral("half"), QStringLiteral("Put the window on this half of the display."),
        QStringLiteral("left|right"));
    // Not the parser's own help option: with it comes one for Qt's options, of which there are none here.
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version."));
    parser.addOptions(
        {help, version, keyboard, script, json, noColour, width, quiet, keepGoing, tolerate, window, size,
         half});

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
    options.window = parser.isSet(window);
    options.json = parser.isSet(json);
    options.colour = !parser.isSet(noColour);
    options.quiet = parser.isSet(quiet) || options.window; // which has its journal
    options.keepGoing = parser.isSet(keepGoing);
    options.tolerateUnreadable = parser.isSet(tolerate);
    bool ok = false;
    options.columns = parser.value(width).toInt(&ok);
    if (!ok || options.columns < 10 || options.columns > 1000)
        return refuse(QStringLiteral("--width must be from 10 to 1000, not \"%1\"").arg(parser.value(width)));
    options.half = parser.value(half);
    if (!options.half.isEmpty() && !Orvane::ConsolePanel::displayHalves().contains(options.half))
        return refuse(QStringLiteral("--half must be left or right, not \"%1\"").arg(options.half));
    if (!readSize(parser.value(size), options.windowSize))
        return refuse(QStringLiteral("--size must be as 1280x800, not \"%1\"").arg(parser.value(size)));
    return options;
}

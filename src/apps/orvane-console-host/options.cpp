#include "options.h"

#include "arguments.h"
#include "hostprogram.h"

namespace Orvane::ConsoleHost {

using CommandLine::ExitStatus;

std::variant<Options, ExitStatus> readOptions(int argc, char* argv[])
{
    const auto read = CommandLine::readArguments(hostProgram(), argc, argv);
    if (const auto* status = std::get_if<ExitStatus>(&read))
        return *status;
    const auto& arguments = std::get<CommandLine::Arguments>(read);

    Options options;
    options.keyboardFile = arguments.value("keyboard");
    options.showFile = arguments.value("show");
    options.captureFile = arguments.value("capture");
    options.half = arguments.value("half");
    options.console = arguments.isSet("console");
    options.headless = arguments.isSet("headless");
    options.events = arguments.isSet("events");
    options.quitAtEnd = arguments.isSet("quit-at-end");
    options.shadow = arguments.isSet("shadow");
    options.verbose = arguments.isSet("verbose");
    if (arguments.isSet("example")) {
        options.keyboardFile = CommandLine::installedFile(QStringLiteral("keyboard.json"));
        options.showFile = CommandLine::installedFile(QStringLiteral("show.json"));
    }
    if (options.keyboardFile.isEmpty())
        return CommandLine::refuse(hostProgram(), QStringLiteral("--keyboard is missing"));
    return options;
}

} // namespace Orvane::ConsoleHost

#include "simulatoroptions.h"

#include "arguments.h"
#include "simulatorcommand.h"
#include "simulatorprogram.h"

using namespace Orvane::CommandLine;
using Orvane::ConsolePanel::PlayCapture;

namespace {

/// What is wrong with the options that play a capture; empty when nothing is.
QString readReplay(const Arguments& arguments, SimulatorOptions& options)
{
    options.replayFile = arguments.value("replay");
    options.replaySteps = arguments.isSet("step");
    const QString speed = arguments.value("speed");
    bool ok = false;
    options.replaySpeed = speed.toDouble(&ok);
    if (!ok || options.replaySpeed < PlayCapture::SlowestSpeed
        || options.replaySpeed > PlayCapture::HighestSpeed)
        return QStringLiteral("--speed must be from 0.01 to 1000, not \"%1\"").arg(speed);
    if (options.replayFile.isEmpty() && (arguments.isSet("speed") || options.replaySteps))
        return QStringLiteral("--speed and --step belong to --replay");
    if (options.replaySteps && arguments.isSet("speed"))
        return QStringLiteral("--speed and --step exclude each other");
    if (!options.replayFile.isEmpty() && !options.scriptFile.isEmpty())
        return QStringLiteral("--replay and --script exclude each other");
    return {};
}

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

std::variant<SimulatorOptions, ExitStatus> readOptions(int argc, char* argv[])
{
    const auto read = readArguments(simulatorProgram(), argc, argv);
    if (const auto* status = std::get_if<ExitStatus>(&read))
        return *status;
    const auto& arguments = std::get<Arguments>(read);

    SimulatorOptions options;
    options.keyboardFile = arguments.isSet("example") ? installedFile(QStringLiteral("keyboard.json"))
                                                      : arguments.value("keyboard");
    options.scriptFile = arguments.value("script");
    options.captureFile = arguments.value("capture");
    if (const QString fault = readReplay(arguments, options); !fault.isEmpty())
        return refuse(simulatorProgram(), fault);
    options.checkedFile = arguments.value("check");
    options.describedFile = arguments.value("describe");
    options.translationFile = arguments.value("translation");
    options.window = arguments.isSet("window");
    options.json = arguments.isSet("json");
    options.colour = !arguments.isSet("no-color");
    options.quiet = arguments.isSet("quiet") || options.window; // which has its journal
    options.keepGoing = arguments.isSet("keep-going");
    options.tolerateUnreadable = arguments.isSet("tolerate-unreadable");
    options.half = arguments.value("half");
    const QString width = arguments.value("width");
    bool ok = false;
    options.columns = width.toInt(&ok);
    if (!ok || options.columns < 10 || options.columns > 1000)
        return refuse(
            simulatorProgram(), QStringLiteral("--width must be from 10 to 1000, not \"%1\"").arg(width));
    if (const QString size = arguments.value("size"); !readSize(size, options.windowSize))
        return refuse(simulatorProgram(), QStringLiteral("--size must be as 1280x800, not \"%1\"").arg(size));
    return options;
}

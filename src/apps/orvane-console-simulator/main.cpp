#include "arguments.h"
#include "keyboardpages.h"
#include "linereader.h"
#include "simulator.h"
#include "simulatorprogram.h"
#include "simulatorwindow.h"
#include "windowplace.h"

#include <QApplication>
#include <QFile>
#include <QTimer>

#include <unistd.h>

using namespace Orvane::CommandLine;
using namespace Orvane::ConsolePanel;

namespace {

void complain(const QString& text)
{
    Orvane::CommandLine::complain(simulatorProgram(), text);
}

/// The commands of a script, or every faulty line of it on standard error.
std::optional<std::vector<ScriptCommand>> readScript(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(path + QStringLiteral(": ") + file.errorString());
        return std::nullopt;
    }
    std::vector<ScriptCommand> commands;
    bool isFaulty = false;
    int number = 0;
    for (const QByteArray& bytes : file.readAll().split('\n')) {
        ++number;
        const QString line = QString::fromUtf8(bytes).trimmed();
        const auto parsed = parseCommand(line);
        if (const auto* command = std::get_if<SimulatorCommand>(&parsed)) {
            commands.push_back({*command, line, QStringLiteral("line %1").arg(number)});
        } else if (const auto* fault = std::get_if<CommandFault>(&parsed)) {
            complain(QStringLiteral("%1: line %2: %3").arg(path, QString::number(number), fault->reason));
            isFaulty = true;
        }
    }
    return isFaulty ? std::nullopt : std::optional(std::move(commands));
}

/// What `--replay` asks for, as a script.
std::vector<ScriptCommand> replayScript(const SimulatorOptions& options)
{
    const PlayCapture play{options.replayFile, options.replaySpeed, options.replaySteps};
    return {{play, QStringLiteral("replay ") + options.replayFile, {}}};
}

int run(const SimulatorOptions& options)
{
    ConsoleLayout layout;
    if (!options.keyboardFile.isEmpty()) {
        const auto keyboard = readKeyboard(options.keyboardFile);
        if (!keyboard)
            return ExitRefused;
        layout = ConsoleLayout::fromConfig(*keyboard);
    }
    std::optional<std::vector<ScriptCommand>> script;
    if (!options.scriptFile.isEmpty()) {
        script = readScript(options.scriptFile);
        if (!script)
            return ExitRefused;
    }
    Simulator simulator(options, layout);
    if (!simulator.open()) {
        complain(simulator.errorText());
        return ExitRefused;
    }
    std::unique_ptr<SimulatorWindow> window;
    if (options.window) {
        window = std::make_unique<SimulatorWindow>(simulator);
        window->resize(options.windowSize);
        if (!options.half.isEmpty())
            placeOnHalf(*window, options.half);
        window->show();
        QObject::connect(
            qApp, &QGuiApplication::lastWindowClosed, window.get(), [&simulator] { simulator.end(); });
    }
    std::unique_ptr<LineReader> typed;
    if (!options.replayFile.isEmpty())
        script = replayScript(options);
    if (script) {
        // From inside the event loop, so that the script can end it.
        QTimer::singleShot(0, QCoreApplication::instance(), [&] {
            for (const ScriptCommand& command : *script)
                simulator.add(command);
            if (!options.replaySteps)
                simulator.endOfCommands();
        });
    }
    if (!script || options.replaySteps) {
        typed = std::make_unique<LineReader>(
            STDIN_FILENO,
            [&](const QByteArray& line) {
                const bool isStep = options.replaySteps && line.trimmed().isEmpty();
                simulator.addLine(isStep ? QStringLiteral("step") : QString::fromUtf8(line));
            },
            [&] { simulator.endOfCommands(); });
    }
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    const auto read = readOptions(argc, argv);
    if (const auto* status = std::get_if<ExitStatus>(&read))
        return *status;
    const auto& options = std::get<SimulatorOptions>(read);
    if (options.window && !hasDisplay()) {
        complain(QStringLiteral("there is no display for the window"));
        return ExitRefused;
    }
    const std::unique_ptr<QCoreApplication> application(
        options.window ? new QApplication(argc, argv) : new QCoreApplication(argc, argv));
    QGuiApplication::setQuitOnLastWindowClosed(false); // the simulator tells how it ended first
    if (!options.checkedFile.isEmpty())
        return checkKeyboard(options);
    if (!options.describedFile.isEmpty())
        return describeKeyboard(options);
    return run(options);
}

#include "linereader.h"
#include "simulator.h"
#include "simulatorwindow.h"
#include "windowplace.h"

#include "ec/eckeyboardloader.h"

#include <QApplication>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

using namespace Orvane::ConsolePanel;

namespace {

void complain(const QString& text)
{
    std::fprintf(stderr, "orvane-console-simulator: %s\n", qUtf8Printable(text));
}

/// The layout of a keyboard file, or every problem of the file on standard error.
std::optional<ConsoleLayout> readLayout(const QString& path)
{
    if (path.isEmpty())
        return ConsoleLayout();
    const Orvane::EC::KeyboardLoadResult result = Orvane::EC::loadKeyboardFile(path);
    for (const Orvane::EC::KeyboardProblem& problem : result.problems) {
        const bool namesFile = problem.place == path;
        complain(namesFile ? problem.toString() : path + QStringLiteral(": ") + problem.toString());
    }
    return result ? std::optional(ConsoleLayout::fromConfig(*result.config)) : std::nullopt;
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

/// Whether a window can be shown; it is decided before there is an application object.
bool hasDisplay()
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY")
        || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

int run(const SimulatorOptions& options)
{
    const auto layout = readLayout(options.keyboardFile);
    if (!layout)
        return ExitCannotStart;
    std::optional<std::vector<ScriptCommand>> script;
    if (!options.scriptFile.isEmpty()) {
        script = readScript(options.scriptFile);
        if (!script)
            return ExitCannotStart;
    }
    Simulator simulator(options, *layout);
    if (!simulator.open()) {
        complain(simulator.errorText());
        return ExitCannotStart;
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
    if (script) {
        // From inside the event loop, so that the script can end it.
        QTimer::singleShot(0, QCoreApplication::instance(), [&] {
            for (const ScriptCommand& command : *script)
                simulator.add(command);
            simulator.endOfCommands();
        });
    } else {
        typed = std::make_unique<LineReader>(
            STDIN_FILENO, [&](const QString& line) { simulator.addLine(line); },
            [&] { simulator.endOfCommands(); });
    }
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    const bool wantsWindow = std::any_of(
        argv, argv + argc, [](const char* argument) { return qstrcmp(argument, "--window") == 0; });
    if (wantsWindow && !hasDisplay()) {
        complain(QStringLiteral("there is no display for the window"));
        return ExitCannotStart;
    }
    const std::unique_ptr<QCoreApplication> application(
        wantsWindow ? new QApplication(argc, argv) : new QCoreApplication(argc, argv));
    QGuiApplication::setQuitOnLastWindowClosed(false); // the simulator tells how it ended first
    QCoreApplication::setApplicationName(QStringLiteral("orvane-console-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVANE_VERSION));
    int status = ExitOk;
    const auto options = readOptions(QCoreApplication::arguments(), status);
    return options ? run(*options) : status;
}

#include "applicationcommands.h"
#include "arguments.h"
#include "commandtable.h"
#include "consolecommands.h"
#include "dvisignals.h"
#include "ec/eckeyboardloader.h"
#include "ecconsolesession.h"
#include "ecmanager.h"
#include "enumwords_p.h"
#include "eventwriter.h"
#include "explainerwindow.h"
#include "hostcapture.h"
#include "hostlog.h"
#include "hostprogram.h"
#include "hostwindow.h"
#include "keyexplainer.h"
#include "keyinjector.h"
#include "linereader.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelcommands.h"
#include "noticepresenter.h"
#include "options.h"
#include "signalreporter.h"
#include "surfacewindow.h"
#include "typingfield.h"
#include "unixsignals.h"
#include "virtualconsole.h"
#include "windowplace.h"

#include <QApplication>
#include <QStatusBar>

#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace Orvane;
using namespace Orvane::ConsoleHost;
using CommandLine::ExitStatus;
using ECProxy::Client::ECConsoleSession;
using ECProxy::Client::ECManager;
using Notices::NoticePresenter;

namespace {

ExitStatus fail(const QStringList& problems)
{
    for (const QString& problem : problems)
        CommandLine::complain(hostProgram(), problem);
    return CommandLine::ExitFailed;
}

QString refusal(const char* what, const QString& file)
{
    return QStringLiteral("The %1 file %2 is refused:").arg(QLatin1String(what), file);
}

/// Whoever starts the process with a standard stream closed would have it write events into the socket that
/// takes the stream's number.
void fillStandardStreams()
{
    int descriptor = 0;
    do
        descriptor = ::open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    ::close(descriptor);
}

/// Picks the display before the application object opens it; false when there is none to open.
bool chooseDisplay(bool headless)
{
    if (headless)
        return qputenv("QT_QPA_PLATFORM", "offscreen");
    return ConsolePanel::hasDisplay();
}

int runApplication(
    const Options& options, const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, HostLog& log)
{
    UnixSignals unixSignals;
    QObject::connect(&unixSignals, &UnixSignals::signalTerminate, qApp, &QCoreApplication::quit);
    EventWriter events(options.events ? EventWriter::Everything : EventWriter::AnswersOnly);

    // The model is there before the console asks it anything, and until nobody can ask any more.
    MemoryModel::MemoryModel model;
    QStringList faults;
    if (!options.showFile.isEmpty() && !model.loadFile(options.showFile, faults))
        return fail(QStringList(refusal("show", options.showFile)) + faults);
    reportOperations(model.operations(), events);
    reportNotices(model.deviceList(), events);
    reportManagerSignals(*ECManager::instance(), events);

    // Without a window the field is one of its own, on a display that nobody sees.
    auto* const field = new TypingField(events);
    const std::unique_ptr<QWidget> window(
        options.headless ? static_cast<QWidget*>(field) : new HostWindow(model, field, log));
    if (!options.half.isEmpty())
        ConsolePanel::placeOnHalf(*window, options.half);
    window->show();
    window->activateWindow();
    NoticePresenter notices(model.deviceList(), *window);
    auto* const hostWindow = qobject_cast<HostWindow*>(window.get());
    if (hostWindow)
        notices.showMessagesIn(*hostWindow->statusBar());
    reportMessageBoxes(notices, events);
    KeyInjector injector(*field);
    QObject::connect(
        ECManager::instance(), &ECManager::signalStandardKeyPressed, &injector,
        &KeyInjector::slotStandardKeyPressed);

    // Before the session paints. Without a display it is there all the same, for programs to take its
    // picture.
    VirtualConsole console(*keyboard);
    console.setVisible(options.console);

    KeyExplainer explainer(events);
    ExplainerWindow explainerWindow(explainer);
    if (hostWindow)
        hostWindow->addWindowButton(QStringLiteral("Explain keys"), explainerWindow);

    // Before the session: it notes what is painted first.
    const std::unique_ptr<SurfaceWindow> surface(
        options.shadow ? std::make_unique<SurfaceWindow>(*keyboard) : nullptr);
    if (hostWindow && surface)
        hostWindow->addWindowButton(QStringLiteral("Surface"), *surface);

    // Before the session too, for what it paints first.
    HostCapture capture(events);
    if (!options.captureFile.isEmpty()) {
        const QString problem = capture.start(options.captureFile);
        if (!problem.isEmpty())
            return fail({problem});
    }

    DviSignals dviSignals;
    CommandTable commands(events);
    addApplicationCommands(
        commands,
        {events,
         *field,
         notices,
         dviSignals,
         console,
         {{QStringLiteral("host"), hostWindow},
          {QStringLiteral("console"), &console},
          {QStringLiteral("explainer"), &explainerWindow},
          {QStringLiteral("surface"), surface.get()}}});
    addSurfaceCommands(commands, surface);
    addExplainCommands(commands, explainer, explainerWindow);
    addConsoleCommands(commands, *keyboard);
    addCaptureCommands(commands, capture);
    addModelCommands(commands, model);
    addOperationCommands(commands, model);
    addShowCommands(commands, model);
    const CommandLine::LineReader reader(
        STDIN_FILENO, [&commands](const QByteArray& line) { commands.execute(line); },
        [&options] {
            if (options.quitAtEnd)
                QCoreApplication::quit();
        });

    ECConsoleSession session;
    if (!session.start(keyboard))
        return fail({session.errorString()});
    capture.watchReports();
    dviSignals.watch();
    events.writeAnswer(
        QStringLiteral("ready"), {{QStringLiteral("service"), Internal::wordOf(session.serviceState())}});
    reportSession(session, events);
    const int status = QApplication::exec();
    model.stop(); // what still runs in it would hold up the end of the session
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    fillStandardStreams();
    const auto read = readOptions(argc, argv);
    if (const auto* status = std::get_if<ExitStatus>(&read))
        return *status;
    const Options options = std::get<Options>(read);
    if (!chooseDisplay(options.headless))
        return fail(
            {QStringLiteral("There is no display for the window. Use --headless to run without one.")});

    HostLog log(options.verbose); // Qt has something to say when it opens the display
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvane-console-host"));
    QApplication::setQuitOnLastWindowClosed(!options.headless);

    const EC::KeyboardLoadResult keyboard = EC::loadKeyboardFile(options.keyboardFile);
    if (!keyboard) {
        QStringList lines{refusal("keyboard", options.keyboardFile)};
        for (const EC::KeyboardProblem& problem : keyboard.problems)
            lines.append(problem.toString());
        return fail(lines);
    }
    return runApplication(options, keyboard.config, log);
}

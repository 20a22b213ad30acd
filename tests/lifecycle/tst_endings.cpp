#include "modelrig.h"
#include "showclock_p.h"
#include "showfile.h"
#include "socketwire.h"
#include "stormkeyboard.h"
#include "traffic.h"

#include "ecmanager.h"
#include "functioncommand.h"
#include "layercommand.h"
#include "memorydevicelist.h"
#include "presetcommand.h"
#include "screencommand.h"

#include <QApplication>
#include <QDialog>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QUdpSocket>

#include <cstdlib>

using namespace Storm;
using namespace Orvane::ECProxy::Client;
using namespace std::chrono_literals;
using MemoryModel::JournalEntry;
using MemoryModel::Operation;

namespace {

constexpr int PatienceMs = 20000;
/// Three seconds of holding a key are three tenths.
constexpr int ShowRate = 10;
/// Keys come faster than anybody presses them, and not faster than they are worked: the library's end works
/// what it has begun.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr auto TypingPause = 5ms;
#else
constexpr auto TypingPause = 200us;
#endif

/// An application with the console at work, and what may be under way there when the process ends.
class Application {
public:
    bool reach(const QString& moment);
    /// The end as it is documented, but for the model's. Says what the library did afterwards.
    QString end();

private:
    void press(const char* group, int type) { m_rig.console().press(m_keyboard.key(group, type).ECKey); }
    bool isRequested(const std::function<bool(const ConsolePanel::DownMessage&)>& is);

    const Keyboard m_keyboard{QStringLiteral(EXAMPLE_KEYBOARD)};
    TestSupport::ModelRig m_rig{m_keyboard.config(), std::make_unique<TestSupport::SocketWire>()};
    QDialog m_dialog;
};

bool Application::isRequested(const std::function<bool(const ConsolePanel::DownMessage&)>& is)
{
    return QTest::qWaitFor(
        [&] {
            const auto requests = m_rig.console().takeRequests();
            return std::any_of(
                requests.begin(), requests.end(), [&](const auto& request) { return is(request.message); });
        },
        PatienceMs);
}

bool Application::reach(const QString& moment)
{
    QStringList faults;
    const auto show = MemoryModel::loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
    if (!show || !m_rig.load(*show))
        return false;
    auto& control = m_rig.control();
    const QString device = show->devices[0].ipMacSn;
    control.activateDevice(device);
    control.selectScreens(device, {show->devices[0].screens[0].key});
    if (moment == "keys")
        return m_rig.console().settle();
    if (moment == "a hold") {
        press(FunctionGroup, int(FunctionCallbackType::eLockECTBarCB));
        press(LayerGroup, int(LayerCallbackType::eClearLayersCB));
        return m_rig.console().settle();
    }
    if (moment == "a take") {
        press(ScreenGroup, int(ScreenCallbackType::eTakeToPGMCB));
        return m_rig.waitAsked(Operation::ParallelTakeScreen, 1);
    }
    if (moment == "the monitor's switching") { // which the console's thread waits for
        m_rig.console().report(ConsolePanel::DviReport{{{0, 1}}});
        return isRequested([](const auto& message) { return std::holds_alternative<DVIInSignal>(message); });
    }
    if (moment == "a dialog") {
        m_dialog.open();
        press(ScreenGroup, int(ScreenCallbackType::eFTBPGMCB));
        return m_rig.console().settle();
    }
    press(PresetGroup, int(PresetCallbackType::eSelectPresetCB));
    return m_rig.waitAsked(Operation::SampleLoadPreset, 1);
}

QString Application::end()
{
    m_rig.endConsole();
    std::atomic<int> asked{0};
    m_rig.operations().setListener(
        [&](const JournalEntry& entry) { asked += entry.phase == JournalEntry::Phase::Requested; });
    QUdpSocket service;
    // The service's process ends by itself once nobody talks to it.
    if (!QTest::qWaitFor([&] { return service.bind(QHostAddress::LocalHost, ECServicePort); }, PatienceMs))
        return QStringLiteral("the service's port is still taken");
    constexpr auto longerThanAnyHold = 3500ms;
    QTest::qWait(
        int(std::chrono::ceil<std::chrono::milliseconds>(ShowClock::realTime(longerThanAnyHold)).count()));
    m_rig.operations().setListener({});
    if (service.hasPendingDatagrams())
        return QStringLiteral("a request after the end");
    return asked == 0 ? QString() : QStringLiteral("the model was asked after the end");
}

void printWhatQtWarnsOf(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const bool isWarning = type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg;
    if (isWarning && qstrncmp(context.category, "orvane.", 7) != 0)
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

/// Whoever forgets the end has forgotten all of this.
Application* s_pForgotten = nullptr;

int endAt(const QString& moment, const QString& way, int& argc, char** argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    ShowClock::setRate(ShowRate);
    QApplication app(argc, argv);
    s_pForgotten = new Application;
    if (!s_pForgotten->reach(moment)) {
        std::fprintf(stderr, "the moment is not reached\n");
        return 1;
    }
    qInstallMessageHandler(printWhatQtWarnsOf);
    if (way == "as documented") {
        const QString wrong = s_pForgotten->end();
        if (!wrong.isEmpty())
            std::fprintf(stderr, "%s\n", qUtf8Printable(wrong));
        delete std::exchange(s_pForgotten, nullptr);
    } else if (way == "exit()") {
        QTimer::singleShot(0, [] { std::exit(0); });
        return app.exec();
    }
    return 0;
}

} // namespace

/// The end of a process in the middle of a show, while keys go on coming. Each row is a process of its own.
class TestEndings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whateverIsUnderWayTheProcessEnds_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::addColumn<QString>("way");
        for (const char* moment :
             {"keys", "a hold", "a take", "the monitor's switching", "a dialog", "a preset's loading"}) {
            for (const char* way : {"as documented", "return from main()", "exit()"})
                QTest::addRow("%s, %s", moment, way) << QString(moment) << QString(way);
        }
    }

    void whateverIsUnderWayTheProcessEnds()
    {
        QFETCH(QString, moment);
        QFETCH(QString, way);
        const Keyboard keyboard(QStringLiteral(EXAMPLE_KEYBOARD));
        std::vector<quint32> keys;
        for (const char* group : {NumberGroup, LayerGroup, InputGroup, PresetGroup}) {
            for (const auto& key : keyboard.group(group).m_buttons) {
                if (group == NumberGroup || key->OrvaneKey == 1 || key->OrvaneKey == 2)
                    keys.push_back(key->ECKey);
            }
        }
        const Life::Traffic typing(Life::taps(keys), TypingPause);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
        process.start(QCoreApplication::applicationFilePath(), {"--end", moment, way});
        QVERIFY2(process.waitForFinished(PatienceMs), "the process hangs");
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, errors.constData());
        QVERIFY2(process.exitCode() == 0, errors.constData());
        // The model's threads may meet what the process has destroyed already.
        if (way == "as documented")
            QVERIFY2(errors.isEmpty(), errors.constData());
    }
};

int main(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--end") == 0)
        return endAt(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]), argc, argv);
    QCoreApplication app(argc, argv);
    TestEndings test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_endings.moc"

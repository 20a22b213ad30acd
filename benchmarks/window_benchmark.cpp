/// Whether the windows keep up with the console's wire: the simulator's window and the host's on-screen
/// console, both on one GUI thread, while the library sends 50 000 lights a second to the two of them. The
/// baseline, measured before in the same run, is a hundred lights a second.
///
/// Printed are the longest time between two frames, the same for all but the slowest hundredth, and how many
/// of the datagrams the simulator has seen.

#include "consolewidget.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "framecoalescer.h"
#include "simulator.h"
#include "simulatorwindow.h"
#include "virtualconsole.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QUdpSocket>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

using namespace Orvane;
using namespace Orvane::ConsolePanel;
using ECProxy::Client::ECButtonColor;
using ECProxy::Client::ECManager;

namespace {

constexpr quint16 ServicePort = 35555;
constexpr int QuietPerSecond = 100;
constexpr int BurstPerSecond = 50000;
constexpr int KeyCount = 113; ///< of the example keyboard

/// Notes when a window showed a frame.
class FrameWatch {
public:
    explicit FrameWatch(const FrameCoalescer& frames)
    {
        QObject::connect(&frames, &FrameCoalescer::signalFrame, [this] {
            if (m_clock.isValid())
                m_gaps.push_back(double(m_clock.nsecsElapsed()) / 1e6);
            m_clock.start();
        });
    }

    void clear()
    {
        m_gaps.clear();
        m_clock.invalidate();
    }

    void print(const char* window, int perSecond)
    {
        if (m_gaps.empty()) {
            std::printf("%-22s %8d/s: no frame\n", window, perSecond);
            return;
        }
        std::sort(m_gaps.begin(), m_gaps.end());
        std::printf(
            "%-22s %8d/s: %4zu frames, longest gap %6.1f ms, p99 %6.1f ms, median %5.1f ms\n", window,
            perSecond, m_gaps.size(), m_gaps.back(), m_gaps[m_gaps.size() * 99 / 100],
            m_gaps[m_gaps.size() / 2]);
    }

private:
    QElapsedTimer m_clock;
    std::vector<double> m_gaps;
};

/// Sends lights at a rate for a while, as a console thread of the library does. Returns how many.
int sendLights(int perSecond, std::chrono::milliseconds duration)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    int sent = 0;
    for (auto now = start; now - start < duration; now = Clock::now()) {
        const int due = int(double(perSecond) * std::chrono::duration<double>(now - start).count());
        for (; sent < due; ++sent) {
            const auto color = std::make_shared<ECButtonColor>();
            color->ECKey = quint16(1 + sent % KeyCount);
            color->brightness = 100;
            (sent % 2 ? color->G : color->R) = 255;
            ECManager::instance()->updateECButtonColor(color);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return sent;
}

/// Runs the application while another thread sends.
int runWhileSending(int perSecond, std::chrono::milliseconds duration)
{
    int sent = 0;
    std::thread sender([&] {
        QUdpSocket wire;
        const int route = ECManager::instance()->addSendRoute([&wire](const QByteArray& datagram) {
            return wire.writeDatagram(datagram, QHostAddress::LocalHost, ServicePort) == datagram.size();
        });
        sent = sendLights(perSecond, duration);
        ECManager::instance()->removeSendRoute(route);
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QApplication::exec();
    sender.join();
    return sent;
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const bool isSmoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;
    const std::chrono::milliseconds duration(isSmoke ? 100 : 5000);

    const auto keyboard = EC::loadKeyboardFile(EXAMPLE_KEYBOARD);
    SimulatorOptions options;
    options.window = true;
    options.quiet = true;
    Simulator simulator(options, ConsoleLayout::fromConfig(*keyboard.config));
    if (!simulator.open()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(simulator.errorText()));
        return 2;
    }
    {
        SimulatorWindow console(simulator);
        ConsoleHost::VirtualConsole onScreen(*keyboard.config);
        console.show();
        onScreen.show();
        FrameWatch consoleFrames(console.findChild<ConsoleWidget*>()->frames());
        FrameWatch onScreenFrames(onScreen.findChild<ConsoleWidget*>()->frames());
        for (const int perSecond : {QuietPerSecond, BurstPerSecond}) {
            consoleFrames.clear();
            onScreenFrames.clear();
            const quint64 before = simulator.console().received();
            const int sent = runWhileSending(perSecond, duration);
            consoleFrames.print("simulator's window", perSecond);
            onScreenFrames.print("on-screen console", perSecond);
            std::printf(
                "  %d lights sent, %llu seen by the simulator\n", sent,
                (unsigned long long)(simulator.console().received() - before));
        }
    }
    ECManager::deleteInstance();
    return 0;
}

#include "simulatorwindow.h"

#include "consolewidget.h"
#include "faultpanel.h"
#include "journalview.h"

#include <QDockWidget>
#include <QPixmap>

#include <algorithm>

using namespace Orvane;
using namespace Orvane::ConsolePanel;

namespace {
constexpr int DockHeight = 190;
constexpr int FaultsWidth = 280;
} // namespace

SimulatorWindow::SimulatorWindow(Simulator& simulator)
    : m_simulator(simulator)
    , m_pConsole(new ConsoleWidget(simulator.layout(), simulator.console()))
    , m_pJournalView(new JournalView(m_journal))
    , m_pFaults(new FaultPanel(simulator.wire()))
{
    setObjectName(QStringLiteral("simulatorWindow"));
    setWindowTitle(QStringLiteral("Orvane console simulator"));
    setPalette(consolePalette());
    setCentralWidget(m_pConsole);
    const auto addDock = [this](const QString& title, QWidget* content) {
        auto* const dock = new QDockWidget(title);
        dock->setObjectName(title);
        dock->setWidget(content);
        addDockWidget(Qt::BottomDockWidgetArea, dock);
        return dock;
    };
    QDockWidget* const journal = addDock(QStringLiteral("Journal"), m_pJournalView);
    QDockWidget* const faults = addDock(QStringLiteral("Faults"), m_pFaults);
    splitDockWidget(journal, faults, Qt::Horizontal);
    resizeDocks({journal, faults}, {DockHeight, DockHeight}, Qt::Vertical);
    resizeDocks({journal, faults}, {10 * FaultsWidth, FaultsWidth}, Qt::Horizontal);

    connect(m_pConsole, &ConsoleWidget::signalKeyMoved, this, [this](quint16 key, bool isDown) {
        m_simulator.report(KeyReport{isDown, key});
    });
    connect(m_pConsole, &ConsoleWidget::signalTBarMoved, this, [this](quint32 position, quint8 direction) {
        m_simulator.report(ECProxy::Client::ECTBarValue{position, direction});
    });
    connect(m_pFaults, &FaultPanel::signalRestartConsole, this, [this] { m_simulator.restart(); });
    connect(m_pFaults, &FaultPanel::signalSendBytes, this, [this](const QByteArray& datagram) {
        m_simulator.sendBytes(datagram);
    });
    connect(&m_pConsole->frames(), &FrameCoalescer::signalFrame, this, &SimulatorWindow::refresh);
    m_pConsole->setFocus();
    m_simulator.setWatcher(this);
}

void SimulatorWindow::resizeEvent(QResizeEvent* event)
{
    // The journal grows with the window, as the console does.
    constexpr int smallest = 12;
    QFont scaled = font();
    scaled.setPixelSize(std::max(smallest, std::min(width() / 107, height() / 66)));
    setFont(scaled);
    QMainWindow::resizeEvent(event);
}

SimulatorWindow::~SimulatorWindow()
{
    delete m_pConsole; // which lets go of its keys
    m_simulator.setWatcher(nullptr);
}

void SimulatorWindow::noteDown(
    std::chrono::microseconds time, const QByteArray& datagram, const Reception& reception)
{
    m_journal.note(time, JournalModel::Down, datagram);
    if (const auto* readable = std::get_if<DownDatagram>(&reception.datagram))
        m_pConsole->history().noteDown(time, *readable);
    m_pConsole->consoleChanged();
}

void SimulatorWindow::noteUp(std::chrono::microseconds time, const QByteArray& datagram, bool isLost)
{
    if (!m_pConsole)
        return; // the window goes
    m_journal.note(time, isLost ? JournalModel::Lost : JournalModel::Up, datagram);
    const auto report = decodeUp(datagram);
    if (const auto* key = report ? std::get_if<KeyReport>(&*report) : nullptr)
        m_pConsole->history().noteUp(time, *key);
    else if (const auto* lever = report ? std::get_if<ECProxy::Client::ECTBarValue>(&*report) : nullptr)
        m_pConsole->showLever(lever->Value);
    m_pConsole->consoleChanged();
}

void SimulatorWindow::consoleRestarted()
{
    m_pConsole->consoleChanged();
}

bool SimulatorWindow::takePicture(const QString& file)
{
    m_pConsole->refresh();
    refresh();
    return grab().save(file);
}

void SimulatorWindow::refresh()
{
    m_pJournalView->refresh();
    m_pFaults->refresh();
}

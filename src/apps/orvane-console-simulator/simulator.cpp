#include "simulator.h"

#include "consolepicture.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Orvane::CommandLine;
using namespace Orvane::ConsolePanel;

namespace {
/// A report that nothing overtakes arrives after this.
constexpr std::chrono::milliseconds LongestOvertaking(100);
} // namespace

Simulator::Simulator(const SimulatorOptions& options, ConsoleLayout layout)
    : m_options(options)
    , m_layout(std::move(layout))
    , m_output(options.json, options.quiet, m_clock)
    , m_runner(m_console, m_clock, *this)
    , m_link([this] {
        takeReceived();
        settle();
    })
{
    // A typed run goes on after a failure: whoever types sees it.
    m_runner.setStopsAtFailure(!options.scriptFile.isEmpty() && !options.keepGoing);
    m_clock.onAlarm([this] {
        // What has come by now counts, before a time is found to be over.
        takeReceived();
        m_runner.alarmRang();
        settle();
    });
}

Simulator::~Simulator()
{
    m_link.setCapture(nullptr);
}

bool Simulator::open()
{
    // Before the link, so that the capture has the first datagram too.
    if (!m_options.captureFile.isEmpty() && !beginCapture(m_options.captureFile))
        return false;
    if (!m_link.open()) {
        m_strError = m_link.errorText();
        return false;
    }
    m_output.ready(QStringLiteral("127.0.0.1:%1").arg(Protocol::ECServicePort), m_link.receiveBufferSize());
    m_output.flush();
    return true;
}

void Simulator::add(const ScriptCommand& command)
{
    m_runner.append(command.command, command.text, command.place);
    settle();
}

void Simulator::addLine(const QString& line)
{
    const auto parsed = parseCommand(line);
    if (const auto* command = std::get_if<SimulatorCommand>(&parsed)) {
        add({*command, line.trimmed(), {}});
    } else if (const auto* fault = std::get_if<CommandFault>(&parsed)) {
        refuse(QStringLiteral("\"%1\": %2").arg(line.trimmed(), fault->reason));
        settle();
    }
}

void Simulator::endOfCommands()
{
    m_bNoMoreCommands = true;
    settle();
}

void Simulator::end()
{
    m_bEndsNow = true;
    settle();
}

void Simulator::report(const UpMessage& message)
{
    m_runner.report(message);
    settle();
}

void Simulator::sendBytes(const QByteArray& datagram)
{
    send(datagram);
    settle();
}

void Simulator::restart()
{
    restartConsole();
    settle();
}

void Simulator::send(const QByteArray& datagram)
{
    const std::vector<FaultyWire::Arrival> arrivals = m_wire.pass(datagram);
    if (m_wire.isWaiting()) {
        // Nothing may come behind it.
        QTimer::singleShot(LongestOvertaking, &m_timers, [this] {
            if (const auto waiting = m_wire.takeWaiting())
                transmit(*waiting);
        });
    } else if (arrivals.empty() && m_pWatcher) {
        m_pWatcher->noteUp(m_clock.now(), datagram, true);
    }
    for (const FaultyWire::Arrival& arrival : arrivals) {
        if (arrival.after.count() == 0)
            transmit(arrival.datagram);
        else
            QTimer::singleShot(
                arrival.after, &m_timers, [this, delayed = arrival.datagram] { transmit(delayed); });
    }
}

void Simulator::transmit(const QByteArray& datagram)
{
    if (m_pWatcher)
        m_pWatcher->noteUp(m_clock.now(), datagram, false);
    if (m_link.send(datagram))
        return;
    ++m_nRefusedSends;
    m_output.problem(m_link.errorText());
}

void Simulator::noteSent(const QString& what)
{
    m_output.up(what);
}

void Simulator::noteOutcome(const CommandOutcome& outcome)
{
    m_output.outcome(outcome);
}

void Simulator::setFault(const SetFault& fault)
{
    // In the order of the kinds.
    constexpr int WireFaults::*rates[] = {
        &WireFaults::dropRate, &WireFaults::duplicateRate, &WireFaults::delayRate, &WireFaults::reorderRate};
    WireFaults& faults = m_wire.faults();
    if (fault.kind == SetFault::LoseRelease)
        faults.losesNextRelease = true;
    else
        faults.*rates[fault.kind] = fault.rate;
    if (fault.kind == SetFault::Delay)
        faults.delay = fault.delay;
}

void Simulator::restartConsole()
{
    // What is still in the socket was sent to the console before.
    takeReceived();
    m_console.restart();
    m_runner.consoleChanged();
    if (m_pWatcher)
        m_pWatcher->consoleRestarted();
}

bool Simulator::beginCapture(const QString& file)
{
    auto capture = std::make_shared<CaptureWriter>();
    if (!capture->open(file)) {
        m_strError = QStringLiteral("%1: %2").arg(file, capture->errorText());
        return false;
    }
    // From the writing thread to this one.
    QObject::connect(
        capture.get(), &CaptureWriter::signalFailed, &m_timers,
        [this] {
            endCapture();
            settle();
        },
        Qt::QueuedConnection);
    m_pCapture = std::move(capture);
    m_link.setCapture(m_pCapture);
    return true;
}

void Simulator::startCapture(const QString& file)
{
    if (m_pCapture)
        refuse(QStringLiteral("%1 is being captured already").arg(m_pCapture->path()));
    else if (!beginCapture(file))
        refuse(m_strError);
}

void Simulator::stopCapture()
{
    if (!m_pCapture)
        refuse(QStringLiteral("nothing is being captured"));
    else
        endCapture();
}

void Simulator::endCapture()
{
    if (!m_pCapture)
        return;
    m_link.setCapture(nullptr);
    const QString path = m_pCapture->path();
    const CaptureWriter::Summary summary = std::exchange(m_pCapture, nullptr)->close();
    if (!summary.errorText.isEmpty() || summary.lost != 0)
        refuse(QStringLiteral("%1 lacks %2 datagrams: %3")
                   .arg(
                       path, QString::number(summary.lost),
                       summary.errorText.isEmpty() ? QStringLiteral("the disk is too slow")
                                                   : summary.errorText));
    m_output.captured(path, summary.datagrams);
}

void Simulator::noteDifferences(const QString& when, const std::vector<ConsoleDifference>& found)
{
    for (const ConsoleDifference& difference : found)
        m_output.difference(when, difference);
}

void Simulator::refuse(const QString& problem)
{
    ++m_nFaultyLines;
    m_output.problem(problem);
}

void Simulator::takePicture(const QString& file)
{
    takeReceived();
    if (m_pWatcher && m_pWatcher->takePicture(file))
        return;
    refuse(
        m_pWatcher ? QStringLiteral("the picture cannot be written to ") + file
                   : QStringLiteral("there is no window to take a picture of"));
}

void Simulator::showConsole()
{
    const bool colour = m_options.colour && !m_options.json;
    m_output.console(
        ConsolePicture(m_layout, m_console, {colour, m_options.columns}).lines(), m_console.state());
}

void Simulator::showHelp()
{
    m_output.lines("help", commandHelp());
}

void Simulator::takeReceived()
{
    m_link.takeReceived([this](const char* bytes, int size) { take(bytes, size); });
}

void Simulator::take(const char* bytes, int size)
{
    const Reception reception = m_console.receive(bytes, size);
    if (m_pWatcher)
        m_pWatcher->noteDown(m_clock.now(), QByteArray(bytes, size), reception);
    if (const auto* unreadable = std::get_if<Unreadable>(&reception.datagram))
        m_output.unreadable(unreadable->reason, bytes, size);
    else
        m_output.down(std::get<DownDatagram>(reception.datagram));
    if (!reception.file.text.isEmpty())
        m_output.file(reception.file);
    m_runner.consoleChanged();
}

void Simulator::settle()
{
    const bool isThrough = m_bNoMoreCommands && m_runner.isIdle() && !m_options.window;
    const bool isDone = m_runner.hasQuit() || m_bEndsNow || isThrough;
    if (isDone && !m_bEnded) {
        m_bEnded = true;
        takeReceived();
        endCapture();
        if (m_runner.hasUnplayed())
            refuse(QStringLiteral("the capture was not played to its end"));
        QString counters = counterText(m_console);
        if (m_link.dropped() != 0)
            counters += QStringLiteral(", %1 dropped here").arg(m_link.dropped());
        m_output.end(counters, m_runner.failures() + m_nFaultyLines + m_nRefusedSends, status());
        QCoreApplication::exit(status());
    }
    m_output.flush();
}

int Simulator::status() const
{
    if (m_runner.couldNotStart())
        return ExitRefused;
    const bool hasFailed = m_runner.failures() != 0 || m_nFaultyLines != 0 || m_nRefusedSends != 0;
    const bool hasUnreadable = m_console.unreadable() != 0 || m_console.fileFaults() != 0;
    return hasFailed || (hasUnreadable && !m_options.tolerateUnreadable) ? ExitFailed : ExitOk;
}

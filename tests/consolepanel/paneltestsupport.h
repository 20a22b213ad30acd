#pragma once

/// Datagrams as the library sends them, and a clock that stands still until it is wound.

#include "commandparser.h"
#include "commandrunner.h"
#include "faultywire.h"

#include <QByteArray>
#include <QtTest>

namespace PanelTest {

using namespace Orvane::ConsolePanel;
namespace Protocol = Orvane::ECProxy::Client;

/// The number's lowest bytes, little-endian.
inline QByteArray number(quint32 value, int bytes)
{
    QByteArray out;
    for (; bytes > 0; --bytes, value >>= 8)
        out.append(char(value & 0xFF));
    return out;
}

/// A plain request with regular lengths.
inline QByteArray request(quint16 tag, const QByteArray& value, quint16 sequence = 1)
{
    return QByteArray::fromHex("ee55ee5501000001") + number(sequence, 2) + number(value.size() + 4, 2)
        + number(tag, 2) + number(value.size(), 2) + value;
}

inline QByteArray led(quint16 key, const char* rgbHex, quint8 state = 0, quint16 sequence = 1)
{
    return request(
        101, number(0, 4) + number(key, 2) + number(state, 1) + QByteArray::fromHex(rgbHex) + number(100, 1),
        sequence);
}

inline QByteArray label(quint16 label, const QByteArray& text, quint16 sequence = 1)
{
    return request(102, number(0, 4) + number(label, 2) + text.leftJustified(32, '\0', true), sequence);
}

class HandClock : public PanelClock {
public:
    Duration now() const override { return m_now; }
    void setAlarm(Duration when) override { m_alarm = when; }
    void clearAlarm() override { m_alarm.reset(); }

    /// Lets time pass, with every alarm on its way.
    void advance(std::chrono::microseconds time)
    {
        const Duration end = m_now + time;
        while (m_alarm && *m_alarm <= end) {
            m_now = std::max(m_now, *m_alarm);
            m_alarm.reset();
            ring();
        }
        m_now = end;
    }

private:
    Duration m_now{};
    std::optional<Duration> m_alarm;
};

/// A runner with all it needs, and what came out of it.
class RunnerBench : public RunnerSurroundings {
public:
    RunnerBench()
        : runner(console, clock, *this)
    {
        clock.onAlarm([this] { runner.alarmRang(); });
    }

    /// Reads and appends one command, which must be right.
    void command(const char* line)
    {
        const auto parsed = parseCommand(QString::fromUtf8(line));
        if (const auto* fault = std::get_if<CommandFault>(&parsed))
            QFAIL(qPrintable(fault->reason));
        runner.append(std::get<SimulatorCommand>(parsed), QString::fromUtf8(line), QStringLiteral("here"));
    }
    void datagram(const QByteArray& bytes)
    {
        console.receive(bytes.constData(), bytes.size());
        runner.consoleChanged();
    }
    /// `press 12@0 release 12@50`: what was sent and at which millisecond.
    QString sentText() const { return sent.join(QLatin1Char(' ')); }

    void send(const QByteArray& bytes) override { datagrams.append(bytes); }
    void noteSent(const QString& what) override
    {
        sent.append(QStringLiteral("%1@%2").arg(what).arg(clock.now().count() / 1000));
    }
    void noteOutcome(const CommandOutcome& outcome) override
    {
        outcomes.append((outcome.isOk ? QStringLiteral("ok ") : QStringLiteral("failed ")) + outcome.detail);
    }
    void setFault(const SetFault& fault) override { wire.faults().dropRate = fault.rate; }
    void clearFaults() override { wire.faults() = {}; }
    void seedFaults(quint32 seed) override { wire.seed(seed); }
    void restartConsole() override { console.restart(); }
    void startCapture(const QString& file) override { sent.append(QStringLiteral("capture ") + file); }
    void stopCapture() override { sent.append(QStringLiteral("capture stop")); }
    void noteDifferences(const QString& when, const std::vector<ConsoleDifference>& found) override
    {
        for (const ConsoleDifference& difference : found)
            differences.append(when + QStringLiteral(": ") + difference.text());
    }
    void takePicture(const QString& file) override { sent.append(file); }
    void showConsole() override { sent.append(QStringLiteral("show")); }
    void showHelp() override { sent.append(QStringLiteral("help")); }

    ConsoleRecorder console;
    FaultyWire wire;
    HandClock clock;
    QVector<QByteArray> datagrams;
    QStringList sent;
    QStringList outcomes;
    QStringList differences;
    CommandRunner runner;
};

} // namespace PanelTest

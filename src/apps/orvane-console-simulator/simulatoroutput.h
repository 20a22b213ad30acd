#pragma once

#include "commandrunner.h"

#include <QJsonObject>

/// Prints what happens, a line or a JSON object each. Lines are collected until `flush`, so that a burst of
/// datagrams costs one write.
class SimulatorOutput {
public:
    /// @param quiet leaves out the traffic and what went well
    /// @param clock gives the time that each line carries
    SimulatorOutput(bool json, bool quiet, const Orvane::ConsolePanel::PanelClock& clock)
        : m_clock(clock)
        , m_bJson(json)
        , m_bQuiet(quiet)
    {
    }
    ~SimulatorOutput() { flush(); }
    SimulatorOutput(const SimulatorOutput&) = delete;
    SimulatorOutput& operator=(const SimulatorOutput&) = delete;

    void ready(const QString& place, int receiveBuffer);
    void down(const Orvane::ConsolePanel::DownDatagram& datagram);
    void unreadable(const QString& reason, const char* bytes, int size);
    void file(const Orvane::ConsolePanel::FileReceiver::Outcome& outcome);
    void up(const QString& what);
    /// A capture file that is closed.
    void captured(const QString& path, quint64 datagrams);
    void difference(const QString& when, const Orvane::ConsolePanel::ConsoleDifference& difference);
    void outcome(const Orvane::ConsolePanel::CommandOutcome& outcome);
    /// Something the user did or the system refused.
    void problem(const QString& text);
    /// The console's picture, for programs with how each key and label looks.
    void console(const QStringList& picture, const Orvane::ConsolePanel::ConsoleState& state);
    /// Lines that were asked for.
    void lines(const char* event, const QStringList& lines);
    void end(const QString& counters, int failures, int status);

    void flush();

private:
    /// A line of text with the time and a mark for its kind in front, or an object.
    void line(const char* event, char mark, const QString& text, const QJsonObject& members);
    void textLine(char mark, const QString& text);
    void jsonLine(const char* event, QJsonObject object);
    void append(const QByteArray& line);

    const Orvane::ConsolePanel::PanelClock& m_clock;
    QByteArray m_buffer;
    bool m_bJson;
    bool m_bQuiet;
};

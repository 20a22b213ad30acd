#include "simulatoroutput.h"

#include "downdescription.h"
#include "statetext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

using namespace Orvane::ConsolePanel;

namespace {
constexpr int FlushAbove = 64 * 1024;
/// Of an unreadable datagram no more bytes than this are shown.
constexpr int ShownBytes = 512;
} // namespace

void SimulatorOutput::ready(const QString& place, int receiveBuffer)
{
    if (!m_bQuiet)
        line(
            "ready", '=',
            QStringLiteral("listening on %1, receive buffer %2 bytes").arg(place).arg(receiveBuffer),
            {{QStringLiteral("place"), place}, {QStringLiteral("receiveBuffer"), receiveBuffer}});
}

void SimulatorOutput::down(const DownDatagram& datagram)
{
    if (m_bQuiet)
        return;
    if (m_bJson) // of a burst only what is printed is made
        jsonLine("down", toJson(datagram));
    else
        textLine('<', describe(datagram));
}

void SimulatorOutput::unreadable(const QString& reason, const char* bytes, int size)
{
    QString hex = QLatin1String(QByteArray::fromRawData(bytes, std::min(size, ShownBytes)).toHex());
    if (size > ShownBytes)
        hex += QStringLiteral("...");
    line(
        "unreadable", '!',
        QStringLiteral("unreadable, %1: %2 bytes %3").arg(reason, QString::number(size), hex),
        {{QStringLiteral("reason"), reason}, {QStringLiteral("size"), size}, {QStringLiteral("hex"), hex}});
}

void SimulatorOutput::file(const FileReceiver::Outcome& outcome)
{
    const bool isFault = outcome.kind == FileReceiver::Outcome::Fault;
    if (!m_bQuiet || isFault)
        line(
            "file", isFault ? '!' : '=', outcome.text,
            {{QStringLiteral("ok"), !isFault}, {QStringLiteral("text"), outcome.text}});
}

void SimulatorOutput::up(const QString& what)
{
    if (!m_bQuiet)
        line("up", '>', what, {{QStringLiteral("report"), what}});
}

void SimulatorOutput::captured(const QString& path, quint64 datagrams)
{
    if (!m_bQuiet)
        line(
            "captured", '=', QStringLiteral("captured %1 datagrams in %2").arg(datagrams).arg(path),
            {{QStringLiteral("file"), path}, {QStringLiteral("datagrams"), qint64(datagrams)}});
}

void SimulatorOutput::difference(const QString& when, const ConsoleDifference& difference)
{
    line(
        "difference", '!', when + QStringLiteral(", ") + difference.text(),
        {{QStringLiteral("when"), when},
         {QStringLiteral("what"), difference.what},
         {QStringLiteral("expected"), difference.expected},
         {QStringLiteral("shown"), difference.shown}});
}

void SimulatorOutput::outcome(const CommandOutcome& outcome)
{
    if (m_bQuiet && outcome.isOk)
        return;
    QString text = outcome.isOk ? QStringLiteral("ok ") : QStringLiteral("FAILED ");
    if (!outcome.place.isEmpty())
        text += outcome.place + QStringLiteral(": ");
    text += outcome.command;
    if (!outcome.detail.isEmpty())
        text += QStringLiteral(" - ") + outcome.detail;
    line(
        "result", outcome.isOk ? '=' : '!', text,
        {{QStringLiteral("ok"), outcome.isOk},
         {QStringLiteral("command"), outcome.command},
         {QStringLiteral("place"), outcome.place},
         {QStringLiteral("detail"), outcome.detail}});
}

void SimulatorOutput::problem(const QString& text)
{
    line("problem", '!', text, {{QStringLiteral("text"), text}});
}

void SimulatorOutput::console(const QStringList& picture, const ConsoleState& state)
{
    if (!m_bJson) {
        lines("show", picture);
        return;
    }
    QJsonObject keys, labels;
    for (const auto& [number, key] : state.keys)
        keys.insert(QString::number(number), lookText(&key));
    for (const auto& [number, label] : state.labels)
        labels.insert(QString::number(number), lookText(&label));
    jsonLine(
        "show",
        {{QStringLiteral("lines"), QJsonArray::fromStringList(picture)},
         {QStringLiteral("keys"), keys},
         {QStringLiteral("labels"), labels}});
}

void SimulatorOutput::lines(const char* event, const QStringList& lines)
{
    if (m_bJson) {
        jsonLine(event, {{QStringLiteral("lines"), QJsonArray::fromStringList(lines)}});
        return;
    }
    for (const QString& line : lines)
        m_buffer += line.toUtf8() + '\n';
}

void SimulatorOutput::end(const QString& counters, int failures, int status)
{
    if (!m_bQuiet || status != 0)
        line(
            "end", status == 0 ? '=' : '!', QStringLiteral("%1, %2 failures").arg(counters).arg(failures),
            {{QStringLiteral("status"), status},
             {QStringLiteral("failures"), failures},
             {QStringLiteral("counters"), counters}});
}

void SimulatorOutput::flush()
{
    std::fwrite(m_buffer.constData(), 1, std::size_t(m_buffer.size()), stdout);
    std::fflush(stdout);
    m_buffer.clear();
}

void SimulatorOutput::line(const char* event, char mark, const QString& text, const QJsonObject& members)
{
    if (m_bJson)
        jsonLine(event, members);
    else
        textLine(mark, text);
}

void SimulatorOutput::textLine(char mark, const QString& text)
{
    char time[32];
    std::snprintf(time, sizeof(time), "%9.3f %c ", double(m_clock.now().count()) / 1e6, mark);
    append(QByteArray(time) + text.toUtf8());
}

void SimulatorOutput::jsonLine(const char* event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), QLatin1String(event));
    object.insert(QStringLiteral("ms"), double(m_clock.now().count()) / 1e3);
    append(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void SimulatorOutput::append(const QByteArray& line)
{
    m_buffer += line;
    m_buffer += '\n';
    if (m_buffer.size() > FlushAbove)
        flush();
}

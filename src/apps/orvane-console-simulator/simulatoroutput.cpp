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
    if (m_bQuiet)
        return;
    if (m_bJson)
        jsonLine(
            "ready", {{QStringLiteral("place"), place}, {QStringLiteral("receiveBuffer"), receiveBuffer}});
    else
        textLine(
            '=', QStringLiteral("listening on %1, receive buffer %2 bytes").arg(place).arg(receiveBuffer));
}

void SimulatorOutput::down(const DownDatagram& datagram)
{
    if (m_bQuiet)
        return;
    if (m_bJson)
        jsonLine("down", toJson(datagram));
    else
        textLine('<', describe(datagram));
}

void SimulatorOutput::unreadable(const QString& reason, const char* bytes, int size)
{
    QString hex = QLatin1String(QByteArray::fromRawData(bytes, std::min(size, ShownBytes)).toHex());
    if (size > ShownBytes)
        hex += QStringLiteral("...");
    if (m_bJson)
        jsonLine(
            "unreadable",
            {{QStringLiteral("reason"), reason},
             {QStringLiteral("size"), size},
             {QStringLiteral("hex"), hex}});
    else
        textLine('!', QStringLiteral("unreadable, %1: %2 bytes %3").arg(reason, QString::number(size), hex));
}

void SimulatorOutput::file(const FileReceiver::Outcome& outcome)
{
    const bool isFault = outcome.kind == FileReceiver::Outcome::Fault;
    if (m_bQuiet && !isFault)
        return;
    if (m_bJson)
        jsonLine("file", {{QStringLiteral("ok"), !isFault}, {QStringLiteral("text"), outcome.text}});
    else
        textLine(isFault ? '!' : '=', outcome.text);
}

void SimulatorOutput::up(const QString& what)
{
    if (m_bQuiet)
        return;
    if (m_bJson)
        jsonLine("up", {{QStringLiteral("report"), what}});
    else
        textLine('>', what);
}

void SimulatorOutput::captured(const QString& path, quint64 datagrams)
{
    if (m_bQuiet)
        return;
    if (m_bJson)
        jsonLine(
            "captured", {{QStringLiteral("file"), path}, {QStringLiteral("datagrams"), qint64(datagrams)}});
    else
        textLine('=', QStringLiteral("captured %1 datagrams in %2").arg(datagrams).arg(path));
}

void SimulatorOutput::difference(const QString& when, const ConsoleDifference& difference)
{
    if (m_bJson)
        jsonLine(
            "difference",
            {{QStringLiteral("when"), when},
             {QStringLiteral("what"), difference.what},
             {QStringLiteral("expected"), difference.expected},
             {QStringLiteral("shown"), difference.shown}});
    else
        textLine('!', when + QStringLiteral(", ") + difference.text());
}

void SimulatorOutput::outcome(const CommandOutcome& outcome)
{
    if (m_bQuiet && outcome.isOk)
        return;
    if (m_bJson) {
        jsonLine(
            "result",
            {{QStringLiteral("ok"), outcome.isOk},
             {QStringLiteral("command"), outcome.command},
             {QStringLiteral("place"), outcome.place},
             {QStringLiteral("detail"), outcome.detail}});
        return;
    }
    QString text = outcome.isOk ? QStringLiteral("ok ") : QStringLiteral("FAILED ");
    if (!outcome.place.isEmpty())
        text += outcome.place + QStringLiteral(": ");
    text += outcome.command;
    if (!outcome.detail.isEmpty())
        text += QStringLiteral(" - ") + outcome.detail;
    textLine(outcome.isOk ? '=' : '!', text);
}

void SimulatorOutput::problem(const QString& text)
{
    if (m_bJson)
        jsonLine("problem", {{QStringLiteral("text"), text}});
    else
        textLine('!', text);
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
    if (m_bQuiet && status == 0)
        return;
    if (m_bJson)
        jsonLine(
            "end",
            {{QStringLiteral("status"), status},
             {QStringLiteral("failures"), failures},
             {QStringLiteral("counters"), counters}});
    else
        textLine(status == 0 ? '=' : '!', QStringLiteral("%1, %2 failures").arg(counters).arg(failures));
}

void SimulatorOutput::flush()
{
    std::fwrite(m_buffer.constData(), 1, std::size_t(m_buffer.size()), stdout);
    std::fflush(stdout);
    m_buffer.clear();
}

void SimulatorOutput::textLine(char mark, const QString& text)
{
    char time[32];
    std::snprintf(time, sizeof(time), "%9.3f %c ", double(m_now.count()) / 1e6, mark);
    m_buffer += time;
    m_buffer += text.toUtf8();
    m_buffer += '\n';
    if (m_buffer.size() > FlushAbove)
        flush();
}

void SimulatorOutput::jsonLine(const char* event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), QLatin1String(event));
    object.insert(QStringLiteral("ms"), double(m_now.count()) / 1e3);
    m_buffer += QJsonDocument(object).toJson(QJsonDocument::Compact);
    m_buffer += '\n';
    if (m_buffer.size() > FlushAbove)
        flush();
}

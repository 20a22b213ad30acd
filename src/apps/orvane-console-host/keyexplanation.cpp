#include "keyexplanation.h"

#include "downdecoder.h"
#include "downdescription.h"
#include "ecconstants.h"
#include "enumwords_p.h"

#include <QDateTime>
#include <QJsonArray>

namespace Orvane::ConsoleHost {

using ConsolePanel::DownDatagram;
using ECProxy::Client::ECKeyTrace;
using Internal::wordOf;
namespace Constants = ECProxy::Client::Constants;

namespace {

constexpr double NsPerMs = 1e6;

QString levelName(QtMsgType level)
{
    static const QStringList names // in the order of the values
        = {QStringLiteral("debug"), QStringLiteral("warning"), QStringLiteral("critical"),
           QStringLiteral("fatal"), QStringLiteral("info")};
    return names.value(level);
}

QJsonObject sentJson(const QByteArray& datagram)
{
    const auto read = ConsolePanel::decodeDown(datagram.constData(), datagram.size());
    if (const auto* readable = std::get_if<DownDatagram>(&read))
        return ConsolePanel::toJson(*readable);
    return {{QStringLiteral("hex"), QString::fromLatin1(datagram.toHex(' '))}};
}

QString sentText(const QByteArray& datagram)
{
    const auto read = ConsolePanel::decodeDown(datagram.constData(), datagram.size());
    const auto* readable = std::get_if<DownDatagram>(&read);
    return readable ? ConsolePanel::describe(*readable) : QString::fromLatin1(datagram.toHex(' '));
}

QString passage(const ECKeyTrace::Asked& asked)
{
    return (asked.isPassed ? QStringLiteral("%1 passed") : QStringLiteral("%1 refused"))
        .arg(wordOf(asked.guard));
}

} // namespace

QJsonObject toJson(const ECKeyTrace& trace)
{
    QJsonArray guards, sent, lines;
    for (const auto& asked : trace.guards) {
        guards.append(QJsonObject{
            {QStringLiteral("guard"), wordOf(asked.guard)}, {QStringLiteral("passed"), asked.isPassed}});
    }
    for (const QByteArray& datagram : trace.sent)
        sent.append(sentJson(datagram));
    for (const auto& line : trace.lines) {
        lines.append(QJsonObject{
            {QStringLiteral("level"), levelName(line.level)},
            {QStringLiteral("category"), line.category},
            {QStringLiteral("text"), line.text}});
    }
    return {
        {QStringLiteral("number"), qint64(trace.number)},
        {QStringLiteral("time"), trace.time},
        {QStringLiteral("ms"), double(trace.workedNs) / NsPerMs},
        {QStringLiteral("what"), wordOf(trace.event)},
        {QStringLiteral("cause"), qint64(trace.cause)},
        {QStringLiteral("report"), QString::fromLatin1(trace.report.toHex(' '))},
        {QStringLiteral("received"), qint64(trace.key)},
        {QStringLiteral("key"), qint64(trace.ecKey)},
        {QStringLiteral("owner"), trace.owner},
        {QStringLiteral("code"), trace.functionCode},
        {QStringLiteral("function"), trace.function},
        {QStringLiteral("guards"), guards},
        {QStringLiteral("handled"), trace.handled ? QJsonValue(*trace.handled) : QJsonValue()},
        {QStringLiteral("sent"), sent},
        {QStringLiteral("lines"), lines},
        {QStringLiteral("reason"), trace.reason}};
}

QString outcomeOf(const ECKeyTrace& trace)
{
    if (!trace.reason.isEmpty())
        return trace.reason;
    return QStringLiteral("done, %1 sent").arg(trace.sent.size());
}

QStringList stepsOf(const ECKeyTrace& trace)
{
    QStringList steps;
    if (!trace.report.isEmpty())
        steps.append(QStringLiteral("report  %1").arg(QString::fromLatin1(trace.report.toHex(' '))));
    if (trace.key >= Constants::VirtualKeyOffset)
        steps.append(QStringLiteral("on-screen key %1").arg(trace.key - Constants::VirtualKeyOffset));
    if (trace.cause != 0)
        steps.append(QStringLiteral("begun by event %1").arg(trace.cause));
    QStringList guards;
    for (const auto& asked : trace.guards)
        guards.append(passage(asked));
    if (!guards.isEmpty())
        steps.append(QStringLiteral("guards  %1").arg(guards.join(QStringLiteral(", "))));
    for (const auto& line : trace.lines)
        steps.append(QStringLiteral("%1 %2  %3").arg(line.category, levelName(line.level), line.text));
    if (trace.handled)
        steps.append(QStringLiteral("handler returned %1")
                         .arg(*trace.handled ? QStringLiteral("true") : QStringLiteral("false")));
    for (const QByteArray& datagram : trace.sent)
        steps.append(QStringLiteral("sent  %1").arg(sentText(datagram)));
    return steps;
}

} // namespace Orvane::ConsoleHost

#include "keyexplainer.h"

#include "commandtable.h"
#include "eventwriter.h"
#include "explainerwindow.h"
#include "keyexplanation.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECKeyTrace;
using ECProxy::Client::ECKeyTracer;

KeyExplainer::KeyExplainer(EventWriter& events, QObject* parent)
    : QObject(parent)
    , m_events(events)
{
}

void KeyExplainer::setOn(bool on)
{
    if (on == isOn())
        return;
    if (!on) {
        takeTraces();
        m_pTracer.reset();
        return;
    }
    m_pTracer = std::make_unique<ECKeyTracer>();
    connect(m_pTracer.get(), &ECKeyTracer::signalTracesPending, this, &KeyExplainer::takeTraces);
}

void KeyExplainer::takeTraces()
{
    const QList<ECKeyTrace> traces = m_pTracer->take();
    if (traces.isEmpty())
        return;
    for (const ECKeyTrace& trace : traces)
        m_events.writeEvent(QStringLiteral("keyExplained"), toJson(trace));
    m_traces += traces;
    m_traces = m_traces.mid(std::max(0, m_traces.size() - ECKeyTracer::MaxTraces));
    Q_EMIT signalExplained(traces);
}

namespace {

/// The last events, of one key or of all.
QJsonArray explanations(const QList<ECKeyTrace>& traces, int last, int key)
{
    QJsonArray found;
    for (auto trace = traces.crbegin(); trace != traces.crend() && found.size() < last; ++trace) {
        if (key < 0 || int(trace->ecKey) == key)
            found.prepend(toJson(*trace));
    }
    return found;
}

} // namespace

void addExplainCommands(CommandTable& table, KeyExplainer& explainer, ExplainerWindow& window)
{
    constexpr int anyKey = -1;
    table.add(
        "explain", "explains each event of a key from now on, or no longer", {Parameter::flag("on")},
        explainer, &KeyExplainer::setOn);
    table.add(
        "explanations", "tells what became of the last events, of one key by its number or of all",
        {Parameter::integer("last", 1, ECKeyTracer::MaxTraces).orElse(1),
         Parameter::integer("key", anyKey, std::numeric_limits<quint16>::max()).orElse(anyKey)},
        [&explainer](const Arguments& arguments) {
            return QJsonObject{
                {QStringLiteral("explanations"),
                 explanations(explainer.traces(), arguments.integer("last"), arguments.integer("key"))}};
        });
    table.add(
        "showExplainer", "shows or hides the window that explains keys, which begins or ends it",
        {Parameter::flag("visible")},
        [&window](const Arguments& arguments) { window.setVisible(arguments.flag("visible")); });
}

} // namespace Orvane::ConsoleHost

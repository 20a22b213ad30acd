#pragma once

#include "eckeytracer.h"

#include <QObject>

#include <memory>

namespace Orvane::ConsoleHost {

class CommandTable;
class EventWriter;
class ExplainerWindow;

/// Keeps what became of the keys' last events, while it is on. On the GUI thread.
class KeyExplainer : public QObject {
    Q_OBJECT

public:
    explicit KeyExplainer(EventWriter& events, QObject* parent = nullptr);

    bool isOn() const { return m_pTracer != nullptr; }
    /// What was collected stays when it ends.
    void setOn(bool on);

    /// The newest last, at most `ECKeyTracer::MaxTraces`.
    const QList<ECProxy::Client::ECKeyTrace>& traces() const { return m_traces; }

Q_SIGNALS:
    void signalExplained(const QList<ECProxy::Client::ECKeyTrace>& traces);

private:
    void takeTraces();

    EventWriter& m_events;
    std::unique_ptr<ECProxy::Client::ECKeyTracer> m_pTracer;
    QList<ECProxy::Client::ECKeyTrace> m_traces;
};

/// Adds the commands that explain keys.
void addExplainCommands(CommandTable& table, KeyExplainer& explainer, ExplainerWindow& window);

} // namespace Orvane::ConsoleHost

#pragma once

#include "eckeytrace.h"

#include <QJsonObject>
#include <QStringList>

namespace Orvane::ConsoleHost {

/// The whole trace as an object.
QJsonObject toJson(const ECProxy::Client::ECKeyTrace& trace);

/// What became of the event, in a few words: the reason when nothing did.
QString outcomeOf(const ECProxy::Client::ECKeyTrace& trace);

/// The way of the event in readable lines, in order: the report, the guards, the log, what was sent.
QStringList stepsOf(const ECProxy::Client::ECKeyTrace& trace);

} // namespace Orvane::ConsoleHost

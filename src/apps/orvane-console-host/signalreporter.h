#pragma once

#include "ecconsolesession.h"

#include <QObject>
#include <QString>

namespace Orvane::BizModel {
class DeviceList;
}
namespace Orvane::ECProxy::Client {
class ECManager;
}

namespace Orvane::MemoryModel {
class Operations;
}

namespace Orvane::Notices {
class NoticePresenter;
}

namespace Orvane::ConsoleHost {

class EventWriter;

/// Writes an event for every signal of the console's manager.
void reportManagerSignals(const ECProxy::Client::ECManager& manager, EventWriter& events);

/// Writes an event when the console's service goes or comes, and when the session is in trouble.
void reportSession(const ECProxy::Client::ECConsoleSession& session, EventWriter& events);

/// Writes an event for every notice to the user but the message boxes.
void reportNotices(const BizModel::DeviceList& devices, EventWriter& events);

/// Writes an event for every message box once it is there to be answered.
void reportMessageBoxes(const Notices::NoticePresenter& notices, EventWriter& events);

/// Writes an event for everything that the model is asked to do, begins and has done. `events`
/// must outlive the model.
void reportOperations(MemoryModel::Operations& operations, EventWriter& events);

} // namespace Orvane::ConsoleHost

#pragma once

#include "downmessage.h"

#include <QJsonObject>

namespace Orvane::ConsolePanel {

/// The request's own name, as in `UpdateECButtonColor`.
QString tagName(Protocol::eECDownMessageTag tag);

/// The datagram as one readable line without a line end:
/// `#5 UpdateECButtonColor key=12 app=1012 state=LightUp color=0,255,0 brightness=100`.
QString describe(const DownDatagram& datagram);

/// The same as an object: `seq`, `tag` and `name`, then the fields of the line under the same names.
QJsonObject toJson(const DownDatagram& datagram);

/// The label's text; a character that was cut in half at the end of the 32 bytes is left out.
QString labelText(const Protocol::ECOLEDText& record);

QString lightName(quint8 lightType);

} // namespace Orvane::ConsolePanel

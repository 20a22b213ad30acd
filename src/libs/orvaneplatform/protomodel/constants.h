#pragma once

#include <QString>

namespace Orvane::ProtoModel {

/// Serial number of a device that has not told its own.
inline const QString emptySNString = QStringLiteral("0000000000000000");
/// Hardware address of a device that has not told its own.
inline const QString emptyMACString = QStringLiteral("000000000000");

} // namespace Orvane::ProtoModel

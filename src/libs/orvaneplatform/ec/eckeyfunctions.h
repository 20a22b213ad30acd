#pragma once

#include "orvaneplatform_global.h"

#include <QString>
#include <QStringList>

namespace Orvane::EC {

/// What the keys of a group can do, in words for the user: the function codes (`OrvaneKey`) from 0, no
/// function, up to the group's highest. Empty for a name that no group has.
ORVANEPLATFORM_EXPORT QStringList keyFunctionNames(const QString& groupName);

/// What the key with this code does; empty when the group has no such code.
ORVANEPLATFORM_EXPORT QString keyFunctionName(const QString& groupName, quint16 code);

} // namespace Orvane::EC

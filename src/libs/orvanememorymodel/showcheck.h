#pragma once

#include "records.h"

#include <QStringList>

namespace Orvane::MemoryModel {

/// Adds a fault for everything in the show that does not fit together: numbers that stand twice, and
/// references to what is not there.
void checkShow(const ShowRecord& show, QStringList& faults);

} // namespace Orvane::MemoryModel

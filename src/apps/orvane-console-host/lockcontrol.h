#pragma once

namespace Orvane::ConsoleHost {

/// Locks and unlocks what the console's own lock keys do, and tells the commands as those keys do.
void setKeypadLocked(bool locked);
void setTBarLocked(bool locked);

} // namespace Orvane::ConsoleHost

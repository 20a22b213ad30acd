#pragma once

#include "program.h"

namespace Orvane::ConsoleHost {

/// What the host says of itself on its command line and its manual page.
const CommandLine::Program& hostProgram();

} // namespace Orvane::ConsoleHost

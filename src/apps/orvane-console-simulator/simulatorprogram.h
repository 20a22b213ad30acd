#pragma once

#include "program.h"

/// What the simulator says of itself on its command line and its manual page.
const Orvane::CommandLine::Program& simulatorProgram();

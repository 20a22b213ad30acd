#pragma once

#include "exitstatus.h"
#include "simulatoroptions.h"

#include "ec/eckeyboardconfig.h"

/// Empty, with every problem of the file on standard error, when it cannot be used.
std::shared_ptr<Orvane::EC::s_ECKeyboardConfig> readKeyboard(const QString& path);

/// Prints every problem of the keyboard file, those that the loader refuses and those that it lets pass.
/// Needs an application object, as the translations do.
Orvane::CommandLine::ExitStatus checkKeyboard(const SimulatorOptions& options);

/// Prints the operator's page for the keyboard file.
Orvane::CommandLine::ExitStatus describeKeyboard(const SimulatorOptions& options);

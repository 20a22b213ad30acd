#pragma once

#include "program.h"

#include <QByteArray>

namespace Orvane::CommandLine {

/// The program's page for `man`.
QByteArray manualPage(const Program& program);

} // namespace Orvane::CommandLine

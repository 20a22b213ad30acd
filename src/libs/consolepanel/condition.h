#pragma once

#include "consolerecorder.h"

#include <QStringList>

#include <functional>

namespace Orvane::ConsolePanel {

/// Something that a script can expect of the console, as `led 12 0,255,0`.
struct Condition {
    /// Whether it holds now.
    using Check = std::function<bool(const ConsoleRecorder&)>;

    /// Called when the waiting begins; conditions that speak of a change compare with that moment.
    std::function<Check(const ConsoleRecorder&)> begin;
    /// What the console shows in its place.
    std::function<QString(const ConsoleRecorder&)> actual;
};

/// Reads a condition's words; `problem` says what was wrong with them when the result is empty.
std::optional<Condition> parseCondition(const QStringList& words, QString& problem);

/// One line a kind of condition: how it is written.
QStringList conditionUsages();

} // namespace Orvane::ConsolePanel

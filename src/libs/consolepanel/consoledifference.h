#pragma once

#include "consolestate.h"

#include <QString>

#include <vector>

namespace Orvane::ConsolePanel {

/// Something that a console shows and should not.
struct ConsoleDifference {
    QString what; ///< `key 12`, `label 512`, `T-Bar level`, `light front`
    QString expected;
    QString shown;

    /// `key 12: expected dark, shown 0,255,0 (Green), brightness 100`
    QString text() const;
};

/// How much of a console's state is known.
enum class Knowledge {
    Partial, ///< what was set is known, and nothing about the rest
    Complete, ///< what was not set is dark, empty and free
};

/// Compares what an operator sees of two consoles: keys, labels, the light bar beside the T-Bar, locks, panel
/// lights, luminance. Empty when `shown` looks as expected.
std::vector<ConsoleDifference> differences(
    const ConsoleState& expected, Knowledge knowledge, const ConsoleState& shown);

} // namespace Orvane::ConsolePanel

#pragma once

#include "consolestate.h"
#include "ec/eckeyboardconfig.h"

#include <optional>
#include <vector>

namespace Orvane::ConsolePanel {

/// Which keys and labels the console has, grouped as in its keyboard configuration.
struct ConsoleLayout {
    struct Key {
        quint16 number = 0; ///< the console's own
        std::optional<quint16> label; ///< number of the label above it
        quint32 appKey = 0; ///< the application's number of the key
        quint16 code = 0; ///< what it does, as its group counts; 0: nothing
        quint16 place = 0; ///< of a select key its place on the page, of a digit key the digit
    };
    struct Group {
        QString name;
        std::vector<Key> keys;
    };
    QString name;
    std::vector<Group> groups;

    static ConsoleLayout fromConfig(const EC::s_ECKeyboardConfig& config);

    /// The keys that were lit and stand in none of the groups, by number.
    Group keysOutside(const ConsoleState& state) const;
};

} // namespace Orvane::ConsolePanel

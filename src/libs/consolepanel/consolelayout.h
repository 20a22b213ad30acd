#pragma once

#include "ec/eckeyboardconfig.h"

#include <optional>
#include <vector>

namespace Orvane::ConsolePanel {

/// Which keys and labels the console has, grouped as in its keyboard configuration.
struct ConsoleLayout {
    struct Key {
        quint16 number = 0; ///< the console's own
        std::optional<quint16> label; ///< number of the label above it
    };
    struct Group {
        QString name;
        std::vector<Key> keys;
    };
    QString name;
    std::vector<Group> groups;

    static ConsoleLayout fromConfig(const EC::s_ECKeyboardConfig& config);
};

} // namespace Orvane::ConsolePanel

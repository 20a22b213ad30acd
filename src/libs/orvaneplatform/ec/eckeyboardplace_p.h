#pragma once

#include "orvaneplatform_global.h"

#include <QString>

#include <optional>

namespace Orvane::Internal {

/// A text from a file as a message shows it: short, and harmless to a terminal.
ORVANEPLATFORM_EXPORT QString quoted(const QString& text);

/// A spot in a keyboard file; turned into words only when there is something to say about it.
struct ORVANEPLATFORM_EXPORT KeyboardPlace {
    int group = 0; ///< from 1; 0 for the whole keyboard
    QString groupName;
    int key = 0; ///< from 1; 0 for the whole group
    std::optional<quint32> ecKey;
    bool label = false;

    QString toString() const;
};

} // namespace Orvane::Internal

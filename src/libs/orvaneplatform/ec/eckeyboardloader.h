#pragma once

#include "ec/eckeyboardconfig.h"
#include "orvaneplatform_global.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

namespace Orvane::EC {

/// A fault in a keyboard file.
struct ORVANEPLATFORM_EXPORT KeyboardProblem {
    /// Where it is, e.g. `group 1 "ScreenCommand", key 3 (ECKey 12)` or `line 4, column 17`.
    QString place;
    /// What is wrong and what was expected.
    QString text;

    /// Both on one line, for a log or a terminal.
    QString toString() const;
};

/// Either a configuration or at least one problem: a file with a fault is refused whole.
struct KeyboardLoadResult {
    std::shared_ptr<s_ECKeyboardConfig> config;
    /// Everything that is wrong; of a text that is no JSON only the first place.
    QList<KeyboardProblem> problems;

    explicit operator bool() const { return config != nullptr; }
};

/// Reads a keyboard configuration in JSON, with the names of the records' members as keys. Any bytes may be
/// given. Any thread.
ORVANEPLATFORM_EXPORT KeyboardLoadResult loadKeyboard(const QByteArray& json);

/// Reads it from a file of at most `MaxKeyboardFileBytes`.
ORVANEPLATFORM_EXPORT KeyboardLoadResult loadKeyboardFile(const QString& path);

/// Well above what six groups with every possible key need.
constexpr qint64 MaxKeyboardFileBytes = 256LL * 1024 * 1024;

} // namespace Orvane::EC

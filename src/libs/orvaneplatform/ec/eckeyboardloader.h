#pragma once

#include "orvaneplatform/ec/eckeyboardconfig.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

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
    /// The configuration; empty when there is a problem.
    std::shared_ptr<s_ECKeyboardConfig> config;
    /// Everything that is wrong; of a text that is no JSON only the first place.
    QList<KeyboardProblem> problems;

    /// True with a configuration.
    explicit operator bool() const { return config != nullptr; }
};

/// Reads a keyboard configuration in JSON, with the names of the records' members as keys. Any bytes may be
/// given. Any thread.
ORVANEPLATFORM_EXPORT KeyboardLoadResult loadKeyboard(const QByteArray& json);

/// Reads it from a file of at most `MaxKeyboardFileBytes`.
ORVANEPLATFORM_EXPORT KeyboardLoadResult loadKeyboardFile(const QString& path);

/// What could be read of a keyboard, whatever is wrong with it: for those who look for more problems.
struct KeyboardDraft {
    /// Groups and keys that could not be read are empty pointers. Empty when the text is no JSON object.
    std::shared_ptr<s_ECKeyboardConfig> keyboard;
    /// As `KeyboardLoadResult::problems`; empty for a keyboard that can be used.
    QList<KeyboardProblem> problems;
};

/// Reads what can be read of it. Any bytes may be given. Any thread.
ORVANEPLATFORM_EXPORT KeyboardDraft draftKeyboard(const QByteArray& json);

/// The bytes of a file of at most `MaxKeyboardFileBytes`; empty with `problem` set when they cannot be had.
ORVANEPLATFORM_EXPORT std::optional<QByteArray> readKeyboardFile(
    const QString& path, KeyboardProblem& problem);

/// Well above what six groups with every possible key need.
constexpr qint64 MaxKeyboardFileBytes = 256LL * 1024 * 1024;

} // namespace Orvane::EC

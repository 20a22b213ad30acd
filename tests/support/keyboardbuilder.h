#pragma once

#include "ec/eckeyboardconfig.h"

namespace Orvane::TestSupport {

/// Makes a keyboard in code. Application numbers are the console's plus 1000, labels' numbers are given and
/// their application numbers are theirs plus 1000.
class KeyboardBuilder {
public:
    KeyboardBuilder();

    /// Starts a group; the keys that follow belong to it.
    KeyboardBuilder& group(const QString& name);
    /// Adds a key; `labelECKey` 0 leaves it without a label.
    KeyboardBuilder& key(quint16 ecKey, int orvaneKey, quint16 orderIndex = 0, quint16 labelECKey = 0);
    /// Adds `count` selectable keys (function code 1) with ascending numbers and places, labels `firstLabel`
    /// on.
    KeyboardBuilder& selectKeys(quint16 firstECKey, int count, quint16 firstLabelECKey = 0);

    std::shared_ptr<EC::s_ECKeyboardConfig> build() const { return m_pKeyboard; }

private:
    std::shared_ptr<EC::s_ECKeyboardConfig> m_pKeyboard;
};

constexpr quint32 appNumber(quint32 ecKey)
{
    return ecKey + 1000;
}

} // namespace Orvane::TestSupport

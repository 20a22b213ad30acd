#pragma once

#include "consolelayout.h"

#include <optional>

class QKeyEvent;

namespace Orvane::ConsolePanel {

/// Which key of the layout a key of the keyboard works: the numeric keypad types, F1 to F12 select screens,
/// and a letter stands for each of the most used functions.
class KeyShortcuts {
public:
    explicit KeyShortcuts(const ConsoleLayout& layout);

    /// The console's number; empty when the key of the keyboard works none.
    std::optional<quint16> keyFor(const QKeyEvent& event) const;
    /// `Space`, `F1`: what works the key; empty for a key without.
    QString textFor(quint16 key) const;

private:
    std::map<int, quint16> m_keys; ///< by Qt::Key
};

} // namespace Orvane::ConsolePanel

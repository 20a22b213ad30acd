#include "keyshortcuts.h"

#include "ec/eckeyfunctions.h"

#include <QKeyEvent>
#include <QKeySequence>

namespace Orvane::ConsolePanel {

namespace {

constexpr int MostFunctionKeys = 12;

struct Letter {
    const char* group;
    quint16 code;
    int key;
};

constexpr Letter Letters[] = {
    {"ScreenCommand", 8, Qt::Key_Space}, // take
    {"ScreenCommand", 7, Qt::Key_C}, // cut
    {"ScreenCommand", 4, Qt::Key_Z}, // freeze
    {"ScreenCommand", 6, Qt::Key_B}, // fade to black
    {"ScreenCommand", 5, Qt::Key_M}, // match
    {"ScreenCommand", 2, Qt::Key_PageUp},    {"ScreenCommand", 3, Qt::Key_PageDown},
    {"LayerCommand", 4, Qt::Key_Delete}, // remove selected
    {"PresetCommand", 6, Qt::Key_S}, // save
    {"NumberCommand", 2, Qt::Key_Enter},     {"NumberCommand", 2, Qt::Key_Return},
    {"NumberCommand", 3, Qt::Key_Backspace}, {"NumberCommand", 4, Qt::Key_Plus},
    {"NumberCommand", 5, Qt::Key_Minus},
};

} // namespace

KeyShortcuts::KeyShortcuts(const ConsoleLayout& layout)
{
    for (const ConsoleLayout::Group& group : layout.groups) {
        for (const ConsoleLayout::Key& key : group.keys) {
            if (group.name == QLatin1String("NumberCommand") && key.code == EC::SelectKeyCode
                && key.place <= 9)
                m_keys.emplace(Qt::Key_0 + key.place, key.number);
            const bool selectsScreen =
                group.name == QLatin1String("ScreenCommand") && key.code == EC::SelectKeyCode;
            if (selectsScreen && key.place < MostFunctionKeys)
                m_keys.emplace(Qt::Key_F1 + key.place, key.number);
            for (const Letter& letter : Letters)
                if (group.name == QLatin1String(letter.group) && key.code == letter.code)
                    m_keys.emplace(letter.key, key.number);
        }
    }
}

std::optional<quint16> KeyShortcuts::keyFor(const QKeyEvent& event) const
{
    const Qt::KeyboardModifiers others = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    const auto found = m_keys.find(event.key());
    return found == m_keys.end() || others != Qt::NoModifier ? std::nullopt : std::optional(found->second);
}

QString KeyShortcuts::textFor(quint16 key) const
{
    QStringList texts;
    for (const auto& [shortcut, number] : m_keys)
        if (number == key)
            texts.append(QKeySequence(shortcut).toString(QKeySequence::NativeText));
    return texts.join(QStringLiteral(", "));
}

} // namespace Orvane::ConsolePanel

#include "operatorguide.h"

#include <QStringList>

#include <algorithm>

namespace Orvane::KeyboardTools {

using EC::KeyFunction;
using EC::KeyGroupInfo;
using EC::KeyOrder;
using EC::SelectKeyCode;

namespace {

constexpr char GuideStart[] =
    "What each key of this console does. A key goes by its number on the console, its `ECKey`. Where several "
    "numbers\nstand in a row, those keys do the same, each for what is on it.\n";

constexpr char GuideEnd[] = R"(
## T-Bar

Moving the T-Bar from one end to the other takes the selected screens from preview to program; where it stops in between,
the transition stops. The next way back is the next transition. The LEDs beside it show where it is. It does nothing
while a dialog is open, or while it or the keypad is locked.

## When a key does nothing
)";

/// Keys in a row of the guide: neighbours with one function.
struct KeyRange {
    quint16 firstKey;
    quint16 lastKey;
    quint16 firstIndex;
    quint16 lastIndex;
    quint16 code;
};

std::vector<KeyRange> rangesOf(const EC::s_ECCommandConfig& group)
{
    std::vector<KeyRange> ranges;
    for (const auto& key : group.m_buttons) {
        const bool goesOn = !ranges.empty() && key->OrvaneKey == SelectKeyCode
            && ranges.back().code == SelectKeyCode && key->ECKey == ranges.back().lastKey + 1
            && key->OrderIndex == ranges.back().lastIndex + 1;
        if (goesOn) {
            ranges.back().lastKey = key->ECKey;
            ranges.back().lastIndex = key->OrderIndex;
        } else {
            ranges.push_back({key->ECKey, key->ECKey, key->OrderIndex, key->OrderIndex, key->OrvaneKey});
        }
    }
    return ranges;
}

QString fromTo(int first, int last)
{
    return first == last ? QString::number(first) : QStringLiteral("%1 to %2").arg(first).arg(last);
}

/// The function's name, with the digit or the place on the page.
QString nameOf(const KeyGroupInfo& group, const KeyRange& range)
{
    const QString name = QLatin1String(group.functions[range.code].name);
    if (range.code != SelectKeyCode || group.order == KeyOrder::Group)
        return name;
    const int first = group.order == KeyOrder::Page ? 1 : 0; // places are counted from 1, as in the windows
    return name + QLatin1Char(' ') + fromTo(range.firstIndex + first, range.lastIndex + first);
}

/// The rows of a group's keys.
QString groupTable(const EC::s_ECCommandConfig& config, const KeyGroupInfo& group)
{
    QString table =
        QStringLiteral(
            "\n## %1\n\n| Key | | Press | Hold | Release | Light; label |\n|---|---|---|---|---|---|\n")
            .arg(QLatin1String(group.title));
    for (const KeyRange& range : rangesOf(config))
        table += QStringLiteral("| %1 | %2 |\n")
                     .arg(
                         fromTo(range.firstKey, range.lastKey),
                         functionCells(group.functions[range.code], nameOf(group, range)));
    return table;
}

/// The keys that work in spite of a guard.
QString keysThat(const EC::s_ECKeyboardConfig& keyboard, bool KeyFunction::*work)
{
    QStringList keys;
    for (const auto& group : keyboard.m_commands) {
        const KeyGroupInfo& info = *EC::findKeyGroup(group->Name);
        for (const KeyRange& range : rangesOf(*group)) {
            if (info.functions[range.code].*work)
                keys += fromTo(range.firstKey, range.lastKey);
        }
    }
    return keys.isEmpty() ? QStringLiteral("none") : keys.join(QStringLiteral(", "));
}

} // namespace

QString functionCells(const EC::KeyFunction& function, const QString& name)
{
    QString shown = QLatin1String(function.light);
    if (*function.label)
        shown += QStringLiteral("; ") + QLatin1String(function.label);
    QStringList cells{
        name, QLatin1String(function.press), QLatin1String(function.hold), QLatin1String(function.release),
        shown};
    return cells.join(QStringLiteral(" | "));
}

QString operatorGuide(const EC::s_ECKeyboardConfig& keyboard)
{
    QString guide = QStringLiteral("# %1\n\n").arg(keyboard.Name) + QLatin1String(GuideStart);
    for (const auto& group : keyboard.m_commands)
        guide += groupTable(*group, *EC::findKeyGroup(group->Name));
    guide += QLatin1String(GuideEnd);
    guide +=
        QStringLiteral(
            "\n- A dialog is open in the application. Only these keys work: %1.\n"
            "- The keypad is locked. Only these keys work: %2.\n"
            "- The device or the application is being upgraded. No key works.\n"
            "- There is nothing for it to work on: no active device, no active screen, nothing selected.\n")
            .arg(
                keysThat(keyboard, &KeyFunction::worksInDialog),
                keysThat(keyboard, &KeyFunction::worksWhenLocked));
    return guide;
}

} // namespace Orvane::KeyboardTools

#pragma once

#include <QtGlobal>

#include <functional>
#include <utility>
#include <vector>

/// The keys of a command: one row for each function code, also for those without handlers. A row holds all
/// that the framework must know of a key.
///
/// The private part of a command defines its rows where its handlers are, and the command's constructor
/// gives them to `setKeyTable()`. The order of the rows is the order of a repaint. A command whose `show`
/// steps paint calls `stopPainting()` in the first line of its destructor.
///
/// The columns:
/// - `pressed`, `released`: members of the private part, or of `Command` (`&Command::pageUpPressed`). Null
///   for a code that does nothing.
/// - `traits`: which guards of the routing the key passes, whether it takes or cuts, and whether its label is
///   that of the page.
/// - `light`: `Momentary` for a key that its press lights and its release darkens, `Lasting` for one that
///   shows a state.
/// - `show`: sends what a repaint sends for the key, its light and label from the model, through the painter.
/// - `rest`: stops what the press began (holds, repeats, a pending window) without acting on it. Called on
///   any thread, for a key whose release was dropped by a guard that has ended; then a momentary key is
///   darkened and `show` is called. Null when the press begins nothing.
namespace Orvane::ECProxy::Client {
class Command;
}

namespace Orvane::ECProxy::Client::Internal {

/// Handles one key, as `Command::KeyCallback`.
using KeyCallback = std::function<bool(const quint32&)>;

/// How a key is lit.
enum class KeyLight {
    None, ///< never by its handlers
    Momentary, ///< while it is pressed
    Lasting, ///< by the state that it shows
};

/// What the framework makes of a key, mostly in the routing guards; to be combined.
enum KeyTrait : unsigned {
    NoTraits = 0,
    PressPassesDialog = 1,
    ReleasePassesDialog = 2,
    PassesKeypadLock = 4,
    IsTakeKey = 8,
    IsCutKey = 16,
    HasPageLabel = 32, ///< its label tells the page
};

/// A handler of a key: a member of the command's private part, or of `Command` itself.
template <typename Owner> class KeyHandler {
public:
    using OwnMember = bool (Owner::*)(const quint32&);
    using BaseMember = bool (Command::*)(const quint32&);

    // NOLINTBEGIN(google-explicit-constructor): rows are written as lists of their members
    KeyHandler(std::nullptr_t) { }
    KeyHandler(OwnMember member)
        : m_own(member)
    {
    }
    KeyHandler(BaseMember member)
        : m_base(member)
    {
    }
    // NOLINTEND(google-explicit-constructor)

    template <typename Base> KeyCallback bind(Base* command, Owner* owner) const
    {
        if (m_own)
            return std::bind(m_own, owner, std::placeholders::_1);
        if (m_base)
            return std::bind(m_base, command, std::placeholders::_1);
        return nullptr;
    }

private:
    OwnMember m_own = nullptr;
    BaseMember m_base = nullptr;
};

/// A key's function code: a value of the command's enumeration.
struct FunctionCode {
    // NOLINTBEGIN(google-explicit-constructor): rows are written with the enumeration's values
    template <typename Code>
    FunctionCode(Code code)
        : m_code(quint16(code))
    {
    }
    operator quint16() const { return m_code; }
    // NOLINTEND(google-explicit-constructor)

    quint16 m_code;
};

/// A row of the table of a command whose private part is `Owner`.
template <typename Owner> struct KeyRow {
    using Step = void (Owner::*)(const quint32& ecKey);

    FunctionCode code;
    KeyHandler<Owner> pressed;
    KeyHandler<Owner> released;
    unsigned traits = NoTraits; ///< of `KeyTrait`
    KeyLight light = KeyLight::None;
    Step show = nullptr;
    Step rest = nullptr;
};

/// A row, bound to its command.
struct BoundKeyRow {
    quint16 code = 0;
    KeyCallback pressed;
    KeyCallback released;
    unsigned traits = NoTraits;
    KeyLight light = KeyLight::None;
    std::function<void(const quint32&)> show;
    std::function<void(const quint32&)> rest;
};

/// The rows of one command. Never changes once the command is made, so any thread may read it.
class KeyTable {
public:
    KeyTable() = default;

    template <typename Owner> KeyTable(Command* command, Owner* owner, const std::vector<KeyRow<Owner>>& rows)
    {
        const auto bindStep = [owner](typename KeyRow<Owner>::Step step) {
            return step ? std::function<void(const quint32&)>(std::bind(step, owner, std::placeholders::_1))
                        : nullptr;
        };
        for (const auto& row : rows) {
            m_rows.push_back(
                {row.code, row.pressed.bind(command, owner), row.released.bind(command, owner), row.traits,
                 row.light, bindStep(row.show), bindStep(row.rest)});
        }
    }

    const std::vector<BoundKeyRow>& rows() const { return m_rows; }

    /// Null when no row has that code.
    const BoundKeyRow* find(int code) const
    {
        for (const auto& row : m_rows) {
            if (row.code == code)
                return &row;
        }
        return nullptr;
    }

private:
    std::vector<BoundKeyRow> m_rows;
};

} // namespace Orvane::ECProxy::Client::Internal

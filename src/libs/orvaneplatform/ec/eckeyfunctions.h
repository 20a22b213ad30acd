#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QString>

#include <vector>

/// What the keys of the console can do, in words for the user. Everything that names a key or describes one
/// says it in these words. Constant, so any thread may read it.
namespace Orvane::EC {

/// What the key with one function code (`OrvaneKey`) does. A text is empty where there is nothing to say.
struct KeyFunction {
    const char* name; ///< as an operator calls it
    /// What the console does when the key goes down, when it is held, when it comes up: "freezes the selected
    /// screens".
    /// @{
    const char* press = "";
    const char* hold = "";
    const char* release = "";
    /// @}
    const char* light = ""; ///< what its LED shows
    const char* label = ""; ///< what its display shows
    /// The texts of `BizModel::Translate` among those that the label shows.
    std::vector<const char*> labelTexts = {};
    bool turnsPage = false; ///< shows another page of the group
    /// Its press works while a dialog is open.
    bool worksInDialog = false;
    /// Its press works while the keypad is locked.
    bool worksWhenLocked = false;

    /// False for a code that no key does anything with.
    bool isUsed() const { return *press || *hold || *release; }
};

/// What the order index of a group's keys counts.
enum class KeyOrder {
    Page, ///< of the keys with code 1: their places on a page
    Digits, ///< of the keys with code 1: the digits
    Group, ///< of all: their places in the group
};

/// The group of keys that one command serves.
struct KeyGroupInfo {
    const char* name; ///< the command's
    const char* title; ///< as an operator calls it
    KeyOrder order = KeyOrder::Group; ///< what the order index counts
    std::vector<KeyFunction> functions; ///< by function code; 0 is a key without a function
};

/// All groups. A key that stands in two belongs to the one that comes first here.
ORVANEPLATFORM_EXPORT const std::vector<KeyGroupInfo>& keyGroups();

/// Null for a name that no group has.
ORVANEPLATFORM_EXPORT const KeyGroupInfo* findKeyGroup(const QString& name);

/// Null when the group has no such code, or there is no such group.
ORVANEPLATFORM_EXPORT const KeyFunction* findKeyFunction(const QString& groupName, quint16 code);

/// The function's name; empty when there is none.
ORVANEPLATFORM_EXPORT QString keyFunctionName(const QString& groupName, quint16 code);

/// The function code of keys that stand for a screen, a layer, an input or a preset, and of digits.
constexpr quint16 SelectKeyCode = 1;

} // namespace Orvane::EC

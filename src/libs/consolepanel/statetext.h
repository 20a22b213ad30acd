#pragma once

#include "consolestate.h"

namespace Orvane::ConsolePanel {

/// What stands for something that no datagram has set.
QString nothingYet();
QString onOffText(bool on);

/// @name How parts of the console look, in words; null for one that no datagram has set
/// @{
QString lookText(const KeyState* key); ///< `0,255,0 (Green) flashing, brightness 100`, or `dark`
QString lookText(const LabelState* label); ///< in double quotes
QString lookText(const LightState* light); ///< `on 10`
QString lookText(const Protocol::ECTBarValue* level); ///< `level 6 direction 1`
/// @}

/// The entry of that key; null when there is none. By value: the number may be a packed record's, to which no
/// reference may be bound.
template <typename Map> const typename Map::mapped_type* find(const Map& map, typename Map::key_type key)
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace Orvane::ConsolePanel

#include "consolelayout.h"

#include <set>

namespace Orvane::ConsolePanel {

ConsoleLayout ConsoleLayout::fromConfig(const EC::s_ECKeyboardConfig& config)
{
    ConsoleLayout layout;
    layout.name = config.Name;
    for (const auto& command : config.m_commands) {
        Group group{command->Name, {}};
        for (const auto& button : command->m_buttons) {
            Key key{button->ECKey, {}, button->OrvaneECKey, button->OrvaneKey, button->OrderIndex};
            if (button->pECOledCfg)
                key.label = button->pECOledCfg->ECKey;
            group.keys.push_back(key);
        }
        layout.groups.push_back(std::move(group));
    }
    return layout;
}

ConsoleLayout::Group ConsoleLayout::keysOutside(const ConsoleState& state) const
{
    std::set<quint16> known;
    for (const Group& group : groups)
        for (const Key& key : group.keys)
            known.insert(key.number);
    Group others{QStringLiteral("Other keys"), {}};
    for (const auto& [number, key] : state.keys)
        if (known.count(number) == 0)
            others.keys.push_back({number, {}, key.appKey});
    return others;
}

} // namespace Orvane::ConsolePanel

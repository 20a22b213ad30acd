#include "consolelayout.h"

namespace Orvane::ConsolePanel {

ConsoleLayout ConsoleLayout::fromConfig(const EC::s_ECKeyboardConfig& config)
{
    ConsoleLayout layout;
    layout.name = config.Name;
    for (const auto& command : config.m_commands) {
        Group group{command->Name, {}};
        for (const auto& button : command->m_buttons) {
            Key key{button->ECKey, {}};
            if (button->pECOledCfg)
                key.label = button->pECOledCfg->ECKey;
            group.keys.push_back(key);
        }
        layout.groups.push_back(std::move(group));
    }
    return layout;
}

} // namespace Orvane::ConsolePanel

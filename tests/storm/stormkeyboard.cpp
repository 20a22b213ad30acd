#include "stormkeyboard.h"

#include "ec/eckeyboardloader.h"

#include <algorithm>

namespace Storm {

Keyboard::Keyboard(const QString& path)
    : m_pConfig(EC::loadKeyboardFile(path).config)
{
    if (!m_pConfig)
        return;
    const auto keep = [this](const char* name, int count) {
        auto& keys = const_cast<EC::s_ECCommandConfig&>(group(name)).m_buttons;
        keys.erase(
            std::remove_if(
                keys.begin(), keys.end(),
                [count](const auto& key) { return key->OrvaneKey == 1 && key->OrderIndex >= count; }),
            keys.end());
    };
    keep(ScreenGroup, 4);
    keep(LayerGroup, 5);
    keep(InputGroup, 6);
    keep(PresetGroup, 10);
}

const EC::s_ECCommandConfig& Keyboard::group(const char* name) const
{
    const auto& groups = m_pConfig->m_commands;
    return **std::find_if(
        groups.begin(), groups.end(), [name](const auto& each) { return each->Name == QLatin1String(name); });
}

} // namespace Storm

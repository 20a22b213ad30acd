#include "keyboardbuilder.h"

namespace Orvane::TestSupport {

KeyboardBuilder::KeyboardBuilder()
    : m_pKeyboard(std::make_shared<EC::s_ECKeyboardConfig>())
{
    m_pKeyboard->Name = QStringLiteral("test keyboard");
}

KeyboardBuilder& KeyboardBuilder::group(const QString& name)
{
    auto group = std::make_shared<EC::s_ECCommandConfig>();
    group->Name = name;
    m_pKeyboard->m_commands.append(group);
    return *this;
}

KeyboardBuilder& KeyboardBuilder::key(quint16 ecKey, int orvaneKey, quint16 orderIndex, quint16 labelECKey)
{
    auto button = std::make_shared<EC::s_ECButtonConfig>();
    button->ECKey = ecKey;
    button->OrvaneECKey = appNumber(ecKey);
    button->OrvaneKey = quint16(orvaneKey);
    button->OrderIndex = orderIndex;
    if (labelECKey != 0) {
        button->pECOledCfg = std::make_shared<EC::s_ECOledConfig>();
        button->pECOledCfg->ECKey = labelECKey;
        button->pECOledCfg->OrvaneECKey = appNumber(labelECKey);
    }
    m_pKeyboard->m_commands.last()->m_buttons.append(button);
    return *this;
}

KeyboardBuilder& KeyboardBuilder::selectKeys(quint16 firstECKey, int count, quint16 firstLabelECKey)
{
    for (int i = 0; i < count; ++i)
        key(quint16(firstECKey + i), 1, quint16(i),
            firstLabelECKey ? quint16(firstLabelECKey + i) : quint16(0));
    return *this;
}

} // namespace Orvane::TestSupport

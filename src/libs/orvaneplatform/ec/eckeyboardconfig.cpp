#include "ec/eckeyboardconfig.h"

#include <algorithm>

namespace Orvane::EC {

namespace {

using ButtonPointer = std::shared_ptr<s_ECButtonConfig>;

template <typename Predicate>
ButtonPointer firstButton(const QList<ButtonPointer>& buttons, Predicate matches)
{
    const auto found = std::find_if(buttons.cbegin(), buttons.cend(), [&](const ButtonPointer& button) {
        return button && matches(*button);
    });
    return found == buttons.cend() ? nullptr : *found;
}

template <typename Predicate>
QList<ButtonPointer> allButtons(const QList<ButtonPointer>& buttons, Predicate matches)
{
    QList<ButtonPointer> found;
    std::copy_if(
        buttons.cbegin(), buttons.cend(), std::back_inserter(found),
        [&](const ButtonPointer& button) { return button && matches(*button); });
    return found;
}

} // namespace

std::shared_ptr<s_ECButtonConfig> s_ECCommandConfig::findECButtonConfigByECKey(const quint32& ecKey) const
{
    return firstButton(m_buttons, [&](const s_ECButtonConfig& button) { return button.ECKey == ecKey; });
}

std::shared_ptr<s_ECButtonConfig> s_ECCommandConfig::findECButtonConfigByOrvaneKey(
    const quint16& orvaneKey) const
{
    return firstButton(
        m_buttons, [&](const s_ECButtonConfig& button) { return button.OrvaneKey == orvaneKey; });
}

QList<std::shared_ptr<s_ECButtonConfig>> s_ECCommandConfig::findECButtonConfigsByOrvaneKey(
    const quint16& orvaneKey) const
{
    return allButtons(
        m_buttons, [&](const s_ECButtonConfig& button) { return button.OrvaneKey == orvaneKey; });
}

QList<std::shared_ptr<s_ECButtonConfig>> s_ECCommandConfig::findECButtonConfigsByOrvaneECKey(
    const quint16& orvaneECKey) const
{
    return allButtons(
        m_buttons, [&](const s_ECButtonConfig& button) { return button.OrvaneECKey == orvaneECKey; });
}

std::shared_ptr<s_ECOledConfig> s_ECCommandConfig::findECOledConfigByECKey(const quint32& ecKey) const
{
    const ButtonPointer labelled = firstButton(m_buttons, [&](const s_ECButtonConfig& button) {
        return button.pECOledCfg && button.pECOledCfg->ECKey == ecKey;
    });
    if (labelled)
        return labelled->pECOledCfg;
    const ButtonPointer key = findECButtonConfigByECKey(ecKey);
    return key ? key->pECOledCfg : nullptr;
}

quint32 s_ECCommandConfig::getECKeyByOrvaneECKey(const quint16& orvaneECKey) const
{
    const ButtonPointer key = firstButton(
        m_buttons, [&](const s_ECButtonConfig& button) { return button.OrvaneECKey == orvaneECKey; });
    return key ? key->ECKey : InvalidECKey;
}

quint32 s_ECCommandConfig::getECKeyByOrderIndex(quint16 orderIndex) const
{
    const ButtonPointer key = firstButton(
        m_buttons, [&](const s_ECButtonConfig& button) { return button.OrderIndex == orderIndex; });
    return key ? key->ECKey : InvalidECKey;
}

} // namespace Orvane::EC

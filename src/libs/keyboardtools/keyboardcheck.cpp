#include "keyboardcheck.h"

#include "ec/eckeyboardplace_p.h"
#include "ec/eckeyfunctions.h"
#include "ecprotocol.h"

#include <QStringList>
#include <QTranslator>

#include <algorithm>
#include <vector>

namespace Orvane::KeyboardTools {

using EC::KeyboardProblem;
using EC::KeyFunction;
using EC::KeyGroupInfo;
using EC::KeyOrder;
using EC::SelectKeyCode;
using Place = Internal::KeyboardPlace;

namespace {

constexpr quint16 HighestDigit = 9;
constexpr quint32 HighestVirtualKey = 0xFFFF; ///< the on-screen console finds keys by 16 bits
constexpr int HighestPage = 128; ///< one preset on each
constexpr int LabelBytes = sizeof(ECProxy::Client::ECOLEDText::OledText);

/// A key with all that is known of it.
struct Key {
    const EC::s_ECButtonConfig* config;
    const KeyGroupInfo* group;
    const KeyFunction* function;
    Place place;

    const EC::s_ECOledConfig* label() const { return config->pECOledCfg.get(); }
    bool isSelect(KeyOrder order) const
    {
        return group->order == order && config->OrvaneKey == SelectKeyCode;
    }
    /// The code is one that the group keeps free.
    bool isReserved() const
    {
        return config->OrvaneKey != 0 && qstrcmp(function->name, group->functions.front().name) == 0;
    }
};

QString nameOf(const KeyFunction& function)
{
    return QLatin1Char('"') + QLatin1String(function.name) + QLatin1Char('"');
}

class Check {
public:
    Check(const EC::s_ECKeyboardConfig& keyboard, const QList<LabelLanguage>& languages);

    QList<KeyboardProblem> run();

private:
    void checkGroups();
    void checkFunctions(const EC::s_ECCommandConfig& config, const Place& place);
    void checkDigits(const EC::s_ECCommandConfig& config, const Place& place);
    void checkSelectLabels(const EC::s_ECCommandConfig& config, const Place& place);
    void checkFunction(const Key& key);
    void checkNumbers(const Key& key);
    void checkLabel(const Key& key);
    void checkSharedLabel(const Key& key);
    void checkLabelTexts(const Key& key);

    /// The first key that fits and stands before this one.
    template <typename Fits> const Key* earlier(const Key& key, Fits fits) const
    {
        const auto found = std::find_if(m_keys.cbegin(), m_keys.cend(), fits);
        return found != m_keys.cend() && &*found < &key ? &*found : nullptr;
    }

    void note(const Place& place, const QString& text) { m_problems.append({place.toString(), text}); }

    const EC::s_ECKeyboardConfig& m_keyboard;
    const QList<LabelLanguage>& m_languages;
    std::vector<Key> m_keys; ///< of the groups that are known, in the order of the file
    QList<KeyboardProblem> m_problems;
};

Check::Check(const EC::s_ECKeyboardConfig& keyboard, const QList<LabelLanguage>& languages)
    : m_keyboard(keyboard)
    , m_languages(languages)
{
    for (int i = 0; i < keyboard.m_commands.size(); ++i) {
        const auto& group = keyboard.m_commands.at(i);
        const KeyGroupInfo* const info = group ? EC::findKeyGroup(group->Name) : nullptr;
        for (int j = 0; info && j < group->m_buttons.size(); ++j) {
            const auto& button = group->m_buttons.at(j);
            if (button && button->OrvaneKey < info->functions.size())
                m_keys.push_back(
                    {button.get(), info, &info->functions[button->OrvaneKey],
                     Place{i + 1, group->Name, j + 1, button->ECKey, false}});
        }
    }
}

QList<KeyboardProblem> Check::run()
{
    checkGroups();
    auto key = m_keys.cbegin();
    for (int i = 0; i < m_keyboard.m_commands.size(); ++i) {
        const auto& config = m_keyboard.m_commands.at(i);
        if (config && EC::findKeyGroup(config->Name)) {
            const Place place{i + 1, config->Name, 0, std::nullopt, false};
            checkFunctions(*config, place);
            checkDigits(*config, place);
            checkSelectLabels(*config, place);
        }
        for (; key != m_keys.cend() && key->place.group == i + 1; ++key) {
            checkFunction(*key);
            checkNumbers(*key);
            checkLabel(*key);
        }
    }
    return m_problems;
}

// ---- What is missing ------------------------------------------------------------------------------------

void Check::checkGroups()
{
    const auto& groups = m_keyboard.m_commands;
    const bool allKnown = std::all_of(groups.cbegin(), groups.cend(), [](const auto& group) {
        return group && EC::findKeyGroup(group->Name);
    });
    if (!allKnown) // one of them may be meant for the one that seems to be missing
        return;
    for (const KeyGroupInfo& info : EC::keyGroups()) {
        const bool isThere = std::any_of(groups.cbegin(), groups.cend(), [&](const auto& group) {
            return group->Name == QLatin1String(info.name);
        });
        if (!isThere)
            note(
                {},
                QStringLiteral("no group \"%1\", so none of its functions has a key")
                    .arg(QLatin1String(info.name)));
    }
}

void Check::checkFunctions(const EC::s_ECCommandConfig& config, const Place& place)
{
    const auto& functions = EC::findKeyGroup(config.Name)->functions;
    for (quint16 code = 1; code < functions.size() && !config.m_buttons.contains(nullptr); ++code) {
        if (functions[code].isUsed() && !config.findECButtonConfigByOrvaneKey(code))
            note(place, QStringLiteral("no key for %1, OrvaneKey %2").arg(nameOf(functions[code])).arg(code));
    }
}

void Check::checkDigits(const EC::s_ECCommandConfig& config, const Place& place)
{
    const auto digits = config.findECButtonConfigsByOrvaneKey(SelectKeyCode);
    if (EC::findKeyGroup(config.Name)->order != KeyOrder::Digits || digits.isEmpty()
        || config.m_buttons.contains(nullptr))
        return;
    for (quint16 digit = 0; digit <= HighestDigit; ++digit) {
        const bool isThere = std::any_of(
            digits.cbegin(), digits.cend(), [digit](const auto& key) { return key->OrderIndex == digit; });
        if (!isThere)
            note(place, QStringLiteral("no key for the digit %1").arg(digit));
    }
}

/// There may be many of them, so they share a line.
void Check::checkSelectLabels(const EC::s_ECCommandConfig& config, const Place& place)
{
    QStringList numbers;
    const char* shown = nullptr;
    for (const Key& key : m_keys) {
        if (key.place.group != place.group || !key.isSelect(KeyOrder::Page) || key.label())
            continue;
        numbers += QString::number(key.config->ECKey);
        shown = key.function->label;
    }
    if (!numbers.isEmpty())
        note(
            place,
            QStringLiteral("%1 of %2 select keys have no label that shows %3: ECKey %4")
                .arg(numbers.size())
                .arg(config.findECButtonConfigsByOrvaneKey(SelectKeyCode).size())
                .arg(QLatin1String(shown), numbers.join(QStringLiteral(", "))));
}

// ---- One key --------------------------------------------------------------------------------------------

void Check::checkFunction(const Key& key)
{
    const quint16 code = key.config->OrvaneKey;
    if (key.isReserved()) {
        note(
            key.place,
            QStringLiteral("OrvaneKey %1 has no function; 0 is that of a key to be kept dark").arg(code));
        return;
    }
    const quint16 index = key.config->OrderIndex;
    const bool isDigit = key.isSelect(KeyOrder::Digits);
    if (isDigit && index > HighestDigit)
        note(key.place, QStringLiteral("OrderIndex is %1, expected a digit from 0 to 9").arg(index));
    const bool isPlaced = isDigit || key.group->order == KeyOrder::Group;
    const Key* const samePlace = earlier(key, [&](const Key& other) {
        return isPlaced && other.place.group == key.place.group && other.config->OrderIndex == index
            && (!isDigit || other.config->OrvaneKey == code);
    });
    if (samePlace)
        note(
            key.place,
            QStringLiteral("key %1 has OrderIndex %2 already, expected one key a place")
                .arg(samePlace->place.key)
                .arg(index));
    const Key* const sameFunction = earlier(key, [&](const Key& other) {
        return other.place.group == key.place.group && other.config->OrvaneKey == code;
    });
    if (sameFunction && key.function->isUsed() && !key.isSelect(key.group->order))
        note(
            key.place,
            QStringLiteral("key %1 has the function %2 already; not every light and label reaches both")
                .arg(sameFunction->place.key)
                .arg(nameOf(*key.function)));
}

void Check::checkNumbers(const Key& key)
{
    const Key* const sameKey = earlier(key, [&](const Key& other) {
        return other.config->ECKey == key.config->ECKey && other.place.group != key.place.group;
    });
    if (sameKey) {
        const Key& winner = key.group < sameKey->group ? key : *sameKey; // as the groups come in their table
        note(
            key.place,
            QStringLiteral("%1 has this ECKey too; the presses all go to group %2")
                .arg(sameKey->place.toString())
                .arg(winner.place.group));
    }
    const quint32 virtualKey = key.config->OrvaneECKey;
    if (virtualKey > HighestVirtualKey) {
        note(
            key.place,
            QStringLiteral("OrvaneECKey %1 is above %2, so the on-screen console cannot press the key")
                .arg(virtualKey)
                .arg(HighestVirtualKey));
    }
    const Key* const sameVirtual =
        earlier(key, [&](const Key& other) { return other.config->OrvaneECKey == virtualKey; });
    if (sameVirtual && sameVirtual->config->ECKey != key.config->ECKey)
        note(
            key.place,
            QStringLiteral("%1 has OrvaneECKey %2 already; the on-screen console presses only one of them")
                .arg(sameVirtual->place.toString())
                .arg(virtualKey));
}

// ---- Its label ------------------------------------------------------------------------------------------

void Check::checkLabel(const Key& key)
{
    const bool showsSomething = *key.function->label;
    if (!key.label()) {
        if (showsSomething && !key.isSelect(KeyOrder::Page))
            note(
                key.place,
                QStringLiteral("has no label that shows %1").arg(QLatin1String(key.function->label)));
        return;
    }
    Place place = key.place;
    place.label = true;
    if (!showsSomething)
        note(place, QStringLiteral("stays blank, for %1 shows nothing").arg(nameOf(*key.function)));
    checkSharedLabel(key);
    checkLabelTexts(key);
}

void Check::checkSharedLabel(const Key& key)
{
    Place place = key.place;
    place.label = true;
    const auto isPagePartner = [&](const Key& other) {
        return other.place.group == key.place.group && other.function->turnsPage && key.function->turnsPage;
    };
    const Key* const sharer = earlier(key, [&](const Key& other) {
        return other.label() && other.label()->ECKey == key.label()->ECKey && !isPagePartner(other);
    });
    if (sharer)
        note(
            place,
            QStringLiteral("%1 has this label too; only the last text stays").arg(sharer->place.toString()));
    const Key* const partner =
        earlier(key, [&](const Key& other) { return isPagePartner(other) && other.label(); });
    if (partner && partner->label()->ECKey != key.label()->ECKey)
        note(
            place,
            QStringLiteral(
                "key %1 has label %2: give both page keys one, else each shows where it turned to last")
                .arg(partner->place.key)
                .arg(partner->label()->ECKey));
    const Key* const twin = earlier(key, [&](const Key& other) {
        return other.label() && other.label()->OrvaneECKey == key.label()->OrvaneECKey;
    });
    if (twin && twin->label()->ECKey != key.label()->ECKey)
        note(
            place,
            QStringLiteral("the label of %1 has OrvaneECKey %2 already, expected one label a number")
                .arg(twin->place.toString())
                .arg(key.label()->OrvaneECKey));
}

void Check::checkLabelTexts(const Key& key)
{
    Place place = key.place;
    place.label = true;
    for (const LabelLanguage& language : m_languages) {
        for (const char* source : key.function->labelTexts) {
            QString text = language.translator ? language.translator->translate("Model", source) : QString();
            if (text.isEmpty())
                text = QLatin1String(source);
            text.replace(QStringLiteral("%1"), QString::number(HighestPage));
            const int bytes = text.toUtf8().size();
            if (bytes > LabelBytes)
                note(
                    place,
                    QStringLiteral("%1 (%2) has %3 bytes, of which %4 are shown")
                        .arg(Internal::quoted(text), language.name)
                        .arg(bytes)
                        .arg(LabelBytes));
        }
    }
}

} // namespace

QList<KeyboardProblem> findOddities(
    const EC::s_ECKeyboardConfig& keyboard, const QList<LabelLanguage>& languages)
{
    return Check(keyboard, languages).run();
}

} // namespace Orvane::KeyboardTools

#include "ec/eckeyboardloader.h"

#include "ec/eckeyboardplace_p.h"
#include "ec/eckeyfunctions.h"
#include "jsonreader_p.h"
#include "jsontext_p.h"

#include <QHash>
#include <QJsonArray>
#include <QStringList>

#include <limits>
#include <map>
#include <optional>

namespace Orvane::EC {

namespace {

using Internal::JsonKind;
using Internal::JsonReader;
using Internal::Presence;
using Place = Internal::KeyboardPlace;

constexpr quint32 MaxU16 = std::numeric_limits<quint16>::max();
constexpr quint32 MaxU32 = std::numeric_limits<quint32>::max();

QString groupNames()
{
    QStringList names;
    for (const KeyGroupInfo& group : keyGroups())
        names += QLatin1String(group.name);
    return names.join(QStringLiteral(", "));
}

std::optional<quint32> number(JsonReader& reader, const char* field, quint32 max)
{
    const auto value = reader.take(QLatin1String(field), JsonKind::integer(0, max));
    return value ? std::optional(quint32(value->toDouble())) : std::nullopt;
}

std::optional<QString> text(JsonReader& reader, const char* field)
{
    const auto value = reader.take(QLatin1String(field), JsonKind::text());
    return value ? std::optional(value->toString()) : std::nullopt;
}

QJsonArray list(JsonReader& reader, const char* field)
{
    return reader.take(QLatin1String(field), JsonKind::list()).value_or(QJsonValue()).toArray();
}

/// A group while it is read: what its keys must agree on.
struct GroupState {
    const KeyGroupInfo* info = nullptr;
    Place place;
    /// The first key with each number and with each place among the select keys.
    QHash<quint16, int> keyOfNumber;
    std::map<quint16, int> keyOfIndex;
    /// False once a place could not be read: it may be the one that seems to be missing.
    bool indexesKnown = true;
};

/// Turns the JSON values into records and notes whatever is wrong with them. A record with a fault is still
/// read to its end, so that all faults are found at once.
class KeyboardReader {
public:
    std::shared_ptr<s_ECKeyboardConfig> readKeyboard(const QJsonValue& json);
    QList<KeyboardProblem> problems() const { return m_problems; }

private:
    std::shared_ptr<s_ECCommandConfig> readGroup(const QJsonValue& value, Place place);
    std::shared_ptr<s_ECButtonConfig> readKey(const QJsonValue& value, int number, GroupState& group);
    std::shared_ptr<s_ECOledConfig> readLabel(const QJsonValue& value, Place place);

    const KeyGroupInfo* checkGroupName(const QString& name, const Place& place);
    void checkOrder(
        std::optional<quint32> code, std::optional<quint32> index, GroupState& group, const Place& place);
    void checkHoles(const GroupState& group);

    void note(const Place& place, const QString& text) { m_problems.append({place.toString(), text}); }
    /// Notes in the place as far as it is known by then.
    JsonReader::Note noteIn(const Place& place)
    {
        return [this, &place](const QString&, const QString& fault) { note(place, fault); };
    }

    QList<KeyboardProblem> m_problems;
    QHash<QString, int> m_groupOfName;
};

std::shared_ptr<s_ECKeyboardConfig> KeyboardReader::readKeyboard(const QJsonValue& json)
{
    const Place place;
    JsonReader reader(json, noteIn(place));
    if (!reader.isObject())
        return nullptr;
    auto keyboard = std::make_shared<s_ECKeyboardConfig>();
    keyboard->Name = text(reader, "Name").value_or(QString());
    keyboard->IconName = text(reader, "IconName").value_or(QString());
    keyboard->ModelId = static_cast<quint16>(number(reader, "ModelId", MaxU16).value_or(0));
    const QJsonArray groups = list(reader, "m_commands");
    reader.noteUnknown();
    for (int i = 0; i < groups.size(); ++i) {
        Place groupPlace;
        groupPlace.group = i + 1;
        keyboard->m_commands.append(readGroup(groups.at(i), groupPlace));
    }
    return keyboard;
}

std::shared_ptr<s_ECCommandConfig> KeyboardReader::readGroup(const QJsonValue& value, Place place)
{
    JsonReader reader(value, noteIn(place));
    if (!reader.isObject())
        return nullptr;
    auto config = std::make_shared<s_ECCommandConfig>();
    GroupState group;
    if (const std::optional<QString> name = text(reader, "Name")) {
        config->Name = *name;
        place.groupName = *name;
        group.info = checkGroupName(*name, place);
    }
    group.place = place;
    const QJsonArray keys = list(reader, "m_buttons");
    reader.noteUnknown();
    for (int i = 0; i < keys.size(); ++i)
        config->m_buttons.append(readKey(keys.at(i), i + 1, group));
    checkHoles(group);
    return config;
}

const KeyGroupInfo* KeyboardReader::checkGroupName(const QString& name, const Place& place)
{
    const KeyGroupInfo* info = findKeyGroup(name);
    if (!info) {
        note(place, QStringLiteral("no command has this name, expected one of %1").arg(groupNames()));
        return nullptr;
    }
    const auto first = m_groupOfName.constFind(name);
    if (first == m_groupOfName.constEnd())
        m_groupOfName.insert(name, place.group);
    else
        note(place, QStringLiteral("group %1 has this name already, expected one group a name").arg(*first));
    return info;
}

std::shared_ptr<s_ECButtonConfig> KeyboardReader::readKey(
    const QJsonValue& value, int position, GroupState& group)
{
    Place place = group.place;
    place.key = position;
    JsonReader reader(value, noteIn(place));
    if (!reader.isObject()) {
        group.indexesKnown = false;
        return nullptr;
    }
    auto key = std::make_shared<s_ECButtonConfig>();
    const auto ecKey = number(reader, "ECKey", MaxU16);
    if (ecKey) {
        place.ecKey = ecKey;
        key->ECKey = static_cast<quint16>(*ecKey);
        const auto first = group.keyOfNumber.constFind(key->ECKey);
        if (first == group.keyOfNumber.constEnd())
            group.keyOfNumber.insert(key->ECKey, place.key);
        else
            note(
                place,
                QStringLiteral("key %1 has this ECKey already, expected one key a number").arg(*first));
    }
    const auto appKey = number(reader, "OrvaneECKey", MaxU32);
    key->OrvaneECKey = appKey.value_or(0);
    const quint32 highestCode = group.info ? quint32(group.info->functions.size() - 1) : MaxU16;
    const auto code = number(reader, "OrvaneKey", highestCode);
    key->OrvaneKey = static_cast<quint16>(code.value_or(0));
    const auto index = number(reader, "OrderIndex", MaxU16);
    key->OrderIndex = static_cast<quint16>(index.value_or(0));
    checkOrder(code, index, group, place);

    const auto label = reader.take(QStringLiteral("pECOledCfg"), JsonKind::anything(), Presence::Optional);
    const bool hasLabel = label && !label->isNull();
    if (hasLabel)
        key->pECOledCfg = readLabel(*label, place);
    reader.noteUnknown();
    const bool isWhole = ecKey && appKey && code && index && (key->pECOledCfg || !hasLabel);
    return isWhole ? key : nullptr;
}

/// Empty when one of its numbers cannot be read.
std::shared_ptr<s_ECOledConfig> KeyboardReader::readLabel(const QJsonValue& value, Place place)
{
    place.label = true;
    JsonReader reader(value, noteIn(place));
    if (!reader.isObject())
        return nullptr;
    const auto ecKey = number(reader, "ECKey", MaxU16);
    const auto appKey = number(reader, "OrvaneECKey", MaxU32);
    reader.noteUnknown();
    return ecKey && appKey
        ? std::make_shared<s_ECOledConfig>(s_ECOledConfig{static_cast<quint16>(*ecKey), *appKey})
        : nullptr;
}

void KeyboardReader::checkOrder(
    std::optional<quint32> code, std::optional<quint32> index, GroupState& group, const Place& place)
{
    if (!code || (*code == SelectKeyCode && !index))
        group.indexesKnown = false;
    if (!group.info || group.info->order != KeyOrder::Page || code != SelectKeyCode || !index)
        return;
    const auto [first, isNew] = group.keyOfIndex.emplace(static_cast<quint16>(*index), place.key);
    if (!isNew)
        note(
            place,
            QStringLiteral("key %1 has OrderIndex %2 already, expected one select key a place")
                .arg(first->second)
                .arg(*index));
}

void KeyboardReader::checkHoles(const GroupState& group)
{
    if (!group.indexesKnown)
        return;
    int expected = 0;
    for (const auto& [index, key] : group.keyOfIndex) {
        if (index == expected + 1)
            note(
                group.place,
                QStringLiteral("no select key has OrderIndex %1, expected no holes").arg(expected));
        else if (index > expected)
            note(
                group.place,
                QStringLiteral("no select key has an OrderIndex from %1 to %2, expected no holes")
                    .arg(expected)
                    .arg(index - 1));
        expected = index + 1;
    }
}

} // namespace

QString KeyboardProblem::toString() const
{
    return place + QStringLiteral(": ") + text;
}

KeyboardDraft draftKeyboard(const QByteArray& json)
{
    KeyboardDraft draft;
    QList<Internal::TextFault> faults;
    const auto value = Internal::parseJson(json, faults);
    for (const Internal::TextFault& fault : qAsConst(faults))
        draft.problems.append({fault.place, fault.text});
    if (value) {
        KeyboardReader reader;
        draft.keyboard = reader.readKeyboard(*value);
        draft.problems += reader.problems();
    }
    return draft;
}

std::optional<QByteArray> readKeyboardFile(const QString& path, KeyboardProblem& problem)
{
    problem.place = path;
    return Internal::readFile(path, MaxKeyboardFileBytes, QStringLiteral("a keyboard file"), problem.text);
}

KeyboardLoadResult loadKeyboard(const QByteArray& json)
{
    const KeyboardDraft draft = draftKeyboard(json);
    return {draft.problems.isEmpty() ? draft.keyboard : nullptr, draft.problems};
}

KeyboardLoadResult loadKeyboardFile(const QString& path)
{
    KeyboardProblem problem;
    const auto json = readKeyboardFile(path, problem);
    return json ? loadKeyboard(*json) : KeyboardLoadResult{nullptr, {problem}};
}

} // namespace Orvane::EC

#include "ec/eckeyboardloader.h"

#include "ec/eckeyboardplace_p.h"
#include "ec/eckeyfunctions.h"
#include "ec/jsonduplicates_p.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace Orvane::EC {

namespace {

using Internal::quoted;
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

/// A value as a message shows it.
QString shown(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::String:
        return quoted(value.toString());
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
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
    std::shared_ptr<s_ECKeyboardConfig> readKeyboard(const QJsonObject& json);
    QList<KeyboardProblem> problems() const { return m_problems; }

private:
    std::shared_ptr<s_ECCommandConfig> readGroup(const QJsonValue& value, Place place);
    std::shared_ptr<s_ECButtonConfig> readKey(const QJsonValue& value, int number, GroupState& group);
    std::shared_ptr<s_ECOledConfig> readLabel(const QJsonValue& value, const Place& place);

    const KeyGroupInfo* checkGroupName(const QString& name, const Place& place);
    void checkOrder(
        std::optional<quint32> code, std::optional<quint32> index, GroupState& group, const Place& place);
    void checkHoles(const GroupState& group);

    std::optional<QJsonObject> object(const QJsonValue& value, const QStringList& fields, const Place& place);
    std::optional<quint32> number(
        const QJsonObject& json, const QString& field, quint32 max, const Place& place);
    std::optional<QString> text(const QJsonObject& json, const QString& field, const Place& place);
    QJsonArray list(const QJsonObject& json, const QString& field, const Place& place);

    void note(const Place& place, const QString& text) { m_problems.append({place.toString(), text}); }
    void noteUnexpected(
        const QJsonObject& json, const QString& field, const QString& expected, const Place& place);

    QList<KeyboardProblem> m_problems;
    int m_nUnread = 0; ///< values that were none, or none of the right kind
    QHash<QString, int> m_groupOfName;
};

std::shared_ptr<s_ECKeyboardConfig> KeyboardReader::readKeyboard(const QJsonObject& json)
{
    static const QStringList fields{
        QStringLiteral("Name"), QStringLiteral("IconName"), QStringLiteral("ModelId"),
        QStringLiteral("m_commands")};
    const Place place;
    object(json, fields, place);

    auto keyboard = std::make_shared<s_ECKeyboardConfig>();
    keyboard->Name = text(json, QStringLiteral("Name"), place).value_or(QString());
    keyboard->IconName = text(json, QStringLiteral("IconName"), place).value_or(QString());
    keyboard->ModelId =
        static_cast<quint16>(number(json, QStringLiteral("ModelId"), MaxU16, place).value_or(0));
    const QJsonArray groups = list(json, QStringLiteral("m_commands"), place);
    for (int i = 0; i < groups.size(); ++i) {
        Place groupPlace;
        groupPlace.group = i + 1;
        keyboard->m_commands.append(readGroup(groups.at(i), groupPlace));
    }
    return keyboard;
}

std::shared_ptr<s_ECCommandConfig> KeyboardReader::readGroup(const QJsonValue& value, Place place)
{
    static const QStringList fields{QStringLiteral("Name"), QStringLiteral("m_buttons")};
    const std::optional<QJsonObject> json = object(value, fields, place);
    if (!json)
        return nullptr;

    auto config = std::make_shared<s_ECCommandConfig>();
    GroupState group;
    if (const std::optional<QString> name = text(*json, QStringLiteral("Name"), place)) {
        config->Name = *name;
        place.groupName = *name;
        group.info = checkGroupName(*name, place);
    }
    group.place = place;
    const QJsonArray keys = list(*json, QStringLiteral("m_buttons"), place);
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
    static const QStringList fields{
        QStringLiteral("ECKey"), QStringLiteral("OrvaneECKey"), QStringLiteral("OrvaneKey"),
        QStringLiteral("OrderIndex"), QStringLiteral("pECOledCfg")};
    Place place = group.place;
    place.key = position;
    const std::optional<QJsonObject> json = object(value, fields, place);
    if (!json) {
        group.indexesKnown = false;
        return nullptr;
    }

    auto key = std::make_shared<s_ECButtonConfig>();
    const int unreadBefore = m_nUnread;
    if (const auto ecKey = number(*json, QStringLiteral("ECKey"), MaxU16, place)) {
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
    key->OrvaneECKey = number(*json, QStringLiteral("OrvaneECKey"), MaxU32, place).value_or(0);
    const quint32 highestCode = group.info ? quint32(group.info->functions.size() - 1) : MaxU16;
    const auto code = number(*json, QStringLiteral("OrvaneKey"), highestCode, place);
    key->OrvaneKey = static_cast<quint16>(code.value_or(0));
    const auto index = number(*json, QStringLiteral("OrderIndex"), MaxU16, place);
    key->OrderIndex = static_cast<quint16>(index.value_or(0));
    checkOrder(code, index, group, place);

    const QJsonValue label = json->value(QStringLiteral("pECOledCfg"));
    if (!label.isUndefined() && !label.isNull()) {
        place.label = true;
        key->pECOledCfg = readLabel(label, place);
    }
    return m_nUnread == unreadBefore ? key : nullptr;
}

std::shared_ptr<s_ECOledConfig> KeyboardReader::readLabel(const QJsonValue& value, const Place& place)
{
    static const QStringList fields{QStringLiteral("ECKey"), QStringLiteral("OrvaneECKey")};
    const std::optional<QJsonObject> json = object(value, fields, place);
    if (!json)
        return nullptr;

    auto label = std::make_shared<s_ECOledConfig>();
    label->ECKey = static_cast<quint16>(number(*json, QStringLiteral("ECKey"), MaxU16, place).value_or(0));
    label->OrvaneECKey = number(*json, QStringLiteral("OrvaneECKey"), MaxU32, place).value_or(0);
    return label;
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

std::optional<QJsonObject> KeyboardReader::object(
    const QJsonValue& value, const QStringList& fields, const Place& place)
{
    const auto expected = [&] { return fields.join(QStringLiteral(", ")); };
    if (!value.isObject()) {
        ++m_nUnread;
        note(place, QStringLiteral("is %1, expected an object with %2").arg(shown(value), expected()));
        return std::nullopt;
    }
    const QJsonObject json = value.toObject();
    for (auto it = json.constBegin(); it != json.constEnd(); ++it) {
        if (!fields.contains(it.key()))
            note(place, QStringLiteral("unknown field %1, expected %2").arg(quoted(it.key()), expected()));
    }
    return json;
}

std::optional<quint32> KeyboardReader::number(
    const QJsonObject& json, const QString& field, quint32 max, const Place& place)
{
    const double value = json.value(field).toDouble(-1.0);
    if (value >= 0.0 && value <= max && std::floor(value) == value)
        return static_cast<quint32>(value);
    noteUnexpected(json, field, QStringLiteral("a whole number from 0 to %1").arg(max), place);
    return std::nullopt;
}

std::optional<QString> KeyboardReader::text(const QJsonObject& json, const QString& field, const Place& place)
{
    const QJsonValue value = json.value(field);
    if (value.isString())
        return value.toString();
    noteUnexpected(json, field, QStringLiteral("a text"), place);
    return std::nullopt;
}

QJsonArray KeyboardReader::list(const QJsonObject& json, const QString& field, const Place& place)
{
    const QJsonValue value = json.value(field);
    if (!value.isArray())
        noteUnexpected(json, field, QStringLiteral("a list"), place);
    return value.toArray();
}

void KeyboardReader::noteUnexpected(
    const QJsonObject& json, const QString& field, const QString& expected, const Place& place)
{
    ++m_nUnread;
    const QJsonValue value = json.value(field);
    if (value.isUndefined())
        note(place, QStringLiteral("missing field %1, expected %2").arg(quoted(field), expected));
    else
        note(place, QStringLiteral("%1 is %2, expected %3").arg(field, shown(value), expected));
}

QString toString(const Internal::TextPosition& position)
{
    return QStringLiteral("line %1, column %2").arg(position.line).arg(position.column);
}

} // namespace

QString KeyboardProblem::toString() const
{
    return place + QStringLiteral(": ") + text;
}

KeyboardDraft draftKeyboard(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        return {
            nullptr,
            {{toString(Internal::positionAt(json, error.offset)),
              QStringLiteral("no valid JSON: %1").arg(error.errorString())}}};
    if (!document.isObject())
        return {nullptr, {{Place().toString(), QStringLiteral("is a list, expected an object")}}};

    KeyboardDraft draft;
    const QList<Internal::DuplicateKey> duplicates = Internal::findDuplicateKeys(json);
    for (const Internal::DuplicateKey& duplicate : duplicates) {
        draft.problems.append(
            {toString(duplicate.position),
             QStringLiteral("field %1 stands twice in its object, expected once")
                 .arg(quoted(duplicate.key))});
    }
    KeyboardReader reader;
    draft.keyboard = reader.readKeyboard(document.object());
    draft.problems += reader.problems();
    return draft;
}

std::optional<QByteArray> readKeyboardFile(const QString& path, KeyboardProblem& problem)
{
    const auto refuse = [&](const QString& text) {
        problem = {path, text};
        return std::nullopt;
    };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(QStringLiteral("cannot be read: %1").arg(file.errorString()));
    // In pieces, for special files do not tell their size.
    constexpr qint64 pieceBytes = 1024LL * 1024;
    QByteArray json;
    while (json.size() <= MaxKeyboardFileBytes) {
        const QByteArray piece = file.read(pieceBytes);
        if (piece.isEmpty())
            break;
        json += piece;
    }
    if (file.error() != QFileDevice::NoError)
        return refuse(QStringLiteral("cannot be read: %1").arg(file.errorString()));
    if (json.size() > MaxKeyboardFileBytes)
        return refuse(
            QStringLiteral("is larger than %1 bytes, expected a keyboard file").arg(MaxKeyboardFileBytes));
    return json;
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

#include "jsonreader_p.h"

#include "ec/eckeyboardplace_p.h"

#include <QJsonArray>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane::Internal {

namespace {

bool isWhole(const QJsonValue& value, double lowest, double highest)
{
    // Within the limits every whole number is exact in a double.
    const double number = value.toDouble();
    return value.isDouble() && std::floor(number) == number && number >= lowest && number <= highest;
}

template <typename Accepts> bool isListOf(const QJsonValue& value, Accepts accepts)
{
    const QJsonArray array = value.toArray();
    return value.isArray() && std::all_of(array.begin(), array.end(), accepts);
}

/// A value as a message shows it.
QString shown(const QJsonValue& value)
{
    if (value.isString())
        return quoted(value.toString());
    if (value.isDouble())
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return value.isArray() ? QStringLiteral("a list")
        : value.isObject() ? QStringLiteral("an object")
                           : QStringLiteral("null");
}

} // namespace

JsonKind JsonKind::integer(qint64 lowest, qint64 highest)
{
    JsonKind kind = number(double(lowest), double(highest));
    kind.m_kind = Integer;
    return kind;
}

JsonKind JsonKind::number(double lowest, double highest)
{
    JsonKind kind(Number);
    kind.m_lowest = lowest;
    kind.m_highest = highest;
    return kind;
}

JsonKind JsonKind::word(const QStringList& words)
{
    JsonKind kind(Word);
    kind.m_words = words;
    return kind;
}

bool JsonKind::accepts(const QJsonValue& value) const
{
    switch (m_kind) {
    case Anything:
        return true;
    case Flag:
        return value.isBool();
    case Integer:
        return isWhole(value, m_lowest, m_highest);
    case Number:
        return value.isDouble() && value.toDouble() >= m_lowest && value.toDouble() <= m_highest;
    case Text:
        return value.isString();
    case FilledText:
        return !value.toString().isEmpty();
    case Word:
        return value.isString() && m_words.contains(value.toString());
    case List:
        return value.isArray();
    case Numbers:
        return isListOf(value, [](const QJsonValue& one) {
            return isWhole(one, 0, std::numeric_limits<quint32>::max());
        });
    case Texts:
        return isListOf(value, [](const QJsonValue& one) { return one.isString(); });
    case Object:
        return value.isObject();
    }
    return false;
}

QString JsonKind::expected() const
{
    switch (m_kind) {
    case Anything:
        break;
    case Flag:
        return QStringLiteral("true or false");
    case Integer:
        return QStringLiteral("a whole number from %1 to %2").arg(qint64(m_lowest)).arg(qint64(m_highest));
    case Number:
        return QStringLiteral("a number from %1 to %2").arg(m_lowest).arg(m_highest);
    case Text:
        return QStringLiteral("a text");
    case FilledText:
        return QStringLiteral("a text that is not empty");
    case Word:
        return QStringLiteral("one of ") + m_words.join(QStringLiteral(", "));
    case List:
        return QStringLiteral("a list");
    case Numbers:
        return QStringLiteral("a list of whole numbers from 0 on");
    case Texts:
        return QStringLiteral("a list of texts");
    case Object:
        return QStringLiteral("an object");
    }
    return QStringLiteral("anything");
}

JsonReader::JsonReader(const QJsonValue& value, Note note)
    : m_object(value.toObject())
    , m_bObject(value.isObject())
    , m_note(std::move(note))
{
    if (!m_bObject)
        m_note({}, QStringLiteral("is %1, expected %2").arg(shown(value), JsonKind::object().expected()));
}

std::optional<QJsonValue> JsonReader::take(const QString& member, const JsonKind& kind, Presence presence)
{
    m_taken += member;
    const QJsonValue value = m_object.value(member);
    const bool isMissing = value.isUndefined();
    if (!isMissing && kind.accepts(value))
        return value;
    if (!isMissing || (m_bObject && presence == Presence::Required))
        noteWrong(member, kind.expected());
    return std::nullopt;
}

void JsonReader::noteWrong(const QString& member, const QString& expected) const
{
    const QJsonValue value = m_object.value(member);
    m_note(
        member,
        (value.isUndefined() ? QStringLiteral("missing field ") + quoted(member)
                             : QStringLiteral("%1 is %2").arg(member, shown(value)))
            + QStringLiteral(", expected ") + expected);
}

void JsonReader::noteUnknown() const
{
    for (auto member = m_object.begin(); member != m_object.end(); ++member) {
        if (!m_taken.contains(member.key()))
            m_note(
                member.key(),
                QStringLiteral("unknown field %1, expected %2")
                    .arg(quoted(member.key()), m_taken.join(QStringLiteral(", "))));
    }
}

} // namespace Orvane::Internal

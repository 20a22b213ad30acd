#include "showarchive.h"

#include "records.h"

#include <cmath>

namespace Orvane::MemoryModel {

ShowReader::ShowReader(const QJsonValue& value, QString place, QStringList& faults)
    : m_object(value.toObject())
    , m_place(std::move(place))
    , m_faults(faults)
    , m_bObject(value.isObject())
{
    if (!m_bObject)
        fault(m_place, QStringLiteral("expected an object"));
}

ShowReader::~ShowReader()
{
    for (auto member = m_object.constBegin(); member != m_object.constEnd(); ++member) {
        if (!m_asked.contains(member.key()))
            fault(
                m_place.isEmpty() ? member.key() : m_place + QLatin1Char('.') + member.key(),
                QStringLiteral("unknown member"));
    }
}

void ShowReader::number(const char* name, double& value, double low, double high)
{
    if (missing(name, Presence::Optional))
        return;
    const QJsonValue found = take(name);
    if (!found.isDouble() || !(found.toDouble() >= low && found.toDouble() <= high))
        fault(memberPlace(name), QStringLiteral("expected a number from %1 to %2").arg(low).arg(high));
    else
        value = found.toDouble();
}

void ShowReader::flag(const char* name, bool& value)
{
    if (missing(name, Presence::Optional))
        return;
    const QJsonValue found = take(name);
    if (!found.isBool())
        fault(memberPlace(name), QStringLiteral("expected true or false"));
    else
        value = found.toBool();
}

void ShowReader::text(const char* name, QString& value, Presence presence)
{
    if (missing(name, presence))
        return;
    const QJsonValue found = take(name);
    if (!found.isString() || (presence == Presence::Required && found.toString().isEmpty()))
        fault(
            memberPlace(name),
            presence == Presence::Required ? QStringLiteral("expected a text that is not empty")
                                           : QStringLiteral("expected a text"));
    else
        value = found.toString();
}

void ShowReader::rect(const char* name, QRect& value)
{
    const QList<int> numbers = readNumbers(name, QStringLiteral("[x, y, width, height]"), 4);
    if (!numbers.isEmpty())
        value = QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
}

void ShowReader::size(const char* name, QSize& value)
{
    if (!has(name))
        return;
    const QList<int> numbers = readNumbers(name, QStringLiteral("[width, height]"), 2);
    if (!numbers.isEmpty())
        value = QSize(numbers[0], numbers[1]);
}

bool ShowReader::has(const char* name) const
{
    return m_object.contains(QLatin1String(name));
}

QJsonValue ShowReader::take(const char* name)
{
    m_asked += QLatin1String(name);
    return m_object.value(QLatin1String(name));
}

bool ShowReader::missing(const char* name, Presence presence)
{
    if (has(name))
        return false;
    if (presence == Presence::Required && m_bObject)
        fault(memberPlace(name), QStringLiteral("missing"));
    return true;
}

void ShowReader::fault(const QString& place, const QString& text)
{
    m_faults += (place.isEmpty() ? QStringLiteral("file") : place) + QStringLiteral(": ") + text;
}

QString ShowReader::memberPlace(const char* name) const
{
    return m_place.isEmpty() ? QString::fromLatin1(name) : m_place + QLatin1Char('.') + QLatin1String(name);
}

QString ShowReader::elementPlace(const char* name, int index) const
{
    return memberPlace(name) + QStringLiteral("[%1]").arg(index);
}

bool ShowReader::toInteger(
    const QJsonValue& value, const QString& place, qint64& number, qint64 low, qint64 high)
{
    // Within the limits every whole number is exact in a double.
    const double found = value.toDouble();
    if (!value.isDouble() || found != std::floor(found) || found < double(low) || found > double(high)) {
        fault(place, QStringLiteral("expected a whole number from %1 to %2").arg(low).arg(high));
        return false;
    }
    number = qint64(found);
    return true;
}

bool ShowReader::readInteger(const char* name, qint64& number, qint64 low, qint64 high, Presence presence)
{
    return !missing(name, presence) && toInteger(take(name), memberPlace(name), number, low, high);
}

int ShowReader::readWord(const char* name, const QStringList& known, Presence presence)
{
    if (missing(name, presence))
        return -1;
    const int index = known.indexOf(take(name).toString());
    if (index < 0)
        fault(memberPlace(name), QStringLiteral("expected one of %1").arg(known.join(QStringLiteral(", "))));
    return index;
}

QJsonArray ShowReader::readArray(const char* name)
{
    if (!has(name))
        return {};
    const QJsonValue found = take(name);
    if (!found.isArray())
        fault(memberPlace(name), QStringLiteral("expected a list"));
    return found.toArray();
}

QList<int> ShowReader::readNumbers(const char* name, const QString& expected, int count)
{
    if (missing(name, Presence::Required))
        return {};
    const QJsonArray array = take(name).toArray();
    QList<int> numbers;
    for (int i = 0; i < array.size(); ++i) {
        const double found = array.at(i).toDouble(std::numeric_limits<double>::quiet_NaN());
        // The last two are the extent, of which there must be some.
        const double low = i >= count - 2 ? 1 : -MaxMosaicPixels;
        if (found == std::floor(found) && found >= low && found <= MaxMosaicPixels)
            numbers += int(found);
    }
    if (array.size() == count && numbers.size() == count)
        return numbers;
    fault(
        memberPlace(name),
        QStringLiteral("expected %1 in whole pixels, up to %2, with some extent")
            .arg(expected)
            .arg(MaxMosaicPixels));
    return {};
}

void ShowWriter::number(const char* name, double& value, double, double)
{
    m_object.insert(QLatin1String(name), value);
}

void ShowWriter::flag(const char* name, bool& value)
{
    m_object.insert(QLatin1String(name), value);
}

void ShowWriter::text(const char* name, QString& value, Presence)
{
    m_object.insert(QLatin1String(name), value);
}

void ShowWriter::rect(const char* name, QRect& value)
{
    m_object.insert(QLatin1String(name), QJsonArray{value.x(), value.y(), value.width(), value.height()});
}

void ShowWriter::size(const char* name, QSize& value)
{
    m_object.insert(QLatin1String(name), QJsonArray{value.width(), value.height()});
}

} // namespace Orvane::MemoryModel

#include "showarchive.h"

#include "records.h"

namespace Orvane::MemoryModel {

using Internal::JsonKind;

ShowReader::ShowReader(const QJsonValue& value, const QString& place, QStringList& faults)
    : m_place(place)
    , m_faults(faults)
    , m_reader(value, [this](const QString& member, const QString& fault) {
        const QString where = memberPlace(member);
        m_faults += (where.isEmpty() ? QStringLiteral("file") : where) + QStringLiteral(": ") + fault;
    })
{
}

void ShowReader::number(const char* name, double& value, double low, double high)
{
    if (const auto found = take(name, JsonKind::number(low, high), Presence::Optional))
        value = found->toDouble();
}

void ShowReader::flag(const char* name, bool& value)
{
    if (const auto found = take(name, JsonKind::flag(), Presence::Optional))
        value = found->toBool();
}

void ShowReader::text(const char* name, QString& value, Presence presence)
{
    const bool isRequired = presence == Presence::Required;
    if (const auto found = take(name, isRequired ? JsonKind::filledText() : JsonKind::text(), presence))
        value = found->toString();
}

void ShowReader::rect(const char* name, QRect& value)
{
    const auto numbers = readNumbers(name, QStringLiteral("[x, y, width, height]"), 4, Presence::Required);
    if (!numbers.isEmpty())
        value = QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
}

void ShowReader::size(const char* name, QSize& value)
{
    const auto numbers = readNumbers(name, QStringLiteral("[width, height]"), 2, Presence::Optional);
    if (!numbers.isEmpty())
        value = QSize(numbers[0], numbers[1]);
}

void ShowReader::numbers(const char* name, QVector<quint32>& values)
{
    const auto found = take(name, JsonKind::numbers(), Presence::Optional);
    const QJsonArray array = found ? found->toArray() : QJsonArray();
    for (const QJsonValue& number : array)
        values += quint32(number.toDouble());
}

QString ShowReader::memberPlace(const QString& name) const
{
    return m_place.isEmpty() || name.isEmpty() ? m_place + name : m_place + QLatin1Char('.') + name;
}

QList<int> ShowReader::readNumbers(const char* name, const QString& expected, int count, Presence presence)
{
    const auto found = take(name, JsonKind::list(), presence);
    if (!found)
        return {};
    const QJsonArray array = found->toArray();
    QList<int> numbers;
    for (int i = 0; i < array.size(); ++i) {
        // The last two are the extent, of which there must be some.
        const JsonKind pixels = JsonKind::integer(i >= count - 2 ? 1 : -MaxMosaicPixels, MaxMosaicPixels);
        if (pixels.accepts(array.at(i)))
            numbers += array.at(i).toInt();
    }
    if (array.size() == count && numbers.size() == count)
        return numbers;
    m_reader.noteWrong(
        QLatin1String(name),
        QStringLiteral("%1 in whole pixels, up to %2, with some extent").arg(expected).arg(MaxMosaicPixels));
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

void ShowWriter::numbers(const char* name, QVector<quint32>& values)
{
    QJsonArray array;
    for (const quint32 value : std::as_const(values))
        array += qint64(value);
    m_object.insert(QLatin1String(name), array);
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

#include "jsonmutator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Orvane::Fuzz {

namespace {

QJsonValue anyValue(Random& random)
{
    switch (random.below(12)) {
    case 0:
        return QJsonValue::Null;
    case 1:
        return random.chance(50);
    case 2:
        return int(random.below(70000));
    case 3:
        return -1;
    case 4:
        return 0.5;
    case 5:
        return 1e300;
    case 6:
        return 4294967296.0;
    case 7:
        return QString();
    case 8:
        return QString::fromLatin1(QByteArray(int(random.below(40)), char(random.byte())));
    case 9:
        return QStringLiteral("\u00e9\u4e2d\U0001F600");
    case 10:
        return QJsonArray{1, QString(), QJsonObject()};
    default:
        return QJsonObject{{QStringLiteral("ECKey"), 1}};
    }
}

/// Walks down a random way and changes what it ends at.
QJsonValue changed(const QJsonValue& value, Random& random)
{
    constexpr unsigned stopsHerePercent = 8;
    if (value.isArray() && !value.toArray().isEmpty() && !random.chance(stopsHerePercent)) {
        QJsonArray array = value.toArray();
        const int index = int(random.below(std::size_t(array.size())));
        const unsigned what = random.below(20);
        if (what == 0)
            array.removeAt(index);
        else if (what == 1)
            array.insert(int(random.below(std::size_t(array.size() + 1))), QJsonValue(array.at(index)));
        else
            array.replace(index, changed(array.at(index), random));
        return array;
    }
    if (value.isObject() && !value.toObject().isEmpty() && !random.chance(stopsHerePercent)) {
        QJsonObject object = value.toObject();
        const QStringList names = object.keys();
        const QString name = names.at(int(random.below(std::size_t(names.size()))));
        const unsigned what = random.below(20);
        if (what == 0)
            object.remove(name);
        else if (what == 1)
            object.insert(name + QLatin1Char('x'), object.take(name));
        else if (what == 2)
            object.insert(name, object.value(names.at(int(random.below(std::size_t(names.size()))))));
        else
            object.insert(name, changed(object.value(name), random));
        return object;
    }
    return anyValue(random);
}

} // namespace

Bytes mutateJson(const QByteArray& text, Random& random)
{
    QJsonDocument document = QJsonDocument::fromJson(text);
    for (std::uint32_t i = random.below(4); i > 0; --i) {
        const QJsonValue root =
            document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        const QJsonValue next = changed(root, random);
        if (next.isObject())
            document.setObject(next.toObject());
        else if (next.isArray())
            document.setArray(next.toArray());
    }
    const QByteArray json =
        document.toJson(random.chance(50) ? QJsonDocument::Compact : QJsonDocument::Indented);
    Bytes bytes(json.begin(), json.end());
    if (random.chance(25))
        mutate(bytes, random);
    return bytes;
}

} // namespace Orvane::Fuzz

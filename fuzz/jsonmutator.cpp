/// libFuzzer's mutator for JSON: changes it as people and programs get it wrong, a value for another of any
/// type, a name for another of the same text, an element doubled or left out. Most results are still JSON, so
/// that they get past the parser to the loader.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdint>
#include <random>

namespace Orvane::Fuzz {

namespace {

class Random {
public:
    explicit Random(std::uint32_t seed)
        : m_engine(seed)
    {
    }
    /// 0 to limit - 1; 0 for a limit of 0.
    std::uint32_t below(std::size_t limit) { return limit ? std::uint32_t(m_engine() % limit) : 0; }
    bool chance(unsigned percent) { return below(100) < percent; }
    std::uint8_t byte() { return std::uint8_t(m_engine()); }

private:
    std::mt19937 m_engine;
};

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

/// Empty when the input is no JSON, or the result is none.
QByteArray mutated(const QByteArray& text, Random& random)
{
    QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isNull())
        return {};
    for (std::uint32_t i = 1 + random.below(3); i > 0; --i) {
        const QJsonValue root =
            document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        const QJsonValue next = changed(root, random);
        if (next.isObject())
            document.setObject(next.toObject());
        else if (next.isArray())
            document.setArray(next.toArray());
    }
    return document.toJson(random.chance(50) ? QJsonDocument::Compact : QJsonDocument::Indented);
}

} // namespace

} // namespace Orvane::Fuzz

extern "C" {

std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

std::size_t LLVMFuzzerCustomMutator(
    std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    Orvane::Fuzz::Random random(seed);
    constexpr unsigned bytewisePercent = 30;
    const QByteArray text(reinterpret_cast<const char*>(data), int(size));
    const QByteArray made =
        random.chance(bytewisePercent) ? QByteArray() : Orvane::Fuzz::mutated(text, random);
    if (made.isEmpty() || std::size_t(made.size()) > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::copy(made.cbegin(), made.cend(), data);
    return std::size_t(made.size());
}

} // extern "C"

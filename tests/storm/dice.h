#pragma once

#include <QRandomGenerator>
#include <QString>

#include <initializer_list>

namespace Storm {

/// Chance that a seed repeats.
class Dice {
public:
    explicit Dice(quint32 seed)
        : m_generator(seed)
    {
    }
    int below(int end) { return int(m_generator.bounded(end)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T> T oneOf(std::initializer_list<T> values)
    {
        return *(values.begin() + below(int(values.size())));
    }
    QString name(const char* kind)
    {
        return QStringLiteral("%1 %2").arg(QLatin1String(kind)).arg(below(1000));
    }

private:
    QRandomGenerator m_generator;
};

} // namespace Storm

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QRect>
#include <QSet>
#include <QSize>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <limits>
#include <utility>

/// Two archives with the same members, so that one description of a record both reads and writes it.
namespace Orvane::MemoryModel {

/// The words that stand for an enumeration's values.
template <typename Enum> using Words = std::initializer_list<std::pair<Enum, const char*>>;

/// Whether a member may be left out; its record's default then holds.
enum class Presence { Required, Optional };

/// Reads the members of one JSON object and collects every fault with its place.
class ShowReader final {
public:
    /// @p place is how faults name the object, e.g. `devices[0]`; empty for the whole file.
    ShowReader(const QJsonValue& value, QString place, QStringList& faults);
    /// Members that nobody has asked for are faults.
    ~ShowReader();

    static constexpr bool reads = true;

    template <typename T>
    void integer(const char* name, T& value, qint64 low, qint64 high, Presence presence = Presence::Optional)
    {
        qint64 number = 0;
        if (readInteger(name, number, low, high, presence))
            value = static_cast<T>(number);
    }
    void number(const char* name, double& value, double low, double high);
    void flag(const char* name, bool& value);
    void text(const char* name, QString& value, Presence presence = Presence::Optional);
    template <typename Enum>
    void word(const char* name, Enum& value, Words<Enum> words, Presence presence = Presence::Optional)
    {
        QStringList known;
        for (const auto& each : words)
            known += QString::fromLatin1(each.second);
        const int index = readWord(name, known, presence);
        if (index >= 0)
            value = (words.begin() + index)->first;
    }
    /// `[x, y, width, height]`, not empty and within the largest mosaic.
    void rect(const char* name, QRect& value);
    /// `[width, height]`
    void size(const char* name, QSize& value);
    /// @p describe is called with an archive for each element.
    template <typename T, typename Describe> void list(const char* name, QList<T>& values, Describe describe)
    {
        const QJsonArray array = readArray(name);
        for (int i = 0; i < array.size(); ++i) {
            T value;
            ShowReader element(array.at(i), elementPlace(name, i), m_faults);
            describe(element, value);
            values += std::move(value);
        }
    }
    template <typename T> void numbers(const char* name, QVector<T>& values, qint64 low, qint64 high)
    {
        const QJsonArray array = readArray(name);
        for (int i = 0; i < array.size(); ++i) {
            qint64 number = 0;
            if (toInteger(array.at(i), elementPlace(name, i), number, low, high))
                values += static_cast<T>(number);
        }
    }
    /// A member that is an object; @p present tells whether it is there.
    template <typename Describe> void object(const char* name, bool& present, Describe describe)
    {
        present = has(name);
        if (!present)
            return;
        ShowReader member(take(name), memberPlace(name), m_faults);
        describe(member);
    }

private:
    Q_DISABLE_COPY_MOVE(ShowReader)

    bool has(const char* name) const;
    QJsonValue take(const char* name);
    bool missing(const char* name, Presence presence);
    void fault(const QString& place, const QString& text);
    QString memberPlace(const char* name) const;
    QString elementPlace(const char* name, int index) const;
    bool toInteger(const QJsonValue& value, const QString& place, qint64& number, qint64 low, qint64 high);
    bool readInteger(const char* name, qint64& number, qint64 low, qint64 high, Presence presence);
    int readWord(const char* name, const QStringList& known, Presence presence);
    QJsonArray readArray(const char* name);
    /// The numbers of a fixed-length array; empty after a fault.
    QList<int> readNumbers(const char* name, const QString& expected, int count);

    QJsonObject m_object;
    const QString m_place;
    QStringList& m_faults;
    QSet<QString> m_asked;
    bool m_bObject;
};

/// Writes the members of one JSON object.
class ShowWriter final {
public:
    static constexpr bool reads = false;

    QJsonObject result() const { return m_object; }

    template <typename T>
    void integer(const char* name, T& value, qint64, qint64, Presence = Presence::Optional)
    {
        m_object.insert(QLatin1String(name), qint64(value));
    }
    void number(const char* name, double& value, double low, double high);
    void flag(const char* name, bool& value);
    void text(const char* name, QString& value, Presence = Presence::Optional);
    template <typename Enum>
    void word(const char* name, Enum& value, Words<Enum> words, Presence = Presence::Optional)
    {
        for (const auto& each : words) {
            if (each.first == value)
                m_object.insert(QLatin1String(name), QLatin1String(each.second));
        }
    }
    void rect(const char* name, QRect& value);
    void size(const char* name, QSize& value);
    template <typename T, typename Describe> void list(const char* name, QList<T>& values, Describe describe)
    {
        QJsonArray array;
        for (T& value : values) {
            ShowWriter element;
            describe(element, value);
            array += element.result();
        }
        m_object.insert(QLatin1String(name), array);
    }
    template <typename T> void numbers(const char* name, QVector<T>& values, qint64, qint64)
    {
        QJsonArray array;
        for (const T& value : std::as_const(values))
            array += qint64(value);
        m_object.insert(QLatin1String(name), array);
    }
    template <typename Describe> void object(const char* name, bool& present, Describe describe)
    {
        if (!present)
            return;
        ShowWriter member;
        describe(member);
        m_object.insert(QLatin1String(name), member.result());
    }

private:
    QJsonObject m_object;
};

} // namespace Orvane::MemoryModel

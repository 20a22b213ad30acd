#pragma once

#include "jsonreader_p.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

#include <initializer_list>
#include <utility>

/// Two archives with the same members, so that one description of a record both reads and writes it.
namespace Orvane::MemoryModel {

/// The words that stand for an enumeration's values.
template <typename Enum> using Words = std::initializer_list<std::pair<Enum, const char*>>;

/// What may be left out leaves its record's default.
using Internal::Presence;

/// Reads the members of one JSON object and collects every fault with its place.
class ShowReader final {
public:
    /// @p place is how faults name the object, e.g. `devices[0]`; empty for the whole file.
    ShowReader(const QJsonValue& value, const QString& place, QStringList& faults);
    /// Members that nobody has asked for are faults.
    ~ShowReader() { m_reader.noteUnknown(); }

    static constexpr bool reads = true;

    template <typename T>
    void integer(const char* name, T& value, qint64 low, qint64 high, Presence presence = Presence::Optional)
    {
        if (const auto found = take(name, Internal::JsonKind::integer(low, high), presence))
            value = static_cast<T>(found->toDouble());
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
        if (const auto found = take(name, Internal::JsonKind::word(known), presence))
            value = (words.begin() + known.indexOf(found->toString()))->first;
    }
    /// `[x, y, width, height]`, not empty and within the largest mosaic.
    void rect(const char* name, QRect& value);
    /// `[width, height]`
    void size(const char* name, QSize& value);
    /// @p describe is called with an archive for each element.
    template <typename T, typename Describe> void list(const char* name, QList<T>& values, Describe describe)
    {
        const auto found = take(name, Internal::JsonKind::list(), Presence::Optional);
        const QJsonArray array = found ? found->toArray() : QJsonArray();
        for (int i = 0; i < array.size(); ++i) {
            T value;
            ShowReader element(
                array.at(i), memberPlace(QLatin1String(name)) + QStringLiteral("[%1]").arg(i), m_faults);
            describe(element, value);
            values += std::move(value);
        }
    }
    void numbers(const char* name, QVector<quint32>& values);
    /// A member that is an object; @p present tells whether it is there.
    template <typename Describe> void object(const char* name, bool& present, Describe describe)
    {
        const auto found = take(name, Internal::JsonKind::anything(), Presence::Optional);
        present = found.has_value();
        if (!present)
            return;
        ShowReader member(*found, memberPlace(QLatin1String(name)), m_faults);
        describe(member);
    }

private:
    Q_DISABLE_COPY_MOVE(ShowReader)

    std::optional<QJsonValue> take(const char* name, const Internal::JsonKind& kind, Presence presence)
    {
        return m_reader.take(QLatin1String(name), kind, presence);
    }
    QString memberPlace(const QString& name) const;
    /// The numbers of a fixed-length array; empty after a fault.
    QList<int> readNumbers(const char* name, const QString& expected, int count, Presence presence);

    const QString m_place;
    QStringList& m_faults;
    Internal::JsonReader m_reader;
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
    void numbers(const char* name, QVector<quint32>& values);
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

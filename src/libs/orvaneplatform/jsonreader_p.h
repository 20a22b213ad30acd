#pragma once

#include "orvaneplatform_global.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// The one way in which files and commands in JSON are read: every fault is noted, in the same words.
namespace Orvane::Internal {

/// What a value may be.
class ORVANEPLATFORM_EXPORT JsonKind {
public:
    static JsonKind anything() { return JsonKind(Anything); }
    static JsonKind flag() { return JsonKind(Flag); }
    static JsonKind integer(qint64 lowest, qint64 highest);
    static JsonKind number(double lowest, double highest);
    static JsonKind text() { return JsonKind(Text); }
    /// A text that is not empty.
    static JsonKind filledText() { return JsonKind(FilledText); }
    /// One of some words.
    static JsonKind word(const QStringList& words);
    static JsonKind list() { return JsonKind(List); }
    /// A list of whole numbers, as large as an id can be.
    static JsonKind numbers() { return JsonKind(Numbers); }
    static JsonKind texts() { return JsonKind(Texts); }
    static JsonKind object() { return JsonKind(Object); }

    bool accepts(const QJsonValue& value) const;
    /// What may stand there, in words.
    QString expected() const;

private:
    enum Kind { Anything, Flag, Integer, Number, Text, FilledText, Word, List, Numbers, Texts, Object };
    explicit JsonKind(Kind kind)
        : m_kind(kind)
    {
    }

    Kind m_kind;
    double m_lowest = 0;
    double m_highest = 0;
    QStringList m_words;
};

/// Whether a member may be left out.
enum class Presence { Required, Optional };

/// Reads the members of one object.
class ORVANEPLATFORM_EXPORT JsonReader {
public:
    /// Told of each fault; @p member is empty when it is the object's own.
    using Note = std::function<void(const QString& member, const QString& fault)>;

    /// Notes a value that is no object; nothing is missing in it then.
    JsonReader(const QJsonValue& value, Note note);

    bool isObject() const { return m_bObject; }
    /// The member; empty, and noted, when it is of another kind, or when it is not there and must be.
    std::optional<QJsonValue> take(
        const QString& member, const JsonKind& kind, Presence presence = Presence::Required);
    /// Notes that the member is not what was expected.
    void noteWrong(const QString& member, const QString& expected) const;
    /// Notes each member that nobody has taken. To be called at the end.
    void noteUnknown() const;

private:
    const QJsonObject m_object;
    const bool m_bObject;
    const Note m_note;
    QStringList m_taken;
};

} // namespace Orvane::Internal

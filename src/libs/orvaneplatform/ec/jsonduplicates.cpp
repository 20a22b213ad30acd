#include "ec/jsonduplicates_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <vector>

namespace Orvane::Internal {

namespace {

/// Walks over a UTF-8 text and keeps count of lines and characters.
class Cursor {
public:
    explicit Cursor(const QByteArray& text)
        : m_text(text)
    {
    }

    bool atEnd() const { return m_nOffset >= m_text.size(); }
    char current() const { return m_text.at(m_nOffset); }
    int offset() const { return m_nOffset; }
    TextPosition position() const { return m_position; }

    void advance()
    {
        constexpr int continuationMask = 0xC0;
        constexpr int continuationByte = 0x80;
        ++m_nOffset;
        if (m_text.at(m_nOffset - 1) == '\n')
            m_position = {m_position.line + 1, 1};
        else if (atEnd() || (current() & continuationMask) != continuationByte)
            ++m_position.column;
    }

private:
    const QByteArray& m_text;
    int m_nOffset = 0;
    TextPosition m_position;
};

/// Steps from the opening quote past the closing one and answers what is between, escapes as they stand.
QByteArray takeRawString(const QByteArray& text, Cursor& cursor)
{
    cursor.advance();
    const int start = cursor.offset();
    while (!cursor.atEnd() && cursor.current() != '"') {
        if (cursor.current() == '\\')
            cursor.advance();
        if (!cursor.atEnd())
            cursor.advance();
    }
    QByteArray raw = text.mid(start, cursor.offset() - start);
    if (!cursor.atEnd())
        cursor.advance();
    return raw;
}

QString unescaped(const QByteArray& raw)
{
    if (!raw.contains('\\'))
        return QString::fromUtf8(raw);
    return QJsonDocument::fromJson("[\"" + raw + "\"]").array().at(0).toString();
}

struct Level {
    bool isObject = false;
    bool expectsKey = false;
    QSet<QString> keys;
};

} // namespace

TextPosition positionAt(const QByteArray& utf8, int offset)
{
    Cursor cursor(utf8);
    while (!cursor.atEnd() && cursor.offset() < offset)
        cursor.advance();
    return cursor.position();
}

QList<DuplicateKey> findDuplicateKeys(const QByteArray& validJson)
{
    QList<DuplicateKey> duplicates;
    std::vector<Level> levels;
    Cursor cursor(validJson);
    while (!cursor.atEnd()) {
        const char c = cursor.current();
        if (c == '"') {
            const TextPosition position = cursor.position();
            const QByteArray raw = takeRawString(validJson, cursor);
            if (levels.empty() || !levels.back().expectsKey)
                continue;
            const QString key = unescaped(raw);
            if (levels.back().keys.contains(key))
                duplicates.append({position, key});
            levels.back().keys.insert(key);
            levels.back().expectsKey = false;
            continue;
        }
        if (c == '{')
            levels.push_back({true, true, {}});
        else if (c == '[')
            levels.push_back({});
        else if ((c == '}' || c == ']') && !levels.empty())
            levels.pop_back();
        else if (c == ',' && !levels.empty())
            levels.back().expectsKey = levels.back().isObject;
        cursor.advance();
    }
    return duplicates;
}

} // namespace Orvane::Internal

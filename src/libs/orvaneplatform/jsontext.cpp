#include "jsontext_p.h"

#include "ec/eckeyboardplace_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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
    QString place() const { return QStringLiteral("line %1, column %2").arg(m_nLine).arg(m_nColumn); }

    void advance()
    {
        constexpr int continuationMask = 0xC0;
        constexpr int continuationByte = 0x80;
        ++m_nOffset;
        if (m_text.at(m_nOffset - 1) == '\n') {
            ++m_nLine;
            m_nColumn = 1;
        } else if (atEnd() || (current() & continuationMask) != continuationByte) {
            ++m_nColumn;
        }
    }

private:
    const QByteArray& m_text;
    int m_nOffset = 0;
    int m_nLine = 1;
    int m_nColumn = 1;
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

/// In a text that QJsonDocument has accepted.
void findDuplicateKeys(const QByteArray& validJson, QList<TextFault>& faults)
{
    std::vector<Level> levels;
    Cursor cursor(validJson);
    while (!cursor.atEnd()) {
        const char c = cursor.current();
        if (c == '"') {
            const Cursor keyStart = cursor;
            const QByteArray raw = takeRawString(validJson, cursor);
            if (levels.empty() || !levels.back().expectsKey)
                continue;
            const QString key = unescaped(raw);
            if (levels.back().keys.contains(key))
                faults.append(
                    {keyStart.place(),
                     QStringLiteral("field %1 stands twice in its object, expected once").arg(quoted(key))});
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
}

} // namespace

std::optional<QJsonValue> parseJson(const QByteArray& utf8, QList<TextFault>& faults)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(utf8, &error);
    if (error.error != QJsonParseError::NoError) {
        Cursor cursor(utf8);
        while (!cursor.atEnd() && cursor.offset() < error.offset)
            cursor.advance();
        faults.append({cursor.place(), QStringLiteral("no valid JSON: %1").arg(error.errorString())});
        return std::nullopt;
    }
    findDuplicateKeys(utf8, faults);
    return document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
}

std::optional<QByteArray> readFile(const QString& path, qint64 mostBytes, const QString& what, QString& fault)
{
    QFile file(path);
    QByteArray bytes;
    // In pieces, for special files do not tell their size.
    constexpr qint64 pieceBytes = 1024LL * 1024;
    if (file.open(QIODevice::ReadOnly)) {
        QByteArray piece;
        while (bytes.size() <= mostBytes && !(piece = file.read(pieceBytes)).isEmpty())
            bytes += piece;
    }
    if (file.error() != QFileDevice::NoError)
        fault = QStringLiteral("cannot be read: %1").arg(file.errorString());
    else if (bytes.size() > mostBytes)
        fault = QStringLiteral("is larger than %1 bytes, expected %2").arg(mostBytes).arg(what);
    else
        return bytes;
    return std::nullopt;
}

} // namespace Orvane::Internal

#include "enumwords_p.h"

namespace Orvane::Internal {

namespace {

QString wordOf(const char* enumerator)
{
    QString word;
    const QStringList parts = QString::fromLatin1(enumerator).split(QLatin1Char('_'), Qt::SkipEmptyParts);
    for (const QString& part : parts)
        word += word.isEmpty() ? part : part.left(1).toUpper() + part.mid(1);
    if (word.size() > 1 && word.at(1).isLower()) // abbreviations stay as they are
        word[0] = word.at(0).toLower();
    return word;
}

} // namespace

QStringList enumWords(const QMetaEnum& values)
{
    QStringList words;
    for (int i = 0; i < values.keyCount(); ++i)
        words.append(wordOf(values.key(i)));
    return words;
}

} // namespace Orvane::Internal

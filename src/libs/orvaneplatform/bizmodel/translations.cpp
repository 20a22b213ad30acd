#include "translations.h"

#include <QDir>
#include <QTranslator>

namespace Orvane::BizModel::Translate {

namespace {

const QString Prefix = QStringLiteral("orvane_");
const QString Suffix = QStringLiteral(".qm");

QDir directory()
{
    return QDir(QStringLiteral(":/orvane/translations"));
}

} // namespace

QStringList languages()
{
    QStringList names;
    const QStringList files = directory().entryList(QDir::Files, QDir::Name);
    for (const QString& file : files)
        names += file.mid(Prefix.size(), file.size() - Prefix.size() - Suffix.size());
    return names;
}

bool loadLanguage(QTranslator& translator, const QString& language)
{
    return translator.load(directory().filePath(Prefix + language + Suffix));
}

} // namespace Orvane::BizModel::Translate

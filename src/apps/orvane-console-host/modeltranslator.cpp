#include "modeltranslator.h"

#include <QHash>

#include <cstring>

namespace Orvane::ConsoleHost {

namespace {

using Texts = QHash<QByteArray, QString>;

const QHash<QString, Texts>& textsOfLanguage()
{
    static const QHash<QString, Texts> texts = {
        {QStringLiteral("en"), {}},
        {QStringLiteral("de"),
         {{"Page %1", QStringLiteral("Seite %1")},
          {"Fade", QStringLiteral("Blende")},
          {"Full screen", QStringLiteral("Vollbild")},
          {"Load to PGM", QStringLiteral("Nach PGM laden")},
          {"Load to PVW", QStringLiteral("Nach PVW laden")},
          {"Taking,please wait...", QStringLiteral("Übernahme läuft, bitte warten ...")},
          {"Adding screen,please wait...", QStringLiteral("Bild wird angelegt, bitte warten ...")},
          {"The number of screens exceeds the limit!", QStringLiteral("Zu viele Bilder!")},
          {"No matching input source found.", QStringLiteral("Keine passende Quelle gefunden.")},
          {"Not enough resources.", QStringLiteral("Zu wenig Ressourcen.")},
          {"The number of layers exceeds the limit.", QStringLiteral("Zu viele Ebenen.")},
          {"Please select a layer first.", QStringLiteral("Bitte zuerst eine Ebene wählen.")},
          {"Saving device data, please wait.", QStringLiteral("Gerätedaten werden gesichert, bitte warten.")},
          {"Are you sure you want to delete all the presets?",
           QStringLiteral("Wirklich alle Presets löschen?")}}},
    };
    return texts;
}

} // namespace

QStringList ModelTranslator::languages()
{
    QStringList languages = textsOfLanguage().keys();
    languages.sort();
    return languages;
}

ModelTranslator::ModelTranslator(const QString& language, QObject* parent)
    : QTranslator(parent)
    , m_strLanguage(language)
{
}

bool ModelTranslator::isEmpty() const
{
    return textsOfLanguage().value(m_strLanguage).isEmpty();
}

QString ModelTranslator::translate(const char* context, const char* sourceText, const char*, int) const
{
    if (!context || !sourceText || std::strcmp(context, "Model") != 0)
        return {};
    return textsOfLanguage().value(m_strLanguage).value(sourceText);
}

} // namespace Orvane::ConsoleHost

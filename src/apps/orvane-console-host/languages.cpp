#include "languages.h"

#include "bizmodel/translations.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

#include <memory>

namespace Orvane::ConsoleHost::Languages {

namespace {

const QString OwnLanguage = QStringLiteral("en");

} // namespace

QStringList names()
{
    return QStringList{OwnLanguage} + BizModel::Translate::languages();
}

bool use(const QString& name)
{
    static QPointer<QTranslator> s_pInstalled;
    auto translator = std::make_unique<QTranslator>();
    if (name != OwnLanguage && !BizModel::Translate::loadLanguage(*translator, name))
        return false;
    delete s_pInstalled; // the application forgets it by itself
    if (name == OwnLanguage)
        return true;
    s_pInstalled = translator.release();
    s_pInstalled->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(s_pInstalled);
}

} // namespace Orvane::ConsoleHost::Languages

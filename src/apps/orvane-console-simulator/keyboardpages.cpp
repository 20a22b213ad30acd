#include "keyboardpages.h"

#include "arguments.h"
#include "keyboardcheck.h"
#include "operatorguide.h"
#include "simulatorprogram.h"

#include "bizmodel/translations.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

#include <cstdio>
#include <memory>

using namespace Orvane;
using namespace Orvane::CommandLine;

namespace {

void print(const EC::KeyboardProblem& problem, const char* kind, bool json)
{
    if (!json) {
        std::printf("%s: %s\n", kind, qUtf8Printable(problem.toString()));
        return;
    }
    const QJsonObject object{
        {QStringLiteral("kind"), QLatin1String(kind)},
        {QStringLiteral("place"), problem.place},
        {QStringLiteral("text"), problem.text}};
    std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
}

/// The languages that come with the console, and the one of the file; false when the file is none.
bool loadLanguages(
    const QString& file, std::vector<std::unique_ptr<QTranslator>>& translators,
    QList<KeyboardTools::LabelLanguage>& languages)
{
    const auto add = [&](const QString& name, auto load) {
        auto translator = std::make_unique<QTranslator>();
        if (!load(*translator))
            return false;
        languages.append({name, translator.get()});
        translators.push_back(std::move(translator));
        return true;
    };
    languages.append({QStringLiteral("en"), nullptr});
    bool allLoaded = true;
    const QStringList known = BizModel::Translate::languages();
    for (const QString& language : known)
        allLoaded &= add(language, [&](QTranslator& translator) {
            return BizModel::Translate::loadLanguage(translator, language);
        });
    if (!file.isEmpty())
        allLoaded &= add(file, [&](QTranslator& translator) { return translator.load(file); });
    return allLoaded;
}

} // namespace

std::shared_ptr<EC::s_ECKeyboardConfig> readKeyboard(const QString& path)
{
    const EC::KeyboardLoadResult result = EC::loadKeyboardFile(path);
    for (const EC::KeyboardProblem& problem : result.problems) {
        const bool namesFile = problem.place == path;
        complain(
            simulatorProgram(),
            namesFile ? problem.toString() : path + QStringLiteral(": ") + problem.toString());
    }
    return result.config;
}

ExitStatus checkKeyboard(const SimulatorOptions& options)
{
    std::vector<std::unique_ptr<QTranslator>> translators;
    QList<KeyboardTools::LabelLanguage> languages;
    if (!loadLanguages(options.translationFile, translators, languages)) {
        complain(simulatorProgram(), options.translationFile + QStringLiteral(": is no translation"));
        return ExitRefused;
    }
    EC::KeyboardProblem unread;
    const auto json = EC::readKeyboardFile(options.checkedFile, unread);
    if (!json) {
        complain(simulatorProgram(), unread.toString());
        return ExitRefused;
    }
    const EC::KeyboardDraft draft = EC::draftKeyboard(*json);
    QList<EC::KeyboardProblem> oddities;
    if (draft.keyboard)
        oddities = KeyboardTools::findOddities(*draft.keyboard, languages);
    for (const EC::KeyboardProblem& problem : draft.problems)
        print(problem, "error", options.json);
    for (const EC::KeyboardProblem& problem : qAsConst(oddities))
        print(problem, "warning", options.json);
    return draft.problems.isEmpty() && oddities.isEmpty() ? ExitOk : ExitFailed;
}

ExitStatus describeKeyboard(const SimulatorOptions& options)
{
    const auto keyboard = readKeyboard(options.describedFile);
    if (!keyboard)
        return ExitRefused;
    std::fputs(qUtf8Printable(KeyboardTools::operatorGuide(*keyboard)), stdout);
    return ExitOk;
}

/// Any bytes as a keyboard file.

#include "fuzztarget.h"
#include "jsonmutator.h"
#include "keyboardcheck.h"
#include "operatorguide.h"

#include "ec/eckeyboardloader.h"

#include <QFile>

namespace Orvane::Fuzz {

namespace {

/// The whole example, and one small enough that most changes hit something.
QByteArray example(Random& random)
{
    static const QByteArray s_whole = [] {
        QFile file(QStringLiteral(EXAMPLES "/keyboard.json"));
        check(file.open(QIODevice::ReadOnly), "no example keyboard");
        return file.readAll();
    }();
    static const QByteArray s_small = R"({ "Name": "n", "IconName": "i", "ModelId": 2, "m_commands": [
        { "Name": "NumberCommand", "m_buttons": [
            { "ECKey": 1, "OrvaneECKey": 1001, "OrvaneKey": 1, "OrderIndex": 0 },
            { "ECKey": 2, "OrvaneECKey": 1002, "OrvaneKey": 2, "OrderIndex": 0 } ] },
        { "Name": "ScreenCommand", "m_buttons": [
            { "ECKey": 3, "OrvaneECKey": 1003, "OrvaneKey": 1, "OrderIndex": 0,
              "pECOledCfg": { "ECKey": 512, "OrvaneECKey": 2512 } } ] } ] })";
    return random.chance(10) ? s_whole : s_small;
}

} // namespace

void setUp(int&, char**) { }

void run(const Bytes& input)
{
    const QByteArray json(reinterpret_cast<const char*>(input.data()), int(input.size()));
    const EC::KeyboardLoadResult result = EC::loadKeyboard(json);
    check(bool(result) == result.problems.isEmpty(), "neither a keyboard nor a problem, or both");
    QList<EC::KeyboardProblem> problems = result.problems;
    const EC::KeyboardDraft draft = EC::draftKeyboard(json);
    if (draft.keyboard)
        problems += KeyboardTools::findOddities(*draft.keyboard, {{QStringLiteral("en"), nullptr}});
    if (result)
        check(!KeyboardTools::operatorGuide(*result.config).isEmpty(), "a keyboard has no page");
    for (const auto& problem : qAsConst(problems)) {
        check(!problem.place.isEmpty() && !problem.text.isEmpty(), "a problem does not say what it is");
        check(!problem.toString().contains(QLatin1Char('\n')), "a problem has two lines");
    }
}

Bytes makeInput(Random& random)
{
    return mutateJson(example(random), random);
}

std::size_t caseCount(const Bytes&)
{
    return 1;
}

void tearDown() { }

} // namespace Orvane::Fuzz

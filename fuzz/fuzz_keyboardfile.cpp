/// Any bytes as a keyboard file.

#include "fuzztarget.h"
#include "keyboardcheck.h"
#include "operatorguide.h"

#include "ec/eckeyboardloader.h"

namespace Orvane::Fuzz {

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

void tearDown() { }

} // namespace Orvane::Fuzz

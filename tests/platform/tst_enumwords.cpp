#include "enumwords_p.h"

#include "bizmodel/enums.h"

#include <QTest>

using namespace Orvane::Internal;
using namespace Orvane::BizModel;

/// The words stand in show files, scripts and programs that read the host's events: they do not change.
class TestEnumWords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wordsAreThoseOfFilesAndCommands()
    {
        QCOMPARE(
            wordsOf<Enum::Screen::State>(),
            (QStringList{"normal", "taking", "resourceOut", "tbarTaking", "cut", "matchingPGM"}));
        QCOMPARE(wordsOf<SceneType>(), (QStringList{"PGM", "PVW"}));
        QCOMPARE(wordsOf<CapacityMode>(), (QStringList{"SL", "DL", "4K"}));
        QCOMPARE(wordsOf<EffectType>(), (QStringList{"cut", "fade"}));
        QCOMPARE(wordsOf<StatusBarMsgType>(), (QStringList{"information", "warning", "error"}));
        QCOMPARE(wordsOf<FramelessMessageBoxMsgType>(), (QStringList{"question", "warning", "information"}));
    }

    void aWordStandsForItsValueAndBack()
    {
        QCOMPARE(valueOf<SceneType>("PVW"), SceneType::PVW); // the values have gaps
        QCOMPARE(wordOf(SceneType::PGM), QString("PGM"));
        QCOMPARE(valueOf<Enum::Screen::State>("matchingPGM"), Enum::Screen::MatchingPGM);
        QCOMPARE(wordOf(SceneType(3)), QString());
    }
};

QTEST_GUILESS_MAIN(TestEnumWords)
#include "tst_enumwords.moc"

#include "ec/eckeyboardconfig.h"

#include <QtTest>

using namespace Orvane::EC;

namespace {

using Key = std::shared_ptr<s_ECButtonConfig>;
using Label = std::shared_ptr<s_ECOledConfig>;

Label label(quint16 ecKey)
{
    return std::make_shared<s_ECOledConfig>(s_ECOledConfig{ecKey, 0});
}

Key key(quint16 ecKey, quint32 orvaneECKey, quint16 code, quint16 orderIndex, Label oled = {})
{
    return std::make_shared<s_ECButtonConfig>(
        s_ECButtonConfig{ecKey, orvaneECKey, code, orderIndex, std::move(oled)});
}

} // namespace

class TestKeyboardConfig : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysThatFitComeInTheFilesOrderAndNumbersAreComparedWhole()
    {
        const Key first = key(5, 1005, 1, 3);
        const Key second = key(5, 1005, 1, 3);
        const s_ECCommandConfig group{{}, {nullptr, key(6, 0x10005, 2, 0), first, second}};
        QCOMPARE(group.findECButtonConfigByECKey(5), first);
        QCOMPARE(group.findECButtonConfigsByOrvaneKey(1), (QList<Key>{first, second}));
        QCOMPARE(group.findECButtonConfigsByOrvaneECKey(1005), (QList<Key>{first, second}));
        QCOMPARE(group.findECButtonConfigByECKey(0x10005), Key());
        QCOMPARE(group.getECKeyByOrvaneECKey(5), 0xFFFFFFFFu);
        QCOMPARE(group.getECKeyByOrderIndex(5), 0xFFFFFFFFu);
    }

    void aLabelsOwnNumberGoesBeforeItsKeys()
    {
        // The numbers of labels and keys overlap: 2 is a label and another label's key.
        const Label two = label(2);
        const Label three = label(3);
        const s_ECCommandConfig group{{}, {key(2, 0, 1, 0, three), key(1, 0, 1, 1, two), key(4, 0, 1, 2)}};
        QCOMPARE(group.findECOledConfigByECKey(2), two);
        QCOMPARE(group.findECOledConfigByECKey(1), two);
        QCOMPARE(group.findECOledConfigByECKey(4), Label());
    }
};

QTEST_APPLESS_MAIN(TestKeyboardConfig)
#include "tst_keyboardconfig.moc"

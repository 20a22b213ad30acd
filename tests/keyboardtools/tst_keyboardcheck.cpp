#include "keyboardcheck.h"
#include "operatorguide.h"

#include <QTest>
#include <QTranslator>

#include <functional>

using namespace Orvane;
using EC::s_ECKeyboardConfig;

namespace {

using Change = std::function<void(s_ECKeyboardConfig&)>;

/// The keys of the example keyboard that the changes are made to.
enum ExampleKey { Screen1 = 1, Screen2 = 2, PageUp = 9, PageDown = 10, Freeze = 11, Take = 15, TimeUp = 17 };
enum ExamplePad { Digit7 = 100, Digit8 = 101, SaveKey = 107, TBarKey = 108 };
enum ExampleGroup { Screens, Layers, Inputs, Presets, Numbers, Functions };

EC::s_ECButtonConfig& key(s_ECKeyboardConfig& keyboard, quint16 ecKey)
{
    for (const auto& group : keyboard.m_commands) {
        if (const auto found = group->findECButtonConfigByECKey(ecKey))
            return *found;
    }
    qFatal("no key %d in the example", ecKey);
}

void remove(s_ECKeyboardConfig& keyboard, quint16 ecKey)
{
    for (const auto& group : keyboard.m_commands)
        group->m_buttons.removeAll(group->findECButtonConfigByECKey(ecKey));
}

void removeLabel(s_ECKeyboardConfig& keyboard, quint16 ecKey)
{
    key(keyboard, ecKey).pECOledCfg.reset();
}

EC::s_ECOledConfig& label(s_ECKeyboardConfig& keyboard, quint16 ecKey)
{
    auto& config = key(keyboard, ecKey).pECOledCfg;
    config = config ? std::make_shared<EC::s_ECOledConfig>(*config) : std::make_shared<EC::s_ECOledConfig>();
    return *config;
}

QStringList oddities(
    const s_ECKeyboardConfig& keyboard,
    const QList<KeyboardTools::LabelLanguage>& languages = {{QStringLiteral("en"), nullptr}})
{
    QStringList lines;
    for (const auto& problem : KeyboardTools::findOddities(keyboard, languages))
        lines += problem.toString();
    return lines;
}

/// A language whose words are all long.
class LongWords : public QTranslator {
public:
    QString translate(const char*, const char* source, const char*, int) const override
    {
        return QString::fromUtf8("\u00fc").repeated(14) + QLatin1String(source);
    }
};

} // namespace

Q_DECLARE_METATYPE(Change)

class TestKeyboardCheck : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOddityIsToldWithItsPlace_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const Change& change, const QStringList& expected) {
            QTest::newRow(name) << change << expected;
        };
        using Keyboard = s_ECKeyboardConfig;
        const QString screens = QStringLiteral("group 1 \"ScreenCommand\"");
        const QString pad = QStringLiteral("group 5 \"NumberCommand\"");

        row("nothing", [](Keyboard&) {}, {});
        row("groups in another order", [](Keyboard& k) { k.m_commands.swapItemsAt(Screens, Functions); }, {});
        row("no group", [](Keyboard& k) { k.m_commands.removeAt(Layers); },
            {"keyboard: no group \"LayerCommand\", so none of its functions has a key"});
        row("no key for a function", [](Keyboard& k) { remove(k, Take); },
            {screens + ": no key for \"take\", OrvaneKey 8"});
        row("no key for a digit", [](Keyboard& k) { remove(k, Digit7); }, {pad + ": no key for the digit 7"});
        row("a code without function", [](Keyboard& k) { key(k, Freeze).OrvaneKey = 12; },
            {screens + ": no key for \"freeze PGM\", OrvaneKey 4",
             screens
                 + ", key 11 (ECKey 11): OrvaneKey 12 has no function; 0 is that of a key to be kept dark"});
        row("a key to be kept dark",
            [](Keyboard& k) {
                k.m_commands[Inputs]->m_buttons.append(
                    std::make_shared<EC::s_ECButtonConfig>(EC::s_ECButtonConfig{200, 1200, 0, 0, {}}));
            },
            {});
        row("a function twice", [](Keyboard& k) { key(k, Take).OrvaneKey = 4; },
            {screens + ": no key for \"take\", OrvaneKey 8",
             screens
                 + ", key 15 (ECKey 15): key 11 has the function \"freeze PGM\" already; not every light and "
                   "label reaches both"});
        row("no digit, and one digit twice",
            [](Keyboard& k) {
                key(k, Digit7).OrderIndex = 10;
                key(k, Digit8).OrderIndex = 6;
            },
            {pad + ": no key for the digit 7", pad + ": no key for the digit 8",
             pad + ", key 8 (ECKey 100): OrderIndex is 10, expected a digit from 0 to 9",
             pad + ", key 9 (ECKey 101): key 7 has OrderIndex 6 already, expected one key a place"});
        row("a place twice", [](Keyboard& k) { key(k, TBarKey).OrderIndex = key(k, SaveKey).OrderIndex; },
            {"group 6 \"FunctionCommand\", key 2 (ECKey 108): key 1 has OrderIndex 0 already, expected one "
             "key a "
             "place"});
    }

    void anOddityIsToldWithItsPlace() { compare(); }

    void collidingNumbersAreTold_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("expected");
        using Keyboard = s_ECKeyboardConfig;
        const auto row = [](const char* name, const Change& change, const QStringList& expected) {
            QTest::newRow(name) << change << expected;
        };
        row("a key in two groups",
            [](Keyboard& k) {
                k.m_commands.swapItemsAt(Screens, Functions);
                key(k, Take).ECKey = TBarKey;
            },
            {"group 6 \"ScreenCommand\", key 15 (ECKey 108): group 1 \"FunctionCommand\", key 2 (ECKey 108) "
             "has "
             "this ECKey too; the presses all go to group 6"});
        row("an application's number twice", [](Keyboard& k) { key(k, Take).OrvaneECKey = 1001; },
            {"group 1 \"ScreenCommand\", key 15 (ECKey 15): group 1 \"ScreenCommand\", key 1 (ECKey 1) has "
             "OrvaneECKey 1001 already; the on-screen console presses only one of them"});
        row("an application's number that is too high", [](Keyboard& k) { key(k, Take).OrvaneECKey = 65536; },
            {"group 1 \"ScreenCommand\", key 15 (ECKey 15): OrvaneECKey 65536 is above 65535, so the "
             "on-screen "
             "console cannot press the key"});
        row("a label of two keys",
            [](Keyboard& k) {
                label(k, Screen2) = {512, 2512};
            },
            {"group 1 \"ScreenCommand\", key 2 (ECKey 2), label: group 1 \"ScreenCommand\", key 1 (ECKey 1) "
             "has "
             "this label too; only the last text stays"});
        row("an application's number of two labels",
            [](Keyboard& k) { label(k, Screen2).OrvaneECKey = 2512; },
            {"group 1 \"ScreenCommand\", key 2 (ECKey 2), label: the label of group 1 \"ScreenCommand\", key "
             "1 "
             "(ECKey 1) has OrvaneECKey 2512 already, expected one label a number"});
        row("two labels for one page",
            [](Keyboard& k) {
                label(k, PageDown) = {700, 2700};
            },
            {"group 1 \"ScreenCommand\", key 10 (ECKey 10), label: key 9 has label 520: give both page keys "
             "one, "
             "else each shows where it turned to last"});
    }

    void collidingNumbersAreTold() { compare(); }

    void labelsThatShowNothingAreTold_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("expected");
        using Keyboard = s_ECKeyboardConfig;
        const QString screens = QStringLiteral("group 1 \"ScreenCommand\"");
        const Change withoutLabels = [](Keyboard& k) {
            for (const quint16 number : {Screen1, Screen2, PageDown, TimeUp})
                removeLabel(k, number);
        };
        QTest::newRow("labels that are missing")
            << withoutLabels
            << QStringList{
                   screens + ": 2 of 8 select keys have no label that shows the screen's name: ECKey 1, 2",
                   screens + ", key 10 (ECKey 10): has no label that shows the page",
                   screens + ", key 17 (ECKey 17): has no label that shows the time"};
        const Change withLabel = [](Keyboard& k) { label(k, Take) = {700, 2700}; };
        QTest::newRow("a label that stays blank")
            << withLabel
            << QStringList{screens + ", key 15 (ECKey 15), label: stays blank, for \"take\" shows nothing"};
    }

    void labelsThatShowNothingAreTold() { compare(); }

    void labelsThatAreTooLongAreToldOnceALanguage()
    {
        const LongWords words;
        const auto keyboard = example();
        // Four bytes are left; two labels of one text, the capacity's three and the time, which has no words.
        const QStringList lines = oddities(*keyboard, {{"en", nullptr}, {"long", &words}});
        QCOMPARE(
            lines.value(0),
            QStringLiteral(
                "group 1 \"ScreenCommand\", key 9 (ECKey 9), label: \"%1Page 128\" (long) has 36 bytes, of "
                "which 32 are shown")
                .arg(QString::fromUtf8("\u00fc").repeated(14)));
        QCOMPARE(lines.filter("Page 128").size(), 8);
        QCOMPARE(lines.filter("Fade").size(), 0); // just fits
        QCOMPARE(lines.filter("Load to").size(), 2);
        QCOMPARE(lines.size(), 11); // and "Full screen"
    }

private:
    static std::shared_ptr<s_ECKeyboardConfig> example()
    {
        return EC::loadKeyboardFile(QStringLiteral(EXAMPLE_KEYBOARD)).config;
    }

    static void compare()
    {
        QFETCH(Change, change);
        QFETCH(QStringList, expected);
        const auto keyboard = example();
        change(*keyboard);
        QCOMPARE(oddities(*keyboard).join('\n'), expected.join('\n'));
    }
};

QTEST_GUILESS_MAIN(TestKeyboardCheck)
#include "tst_keyboardcheck.moc"

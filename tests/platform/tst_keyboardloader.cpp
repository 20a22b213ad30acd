#include "ec/eckeyboardloader.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane::EC;

namespace {

const QString examplePath = QStringLiteral(EXAMPLES_DIR "/keyboard.json");

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A keyboard with one group.
QByteArray keyboard(const QByteArray& groupName, const QByteArray& keys)
{
    return R"({"Name":"n","IconName":"i","ModelId":1,"m_commands":[{"Name":")" + groupName
        + R"(","m_buttons":[)" + keys + "]}]}";
}

QByteArray key(int ecKey, int code, int orderIndex)
{
    return QStringLiteral(R"({"ECKey":%1,"OrvaneECKey":%1,"OrvaneKey":%2,"OrderIndex":%3})")
        .arg(ecKey)
        .arg(code)
        .arg(orderIndex)
        .toLatin1();
}

/// One line a problem.
QString problemsOf(const KeyboardLoadResult& result)
{
    QStringList lines;
    for (const KeyboardProblem& problem : result.problems)
        lines += problem.toString();
    return lines.join('\n');
}

} // namespace

class TestKeyboardLoader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aKeyKeepsItsNumbersAndItsLabels();
    void whatIsAllowedLoads_data();
    void whatIsAllowedLoads();
    void everyFaultIsToldWithItsPlace_data();
    void everyFaultIsToldWithItsPlace();
    void aFileThatCannotBeReadIsRefused();
    void brokenJsonIsToldWithLineAndColumn();
    void whatIsNoJsonIsRefused();
    void aLabelsOwnNumberGoesBeforeItsKeys();
    void aNumberIsComparedWhole();
};

void TestKeyboardLoader::aKeyKeepsItsNumbersAndItsLabels()
{
    const auto config = loadKeyboard(keyboard("LayerCommand", R"({"ECKey":65535,"OrvaneECKey":4294967295,
        "OrvaneKey":3,"OrderIndex":4,"pECOledCfg":{"ECKey":5,"OrvaneECKey":6}})"))
                            .config;
    QVERIFY(config);
    QVERIFY(config->Name == "n" && config->IconName == "i" && config->ModelId == 1);
    QCOMPARE(config->m_commands.first()->Name, QString("LayerCommand"));
    const s_ECButtonConfig& button = *config->m_commands.first()->m_buttons.first();
    QVERIFY(button.ECKey == 65535 && button.OrvaneECKey == 4294967295);
    QVERIFY(button.OrvaneKey == 3 && button.OrderIndex == 4);
    QVERIFY(button.pECOledCfg->ECKey == 5 && button.pECOledCfg->OrvaneECKey == 6);
}

void TestKeyboardLoader::whatIsAllowedLoads_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no groups") << QByteArray(R"({"Name":"","IconName":"","ModelId":0,"m_commands":[]})");
    QTest::newRow("no keys") << keyboard("InputCommand", "");
    QTest::newRow("label null") << keyboard(
        "InputCommand", R"({"ECKey":1,"OrvaneECKey":1,"OrvaneKey":1,"OrderIndex":0,"pECOledCfg":null})");
    QTest::newRow("whole numbers as decimals")
        << keyboard("InputCommand", R"({"ECKey":1.0,"OrvaneECKey":1e3,"OrvaneKey":1,"OrderIndex":0})");
    QTest::newRow("highest code") << keyboard("ScreenCommand", key(1, 15, 7));
    QTest::newRow("keys without function") << keyboard("LayerCommand", key(1, 0, 5) + "," + key(2, 0, 5));
    QTest::newRow("select keys in any order") << keyboard("LayerCommand", key(1, 1, 1) + "," + key(2, 1, 0));
    QTest::newRow("digits with holes") << keyboard("NumberCommand", key(1, 1, 3) + "," + key(2, 1, 3));
    QTest::newRow("functions unnumbered") << keyboard("FunctionCommand", key(1, 1, 4));
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + keyboard("InputCommand", "");
}

void TestKeyboardLoader::whatIsAllowedLoads()
{
    QFETCH(QByteArray, json);
    QCOMPARE(problemsOf(loadKeyboard(json)), QString());
}

void TestKeyboardLoader::everyFaultIsToldWithItsPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("problems");
    const auto row = [](const char* name, const QByteArray& json, const QByteArray& problems) {
        QTest::newRow(name) << json << problems;
    };
    row("no object", "[]", "keyboard: is a list, expected an object");
    row("missing field, wrong types", R"({"Name":1,"IconName":null,"m_commands":{}})",
        R"(keyboard: Name is 1, expected a text
keyboard: IconName is null, expected a text
keyboard: missing field "ModelId", expected a whole number from 0 to 65535
keyboard: m_commands is an object, expected a list)");
    row("group and key no objects, group twice", R"({"Name":"","IconName":"","ModelId":0,"m_commands":[true,
             {"Name":"InputCommand","m_buttons":[[]]},{"Name":"InputCommand","m_buttons":[]}]})",
        R"(group 1: is true, expected an object
group 2 "InputCommand", key 1: is a list, expected an object
group 3 "InputCommand": group 2 has this name already, expected one group a name)");
    row("numbers out of range",
        keyboard("InputCommand", R"({"ECKey":65536,"OrvaneECKey":4294967296,"OrvaneKey":4,"OrderIndex":-1},
             {"ECKey":1.5,"OrvaneECKey":1e300,"OrvaneKey":1,"OrderIndex":0})"),
        R"(group 1 "InputCommand", key 1: ECKey is 65536, expected a whole number from 0 to 65535
group 1 "InputCommand", key 1: OrvaneECKey is 4294967296, expected a whole number from 0 to 4294967295
group 1 "InputCommand", key 1: OrvaneKey is 4, expected a whole number from 0 to 3
group 1 "InputCommand", key 1: OrderIndex is -1, expected a whole number from 0 to 65535
group 1 "InputCommand", key 2: ECKey is 1.5, expected a whole number from 0 to 65535
group 1 "InputCommand", key 2: OrvaneECKey is 1e+300, expected a whole number from 0 to 4294967295)");
    row("label with faults, one number twice", keyboard("LayerCommand", key(7, 0, 0) + R"(,{"ECKey":7,
             "OrvaneECKey":1,"OrvaneKey":0,"OrderIndex":0,"pECOledCfg":{"ECKey":"x","Text":""}})"),
        R"(group 1 "LayerCommand", key 2 (ECKey 7): key 1 has this ECKey already, expected one key a number
group 1 "LayerCommand", key 2 (ECKey 7), label: ECKey is "x", expected a whole number from 0 to 65535
group 1 "LayerCommand", key 2 (ECKey 7), label: missing field "OrvaneECKey", expected a whole number from 0 to 4294967295
group 1 "LayerCommand", key 2 (ECKey 7), label: unknown field "Text", expected ECKey, OrvaneECKey)");
    row("unknown group, similar letters", keyboard("Screencommand", key(1, 999, 0)),
        R"(group 1 "Screencommand": no command has this name, expected one of ScreenCommand, LayerCommand, InputCommand, PresetCommand, NumberCommand, FunctionCommand)");
    row("place twice, holes",
        keyboard(
            "PresetCommand", key(1, 1, 1) + "," + key(2, 1, 1) + "," + key(3, 2, 0) + "," + key(4, 1, 65535)),
        R"(group 1 "PresetCommand", key 2 (ECKey 2): key 1 has OrderIndex 1 already, expected one select key a place
group 1 "PresetCommand": no select key has OrderIndex 0, expected no holes
group 1 "PresetCommand": no select key has an OrderIndex from 2 to 65534, expected no holes)");
    row("a place that cannot be read is no hole",
        keyboard(
            "PresetCommand", key(1, 1, 1) + R"(,{"ECKey":2,"OrvaneECKey":1,"OrvaneKey":1,"OrderIndex":"0"})"),
        R"(group 1 "PresetCommand", key 2 (ECKey 2): OrderIndex is "0", expected a whole number from 0 to 65535)");
    row("field twice, once escaped",
        "{\"Name\":\"\\\"}\",\n \"IconName\":\"\",\"ModelId\":0,\n\"m_commands\":[], "
        "\"N\\u0061me\":\"\xC3\xBC\",\"Name\":\"\"}",
        R"(line 3, column 18: field "Name" stands twice in its object, expected once
line 3, column 34: field "Name" stands twice in its object, expected once)");
    row("long and unprintable text",
        R"({"Name":"","IconName":"","ModelId":")" + QByteArray(50, 'x')
            + R"(","m_commands":[],"\u001b[2J":0})",
        "keyboard: ModelId is \"" + QByteArray(40, 'x')
            + "\u2026\", expected a whole number from 0 to 65535\n"
              "keyboard: unknown field \"\uFFFD[2J\", expected Name, IconName, ModelId, m_commands");
}

void TestKeyboardLoader::everyFaultIsToldWithItsPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, problems);
    const KeyboardLoadResult result = loadKeyboard(json);
    QCOMPARE(problemsOf(result), QString::fromUtf8(problems));
    QVERIFY(!result);
}

void TestKeyboardLoader::aFileThatCannotBeReadIsRefused()
{
    QTemporaryDir directory;
    for (const QString& path : {directory.filePath("missing.json"), directory.path()}) {
        const QString problem = problemsOf(loadKeyboardFile(path));
        QVERIFY2(problem.startsWith(path + ": cannot be read: "), qPrintable(problem));
    }
}

void TestKeyboardLoader::brokenJsonIsToldWithLineAndColumn()
{
    const QString problem = problemsOf(loadKeyboard(readAll(examplePath).replace("1001,", "1001,\n,")));
    QVERIFY2(problem.startsWith("line 10, column 2: no valid JSON: "), qPrintable(problem));
}

void TestKeyboardLoader::whatIsNoJsonIsRefused()
{
    const QList<QByteArray> texts{
        "",
        "{\"",
        QByteArray("\0", 1),
        "[NaN]",
        "{\"ModelId\":NaN}",
        "{\"ModelId\":1e999999999}",
        "{\"ModelId\":" + QByteArray(100000, '9') + "}",
        QByteArray(1000000, '['),
        QByteArray(1000000, '{'),
        "{\"a\":" + QByteArray(1000, '[') + QByteArray(1000, ']') + "}",
        "{\"\\uD800\":\"\\uDC00\",\"\\uD800\":\"\"}",
        "{\"Name\":\"\xC3\"}",
        "{\"Name\":\"\xED\xA0\x80\"}"};
    for (const QByteArray& text : texts) {
        const KeyboardLoadResult result = loadKeyboard(text);
        QVERIFY2(!result && !result.problems.isEmpty(), text.left(40));
    }
}

void TestKeyboardLoader::aLabelsOwnNumberGoesBeforeItsKeys()
{
    // The numbers of labels and keys overlap: 2 is a label and another label's key.
    const auto two = std::make_shared<s_ECOledConfig>(s_ECOledConfig{2, 0});
    const auto three = std::make_shared<s_ECOledConfig>(s_ECOledConfig{3, 0});
    s_ECCommandConfig group;
    for (const auto& [ecKey, label] : {std::pair(2, three), std::pair(1, two), std::pair(4, decltype(two)())})
        group.m_buttons +=
            std::make_shared<s_ECButtonConfig>(s_ECButtonConfig{quint16(ecKey), 0, 1, 0, label});
    QCOMPARE(group.findECOledConfigByECKey(2), two);
    QCOMPARE(group.findECOledConfigByECKey(1), two);
    QVERIFY(!group.findECOledConfigByECKey(4));
}

void TestKeyboardLoader::aNumberIsComparedWhole()
{
    s_ECCommandConfig group;
    group.m_buttons = {nullptr, std::make_shared<s_ECButtonConfig>(s_ECButtonConfig{6, 0x10005, 2, 0, {}})};
    QVERIFY(group.findECButtonConfigByECKey(6));
    QVERIFY(!group.findECButtonConfigByECKey(0x10006));
    QCOMPARE(group.getECKeyByOrvaneECKey(5), 0xFFFFFFFFu);
}

QTEST_APPLESS_MAIN(TestKeyboardLoader)
#include "tst_keyboardloader.moc"

#include "ec/eckeyboardloader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

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

QStringList problemsOf(const KeyboardLoadResult& result)
{
    QStringList lines;
    for (const KeyboardProblem& problem : result.problems)
        lines += problem.toString();
    return lines;
}

/// The records as the JSON that they were read from.
QJsonObject toJson(const s_ECKeyboardConfig& config)
{
    QJsonArray groups;
    for (const auto& group : config.m_commands) {
        QJsonArray keys;
        for (const auto& button : group->m_buttons) {
            QJsonObject object{
                {"ECKey", button->ECKey},
                {"OrvaneECKey", static_cast<qint64>(button->OrvaneECKey)},
                {"OrvaneKey", button->OrvaneKey},
                {"OrderIndex", button->OrderIndex}};
            if (const auto& oled = button->pECOledCfg)
                object.insert(
                    "pECOledCfg",
                    QJsonObject{
                        {"ECKey", oled->ECKey}, {"OrvaneECKey", static_cast<qint64>(oled->OrvaneECKey)}});
            keys.append(object);
        }
        groups.append(QJsonObject{{"Name", group->Name}, {"m_buttons", keys}});
    }
    return {
        {"Name", config.Name},
        {"IconName", config.IconName},
        {"ModelId", config.ModelId},
        {"m_commands", groups}};
}

} // namespace

class TestKeyboardLoader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theExampleIsACompleteKeyboard();
    void theLargestGroupComesBackAsItWas();
    void whatIsAllowedLoads_data();
    void whatIsAllowedLoads();
    void everyFaultIsToldWithItsPlace_data();
    void everyFaultIsToldWithItsPlace();
    void aFileThatCannotBeReadIsRefused();
    void brokenJsonIsToldWithLineAndColumn();
    void noBytesCrashIt();
};

void TestKeyboardLoader::theExampleIsACompleteKeyboard()
{
    const KeyboardLoadResult result = loadKeyboardFile(examplePath);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(toJson(*result.config), QJsonDocument::fromJson(readAll(examplePath)).object());

    const QHash<QString, QSet<int>> codes{
        {"ScreenCommand", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 14, 15}},
        {"LayerCommand", {1, 2, 3, 4, 5, 6, 7, 8, 9}},
        {"InputCommand", {1, 2, 3}},
        {"PresetCommand", {1, 2, 3, 4, 5, 6, 9}},
        {"NumberCommand", {1, 2, 3, 4, 5}},
        {"FunctionCommand", {1, 2, 3, 4, 5, 6, 7}}};
    QSet<int> keyNumbers;
    QCOMPARE(result.config->m_commands.size(), codes.size());
    for (const auto& group : result.config->m_commands) {
        QSet<int> groupCodes;
        for (const auto& button : group->m_buttons) {
            QVERIFY2(!keyNumbers.contains(button->ECKey), qPrintable(QString::number(button->ECKey)));
            keyNumbers.insert(button->ECKey);
            groupCodes.insert(button->OrvaneKey);
        }
        QCOMPARE(groupCodes, codes.value(group->Name));
        // Turning a page down writes the label that turning up writes.
        const bool hasPages = group->Name != "NumberCommand" && group->Name != "FunctionCommand";
        if (hasPages)
            QCOMPARE(
                group->findECButtonConfigByOrvaneKey(2)->pECOledCfg->ECKey,
                group->findECButtonConfigByOrvaneKey(3)->pECOledCfg->ECKey);
    }
}

void TestKeyboardLoader::theLargestGroupComesBackAsItWas()
{
    constexpr int keyCount = 65536;
    QJsonArray keys;
    for (int i = 0; i < keyCount; ++i)
        keys.append(QJsonObject{
            {"ECKey", keyCount - 1 - i},
            {"OrvaneECKey", 4294967295.0 - i},
            {"OrvaneKey", 1},
            {"OrderIndex", i},
            {"pECOledCfg", QJsonObject{{"ECKey", i}, {"OrvaneECKey", 4294967295.0}}}});
    const QJsonObject json{
        {"Name", QString(100000, QChar(0x00FC))},
        {"IconName", ""},
        {"ModelId", 65535},
        {"m_commands", QJsonArray{QJsonObject{{"Name", "PresetCommand"}, {"m_buttons", keys}}}}};

    const KeyboardLoadResult result = loadKeyboard(QJsonDocument(json).toJson());

    QCOMPARE(problemsOf(result), QStringList());
    QVERIFY(toJson(*result.config) == json);
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
    QCOMPARE(problemsOf(loadKeyboard(json)), QStringList());
}

void TestKeyboardLoader::everyFaultIsToldWithItsPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("no object") << QByteArray("[]") << QStringList{"keyboard: is a list, expected an object"};
    QTest::newRow("empty object") << QByteArray("{}")
                                  << QStringList{
                                         R"(keyboard: missing field "Name", expected a text)",
                                         R"(keyboard: missing field "IconName", expected a text)",
                                         "keyboard: missing field \"ModelId\", expected a whole number from "
                                         "0 to 65535",
                                         R"(keyboard: missing field "m_commands", expected a list)"};
    QTest::newRow("wrong types") << QByteArray(R"({"Name":1,"IconName":null,"ModelId":"2","m_commands":{}})")
                                 << QStringList{
                                        "keyboard: Name is 1, expected a text",
                                        "keyboard: IconName is null, expected a text",
                                        "keyboard: ModelId is \"2\", expected a whole number from 0 to 65535",
                                        "keyboard: m_commands is an object, expected a list"};
    QTest::newRow("group and key no objects")
        << QByteArray(R"({"Name":"","IconName":"","ModelId":0,"m_commands":[true,
             {"Name":"InputCommand","m_buttons":[[]]}]})")
        << QStringList{
               "group 1: is true, expected an object with Name, m_buttons",
               "group 2 \"InputCommand\", key 1: is a list, expected an object with ECKey, OrvaneECKey, "
               "OrvaneKey, OrderIndex, pECOledCfg"};
    QTest::newRow("numbers out of range")
        << keyboard("InputCommand", R"({"ECKey":65536,"OrvaneECKey":4294967296,"OrvaneKey":4,"OrderIndex":-1},
             {"ECKey":1.5,"OrvaneECKey":1e300,"OrvaneKey":1,"OrderIndex":0})")
        << QStringList{
               R"(group 1 "InputCommand", key 1: ECKey is 65536, expected a whole number from 0 to 65535)",
               "group 1 \"InputCommand\", key 1: OrvaneECKey is 4294967296, expected a whole number from 0 "
               "to 4294967295",
               R"(group 1 "InputCommand", key 1: OrvaneKey is 4, expected a whole number from 0 to 3)",
               R"(group 1 "InputCommand", key 1: OrderIndex is -1, expected a whole number from 0 to 65535)",
               R"(group 1 "InputCommand", key 2: ECKey is 1.5, expected a whole number from 0 to 65535)",
               "group 1 \"InputCommand\", key 2: OrvaneECKey is 1e+300, expected a whole number from 0 to "
               "4294967295"};
    QTest::newRow("label with faults")
        << keyboard("LayerCommand", R"({"ECKey":7,"OrvaneECKey":1,"OrvaneKey":0,"OrderIndex":0,"pECOledCfg":
             {"ECKey":"x","Text":""}})")
        << QStringList{
               "group 1 \"LayerCommand\", key 1 (ECKey 7), label: unknown field \"Text\", expected ECKey, "
               "OrvaneECKey",
               "group 1 \"LayerCommand\", key 1 (ECKey 7), label: ECKey is \"x\", expected a whole number "
               "from 0 to 65535",
               "group 1 \"LayerCommand\", key 1 (ECKey 7), label: missing field \"OrvaneECKey\", expected a "
               "whole number from 0 to 4294967295"};
    QTest::newRow("one number twice, beside another fault")
        << keyboard(
               "InputCommand",
               key(7, 1, 0) + "," + key(8, 1, 1)
                   + R"(,{"ECKey":7,"OrvaneECKey":"","OrvaneKey":1,"OrderIndex":2})")
        << QStringList{
               R"(group 1 "InputCommand", key 3 (ECKey 7): key 1 has this ECKey already, expected one key a number)",
               "group 1 \"InputCommand\", key 3 (ECKey 7): OrvaneECKey is \"\", expected a whole number from "
               "0 to 4294967295"};
    QTest::newRow("unknown group, similar letters")
        << keyboard("Screencommand", key(1, 999, 0))
        << QStringList{"group 1 \"Screencommand\": no command has this name, expected one of "
                       "ScreenCommand, LayerCommand, InputCommand, PresetCommand, NumberCommand, "
                       "FunctionCommand"};
    QTest::newRow("group twice")
        << QByteArray(R"({"Name":"","IconName":"","ModelId":0,"m_commands":[
             {"Name":"InputCommand","m_buttons":[]},{"Name":"InputCommand","m_buttons":[]}]})")
        << QStringList{"group 2 \"InputCommand\": group 1 has this name already, expected one group a name"};
    QTest::newRow("place twice, holes")
        << keyboard(
               "PresetCommand",
               key(1, 1, 1) + "," + key(2, 1, 1) + "," + key(3, 2, 0) + "," + key(4, 1, 65535))
        << QStringList{
               "group 1 \"PresetCommand\", key 2 (ECKey 2): key 1 has OrderIndex 1 already, expected one "
               "select key a place",
               R"(group 1 "PresetCommand": no select key has OrderIndex 0, expected no holes)",
               "group 1 \"PresetCommand\": no select key has an OrderIndex from 2 to 65534, expected no "
               "holes"};
    QTest::newRow("a place that cannot be read is no hole")
        << keyboard(
               "PresetCommand",
               key(1, 1, 1) + R"(,{"ECKey":2,"OrvaneECKey":1,"OrvaneKey":1,"OrderIndex":"0"})")
        << QStringList{"group 1 \"PresetCommand\", key 2 (ECKey 2): OrderIndex is \"0\", expected a whole "
                       "number from 0 to 65535"};
    QTest::newRow("field twice, once escaped")
        << QByteArray("{\"Name\":\"\\\"}\",\n \"IconName\":\"\",\"ModelId\":0,\n\"m_commands\":[], "
                      "\"N\\u0061me\":\"\xC3\xBC\",\"Name\":\"\"}")
        << QStringList{
               R"(line 3, column 18: field "Name" stands twice in its object, expected once)",
               R"(line 3, column 34: field "Name" stands twice in its object, expected once)"};
    QTest::newRow("long and unprintable text")
        << QByteArray(R"({"Name":"","IconName":"","ModelId":")") + QByteArray(50, 'x')
            + QByteArray(R"(","m_commands":[],"\u001b[2J":0})")
        << QStringList{
               QStringLiteral("keyboard: unknown field \"\uFFFD[2J\", expected Name, IconName, ModelId, "
                              "m_commands"),
               QStringLiteral("keyboard: ModelId is \"%1\u2026\", expected a whole number from 0 to 65535")
                   .arg(QString(40, 'x'))};
}

void TestKeyboardLoader::everyFaultIsToldWithItsPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, problems);

    const KeyboardLoadResult result = loadKeyboard(json);

    QCOMPARE(problemsOf(result).join('\n'), problems.join('\n'));
    QVERIFY(!result);
}

void TestKeyboardLoader::aFileThatCannotBeReadIsRefused()
{
    QTemporaryDir directory;
    const QString missing = directory.filePath("missing.json");
    for (const QString& path : {missing, directory.path()}) {
        const KeyboardLoadResult result = loadKeyboardFile(path);
        QVERIFY(!result);
        QCOMPARE(result.problems.size(), 1);
        QVERIFY2(
            result.problems.first().toString().startsWith(path + ": cannot be read: "),
            qPrintable(result.problems.first().toString()));
    }
}

void TestKeyboardLoader::brokenJsonIsToldWithLineAndColumn()
{
    const QByteArray json = readAll(examplePath).replace("1001,", "1001,\n,");

    const KeyboardLoadResult result = loadKeyboard(json);

    QVERIFY(!result);
    QCOMPARE(result.problems.size(), 1);
    QCOMPARE(result.problems.first().place, QStringLiteral("line 10, column 2"));
    QVERIFY(result.problems.first().text.startsWith("no valid JSON: "));
}

void TestKeyboardLoader::noBytesCrashIt()
{
    QList<QByteArray> texts{
        "",
        " ",
        "\"",
        "{\"",
        QByteArray("\0", 1),
        "NaN",
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
    const QByteArray example = readAll(examplePath);
    std::mt19937 random(20240607); // NOLINT: the same bytes at every run
    for (int i = 0; i < 1000; ++i) {
        QByteArray text = example.left(i % 2 ? example.size() : static_cast<int>(random() % 4000));
        for (int n = 0; n < 1 + i % 5 && !text.isEmpty(); ++n)
            text[static_cast<int>(random() % text.size())] = static_cast<char>(random());
        texts.append(text);
    }
    for (const QByteArray& text : texts) {
        const KeyboardLoadResult result = loadKeyboard(text);
        QVERIFY(bool(result) == result.problems.isEmpty());
    }
    for (int i = 0; i < 16; ++i)
        QVERIFY2(!loadKeyboard(texts.at(i)), texts.at(i).left(40));
}

QTEST_APPLESS_MAIN(TestKeyboardLoader)
#include "tst_keyboardloader.moc"

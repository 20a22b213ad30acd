#include "modeltestsupport.h"

#include "showfile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;

namespace {

QByteArray exampleBytes()
{
    QFile file(QStringLiteral(EXAMPLE_SHOW));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The value with the one at the path, `devices/0/online`, replaced; an undefined one removes it.
QJsonValue edited(const QJsonValue& value, const QStringList& path, const QJsonValue& replacement)
{
    if (path.isEmpty())
        return replacement;
    const QStringList rest = path.mid(1);
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        const int index = path.first().toInt();
        if (index < array.size())
            array.replace(index, edited(array.at(index), rest, replacement));
        else
            array.append(replacement);
        return array;
    }
    QJsonObject object = value.toObject();
    const QJsonValue inner = edited(object.value(path.first()), rest, replacement);
    if (inner.isUndefined())
        object.remove(path.first());
    else
        object.insert(path.first(), inner);
    return object;
}

QByteArray withEdit(const QByteArray& json, const QString& path, const QJsonValue& replacement)
{
    const QJsonValue root = QJsonDocument::fromJson(json).object();
    return QJsonDocument(edited(root, path.split(QLatin1Char('/')), replacement).toObject()).toJson();
}

QJsonValue fragment(const char* json)
{
    return QJsonDocument::fromJson(QByteArray("[") + json + "]").array().at(0);
}

} // namespace

class TestShowFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void exampleLoadsAndRoundTrips();
    void faultIsNamedWithItsPlace_data();
    void faultIsNamedWithItsPlace();
    void allFaultsAreNamedAndNothingChanges();
    void whatIsLeftOutTakesItsDefault();
    void anyBytesAreSurvived();
    void filesThatCannotBeRead();
};

void TestShowFile::exampleLoadsAndRoundTrips()
{
    QStringList faults;
    const auto show = loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
    QVERIFY2(show.has_value(), qPrintable(faults.join(QLatin1Char('\n'))));
    MemoryModel::MemoryModel model;
    QVERIFY(model.loadFile(QStringLiteral(EXAMPLE_SHOW), faults));
    // Nothing of the file is lost on its way through the model and back.
    QCOMPARE(QJsonDocument::fromJson(model.show()), QJsonDocument::fromJson(exampleBytes()));
    QCOMPARE(model.deviceList().activedDevice().lock()->screens(6).size(), 4);
    QCOMPARE(model.deviceList().activedDevice().lock()->validInputs().size(), 14);
}

void TestShowFile::faultIsNamedWithItsPlace_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("place");
    const auto row = [](const char* path, const char* json, const char* place) {
        QTest::newRow(qPrintable(QStringLiteral("%1 = %2").arg(QLatin1String(path), QLatin1String(json))))
            << QString::fromLatin1(path) << fragment(json) << QString::fromLatin1(place);
    };
    const auto undefined = [](const char* path, const char* place) {
        QTest::newRow(qPrintable(QStringLiteral("no %1").arg(QLatin1String(path))))
            << QString::fromLatin1(path) << QJsonValue(QJsonValue::Undefined) << QString::fromLatin1(place);
    };
    row("activeDevice", "\"X\"", "activeDevice");
    row("devices", "{}", "devices");
    row("devices/0", "7", "devices[0]");
    row("extra", "1", "extra");
    undefined("devices/0/ipMacSn", "devices[0].ipMacSn");
    row("devices/0/ipMacSn", "\"\"", "devices[0].ipMacSn");
    row("devices/1/ipMacSn", "\"A\"", "devices[1].ipMacSn");
    row("devices/0/online", "1", "devices[0].online");
    row("devices/0/multiscreens", "true", "devices[0].multiscreens");
    row("devices/0/maxPresetCount", "256", "devices[0].maxPresetCount");
    row("devices/0/limits", "[]", "devices[0].limits");
    row("devices/0/limits/regularScreens", "2", "devices[0].screens");
    row("devices/0/subcards/0/id", "2", "devices[0].subcards[1].id");
    row("devices/0/subcards/0/connectors/0/capacity", "\"8K\"",
        "devices[0].subcards[0].connectors[0].capacity");
    row("devices/0/subcards/0/connectors/0/id", "2", "devices[0].subcards[0].connectors[1].id");
    row("devices/0/inputs/1/connector", "1", "devices[0].inputs[1].connector");
    row("devices/0/inputs/1/connector", "9", "devices[0].inputs[1].connector");
    row("devices/0/inputs/1/id", "1", "devices[0].inputs[1].id");
    row("devices/0/inputs/1/id", "1.5", "devices[0].inputs[1].id");
    row("devices/0/inputs/1/name", "null", "devices[0].inputs[1].name");
    row("devices/0/outputs/0/subcard", "9", "devices[0].outputs[0].subcard");
    row("devices/0/outputs/0/size", "[1920]", "devices[0].outputs[0].size");
    row("devices/0/outputs/0/size", "[1920, 0]", "devices[0].outputs[0].size");
    row("devices/0/screens/0/type", "\"MVR\"", "devices[0].screens[0].type");
    row("devices/0/screens/1/id", "1", "devices[0].screens[1].id");
    row("devices/0/screens/1/selected", "true", "devices[0].screens");
    row("devices/0/screens/0/effectSeconds", "11", "devices[0].screens[0].effectSeconds");
    row("devices/0/screens/0/effect", "\"wipe\"", "devices[0].screens[0].effect");
    row("devices/0/screens/0/outputs/1/output", "1", "devices[0].screens[0].outputs[1].output");
    row("devices/0/screens/0/outputs/1/output", "9", "devices[0].screens[0].outputs[1].output");
    row("devices/0/screens/0/outputs/1/rect", "[0, 0, 10]", "devices[0].screens[0].outputs[1].rect");
    row("devices/0/screens/0/pvw/0/window", "[0, 0, -1, 5]", "devices[0].screens[0].pvw[0].window");
    row("devices/0/screens/0/pvw/0/window", "[0, 0, 1e9, 5]", "devices[0].screens[0].pvw[0].window");
    row("devices/0/screens/0/pvw/0/input", "99", "devices[0].screens[0].pvw[0].input");
    row("devices/0/screens/0/pvw/1/id", "1", "devices[0].screens[0].pvw[1].id");
    row("devices/0/screens/0/pvw/1/type", "\"AUX\"", "devices[0].screens[0].pvw[1].type");
    row("devices/0/screens/3/pgmEdit", "true", "devices[0].screens[3].pgmEdit");
    row("devices/0/activeScreen/id", "44", "devices[0].activeScreen");
    undefined("devices/0/activeScreen/type", "devices[0].activeScreen.type");
    row("devices/0/presets/0/id", "129", "devices[0].presets[0].id");
    row("devices/0/presets/1", "{\"type\":\"PVW\",\"id\":1}", "devices[0].presets[1].id");
    row("devices/0/activePreset", "2", "devices[0].activePreset");
    row("devices/0/keypad/keys/0/buttonColor", "300", "devices[0].keypad.keys[0].buttonColor");
    row("devices/0/keypad/pvwScreens", "[-1]", "devices[0].keypad.pvwScreens[0]");
}

void TestShowFile::faultIsNamedWithItsPlace()
{
    QFETCH(QString, path);
    QFETCH(QJsonValue, value);
    QFETCH(QString, place);
    ShowRecord show = smallShow();
    show.devices[0].multiScreens = false;
    show.devices[0].presets = {{FileType::PresetPVW, 1, QStringLiteral("One"), {}}};
    show.devices[0].hasKeypad = true;
    show.devices[0].keypad.keypadArray = {{0, 0, 1, 2}};
    const QByteArray json = writeShow(show);
    QStringList faults;
    QVERIFY2(parseShow(json, faults), qPrintable(faults.join(QLatin1Char('\n'))));
    QVERIFY(!parseShow(withEdit(json, path, value), faults));
    const auto named = std::count_if(faults.cbegin(), faults.cend(), [&place](const QString& fault) {
        return fault.startsWith(place + QStringLiteral(": "));
    });
    QVERIFY2(named == 1, qPrintable(faults.join(QLatin1Char('\n'))));
}

void TestShowFile::allFaultsAreNamedAndNothingChanges()
{
    Model m;
    const QByteArray before = m.model.show();
    QByteArray json = withEdit(before, QStringLiteral("devices/0/online"), 3);
    json = withEdit(json, QStringLiteral("devices/1/screens/0/effectSeconds"), QStringLiteral("long"));
    json = withEdit(json, QStringLiteral("devices/0/inputs/0/id"), QJsonValue::Undefined);
    json =
        withEdit(json, QStringLiteral("devices/1/presets"), fragment(R"([{"type":"PVW"},{"type":"PVW"}])"));
    json = withEdit(json, QStringLiteral("activeDevice"), QStringLiteral("Z"));
    QStringList faults;
    QVERIFY(!m.model.load(json, faults));
    const QStringList places = {
        QStringLiteral("devices[0].online"), QStringLiteral("devices[0].inputs[0].id"),
        QStringLiteral("devices[1].screens[0].effectSeconds"), QStringLiteral("activeDevice"),
        QStringLiteral("devices[1].presets[0].id"), QStringLiteral("devices[1].presets[1].id"),
        // Follows from the id that is missing.
        QStringLiteral("devices[0].screens[0].pvw[0].input")};
    QCOMPARE(faults.size(), places.size());
    for (const QString& place : places)
        QVERIFY2(
            !faults.filter(place + QStringLiteral(": expected")).isEmpty()
                || !faults.filter(place + QStringLiteral(": missing")).isEmpty(),
            qPrintable(place));
    QCOMPARE(m.model.show(), before);
    QCOMPARE(m.log.names(), QStringList());

    QVERIFY(!parseShow("{\n  \"devices\": [}", faults));
    QCOMPARE(faults.size(), 1);
    QVERIFY2(faults[0].startsWith(QStringLiteral("line 2, column ")), qPrintable(faults[0]));
    QVERIFY(!parseShow("{\"devices\": [],\n \"devices\": []}", faults));
    QCOMPARE(
        faults, QStringList(QStringLiteral("line 2, column 2: expected \"devices\" once in its object")));
}

void TestShowFile::whatIsLeftOutTakesItsDefault()
{
    QStringList faults;
    const auto show =
        parseShow(R"({"devices":[{"ipMacSn":"X","screens":[{"type":"regular","id":1}]}]})", faults);
    QVERIFY2(show.has_value(), qPrintable(faults.join(QLatin1Char('\n'))));
    const DeviceRecord& device = show->devices[0];
    QCOMPARE(device.groupId, BizModel::Device::defaultDeviceGroupId);
    QVERIFY(device.online && !device.swap && !device.hasKeypad);
    QCOMPARE(device.screens[0].effectSeconds, 0.5);
    QCOMPARE(device.screens[0].uiScreenIndex, -1);
    QVERIFY(parseShow("{}", faults).has_value());
}

void TestShowFile::anyBytesAreSurvived()
{
    const QByteArray example = exampleBytes();
    QRandomGenerator random(20'26);
    QStringList faults;
    const QList<QByteArray> odd = {
        "", "null", "[]", "7", "\"\"", "{", QByteArray(10'000, '['), QByteArray(16, '\0'), "\xff\xfe{}"};
    for (const QByteArray& bytes : odd) {
        QVERIFY(!parseShow(bytes, faults));
        QVERIFY(!faults.isEmpty());
    }
    for (int i = 0; i < 300; ++i) {
        QByteArray bytes = example;
        const int changes = 1 + random.bounded(4);
        for (int j = 0; j < changes; ++j) {
            const int at = random.bounded(bytes.size());
            if (random.bounded(2))
                bytes[at] = char(random.bounded(256));
            else
                bytes.remove(at, 1 + random.bounded(40));
        }
        // Whatever comes of it is either a show that can be written and read, or has faults.
        const auto show = parseShow(bytes, faults);
        QCOMPARE(show.has_value(), faults.isEmpty());
        if (show)
            QVERIFY(parseShow(writeShow(*show), faults).has_value());
    }
}

void TestShowFile::filesThatCannotBeRead()
{
    QStringList faults;
    MemoryModel::MemoryModel model;
    QVERIFY(!model.loadFile(QStringLiteral("/nowhere/show.json"), faults));
    QCOMPARE(faults.size(), 1);
    QVERIFY(faults[0].contains(QStringLiteral("/nowhere/show.json")));
    QVERIFY(!model.loadFile(QDir::tempPath(), faults));
}

QTEST_GUILESS_MAIN(TestShowFile)
#include "tst_showfile.moc"

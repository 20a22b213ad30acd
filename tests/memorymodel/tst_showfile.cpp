#include "modeltestsupport.h"

#include "showfile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;

namespace {

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
    return QJsonDocument(edited(root, path.split('/'), replacement).toObject()).toJson();
}

QJsonValue fragment(const char* json)
{
    return QJsonDocument::fromJson(QByteArray("[") + json + "]").array().at(0);
}

} // namespace

class TestShowFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void exampleLoadsAndRoundTrips()
    {
        QStringList faults;
        MemoryModel::MemoryModel model;
        QVERIFY2(model.loadFile(EXAMPLE_SHOW, faults), qPrintable(faults.join('\n')));
        // Nothing of the file is lost on its way through the model and back.
        QFile file(EXAMPLE_SHOW);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QJsonDocument::fromJson(model.show()), QJsonDocument::fromJson(file.readAll()));

        QVERIFY(!model.loadFile("/nowhere/show.json", faults));
        QCOMPARE(faults.size(), 1);
        QVERIFY(faults[0].contains("/nowhere/show.json"));
        QVERIFY(!model.loadFile(QDir::tempPath(), faults));
    }

    void faultIsNamedWithItsPlace_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("place");
        const auto row = [](const char* path, const char* json, const char* place) {
            QTest::addRow("%s = %s", path, json) << QString(path) << fragment(json) << QString(place);
        };
        const auto undefined = [](const char* path, const char* place) {
            QTest::addRow("no %s", path)
                << QString(path) << QJsonValue(QJsonValue::Undefined) << QString(place);
        };
        row("activeDevice", "\"X\"", "activeDevice");
        row("devices", "{}", "devices");
        row("extra", "1", "extra");
        undefined("devices/0/ipMacSn", "devices[0].ipMacSn");
        row("devices/0/ipMacSn", "\"\"", "devices[0].ipMacSn");
        row("devices/1/ipMacSn", "\"A\"", "devices[1].ipMacSn");
        row("devices/0/multiscreens", "true", "devices[0].multiscreens");
        row("devices/0/limits/regularScreens", "2", "devices[0].screens");
        row("devices/0/subcards/0/connectors/0/capacity", "\"8K\"",
            "devices[0].subcards[0].connectors[0].capacity");
        row("devices/0/subcards/0/connectors/0/id", "2", "devices[0].subcards[0].connectors[1].id");
        row("devices/0/inputs/1/connector", "1", "devices[0].inputs[1].connector");
        row("devices/0/inputs/1/connector", "9", "devices[0].inputs[1].connector");
        row("devices/0/inputs/1/id", "1", "devices[0].inputs[1].id");
        row("devices/0/inputs/1/id", "1.5", "devices[0].inputs[1].id");
        row("devices/0/outputs/0/subcard", "9", "devices[0].outputs[0].subcard");
        row("devices/0/outputs/0/size", "[1920, 0]", "devices[0].outputs[0].size");
        row("devices/0/screens/1/id", "1", "devices[0].screens[1].id");
        row("devices/0/screens/1/selected", "true", "devices[0].screens");
        row("devices/0/screens/0/effectSeconds", "11", "devices[0].screens[0].effectSeconds");
        row("devices/0/screens/0/outputs/1/output", "1", "devices[0].screens[0].outputs[1].output");
        row("devices/0/screens/0/outputs/1/output", "9", "devices[0].screens[0].outputs[1].output");
        row("devices/0/screens/0/pvw/0/window", "[0, 0, -1, 5]", "devices[0].screens[0].pvw[0].window");
        row("devices/0/screens/0/pvw/0/input", "99", "devices[0].screens[0].pvw[0].input");
        row("devices/0/screens/3/pgmEdit", "true", "devices[0].screens[3].pgmEdit");
        row("devices/0/activeScreen/id", "44", "devices[0].activeScreen");
        undefined("devices/0/activeScreen/type", "devices[0].activeScreen.type");
        row("devices/0/presets/0/id", "129", "devices[0].presets[0].id");
        row("devices/0/presets/1", "{\"type\":\"PVW\",\"id\":1}", "devices[0].presets[1].id");
        row("devices/0/activePreset", "2", "devices[0].activePreset");
        row("devices/0/keypad/keys/0/buttonColor", "300", "devices[0].keypad.keys[0].buttonColor");
    }

    void faultIsNamedWithItsPlace()
    {
        QFETCH(QString, path);
        QFETCH(QJsonValue, value);
        QFETCH(QString, place);
        ShowRecord show = smallShow();
        show.devices[0].multiScreens = false;
        show.devices[0].presets = {{FileType::PresetPVW, 1, "One", {}}};
        show.devices[0].hasKeypad = true;
        show.devices[0].keypad.keypadArray = {{0, 0, 1, 2}};
        const QByteArray json = writeShow(show);
        QStringList faults;
        QVERIFY2(parseShow(json, faults), qPrintable(faults.join('\n')));
        QVERIFY(!parseShow(withEdit(json, path, value), faults));
        const auto named = std::count_if(faults.cbegin(), faults.cend(), [&place](const QString& fault) {
            return fault.startsWith(place + ": ");
        });
        QVERIFY2(named == 1, qPrintable(faults.join('\n')));
    }

    void allFaultsAreNamedAndNothingChanges()
    {
        Model m;
        const QByteArray before = m.model.show();
        QByteArray json = withEdit(before, "devices/0/online", 3);
        json = withEdit(json, "devices/1/screens/0/effectSeconds", "long");
        json = withEdit(json, "devices/0/inputs/0/id", QJsonValue::Undefined);
        json = withEdit(json, "devices/1/presets", fragment(R"([{"type":"PVW"},{"type":"PVW"}])"));
        json = withEdit(json, "activeDevice", "Z");
        QStringList faults;
        QVERIFY(!m.model.load(json, faults));
        const QStringList places = {
            "devices[0].online", "devices[0].inputs[0].id", "devices[1].screens[0].effectSeconds",
            "activeDevice", "devices[1].presets[0].id", "devices[1].presets[1].id",
            // Follows from the id that is missing.
            "devices[0].screens[0].pvw[0].input"};
        QCOMPARE(faults.size(), places.size());
        for (const QString& place : places)
            QVERIFY2(!faults.filter(place + ": ").isEmpty(), qPrintable(place));
        QCOMPARE(m.model.show(), before);
        QCOMPARE(m.log.names(), QStringList());

        for (const QByteArray& odd : {QByteArray(), QByteArray("[]"), QByteArray(10'000, '[')})
            QVERIFY(!parseShow(odd, faults) && !faults.isEmpty());
        QVERIFY(!parseShow("{\n  \"devices\": [}", faults));
        QCOMPARE(faults.size(), 1);
        QVERIFY2(faults[0].startsWith("line 2, column "), qPrintable(faults[0]));
        QVERIFY(!parseShow("{\"devices\": [],\n \"devices\": []}", faults));
        QCOMPARE(
            faults,
            QStringList("line 2, column 2: field \"devices\" stands twice in its object, expected once"));
    }
};

QTEST_GUILESS_MAIN(TestShowFile)
#include "tst_showfile.moc"

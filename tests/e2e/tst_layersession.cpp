#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has two layers in the first screen's preview, on two outputs
// of 1920 x 1080; the first layer is selected.
constexpr int FirstLayerKey = 21;
constexpr int SecondLayerKey = 22;
constexpr int FreeLayerKey = 23;
constexpr int RemoveKey = 39;
constexpr int ClearKey = 40;
constexpr int FrontKey = 41;
constexpr int FullScreenKey = 44;
constexpr int FirstInputKey = 45;
constexpr char FreeLayerLabel[] = "oled 526";

const QString Screen = "regular:1";

QByteArray led(int key, const char* look)
{
    return "led " + QByteArray::number(key) + ' ' + look;
}

/// Inputs stand on the keys by their numbers, from 1.
int inputKey(int input)
{
    return FirstInputKey + input - 1;
}

} // namespace

/// Layers and inputs worked from the console.
class LayerSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { QVERIFY(m_session->end()); }

    void freeKeyPlacesALayerOnTheNextOutput();
    void boundKeySelectsItsLayerAloneAndTurnsTheInputs();
    void inputKeyFeedsTheSelection();
    void inputKeyWithNothingSelectedSaysSo();
    void inputKeyTellsSignalAndOverload();
    void renamedInputIsRenamedOnItsKey();
    void layerIsRefusedWhileTheScreenIsTaken();
    void missingResourcesAreTold();
    void removeKeyTakesTheSelectionAway();
    void clearKeyMustBeHeldForThreeSeconds();
    void frontKeyStepsOnceWhenTapped();
    void secondQuickPressFillsTheWholeMosaic();

private:
    QJsonArray preview() { return m_session->screen(Screen).value("pvw").toArray(); }
    QJsonObject layer(int id);

    std::unique_ptr<Session> m_session;
    Host* m_host = nullptr;
    Console* m_console = nullptr;
};

void LayerSessionTest::init()
{
    m_session = std::make_unique<Session>();
    m_host = &m_session->host;
    m_console = &m_session->console;
    QVERIFY(m_session->start());
    QVERIFY(m_console->expect(led(FirstLayerKey, "green")));
    QVERIFY(m_console->expect(led(inputKey(14), "off")));
}

QJsonObject LayerSessionTest::layer(int id)
{
    const QJsonArray layers = preview();
    for (const QJsonValue& one : layers) {
        if (one.toObject().value("id") == id)
            return one.toObject();
    }
    return {};
}

void LayerSessionTest::freeKeyPlacesALayerOnTheNextOutput()
{
    m_console->tap(FreeLayerKey);
    QVERIFY(m_console->expect(led(FreeLayerKey, "yellow")));
    QVERIFY(m_console->expect(QByteArray(FreeLayerLabel) + " \"Layer 3\""));
    // Two layers are there: it is the first output's turn again, where one stands already.
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 3, PatienceMs);
    const QJsonArray window = layer(3).value("window").toArray();
    QCOMPARE(window.at(0).toInt(), 60);
    QCOMPARE(window.at(1).toInt(), 60);
    QCOMPARE(layer(3).value("input").toInt(), 1); // the first that is single-link and has a signal
}

void LayerSessionTest::boundKeySelectsItsLayerAloneAndTurnsTheInputs()
{
    QVERIFY(m_console->expect(led(inputKey(2), "green")));
    m_console->tap(SecondLayerKey);
    QVERIFY(m_console->expect(led(SecondLayerKey, "green")));
    QVERIFY(m_console->expect(led(FirstLayerKey, "yellow")));
    QVERIFY(m_console->expect(led(inputKey(12), "green")));
    QVERIFY(m_console->expect(led(inputKey(2), "yellow")));
    m_console->tap(SecondLayerKey); // does not deselect
    QVERIFY(m_console->expect(led(SecondLayerKey, "green for 100")));
}

void LayerSessionTest::inputKeyFeedsTheSelection()
{
    m_console->tap(inputKey(3));
    QVERIFY(m_console->expect(led(inputKey(3), "green")));
    QVERIFY(m_console->expect(led(inputKey(2), "yellow")));
    QTRY_COMPARE_WITH_TIMEOUT(layer(1).value("input").toInt(), 3, PatienceMs);
    QCOMPARE(layer(2).value("input").toInt(), 12); // not selected
}

void LayerSessionTest::inputKeyWithNothingSelectedSaysSo()
{
    QVERIFY(m_host->hasDone("selectLayers", {{"screen", Screen}, {"layers", QJsonArray{}}}));
    QVERIFY(m_console->expect(led(FirstLayerKey, "yellow")));
    m_console->tap(inputKey(3));
    QVERIFY(m_host->tells(
        "statusBarMessage", {{"type", "warning"}, {"text", "Please select a layer first."}, {"ms", 3000}}));
    QCOMPARE(layer(1).value("input").toInt(), 2);
}

void LayerSessionTest::inputKeyTellsSignalAndOverload()
{
    const auto set = [this](const char* what, int input, bool on) {
        return m_host->hasDone(what, {{"input", input}, {"on", on}});
    };
    QVERIFY(m_console->expect(led(inputKey(2), "green"))); // feeds the selected layer
    QVERIFY(set("setSignal", 2, false));
    QVERIFY(m_console->expect(led(inputKey(2), "red")));
    QVERIFY(set("setSignal", 2, true));
    QVERIFY(m_console->expect(led(inputKey(2), "green")));
    QVERIFY(set("setOverload", 2, true));
    QVERIFY(m_console->expect(led(inputKey(2), "red")));

    QVERIFY(m_console->expect(led(inputKey(3), "yellow"))); // feeds nothing
    QVERIFY(set("setOverload", 3, true));
    QVERIFY(m_console->expect(led(inputKey(3), "orange")));
    QVERIFY(set("setSignal", 3, false));
    QVERIFY(m_console->expect(led(inputKey(3), "off")));
}

void LayerSessionTest::renamedInputIsRenamedOnItsKey()
{
    QVERIFY(m_console->expect("oled 545 \"Camera 3\""));
    QVERIFY(m_host->hasDone("renameInput", {{"input", 3}, {"name", "Drone"}}));
    QVERIFY(m_console->expect("oled 545 \"Drone\""));

    // While its page is not shown the key belongs to others.
    m_console->tap(62);
    QVERIFY(m_console->expect("oled 559 \"Page 2\""));
    QVERIFY(m_console->expect("oled 545 \"\""));
    QVERIFY(m_host->hasDone("renameInput", {{"input", 3}, {"name", "Crane"}}));
    QVERIFY(m_console->expect("oled 545 \"\" for 100"));
    m_console->tap(61);
    QVERIFY(m_console->expect("oled 545 \"Crane\""));
}

void LayerSessionTest::layerIsRefusedWhileTheScreenIsTaken()
{
    QVERIFY(m_host->hasDone("setScreenState", {{"screen", Screen}, {"state", "taking"}}));
    m_console->tap(FreeLayerKey);
    QVERIFY(m_host->tells(
        "statusBarMessage",
        {{"type", "error"},
         {"text", "The current operation cannot be completed during the screen taking."}}));
    QCOMPARE(preview().size(), 2);
}

void LayerSessionTest::missingResourcesAreTold()
{
    QVERIFY(m_host->hasDone("fail", {{"operation", "CheckOperationResources"}, {"always", true}}));
    m_console->tap(FreeLayerKey);
    QVERIFY(m_host->tells("statusBarMessage", {{"type", "warning"}, {"text", "Not enough resources."}}));
    m_console->tap(inputKey(3));
    QVERIFY(m_host->tells("statusBarMessage", {{"type", "warning"}, {"text", "Not enough resources."}}));
    QCOMPARE(preview().size(), 2);
    QCOMPARE(layer(1).value("input").toInt(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_session->screen(Screen).value("state").toString(), QString("normal"), PatienceMs);
}

void LayerSessionTest::removeKeyTakesTheSelectionAway()
{
    m_console->tap(RemoveKey);
    QVERIFY(m_console->expect(led(RemoveKey, "off")));
    QVERIFY(m_console->expect(led(FirstLayerKey, "off")));
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 1, PatienceMs);
    QVERIFY(layer(1).isEmpty());
}

void LayerSessionTest::clearKeyMustBeHeldForThreeSeconds()
{
    m_console->writeLine("hold " + QByteArray::number(ClearKey) + " 500");
    QVERIFY(m_console->expect(led(ClearKey, "off")));
    QCOMPARE(preview().size(), 2);
    m_console->writeLine("press " + QByteArray::number(ClearKey));
    QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Cleaning layers,please wait..."}}));
    QVERIFY(m_host->tells("waitingDialogHidden"));
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 0, PatienceMs);
    QVERIFY(m_console->expect(led(ClearKey, "off"))); // while it is still down
    QVERIFY(m_console->expect(led(FirstLayerKey, "off")));
    m_console->writeLine("release " + QByteArray::number(ClearKey));
}

void LayerSessionTest::frontKeyStepsOnceWhenTapped()
{
    QCOMPARE(preview().at(0).toObject().value("id").toInt(), 1);
    m_console->tap(FrontKey);
    QVERIFY(m_console->expect(led(FrontKey, "off")));
    QTRY_COMPARE_WITH_TIMEOUT(preview().at(1).toObject().value("id").toInt(), 1, PatienceMs);
}

void LayerSessionTest::secondQuickPressFillsTheWholeMosaic()
{
    m_console->tap(SecondLayerKey);
    QVERIFY(m_console->expect(led(SecondLayerKey, "green")));
    m_console->tap(FullScreenKey);
    QTRY_COMPARE_WITH_TIMEOUT(
        layer(2).value("window"), QJsonValue(QJsonArray({1920, 0, 1920, 1080})), PatienceMs); // its output
    m_console->tap(FullScreenKey);
    m_console->tap(FullScreenKey);
    QTRY_COMPARE_WITH_TIMEOUT(
        layer(2).value("window"), QJsonValue(QJsonArray({0, 0, 3840, 1080})), PatienceMs);
}

QTEST_GUILESS_MAIN(LayerSessionTest)
#include "tst_layersession.moc"

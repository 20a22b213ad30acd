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

const QString Screen = "regular:1";

/// Inputs stand on the keys by their numbers, from 1.
int inputKey(int input)
{
    return FirstInputKey + input - 1;
}

} // namespace

/// Layers and inputs worked from the console.
class LayerSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        SessionTest::init();
        QVERIFY(lights(FirstLayerKey, "green"));
        QVERIFY(lights(inputKey(14), "off"));
    }

    void freeKeyPlacesALayerOnTheNextOutput()
    {
        tap(FreeLayerKey);
        QVERIFY(lights(FreeLayerKey, "yellow"));
        QVERIFY(m_console->expect("oled 526 \"Layer 3\""));
        // Two layers are there: it is the first output's turn again, where one stands already.
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 3, PatienceMs);
        const QJsonArray window = layer(3).value("window").toArray();
        QVERIFY(window.at(0) == 60 && window.at(1) == 60);
        QCOMPARE(layer(3).value("input").toInt(), 1); // the first that is single-link and has a signal
    }

    void boundKeySelectsItsLayerAloneAndTurnsTheInputs()
    {
        QVERIFY(lights(inputKey(2), "green"));
        tap(SecondLayerKey);
        QVERIFY(lights(SecondLayerKey, "green"));
        QVERIFY(lights(FirstLayerKey, "yellow"));
        QVERIFY(lights(inputKey(12), "green"));
        QVERIFY(lights(inputKey(2), "yellow"));
        tap(SecondLayerKey); // does not deselect
        QVERIFY(lights(SecondLayerKey, "green for 100"));
    }

    void inputKeyFeedsTheSelection()
    {
        tap(inputKey(3));
        QVERIFY(lights(inputKey(3), "green"));
        QVERIFY(lights(inputKey(2), "yellow"));
        QTRY_COMPARE_WITH_TIMEOUT(layer(1).value("input").toInt(), 3, PatienceMs);
        QCOMPARE(layer(2).value("input").toInt(), 12); // not selected

        QVERIFY(isDone("selectLayers", {{"screen", Screen}, {"layers", QJsonArray{}}}));
        QVERIFY(lights(FirstLayerKey, "yellow"));
        tap(inputKey(4));
        QVERIFY(m_host->tells(
            "statusBarMessage",
            {{"type", "warning"}, {"text", "Please select a layer first."}, {"ms", 3000}}));
        QCOMPARE(layer(1).value("input").toInt(), 3);
    }

    void inputKeyTellsSignalAndOverload()
    {
        const auto set = [this](const char* what, int input, bool on) {
            return isDone(what, {{"input", input}, {"on", on}});
        };
        QVERIFY(lights(inputKey(2), "green")); // feeds the selected layer
        QVERIFY(set("setSignal", 2, false));
        QVERIFY(lights(inputKey(2), "red"));
        QVERIFY(set("setSignal", 2, true));
        QVERIFY(lights(inputKey(2), "green"));
        QVERIFY(set("setOverload", 2, true));
        QVERIFY(lights(inputKey(2), "red"));

        QVERIFY(lights(inputKey(3), "yellow")); // feeds nothing
        QVERIFY(set("setOverload", 3, true));
        QVERIFY(lights(inputKey(3), "orange"));
        QVERIFY(set("setSignal", 3, false));
        QVERIFY(lights(inputKey(3), "off"));
    }

    void renamedInputIsRenamedOnItsKey()
    {
        QVERIFY(m_console->expect("oled 545 \"Camera 3\""));
        QVERIFY(isDone("renameInput", {{"input", 3}, {"name", "Drone"}}));
        QVERIFY(m_console->expect("oled 545 \"Drone\""));

        // While its page is not shown the key belongs to others.
        tap(62);
        QVERIFY(m_console->expect("oled 559 \"Page 2\""));
        QVERIFY(m_console->expect("oled 545 \"\""));
        QVERIFY(isDone("renameInput", {{"input", 3}, {"name", "Crane"}}));
        QVERIFY(m_console->expect("oled 545 \"\" for 100"));
        tap(61);
        QVERIFY(m_console->expect("oled 545 \"Crane\""));
    }

    void missingResourcesAndARunningTakeAreTold()
    {
        QVERIFY(isDone("fail", {{"operation", "CheckOperationResources"}, {"always", true}}));
        tap(FreeLayerKey);
        const QJsonObject notice = {{"type", "warning"}, {"text", "Not enough resources."}};
        QVERIFY(m_host->tells("statusBarMessage", notice));
        tap(inputKey(3));
        QVERIFY(m_host->tells("statusBarMessage", notice));
        QCOMPARE(layer(1).value("input").toInt(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(screen(Screen).value("state").toString(), QString("normal"), PatienceMs);

        QVERIFY(isDone("setScreenState", {{"screen", Screen}, {"state", "taking"}}));
        tap(FreeLayerKey);
        QVERIFY(m_host->tells(
            "statusBarMessage",
            {{"type", "error"},
             {"text", "The current operation cannot be completed during the screen taking."}}));
        QCOMPARE(preview().size(), 2);
    }

    void frontKeyStepsOnceWhenTapped()
    {
        QCOMPARE(preview().at(0).toObject().value("id").toInt(), 1);
        tap(FrontKey);
        QVERIFY(lights(FrontKey, "off"));
        QTRY_COMPARE_WITH_TIMEOUT(preview().at(1).toObject().value("id").toInt(), 1, PatienceMs);
    }

    void removeKeyTakesTheSelectionAway()
    {
        tap(RemoveKey);
        QVERIFY(lights(RemoveKey, "off"));
        QVERIFY(lights(FirstLayerKey, "off"));
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 1, PatienceMs);
        QVERIFY(layer(1).isEmpty());
    }

    void clearKeyMustBeHeldForThreeSeconds()
    {
        hold(ClearKey, 500);
        QVERIFY(lights(ClearKey, "off"));
        QCOMPARE(preview().size(), 2);
        press(ClearKey);
        QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Cleaning layers,please wait..."}}));
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 0, PatienceMs);
        QVERIFY(lights(ClearKey, "off")); // while it is still down
        QVERIFY(lights(FirstLayerKey, "off"));
    }

    void secondQuickPressFillsTheWholeMosaic()
    {
        tap(SecondLayerKey);
        QVERIFY(lights(SecondLayerKey, "green"));
        tap(FullScreenKey); // its output
        QTRY_COMPARE_WITH_TIMEOUT(
            layer(2).value("window"), QJsonValue(QJsonArray({1920, 0, 1920, 1080})), PatienceMs);
        tap(FullScreenKey);
        tap(FullScreenKey);
        QTRY_COMPARE_WITH_TIMEOUT(
            layer(2).value("window"), QJsonValue(QJsonArray({0, 0, 3840, 1080})), PatienceMs);
    }

private:
    QJsonArray preview() { return screen(Screen).value("pvw").toArray(); }
    QJsonObject layer(int id)
    {
        for (const QJsonValue& one : preview()) {
            if (one.toObject().value("id") == id)
                return one.toObject();
        }
        return {};
    }
};

QTEST_GUILESS_MAIN(LayerSessionTest)
#include "tst_layersession.moc"

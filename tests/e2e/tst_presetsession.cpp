#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has presets in the slots 1 (active), 2, 12 and 20.
constexpr int FirstPresetKey = 63;
constexpr int ClearKey = 90;
constexpr int SaveKey = 91;
constexpr int LoadTargetKey = 92;
constexpr int SaveDataKey = 107;
constexpr int SourceKey = 110;
constexpr int CopyKey = 111;
constexpr int MirrorKey = 112;
/// The on-screen console reports the application's numbers, from here on.
constexpr int OnScreenKeys = 0xFF0000 + 1000;

int presetKey(int slot)
{
    return FirstPresetKey + slot - 1;
}

} // namespace

/// Presets and the function keys worked from the console.
class PresetSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        SessionTest::init();
        QVERIFY(lights(presetKey(1), "green"));
        QVERIFY(lights(presetKey(2), "yellow"));
        QVERIFY(lights(presetKey(3), "off"));
    }

    void saveKeyStoresThePreviewOnTheNextPresetKey()
    {
        tap(SaveKey);
        QVERIFY(lights(SaveKey, "yellow flashing"));
        tap(presetKey(3));
        QVERIFY(lights(presetKey(3), "green"));
        QVERIFY(lights(presetKey(1), "yellow"));
        QVERIFY(lights(SaveKey, "off"));
        QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 6, PatienceMs);
        QCOMPARE(m_host->command("presets").value("mode").toString(), QString("none"));

        tap(SaveKey); // the key's mode ends with a second press
        QVERIFY(lights(SaveKey, "yellow"));
        tap(SaveKey);
        QVERIFY(lights(SaveKey, "off"));
        QCOMPARE(presets().size(), 6);
    }

    void presetKeyLoadsItsPreset()
    {
        tap(presetKey(2));
        QVERIFY(lights(presetKey(2), "green"));
        QVERIFY(lights(presetKey(1), "yellow"));
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 2, PatienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(preview().at(0).toObject().value("input").toInt(), 1, PatienceMs);
        QCOMPARE(preview().at(1).toObject().value("input").toInt(), 3);
        tap(presetKey(5)); // nothing is stored there
        QVERIFY(m_host->waitForLog("Actived preset is null"));
        QVERIFY(lights(presetKey(2), "green for 100"));
    }

    void onScreenClearKeyAsks()
    {
        const auto asks = [this] {
            press(OnScreenKeys + ClearKey);
            return m_host->tells(
                "messageBox",
                {{"type", "question"}, {"text", "Are you sure you want to delete all the presets?"}});
        };
        QVERIFY(asks());
        QVERIFY(lights(ClearKey, "green"));
        QVERIFY(isDone("answerMessageBox", {{"button", "no"}}));
        QVERIFY(lights(ClearKey, "off"));
        QCOMPARE(presets().size(), 5);
        QVERIFY(asks());
        QVERIFY(isDone("answerMessageBox", {{"button", "yes"}}));
        QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 0, PatienceMs);
        QVERIFY(lights(ClearKey, "off"));
    }

    void loadTargetIsAskedForOnce()
    {
        QVERIFY(m_console->expect("oled 585 \"Load to PVW\""));
        tap(LoadTargetKey);
        QVERIFY(m_host->tells(
            "messageBox",
            {{"type", "question"}, {"text", "The preset will be directly loaded to PGM. Continue?"}}));
        QVERIFY(isDone("answerMessageBox", {{"button", "yes"}}));
        QVERIFY(lights(LoadTargetKey, "red"));
        QVERIFY(m_console->expect("oled 585 \"Load to PGM\""));
        QVERIFY(isDone("setLanguage", {{"language", "de"}}));
        QVERIFY(m_console->expect("oled 585 \"Nach PGM laden\""));
        QVERIFY(m_console->expect("oled 584 \"Seite 1\""));
        tap(LoadTargetKey); // back without asking
        QVERIFY(lights(LoadTargetKey, "off"));
        QVERIFY(m_console->expect("oled 585 \"Nach PVW laden\""));
    }

    void saveDataKeyWritesTheShowOrTellsThatItCannot()
    {
        QVERIFY(isDone("renameScreen", {{"screen", "regular:1"}, {"name", "Saved wall"}}));
        tap(SaveDataKey);
        QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Saving device data, please wait."}}));
        QVERIFY(m_host->tells("waitingDialogHidden"));
        QVERIFY(m_host->tells("messageBox", {{"type", "information"}, {"text", "save data successed."}}));
        // The box holds the console up until it is closed; so can the keypad.
        tap(presetKey(2));
        QVERIFY(m_host->waitForLog("now there is an modal window."));
        tap(103);
        QTRY_VERIFY_WITH_TIMEOUT(!m_host->command("state").value("modal").toBool(), PatienceMs);

        QVERIFY(isDone("loadShow", {{"file", showFile()}}));
        QVERIFY(m_console->expect("oled 512 \"Saved wall\""));

        QVERIFY(isDone("fail", {{"operation", "AsyncSaveDeviceData"}}));
        tap(SaveDataKey);
        QVERIFY(m_host->tells("messageBox", {{"type", "warning"}, {"text", "save data failure."}}));
        QVERIFY(m_host->waitForLog("Save device data has failed."));
    }

    void sourceKeySwitchesTheMonitor()
    {
        m_console->writeLine("dvi 0 1");
        QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", false}}));
        QVERIFY(lights(SourceKey, "green"));
        tap(SourceKey);
        QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", true}}));
        QVERIFY(m_console->expect("source 1"));
        QVERIFY(lights(SourceKey, "yellow"));
        tap(SourceKey);
        QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", false}}));
        QVERIFY(m_console->expect("source 0"));
        QVERIFY(lights(SourceKey, "green"));
        // The signal is lost: the monitor shows the console's own picture.
        QVERIFY(isDone("reportDVISignal", {{"index", 0}, {"on", false}}));
        QVERIFY(m_console->expect("source 1"));
        QVERIFY(lights(SourceKey, "off"));
    }

    void copyKeysCopyTheSelection()
    {
        const QJsonArray before = preview();
        tap(CopyKey);
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), before.size() + 1, PatienceMs);
        QVERIFY(lights(CopyKey, "off"));
        QVERIFY(isDone("selectLayers", {{"screen", "regular:1"}, {"layers", QJsonArray{2}}}));
        tap(MirrorKey);
        QTRY_COMPARE_WITH_TIMEOUT(preview().size(), before.size() + 2, PatienceMs);
        const QJsonArray source = before.at(1).toObject().value("window").toArray();
        const QJsonArray mirrored = preview().last().toObject().value("window").toArray();
        QCOMPARE(mirrored.at(0).toInt(), 3840 - source.at(0).toInt() - source.at(2).toInt());
        QCOMPARE(mirrored.at(2), source.at(2));
    }

private:
    QJsonArray presets() { return m_host->command("presets").value("presets").toArray(); }
    QJsonArray preview() { return screen("regular:1").value("pvw").toArray(); }
};

QTEST_GUILESS_MAIN(PresetSessionTest)
#include "tst_presetsession.moc"

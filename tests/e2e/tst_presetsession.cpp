#include "program.h"

#include <QJsonArray>
#include <QTest>

namespace {

// Keys of the example keyboard. The example show has presets in the slots 1 (active), 2, 12 and 20.
constexpr int FirstPresetKey = 63;
constexpr int RemoveKey = 89;
constexpr int ClearKey = 90;
constexpr int SaveKey = 91;
constexpr int LoadTargetKey = 92;
constexpr int SaveDataKey = 107;
constexpr int LockTBarKey = 108;
constexpr int LockKeypadKey = 109;
constexpr int SourceKey = 110;
constexpr int CopyKey = 111;
constexpr int MirrorKey = 112;
constexpr char LoadTargetLabel[] = "oled 585";
/// The on-screen console reports the application's number of a key, from here on.
constexpr int VirtualKeys = 0xFF0000;
constexpr int ApplicationNumberOffset = 1000;

QByteArray led(int key, const char* look)
{
    return "led " + QByteArray::number(key) + ' ' + look;
}

int presetKey(int slot)
{
    return FirstPresetKey + slot - 1;
}

QByteArray hold(int key, int ms)
{
    return "hold " + QByteArray::number(key) + ' ' + QByteArray::number(ms);
}

} // namespace

/// Presets and the function keys worked from the console.
class PresetSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { QVERIFY(m_session->end()); }

    void saveKeyStoresThePreviewOnTheNextPresetKey();
    void presetKeyLoadsItsPreset();
    void presetKeyWaitsForARunningTake();
    void removeKeyRemovesTheNextPreset();
    void clearKeyMustBeHeldForThreeSeconds();
    void onScreenClearKeyAsks();
    void loadTargetIsAskedForOnce();
    void keysShowWhatTheApplicationDoes();
    void saveDataKeyWritesTheShowOrTellsThatItCannot();
    void heldKeyLocksTheTBarAndFreesItAgain();
    void heldKeyLocksTheKeypadUntilTheApplicationFreesIt();
    void sourceKeySwitchesTheMonitor();
    void copyKeysCopyTheSelection();

private:
    QJsonArray presets() { return m_host->command("presets").value("presets").toArray(); }
    QJsonArray preview() { return m_session->screen("regular:1").value("pvw").toArray(); }
    bool lights(int key, const char* look) { return m_console->expect(led(key, look)); }

    std::unique_ptr<Session> m_session;
    Host* m_host = nullptr;
    Console* m_console = nullptr;
};

void PresetSessionTest::init()
{
    m_session = std::make_unique<Session>();
    m_host = &m_session->host;
    m_console = &m_session->console;
    QVERIFY(m_session->start());
    QVERIFY(lights(presetKey(1), "green"));
    QVERIFY(lights(presetKey(2), "yellow"));
    QVERIFY(lights(presetKey(3), "off"));
}

void PresetSessionTest::saveKeyStoresThePreviewOnTheNextPresetKey()
{
    m_console->tap(SaveKey);
    QVERIFY(lights(SaveKey, "yellow flashing"));
    m_console->tap(presetKey(3));
    QVERIFY(lights(presetKey(3), "green"));
    QVERIFY(lights(presetKey(1), "yellow"));
    QVERIFY(lights(SaveKey, "off"));
    QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 5, PatienceMs);
    QCOMPARE(m_host->command("presets").value("mode").toString(), QString("none"));

    m_console->tap(SaveKey); // the key's mode ends with a second press
    QVERIFY(lights(SaveKey, "yellow"));
    m_console->tap(SaveKey);
    QVERIFY(lights(SaveKey, "off"));
    QCOMPARE(presets().size(), 5);
}

void PresetSessionTest::presetKeyLoadsItsPreset()
{
    m_console->tap(presetKey(2));
    QVERIFY(lights(presetKey(2), "green"));
    QVERIFY(lights(presetKey(1), "yellow"));
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), 2, PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(preview().at(0).toObject().value("input").toInt(), 1, PatienceMs);
    QCOMPARE(preview().at(1).toObject().value("input").toInt(), 3);
    m_console->tap(presetKey(5)); // nothing is stored there
    QVERIFY(m_host->waitForLog("Actived preset is null"));
    QVERIFY(lights(presetKey(2), "green for 100"));
}

void PresetSessionTest::presetKeyWaitsForARunningTake()
{
    m_console->tap(15); // one second
    m_console->tap(presetKey(2));
    QTRY_COMPARE_WITH_TIMEOUT(
        m_session->screen("regular:1").value("state").toString(), QString("normal"), PatienceMs);
    QVERIFY(lights(presetKey(1), "green for 200"));
    QVERIFY(lights(presetKey(2), "yellow"));
}

void PresetSessionTest::removeKeyRemovesTheNextPreset()
{
    m_console->tap(RemoveKey);
    QVERIFY(lights(RemoveKey, "yellow flashing"));
    m_console->tap(presetKey(12));
    QVERIFY(lights(presetKey(12), "off"));
    QVERIFY(lights(RemoveKey, "off"));
    QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 3, PatienceMs);
}

void PresetSessionTest::clearKeyMustBeHeldForThreeSeconds()
{
    m_console->writeLine(hold(ClearKey, 500));
    QVERIFY(lights(ClearKey, "off"));
    QCOMPARE(presets().size(), 4);
    m_console->writeLine("press " + QByteArray::number(ClearKey));
    QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Cleaning presets,please wait..."}}));
    QVERIFY(m_host->tells("waitingDialogHidden"));
    QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 0, PatienceMs);
    for (const int slot : {1, 12, 20})
        QVERIFY(lights(presetKey(slot), "off"));
    QVERIFY(lights(ClearKey, "off"));
    m_console->writeLine("release " + QByteArray::number(ClearKey));
}

void PresetSessionTest::onScreenClearKeyAsks()
{
    const QByteArray press = "press " + QByteArray::number(VirtualKeys + ApplicationNumberOffset + ClearKey);
    const auto asks = [&] {
        m_console->writeLine(press);
        return m_host->tells(
            "messageBox",
            {{"type", "question"}, {"text", "Are you sure you want to delete all the presets?"}});
    };
    QVERIFY(asks());
    QVERIFY(lights(ClearKey, "green"));
    QVERIFY(m_host->hasDone("answerMessageBox", {{"button", "no"}}));
    QVERIFY(lights(ClearKey, "off"));
    QCOMPARE(presets().size(), 4);
    QVERIFY(asks());
    QVERIFY(m_host->hasDone("answerMessageBox", {{"button", "yes"}}));
    QTRY_COMPARE_WITH_TIMEOUT(presets().size(), 0, PatienceMs);
    QVERIFY(lights(ClearKey, "off"));
}

void PresetSessionTest::loadTargetIsAskedForOnce()
{
    QVERIFY(m_console->expect(QByteArray(LoadTargetLabel) + " \"Load to PVW\""));
    m_console->tap(LoadTargetKey);
    QVERIFY(m_host->tells(
        "messageBox",
        {{"type", "question"}, {"text", "The preset will be directly loaded to PGM. Continue?"}}));
    QVERIFY(m_host->hasDone("answerMessageBox", {{"button", "yes"}}));
    QVERIFY(lights(LoadTargetKey, "red"));
    QVERIFY(m_console->expect(QByteArray(LoadTargetLabel) + " \"Load to PGM\""));
    QVERIFY(m_host->hasDone("setLanguage", {{"language", "de"}}));
    QVERIFY(m_console->expect(QByteArray(LoadTargetLabel) + " \"Nach PGM laden\""));
    QVERIFY(m_console->expect("oled 584 \"Seite 1\""));
    m_console->tap(LoadTargetKey); // back without asking
    QVERIFY(lights(LoadTargetKey, "off"));
    QVERIFY(m_console->expect(QByteArray(LoadTargetLabel) + " \"Nach PVW laden\""));
}

void PresetSessionTest::keysShowWhatTheApplicationDoes()
{
    QVERIFY(m_host->hasDone("renamePreset", {{"slot", 12}, {"name", "Finale"}}));
    QVERIFY(m_console->expect("oled 571 \"Finale\""));
    QVERIFY(m_host->hasDone("addPreset", {{"slot", 3}}));
    QVERIFY(lights(presetKey(3), "yellow"));
    QVERIFY(m_host->hasDone("activatePreset", {{"slot", 3}}));
    QVERIFY(lights(presetKey(3), "green"));
    QVERIFY(lights(presetKey(1), "yellow"));
    QVERIFY(m_host->hasDone("removePreset", {{"slot", 3}}));
    QVERIFY(lights(presetKey(3), "off"));
    QVERIFY(m_host->hasDone("clearPresets"));
    QVERIFY(lights(presetKey(20), "off"));
    QVERIFY(!m_host->hasDone("coverPreset", {{"slot", 12}}));
}

void PresetSessionTest::saveDataKeyWritesTheShowOrTellsThatItCannot()
{
    QVERIFY(m_host->hasDone("renameScreen", {{"screen", "regular:1"}, {"name", "Saved wall"}}));
    m_console->tap(SaveDataKey);
    QVERIFY(m_host->tells("waitingDialogShown", {{"text", "Saving device data, please wait."}}));
    QVERIFY(m_host->tells("waitingDialogHidden"));
    QVERIFY(m_host->tells("messageBox", {{"type", "information"}, {"text", "save data successed."}}));
    // The box holds the console up until it is closed; so can the keypad.
    m_console->tap(presetKey(2));
    QVERIFY(m_host->waitForLog("now there is an modal window."));
    m_console->tap(103);
    QTRY_VERIFY_WITH_TIMEOUT(!m_host->command("state").value("modal").toBool(), PatienceMs);

    QVERIFY(m_host->hasDone("loadShow", {{"file", m_session->showFile()}}));
    QVERIFY(m_console->expect("oled 512 \"Saved wall\""));

    QVERIFY(m_host->hasDone("fail", {{"operation", "AsyncSaveDeviceData"}}));
    m_console->tap(SaveDataKey);
    QVERIFY(m_host->tells("messageBox", {{"type", "warning"}, {"text", "save data failure."}}));
    QVERIFY(m_host->waitForLog("Save device data has failed."));
}

void PresetSessionTest::heldKeyLocksTheTBarAndFreesItAgain()
{
    m_console->writeLine(hold(LockTBarKey, 500));
    QVERIFY(lights(LockTBarKey, "off"));
    QVERIFY(m_console->expect("lock tbar off"));
    m_console->writeLine(hold(LockTBarKey, 2100));
    QVERIFY(m_console->expect("lock tbar on"));
    QVERIFY(lights(LockTBarKey, "green"));
    QVERIFY(m_host->tells("tbarLocked", {{"locked", true}}));
    m_console->writeLine(hold(LockTBarKey, 2100));
    QVERIFY(m_console->expect("lock tbar off"));
    QVERIFY(lights(LockTBarKey, "off"));
}

void PresetSessionTest::heldKeyLocksTheKeypadUntilTheApplicationFreesIt()
{
    m_console->writeLine(hold(LockKeypadKey, 2100));
    QVERIFY(m_console->expect("lock keypad on"));
    QVERIFY(lights(LockKeypadKey, "green"));
    QVERIFY(m_host->tells("keyboardLocked", {{"locked", true}}));
    m_console->tap(presetKey(2));
    QVERIFY(m_host->waitForLog("now the keypad is locked."));
    QVERIFY(m_host->hasDone("unlockKeypad"));
    QVERIFY(lights(LockKeypadKey, "off"));
    m_console->tap(presetKey(2));
    QVERIFY(lights(presetKey(2), "green"));
}

void PresetSessionTest::sourceKeySwitchesTheMonitor()
{
    m_console->writeLine("dvi 0 1");
    QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", false}}));
    QVERIFY(lights(SourceKey, "green"));
    m_console->tap(SourceKey);
    QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", true}}));
    QVERIFY(m_console->expect("source 1"));
    QVERIFY(lights(SourceKey, "yellow"));
    m_console->tap(SourceKey);
    QVERIFY(m_host->tells("propertyPopupVisible", {{"visible", false}}));
    QVERIFY(m_console->expect("source 0"));
    QVERIFY(lights(SourceKey, "green"));
    // The signal is lost: the monitor shows the console's own picture.
    QVERIFY(m_host->hasDone("reportDVISignal", {{"index", 0}, {"on", false}}));
    QVERIFY(m_console->expect("source 1"));
    QVERIFY(lights(SourceKey, "off"));
}

void PresetSessionTest::copyKeysCopyTheSelection()
{
    const QJsonArray before = preview();
    m_console->tap(CopyKey);
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), before.size() + 1, PatienceMs);
    QVERIFY(lights(CopyKey, "off"));
    QVERIFY(m_host->hasDone("selectLayers", {{"screen", "regular:1"}, {"layers", QJsonArray{2}}}));
    m_console->tap(MirrorKey);
    QTRY_COMPARE_WITH_TIMEOUT(preview().size(), before.size() + 2, PatienceMs);
    const QJsonArray source = before.at(1).toObject().value("window").toArray();
    const QJsonArray mirrored = preview().last().toObject().value("window").toArray();
    QCOMPARE(mirrored.at(0).toInt(), 3840 - source.at(0).toInt() - source.at(2).toInt());
    QCOMPARE(mirrored.at(2), source.at(2));

    QVERIFY(m_host->hasDone("selectLayers", {{"screen", "regular:1"}, {"layers", QJsonArray{}}}));
    m_console->tap(CopyKey);
    QVERIFY(m_host->waitForLog("Create layer by Copy failed: select layer is empty."));
}

QTEST_GUILESS_MAIN(PresetSessionTest)
#include "tst_presetsession.moc"

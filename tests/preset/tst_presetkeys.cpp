#include "logcapture.h"
#include "presetscene.h"

#include "bizmodel/keypad.h"
#include "bizmodel/layer.h"

#include <QDeadlineTimer>
#include <QDialog>
#include <QTemporaryDir>
#include <QThreadPool>

#include <iterator>

using namespace PresetScene;
using namespace std::chrono_literals;
using BizModel::SceneType;
using TestSupport::LogCapture;

namespace {

const QString CheckBox = QStringLiteral("box 2 can't create PVW preset: ");
const QString DeletingDialog = QStringLiteral("wait Deleting preset,please wait...");
const QString Hide = QStringLiteral("hide");

} // namespace

Q_DECLARE_METATYPE(Orvane::MemoryModel::Operation)

/// What the preset keys do to the device: storing, loading, removing one; and what they show.
class TestPresetKeys : public PresetTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void theKeysShowThePresetsOfTheGroup();
    void theKeysFollowTheModel();
    void aPresetLandsInTheSlotOfItsKey();
    void aFilledSlotIsCovered();
    void storingIsRefused_data();
    void storingIsRefused();
    void storingThatFailsLeavesTheKeyArmed_data();
    void storingThatFailsLeavesTheKeyArmed();
    void withoutADeviceNothingIsStoredOrRemoved();
    void aPresetIsLoaded();
    void aPresetOfTheGroupIsLoaded();
    void loadingIsRefused_data();
    void loadingIsRefused();
    void aTakeKeepsPresetsFromLoading();
    void loadingGoesOnAfterASmallerFault_data();
    void loadingGoesOnAfterASmallerFault();
    void quickLoadsReachTheModelInOrder();
    void theKeypadFileColoursTheKeysOfItsPreset();
    void aPresetIsRemoved();
    void removingThatFailsStillEndsTheMode_data();
    void removingThatFailsStillEndsTheMode();
    void afterAStormTheKeysShowTheModel();
    void answersAfterTheEndOfTheConsole();

private:
    void changeModel(int step);
    /// Whether the console shows what the model holds, on the present page.
    bool showsModel();
};

// ---- What the keys show -----------------------------------------------------------------------------------

void TestPresetKeys::theKeysShowThePresetsOfTheGroup()
{
    QVERIFY(console().shows(keyOf(0), ECLEDColor::Green));
    QCOMPARE(console().label(Label + keyOf(0)), QStringLiteral("Opening"));
    QVERIFY(console().shows(keyOf(1), ECLEDColor::Off));
    QCOMPARE(console().label(Label + keyOf(1)), QString());
    QVERIFY(console().shows(keyOf(2), ECLEDColor::Yellow));
    QCOMPARE(console().label(Label + keyOf(2)), QStringLiteral("Walk/Steps"));

    QVERIFY(tap(PageDown));
    QVERIFY(console().waitLabel(Label + keyOf(11), QStringLiteral("Finale")));
    QVERIFY(console().shows(keyOf(11), ECLEDColor::Yellow));
    QVERIFY(console().shows(keyOf(12), ECLEDColor::Off));

    // Alone, the device shows its own.
    m_pRig->control().setGroup(B, {});
    QVERIFY(console().waitShows(keyOf(11), ECLEDColor::Off));
    QVERIFY(tap(PageUp));
    QVERIFY(console().waitLabel(Label + keyOf(2), QStringLiteral("Walk")));

    m_pRig->control().activateDevice({});
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Off));
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Off));
    QCOMPARE(console().label(Label + keyOf(2)), QString());
}

void TestPresetKeys::theKeysFollowTheModel()
{
    auto& control = m_pRig->control();
    control.addPreset(B, FileType::PresetPVW, 2);
    QVERIFY(console().waitShows(keyOf(1), ECLEDColor::Yellow));
    control.renamePreset(B, FileType::PresetPVW, 2, QStringLiteral("Encore"));
    QVERIFY(console().waitLabel(Label + keyOf(1), QStringLiteral("Encore")));
    control.activatePreset(A, FileType::PresetPVW, 3);
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
    control.removePreset(A, FileType::PresetPVW, 3);
    QVERIFY(console().waitLabel(Label + keyOf(2), QStringLiteral("Steps")));
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Yellow));
    control.clearPresets(A);
    for (int slot = 0; slot < PageSize; ++slot)
        QVERIFY(console().waitShows(keyOf(slot), ECLEDColor::Off));
    QVERIFY(console().waitLabel(Label + keyOf(2), QString()));
    control.removeDevice(A);
    QVERIFY(console().settle());
    control.activateDevice(B);
    control.addPreset(B, FileType::PresetPVW, 7);
    QVERIFY(console().waitLabel(Label + keyOf(6), QStringLiteral("Preset 7")));
}

// ---- Storing ----------------------------------------------------------------------------------------------

void TestPresetKeys::aPresetLandsInTheSlotOfItsKey()
{
    QVERIFY(tap(PageDown));
    QVERIFY(tap(PageDown));
    QVERIFY(tap(Store));
    QCOMPARE(mode(), PresetOptMode::Save);
    QVERIFY(console().shows(Store, ECLEDColor::Yellow));
    QCOMPARE(console().key(Store).buttonState, quint8(Flashing));

    QVERIFY(tap(keyOf(3)));
    QCOMPARE(m_pRig->asked(Operation::CreatePresetFile).size(), 1);
    QCOMPARE(presets(), (QList<int>{1, 3, 24})); // page 2, place 3
    QCOMPARE(m_pRig->device(A)->activedPresetKeyNo(), 24);
    QVERIFY(console().waitShows(keyOf(3), ECLEDColor::Green));
    QVERIFY(console().waitLabel(Label + keyOf(3), QStringLiteral("Preset 24")));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(Store, ECLEDColor::Off));
}

void TestPresetKeys::aFilledSlotIsCovered()
{
    LogCapture log;
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(2)));
    QCOMPARE(m_pRig->asked(Operation::CoverPreset).size(), 1);
    QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
    QVERIFY(log.contains(QStringLiteral("preset key [3] pressed to create preset.")));
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
    QCOMPARE(mode(), PresetOptMode::Noting);

    // What is loaded is what was stored.
    QVERIFY(tap(keyOf(0)));
    QTRY_COMPARE(scene(), QStringLiteral("Opening"));
    QVERIFY(tap(keyOf(2)));
    QTRY_COMPARE(scene(), QStringLiteral("next"));
}

void TestPresetKeys::storingIsRefused_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("notice");
    QTest::newRow("while presets cannot be changed")
        << QStringLiteral("check") << CheckBox + QStringLiteral("Not now.");
    QTest::newRow("beyond the device's slots") << QStringLiteral("slot") << QString();
}

void TestPresetKeys::storingIsRefused()
{
    QFETCH(QString, reason);
    QFETCH(QString, notice);
    if (reason == QLatin1String("slot")) {
        MemoryModel::ShowRecord record = show();
        record.devices[0].maxPresetCount = 4;
        start(record);
    } else {
        operations().fail(Operation::EditPresetValidityCheck, QStringLiteral("Not now."), Times::Once);
    }
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(4)));
    QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(Store, ECLEDColor::Off));
    QVERIFY(console().shows(keyOf(4), ECLEDColor::Off));
    QCOMPARE(m_pRig->notices().size(), notice.isEmpty() ? 0u : 1u);
    QCOMPARE(m_pRig->countNotices(notice), notice.isEmpty() ? 0 : 1);
}

void TestPresetKeys::storingThatFailsLeavesTheKeyArmed_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("slot");
    QTest::addColumn<QString>("line");
    QTest::newRow("covering") << Operation::CoverPreset << 0
                              << QStringLiteral("Failed to cover the PVW preset! errMsg :Disk full.");
    QTest::newRow("creating") << Operation::CreatePresetFile << 4
                              << QStringLiteral("Failed to create the PVW preset!");
}

void TestPresetKeys::storingThatFailsLeavesTheKeyArmed()
{
    QFETCH(Operation, operation);
    QFETCH(int, slot);
    QFETCH(QString, line);
    operations().fail(operation, QStringLiteral("Disk full."), Times::Once);
    LogCapture log;
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(slot)));
    QCOMPARE(log.count(line), 1);
    QCOMPARE(mode(), PresetOptMode::Save);
    QVERIFY(console().shows(Store, ECLEDColor::Yellow));

    QVERIFY(tap(keyOf(slot))); // the next attempt succeeds
    QCOMPARE(m_pRig->asked(operation).size(), 2);
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(presets().contains(slot + 1));
}

void TestPresetKeys::withoutADeviceNothingIsStoredOrRemoved()
{
    m_pRig->control().activateDevice({});
    LogCapture log;
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(0)));
    QCOMPARE(log.count(QStringLiteral("Create preset failed: device is nullptr.")), 1);
    QVERIFY(tap(Remove));
    QVERIFY(tap(keyOf(0)));
    QCOMPARE(log.count(QStringLiteral("Clear preset failed: device is nullptr.")), 1);
    QCOMPARE(mode(), PresetOptMode::Clear);
}

// ---- Loading ----------------------------------------------------------------------------------------------

void TestPresetKeys::aPresetIsLoaded()
{
    LogCapture log;
    QVERIFY(tap(keyOf(2)));
    QVERIFY(waitLoaded(3));
    QTRY_COMPARE(scene(), QStringLiteral("Walk"));
    QCOMPARE(m_pRig->asked(Operation::SampleLoadPreset), QStringList{QStringLiteral("device=A preset=3")});
    QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 1));
    const auto keypads = m_pRig->device(A)->files(FileType::keypad);
    QCOMPARE(keypads.size(), 1);
    const auto keypad = std::dynamic_pointer_cast<BizModel::Keypad>(keypads.first().lock());
    QVERIFY(keypad);
    QCOMPARE(int(keypad->keypadInfo().presetInfo.lastPVWPreset), 3);
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
    for (const char* line :
         {"press preset key:3", "preset consume time: AllStarted, ECButton pressed start.",
          "preset consume time:OrvanePresetCommand loadPreset start.",
          "preset key [3] pressed to load preset.", "preset consume time:SamplingThread appendData start.",
          "***************************************5.22",
          "preset consume time:OrvanePresetCommand loadPreset end",
          "preset consume time: ECButtonPressed, setCurPageAndKey",
          "preset consume time: ECButton pressed end"})
        QVERIFY2(log.count(QLatin1String(line)) == 1, line);
}

void TestPresetKeys::aPresetOfTheGroupIsLoaded()
{
    QVERIFY(tap(PageDown));
    QVERIFY(tap(keyOf(11)));
    QTRY_COMPARE(scene(SceneType::PVW, B), QStringLiteral("Finale"));
    QVERIFY(waitLoaded(12));
    QVERIFY(console().waitShows(keyOf(11), ECLEDColor::Green));
}

void TestPresetKeys::loadingIsRefused_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("notice");
    QTest::newRow("without a device")
        << QStringLiteral("no device") << QStringLiteral("Load preset failed: device is nullptr.")
        << QString();
    QTest::newRow("from a free slot")
        << QStringLiteral("free slot") << QStringLiteral("Actived preset is null") << QString();
    QTest::newRow("of broken data") << QStringLiteral("check")
                                    << QStringLiteral("preset key [1] pressed to load preset.")
                                    << QStringLiteral("box 1 Broken file.");
}

void TestPresetKeys::loadingIsRefused()
{
    QFETCH(QString, reason);
    QFETCH(QString, line);
    QFETCH(QString, notice);
    int slot = 0;
    if (reason == QLatin1String("no device"))
        m_pRig->control().activateDevice({});
    else if (reason == QLatin1String("free slot"))
        slot = 1;
    else
        operations().fail(Operation::CheckPresetData, QStringLiteral("Broken file."), Times::Once);
    m_pRig->forget();
    LogCapture log;
    QVERIFY(tap(keyOf(slot)));
    QCOMPARE(log.count(line), 1);
    QCOMPARE(m_pRig->countNotices(notice), notice.isEmpty() ? 0 : 1);
    QVERIFY(m_pRig->asked(Operation::SampleLoadPreset).isEmpty());
    QVERIFY(m_pRig->asked(Operation::UpdatePresetModelData).isEmpty());
    QCOMPARE(mode(), PresetOptMode::Select);
}

void TestPresetKeys::aTakeKeepsPresetsFromLoading()
{
    LogCapture log;
    console().tap(Take);
    console().tap(keyOf(2));
    QVERIFY(console().settle());
    QVERIFY(!log.contains(QStringLiteral("pressed to load preset.")));
    QVERIFY(m_pRig->asked(Operation::SampleLoadPreset).isEmpty());
    QCOMPARE(mode(), PresetOptMode::Select);
    QVERIFY(QTest::qWaitFor([&] {
        return m_pRig->screen(A, Stage)->state() == BizModel::Screen::State::Normal
            && m_pRig->screen(B, Stage)->state() == BizModel::Screen::State::Normal;
    }));
    // The tasks have ended a moment later.
    QVERIFY(QTest::qWaitFor([&] { return tap(keyOf(2)) && mode() == PresetOptMode::Noting; }));
    QVERIFY(waitLoaded(3));
}

void TestPresetKeys::loadingGoesOnAfterASmallerFault_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("loaded");
    QTest::newRow("without the keypad's state")
        << Operation::CreateKeypadInfo << QStringLiteral("create keypadInfo failed") << true;
    QTest::newRow("when the model is not updated")
        << Operation::UpdatePresetModelData << QStringLiteral("the model was not updated. Out of memory.")
        << true;
    QTest::newRow("when the device does not take it")
        << Operation::SetSamplingType << QStringLiteral("Load preset failed: sampling failed.") << false;
}

void TestPresetKeys::loadingGoesOnAfterASmallerFault()
{
    QFETCH(Operation, operation);
    QFETCH(QString, line);
    QFETCH(bool, loaded);
    operations().fail(operation, QStringLiteral("Out of memory."), Times::Once);
    LogCapture log;
    QVERIFY(tap(keyOf(2)));
    QVERIFY(log.waitFor(line));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QCOMPARE(m_pRig->asked(Operation::SampleLoadPreset).size(), loaded ? 1 : 0);
    QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 1));
    if (loaded)
        QVERIFY(waitLoaded(3));
}

void TestPresetKeys::quickLoadsReachTheModelInOrder()
{
    operations().delay(Operation::UpdatePresetModelData, 200ms, Times::Once);
    console().tap(keyOf(2));
    console().tap(keyOf(0)); // its update must wait for the slow one
    QVERIFY(console().settle());
    QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 2));
    QCOMPARE(scene(), QStringLiteral("Opening"));
    QCOMPARE(m_pRig->device(A)->activedPresetKeyNo(), 1);
}

void TestPresetKeys::theKeypadFileColoursTheKeysOfItsPreset()
{
    MemoryModel::ShowRecord record = show();
    record.devices[0].hasKeypad = true;
    record.devices[0].keypad.presetInfo.lastPGMPreset = 1;
    record.devices[0].keypad.keypadArray = {
        {0, 0, 1, quint8(ECLEDColor::Purple)}, // slot 0
        {0, 0, 2, quint8(ECLEDColor::Red)}, // a free slot stays dark
        {0, 0, 3, 200}}; // no colour
    start(record);
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Purple));
    QVERIFY(console().shows(keyOf(1), ECLEDColor::Off));
    QVERIFY(console().shows(keyOf(2), ECLEDColor::Yellow));

    // It tells nothing of another preset.
    m_pRig->control().activatePreset(A, FileType::PresetPVW, 3);
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));
}

// ---- Removing ---------------------------------------------------------------------------------------------

void TestPresetKeys::aPresetIsRemoved()
{
    LogCapture log;
    QVERIFY(tap(Remove));
    QCOMPARE(mode(), PresetOptMode::Clear);
    QVERIFY(console().shows(Remove, ECLEDColor::Yellow));
    QCOMPARE(console().key(Remove).buttonState, quint8(Flashing));

    // A free slot's key removes nothing and leaves the mode.
    QVERIFY(tap(keyOf(1)));
    QVERIFY(log.contains(QStringLiteral("clear preset is null")));
    QCOMPARE(mode(), PresetOptMode::Clear);
    QVERIFY(console().shows(Remove, ECLEDColor::Yellow));

    QVERIFY(tap(keyOf(0)));
    QVERIFY(log.contains(QStringLiteral("preset key [1] pressed to clear preset.")));
    QCOMPARE(presets(), QList<int>{3});
    QCOMPARE(m_pRig->countNotices(DeletingDialog), 1);
    QCOMPARE(m_pRig->countNotices(Hide), 1);
    QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Off));
    QVERIFY(console().waitLabel(Label + keyOf(0), QString()));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Off));

    // The next press loads again.
    QVERIFY(tap(keyOf(2)));
    QVERIFY(waitLoaded(3));

    // Of two devices with one slot the active one loses its preset, and the key keeps the other's.
    QVERIFY(tap(Remove));
    QVERIFY(tap(keyOf(2)));
    QCOMPARE(presets(), QList<int>());
    QCOMPARE(presets(B), (QList<int>{3, 12}));
    QVERIFY(console().waitLabel(Label + keyOf(2), QStringLiteral("Steps")));
    QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Yellow));
}

void TestPresetKeys::removingThatFailsStillEndsTheMode_data()
{
    QTest::addColumn<bool>("online");
    QTest::newRow("a device that refuses") << true;
    QTest::newRow("an offline device") << false;
}

void TestPresetKeys::removingThatFailsStillEndsTheMode()
{
    QFETCH(bool, online);
    if (online)
        operations().fail(Operation::RemoveFile, QStringLiteral("Write-protected."), Times::Once);
    else
        m_pRig->control().setOnline(A, false);
    LogCapture log;
    QVERIFY(tap(Remove));
    QVERIFY(tap(keyOf(0)));
    QCOMPARE(log.count(QStringLiteral("Remove preset has failed!")), online ? 1 : 0);
    QCOMPARE(m_pRig->countNotices(DeletingDialog), online ? 1 : 0);
    QCOMPARE(m_pRig->countNotices(Hide), online ? 1 : 0);
    QCOMPARE(presets(), (QList<int>{1, 3}));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
    QVERIFY(console().shows(keyOf(0), ECLEDColor::Green));
}

// ---- All at once --------------------------------------------------------------------------------------

bool TestPresetKeys::showsModel()
{
    const int page = ECManager::instance()->page("PresetCommand");
    const auto device = m_pRig->device(A);
    const int actived = device->activedPresetKeyNo();
    for (int slot = page * PageSize; slot < (page + 1) * PageSize; ++slot) {
        QStringList names;
        for (const QString& member : {A, B}) {
            const auto all = m_pRig->device(member)->presets();
            for (const auto& weakPreset : all) {
                const auto preset = weakPreset.lock();
                if (preset && preset->fileId() == slot + 1)
                    names.append(preset->name());
            }
        }
        const ECLEDColor color = names.isEmpty() ? ECLEDColor::Off
            : slot + 1 == actived                ? ECLEDColor::Green
                                                 : ECLEDColor::Yellow;
        const QString label = QString::fromUtf8(names.join(QLatin1Char('/')).toUtf8().left(32));
        if (!console().shows(keyOf(slot), color) || console().label(Label + keyOf(slot)) != label)
            return false;
    }
    return console().label(Label + PageUp) == QStringLiteral("Page %1").arg(page + 1);
}

/// Changes the model as an application does, differently with each `step`.
void TestPresetKeys::changeModel(int step)
{
    auto& control = m_pRig->control();
    const auto fileId = quint16(1 + step * 7 % (2 * PageSize));
    const QString device = step % 3 == 0 ? B : A;
    switch (step % 5) {
    case 0:
        control.addPreset(device, FileType::PresetPVW, fileId);
        break;
    case 1:
        control.renamePreset(device, FileType::PresetPVW, fileId, QStringLiteral("%1").arg(step));
        break;
    case 2:
        control.removePreset(device, FileType::PresetPVW, fileId);
        break;
    case 3:
        control.showPresetPage(step % 2);
        break;
    case 4:
        control.activatePreset(A, FileType::PresetPVW, fileId);
        break;
    }
}

void TestPresetKeys::afterAStormTheKeysShowTheModel()
{
    QTemporaryDir directory;
    m_pRig->model().setShowFile(directory.filePath(QStringLiteral("show.json")));
    ECManager* manager = ECManager::instance();
    constexpr quint16 keys[] = {Store,    keyOf(4), PageDown, keyOf(7), Remove,  keyOf(7),
                                SaveData, PageUp,   keyOf(4), ClearAll, SaveData};
    // Both locks come in the middle, and the keypad's keeps all keys out until the application frees it.
    console().press(TBarLock);
    console().press(KeypadLock);
    const QDeadlineTimer limit(10000);
    int stepsWhileLocked = 0;
    for (int step = 0; stepsWhileLocked < 100 && !limit.hasExpired(); ++step) {
        console().tap(keys[std::size_t(step) % std::size(keys)]);
        changeModel(step);
        if (step % 10 == 0)
            QVERIFY(console().settle());
        if (manager->isLockedKeypad())
            ++stepsWhileLocked;
    }
    QVERIFY(stepsWhileLocked > 0);
    manager->unlockKeypad();
    Q_EMIT manager->signalKeyboardLocked(false);
    console().release(TBarLock);
    for (int step = 0; step < 100; ++step) {
        console().tap(keys[std::size_t(step) % std::size(keys)]);
        changeModel(step);
    }
    QVERIFY(console().settle());
    QThreadPool::globalInstance()->waitForDone();
    QVERIFY(QTest::qWaitFor([this] { return showsModel(); }));
    QTest::qWait(100); // and stays so
    QVERIFY(showsModel());
    QVERIFY(manager->isLockedTBar());
    QVERIFY(console().shows(TBarLock, ECLEDColor::Green));
    QVERIFY(console().shows(KeypadLock, ECLEDColor::Off));
    QVERIFY(console().shows(SaveData, ECLEDColor::Off));
    const int saves = m_pRig->asked(Operation::AsyncSaveDeviceData).size();
    QVERIFY(saves > 0);
    QVERIFY(m_pRig->waitNotice(QStringLiteral("box 2 save data successed."), saves));
}

/// The last test: there is one console a process.
void TestPresetKeys::answersAfterTheEndOfTheConsole()
{
    operations().delay(Operation::UpdatePresetModelData, 200ms, Times::Once);
    operations().delay(Operation::SampleLoadPreset, 300ms, Times::Once);
    console().tap(keyOf(2));
    console().tap(keyOf(0));
    QVERIFY(m_pRig->waitAsked(Operation::UpdatePresetModelData, 1));
    m_pRig->endConsole();
    QCOMPARE(scene(), QStringLiteral("Walk")); // the update that had begun is through
    QVERIFY(waitLoaded(1)); // as the device was told
}

QTEST_MAIN(TestPresetKeys)
#include "tst_presetkeys.moc"

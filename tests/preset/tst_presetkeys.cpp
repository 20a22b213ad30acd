#include "logcapture.h"
#include "presetscene.h"

#include "bizmodel/keypad.h"
#include "bizmodel/layer.h"

using namespace PresetScene;
using namespace std::chrono_literals;
using BizModel::SceneType;
using TestSupport::LogCapture;

Q_DECLARE_METATYPE(Orvane::MemoryModel::Operation)
Q_DECLARE_METATYPE(Orvane::BizModel::Enum::Preset::PresetOptMode)

/// What the preset keys do to the device: storing, loading, removing one; and what they show.
class TestPresetKeys : public PresetTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void theKeysShowThePresetsOfTheGroup()
    {
        auto& control = m_pRig->control();
        QVERIFY(waitSlot(0, ECLEDColor::Green, "Opening"));
        QVERIFY(waitSlot(1, ECLEDColor::Off, {}));
        QVERIFY(waitSlot(2, ECLEDColor::Yellow, "Walk/Steps"));
        QVERIFY(tap(PageDown));
        QVERIFY(waitSlot(11, ECLEDColor::Yellow, "Finale"));
        QVERIFY(waitSlot(12, ECLEDColor::Off, {}));

        control.setGroup(B, {}); // alone, the device shows its own
        QVERIFY(waitSlot(11, ECLEDColor::Off, {}));
        QVERIFY(tap(PageUp));
        QVERIFY(waitSlot(2, ECLEDColor::Yellow, "Walk"));
        control.activateDevice({});
        QVERIFY(waitSlot(0, ECLEDColor::Off, {}));
        QVERIFY(waitSlot(2, ECLEDColor::Off, {}));
    }

    void theKeysFollowTheModel()
    {
        auto& control = m_pRig->control();
        control.addPreset(B, FileType::PresetPVW, 2);
        QVERIFY(console().waitShows(keyOf(1), ECLEDColor::Yellow));
        control.renamePreset(B, FileType::PresetPVW, 2, "Encore");
        QVERIFY(waitSlot(1, ECLEDColor::Yellow, "Encore"));
        control.activatePreset(A, FileType::PresetPVW, 3);
        QVERIFY(waitSlot(2, ECLEDColor::Green, "Walk/Steps"));
        control.removePreset(A, FileType::PresetPVW, 3);
        QVERIFY(waitSlot(2, ECLEDColor::Yellow, "Steps"));
        control.clearPresets(A);
        for (int slot = 0; slot < PageSize; ++slot)
            QVERIFY(waitSlot(slot, ECLEDColor::Off, {}));
        control.removeDevice(A);
        QVERIFY(console().settle());
        control.activateDevice(B);
        control.addPreset(B, FileType::PresetPVW, 7);
        QVERIFY(waitSlot(6, ECLEDColor::Yellow, "Preset 7"));
    }

    void theKeypadFileColorsTheKeysWhileItMeansTheSameActivePreset()
    {
        MemoryModel::ShowRecord record = show();
        record.devices[0].hasKeypad = true;
        record.devices[0].keypad.keypadArray = {
            {0, 0, 1, quint8(ECLEDColor::Green)}, // slot 0, as the active preset
            {0, 0, 2, quint8(ECLEDColor::Red)}, // a free slot stays dark
            {0, 0, 3, quint8(ECLEDColor::Purple)}};
        start(record);
        QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Purple));
        QVERIFY(console().shows(keyOf(0), ECLEDColor::Green));
        QVERIFY(console().shows(keyOf(1), ECLEDColor::Off));

        // With another preset active it is the file of an earlier load.
        m_pRig->control().activatePreset(A, FileType::PresetPVW, 3);
        QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
        QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));

        record.devices[0].keypad.keypadArray = {{0, 0, 3, 200}}; // no color
        start(record);
        QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Yellow));
        QVERIFY(console().shows(keyOf(0), ECLEDColor::Green));
    }

    void savingOverAPresetAfterLoadingAnotherToProgramShowsTheSavedOneActive()
    {
        QVERIFY(tap(keyOf(2)));
        QVERIFY(waitLoaded(3));
        QVERIFY(tap(LoadTarget));
        m_pRig->control().answerMessageBox(QMessageBox::Yes);
        QTRY_VERIFY(m_pRig->device(A)->loadToPGMEnable());
        QVERIFY(QTest::qWaitFor([&] { return tap(keyOf(0)) && mode() == PresetOptMode::Noting; }));
        QVERIFY(waitLoaded(1));
        QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 2));
        QVERIFY(tap({Store, keyOf(2)})); // the keypad file still calls preset 1 the active one
        QVERIFY(waitSlot(2, ECLEDColor::Green, "Walk/Steps"));
        QVERIFY(waitSlot(0, ECLEDColor::Yellow, "Opening"));
    }

    void aFilledSlotIsCovered()
    {
        QVERIFY(tap({Store, keyOf(2)}));
        QCOMPARE(m_pRig->asked(Operation::CoverPreset).size(), 1);
        QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
        QVERIFY(console().waitShows(keyOf(2), ECLEDColor::Green));
        QVERIFY(console().waitShows(keyOf(0), ECLEDColor::Yellow));
        QCOMPARE(mode(), PresetOptMode::Noting);

        // What is loaded is what was stored.
        QVERIFY(tap(keyOf(0)));
        QTRY_COMPARE(scene(), QString("Opening"));
        QVERIFY(tap(keyOf(2)));
        QTRY_COMPARE(scene(), QString("next"));
    }

    void storingIsRefusedWhilePresetsCannotBeChanged()
    {
        operations().fail(Operation::EditPresetValidityCheck, "Not now.", Times::Once);
        LogCapture log;
        QVERIFY(tap({Store, keyOf(4)}));
        QCOMPARE(m_pRig->countNotices("box 2 can't create PVW preset: Not now."), 1);
        QVERIFY(log.contains("Create preset refused: can't create PVW preset: Not now."));
        QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(console().waitShows(Store, ECLEDColor::Off));
    }

    void storingThatFailsLeavesTheKeyArmed_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("line");
        QTest::newRow("covering") << Operation::CoverPreset << 0
                                  << "Failed to cover the PVW preset! errMsg :Disk full.";
        QTest::newRow("creating") << Operation::CreatePresetFile << 4 << "Failed to create the PVW preset!";
    }
    void storingThatFailsLeavesTheKeyArmed()
    {
        QFETCH(Operation, operation);
        QFETCH(int, slot);
        QFETCH(QString, line);
        operations().fail(operation, "Disk full.", Times::Once);
        LogCapture log;
        QVERIFY(tap({Store, keyOf(slot)}));
        QCOMPARE(log.count(line), 1);
        QCOMPARE(mode(), PresetOptMode::Save);
        QVERIFY(console().shows(Store, ECLEDColor::Yellow));

        QVERIFY(tap(keyOf(slot))); // the next attempt succeeds
        QCOMPARE(m_pRig->asked(operation).size(), 2);
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(presets().contains(slot + 1));
    }

    void withoutADeviceTheLogSaysWhyNothingIsDone()
    {
        m_pRig->control().activateDevice({});
        LogCapture log;
        QVERIFY(tap(keyOf(0)));
        QCOMPARE(log.count("Load preset failed: device is nullptr."), 1);
        QVERIFY(tap({Store, keyOf(0)}));
        QCOMPARE(log.count("Create preset failed: device is nullptr."), 1);
        QVERIFY(tap({Remove, keyOf(0)}));
        QCOMPARE(log.count("Clear preset failed: device is nullptr."), 1);
        QCOMPARE(mode(), PresetOptMode::Clear);
    }

    void theWholeGroupLoadsAndTheLoadIsWrittenDown()
    {
        QVERIFY(tap({PageDown, keyOf(11)}));
        QTRY_COMPARE(scene(SceneType::PVW, B), QString("Finale"));
        QVERIFY(waitLoaded(12));
        QVERIFY(console().waitShows(keyOf(11), ECLEDColor::Green));
        QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 1));
        const auto files = m_pRig->device(A)->files(FileType::keypad);
        QCOMPARE(files.size(), 1);
        const auto keypad = std::dynamic_pointer_cast<BizModel::Keypad>(files.first().lock());
        QVERIFY(keypad);
        QCOMPARE(int(keypad->keypadInfo().presetInfo.lastPVWPreset), 12);
    }

    void brokenDataIsNotLoaded()
    {
        operations().fail(Operation::CheckPresetData, "Broken file.", Times::Once);
        QVERIFY(tap(keyOf(2)));
        QCOMPARE(m_pRig->countNotices("box 1 Broken file."), 1);
        QVERIFY(m_pRig->asked(Operation::SampleLoadPreset).isEmpty());
        QVERIFY(m_pRig->asked(Operation::UpdatePresetModelData).isEmpty());
        QCOMPARE(mode(), PresetOptMode::Select);
    }

    void aTakeKeepsPresetsFromLoadingUntilItHasEnded()
    {
        LogCapture log;
        console().tap(Take);
        QVERIFY(tap(keyOf(2)));
        QVERIFY(m_pRig->asked(Operation::SampleLoadPreset).isEmpty());
        QVERIFY(log.contains("Load preset refused: a request such as a take is still running."));
        QCOMPARE(mode(), PresetOptMode::Select);
        QVERIFY(QTest::qWaitFor([&] { return tap(keyOf(2)) && mode() == PresetOptMode::Noting; }));
        QCOMPARE(m_pRig->screen(B, Stage)->state(), BizModel::Screen::State::Normal);
        QVERIFY(waitLoaded(3));
    }

    void loadingGoesOnAfterASmallerFault_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("loaded");
        QTest::newRow("without the keypad's state")
            << Operation::CreateKeypadInfo << "create keypadInfo failed" << true;
        QTest::newRow("when the model is not updated")
            << Operation::UpdatePresetModelData << "the model was not updated. Out of memory." << false;
        QTest::newRow("when the device does not take it")
            << Operation::SetSamplingType << "Load preset failed: sampling failed." << false;
    }
    void loadingGoesOnAfterASmallerFault()
    {
        QFETCH(Operation, operation);
        QFETCH(QString, line);
        QFETCH(bool, loaded);
        operations().fail(operation, "Out of memory.", Times::Once);
        LogCapture log;
        QVERIFY(tap(keyOf(2)));
        QVERIFY(log.waitFor(line));
        QCOMPARE(mode(), PresetOptMode::Noting);
        if (operation != Operation::SetSamplingType)
            QVERIFY(m_pRig->waitAsked(Operation::SampleLoadPreset, 1));
        QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 1));
        QVERIFY(waitLoaded(loaded ? 3 : 1));
    }

    void quickLoadsReachTheModelInOrder()
    {
        operations().delay(Operation::UpdatePresetModelData, 200ms, Times::Once);
        console().tap(keyOf(2));
        console().tap(keyOf(0)); // its update must wait for the slow one
        QVERIFY(console().settle());
        QVERIFY(m_pRig->waitAsked(Operation::AddKeypadFile, 2));
        QCOMPARE(scene(), QString("Opening"));
        QCOMPARE(m_pRig->device(A)->activedPresetKeyNo(), 1);
    }

    void removingLeavesFreeSlotsAndTheGroupAlone()
    {
        LogCapture log;
        QVERIFY(tap({Remove, keyOf(1)})); // free: the mode stays
        QVERIFY(log.contains("clear preset is null"));
        QCOMPARE(mode(), PresetOptMode::Clear);
        QVERIFY(console().shows(Remove, ECLEDColor::Yellow));

        // Of two devices with one slot the active one loses its preset, and the key keeps the other's.
        QVERIFY(tap(keyOf(2)));
        QCOMPARE(presets(), QList<int>{1});
        QCOMPARE(presets(B), (QList<int>{3, 12}));
        QCOMPARE(m_pRig->countNotices("wait Deleting preset,please wait..."), 1);
        QCOMPARE(m_pRig->countNotices("hide"), 1);
        QVERIFY(waitSlot(2, ECLEDColor::Yellow, "Steps"));
        QVERIFY(tap(keyOf(0))); // the next press loads again
        QVERIFY(m_pRig->waitAsked(Operation::SampleLoadPreset, 1));
    }

    void removingThatFailsStillEndsTheMode_data()
    {
        QTest::addColumn<bool>("online");
        QTest::newRow("a device that refuses") << true;
        QTest::newRow("an offline device") << false;
    }
    void removingThatFailsStillEndsTheMode()
    {
        QFETCH(bool, online);
        m_pRig->control().setOnline(A, online);
        operations().fail(Operation::RemoveFile, "Write-protected.", Times::Once);
        LogCapture log;
        QVERIFY(tap({Remove, keyOf(0)}));
        QCOMPARE(log.count("Remove preset has failed!"), online ? 1 : 0);
        QCOMPARE(log.count("Remove preset refused: the device is offline."), online ? 0 : 1);
        QCOMPARE(m_pRig->countNotices("hide"), online ? 1 : 0);
        QCOMPARE(presets(), (QList<int>{1, 3}));
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
        QVERIFY(console().shows(keyOf(0), ECLEDColor::Green));
    }

    void whatIsArmedWhileAPresetKeyTakesLongStaysArmed_data()
    {
        QTest::addColumn<PresetOptMode>("before");
        QTest::addColumn<Operation>("slow");
        QTest::addColumn<PresetOptMode>("armed");
        QTest::newRow("a load") << PresetOptMode::Noting << Operation::CheckPresetData << PresetOptMode::Save;
        QTest::newRow("a saving") << PresetOptMode::Save << Operation::CoverPreset << PresetOptMode::Clear;
        QTest::newRow("a removal") << PresetOptMode::Clear << Operation::RemoveFile << PresetOptMode::Save;
    }
    void whatIsArmedWhileAPresetKeyTakesLongStaysArmed()
    {
        QFETCH(PresetOptMode, before);
        QFETCH(Operation, slow);
        QFETCH(PresetOptMode, armed);
        auto& application = m_pRig->model().deviceList();
        application.setPresetOperateMode(before);
        m_pRig->hold(slow);
        console().tap(keyOf(2));
        QVERIFY(m_pRig->waitAsked(slow, 1));
        application.setPresetOperateMode(armed);
        m_pRig->letGo();
        QVERIFY(console().settle());
        QCOMPARE(mode(), armed);
    }

    /// The last test: there is one console a process.
    void requestsThatEndAfterTheConsoleDoNoHarm()
    {
        operations().delay(Operation::UpdatePresetModelData, 200ms, Times::Once);
        operations().delay(Operation::SampleLoadPreset, 300ms, Times::Once);
        console().tap(keyOf(2));
        console().tap(keyOf(0));
        QVERIFY(m_pRig->waitAsked(Operation::UpdatePresetModelData, 1));
        m_pRig->endConsole();
        QCOMPARE(scene(), QString("Walk")); // the update that had begun is through
        QVERIFY(waitLoaded(1)); // as the device was told
    }
};

QTEST_MAIN(TestPresetKeys)
#include "tst_presetkeys.moc"

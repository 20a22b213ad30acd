#include "logcapture.h"
#include "presetscene.h"

#include <QDialog>
#include <QElapsedTimer>

#include <QtEndian>

using namespace PresetScene;
using BizModel::SceneType;
using TestSupport::LogCapture;

namespace {

const QString ClearQuestion = "box 0 Are you sure you want to delete all the presets?";
const QString LoadQuestion = "box 0 The preset will be directly loaded to PGM. Continue?";

// A hold clears after three seconds.
constexpr int AlmostThreeSecondsMs = 2700;
constexpr int MoreThanThreeSecondsMs = 5000;

/// The clear key of the on-screen console.
constexpr quint32 OnScreenClear = Constants::VirtualKeyOffset + TestSupport::appNumber(ClearAll);

} // namespace

/// The preset group's function keys: what they arm, ask and switch; and its pages.
class TestPresetModes : public PresetTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void oneModeReplacesTheOther()
    {
        QVERIFY(tap({Store, Remove}));
        QCOMPARE(mode(), PresetOptMode::Clear);
        QVERIFY(console().shows(Store, ECLEDColor::Off));
        QVERIFY(console().shows(Remove, ECLEDColor::Yellow));
        QVERIFY(tap(Store));
        QCOMPARE(mode(), PresetOptMode::Save);
        QVERIFY(console().shows(Remove, ECLEDColor::Off));
        QVERIFY(console().shows(Store, ECLEDColor::Yellow));
        console().press(ClearAll);
        QVERIFY(console().settle());
        QCOMPARE(mode(), PresetOptMode::ClearAll);
        QVERIFY(console().shows(Store, ECLEDColor::Off));
        QVERIFY(console().shows(ClearAll, ECLEDColor::Green));

        // Its release is let through under a dialog, other keys are not.
        QDialog dialog;
        dialog.open();
        LogCapture log;
        QVERIFY(tap(keyOf(2)));
        QVERIFY(log.contains("[locate key no response] now there is an modal window."));
        console().release(ClearAll);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
    }

    void aRepaintFlashesTheArmedKeyAgain_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("save") << int(Store);
        QTest::newRow("remove") << int(Remove);
    }
    void aRepaintFlashesTheArmedKeyAgain()
    {
        QFETCH(int, key);
        QVERIFY(tap(quint32(key)));
        console().takeRequests();
        ECManager::instance()->slotOrvanePluginModeChanged(); // as when the console was away
        QVERIFY(console().settle());
        const auto lights = takeLights();
        QCOMPARE(int(lights.value(key).ButtonState), int(Flashing));
        QVERIFY(console().shows(quint16(key), ECLEDColor::Yellow));
        const quint16 other = key == Store ? Remove : Store;
        QVERIFY(lights.contains(other));
        QVERIFY(console().shows(other, ECLEDColor::Off));
    }

    void aRemovalElsewhereDarkensAndDisarmsTheRemoveKey()
    {
        QVERIFY(tap(Remove));
        m_pRig->control().removePreset(B, FileType::PresetPVW, 12);
        QVERIFY(console().waitShows(Remove, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(tap(keyOf(2))); // loads
        QVERIFY(waitLoaded(3));
        QCOMPARE(presets(), (QList<int>{1, 3}));

        QVERIFY(tap(Store)); // a saving is not disarmed
        m_pRig->control().removePreset(B, FileType::PresetPVW, 3);
        QVERIFY(console().settle());
        QCOMPARE(mode(), PresetOptMode::Save);
        QVERIFY(console().shows(Store, ECLEDColor::Yellow));
    }

    void theClearKeysReleaseUnderADialogDarkensWhatItDisarms_data()
    {
        aRepaintFlashesTheArmedKeyAgain_data();
    }
    void theClearKeysReleaseUnderADialogDarkensWhatItDisarms()
    {
        QFETCH(int, key);
        QVERIFY(tap(quint32(key)));
        QDialog dialog;
        dialog.open();
        QVERIFY(tap(ClearAll)); // the press is refused, the release is not
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(console().waitShows(quint16(key), ECLEDColor::Off));
    }

    void holdingClearForThreeSecondsRemovesAllPresets()
    {
        console().press(ClearAll);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Green));
        QTest::qWait(AlmostThreeSecondsMs);
        console().release(ClearAll);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QTest::qWait(600); // past the time at which it would have cleared
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());

        QElapsedTimer held;
        held.start();
        console().press(ClearAll);
        QVERIFY(m_pRig->waitAsked(Operation::AsyncRemoveFile, 1, MoreThanThreeSecondsMs));
        QVERIFY(held.elapsed() >= 3000);
        QCOMPARE(m_pRig->asked(Operation::AsyncRemoveFile), QStringList{"device=A types=[6,8]"});
        QVERIFY(waitCleared());
        QVERIFY(m_pRig->waitNotice("hide"));
        console().release(ClearAll);
        QVERIFY(console().settle());
        QCOMPARE(mode(), PresetOptMode::Noting);
        QCOMPARE(m_pRig->countNotices(ClearQuestion), 0);
    }

    void aHeldClearClearsNothingOnceTheDeviceHasChanged()
    {
        LogCapture log;
        console().press(ClearAll);
        QVERIFY(console().settle());
        m_pRig->control().activateDevice(B);
        QVERIFY(log.waitFor("Clear all presets refused", MoreThanThreeSecondsMs));
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
        console().release(ClearAll);
    }

    void aHeldClearWhoseReleaseALockDropsClearsNothing()
    {
        LogCapture log;
        console().press(ClearAll);
        QVERIFY(console().settle());
        ECManager::instance()->lockKeypad();
        console().release(ClearAll); // not let through
        QVERIFY(log.waitFor("Clear all presets refused", MoreThanThreeSecondsMs));
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
    }

    void anAnsweredQuestionEndsAHeldClearWithItsLight()
    {
        LogCapture log;
        console().press(ClearAll);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Green));
        QVERIFY(answer(QMessageBox::Yes)); // to a question of the application's own
        QVERIFY(console().shows(ClearAll, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(log.contains("Clear all presets refused"));
        QTest::qWait(3300); // past the time at which it would have cleared
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
    }

    void aHeldClearEndsWhenItsKeyGoesDark_data()
    {
        QTest::addColumn<int>("armed");
        QTest::newRow("save is armed") << int(Store);
        QTest::newRow("remove is armed") << int(Remove);
        QTest::newRow("somebody else clears") << 0;
    }
    void aHeldClearEndsWhenItsKeyGoesDark()
    {
        QFETCH(int, armed);
        LogCapture log;
        console().press(ClearAll);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Green));
        if (armed)
            QVERIFY(tap(quint32(armed)));
        else
            m_pRig->control().clearPresets(A);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QVERIFY(log.contains("Clear all presets refused"));
        QVERIFY(!armed || console().shows(quint16(armed), ECLEDColor::Yellow));
        console().release(ClearAll);
        QVERIFY(console().settle());
    }

    void aPresetKeyLoadsDuringAHeldClearWhichStaysLitAndClears()
    {
        console().press(ClearAll);
        QVERIFY(tap(keyOf(2)));
        QVERIFY(waitLoaded(3));
        ECManager::instance()->slotOrvanePluginModeChanged(); // as when the console was away
        QVERIFY(console().settle());
        QVERIFY(console().shows(ClearAll, ECLEDColor::Green));
        QVERIFY(m_pRig->waitAsked(Operation::AsyncRemoveFile, 1, MoreThanThreeSecondsMs));
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QVERIFY(waitCleared());
        console().release(ClearAll);
        QVERIFY(console().settle());
    }

    void keysReleasedWhileLockedDoNothingWhenTheLockEnds()
    {
        console().press(ClearAll);
        console().press(PageDown);
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Green));
        ECManager::instance()->lockKeypad();
        console().release(ClearAll);
        console().release(PageDown);
        QVERIFY(console().settle());
        QVERIFY(console().shows(ClearAll, ECLEDColor::Green));
        ECManager::instance()->unlockKeypad();
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Off));
        QCOMPARE(mode(), PresetOptMode::Noting);
        QCOMPARE(ECManager::instance()->page("PresetCommand"), 0);
        QTest::qWait(3300); // past the time at which it would have cleared
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
    }

    void clearReachesNoOfflineDeviceAndTellsFailures()
    {
        LogCapture log;
        const auto clear = [this, &log](int times) {
            tap(OnScreenClear);
            m_pRig->control().answerMessageBox(QMessageBox::Yes);
            return log.waitFor("Clear all presets pressed.") && console().settle()
                && log.count("Clear all presets pressed.") == times;
        };
        m_pRig->control().setOnline(A, false);
        QVERIFY(clear(2)); // the key and what it brings about say the same
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
        QCOMPARE(m_pRig->countNotices("wait Cleaning presets,please wait..."), 0);
        QVERIFY(log.contains("Clear all presets refused: the device is offline."));

        m_pRig->control().setOnline(A, true);
        operations().fail(Operation::AsyncRemoveFile, "Write-protected.", Times::Once);
        QVERIFY(clear(4));
        QVERIFY(
            log.waitFor("Remove preset file has failed! PresetPVW & PresetPVW file type. Write-protected."));
        QVERIFY(m_pRig->waitNotice("hide"));
        QCOMPARE(presets(), (QList<int>{1, 3}));

        m_pRig->control().activateDevice({});
        QVERIFY(clear(6));
        QVERIFY(log.contains("Clear all presets failed: device is nullptr."));
    }

    void aQuestionWithoutAYesTakesTheNextAnswerToo_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("no") << int(QMessageBox::No);
        QTest::newRow("closed") << int(QMessageBox::NoButton);
    }
    void aQuestionWithoutAYesTakesTheNextAnswerToo()
    {
        QFETCH(int, button);
        console().press(OnScreenClear);
        QVERIFY(console().settle());
        QCOMPARE(m_pRig->countNotices(ClearQuestion), 1);
        QVERIFY(console().shows(ClearAll, ECLEDColor::Green));
        QVERIFY(answer(QMessageBox::StandardButton(button)));
        QCOMPARE(mode(), PresetOptMode::Noting);
        QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
        QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
        // The key of another question is pressed; its answer still counts as the first one's.
        QVERIFY(tap(LoadTarget));
        QCOMPARE(m_pRig->countNotices(LoadQuestion), 1);
        QVERIFY(answer(QMessageBox::Yes));
        QVERIFY(waitCleared());
        QVERIFY(m_pRig->asked(Operation::ParallelSetLoadToPresetPGMStatus).isEmpty());
        QVERIFY(answer(QMessageBox::Yes)); // now the second one's turn has come
        QVERIFY(waitLoadsToPGM());
        QCOMPARE(m_pRig->asked(Operation::AsyncRemoveFile).size(), 1);
    }

    void loadToPGMIsOnlyTurnedOnByAYes_data() { aQuestionWithoutAYesTakesTheNextAnswerToo_data(); }
    void loadToPGMIsOnlyTurnedOnByAYes()
    {
        QFETCH(int, button);
        QVERIFY(tap(LoadTarget));
        QVERIFY(answer(QMessageBox::StandardButton(button)));
        QVERIFY(m_pRig->asked(Operation::ParallelSetLoadToPresetPGMStatus).isEmpty());
        QVERIFY(console().shows(LoadTarget, ECLEDColor::Off));
        QVERIFY(tap(LoadTarget)); // asks again
        QVERIFY(answer(QMessageBox::Yes));
        QVERIFY(waitLoadsToPGM());
        QVERIFY(console().waitShows(LoadTarget, ECLEDColor::Red));
        QVERIFY(QTest::qWaitFor([&] { return tap(keyOf(2)) && mode() == PresetOptMode::Noting; }));
        QTRY_COMPARE(scene(SceneType::PGM), QString("Walk"));
    }

    void loadToPGMNeedsADeviceThatCanAndDoes()
    {
        QVERIFY(console().waitLabel(Label + LoadTarget, "Load to PVW"));
        LogCapture log;
        operations().fail(Operation::ParallelSetLoadToPresetPGMStatus, "Busy.", Times::Always);
        QVERIFY(tap(LoadTarget));
        QVERIFY(answer(QMessageBox::Yes));
        QVERIFY(log.waitFor("swap set failed. Busy."));
        QVERIFY(!m_pRig->device(A)->loadToPGMEnable());

        const auto isNotOffered = [this, &log](const char* reason) {
            m_pRig->forget();
            return console().waitLabel(Label + LoadTarget, {}) && tap(LoadTarget) && m_pRig->notices().empty()
                && console().shows(LoadTarget, ECLEDColor::Off) && log.contains(reason);
        };
        m_pRig->control().activateDevice({});
        QVERIFY(isNotOffered("Load target refused: there is no active device."));
        MemoryModel::ShowRecord record = show();
        record.devices[0].loadToPGMEnabled = false;
        start(record);
        QVERIFY(isNotOffered("Load target refused: the device does not allow loading to PGM."));
    }

    void pagesRunToTheLastPresetOfTheDevice()
    {
        LogCapture log;
        constexpr int lastPage = 12; // 128 presets on 10 keys
        for (int page = 1; page <= lastPage; ++page)
            QVERIFY(tap(PageDown));
        QCOMPARE(console().label(Label + PageUp), QString("Page 13"));
        QVERIFY(!log.contains("Can't perform page turning"));
        QVERIFY(tap(PageDown));
        QVERIFY(log.contains("Can't perform page turning, the maximum page number is currently reached. This "
                             "is PresetCommand"));
        QCOMPARE(ECManager::instance()->page("PresetCommand"), lastPage);

        // The last page has keys beyond the last preset.
        QVERIFY(tap({Store, keyOf(128)}));
        QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
        QVERIFY(log.contains("Create preset refused: the device has 128 presets, this key's would be 129."));
        QVERIFY(tap({Store, keyOf(127)}));
        QCOMPARE(presets().last(), 128);
        QVERIFY(waitSlot(127, ECLEDColor::Green, "Preset 128"));
        QVERIFY(tap(PageUp));
        QVERIFY(waitPage(12));
        QVERIFY(waitSlot(117, ECLEDColor::Off, {}));
    }

    void theApplicationTurnsThePageToo()
    {
        QList<int> announced;
        QObject context;
        QObject::connect(
            &m_pRig->model().deviceList(), &BizModel::DeviceList::signalPageChanged, &context,
            [&](int page) { announced.append(page); });
        auto& control = m_pRig->control();
        control.showPresetPage(1);
        QVERIFY(waitPage(2));
        QVERIFY(console().waitShows(keyOf(11), ECLEDColor::Yellow));
        control.showPresetPage(99);
        QVERIFY(waitPage(13));
        control.showPresetPage(-5);
        QVERIFY(waitPage(1));
        QCOMPARE(announced, (QList<int>{1, 99, -5})); // the console says nothing of its own
        QVERIFY(tap(PageDown)); // and follows still, after a turn of its own, which it tells
        QCOMPARE(announced.last(), 1);
        control.showPresetPage(3);
        QVERIFY(waitPage(4));
    }

    void bothConsolesTurningThePageAtOnceTurnItOnceEach()
    {
        const auto tapOnScreen = [](quint32 key) {
            for (const auto tag : {ReportECButtonPressed, ReportECButtonRelease}) {
                QByteArray value(sizeof(ECButtonOperState), '\0');
                qToLittleEndian(Constants::VirtualKeyOffset + TestSupport::appNumber(key), value.data());
                ECManager::instance()->upTLVDecodeFinished(tag, value);
            }
        };
        constexpr int rounds = 100;
        for (int round = 0; round < rounds; ++round) {
            const bool down = round % 2 == 0;
            for (int i = 0; i < 3; ++i) {
                console().tap(down ? PageDown : PageUp);
                tapOnScreen(down ? PageDown : PageUp);
            }
            QVERIFY(console().settle());
            QCOMPARE(ECManager::instance()->page("PresetCommand"), down ? 6 : 0);
        }
    }

    void anotherDeviceMayHaveFewerPages()
    {
        MemoryModel::ShowRecord record = show();
        record.devices[1].groupId = BizModel::Device::defaultDeviceGroupId;
        record.devices[1].maxPresetCount = 15;
        start(record);
        m_pRig->control().showPresetPage(5);
        m_pRig->control().activateDevice(B);
        QVERIFY(waitPage(2));
        QVERIFY(waitSlot(11, ECLEDColor::Yellow, "Finale"));
        QVERIFY(tap({Store, keyOf(15)}));
        QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
        m_pRig->control().activateDevice({}); // eight pages without a device
        LogCapture log;
        for (int page = 2; page <= 8; ++page)
            QVERIFY(tap(PageDown));
        QCOMPARE(console().label(Label + PageUp), QString("Page 8"));
        QCOMPARE(log.count("the maximum page number is currently reached"), 1);
    }

    void aDeviceWithMorePresetsGetsKeysForThem()
    {
        MemoryModel::ShowRecord record = show();
        record.devices[1].groupId = BizModel::Device::defaultDeviceGroupId;
        record.devices[1].maxPresetCount = 255;
        start(record);
        auto& control = m_pRig->control();
        control.activateDevice(B);
        control.showPresetPage(0);
        QVERIFY(waitSlot(2, ECLEDColor::Yellow, "Steps"));
        control.showPresetPage(25);
        QVERIFY(waitPage(26));
        QVERIFY(waitSlot(252, ECLEDColor::Off, {})); // not the first page's
        QVERIFY(tap({Store, keyOf(254)}));
        QVERIFY(waitSlot(254, ECLEDColor::Green, "Preset 255"));
        m_pRig->forget();
        QVERIFY(tap(keyOf(254)));
        QVERIFY(m_pRig->waitAsked(Operation::SampleLoadPreset, 1));
        // Every device has them from then on.
        control.activateDevice(A);
        QVERIFY(waitPage(13));
        QVERIFY(waitSlot(127, ECLEDColor::Off, {}));
    }

    /// The last test: further commands stay for as long as the process.
    void afterASecondSetUpAPageTurnIsStillWorkedOnce()
    {
        const auto requestsOfATurn = [this](int page) {
            QCoreApplication::processEvents();
            console().takeRequests();
            m_pRig->control().showPresetPage(page);
            return console().settle() ? int(console().takeRequests().size()) : -1;
        };
        const int once = requestsOfATurn(1);
        QVERIFY(once > PageSize);
        ECManager::instance()->init(keyboard());
        QVERIFY(console().settle());
        QCOMPARE(requestsOfATurn(2), once);
    }

private:
    /// What the requests since the last call light the keys with, by key.
    QMap<quint32, ECButtonColor> takeLights()
    {
        QMap<quint32, ECButtonColor> lights;
        const auto requests = console().takeRequests();
        for (const auto& request : requests) {
            if (const auto* color = std::get_if<ECButtonColor>(&request.message))
                lights[color->ECKey] = *color;
        }
        return lights;
    }
    bool answer(QMessageBox::StandardButton button)
    {
        m_pRig->control().answerMessageBox(button);
        return console().settle();
    }
    /// Waits until the whole group loads presets to program.
    bool waitLoadsToPGM() const
    {
        return QTest::qWaitFor(
            [&] { return m_pRig->device(A)->loadToPGMEnable() && m_pRig->device(B)->loadToPGMEnable(); });
    }
    bool waitCleared() const
    {
        return QTest::qWaitFor([&] { return presets().isEmpty(); });
    }
    bool waitPage(int number) { return console().waitLabel(Label + PageUp, QString("Page %1").arg(number)); }
};

QTEST_MAIN(TestPresetModes)
#include "tst_presetmodes.moc"

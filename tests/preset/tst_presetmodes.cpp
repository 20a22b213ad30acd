#include "logcapture.h"
#include "presetscene.h"

#include <QDialog>
#include <QElapsedTimer>

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

        const auto isNotOffered = [this] {
            m_pRig->forget();
            return console().waitLabel(Label + LoadTarget, {}) && tap(LoadTarget) && m_pRig->notices().empty()
                && console().shows(LoadTarget, ECLEDColor::Off);
        };
        m_pRig->control().activateDevice({});
        QVERIFY(isNotOffered());
        MemoryModel::ShowRecord record = show();
        record.devices[0].loadToPGMEnabled = false;
        start(record);
        QVERIFY(isNotOffered());
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

private:
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

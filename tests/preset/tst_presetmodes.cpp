#include "logcapture.h"
#include "presetscene.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTranslator>

using namespace PresetScene;
using namespace std::chrono_literals;
using BizModel::SceneType;
using TestSupport::LogCapture;

namespace {

const QString ClearQuestion = QStringLiteral("box 0 Are you sure you want to delete all the presets?");
const QString LoadQuestion = QStringLiteral("box 0 The preset will be directly loaded to PGM. Continue?");
const QString CleaningDialog = QStringLiteral("wait Cleaning presets,please wait...");
const QString Hide = QStringLiteral("hide");

// A hold clears after three seconds.
constexpr int AlmostThreeSecondsMs = 2700;
constexpr int MoreThanThreeSecondsMs = 5000;

/// The same key on the on-screen console.
constexpr quint32 onScreen(quint16 key)
{
    return Constants::VirtualKeyOffset + TestSupport::appNumber(key);
}

} // namespace

/// The preset group's function keys: what they arm, ask and switch; and its pages.
class TestPresetModes : public PresetTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void oneModeReplacesTheOther();
    void holdingClearForThreeSecondsRemovesAllPresets();
    void clearReachesNoOfflineDeviceAndTellsFailures();
    void theOnScreenClearKeyAsks_data();
    void theOnScreenClearKeyAsks();
    void aNoLeavesTheNextAnswerToTheQuestion();
    void loadToPGMAsksAndLoadToPVWDoesNot();
    void loadToPGMIsLeftAsItIs_data();
    void loadToPGMIsLeftAsItIs();
    void pagesRunToTheLastPresetOfTheDevice();
    void theApplicationTurnsThePageToo();
    void anotherDeviceMayHaveFewerPages();
    void labelsFollowTheLanguage();
    void keysThatMustBeReleasedPassADialog();

private:
    void answer(QMessageBox::StandardButton button)
    {
        m_pRig->control().answerMessageBox(button);
        QVERIFY(console().settle());
    }
    /// Waits until the whole group loads presets to program.
    bool waitLoadsToPGM() const
    {
        return QTest::qWaitFor(
            [&] { return m_pRig->device(A)->loadToPGMEnable() && m_pRig->device(B)->loadToPGMEnable(); });
    }
    bool waitCleared(const QString& device = A) const
    {
        return QTest::qWaitFor([&] { return presets(device).isEmpty(); });
    }
};

void TestPresetModes::oneModeReplacesTheOther()
{
    QVERIFY(tap(Store));
    QVERIFY(tap(Store));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().shows(Store, ECLEDColor::Off));
    QVERIFY(tap(Store));
    QVERIFY(tap(Remove));
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
    console().release(ClearAll);
    QVERIFY(console().settle());
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().shows(ClearAll, ECLEDColor::Off));
}

// ---- Clearing all -----------------------------------------------------------------------------------------

void TestPresetModes::holdingClearForThreeSecondsRemovesAllPresets()
{
    console().press(ClearAll);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Green));
    QTest::qWait(AlmostThreeSecondsMs);
    console().release(ClearAll);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
    QTest::qWait(600); // past the time at which it would have cleared
    QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
    QCOMPARE(m_pRig->countNotices(ClearQuestion), 0);

    QElapsedTimer held;
    held.start();
    console().press(ClearAll);
    QVERIFY(m_pRig->waitAsked(Operation::AsyncRemoveFile, 1, MoreThanThreeSecondsMs));
    QVERIFY(held.elapsed() >= 3000);
    QCOMPARE(m_pRig->asked(Operation::AsyncRemoveFile), QStringList{QStringLiteral("device=A types=[6,8]")});
    QVERIFY(waitCleared());
    QVERIFY(m_pRig->waitNotice(Hide));
    QCOMPARE(m_pRig->countNotices(CleaningDialog), 1);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
    for (int slot = 0; slot < PageSize; ++slot)
        QVERIFY(console().waitShows(keyOf(slot), ECLEDColor::Off));
    console().release(ClearAll);
    QVERIFY(console().settle());
    QCOMPARE(mode(), PresetOptMode::Noting);
}

void TestPresetModes::clearReachesNoOfflineDeviceAndTellsFailures()
{
    LogCapture log;
    const auto clear = [this, &log](int times) {
        tap(onScreen(ClearAll));
        m_pRig->control().answerMessageBox(QMessageBox::Yes);
        return log.waitFor(QStringLiteral("Clear all presets pressed.")) && console().settle()
            && log.count(QStringLiteral("Clear all presets pressed.")) == times;
    };
    m_pRig->control().setOnline(A, false);
    QVERIFY(clear(2)); // the key and what it brings about say the same
    QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());
    QCOMPARE(m_pRig->countNotices(CleaningDialog), 0);

    m_pRig->control().setOnline(A, true);
    operations().fail(Operation::AsyncRemoveFile, QStringLiteral("Write-protected."), Times::Once);
    QVERIFY(clear(4));
    QVERIFY(log.waitFor(
        QStringLiteral("Remove preset file has failed! PresetPVW & PresetPVW file type. Write-protected.")));
    QVERIFY(m_pRig->waitNotice(Hide));
    QCOMPARE(presets(), (QList<int>{1, 3}));

    m_pRig->control().activateDevice({});
    QVERIFY(clear(6));
    QVERIFY(log.contains(QStringLiteral("Clear all presets failed: device is nullptr.")));
}

void TestPresetModes::theOnScreenClearKeyAsks_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("cleared");
    QTest::newRow("yes") << int(QMessageBox::Yes) << true;
    QTest::newRow("no") << int(QMessageBox::No) << false;
    QTest::newRow("closed") << int(QMessageBox::NoButton) << false;
}

void TestPresetModes::theOnScreenClearKeyAsks()
{
    QFETCH(int, button);
    QFETCH(bool, cleared);
    console().press(onScreen(ClearAll));
    QVERIFY(console().settle());
    QCOMPARE(m_pRig->countNotices(ClearQuestion), 1);
    QCOMPARE(mode(), PresetOptMode::ClearAll);
    QVERIFY(console().shows(ClearAll, ECLEDColor::Green));
    QVERIFY(m_pRig->asked(Operation::AsyncRemoveFile).isEmpty());

    answer(QMessageBox::StandardButton(button));
    QCOMPARE(mode(), PresetOptMode::Noting);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
    QCOMPARE(m_pRig->asked(Operation::AsyncRemoveFile).size(), cleared ? 1 : 0);
    if (cleared)
        QVERIFY(waitCleared());
    answer(QMessageBox::Yes); // leave no question open for the next test
}

void TestPresetModes::aNoLeavesTheNextAnswerToTheQuestion()
{
    QVERIFY(tap(onScreen(ClearAll)));
    answer(QMessageBox::No);
    // The key of another question is pressed; its answer still counts as the first one's.
    QVERIFY(tap(LoadTarget));
    QCOMPARE(m_pRig->countNotices(LoadQuestion), 1);
    answer(QMessageBox::Yes);
    QVERIFY(waitCleared());
    QVERIFY(m_pRig->asked(Operation::ParallelSetLoadToPresetPGMStatus).isEmpty());
    answer(QMessageBox::Yes); // now the second one's turn has come
    QVERIFY(waitLoadsToPGM());
    QCOMPARE(m_pRig->asked(Operation::AsyncRemoveFile).size(), 1);
}

// ---- Load target ------------------------------------------------------------------------------------------

void TestPresetModes::loadToPGMAsksAndLoadToPVWDoesNot()
{
    QVERIFY(console().waitLabel(Label + LoadTarget, QStringLiteral("Load to PVW")));
    QVERIFY(console().shows(LoadTarget, ECLEDColor::Off));
    QVERIFY(tap(LoadTarget));
    QCOMPARE(m_pRig->countNotices(LoadQuestion), 1);
    QVERIFY(m_pRig->asked(Operation::ParallelSetLoadToPresetPGMStatus).isEmpty());
    answer(QMessageBox::Yes);
    QVERIFY(console().waitShows(LoadTarget, ECLEDColor::Red));
    QVERIFY(console().waitLabel(Label + LoadTarget, QStringLiteral("Load to PGM")));
    QVERIFY(QTest::qWaitFor(
        [&] { return m_pRig->device(A)->loadToPGMEnable() && m_pRig->device(B)->loadToPGMEnable(); }));
    QVERIFY(QTest::qWaitFor([&] { return tap(keyOf(2)) && mode() == PresetOptMode::Noting; }));
    QTRY_COMPARE(scene(SceneType::PGM), QStringLiteral("Walk"));

    QVERIFY(tap(LoadTarget));
    QVERIFY(console().waitShows(LoadTarget, ECLEDColor::Off));
    QVERIFY(console().waitLabel(Label + LoadTarget, QStringLiteral("Load to PVW")));
    QCOMPARE(m_pRig->countNotices(LoadQuestion), 1);
}

void TestPresetModes::loadToPGMIsLeftAsItIs_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("answered with no") << QStringLiteral("no");
    QTest::newRow("closed") << QStringLiteral("closed");
    QTest::newRow("a device that cannot") << QStringLiteral("not enabled");
    QTest::newRow("no device") << QStringLiteral("no device");
    QTest::newRow("a device that fails") << QStringLiteral("fails");
}

void TestPresetModes::loadToPGMIsLeftAsItIs()
{
    QFETCH(QString, reason);
    LogCapture log;
    if (reason == QLatin1String("not enabled")) {
        MemoryModel::ShowRecord record = show();
        record.devices[0].loadToPGMEnabled = false;
        start(record);
        QVERIFY(console().waitLabel(Label + LoadTarget, QString()));
    } else if (reason == QLatin1String("no device")) {
        m_pRig->control().activateDevice({});
        QVERIFY(console().waitLabel(Label + LoadTarget, QString()));
    } else if (reason == QLatin1String("fails")) {
        operations().fail(
            Operation::ParallelSetLoadToPresetPGMStatus, QStringLiteral("Busy."), Times::Always);
    }
    QVERIFY(tap(LoadTarget));
    if (reason == QLatin1String("no"))
        answer(QMessageBox::No);
    else if (reason == QLatin1String("closed"))
        answer(QMessageBox::NoButton);
    else if (reason == QLatin1String("fails"))
        answer(QMessageBox::Yes);
    if (reason == QLatin1String("fails"))
        QVERIFY(log.waitFor(QStringLiteral("swap set failed. Busy.")));
    else
        QVERIFY(m_pRig->asked(Operation::ParallelSetLoadToPresetPGMStatus).isEmpty());
    const bool isAsked = !reason.contains(QLatin1String("device")) && reason != QLatin1String("not enabled");
    QCOMPARE(m_pRig->countNotices(LoadQuestion), isAsked ? 1 : 0);
    QVERIFY(!m_pRig->device(A)->loadToPGMEnable());
    QVERIFY(console().shows(LoadTarget, ECLEDColor::Off));
}

// ---- Pages ------------------------------------------------------------------------------------------------

void TestPresetModes::pagesRunToTheLastPresetOfTheDevice()
{
    QList<int> announced;
    QObject context;
    QObject::connect(
        &m_pRig->model().deviceList(), &BizModel::DeviceList::signalPageChanged, &context,
        [&](int page) { announced.append(page); });
    LogCapture log;
    constexpr int lastPage = 12; // 128 presets on 10 keys
    for (int page = 1; page <= lastPage; ++page)
        QVERIFY(tap(PageDown));
    QCOMPARE(console().label(Label + PageUp), QStringLiteral("Page 13"));
    QCOMPARE(announced.size(), lastPage);
    QCOMPARE(announced.last(), lastPage);
    QVERIFY(!log.contains(QStringLiteral("Can't perform page turning")));
    QVERIFY(tap(PageDown));
    QVERIFY(log.contains(QStringLiteral(
        "Can't perform page turning, the maximum page number is currently reached. This is PresetCommand")));
    QCOMPARE(ECManager::instance()->page("PresetCommand"), lastPage);

    // The last page has keys beyond the last preset.
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(128)));
    QVERIFY(m_pRig->asked(Operation::CreatePresetFile).isEmpty());
    QVERIFY(tap(Store));
    QVERIFY(tap(keyOf(127)));
    QCOMPARE(presets().last(), 128);
    QVERIFY(console().waitShows(keyOf(127), ECLEDColor::Green));
    QVERIFY(tap(PageUp));
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 12")));
    QVERIFY(console().waitShows(keyOf(117), ECLEDColor::Off));
}

void TestPresetModes::theApplicationTurnsThePageToo()
{
    QList<int> announced;
    QObject context;
    QObject::connect(
        &m_pRig->model().deviceList(), &BizModel::DeviceList::signalPageChanged, &context,
        [&](int page) { announced.append(page); });
    auto& control = m_pRig->control();
    control.showPresetPage(1);
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 2")));
    QVERIFY(console().waitShows(keyOf(11), ECLEDColor::Yellow));
    control.showPresetPage(99);
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 13")));
    control.showPresetPage(-5);
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 1")));
    QCOMPARE(announced, (QList<int>{1, 99, -5})); // the console says nothing of its own
    QVERIFY(tap(PageDown)); // and follows still, after a turn of its own
    control.showPresetPage(3);
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 4")));
}

void TestPresetModes::anotherDeviceMayHaveFewerPages()
{
    MemoryModel::ShowRecord record = show();
    record.devices[1].groupId = BizModel::Device::defaultDeviceGroupId;
    record.devices[1].maxPresetCount = 15;
    start(record);
    m_pRig->control().showPresetPage(5);
    m_pRig->control().activateDevice(B);
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 2")));
    QVERIFY(console().waitLabel(Label + keyOf(11), QStringLiteral("Finale")));
    m_pRig->control().activateDevice({}); // eight pages without a device
    LogCapture log;
    for (int page = 2; page <= 8; ++page)
        QVERIFY(tap(PageDown));
    QCOMPARE(console().label(Label + PageUp), QStringLiteral("Page 8"));
    QCOMPARE(log.count(QStringLiteral("the maximum page number is currently reached")), 1);
}

void TestPresetModes::labelsFollowTheLanguage()
{
    class Shouting : public QTranslator {
        QString translate(const char* context, const char* text, const char*, int) const override
        {
            return qstrcmp(context, "Model") == 0 ? QString::fromLatin1(text).toUpper() : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Shouting translator;
    QCoreApplication::installTranslator(&translator);
    ECManager::instance()->retranslateUi();
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("PAGE 1")));
    QVERIFY(console().waitLabel(Label + LoadTarget, QStringLiteral("LOAD TO PVW")));
    QVERIFY(tap(LoadTarget));
    QCOMPARE(
        m_pRig->countNotices(QStringLiteral("box 0 THE PRESET WILL BE DIRECTLY LOADED TO PGM. CONTINUE?")),
        1);
    answer(QMessageBox::No);
    QCoreApplication::removeTranslator(&translator);
    // The host repaints everything.
    ECManager::instance()->slotOrvanePluginModeChanged();
    QVERIFY(console().waitLabel(Label + PageUp, QStringLiteral("Page 1")));
    QVERIFY(console().waitLabel(Label + LoadTarget, QStringLiteral("Load to PVW")));
}

void TestPresetModes::keysThatMustBeReleasedPassADialog()
{
    console().press(ClearAll);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Green));
    QDialog dialog;
    dialog.open();
    LogCapture log;
    QVERIFY(tap(keyOf(2)));
    QVERIFY(log.contains(QStringLiteral("[locate key no response] now there is an modal window.")));
    console().release(ClearAll);
    QVERIFY(console().waitShows(ClearAll, ECLEDColor::Off));
    QCOMPARE(mode(), PresetOptMode::Noting);
}

QTEST_MAIN(TestPresetModes)
#include "tst_presetmodes.moc"

#include "dice.h"
#include "stormconsole.h"

#include "ecmanager.h"
#include "functioncommand.h"
#include "layercommand.h"
#include "memorydevicelist.h"
#include "presetcommand.h"
#include "screencommand.h"
#include "showfile.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "parallelcontrol/parallelmanager.h"

#include <QApplication>
#include <QDialog>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QtEndian>

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>

using namespace Storm;
using namespace std::chrono_literals;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;
using MemoryModel::Times;
using PresetMode = BizModel::Enum::Preset::PresetOptMode;
using Clock = std::chrono::steady_clock;

namespace {

constexpr ScreenKey Main{ScreenType::RegularScreen, 1};
constexpr ScreenKey Side{ScreenType::RegularScreen, 2};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};
constexpr auto FileType = MemoryModel::FileType::PresetPVW;

constexpr int DefaultSeconds = 3;
/// Requests are short and the console's threads idle: what it shows settles
/// well within this.
constexpr int SettleMs = 20000;
/// Reports that may be on their way to the console's thread, so that it does
/// not fall behind.
constexpr int ReportsAhead = 64;

} // namespace

/// Keys of all groups on both consoles, the T-Bar, the application and the
/// model's own threads at once; when they are done, the console shows what the
/// model holds.
class TestStorm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void afterAStormTheConsoleShowsTheModel();

private:
    void letTheGuiCatchUp();

    // On the console's side, whose reports have a thread of their own.
    void playConsole(Dice dice);
    void moveTBar(Dice& dice, int& position);
    const EC::s_ECButtonConfig& someKey(Dice& dice);
    /// Keys that are pressed on purpose only.
    bool isSpecial(const EC::s_ECButtonConfig& key) const
    {
        return key.ECKey == m_sourceKey || m_heldKeys.contains(key.ECKey);
    }

    // The application and the devices, each on two threads.
    void changeModel(Dice dice);
    void changeDevices(Dice& dice);
    void changeScreens(Dice& dice);
    void changeLayers(Dice& dice);
    void changeInputs(Dice& dice);
    void changePresets(Dice& dice);
    void orderTrouble(Dice& dice);

    // On the GUI thread.
    void playApplication(Dice& dice);
    void tapOnScreen(const EC::s_ECButtonConfig& key);

    void prepare();
    void play(Dice& dice, std::chrono::milliseconds duration);
    void calmDown();
    QString whatIsLeftOver() const;
    QString whatIsWrong();

    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Control& control() { return m_pRig->control(); }
    ScreenKey someScreen(Dice& dice) { return dice.oneOf({Main, Main, Side, Confidence}); }
    const QString& someDevice(Dice& dice) { return dice.chance(80) ? m_devices[0] : m_devices[1]; }

    const Keyboard m_keyboard{QStringLiteral(EXAMPLE_KEYBOARD)};
    /// The keys that act when held.
    QList<quint16> m_heldKeys;
    /// The key that switches the monitor's source, which takes the console's
    /// thread a while.
    quint16 m_sourceKey = 0;
    QStringList m_devices;
    QTemporaryDir m_directory;
    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    std::unique_ptr<QDialog> m_pDialog;
    std::atomic<bool> m_bStop{false};
    std::atomic<int> m_nGuiTurns{0};
};

/// On a slow machine everybody else would pile up more work for the GUI thread than it gets done in the end.
void TestStorm::letTheGuiCatchUp()
{
    const int seen = m_nGuiTurns;
    QMetaObject::invokeMethod(
        this, [this] { ++m_nGuiTurns; }, Qt::QueuedConnection);
    while (m_nGuiTurns == seen && !m_bStop)
        std::this_thread::sleep_for(1ms);
}

// ---- The console --------------------------------------------------------------------------------

const EC::s_ECButtonConfig& TestStorm::someKey(Dice& dice)
{
    const char* const group = dice.oneOf<const char*>(
        {ScreenGroup, LayerGroup, LayerGroup, InputGroup, PresetGroup, PresetGroup, NumberGroup,
         FunctionGroup});
    const auto& keys = m_keyboard.group(group).m_buttons;
    return *keys.at(dice.below(keys.size()));
}

void TestStorm::moveTBar(Dice& dice, int& position)
{
    position = std::clamp(position + dice.below(17) - 8, 0, 65);
    console().tbar(quint32(position), dice.oneOf({quint8(BottomToTop), quint8(TopToBottom)}));
}

void TestStorm::playConsole(Dice dice)
{
    int position = 1;
    quint16 held = 0;
    Clock::time_point heldUntil;
    for (int reports = 1; !m_bStop; ++reports) {
        if (dice.chance(20)) {
            moveTBar(dice, position);
        } else if (held != 0 && Clock::now() >= heldUntil) {
            console().release(std::exchange(held, 0));
        } else if (held == 0 && dice.chance(2)) {
            held = m_heldKeys.at(dice.below(m_heldKeys.size()));
            heldUntil = Clock::now() + dice.oneOf({20ms, 20ms, 20ms, 2100ms, 3100ms});
            console().press(held);
        } else if (dice.below(2000) == 0) {
            console().report(ConsolePanel::DviReport{{{0, quint8(dice.below(2))}}});
            console().tap(m_sourceKey);
        } else if (const auto& key = someKey(dice); !isSpecial(key)) {
            if (dice.chance(50))
                console().press(key.ECKey);
            if (dice.chance(80))
                console().release(key.ECKey);
        }
        if (reports % ReportsAhead == 0) {
            console().settleWithoutEventLoop(SettleMs);
            letTheGuiCatchUp();
        }
    }
}

// ---- The model ----------------------------------------------------------------------------------

void TestStorm::changeModel(Dice dice)
{
    using Change = void (TestStorm::*)(Dice&);
    while (!m_bStop) {
        if (dice.chance(2))
            letTheGuiCatchUp();
        const auto change = dice.oneOf<Change>(
            {&TestStorm::changeDevices, &TestStorm::changeScreens, &TestStorm::changeLayers,
             &TestStorm::changeLayers, &TestStorm::changeInputs, &TestStorm::changePresets,
             &TestStorm::orderTrouble});
        (this->*change)(dice);
        if (dice.chance(50))
            std::this_thread::sleep_for(std::chrono::microseconds(dice.below(4000)));
    }
}

void TestStorm::changeDevices(Dice& dice)
{
    const QString device = someDevice(dice);
    switch (dice.below(20)) {
    case 0:
        control().activateDevice(dice.chance(10) ? QString() : device);
        break;
    case 1:
        control().setGroup(device, dice.oneOf({QStringLiteral("0"), QStringLiteral("1")}));
        break;
    case 2:
        control().setUpgrading(device, true);
        control().setUpgrading(device, false);
        break;
    case 3:
        control().setOnline(device, dice.chance(70));
        break;
    case 4:
        control().setOutputOnline(device, 2, dice.chance(70));
        break;
    case 5:
        if (dice.chance(2))
            control().removeDevice(m_devices[2]); // it does not come back
        else
            control().activateDevice(m_devices[2]);
        break;
    case 6:
        control().setLoadToPGM(device, dice.chance(50));
        break;
    case 7:
        control().setSwap(device, dice.chance(50));
        break;
    default: // the first device has most to show
        control().activateDevice(m_devices[0]);
        break;
    }
}

void TestStorm::changeScreens(Dice& dice)
{
    const QString device = someDevice(dice);
    const ScreenKey screen = someScreen(dice);
    switch (dice.below(11)) {
    case 0: {
        const auto added =
            control().addScreen(device, dice.oneOf({ScreenType::RegularScreen, ScreenType::AUXScreen}));
        if (dice.chance(30))
            control().activateScreen(device, added);
        break;
    }
    case 1:
        // The screens of the show stay.
        control().removeScreen(device, {ScreenType::RegularScreen, quint32(dice.below(4) + 4)});
        control().removeScreen(device, {ScreenType::AUXScreen, 2});
        break;
    case 2:
        control().renameScreen(device, screen, dice.name("Screen"));
        break;
    case 3:
        control().setScreenIndex(device, screen, dice.below(36) - 2);
        break;
    case 4:
        control().selectScreens(device, {Main, screen});
        break;
    case 5:
        control().activateScreen(device, screen);
        break;
    case 6:
        control().setEffectTime(device, screen, dice.below(15) * 0.1);
        break;
    case 7:
        control().setFreeze(device, screen, dice.chance(50));
        break;
    case 8:
        control().setFTB(device, screen, dice.chance(50));
        break;
    case 9:
        control().setPGMEdit(device, screen, dice.chance(50));
        break;
    case 10:
        control().setScreenState(device, screen, BizModel::Screen::State::Normal);
        break;
    }
}

void TestStorm::changeLayers(Dice& dice)
{
    const QString device = someDevice(dice);
    const ScreenKey screen = someScreen(dice);
    const auto scene = dice.chance(80) ? SceneType::PVW : SceneType::PGM;
    const quint32 layer = quint32(dice.below(6) + 1);
    const QRect window(dice.below(3000), dice.below(900), 480, 270);
    switch (dice.below(7)) {
    case 0:
        control().addLayer(device, screen, scene, quint32(dice.below(14) + 1), window);
        break;
    case 1:
        control().removeLayer(device, screen, scene, layer);
        break;
    case 2:
        control().renameLayer(device, screen, scene, layer, dice.name("Layer"));
        break;
    case 3:
        control().selectLayers(device, screen, scene, {layer});
        break;
    case 4:
        control().selectLayers(device, screen, scene, {});
        break;
    case 5:
        control().setLayerWindow(device, screen, scene, layer, window);
        break;
    case 6:
        control().setLayerSource(device, screen, scene, layer, quint32(dice.below(14) + 1));
        break;
    }
}

void TestStorm::changeInputs(Dice& dice)
{
    const QString device = someDevice(dice);
    const quint32 input = quint32(dice.below(14) + 1);
    switch (dice.below(7)) {
    case 0: {
        // Most attempts find the connector taken.
        const quint32 card = input <= 8 ? 1 : 2;
        const quint32 connector = card == 1 ? input : input - 8;
        control().addInput(
            device, {input, dice.name("Input"), card, connector, BizModel::CapacityMode::_SL, true, false});
        break;
    }
    case 1:
        if (dice.chance(30))
            control().removeInput(device, input);
        break;
    case 2:
        control().renameInput(device, input, dice.name("Input"));
        break;
    case 3:
        control().setSignal(device, input, dice.chance(70));
        break;
    case 4:
        control().setOverload(device, input, dice.chance(30));
        break;
    case 5:
        control().selectInput(device, input);
        break;
    case 6:
        control().setConnectorCapacity(
            device, 1, quint32(dice.below(8) + 1),
            dice.oneOf(
                {BizModel::CapacityMode::_SL, BizModel::CapacityMode::_DL, BizModel::CapacityMode::_4K}));
        break;
    }
}

void TestStorm::changePresets(Dice& dice)
{
    const QString device = someDevice(dice);
    const quint16 preset = quint16(dice.below(15) + 1);
    switch (dice.below(7)) {
    case 0:
    case 1:
        control().addPreset(device, FileType, preset);
        break;
    case 2:
        control().coverPreset(device, FileType, preset);
        break;
    case 3:
        control().renamePreset(device, FileType, preset, dice.name("Preset"));
        break;
    case 4:
        control().removePreset(device, FileType, preset);
        break;
    case 5:
        control().activatePreset(device, FileType, preset);
        break;
    case 6:
        if (dice.chance(10))
            control().clearPresets(device);
        break;
    }
}

void TestStorm::orderTrouble(Dice& dice)
{
    const auto operation = dice.oneOf({Operation::AsyncCreateScreen,   Operation::CreateDefaultScreen,
                                       Operation::ParallelTakeScreen,  Operation::ParallelCutScreen,
                                       Operation::SampleTBar,          Operation::SampleLoadPreset,
                                       Operation::SetSamplingType,     Operation::AddLayer,
                                       Operation::RemoveLayers,        Operation::UpdateWindow,
                                       Operation::BindSource,          Operation::CheckOperationResources,
                                       Operation::AsyncRemoveLayer,    Operation::AsyncAddCopyLayers,
                                       Operation::AsyncSaveDeviceData, Operation::AsyncRemoveFile,
                                       Operation::CreatePresetFile,    Operation::CoverPreset,
                                       Operation::RemoveFile,          Operation::UpdatePresetModelData,
                                       Operation::CheckPresetData});
    auto& operations = m_pRig->operations();
    operations.clearOrders(operation); // orders for once add up
    if (dice.chance(50))
        operations.delay(operation, std::chrono::milliseconds(dice.below(20)), Times::Once);
    else
        operations.fail(operation, QStringLiteral("storm"), Times::Once);
}

// ---- The application ----------------------------------------------------------------------------

void TestStorm::tapOnScreen(const EC::s_ECButtonConfig& key)
{
    for (const auto tag : {ReportECButtonPressed, ReportECButtonRelease}) {
        QByteArray value(sizeof(ECButtonOperState), '\0');
        qToLittleEndian(Constants::VirtualKeyOffset + key.OrvaneECKey, value.data());
        ECManager::instance()->upTLVDecodeFinished(tag, value);
    }
}

void TestStorm::playApplication(Dice& dice)
{
    ECManager* const manager = ECManager::instance();
    switch (dice.below(24)) {
    case 0:
        m_pDialog = std::make_unique<QDialog>();
        m_pDialog->open();
        break;
    case 1:
        manager->lockKeypad();
        break;
    case 2:
        manager->lockTBar();
        break;
    case 3:
        qApp->setProperty(Constants::QuenorProperty, true);
        break;
    case 4:
        manager->retranslateUi();
        break;
    case 5:
        manager->slotOrvanePluginModeChanged();
        break;
    case 6:
        control().showPresetPage(dice.below(15) - 1);
        break;
    case 7:
        control().answerMessageBox(dice.chance(10) ? QMessageBox::Yes : QMessageBox::No);
        break;
    default:
        m_pDialog.reset();
        qApp->setProperty(Constants::QuenorProperty, false);
        manager->unlockKeypad();
        manager->unlockTBar();
        tapOnScreen(someKey(dice));
        break;
    }
}

// ---- Before and after ---------------------------------------------------------------------------

void TestStorm::prepare()
{
    QVERIFY(m_keyboard.config());
    QStringList faults;
    auto show = MemoryModel::loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
    QVERIFY2(show, qPrintable(faults.join(QLatin1Char('\n'))));
    for (auto& device : show->devices) {
        m_devices.append(device.ipMacSn);
        for (auto& screen : device.screens)
            screen.effectSeconds = 0.1;
    }
    QVERIFY(m_devices.size() == 3 && m_directory.isValid());
    const auto hold = [this](const char* group, auto type) {
        m_heldKeys.append(m_keyboard.key(group, type).ECKey);
    };
    hold(LayerGroup, LayerCallbackType::eClearLayersCB);
    hold(LayerGroup, LayerCallbackType::eSetSelectedLayerTopZValueCB);
    hold(LayerGroup, LayerCallbackType::eSetSelectedLayerBottomZValueCB);
    hold(PresetGroup, PresetCallbackType::eClearPresetsCB);
    hold(FunctionGroup, FunctionCallbackType::eLockECTBarCB);
    hold(FunctionGroup, FunctionCallbackType::eLockECKeyboardCB);

    m_sourceKey = m_keyboard.key(FunctionGroup, FunctionCallbackType::eSwitchSecondaryScreenSignalCB).ECKey;

    m_pRig = std::make_unique<TestSupport::ModelRig>(m_keyboard.config());
    QVERIFY(m_pRig->load(*show));
    m_pRig->model().setShowFile(m_directory.filePath(QStringLiteral("show.json")));
}

void TestStorm::play(Dice& dice, std::chrono::milliseconds duration)
{
    m_pRig->forget();
    m_bStop = false;
    const auto seed = [&dice] { return Dice(quint32(dice.below(std::numeric_limits<int>::max()))); };
    std::thread threads[] = {
        std::thread(&TestStorm::playConsole, this, seed()),
        std::thread(&TestStorm::changeModel, this, seed()),
        std::thread(&TestStorm::changeModel, this, seed())};
    QTimer application;
    connect(&application, &QTimer::timeout, this, [&] { playApplication(dice); });
    application.start(2);
    QTest::qWait(int(duration.count()));
    application.stop();
    m_bStop = true;
    for (std::thread& thread : threads)
        thread.join();
}

/// Ends what is under way, and repaints as little as possible: what the console has missed must stay missing.
void TestStorm::calmDown()
{
    ECManager* const manager = ECManager::instance();
    m_pDialog.reset();
    qApp->setProperty(Constants::QuenorProperty, false);
    m_pRig->operations().clearAllOrders();
    manager->unlockTBar();
    manager->unlockKeypad();
    console().settle();
    for (const quint16 key : qAsConst(m_heldKeys))
        console().release(key);
    console().settle();
    // A hold may have locked the keypad once more, and then its release was dropped.
    manager->unlockKeypad();
    console().report(ConsolePanel::LockReport{ConsolePanel::LockTarget::Keypad, false});
    for (const auto& group : m_keyboard.config()->m_commands) {
        for (const auto& key : group->m_buttons) {
            const bool mayTurnPage = key->OrvaneKey == 2 || key->OrvaneKey == 3;
            if (!mayTurnPage || isSpecial(*key) || console().shows(key->ECKey, ECLEDColor::Green))
                console().release(key->ECKey);
        }
    }
    console().settle();
    for (const auto type : {PresetCallbackType::eRemoveSelectedPresetCB, PresetCallbackType::eSavePresetCB}) {
        do { // one press arms, the next one disarms
            console().tap(m_keyboard.key(PresetGroup, type).ECKey);
            console().settle();
        } while (m_pRig->model().deviceList().presetOperateMode() != PresetMode::Noting);
    }
    QThreadPool::globalInstance()->waitForDone();
}

QString TestStorm::whatIsLeftOver() const
{
    if (ParallelControl::ParallelManager::instance()->currentTaskCount() != 0)
        return QStringLiteral("a request is still running");
    const auto devices = m_pRig->model().deviceList().devices();
    for (const auto& device : devices) {
        const auto screens = device.lock()->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
        for (const auto& screen : screens) {
            const auto state = screen.lock()->state();
            if (state != BizModel::Screen::State::Normal && state != BizModel::Screen::State::Tbar_taking)
                return QStringLiteral("a screen is in state %1: %2").arg(state).arg(screen.lock()->name());
        }
    }
    QString dialog; // the application has one for all
    for (const auto& notice : m_pRig->notices()) {
        if (notice.text.startsWith(QLatin1String("wait ")))
            dialog = notice.text;
        else if (notice.text == QLatin1String("hide"))
            dialog.clear();
    }
    if (!dialog.isEmpty())
        return dialog;
    QStringList faults; // of what would be saved
    (void)MemoryModel::parseShow(m_pRig->model().show(), faults);
    return faults.join(QLatin1Char('\n'));
}

QString TestStorm::whatIsWrong()
{
    const QString left = whatIsLeftOver();
    return left.isEmpty() ? difference(*m_pRig, m_keyboard) : left;
}

void TestStorm::afterAStormTheConsoleShowsTheModel()
{
    bool isSet = false;
    const int fromEnvironment = qEnvironmentVariableIntValue("ORVANE_STORM_SECONDS", &isSet);
    const auto end = Clock::now() + std::chrono::seconds(isSet ? fromEnvironment : DefaultSeconds);
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    const auto quiet = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    prepare();
    if (QTest::currentTestFailed())
        return;

    // What one change has missed another one makes up for, so there are many ends.
    Dice dice(seed);
    QString wrong;
    while (wrong.isEmpty() && Clock::now() < end) {
        play(dice, dice.chance(8) ? 4000ms : std::chrono::milliseconds(20 + dice.below(400)));
        calmDown();
        (void)QTest::qWaitFor([this] { return whatIsWrong().isEmpty(); }, SettleMs);
        console().settle();
        wrong = whatIsWrong();
    }
    const auto unreadable = console().unreadableRequests();
    m_pRig.reset();
    qInstallMessageHandler(quiet);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    QCOMPARE(unreadable, quint64(0));
}

QTEST_MAIN(TestStorm)
#include "tst_storm.moc"

#include "memorydevicelist.h"
#include "screenscene.h"

#include "eccommanditem.h"
#include "ecconsolemanager.h"
#include "ecmanager.h"

#include <QDialog>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>
#include <QtEndian>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace ScreenScene;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using MemoryModel::Times;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");

constexpr int DefaultSeconds = 3;
/// Requests are short and the console's threads idle: what it shows settles well within this.
constexpr int SettleMs = 10000;

class Dice {
public:
    explicit Dice(quint32 seed)
        : m_generator(seed)
    {
    }
    int below(int end) { return int(m_generator.bounded(end)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T> T oneOf(std::initializer_list<T> values)
    {
        return *(values.begin() + below(int(values.size())));
    }

private:
    QRandomGenerator m_generator;
};

/// A key of the on-screen console, whose events come on the GUI thread.
void onScreenKey(bool pressed, quint16 key)
{
    QByteArray value(sizeof(ECButtonOperState), '\0');
    qToLittleEndian(Constants::VirtualKeyOffset + TestSupport::appNumber(key), value.data());
    ECManager::instance()->upTLVDecodeFinished(
        pressed ? ReportECButtonPressed : ReportECButtonRelease, value);
}

} // namespace

/// Key presses, the T-Bar, the on-screen console, the application and the model all at once.
class TestScreenStorm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void afterAStormTheConsoleShowsTheModel();

private:
    void playConsole(Dice dice);
    void changeModel(Dice dice);
    void changeScreens(Dice& dice);
    void playApplication(Dice& dice);
    void letTheGuiCatchUp();
    void calmDown();
    QString difference();

    TestSupport::ConsoleRig& console() { return m_pRig->console(); }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    std::unique_ptr<QDialog> m_pDialog;
    std::atomic<bool> m_bStop{false};
    std::atomic<int> m_nGuiTurns{0};
};

/// On a slow machine everybody else would pile up more work for the GUI thread than it gets done in the end.
void TestScreenStorm::letTheGuiCatchUp()
{
    const int seen = m_nGuiTurns;
    QMetaObject::invokeMethod(
        this, [this] { ++m_nGuiTurns; }, Qt::QueuedConnection);
    while (m_nGuiTurns == seen && !m_bStop)
        std::this_thread::sleep_for(1ms);
}

void TestScreenStorm::playConsole(Dice dice)
{
    int position = 1;
    while (!m_bStop) {
        if (dice.chance(1)) {
            console().settleWithoutEventLoop(SettleMs);
            letTheGuiCatchUp();
        }
        if (dice.chance(50)) {
            position = std::clamp(position + dice.below(17) - 8, 0, 65);
            console().tbar(quint32(position), dice.oneOf({quint8(BottomToTop), quint8(TopToBottom)}));
        } else {
            const auto key = dice.chance(40) ? quint16(Select + dice.below(SelectCount))
                                             : quint16(PageUp + dice.below(TimeDown - PageUp + 1));
            if (dice.chance(50))
                console().press(key);
            if (dice.chance(80))
                console().release(key);
        }
        if (dice.chance(20))
            std::this_thread::sleep_for(std::chrono::microseconds(dice.below(2000)));
    }
}

/// Adds or removes a screen, made by whomever.
void TestScreenStorm::changeScreens(Dice& dice)
{
    auto& control = m_pRig->control();
    const auto type = dice.oneOf({ScreenType::RegularScreen, ScreenType::AUXScreen});
    if (dice.chance(50)) {
        control.addScreen(A, type);
        return;
    }
    const auto device = m_pRig->device(A);
    const auto screens = device ? device->screens(type) : QList<std::weak_ptr<BizModel::Screen>>();
    const auto screen = screens.isEmpty() ? nullptr : screens.at(dice.below(screens.size())).lock();
    if (screen && screen->screenId() > 2)
        control.removeScreen(A, {type, screen->screenId()});
}

void TestScreenStorm::changeModel(Dice dice)
{
    auto& control = m_pRig->control();
    auto& operations = m_pRig->operations();
    while (!m_bStop) {
        if (dice.chance(2))
            letTheGuiCatchUp();
        const QString device = dice.chance(80) ? A : B;
        const ScreenKey screen = dice.oneOf({Stage, Side, Confidence});
        switch (dice.below(15)) {
        case 0:
            control.activateDevice(dice.chance(10) ? QString() : device);
            break;
        case 1:
            changeScreens(dice);
            break;
        case 2:
            control.renameScreen(device, screen, QStringLiteral("Name %1").arg(dice.below(1000)));
            break;
        case 3:
            control.setScreenIndex(device, screen, dice.below(36) - 2);
            break;
        case 4:
            control.selectScreens(A, {Stage, screen});
            break;
        case 5:
            control.activateScreen(device, screen);
            break;
        case 6:
            control.setEffectTime(device, screen, dice.below(15) * 0.1);
            break;
        case 7:
            control.setFreeze(device, screen, dice.chance(50));
            break;
        case 8:
            control.setFTB(device, screen, dice.chance(50));
            break;
        case 9:
            control.setPGMEdit(device, screen, dice.chance(50));
            break;
        case 10:
            control.setSwap(device, dice.chance(50));
            break;
        case 11:
            control.setGroup(device, dice.oneOf({QStringLiteral("0"), QStringLiteral("7")}));
            break;
        case 12:
            control.setScreenState(device, screen, BizModel::Screen::State::Normal);
            break;
        case 13:
            operations.delay(
                dice.oneOf(
                    {Operation::AsyncCreateScreen, Operation::ParallelTakeScreen, Operation::SampleTBar}),
                std::chrono::milliseconds(dice.below(20)), Times::Once);
            break;
        case 14:
            operations.clearAllOrders(); // orders for once add up
            operations.fail(
                dice.oneOf(
                    {Operation::AsyncCreateScreen, Operation::CreateDefaultScreen,
                     Operation::ParallelTakeScreen, Operation::ParallelCutScreen,
                     Operation::SetSamplingType}),
                QStringLiteral("storm"), Times::Once);
            break;
        }
        if (dice.chance(50))
            std::this_thread::sleep_for(std::chrono::microseconds(dice.below(4000)));
    }
}

void TestScreenStorm::playApplication(Dice& dice)
{
    switch (dice.below(12)) {
    case 0:
        m_pDialog = std::make_unique<QDialog>();
        m_pDialog->open();
        break;
    case 1:
        ECManager::instance()->lockKeypad();
        break;
    case 2:
        ECManager::instance()->lockTBar();
        break;
    case 3:
        ECManager::instance()->retranslateUi();
        break;
    case 4:
        ECManager::instance()->slotOrvanePluginModeChanged();
        break;
    default:
        m_pDialog.reset();
        ECManager::instance()->unlockKeypad();
        ECManager::instance()->unlockTBar();
        const auto key = dice.oneOf<quint16>({Select + 1, PageUp, PageDown, Edit, TimeUp, TimeDown, Freeze});
        onScreenKey(true, key);
        onScreenKey(false, key);
        break;
    }
}

void TestScreenStorm::calmDown()
{
    m_pDialog.reset();
    ECManager::instance()->unlockKeypad();
    ECManager::instance()->unlockTBar();
    m_pRig->operations().clearAllOrders();
    console().settle(); // or a release may meet the dialog yet
    for (const quint16 key : {PageUp, PageDown, Match, TimeUp, TimeDown})
        console().release(key);
    console().settle();
}

/// How the console differs from what it should show; empty when it does not.
QString TestScreenStorm::difference()
{
    const auto device = m_pRig->model().deviceList().activedDevice().lock();
    const auto items =
        ECConsoleManager::instance()->screenECCommandItems(device ? device->ipMacSn() : QString());
    int boundItems = 0;
    const int page = ECManager::instance()->page("ScreenCommand");
    for (const auto& item : items) {
        boundItems += item->isBindKeyPad();
        if (item->ecButtonPageIndex() != page)
            continue;
        const quint16 key = quint16(item->ecButtonKey());
        if (!console().shows(key, item->ecButtonColor())
            || console().label(Label + key) != item->ecOledText())
            return QStringLiteral("key %1 does not show its item, \"%2\" in colour %3")
                .arg(key)
                .arg(item->ecOledText())
                .arg(int(item->ecButtonColor()));
    }
    if (console().label(Label + PageUp) != QStringLiteral("Page %1").arg(page + 1))
        return QStringLiteral("the page label is ") + console().label(Label + PageUp);

    const auto screens = device ? device->screens(6) : QList<std::weak_ptr<BizModel::Screen>>();
    bool frozen = false, black = false, edited = false;
    for (const auto& weakScreen : screens) {
        const auto screen = weakScreen.lock();
        const auto item = ECConsoleManager::instance()->findBindingECItem(
            device->ipMacSn(), KeyboardType::Screen, {screen->screenId(), quint32(screen->screenType())});
        const auto color = screen->selected() ? ECLEDColor::Green : ECLEDColor::Yellow;
        if (!item || item->ecOledText() != screen->name() || item->ecButtonColor() != color)
            return QStringLiteral("no key is right for screen ") + screen->name();
        edited |= screen->selected() && screen->PGMEditEnable();
    }
    if (boundItems != screens.size())
        return QStringLiteral("%1 keys are bound to %2 screens").arg(boundItems).arg(screens.size());

    const auto members = device ? m_pRig->model().deviceList().groupDevices(device, true, false)
                                : QList<std::weak_ptr<BizModel::Device>>();
    for (const auto& weakMember : members) {
        const auto selected = weakMember.lock()->selectedScreen(6);
        for (const auto& screen : selected) {
            frozen |= screen.lock()->freeze();
            black |= screen.lock()->FTBEnable();
        }
    }
    const auto lit = [](bool on, ECLEDColor color) { return on ? color : ECLEDColor::Off; };
    const std::pair<quint16, ECLEDColor> lights[] = {
        {Freeze, lit(frozen, ECLEDColor::Red)},
        {FTB, lit(black, ECLEDColor::Green)},
        {Edit, lit(edited, ECLEDColor::Green)},
        {Swap, lit(device && device->swapEnable(), ECLEDColor::Green)},
        {Mix, lit(device != nullptr, ECLEDColor::Green)},
        {Take, ECLEDColor::Off},
        {Cut, ECLEDColor::Off},
        {Match, ECLEDColor::Off},
        {TimeUp, ECLEDColor::Off},
        {TimeDown, ECLEDColor::Off},
        {PageUp, ECLEDColor::Off},
        {PageDown, ECLEDColor::Off}};
    for (const auto& [key, color] : lights) {
        if (!console().shows(key, color))
            return QStringLiteral("key %1 does not show colour %2").arg(key).arg(int(color));
    }
    const auto active = device ? device->activedScreen().lock() : nullptr;
    const QString time = active ? QString::number(active->switchEffectTime(), 'f', 1) : QString();
    for (const quint16 key : {TimeUp, TimeDown}) {
        if (console().label(Label + key) != time)
            return QStringLiteral("time label %1 is %2, not %3")
                .arg(key)
                .arg(console().label(Label + key), time);
    }
    return {};
}

void TestScreenStorm::afterAStormTheConsoleShowsTheModel()
{
    bool isSet = false;
    const int fromEnvironment = qEnvironmentVariableIntValue("ORVANE_STORM_SECONDS", &isSet);
    const auto duration = std::chrono::seconds(isSet ? fromEnvironment : DefaultSeconds);
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    const auto quiet = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
    QVERIFY(m_pRig->load(show()));
    std::thread consoleThread([&] { playConsole(Dice(seed)); });
    std::thread modelThread([&] { changeModel(Dice(seed + 1)); });
    std::thread secondModelThread([&] { changeModel(Dice(seed + 2)); });
    Dice dice(seed + 3);
    QTimer application;
    connect(&application, &QTimer::timeout, this, [&] { playApplication(dice); });
    application.start(5);
    QTest::qWait(int(std::chrono::milliseconds(duration).count()));
    application.stop();
    m_bStop = true;
    for (auto* thread : {&consoleThread, &modelThread, &secondModelThread})
        thread->join();
    calmDown();

    const bool isTrue = QTest::qWaitFor([this] { return difference().isEmpty(); }, SettleMs);
    const QString left = difference();
    const auto unreadable = console().unreadableRequests();
    m_pRig.reset();
    qInstallMessageHandler(quiet);
    QVERIFY2(isTrue, qPrintable(left));
    QCOMPARE(unreadable, quint64(0));
}

QTEST_MAIN(TestScreenStorm)
#include "tst_screenstorm.moc"

#include "operator.h"

#include "ecmanager.h"
#include "functioncommand.h"
#include "layercommand.h"
#include "memorydevicelist.h"
#include "numbercommand.h"
#include "presetcommand.h"
#include "screencommand.h"
#include "showclock_p.h"
#include "timerlog.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/preset.h"
#include "parallelcontrol/parallelmanager.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QTest>
#include <QThreadPool>
#include <QtEndian>

namespace Storm {

using namespace ECProxy::Client;
using namespace std::chrono_literals;
using MemoryModel::ScreenType;
using PresetMode = BizModel::Enum::Preset::PresetOptMode;

namespace {

constexpr int RegularAndAUX = BizModel::Enum::Screen::RegularAndAUXScreens;
constexpr int Remembered = 12;
/// Real time; a machine under load needs it, and a fault costs it once.
constexpr int SettleMs = 8000;
constexpr auto LockHold = 2000ms;
/// The keys are given anew half a second of the show after a transition. Real time, and enough of it for a
/// machine under load.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int AfterTransitionMs = 100;
#else
constexpr int AfterTransitionMs = 25;
#endif

} // namespace

Operator::Operator(
    TestSupport::ModelRig& rig, const Keyboard& keyboard, const QStringList& devices, quint32 seed)
    : m_rig(rig)
    , m_pSockets(dynamic_cast<TestSupport::SocketWire*>(&rig.console().wire()))
    , m_keyboard(keyboard)
    , m_devices(devices)
    , m_dice(seed)
    , m_statement(keyboard, rig.model().deviceList())
{
    m_typing = QObject::connect(
        ECManager::instance(), &ECManager::signalStandardKeyPressed, qApp, [this] { ++m_nTyped; });
    m_locking = QObject::connect(
        ECManager::instance(), &ECManager::signalTbarLocked, qApp, [this] { ++m_nTBarLocks; });
}

Operator::~Operator()
{
    QObject::disconnect(m_typing);
    QObject::disconnect(m_locking);
}

std::shared_ptr<BizModel::Device> Operator::device() const
{
    return m_rig.model().deviceList().activedDevice().lock();
}

std::shared_ptr<BizModel::Screen> Operator::screen() const
{
    const auto active = device();
    return active ? active->activedScreen().lock() : nullptr;
}

bool Operator::isAnySelected() const
{
    const auto active = device();
    return active && !active->selectedScreen(RegularAndAUX).isEmpty();
}

// ---- One thing after another --------------------------------------------------------------------

QString Operator::step()
{
    if (m_nComparisons == 0) {
        const QString wrong = compare();
        if (!wrong.isEmpty())
            return QStringLiteral("at the start: ") + wrong;
    }
    using Gesture = void (Operator::*)();
    constexpr std::pair<int, Gesture> gestures[] = {
        {46, &Operator::tapSomeKey},    {4, &Operator::holdSomeKey},    {2, &Operator::sweepTBar},
        {6, &Operator::turnPages},      {3, &Operator::workUnderGuard}, {3, &Operator::changeDevice},
        {12, &Operator::changeScreen},  {12, &Operator::changeLayer},   {8, &Operator::changeInput},
        {6, &Operator::changePreset},   {2, &Operator::changeLocks},    {2, &Operator::typeOnBothConsoles},
        {1, &Operator::restartConsole}, {2, &Operator::changeSignal},   {2, &Operator::holdUpService},
        {2, &Operator::loseReports},    {1, &Operator::missChange}};
    constexpr int withoutSockets = 109;
    constexpr int onSockets = 5;
    m_doing.clear();
    m_expectations.clear();
    int at = m_dice.below(withoutSockets + (m_pSockets ? onSockets : 0));
    for (const auto& [weight, gesture] : gestures) {
        at -= weight;
        if (at < 0) {
            (this->*gesture)();
            break;
        }
    }
    m_rig.console().takeRequests(); // the rig keeps them for as long as nobody asks
    m_done.append(m_doing);
    if (m_done.size() > Remembered)
        m_done.removeFirst();
    // First what the key does: a comparison before that might hold of what was there before.
    QString wrong;
    for (const auto& expectation : m_expectations) {
        if (wrong.isEmpty())
            wrong = expectation();
    }
    if (wrong.isEmpty())
        wrong = compare();
    return wrong.isEmpty() ? wrong
                           : wrong + QStringLiteral("\nafter: ") + m_done.join(QStringLiteral("\n       "));
}

void Operator::quiet()
{
    const auto isQuiet = [this] {
        if (ParallelControl::ParallelManager::instance()->currentTaskCount() != 0)
            return false;
        const auto devices = m_rig.model().deviceList().devices();
        for (const auto& each : devices) {
            const auto screens = each.lock()->screens(RegularAndAUX);
            for (const auto& weakScreen : screens) {
                const auto state = weakScreen.lock()->state();
                if (state != BizModel::Screen::State::Normal && state != BizModel::Screen::State::Tbar_taking)
                    return false;
            }
        }
        return true;
    };
    m_rig.console().settle(SettleMs);
    QThreadPool::globalInstance()->waitForDone();
    (void)QTest::qWaitFor(isQuiet, SettleMs);
    if (!m_bHolding)
        (void)QTest::qWaitFor([] { return !TimerLog::isAnyRunning(); }, SettleMs);
    if (m_statement.isInTransition())
        waitUntilNothingIsSent();
    m_rig.console().settle(SettleMs);
}

void Operator::waitUntilNothingIsSent()
{
    const auto sent = [this] {
        const auto console = m_rig.console().console();
        return console.ledMessages + console.labelMessages;
    };
    quint64 before = 0;
    do {
        before = sent();
        QTest::qWait(AfterTransitionMs);
    } while (sent() != before);
}

/// What the console shows may still be on its way, so the comparison is tried until it holds.
QString Operator::compare()
{
    quiet();
    QString wrong;
    (void)QTest::qWaitFor(
        [&] {
            Statement statement = m_statement;
            statement.observe();
            wrong = statement.difference(m_rig.console().console());
            if (wrong.isEmpty())
                m_statement = statement;
            return wrong.isEmpty();
        },
        SettleMs);
    ++m_nComparisons;
    return wrong;
}

template <typename Value>
void Operator::expect(const char* what, std::function<Value()> value, Value expected)
{
    m_expectations.push_back([=] {
        (void)QTest::qWaitFor([&] { return value() == expected; }, SettleMs);
        return value() == expected ? QString() : QStringLiteral("the key was lost or doubled: ") + what;
    });
}

// ---- Keys ---------------------------------------------------------------------------------------

void Operator::press(const Key& key)
{
    ++m_nPresses;
    if (m_bOnScreen) {
        QByteArray value(sizeof(ECButtonOperState), '\0');
        qToLittleEndian(Constants::VirtualKeyOffset + key.OrvaneECKey, value.data());
        ECManager::instance()->upTLVDecodeFinished(ReportECButtonPressed, value);
    } else {
        m_rig.console().press(key.ECKey);
    }
}

void Operator::release(const Key& key)
{
    if (m_bOnScreen) {
        QByteArray value(sizeof(ECButtonOperState), '\0');
        qToLittleEndian(Constants::VirtualKeyOffset + key.OrvaneECKey, value.data());
        ECManager::instance()->upTLVDecodeFinished(ReportECButtonRelease, value);
    } else {
        m_rig.console().release(key.ECKey);
    }
}

void Operator::tapSomeKey()
{
    const char* const group = m_dice.oneOf<const char*>(
        {ScreenGroup, ScreenGroup, LayerGroup, LayerGroup, InputGroup, PresetGroup, NumberGroup,
         FunctionGroup});
    const auto& keys = m_keyboard.group(group).m_buttons;
    tap(group, *keys.at(m_dice.below(keys.size())));
}

void Operator::tap(const char* group, const Key& key)
{
    // On screen the clear keys ask instead.
    const bool isClear = key.OrvaneKey == 5 && (group == LayerGroup || group == PresetGroup);
    m_bOnScreen = !isClear && m_dice.chance(25);
    say(QStringLiteral("%1 %2 code %3 (key %4)")
            .arg(m_bOnScreen ? "tap on screen" : "tap", QLatin1String(group))
            .arg(key.OrvaneKey)
            .arg(key.ECKey));
    if (group == ScreenGroup)
        expectOfScreenKey(key);
    else if (group == LayerGroup)
        expectOfLayerKey(key);
    else if (group == InputGroup && (key.OrvaneKey == 2 || key.OrvaneKey == 3))
        m_statement.pageKeyReleased(InputGroup, key.OrvaneKey == 2);
    else if (group == PresetGroup)
        expectOfPresetKey(key);
    else if (group == FunctionGroup)
        expectOfFunctionKey(key);
    else if (group == NumberGroup)
        expectOfNumberKey();
    QElapsedTimer timer;
    timer.start();
    press(key);
    release(key);
    m_bOnScreen = false;
    if (group == FunctionGroup && isLock(key))
        allowForHold(timer);
}

bool Operator::isLock(const Key& key)
{
    const auto type = FunctionCallbackType(key.OrvaneKey);
    return type == FunctionCallbackType::eLockECTBarCB || type == FunctionCallbackType::eLockECKeyboardCB;
}

/// A slow machine makes a hold of what was to be a short press of a lock key.
void Operator::allowForHold(const QElapsedTimer& timer)
{
    m_rig.console().settle(SettleMs);
    if (timer.elapsed()
        < std::chrono::floor<std::chrono::milliseconds>(ShowClock::realTime(LockHold)).count())
        return;
    // Whether it was long enough nobody can say: the application brings both to a state that is known.
    ECManager::instance()->unlockTBar();
    Q_EMIT ECManager::instance()->signalTbarLocked(false);
    m_statement.tbarLocked(false);
    lockKeypad(false);
}

void Operator::expectOfScreenKey(const Key& key)
{
    using Type = ScreenCallbackType;
    const auto active = device();
    const auto activeScreen = screen();
    const bool any = isAnySelected();
    const auto shown = [this](Type type) {
        const quint16 ecKey = m_keyboard.key(ScreenGroup, type).ECKey;
        return std::function<bool()>(
            [this, ecKey] { return !m_rig.console().shows(ecKey, ECLEDColor::Off); });
    };
    switch (Type(key.OrvaneKey)) {
    case Type::eSelectScreenCB:
        if (const auto bound = m_statement.screenAt(key.OrderIndex)) {
            expect<bool>(
                "selects or deselects its screen", [bound] { return bound->selected(); }, !bound->selected());
        }
        break;
    case Type::ePageUp:
    case Type::ePageDown:
        m_statement.pageKeyReleased(ScreenGroup, key.OrvaneKey == int(Type::ePageUp));
        break;
    case Type::eMatchPGMCB:
    case Type::eCutToPGMCB:
    case Type::eTakeToPGMCB:
        m_statement.transition();
        break;
    case Type::eFreezePGMCB:
    case Type::eFTBPGMCB:
        if (any)
            expect<bool>("turns it on or off", shown(Type(key.OrvaneKey)), !shown(Type(key.OrvaneKey))());
        break;
    case Type::eSetSwapStatusCB:
        if (active)
            expect<bool>(
                "turns swap on or off", [active] { return active->swapEnable(); }, !active->swapEnable());
        break;
    case Type::eSetTransitionTimeCB:
    case Type::eSetTransitionTimeReduceCB:
        if (activeScreen && activeScreen->screenType() == ScreenType::RegularScreen) {
            // A slow machine makes a hold of a tap: then it is more than a step.
            const double former = activeScreen->switchEffectTime();
            expect<bool>(
                "changes the time", [=] { return activeScreen->switchEffectTime() != former; }, true);
        }
        break;
    default:
        break;
    }
}

void Operator::expectOfLayerKey(const Key& key)
{
    using Type = LayerCallbackType;
    switch (Type(key.OrvaneKey)) {
    case Type::eSelectLayerCB:
        if (const auto bound = m_statement.layerAt(key.OrderIndex)) {
            const auto owner = screen();
            expect<bool>(
                "selects its layer alone",
                [owner, bound] {
                    const auto selected = owner->selectedLayers();
                    return selected.size() == 1 && selected[0].lock() == bound;
                },
                true);
        } else {
            m_statement.layerKeyPressed(
                m_statement.page(LayerGroup) * m_statement.pageSize(LayerGroup) + key.OrderIndex);
        }
        break;
    case Type::ePageUp:
    case Type::ePageDown:
        m_statement.pageKeyReleased(LayerGroup, key.OrvaneKey == int(Type::ePageUp));
        break;
    case Type::eChangeNewLayerDefaultCapacityCB:
        m_statement.capacityPressed();
        break;
    default:
        break;
    }
}

void Operator::expectOfPresetKey(const Key& key)
{
    using Type = PresetCallbackType;
    auto& list = m_rig.model().deviceList();
    const auto mode = list.presetOperateMode();
    const auto becomes = [&](PresetMode armed) {
        expect<int>(
            "arms or disarms", [&list] { return int(list.presetOperateMode()); },
            int(mode == armed ? PresetMode::Noting : armed));
    };
    switch (Type(key.OrvaneKey)) {
    case Type::eSelectPresetCB:
        m_statement.transition();
        break;
    case Type::ePageUp:
    case Type::ePageDown:
        m_statement.pageKeyReleased(PresetGroup, key.OrvaneKey == int(Type::ePageUp));
        break;
    case Type::eRemoveSelectedPresetCB:
        becomes(PresetMode::Clear);
        break;
    case Type::eSavePresetCB:
        becomes(PresetMode::Save);
        break;
    default:
        break;
    }
}

void Operator::expectOfFunctionKey(const Key& key)
{
    if (FunctionCallbackType(key.OrvaneKey) != FunctionCallbackType::eSwitchSecondaryScreenSignalCB)
        return;
    if (!ECManager::instance()->dviInSignal(0))
        return;
    const auto source = [] { return int(ECManager::instance()->getCurrentSource()); };
    expect<int>("changes the source", source, source() == arm_left ? dvi1 : arm_left);
}

void Operator::expectOfNumberKey()
{
    expect<quint64>(
        "types once", [this] { return m_nTyped; }, m_nTyped + 1);
}

void Operator::holdSomeKey()
{
    const Key* const keys[] = {
        &m_keyboard.key(LayerGroup, LayerCallbackType::eClearLayersCB),
        &m_keyboard.key(LayerGroup, LayerCallbackType::eSetSelectedLayerTopZValueCB),
        &m_keyboard.key(PresetGroup, PresetCallbackType::eClearPresetsCB),
        &m_keyboard.key(FunctionGroup, FunctionCallbackType::eLockECTBarCB),
        &m_keyboard.key(FunctionGroup, FunctionCallbackType::eLockECKeyboardCB),
        &m_keyboard.key(NumberGroup, NumberCallbackType::eEnterKeyCB),
        &m_keyboard.key(LayerGroup, LayerCallbackType::eSetSelectedLayerFullScreenCB),
        &m_keyboard.key(FunctionGroup, FunctionCallbackType::eLayerCopy)};
    const int which = m_dice.below(8);
    const Key& key = *keys[which];
    const bool isLong = which < 5 && m_dice.chance(50);
    say(QStringLiteral("hold key %1 %2").arg(key.ECKey).arg(isLong ? "long" : "for a moment"));
    const quint64 locksBefore = m_nTBarLocks;
    QElapsedTimer timer;
    timer.start();
    press(key);
    m_rig.console().settle();
    // The comparison in between is of the shortest of holds only: the clock runs on.
    if (which >= 5) {
        m_bHolding = true;
        m_statement.held(key.ECKey);
        const QString wrong = compare();
        m_statement.held(0);
        m_bHolding = false;
        if (!wrong.isEmpty())
            m_expectations.push_back([wrong] { return QStringLiteral("while it is held: ") + wrong; });
    }
    if (isLong) {
        constexpr auto longerThanAnyHold = 3300ms;
        QTest::qWait(
            int(std::chrono::ceil<std::chrono::milliseconds>(ShowClock::realTime(longerThanAnyHold)).count())
            + 1);
        m_rig.console().settle();
        if (which == 3) {
            const bool locked = !m_statement.isTBarLocked();
            (void)QTest::qWaitFor([&] { return m_nTBarLocks != locksBefore; }, SettleMs);
            m_statement.tbarLocked(locked);
        } else if (which == 4) {
            (void)QTest::qWaitFor([] { return ECManager::instance()->isLockedKeypad(); }, SettleMs);
            m_statement.keypadLocked(true);
        } else if (which == 2) {
            m_statement.pageMayTurn(PresetGroup);
        }
    }
    release(key);
    if (!isLong && (which == 3 || which == 4))
        allowForHold(timer);
    if (m_statement.isKeypadLocked()) {
        // The console cannot be left in that state: nothing else could be tried.
        const QString wrong = compare();
        if (!wrong.isEmpty())
            m_expectations.push_back([wrong] { return QStringLiteral("while locked: ") + wrong; });
        lockKeypad(false);
    }
}

/// As an application does it.
void Operator::lockKeypad(bool lock)
{
    ECManager* const manager = ECManager::instance();
    if (lock)
        manager->lockKeypad();
    else
        manager->unlockKeypad();
    Q_EMIT manager->signalKeyboardLocked(lock);
    m_statement.keypadLocked(lock);
}

void Operator::sweepTBar()
{
    say(m_bUpwards ? "T-Bar up" : "T-Bar down");
    m_statement.transition();
    const quint8 direction = m_bUpwards ? quint8(BottomToTop) : quint8(TopToBottom);
    for (const quint32 position : {2u, 20u, 41u, 63u, 64u}) {
        m_rig.console().tbar(m_bUpwards ? position : 65 - position, direction);
        m_rig.console().settle();
    }
    m_bUpwards = !m_bUpwards;
    // A locked T-Bar leaves no screen half-way; one that is not has ended its transition.
    const auto active = device();
    (void)QTest::qWaitFor(
        [&] {
            if (!active)
                return true;
            const auto screens = active->screens(RegularAndAUX);
            return std::none_of(screens.begin(), screens.end(), [](const auto& each) {
                return each.lock()->state() == BizModel::Screen::State::Tbar_taking;
            });
        },
        SettleMs);
}

/// Several pages on or back in one go, as somebody who looks for a key does.
void Operator::turnPages()
{
    const char* const group = m_dice.oneOf<const char*>({ScreenGroup, LayerGroup, InputGroup, PresetGroup});
    const bool up = m_dice.chance(50);
    for (int i = 1 + m_dice.below(3); i > 0; --i)
        tap(group, m_keyboard.key(group, up ? 2 : 3));
}

/// Keys under a dialog, the property "Quenor", an upgrade or a locked keypad: nothing changes.
void Operator::workUnderGuard()
{
    auto& control = m_rig.control();
    const int guard = m_dice.below(4);
    say(QStringLiteral("under guard %1:").arg(guard));
    QDialog dialog;
    if (guard == 0)
        dialog.open();
    else if (guard == 1)
        qApp->setProperty(Constants::QuenorProperty, true);
    else if (guard == 2)
        control.setCompatibleUpgrading(true);
    else
        lockKeypad(true);
    m_rig.console().settle();
    for (int i = 0; i < 4; ++i) {
        const char* const group =
            m_dice.oneOf<const char*>({ScreenGroup, LayerGroup, InputGroup, PresetGroup});
        const auto& keys = m_keyboard.group(group).m_buttons;
        const Key& key = *keys.at(m_dice.below(keys.size()));
        say(QStringLiteral("%1 code %2").arg(QLatin1String(group)).arg(key.OrvaneKey));
        press(key);
        release(key);
        // A dialog drops no release but of select keys and some preset keys, and it is the release that turns
        // the page.
        if (guard < 2 && group != PresetGroup && (key.OrvaneKey == 2 || key.OrvaneKey == 3))
            m_statement.pageKeyReleased(group, key.OrvaneKey == 2);
    }
    const QString wrong = compare();
    if (!wrong.isEmpty())
        m_expectations.push_back([wrong] { return QStringLiteral("under the guard: ") + wrong; });
    dialog.close();
    qApp->setProperty(Constants::QuenorProperty, false);
    control.setCompatibleUpgrading(false);
    if (guard == 3)
        lockKeypad(false);
}

/// Digits on the physical and the on-screen console at the same time, each on a thread of its own.
void Operator::typeOnBothConsoles()
{
    say("type on both consoles at once");
    constexpr int taps = 10;
    const auto& keys = m_keyboard.group(NumberGroup).m_buttons;
    expect<quint64>(
        "types once a tap", [this] { return m_nTyped; }, m_nTyped + 2 * taps);
    for (int i = 0; i < taps; ++i) {
        for (const bool isOnScreen : {false, true}) {
            const Key& key = *keys.at(m_dice.below(keys.size()));
            m_bOnScreen = isOnScreen;
            press(key);
            release(key);
        }
    }
    m_bOnScreen = false;
}

/// The console comes back dark, and all is sent again as the session does it; texts are translated anew on
/// the way.
void Operator::restartConsole()
{
    if (m_pSockets) {
        ECManager::instance()->retranslateUi();
        return restartService();
    }
    say("the console starts anew");
    ECManager* const manager = ECManager::instance();
    m_rig.console().restart();
    manager->retranslateUi();
    manager->repeatLocks();
    manager->slotOrvanePluginModeChanged();
    manager->showFunctionKeyLights();
    m_statement.inputsRefreshed();
    m_statement.pageMayTurn(InputGroup);
}

} // namespace Storm

#include "command.h"

#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "consolerequests_p.h"
#include "ec/eckeyboardconfig.h"
#include "eccommanditem_p.h"
#include "keytable_p.h"
#include "keytracing_p.h"
#include "log_p.h"
#include "painter_p.h"
#include "surfacerecord_p.h"

#include <QHash>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>

namespace Orvane::ECProxy::Client {

namespace Internal {

class CommandPrivate {
public:
    using CallbackTable = QMap<quint32, Command::KeyCallback>;

    // m_tableMutex guards m_mapKeyPressedCBs, m_mapKeyReleaseCBs, m_pECCommandCfg and m_buttons. Handlers are
    // copied out before they are called.
    std::mutex m_tableMutex;
    CallbackTable m_mapKeyPressedCBs;
    CallbackTable m_mapKeyReleaseCBs;
    std::shared_ptr<EC::s_ECCommandConfig> m_pECCommandCfg;
    /// The configuration's keys by their numbers: every press is looked up in every group until one has it.
    QHash<quint32, std::shared_ptr<EC::s_ECButtonConfig>> m_buttons;

    KeyTable m_keys;
    std::atomic<int> m_nPageIndex{0};

    /// What the next repaint of the page must send.
    enum WantedRepaint { WantLeds = 1, WantLabels = 2 };
    std::atomic<int> m_nWantedRepaint{0};
    Painter m_painter;
};

} // namespace Internal

using Internal::CommandPrivate;
using Internal::ConsoleRequests;
using Internal::isKeypadLocked;

namespace KeyTracing = Internal::KeyTracing;

namespace {

constexpr quint8 LedBrightnessPercent = 100;

struct Rgb {
    quint8 r, g, b;
};

Rgb rgbOf(int ledColor)
{
    switch (ECLEDColor(ledColor)) {
    case ECLEDColor::Red:
        return {255, 0, 0};
    case ECLEDColor::Blue:
        return {0, 0, 255};
    case ECLEDColor::Green:
        return {0, 255, 0};
    case ECLEDColor::Yellow:
        return {255, 255, 0};
    case ECLEDColor::Off:
        return {20, 20, 20};
    case ECLEDColor::Purple:
        return {255, 0, 255};
    case ECLEDColor::Orange:
        return {255, 72, 0};
    case ECLEDColor::On:
        break;
    }
    return {255, 255, 255};
}

void runHandler(const Command::KeyCallback& handler, const quint32& ecKey)
{
    if (!handler)
        return;
    const bool isHandled = handler(ecKey);
    if (ECKeyTrace* const trace = KeyTracing::current())
        trace->handled = isHandled;
}

/// Sends what one key shows of an item. Color and text are read in one step.
void sendItem(
    const Command& command, const ECCommandItem& item, const EC::s_ECButtonConfig& button,
    Enum::UpdateConsoleType type)
{
    const auto console = ConsoleRequests::installed();
    if (!console)
        return;
    const auto [ledColor, text] =
        Internal::ECCommandItemPrivate::of(item).read([](const Internal::ECCommandItemValues& values) {
            return std::pair(values.m_enLedColor, values.m_strOLEDText);
        });
    const auto oled = std::make_shared<ECOLEDText>();
    if (button.pECOledCfg) {
        oled->OledKey = button.pECOledCfg->OrvaneECKey;
        oled->ECKey = button.pECOledCfg->ECKey;
    }
    command.fillOledText(oled, text);

    const auto color = std::make_shared<ECButtonColor>();
    color->ButtonKey = button.OrvaneECKey;
    color->ECKey = button.ECKey;
    color->brightness = LedBrightnessPercent;
    command.fillButtonColor(color, int(ledColor));

    switch (type) {
    case Enum::UpdateConsoleType::All:
        console->lightAndLabel(color, oled);
        break;
    case Enum::UpdateConsoleType::Key:
        console->light(color);
        break;
    case Enum::UpdateConsoleType::OLED:
        console->label(oled);
        break;
    }
}

} // namespace

Command::Command(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<CommandPrivate>())
{
}

Command::~Command() = default;

// ---- What a subclass may say of itself ----------------------------------------------------------------

int Command::maxPage()
{
    return 99;
}

int Command::pageSize() const
{
    return 1;
}

void Command::retranslateUi() { }

QList<std::shared_ptr<ECCommandItem>> Command::commandItems() const
{
    return {};
}

void Command::updateSelectModeButtonConfig() { }

int Command::getMinUnusedECButtonIndex(int&) const
{
    return -1;
}

std::shared_ptr<EC::s_ECButtonConfig> Command::findSelectModeButtonByIndex(const int&) const
{
    return nullptr;
}

void Command::updateKeyboard() { }

bool Command::isAlreadyBind(const quint16&)
{
    return false;
}

bool Command::isLockKeyPadKey(const quint16& ecKey)
{
    return hasTrait(ecKey, Internal::PassesKeypadLock);
}

bool Command::isAllowedKeyPressed(const quint16& ecKey)
{
    return hasTrait(ecKey, Internal::PressPassesDialog);
}

bool Command::isTakeKeyPressed(const quint32& ecKey)
{
    return hasTrait(ecKey, Internal::IsTakeKey);
}

bool Command::isCutKeyPressed(const quint32& ecKey)
{
    return hasTrait(ecKey, Internal::IsCutKey);
}

void Command::takeKeyPressed(const quint32&) { }
void Command::cutKeyPressed(const quint32&) { }

bool Command::isAllowedKeyReleased(const quint16& ecKey)
{
    return hasTrait(ecKey, Internal::ReleasePassesDialog);
}

int Command::page()
{
    return d->m_nPageIndex;
}

bool Command::containsSelectedECButtonConfigByECKey(const quint32&) const
{
    return false;
}

void Command::setLoadToPGMStateChanged(const bool&) { }
void Command::registerPresetCommand(IPresetCommandEx*) { }

// ---- Notifications: none concerns every command ---------------------------------------------------------

void Command::slotActivedDeviceChanged() { }
void Command::slotDeviceRemoved(DevicePtr) { }
void Command::slotActivedScreenChanged(WeakDevice, WeakScreen) { }
void Command::slotSelectedScreensChanged(WeakDevice) { }
void Command::slotDeviceScreenIndexChanged(WeakDevice, WeakScreen) { }
void Command::slotDeviceScreenMoved(WeakDevice, WeakScreen, WeakScreen) { }
void Command::slotDeviceRegulerScreenAdded(WeakDevice, WeakScreen) { }
void Command::slotDeviceRegulerScreenRemoved(WeakDevice, ScreenPtr) { }
void Command::slotDeviceScreenBaseNameChanged(WeakDevice, WeakScreen) { }
void Command::slotScreenBasePGMFrozenStateChanged(WeakDevice, WeakScreen) { }
void Command::slotScreenBasePGMFTBStateChanged(WeakDevice, WeakScreen) { }
void Command::slotScreenEffectChanged(WeakDevice, WeakScreen) { }
void Command::slotDeviceSwapStateChanged(WeakDevice) { }
void Command::slotDeviceLoadToPGMStateChanged(WeakDevice) { }
void Command::slotTbarLocked(bool) { }
void Command::slotKeyboardLocked(bool) { }
void Command::slotDVISignalChanged(QMap<int, bool>) { }
void Command::slotDeviceScreenBaseLayerAdded(WeakDevice, WeakScreen, WeakLayer) { }
void Command::slotDeviceScreenBaseLayerRemoved(WeakDevice, WeakScreen, LayerPtr) { }
void Command::slotSelectedRegularLayersChanged(WeakDevice, WeakScreen) { }
void Command::slotNotifyUpdateLayer(const QList<WeakScreen>&, int) { }
void Command::slotLayerNameChanged(WeakDevice, WeakScreen, WeakLayer) { }
void Command::slotDeviceInputNameChanged(WeakDevice, WeakInterface) { }
void Command::slotInterfaceOverLoadChanged(WeakDevice, WeakInterface) { }
void Command::slotInterfaceCapacityChanged(WeakDevice, WeakSubcard, WeakConnector) { }
void Command::slotDeviceInputAdded(WeakDevice, WeakInput) { }
void Command::slotDevicePresetAdded(WeakDevice, WeakPreset) { }
void Command::slotDevicePresetRemoved(WeakDevice, PresetPtr) { }
void Command::slotDeviceDevicePresetCleared(WeakDevice) { }
void Command::slotPresetNameChanged(WeakDevice, WeakFile) { }
void Command::slotDevicePresetSelectChanged(WeakDevice) { }
void Command::slotDevicePresetCovered(WeakDevice, WeakPreset) { }
void Command::slotKeypadChanged() { }
void Command::slotScreenBasePGMEditStateChanged(WeakDevice, WeakScreen) { }
void Command::slotDeviceInputCleared(WeakDevice) { }
void Command::slotSelectedInputChanged(WeakDevice) { }
void Command::slotDeviceInputRemoved(WeakDevice, InputPtr) { }
void Command::slotLayerSourceChanged(WeakDevice, WeakScreen, WeakLayer) { }
void Command::slotECTBarChanged(const ECTBarValue&) { }
void Command::slotECButtonPressed(const quint32&) { }
void Command::slotECButtonRelease(const quint32&) { }
void Command::slotFramelessMessageBoxClosed(QMessageBox::StandardButton) { }

// ---- Configuration and lookups --------------------------------------------------------------------------

void Command::setCommandConfig(std::shared_ptr<EC::s_ECCommandConfig> config)
{
    decltype(d->m_buttons) buttons;
    if (config) {
        for (const auto& button : qAsConst(config->m_buttons)) {
            if (button && !buttons.contains(button->ECKey))
                buttons.insert(button->ECKey, button);
        }
    }
    {
        const std::lock_guard<std::mutex> lock(d->m_tableMutex);
        d->m_pECCommandCfg = std::move(config);
        d->m_buttons.swap(buttons);
    }
    updateSelectModeButtonConfig();
}

std::shared_ptr<EC::s_ECCommandConfig> Command::ecCommandConfig() const
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    return d->m_pECCommandCfg;
}

int Command::currentPageIndex() const
{
    return d->m_nPageIndex;
}

void Command::updateCurrentPageIndex(int pageIndex)
{
    d->m_nPageIndex = pageIndex;
}

std::shared_ptr<EC::s_ECButtonConfig> Command::findButton(const quint32& ecKey) const
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    return d->m_buttons.value(ecKey);
}

bool Command::containsECButton(const quint32& ecKey) const
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    return d->m_buttons.contains(ecKey);
}

bool Command::containsSelectedECButton(const quint32& ecKey) const
{
    return ecCommandConfig() && containsSelectedECButtonConfigByECKey(ecKey);
}

bool Command::containsECKeyByOrvaneECKey(const quint32& orvaneECKey) const
{
    const auto config = ecCommandConfig();
    if (!config)
        return false;
    for (const auto& button : config->m_buttons) {
        if (button && button->OrvaneECKey == orvaneECKey)
            return true;
    }
    return false;
}

bool Command::containsECOled(const quint32& ecKey) const
{
    const auto config = ecCommandConfig();
    return config
        && std::any_of(config->m_buttons.cbegin(), config->m_buttons.cend(), [&](const auto& button) {
               return button && button->pECOledCfg && button->pECOledCfg->ECKey == ecKey;
           });
}

quint32 Command::getECKeyByOrvaneECKey(const quint32& orvaneECKey) const
{
    const auto config = ecCommandConfig();
    return config ? config->getECKeyByOrvaneECKey(quint16(orvaneECKey)) : 0;
}

quint32 Command::getECKeyByOrderIndex(const quint16& orderIndex) const
{
    const auto config = ecCommandConfig();
    return config ? config->getECKeyByOrderIndex(orderIndex) : Constants::InvalidECKey;
}

int Command::findOrvaneKey(const quint32& ecKey) const
{
    const auto button = findButton(ecKey);
    return button ? button->OrvaneKey : 0;
}

int Command::findECButtonOrderIndex(const quint32& ecKey) const
{
    const auto button = findButton(ecKey);
    return button ? button->OrderIndex : -1;
}

int Command::findECButtonIndex(const quint32& ecKey) const
{
    const auto button = findButton(ecKey);
    return button ? button->OrderIndex + pageSize() * d->m_nPageIndex : -1;
}

Command::KeyCallback Command::findECButtonPressedCBByOrvaneKey(const quint16& orvaneKey)
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    return d->m_mapKeyPressedCBs[orvaneKey];
}

Command::KeyCallback Command::findECButtonReleaseCBByOrvaneKey(const quint16& orvaneKey)
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    return d->m_mapKeyReleaseCBs[orvaneKey];
}

Command::KeyCallback Command::findECButtonPressedCBByECKey(const quint32& ecKey)
{
    const int orvaneKey = findOrvaneKey(ecKey);
    return orvaneKey > 0 ? findECButtonPressedCBByOrvaneKey(quint16(orvaneKey)) : KeyCallback();
}

Command::KeyCallback Command::findECButtonReleaseCBByECKey(const quint32& ecKey)
{
    const int orvaneKey = findOrvaneKey(ecKey);
    return orvaneKey > 0 ? findECButtonReleaseCBByOrvaneKey(quint16(orvaneKey)) : KeyCallback();
}

void Command::setKeyTable(Internal::KeyTable table)
{
    for (const auto& row : table.rows())
        bindKey(row.code, row.pressed, row.released);
    d->m_keys = std::move(table);
}

const Internal::KeyTable& Command::keyTable() const
{
    return d->m_keys;
}

bool Command::hasTrait(const quint32& ecKey, unsigned trait) const
{
    const auto* row = d->m_keys.find(findOrvaneKey(ecKey));
    return row && (row->traits & trait) != 0;
}

void Command::putKeyToRest(const quint32& ecKey)
{
    const auto* row = d->m_keys.find(findOrvaneKey(ecKey));
    if (!row)
        return;
    if (row->rest)
        row->rest(ecKey);
    if (row->light == Internal::KeyLight::Momentary)
        updateECButtonColor(ecKey, ECLEDColor::Off);
    if (row->show)
        row->show(ecKey);
}

void Command::bindKey(quint32 orvaneKey, KeyCallback pressed, KeyCallback released)
{
    const std::lock_guard<std::mutex> lock(d->m_tableMutex);
    if (pressed)
        d->m_mapKeyPressedCBs[orvaneKey] = std::move(pressed);
    if (released)
        d->m_mapKeyReleaseCBs[orvaneKey] = std::move(released);
}

std::shared_ptr<EC::s_ECButtonConfig> Command::findFunctionButton(quint16 orvaneKey) const
{
    const auto config = ecCommandConfig();
    return config ? config->findECButtonConfigByOrvaneKey(orvaneKey) : nullptr;
}

std::shared_ptr<EC::s_ECOledConfig> Command::findPageOled(quint16 pageUpOrvaneKey) const
{
    const auto button = findFunctionButton(pageUpOrvaneKey);
    if (!button)
        ecWarning(lcPaint, "%s command has invalid page button", qUtf8Printable(name()));
    else if (!button->pECOledCfg)
        ecWarning(lcPaint, "%s  command has invalid page oled", qUtf8Printable(name()));
    return button ? button->pECOledCfg : nullptr;
}

void Command::dispatchPressed(const quint32& ecKey)
{
    runHandler(findECButtonPressedCBByECKey(ecKey), ecKey);
}

void Command::dispatchReleased(const quint32& ecKey)
{
    runHandler(findECButtonReleaseCBByECKey(ecKey), ecKey);
}

// ---- LEDs and labels ------------------------------------------------------------------------------------

void Command::fillButtonColor(std::shared_ptr<ECButtonColor> color, const int& ledColor) const
{
    const Rgb rgb = rgbOf(ledColor);
    color->R = rgb.r;
    color->G = rgb.g;
    color->B = rgb.b;
}

void Command::fillOledText(std::shared_ptr<ECOLEDText> oled, const QString& text) const
{
    const QByteArray utf8 = text.toUtf8();
    std::memset(oled->OledText, 0, sizeof(oled->OledText));
    std::memcpy(oled->OledText, utf8.constData(), std::min(std::size_t(utf8.size()), sizeof(oled->OledText)));
}

void Command::updateECButton(
    const quint32& buttonKey, const quint32& ecKey, ECLEDColor color, const int& state)
{
    const auto console = ConsoleRequests::installed();
    if (!console)
        return;
    const auto request = std::make_shared<ECButtonColor>();
    request->ButtonKey = buttonKey;
    request->ECKey = quint16(ecKey);
    request->ButtonState = quint8(state);
    request->brightness = LedBrightnessPercent;
    fillButtonColor(request, int(color));
    console->light(request);
}

void Command::updateECButtonColor(const quint32& ecKey, ECLEDColor color, const int& state)
{
    if (const auto button = findButton(ecKey))
        updateECButton(button->OrvaneECKey, ecKey, color, state);
    else if (ecCommandConfig())
        ecWarning(lcPaint, "%u command has invalid button config", ecKey);
}

void Command::setEcButtonLedColor(const quint32& buttonKey, const quint32& ecKey, bool on, ECLEDColor color)
{
    updateECButton(buttonKey, ecKey, on ? color : ECLEDColor::Off, LightUp);
}

void Command::darkenKeys(const std::function<bool(quint16)>& isMeant)
{
    const auto config = ecCommandConfig();
    if (!config)
        return;
    for (const auto& button : qAsConst(config->m_buttons)) {
        if (button && isMeant(button->OrvaneKey))
            updateECButtonColor(button->ECKey, ECLEDColor::Off);
    }
}

void Command::darkenMomentaryKeys()
{
    darkenKeys([this](quint16 orvaneKey) {
        const auto* row = d->m_keys.find(orvaneKey);
        return row && row->light == Internal::KeyLight::Momentary;
    });
}

void Command::showKeys()
{
    const auto config = ecCommandConfig();
    if (!config)
        return;
    for (const auto& row : d->m_keys.rows()) {
        if (!row.show)
            continue;
        const auto buttons = config->findECButtonConfigsByOrvaneKey(row.code);
        for (const auto& button : buttons)
            row.show(button->ECKey);
    }
}

void Command::showSurface()
{
    const auto config = ecCommandConfig();
    if (!config)
        return;
    darkenMomentaryKeys();
    for (const auto& row : d->m_keys.rows()) {
        if ((row.traits & Internal::HasPageLabel) == 0)
            continue;
        const auto button = config->findECButtonConfigByOrvaneKey(row.code);
        if (button && button->pECOledCfg)
            Command::updatePageOled(button->pECOledCfg->ECKey, quint32(page()));
    }
    paintPage(Enum::UpdateConsoleType::All);
    showKeys();
}

void Command::updateECOledText(const quint32& oledKey, const quint32& ecKey, const QString& text)
{
    const auto console = ConsoleRequests::installed();
    if (!console)
        return;
    const auto request = std::make_shared<ECOLEDText>();
    request->OledKey = oledKey;
    request->ECKey = quint16(ecKey);
    fillOledText(request, text);
    console->label(request);
}

void Command::updateECOledTextByBtnECKey(const quint32& ecKey, const QString& text)
{
    const auto config = ecCommandConfig();
    if (!config)
        return;
    // Keys and labels are numbered apart, so another key's label may carry this key's number.
    const auto button = config->findECButtonConfigByECKey(ecKey);
    const auto oled = button ? button->pECOledCfg : config->findECOledConfigByECKey(ecKey);
    if (oled)
        updateECOledText(oled->OrvaneECKey, oled->ECKey, text);
}

void Command::updateTBarValue(const ECTBarValue& value)
{
    if (const auto console = ConsoleRequests::installed())
        console->tbarLevel(std::make_shared<ECTBarValue>(value));
}

// ---- Paging ---------------------------------------------------------------------------------------------

bool Command::pageUpPressed(const quint32& ecKey)
{
    if (isKeypadLocked())
        return false;
    updateECButtonColor(ecKey, ECLEDColor::Green);
    return true;
}

bool Command::pageDownPressed(const quint32& ecKey)
{
    return pageUpPressed(ecKey);
}

bool Command::pageUpRelease(const quint32& ecKey)
{
    ecDebug(lcKeys, "keyboard pageup release start.");
    if (!turnPage(ecKey, -1, "minimum"))
        return false;
    ecDebug(lcKeys, "keyboard pageup release end.");
    return true;
}

bool Command::pageDownRelease(const quint32& ecKey)
{
    ecDebug(lcKeys, "keyboard pagedown release start.");
    if (!turnPage(ecKey, 1, "maximum"))
        return false;
    ecDebug(lcKeys, "keyboard pagedown release end.");
    return true;
}

/// Returns false, and leaves the page as it is, while the keypad is locked and on the last page in the
/// direction of the step. The other end is not checked: a page beyond the last one can be left again.
bool Command::turnPage(const quint32& ecKey, int step, const char* end)
{
    if (isKeypadLocked())
        return false;
    updateECButtonColor(ecKey, ECLEDColor::Off);
    // Another thread may change the page between the check and the write.
    int pageIndex = d->m_nPageIndex;
    do {
        if (step < 0 ? pageIndex < 1 : maxPage() <= pageIndex + 1) {
            ecWarning(
                lcKeys, "Can't perform page turning, the %s page number is currently reached. This is %s",
                end, qUtf8Printable(name()));
            return false;
        }
    } while (!d->m_nPageIndex.compare_exchange_weak(pageIndex, pageIndex + step));
    // The keys of a group may have labels of their own: none gives way to another's.
    painter().paint({"page of a key", ecKey}, [this, ecKey] { showTurnedPage(ecKey); });
    return true;
}

void Command::showTurnedPage(const quint32& ecKey)
{
    const auto button = findButton(ecKey);
    if (!button)
        ecWarning(lcPaint, "%scommand has invalid page button", qUtf8Printable(name()));
    else if (!button->pECOledCfg)
        ecWarning(lcPaint, "%scommand has invalid page oled", qUtf8Printable(name()));
    else
        updatePageOled(button->pECOledCfg->ECKey, quint32(currentPageIndex()));
}

Internal::Painter& Command::painter() const
{
    return d->m_painter;
}

void Command::stopPainting()
{
    d->m_painter.stop();
}

bool Command::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const auto config = ecCommandConfig();
    if (!config)
        return false;
    const auto oled = config->findECOledConfigByECKey(oledECKey);
    if (!oled) {
        ecWarning(
            lcPaint, "%s command has invalid page oled . ECKey is %u", qUtf8Printable(name()), oledECKey);
        return false;
    }
    return updatePageOled(std::weak_ptr<EC::s_ECOledConfig>(oled), pageIndex);
}

bool Command::updatePageOled(std::weak_ptr<EC::s_ECOledConfig> weakOled, const quint32& pageIndex)
{
    const auto oled = weakOled.lock();
    if (!oled)
        return false;
    const QString label = BizModel::Translate::tr(BizModel::Translate::TR_THE_PAGE).arg(pageIndex + 1);
    updateECOledText(oled->OrvaneECKey, oled->ECKey, label);
    return true;
}

void Command::updateCommandKeypad(Enum::UpdateConsoleType type)
{
    if (pageSize() <= 0) {
        ecCritical(lcPaint, " page button config is 0. check config files.");
        return;
    }
    if (Internal::SurfaceDrawing::current())
        return paintPage(type); // without taking from a repaint that waits
    d->m_nWantedRepaint |= type == Enum::UpdateConsoleType::All
        ? CommandPrivate::WantLeds | CommandPrivate::WantLabels
        : type == Enum::UpdateConsoleType::Key ? CommandPrivate::WantLeds
                                               : CommandPrivate::WantLabels;
    painter().paint("page", [this] {
        const int wanted = d->m_nWantedRepaint.exchange(0);
        if (wanted == CommandPrivate::WantLeds)
            paintPage(Enum::UpdateConsoleType::Key);
        else if (wanted == CommandPrivate::WantLabels)
            paintPage(Enum::UpdateConsoleType::OLED);
        else if (wanted != 0)
            paintPage(Enum::UpdateConsoleType::All);
    });
}

void Command::paintPage(Enum::UpdateConsoleType type)
{
    const auto items = commandItems();
    const int pageIndex = d->m_nPageIndex;
    for (const auto& item : items) {
        if (!item || item->ecButtonPageIndex() != pageIndex)
            continue;
        if (const auto button = findSelectModeButtonByIndex(item->ecButtonOrderIndex()))
            sendItem(*this, *item, *button, type);
    }
}

void Command::updateBindedECButton(const quint32& ecButtonKey, const quint32& pageIndex)
{
    const quint64 keyOnPage = quint64(pageIndex) << 32U | ecButtonKey;
    painter().paint({"key", keyOnPage}, [this, ecButtonKey, pageIndex] {
        const auto items = commandItems();
        const auto item = std::find_if(items.cbegin(), items.cend(), [&](const auto& candidate) {
            return candidate && quint32(candidate->ecButtonKey()) == ecButtonKey
                && candidate->ecButtonPageIndex() == int(pageIndex);
        });
        if (item == items.cend())
            return;
        if (const auto button = findSelectModeButtonByIndex((*item)->ecButtonOrderIndex()))
            sendItem(*this, **item, *button, Enum::UpdateConsoleType::All);
    });
}

// ---- Shared steps ---------------------------------------------------------------------------------------

bool Command::checkScreenType(BizModel::Enum::Screen::ScreenType type)
{
    return type == BizModel::Enum::Screen::RegularScreen || type == BizModel::Enum::Screen::AUXScreen;
}

bool Command::checkScreenType(WeakScreen weakScreen)
{
    const auto screen = weakScreen.lock();
    return screen && checkScreenType(screen->screenType());
}

void Command::lockedKeyPad(bool locked)
{
    if (const auto console = ConsoleRequests::installed()) {
        console->lockKeypad(locked);
        console->announceKeypadLock(locked);
    }
}

void Command::lockedTBar(bool locked)
{
    if (const auto console = ConsoleRequests::installed()) {
        console->lockTBar(locked);
        console->announceTBarLock(locked);
    }
}

bool Command::getVirtualConsoleMode() const
{
    const auto console = ConsoleRequests::installed();
    return console && console->isVirtualConsoleMode();
}

void Command::setIsVirtualConsoleMode(bool isVirtual)
{
    if (const auto console = ConsoleRequests::installed())
        console->setVirtualConsoleMode(isVirtual);
}

void Command::signalStandardKeyPressed(quint32 key, QString text)
{
    if (const auto console = ConsoleRequests::installed())
        console->pressStandardKey(key, text);
}

} // namespace Orvane::ECProxy::Client

#include "command.h"

#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "eccommanditem.h"
#include "ecmanager.h"

#include <algorithm>
#include <cstring>

namespace Orvane::ECProxy::Client {

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

bool isKeypadLocked()
{
    const ECManager* manager = ECManager::instance();
    return manager && manager->isLockedKeypad();
}

} // namespace

Command::Command(QObject* parent)
    : QObject(parent)
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

bool Command::isLockKeyPadKey(const quint16&)
{
    return false;
}

bool Command::isAllowedKeyPressed(const quint16&)
{
    return false;
}

bool Command::isTakeKeyPressed(const quint32&)
{
    return false;
}

bool Command::isCutKeyPressed(const quint32&)
{
    return false;
}

void Command::takeKeyPressed(const quint32&) { }
void Command::cutKeyPressed(const quint32&) { }

bool Command::isAllowedKeyReleased(const quint16&)
{
    return false;
}

int Command::page()
{
    return m_nPageIndex;
}

bool Command::containsSelectedECButtonConfigByECKey(const quint32&) const
{
    return false;
}

void Command::setLoadToPGMStateChanged(const bool&) { }
void Command::registerPresetCommand(IPresetCommandEx*) { }

// ---- Notifications: none concerns every command ---------------------------------------------------------

void Command::slotActivedDeviceChanged() { }
void Command::slotDeviceRemoved(std::shared_ptr<BizModel::Device>) { }
void Command::slotActivedScreenChanged(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>) { }
void Command::slotSelectedScreensChanged(std::weak_ptr<BizModel::Device>) { }
void Command::slotDeviceScreenIndexChanged(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotDeviceScreenMoved(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotDeviceRegulerScreenAdded(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotDeviceRegulerScreenRemoved(
    std::weak_ptr<BizModel::Device>, std::shared_ptr<BizModel::Screen>)
{
}
void Command::slotDeviceScreenBaseNameChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotScreenBasePGMFrozenStateChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotScreenBasePGMFTBStateChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotScreenEffectChanged(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>) { }
void Command::slotDeviceSwapStateChanged(std::weak_ptr<BizModel::Device>) { }
void Command::slotDeviceLoadToPGMStateChanged(std::weak_ptr<BizModel::Device>) { }
void Command::slotTbarLocked(bool) { }
void Command::slotKeyboardLocked(bool) { }
void Command::slotDVISignalChanged(QMap<int, bool>) { }
void Command::slotDeviceScreenBaseLayerAdded(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::weak_ptr<BizModel::Layer>)
{
}
void Command::slotDeviceScreenBaseLayerRemoved(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::shared_ptr<BizModel::Layer>)
{
}
void Command::slotSelectedRegularLayersChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotNotifyUpdateLayer(const QList<std::weak_ptr<BizModel::Screen>>&, int) { }
void Command::slotLayerNameChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::weak_ptr<BizModel::Layer>)
{
}
void Command::slotDeviceInputNameChanged(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Interface>)
{
}
void Command::slotInterfaceOverLoadChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Interface>)
{
}
void Command::slotInterfaceCapacityChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Subcard>, std::weak_ptr<BizModel::Connector>)
{
}
void Command::slotDeviceInputAdded(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Input>) { }
void Command::slotDevicePresetAdded(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Preset>) { }
void Command::slotDevicePresetRemoved(std::weak_ptr<BizModel::Device>, std::shared_ptr<BizModel::Preset>) { }
void Command::slotDeviceDevicePresetCleared(std::weak_ptr<BizModel::Device>) { }
void Command::slotPresetNameChanged(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::File>) { }
void Command::slotDevicePresetSelectChanged(std::weak_ptr<BizModel::Device>) { }
void Command::slotDevicePresetCovered(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Preset>) { }
void Command::slotKeypadChanged() { }
void Command::slotScreenBasePGMEditStateChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>)
{
}
void Command::slotDeviceInputCleared(std::weak_ptr<BizModel::Device>) { }
void Command::slotSelectedInputChanged(std::weak_ptr<BizModel::Device>) { }
void Command::slotDeviceInputRemoved(std::weak_ptr<BizModel::Device>, std::shared_ptr<BizModel::Input>) { }
void Command::slotLayerSourceChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::weak_ptr<BizModel::Layer>)
{
}
void Command::slotECTBarChanged(const ECTBarValue&) { }
void Command::slotECButtonPressed(const quint32&) { }
void Command::slotECButtonRelease(const quint32&) { }
void Command::slotFramelessMessageBoxClosed(QMessageBox::StandardButton) { }

// ---- Configuration and lookups --------------------------------------------------------------------------

void Command::setCommandConfig(std::shared_ptr<EC::s_ECCommandConfig> config)
{
    {
        const std::lock_guard<std::mutex> lock(m_tableMutex);
        m_pECCommandCfg = std::move(config);
    }
    updateSelectModeButtonConfig();
}

std::shared_ptr<EC::s_ECCommandConfig> Command::ecCommandConfig() const
{
    const std::lock_guard<std::mutex> lock(m_tableMutex);
    return m_pECCommandCfg;
}

int Command::currentPageIndex() const
{
    return m_nPageIndex;
}

void Command::updateCurrentPageIndex(int pageIndex)
{
    m_nPageIndex = pageIndex;
}

std::shared_ptr<EC::s_ECButtonConfig> Command::findButton(const quint32& ecKey) const
{
    const auto config = ecCommandConfig();
    return config ? config->findECButtonConfigByECKey(ecKey) : nullptr;
}

bool Command::containsECButton(const quint32& ecKey) const
{
    return findButton(ecKey) != nullptr;
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
    return config && config->findECOledConfigByECKey(ecKey);
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
    return button ? button->OrderIndex + pageSize() * m_nPageIndex : -1;
}

Command::KeyCallback Command::findECButtonPressedCBByOrvaneKey(const quint16& orvaneKey)
{
    const std::lock_guard<std::mutex> lock(m_tableMutex);
    return m_mapKeyPressedCBs[orvaneKey];
}

Command::KeyCallback Command::findECButtonReleaseCBByOrvaneKey(const quint16& orvaneKey)
{
    const std::lock_guard<std::mutex> lock(m_tableMutex);
    return m_mapKeyReleaseCBs[orvaneKey];
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

void Command::bindKey(quint32 orvaneKey, KeyCallback pressed, KeyCallback released)
{
    const std::lock_guard<std::mutex> lock(m_tableMutex);
    if (pressed)
        m_mapKeyPressedCBs[orvaneKey] = std::move(pressed);
    if (released)
        m_mapKeyReleaseCBs[orvaneKey] = std::move(released);
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
        qWarning("%s command has invalid page button", qUtf8Printable(name()));
    else if (!button->pECOledCfg)
        qWarning("%s  command has invalid page oled", qUtf8Printable(name()));
    return button ? button->pECOledCfg : nullptr;
}

bool Command::isKeyOfFunction(const quint32& ecKey, quint16 orvaneKey) const
{
    const auto button = findButton(ecKey);
    return button && button->OrvaneKey == orvaneKey;
}

void Command::dispatchPressed(const quint32& ecKey)
{
    if (const KeyCallback handler = findECButtonPressedCBByECKey(ecKey))
        handler(ecKey);
}

void Command::dispatchReleased(const quint32& ecKey)
{
    if (const KeyCallback handler = findECButtonReleaseCBByECKey(ecKey))
        handler(ecKey);
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
    ECManager* manager = ECManager::instance();
    if (!manager)
        return;
    const auto request = std::make_shared<ECButtonColor>();
    request->ButtonKey = buttonKey;
    request->ECKey = quint16(ecKey);
    request->ButtonState = quint8(state);
    request->brightness = LedBrightnessPercent;
    fillButtonColor(request, int(color));
    manager->updateECButtonColor(request);
}

void Command::updateECButtonColor(const quint32& ecKey, ECLEDColor color, const int& state)
{
    const auto config = ecCommandConfig();
    if (!config)
        return;
    const auto button = config->findECButtonConfigByECKey(ecKey);
    if (!button) {
        qWarning("%u command has invalid button config", ecKey);
        return;
    }
    updateECButton(button->OrvaneECKey, ecKey, color, state);
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

void Command::updateECOledText(const quint32& oledKey, const quint32& ecKey, const QString& text)
{
    ECManager* manager = ECManager::instance();
    if (!manager)
        return;
    const auto request = std::make_shared<ECOLEDText>();
    request->OledKey = oledKey;
    request->ECKey = quint16(ecKey);
    fillOledText(request, text);
    manager->updateECOledText(request);
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
    if (ECManager* manager = ECManager::instance())
        manager->updateTBarValue(std::make_shared<ECTBarValue>(value));
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
    qDebug("keyboard pageup release start.");
    if (isKeypadLocked())
        return false;
    updateECButtonColor(ecKey, ECLEDColor::Off);
    if (!stepPageIndex(-1)) {
        qWarning(
            "Can't perform page turning, the minimum page number is currently reached. This is %s",
            qUtf8Printable(name()));
        return false;
    }
    showTurnedPage(ecKey);
    qDebug("keyboard pageup release end.");
    return true;
}

bool Command::pageDownRelease(const quint32& ecKey)
{
    qDebug("keyboard pagedown release start.");
    if (isKeypadLocked())
        return false;
    updateECButtonColor(ecKey, ECLEDColor::Off);
    if (!stepPageIndex(1)) {
        qWarning(
            "Can't perform page turning, the maximum page number is currently reached. This is %s",
            qUtf8Printable(name()));
        return false;
    }
    showTurnedPage(ecKey);
    qDebug("keyboard pagedown release end.");
    return true;
}

/// False, and nothing changes, at the end of the pages that the step leads to. The other end is not checked:
/// back from beyond the last page is the way home.
bool Command::stepPageIndex(int step)
{
    // Another thread may go to a page of its own at the same time.
    int pageIndex = m_nPageIndex;
    do {
        if (step < 0 ? pageIndex < 1 : maxPage() <= pageIndex + 1)
            return false;
    } while (!m_nPageIndex.compare_exchange_weak(pageIndex, pageIndex + step));
    return true;
}

void Command::showTurnedPage(const quint32& ecKey)
{
    const auto button = findButton(ecKey);
    if (!button) {
        qWarning("%scommand has invalid page button", qUtf8Printable(name()));
    } else if (!button->pECOledCfg) {
        qWarning("%scommand has invalid page oled", qUtf8Printable(name()));
    } else {
        showCurrentPage([&](quint32 page) { updatePageOled(button->pECOledCfg->ECKey, page); });
    }
}

void Command::showCurrentPage(const std::function<void(quint32)>& show)
{
    for (int shown = -1; shown != m_nPageIndex;) {
        shown = m_nPageIndex;
        show(quint32(shown));
    }
}

void Command::sendWhileShown(const std::function<bool()>& isShown, const std::function<void()>& send)
{
    if (!isShown())
        return;
    send();
    if (!isShown())
        updateCommandKeypad(Enum::UpdateConsoleType::All);
}

bool Command::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const auto config = ecCommandConfig();
    if (!config)
        return false;
    const auto oled = config->findECOledConfigByECKey(oledECKey);
    if (!oled) {
        qWarning("%s command has invalid page oled . ECKey is %u", qUtf8Printable(name()), oledECKey);
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
        qCritical(" page button config is 0. check config files.");
        return;
    }
    // One thread paints at a time. Whoever comes meanwhile leaves the work to it, so that it can never cover
    // a newer page, screen or device with the one that it began with.
    m_nWantedRepaint |= type == Enum::UpdateConsoleType::All ? WantLeds | WantLabels
        : type == Enum::UpdateConsoleType::Key               ? WantLeds
                                                             : WantLabels;
    while (m_nWantedRepaint != 0 && !m_bRepainting.exchange(true)) {
        const int wanted = m_nWantedRepaint.exchange(0);
        if (wanted == WantLeds)
            paintPage(Enum::UpdateConsoleType::Key);
        else if (wanted == WantLabels)
            paintPage(Enum::UpdateConsoleType::OLED);
        else if (wanted != 0)
            paintPage(Enum::UpdateConsoleType::All);
        m_bRepainting = false;
    }
}

void Command::paintPage(Enum::UpdateConsoleType type)
{
    const auto items = commandItems();
    const int pageIndex = m_nPageIndex;
    for (const auto& item : items) {
        if (!item || item->ecButtonPageIndex() != pageIndex)
            continue;
        if (const auto button = findSelectModeButtonByIndex(item->ecButtonOrderIndex()))
            sendItem(*item, *button, type);
    }
}

void Command::updateBindedECButton(const quint32& ecButtonKey, const quint32& pageIndex)
{
    const auto items = commandItems();
    for (const auto& item : items) {
        if (!item || quint32(item->ecButtonKey()) != ecButtonKey
            || item->ecButtonPageIndex() != int(pageIndex))
            continue;
        if (const auto button = findSelectModeButtonByIndex(item->ecButtonOrderIndex()))
            sendItem(*item, *button, Enum::UpdateConsoleType::All);
        return;
    }
}

void Command::sendItem(
    const ECCommandItem& item, const EC::s_ECButtonConfig& button, Enum::UpdateConsoleType type)
{
    ECManager* manager = ECManager::instance();
    if (!manager)
        return;
    // Another thread may change the item and send it while the old state is on its way from here: what is
    // sent last must be what the item holds.
    for (;;) {
        // A copy: one moment's colour and text. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const ECCommandItem sent(item);
        sendItemState(*manager, sent, button, type);
        if (item.ecButtonColor() == sent.ecButtonColor() && item.ecOledText() == sent.ecOledText())
            return;
    }
}

void Command::sendItemState(
    ECManager& manager, const ECCommandItem& item, const EC::s_ECButtonConfig& button,
    Enum::UpdateConsoleType type)
{
    const auto oled = std::make_shared<ECOLEDText>();
    if (button.pECOledCfg) {
        oled->OledKey = button.pECOledCfg->OrvaneECKey;
        oled->ECKey = button.pECOledCfg->ECKey;
    }
    fillOledText(oled, item.ecOledText());

    const auto color = std::make_shared<ECButtonColor>();
    color->ButtonKey = button.OrvaneECKey;
    color->ECKey = button.ECKey;
    color->brightness = LedBrightnessPercent;
    fillButtonColor(color, int(item.ecButtonColor()));

    switch (type) {
    case Enum::UpdateConsoleType::All:
        manager.updateECButtonColor(color, oled);
        break;
    case Enum::UpdateConsoleType::Key:
        manager.updateECButtonColor(color);
        break;
    case Enum::UpdateConsoleType::OLED:
        manager.updateECOledText(oled);
        break;
    }
}

// ---- Shared steps ---------------------------------------------------------------------------------------

bool Command::checkScreenType(BizModel::Enum::Screen::ScreenType type)
{
    return type == BizModel::Enum::Screen::RegularScreen || type == BizModel::Enum::Screen::AUXScreen;
}

bool Command::checkScreenType(std::weak_ptr<BizModel::Screen> weakScreen)
{
    const auto screen = weakScreen.lock();
    return screen && checkScreenType(screen->screenType());
}

void Command::lockedKeyPad(bool locked)
{
    ECManager* manager = ECManager::instance();
    if (!manager)
        return;
    if (locked)
        manager->lockKeypad();
    else
        manager->unlockKeypad();
    Q_EMIT manager->signalKeyboardLocked(locked);
}

void Command::lockedTBar(bool locked)
{
    ECManager* manager = ECManager::instance();
    if (!manager)
        return;
    if (locked)
        manager->lockTBar();
    else
        manager->unlockTBar();
    Q_EMIT manager->signalTbarLocked(locked);
}

bool Command::getVirtualConsoleMode() const
{
    const ECManager* manager = ECManager::instance();
    return manager && manager->getVirtualConsoleMode();
}

void Command::setIsVirtualConsoleMode(bool isVirtual)
{
    if (ECManager* manager = ECManager::instance())
        manager->setIsVirtualConsoleMode(isVirtual);
}

void Command::signalStandardKeyPressed(quint32 key, QString text)
{
    if (ECManager* manager = ECManager::instance())
        Q_EMIT manager->signalStandardKeyPressed(key, text);
}

} // namespace Orvane::ECProxy::Client

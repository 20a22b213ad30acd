#include "inputcommand.h"

#include "hoststate_p.h"
#include "inputcommand_p.h"
#include "inputtrial_p.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "painter_p.h"

#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"

#include <optional>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace Translate = BizModel::Translate;
using BizModel::StatusBarMsgType;

// ---- Keys -----------------------------------------------------------------------------------------------

const std::vector<KeyRow<InputCommandPrivate>>& InputCommandPrivate::keys()
{
    using Type = InputCallbackType;
    using Key = InputCommandPrivate;
    constexpr auto Momentary = KeyLight::Momentary;
    // A dialog that opens while a page key is held must not keep its release away.
    constexpr auto Passes = ReleasePassesDialog;
    static const std::vector<KeyRow<Key>> s_keys{
        {Type::eNothing, nullptr, nullptr, NoTraits, Momentary},
        {Type::eSelecInputCB, &Key::selectInputPressed, &Key::selectInputRelease, NoTraits,
         KeyLight::Lasting},
        {Type::ePageUp, &Command::pageUpPressed, &Command::pageUpRelease, Passes | HasPageLabel, Momentary},
        {Type::ePageDown, &Command::pageDownPressed, &Command::pageDownRelease, Passes, Momentary},
    };
    return s_keys;
}

bool InputCommandPrivate::selectInputPressed(const quint32& ecKey)
{
    if (HostState::isInputBlocked()) {
        ecWarning(lcKeys, "Input key %u refused: a dialog is open.", ecKey);
        return false;
    }
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Active device is nullptr");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        ecWarning(lcKeys, "Active screen is nullptr");
        return false;
    }
    const auto input = m_items.findBindingInput(*device, m_pCommand->findECButtonIndex(ecKey));
    if (!input) {
        ecDebug(lcKeys, "unable to find input");
        KeyTracing::refuse("unable to find input");
        return false;
    }
    const QList<WeakLayer> selected = screen->selectedLayers(BizModel::Enum::Scene::BothScenes);
    if (selected.isEmpty()) {
        ecWarning(lcKeys, "Input key %u refused: no layer is selected.", ecKey);
        showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_INPUT_SELECT_LAYER));
        return false;
    }
    // Until the source is bound.
    std::optional<InputTrial> trial;
    if (screen->screenType() == BizModel::Enum::Screen::RegularScreen) {
        trial.emplace(m_bChecking);
        if (!*trial) {
            ecWarning(lcKeys, "Input key %u refused: another input key press is still being checked.", ecKey);
            return false;
        }
        if (!trial->hasResourcesFor(screen, selected, input)) {
            ecWarning(lcKeys, "Layer resource out, failed to switch layer input source.");
            showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_LAYER_NO_RESOURCES));
            return false;
        }
    }
    bindSource(device, selected, input->interfaceId());
    return true;
}

void InputCommandPrivate::bindSource(
    const DevicePtr& device, const QList<WeakLayer>& selected, quint32 inputId)
{
    const auto first = selected.first().lock();
    if (!first) {
        ecWarning(lcModel, "The layer input source stays: the first selected layer is gone.");
        return;
    }
    const auto control = ModelControl::Screen::layerModelControl(first->layerType(), device);
    if (!control || !control->bindSource(selected, inputId, BizModel::SourceType::Input))
        ecWarning(lcModel, "The model refused to switch the layer input source.");
}

bool InputCommandPrivate::selectInputRelease(const quint32&)
{
    return !HostState::isInputBlocked();
}

// ---- Items ----------------------------------------------------------------------------------------------

void InputCommandPrivate::updateECCommandItems()
{
    if (!activedDevice()) {
        ecCritical(lcPaint, "No actived device");
        return;
    }
    // A further command of this name gets no keys; the items are the first one's.
    if (m_pCommand->ecCommandConfig())
        m_items.update();
}

void InputCommandPrivate::refreshKeys(Enum::UpdateConsoleType type)
{
    updateECCommandItems();
    m_pCommand->updateCommandKeypad(type);
}

void InputCommandPrivate::followSelectedLayer(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const QList<WeakLayer> selected = screen.selectedLayers(BizModel::Enum::Scene::BothScenes);
    const auto layer = selected.size() == 1 ? selected.first().lock() : nullptr;
    if (!layer)
        return;
    const int pageBefore = m_pCommand->currentPageIndex();
    const bool isShown = activedDevice().get() == &device;
    const auto input = isShown && layer->sourceType() == BizModel::SourceType::Input
        ? device.findInput(layer->sourceId()).lock()
        : nullptr;
    updateECCommandItems();
    const auto item = input ? m_items.findItem(device, *input) : nullptr;
    if (item) {
        m_pCommand->updateCurrentPageIndex(item->ecButtonPageIndex());
        m_pCommand->udpateECPageOled();
    }
    const bool isTurned = m_pCommand->currentPageIndex() != pageBefore;
    m_pCommand->updateCommandKeypad(isTurned ? Enum::UpdateConsoleType::All : Enum::UpdateConsoleType::Key);
}

void InputCommandPrivate::updateInputName(const BizModel::Device& device, const BizModel::Interface& input)
{
    const auto item = m_items.rename(device, input);
    const int oledKey = item ? item->ecOledKey() : -1;
    if (oledKey < 0)
        return;
    const QString ip = device.ipMacSn();
    const QString name = item->ecOledText();
    const auto send = [&] {
        const auto actived = activedDevice();
        if (actived && actived->ipMacSn() == ip && item->ecOledText() == name
            && item->ecButtonPageIndex() == m_pCommand->currentPageIndex())
            m_pCommand->updateECOledText(quint32(oledKey), quint32(oledKey), name);
    };
    m_pCommand->painter().sendAtOnce(
        "late label", send, [this] { m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::OLED); });
}

} // namespace Internal

using Internal::InputCommandPrivate;

InputCommand::InputCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<InputCommandPrivate>(this))
{
    setKeyTable({this, d.get(), InputCommandPrivate::keys()});
}

InputCommand::~InputCommand()
{
    stopPainting();
}

// ---- The group of keys ----------------------------------------------------------------------------------

QString InputCommand::name() const
{
    return Constants::INPUTCOMMANSDNAME;
}

int InputCommand::maxPage()
{
    return InputCommandPrivate::PageCount;
}

int InputCommand::pageSize() const
{
    return d->m_items.pageSize();
}

void InputCommand::retranslateUi() { }

QList<std::shared_ptr<ECCommandItem>> InputCommand::commandItems() const
{
    const auto device = Internal::activedDevice();
    return d->m_items.items(device ? device->ipMacSn() : QString());
}

bool InputCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const bool isShown = Command::updatePageOled(oledECKey, pageIndex);
    d->refreshKeys(Enum::UpdateConsoleType::All);
    return isShown;
}

void InputCommand::updateSelectModeButtonConfig()
{
    d->m_items.make(ecCommandConfig(), maxPage());
}

int InputCommand::getMinUnusedECButtonIndex(int& orderIndex) const
{
    return d->m_items.minUnusedButtonIndex(commandItems(), orderIndex);
}

std::shared_ptr<EC::s_ECButtonConfig> InputCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_items.button(index);
}

void InputCommand::updateKeyboard()
{
    darkenMomentaryKeys();
    d->updateECCommandItems();
    udpateECPageOled();
    updateCommandKeypad(Enum::UpdateConsoleType::All);
}

void InputCommand::udpateECPageOled()
{
    painter().paint("page label", [this] {
        if (const auto oled = findPageOled(quint16(InputCallbackType::ePageUp)))
            Command::updatePageOled(oled->ECKey, quint32(currentPageIndex()));
    });
}

bool InputCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return d->m_items.contains(ecKey);
}

void InputCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void InputCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

// ---- Notifications of the model -------------------------------------------------------------------------

void InputCommand::slotActivedDeviceChanged()
{
    updateCurrentPageIndex(0);
    updateKeyboard();
}

void InputCommand::slotDeviceRemoved(DevicePtr device)
{
    if (device)
        d->m_items.forgetDevice(device->ipMacSn());
    updateCurrentPageIndex(0);
    updateKeyboard();
}

void InputCommand::slotActivedScreenChanged(WeakDevice, WeakScreen screen)
{
    if (checkScreenType(screen))
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceRegulerScreenRemoved(WeakDevice, ScreenPtr screen)
{
    if (checkScreenType(screen))
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceScreenBaseLayerRemoved(WeakDevice, WeakScreen, LayerPtr layer)
{
    const bool isShown = layer
        && (layer->layerType() == BizModel::LayerType::Regular
            || layer->layerType() == BizModel::LayerType::AUX);
    if (isShown)
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotSelectedRegularLayersChanged(WeakDevice weakDevice, WeakScreen weakScreen)
{
    const auto device = weakDevice.lock();
    const auto screen = weakScreen.lock();
    if (device && screen)
        d->followSelectedLayer(*device, *screen);
    else
        d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputNameChanged(WeakDevice weakDevice, WeakInterface weakInterface)
{
    const auto device = weakDevice.lock();
    const auto input = weakInterface.lock();
    if (device && input && input->type() == BizModel::InterfaceType::Input)
        d->updateInputName(*device, *input);
}

void InputCommand::slotInterfaceOverLoadChanged(WeakDevice, WeakInterface)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotInterfaceCapacityChanged(WeakDevice, WeakSubcard, WeakConnector)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputAdded(WeakDevice, WeakInput)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputCleared(WeakDevice)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotSelectedInputChanged(WeakDevice)
{
    d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceInputRemoved(WeakDevice, InputPtr)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotLayerSourceChanged(WeakDevice, WeakScreen, WeakLayer)
{
    d->refreshKeys(Enum::UpdateConsoleType::Key);
}

} // namespace Orvane::ECProxy::Client

#include "inputcommand.h"

#include "ecconsolemanager.h"
#include "hoststate_p.h"
#include "itemupdates_p.h"
#include "modelaccess_p.h"
#include "selectkeys_p.h"

#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/resourcecheck.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"

#include <QScopeGuard>

#include <algorithm>
#include <atomic>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace Translate = BizModel::Translate;
using BizModel::SceneType;
using BizModel::StatusBarMsgType;

namespace {

constexpr int PageCount = 2;

using InputPtr = std::shared_ptr<BizModel::Input>;
using LayerPtr = std::shared_ptr<BizModel::Layer>;
using WeakLayers = QList<std::weak_ptr<BizModel::Layer>>;

QList<LayerPtr> alive(const WeakLayers& weakLayers)
{
    QList<LayerPtr> layers;
    for (const auto& weakLayer : weakLayers) {
        if (const auto layer = weakLayer.lock())
            layers.append(layer);
    }
    return layers;
}

ECObjectId objectId(const BizModel::Interface& input)
{
    return {input.interfaceId(), 0};
}

/// What colours the input keys of a device, taken at one time.
class InputColors {
public:
    explicit InputColors(const BizModel::Device& device)
        : m_pScreen(device.activedScreen().lock())
    {
        if (!m_pScreen)
            return;
        const auto layers = alive(m_pScreen->selectedLayers(BizModel::Enum::Scene::BothScenes));
        for (const LayerPtr& layer : layers) {
            if (layer->sourceType() == BizModel::SourceType::Input && layer->sceneType() == SceneType::PVW)
                m_feedingSelection.insert(layer->sourceId());
        }
    }

    ECLEDColor of(const BizModel::Interface& input) const
    {
        if (!m_pScreen)
            return ECLEDColor::Off;
        const bool isActive = input.isActive();
        const bool isOverLoad = input.isOverLoad();
        if (m_feedingSelection.count(input.interfaceId()) != 0)
            return isActive && !isOverLoad ? ECLEDColor::Green : ECLEDColor::Red;
        if (!isActive)
            return ECLEDColor::Off;
        return isOverLoad ? ECLEDColor::Orange : ECLEDColor::Yellow;
    }

private:
    const std::shared_ptr<BizModel::Screen> m_pScreen;
    std::set<quint32> m_feedingSelection;
};

/// Gives layers another capacity for a resource check, and back their own at the end.
class CapacityTrial {
public:
    explicit CapacityTrial(BizModel::CapacityMode capacity)
        : m_capacity(capacity)
    {
    }
    ~CapacityTrial()
    {
        for (const auto& [layer, own] : m_ownCapacities)
            layer->setCapacity(own);
    }
    CapacityTrial(const CapacityTrial&) = delete;
    CapacityTrial& operator=(const CapacityTrial&) = delete;

    void add(const LayerPtr& layer)
    {
        m_ownCapacities.emplace_back(layer, layer->capacity());
        layer->setCapacity(m_capacity);
    }

private:
    const BizModel::CapacityMode m_capacity;
    std::vector<std::pair<LayerPtr, BizModel::CapacityMode>> m_ownCapacities;
};

/// True when the screen has the resources for its selected layers with the input's capacity.
bool hasResourcesFor(
    const std::shared_ptr<BizModel::Screen>& screen, const WeakLayers& selected, const InputPtr& input)
{
    CapacityTrial trial(input->capacity());
    BizModel::ResourceCheck::LayerRects rects;
    SceneType scene = SceneType::PVW;
    const auto layers = alive(selected);
    for (const LayerPtr& layer : layers) {
        rects.append({layer, layer->windowRect()});
        trial.add(layer);
        scene = layer->sceneType();
    }
    return rects.isEmpty()
        || BizModel::ResourceCheck::CheckOperationResources(screen, rects, screen->outputs(), scene, {});
}

} // namespace

class InputCommandPrivate {
public:
    explicit InputCommandPrivate(InputCommand* command)
        : m_pCommand(command)
    {
    }

    bool selectInputPressed(const quint32& ecKey);
    bool selectInputRelease(const quint32& ecKey);

    /// Binds the active device's inputs to its keys and gives the keys their looks.
    void updateECCommandItems();
    /// The same and a repaint.
    void refreshKeys(Enum::UpdateConsoleType type);
    /// Turns to the page of the input that the only selected layer shows; nothing else when not exactly one
    /// layer is selected.
    void followSelectedLayer(const BizModel::Device& device, const BizModel::Screen& screen);
    void updateInputName(const BizModel::Device& device, const BizModel::Interface& input);
    /// Frees the keys of a device that is gone.
    void forgetDevice(const BizModel::Device& device);
    /// Makes the items of the group's keys anew.
    void makeItems();

    InputCommand* const m_pCommand;
    SelectKeys m_inputButtonCfgs;

private:
    /// An input as its key shows it.
    struct KeyInput {
        quint32 id = 0;
        QString name;
        ECLEDColor color = ECLEDColor::Off;
    };
    /// The inputs of the active device, by ascending id.
    struct DeviceInputs {
        QString ip;
        std::vector<KeyInput> inputs;
    };

    static QList<InputPtr> sortedInputs(const BizModel::Device& device);
    static std::optional<DeviceInputs> readActivedDevice();
    int bindInputs(const DeviceInputs& device);
    InputPtr findBindingInput(const BizModel::Device& device, const quint32& ecKey) const;

    /// Guards the binding of inputs to items.
    ItemUpdates m_itemUpdates;
    /// A press is trying out capacities: another one would take them for the layers' own.
    std::atomic<bool> m_bChecking{false};
};

// ---- Keys -----------------------------------------------------------------------------------------------

bool InputCommandPrivate::selectInputPressed(const quint32& ecKey)
{
    if (HostState::isInputBlocked())
        return false;
    const auto device = activedDevice();
    if (!device) {
        qWarning("Active device is nullptr");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        qWarning("Active screen is nullptr");
        return false;
    }
    const auto input = findBindingInput(*device, ecKey);
    if (!input) {
        qDebug("unable to find input");
        return false;
    }
    const WeakLayers selected = screen->selectedLayers(BizModel::Enum::Scene::BothScenes);
    if (selected.isEmpty()) {
        showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_INPUT_SELECT_LAYER));
        return false;
    }
    const bool isChecked = screen->screenType() == BizModel::Enum::Screen::RegularScreen;
    if (isChecked && m_bChecking.exchange(true)) {
        qWarning("Input key %u is refused: one of the other console is being worked.", ecKey);
        return false;
    }
    // Until the source is bound: another trial would undo what this press has changed.
    const auto endOfCheck = qScopeGuard([this, isChecked] {
        if (isChecked)
            m_bChecking = false;
    });
    if (isChecked && !hasResourcesFor(screen, selected, input)) {
        qWarning("Layer resource out, failed to switch layer input source.");
        showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_LAYER_NO_RESOURCES));
        return false;
    }
    if (const auto first = selected.first().lock()) {
        const auto control = ModelControl::Screen::layerModelControl(first->layerType(), device);
        if (!control || !control->bindSource(selected, input->interfaceId(), BizModel::SourceType::Input))
            qWarning("The model refused to switch the layer input source.");
    }
    return true;
}

bool InputCommandPrivate::selectInputRelease(const quint32&)
{
    return !HostState::isInputBlocked();
}

InputPtr InputCommandPrivate::findBindingInput(const BizModel::Device& device, const quint32& ecKey) const
{
    const int buttonIndex = m_pCommand->findECButtonIndex(ecKey);
    if (buttonIndex < 0)
        return nullptr; // inputs without a key answer as much
    const ECObjectIdList ids = m_itemUpdates.read([&] {
        return ECConsoleManager::instance()->findBindingObject(
            device.ipMacSn(), KeyboardType::Input, buttonIndex);
    });
    const auto inputs = device.validInputs();
    for (const auto& weakInput : inputs) {
        auto input = weakInput.lock();
        if (input && ids.contains(objectId(*input)))
            return input;
    }
    return nullptr;
}

// ---- Items ----------------------------------------------------------------------------------------------

QList<InputPtr> InputCommandPrivate::sortedInputs(const BizModel::Device& device)
{
    QList<InputPtr> inputs;
    const auto weakInputs = device.validInputs();
    for (const auto& weakInput : weakInputs) {
        if (const auto input = weakInput.lock())
            inputs.append(input);
    }
    std::stable_sort(inputs.begin(), inputs.end(), [](const InputPtr& left, const InputPtr& right) {
        return left->interfaceId() < right->interfaceId();
    });
    return inputs;
}

std::optional<InputCommandPrivate::DeviceInputs> InputCommandPrivate::readActivedDevice()
{
    const auto device = activedDevice();
    if (!device)
        return std::nullopt;
    DeviceInputs read{device->ipMacSn(), {}};
    const InputColors colors(*device);
    const auto sorted = sortedInputs(*device);
    for (const InputPtr& input : sorted)
        read.inputs.push_back({input->interfaceId(), input->name(), colors.of(*input)});
    return read;
}

void InputCommandPrivate::updateECCommandItems()
{
    if (!activedDevice()) {
        qCritical("No actived device");
        return;
    }
    if (!m_pCommand->ecCommandConfig()) // the items are another command's
        return;
    const int withoutKey =
        m_itemUpdates.update(readActivedDevice, [this](const std::optional<DeviceInputs>& device) {
            return device ? bindInputs(*device) : 0;
        });
    for (int i = 0; i < withoutKey; ++i)
        qWarning(" Binding screen data error...");
}

/// Answers how many inputs are left without a key.
int InputCommandPrivate::bindInputs(const DeviceInputs& device)
{
    ECConsoleManager* store = ECConsoleManager::instance();
    const ECCommandItemList items = store->inputECCommandItems(device.ip);
    const auto& inputs = device.inputs;
    const int pageSize = m_pCommand->pageSize();
    for (int i = 0; i < items.size(); ++i) {
        const auto& item = items.at(i);
        const bool isUsed = std::size_t(i) < inputs.size();
        const ECObjectIdList ids = isUsed ? ECObjectIdList{{inputs[std::size_t(i)].id, 0}} : ECObjectIdList();
        // A key that keeps its input is never free in between.
        if (item->getObjectIdList() != ids)
            item->resetECCommandItem();
        if (!isUsed)
            continue;
        const KeyInput& input = inputs[std::size_t(i)];
        const int pageIndex = item->ecButtonPageIndex();
        const int orderIndex = item->ecButtonOrderIndex();
        store->updateECButtonData(
            device.ip, KeyboardType::Input, orderIndex, pageIndex * pageSize + orderIndex, pageIndex, ids,
            input.color, input.name, false);
    }
    return std::max(0, int(inputs.size()) - items.size());
}

void InputCommandPrivate::refreshKeys(Enum::UpdateConsoleType type)
{
    updateECCommandItems();
    m_pCommand->updateCommandKeypad(type);
}

void InputCommandPrivate::followSelectedLayer(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const WeakLayers selected = screen.selectedLayers(BizModel::Enum::Scene::BothScenes);
    const auto layer = selected.size() == 1 ? selected.first().lock() : nullptr;
    if (!layer)
        return;
    const int pageBefore = m_pCommand->currentPageIndex();
    const bool isShown = activedDevice().get() == &device;
    const auto input = isShown && layer->sourceType() == BizModel::SourceType::Input
        ? device.findInput(layer->sourceId()).lock()
        : nullptr;
    updateECCommandItems();
    const auto item = input ? ECConsoleManager::instance()->findBindingECItem(
                          device.ipMacSn(), KeyboardType::Input, objectId(*input))
                            : nullptr;
    if (item) {
        m_pCommand->updateCurrentPageIndex(item->ecButtonPageIndex());
        m_pCommand->udpateECPageOled();
    }
    const bool isTurned = m_pCommand->currentPageIndex() != pageBefore;
    m_pCommand->updateCommandKeypad(isTurned ? Enum::UpdateConsoleType::All : Enum::UpdateConsoleType::Key);
}

void InputCommandPrivate::updateInputName(const BizModel::Device& device, const BizModel::Interface& input)
{
    const QString ip = device.ipMacSn();
    const QString name = input.name();
    const ECObjectId id = objectId(input);
    const auto item = m_itemUpdates.write([&] {
        auto found = ECConsoleManager::instance()->findBindingECItem(ip, KeyboardType::Input, id);
        if (found)
            found->setECOledText(name);
        return found;
    });
    const int oledKey = item ? item->ecOledKey() : -1;
    if (oledKey < 0)
        return;
    m_pCommand->sendWhileShown(
        [&] {
            const auto actived = activedDevice();
            return actived && actived->ipMacSn() == ip && item->ecOledText() == name
                && item->ecButtonPageIndex() == m_pCommand->currentPageIndex();
        },
        [&] { m_pCommand->updateECOledText(quint32(oledKey), quint32(oledKey), name); });
}

void InputCommandPrivate::forgetDevice(const BizModel::Device& device)
{
    m_itemUpdates.write([ip = device.ipMacSn()] {
        ECConsoleManager::instance()->resetECCommandItems(ip, KeyboardType::Input);
    });
}

void InputCommandPrivate::makeItems()
{
    m_itemUpdates.write([this] {
        m_inputButtonCfgs.collect(m_pCommand->ecCommandConfig(), quint16(InputCallbackType::eSelecInputCB));
        const auto items = m_inputButtonCfgs.makeItems(m_pCommand->maxPage());
        ECConsoleManager* const store = ECConsoleManager::instance();
        store->clearECCommandItems(KeyboardType::Input);
        for (const auto& item : items)
            store->appendECCommandItem(KeyboardType::Input, item);
    });
}

} // namespace Internal

using Internal::InputCommandPrivate;

InputCommand::InputCommand(QObject* parent)
    : Command(parent)
    , d(new InputCommandPrivate(this))
{
    bindKey(
        quint32(InputCallbackType::eSelecInputCB),
        std::bind(&InputCommandPrivate::selectInputPressed, d, std::placeholders::_1),
        std::bind(&InputCommandPrivate::selectInputRelease, d, std::placeholders::_1));
    bindKey(
        quint32(InputCallbackType::ePageUp), std::bind(&Command::pageUpPressed, this, std::placeholders::_1),
        std::bind(&Command::pageUpRelease, this, std::placeholders::_1));
    bindKey(
        quint32(InputCallbackType::ePageDown),
        std::bind(&Command::pageDownPressed, this, std::placeholders::_1),
        std::bind(&Command::pageDownRelease, this, std::placeholders::_1));
}

InputCommand::~InputCommand()
{
    delete d;
}

// ---- The group of keys ----------------------------------------------------------------------------------

QString InputCommand::name() const
{
    return Constants::INPUTCOMMANSDNAME;
}

int InputCommand::maxPage()
{
    return Internal::PageCount;
}

int InputCommand::pageSize() const
{
    return d->m_inputButtonCfgs.count();
}

void InputCommand::retranslateUi() { }

QList<std::shared_ptr<ECCommandItem>> InputCommand::commandItems() const
{
    const auto device = Internal::activedDevice();
    return ECConsoleManager::instance()->inputECCommandItems(device ? device->ipMacSn() : QString());
}

bool InputCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const bool isShown = Command::updatePageOled(oledECKey, pageIndex);
    d->refreshKeys(Enum::UpdateConsoleType::All);
    return isShown;
}

void InputCommand::updateSelectModeButtonConfig()
{
    d->makeItems();
}

int InputCommand::getMinUnusedECButtonIndex(int& orderIndex) const
{
    return Internal::minUnusedButtonIndex(commandItems(), pageSize(), orderIndex);
}

std::shared_ptr<EC::s_ECButtonConfig> InputCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_inputButtonCfgs.at(index);
}

void InputCommand::updateKeyboard()
{
    darkenKeys([](quint16 orvaneKey) { return orvaneKey != quint16(InputCallbackType::eSelecInputCB); });
    if (const auto oled = findPageOled(quint16(InputCallbackType::ePageUp)))
        showCurrentPage([&](quint32 page) { updatePageOled(oled->ECKey, page); });
    else
        d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::udpateECPageOled()
{
    if (const auto oled = findPageOled(quint16(InputCallbackType::ePageUp)))
        showCurrentPage([&](quint32 page) { Command::updatePageOled(oled->ECKey, page); });
}

bool InputCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return isKeyOfFunction(ecKey, quint16(InputCallbackType::eSelecInputCB));
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

void InputCommand::slotDeviceRemoved(std::shared_ptr<BizModel::Device> device)
{
    if (device)
        d->forgetDevice(*device);
    updateCurrentPageIndex(0);
    updateKeyboard();
}

void InputCommand::slotActivedScreenChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen> screen)
{
    if (checkScreenType(screen))
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceRegulerScreenRemoved(
    std::weak_ptr<BizModel::Device>, std::shared_ptr<BizModel::Screen> screen)
{
    if (checkScreenType(screen))
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceScreenBaseLayerRemoved(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::shared_ptr<BizModel::Layer> layer)
{
    const bool isShown = layer
        && (layer->layerType() == BizModel::LayerType::Regular
            || layer->layerType() == BizModel::LayerType::AUX);
    if (isShown)
        d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotSelectedRegularLayersChanged(
    std::weak_ptr<BizModel::Device> weakDevice, std::weak_ptr<BizModel::Screen> weakScreen)
{
    const auto device = weakDevice.lock();
    const auto screen = weakScreen.lock();
    if (device && screen)
        d->followSelectedLayer(*device, *screen);
    else
        d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputNameChanged(
    std::weak_ptr<BizModel::Device> weakDevice, std::weak_ptr<BizModel::Interface> weakInterface)
{
    const auto device = weakDevice.lock();
    const auto input = weakInterface.lock();
    if (device && input && input->type() == BizModel::InterfaceType::Input)
        d->updateInputName(*device, *input);
}

void InputCommand::slotInterfaceOverLoadChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Interface>)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotInterfaceCapacityChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Subcard>, std::weak_ptr<BizModel::Connector>)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputAdded(std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Input>)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotDeviceInputCleared(std::weak_ptr<BizModel::Device>)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotSelectedInputChanged(std::weak_ptr<BizModel::Device>)
{
    d->refreshKeys(Enum::UpdateConsoleType::Key);
}

void InputCommand::slotDeviceInputRemoved(std::weak_ptr<BizModel::Device>, std::shared_ptr<BizModel::Input>)
{
    d->refreshKeys(Enum::UpdateConsoleType::All);
}

void InputCommand::slotLayerSourceChanged(
    std::weak_ptr<BizModel::Device>, std::weak_ptr<BizModel::Screen>, std::weak_ptr<BizModel::Layer>)
{
    d->refreshKeys(Enum::UpdateConsoleType::Key);
}

} // namespace Orvane::ECProxy::Client

#include "commandmanager.h"

#include "command.h"
#include "consolerequests_p.h"
#include "ecconsolemanager.h"
#include "functioncommand.h"
#include "hoststate_p.h"
#include "inputcommand.h"
#include "keytracing_p.h"
#include "layercommand.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "numbercommand.h"
#include "presetcommand.h"
#include "screencommand.h"
#include "unreleasedkeys_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "ec/eckeyboardconfig.h"
#include "ec/eckeyfunctions.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace Orvane::ECProxy::Client {

namespace Internal {

using Guard = ECKeyTrace::Guard;

class CommandManagerPrivate : public QObject {
public:
    using Commands = QList<std::shared_ptr<Command>>;

    explicit CommandManagerPrivate(CommandManager* manager)
        : m_pCommandMgr(manager)
    {
    }

    Commands commands() const
    {
        const std::lock_guard<std::mutex> lock(m_commandsMutex);
        return m_commands;
    }

    Commands activeCommands() const
    {
        const std::lock_guard<std::mutex> lock(m_commandsMutex);
        return m_activeCommands;
    }

    void appendCommand(const std::shared_ptr<Command>& command)
    {
        const bool isFirst = !findCommandByName(command->name());
        const std::lock_guard<std::mutex> lock(m_commandsMutex);
        m_commands.append(command);
        if (isFirst)
            m_activeCommands.append(command);
    }

    QList<std::function<void()>> furtherActions() const
    {
        const std::lock_guard<std::mutex> lock(m_commandsMutex);
        return m_commandRegister;
    }

    /// Calls one operation of every active command, in routing order.
    template <typename... Parameters, typename... Arguments>
    void forEachCommand(void (Command::*operation)(Parameters...), const Arguments&... arguments)
    {
        const Commands active = activeCommands();
        for (const auto& command : active)
            (command.get()->*operation)(arguments...);
    }

    template <typename Predicate> std::shared_ptr<Command> findCommandIf(Predicate predicate) const
    {
        const Commands all = commands();
        for (const auto& command : all) {
            if (predicate(*command))
                return command;
        }
        return nullptr;
    }

    std::shared_ptr<Command> findCommandByName(const QString& name) const
    {
        return findCommandIf([&](const Command& command) { return command.name() == name; });
    }

    std::shared_ptr<Command> findCommand(quint32 ecKey) const
    {
        return findCommandIf([&](const Command& command) { return command.containsECButton(ecKey); });
    }

    /// The owner of a received key value, which also decides the console mode; empty when none owns it.
    std::shared_ptr<Command> findOwner(quint32 key, quint32& ecKey) const;
    quint32 findKey(quint32 key) const;
    bool putToRest(quint32 ecKey) const;

    void connectModel(BizModel::DeviceList* devices);
    void initDeviceECCommandItems();

    CommandManager* const m_pCommandMgr;

    // m_commandsMutex guards m_commands, m_activeCommands and m_commandRegister.
    mutable std::mutex m_commandsMutex;
    Commands m_commands;
    /// The first command of each name. Those that a further registration puts behind them never get keys,
    /// and would do once more whatever the T-Bar or a notification asks for.
    Commands m_activeCommands;
    QList<std::function<void()>> m_commandRegister;

    std::atomic<bool> m_bVirtualConsoleMode{false};
    UnreleasedKeys m_unreleasedKeys{[this](quint32 ecKey) { return putToRest(ecKey); }};
};

/// The guard of open dialogs and of "Quenor". Of a traced key it notes which of them it is.
bool passesDialog(bool isAllowedKey)
{
    if (KeyTracing::ask(Guard::Dialog, isAllowedKey || !HostState::isInputBlocked()))
        return true;
    if (!KeyTracing::current())
        return false;
    const auto window = HostState::modalWindow();
    KeyTracing::refuse(
        window ? qUtf8Printable(QStringLiteral("a dialog is open: \"%1\"").arg(window->objectName))
               : "the property \"Quenor\" is set");
    return false;
}

/// Whether a guard other than that of upgrades drops the release of the key now.
bool isReleaseDropped(Command& owner, quint32 ecKey)
{
    return !passesDialog(owner.isAllowedKeyReleased(quint16(ecKey)))
        || !KeyTracing::ask(Guard::KeypadLock, !isKeypadLocked());
}

/// Notes of a traced key whose it is and what it is for.
void noteOwner(const Command& owner, quint32 ecKey)
{
    ECKeyTrace* const trace = KeyTracing::current();
    if (!trace)
        return;
    trace->owner = owner.name();
    trace->functionCode = quint16(owner.findOrvaneKey(ecKey));
    trace->function = EC::keyFunctionName(trace->owner, trace->functionCode);
}

/// The console's number of a received key value. Logs nothing and leaves the console mode alone.
quint32 CommandManagerPrivate::findKey(quint32 key) const
{
    if (key < Constants::VirtualKeyOffset)
        return key;
    const quint32 orvaneECKey = key - Constants::VirtualKeyOffset;
    const auto owner = findCommandIf(
        [&](const Command& command) { return command.containsECKeyByOrvaneECKey(orvaneECKey); });
    return owner ? owner->getECKeyByOrvaneECKey(orvaneECKey) : Constants::InvalidECKey;
}

/// Puts the key to rest unless its release would still be dropped; false then.
bool CommandManagerPrivate::putToRest(quint32 ecKey) const
{
    const auto owner = findCommand(ecKey);
    if (owner && (isUpgrading() || isReleaseDropped(*owner, ecKey)))
        return false;
    if (owner) {
        const KeyTracing::Event event(ECKeyTrace::Event::Rested);
        KeyTracing::Event::setKey(ecKey, ecKey);
        noteOwner(*owner, ecKey);
        owner->putKeyToRest(ecKey);
    }
    return true;
}

std::shared_ptr<Command> CommandManagerPrivate::findOwner(quint32 key, quint32& ecKey) const
{
    bool isVirtual = false;
    ecKey = m_pCommandMgr->getOperateECKey(key, isVirtual);
    KeyTracing::Event::setKey(key, ecKey);
    auto owner = findCommand(ecKey);
    if (KeyTracing::ask(Guard::Owner, owner != nullptr))
        noteOwner(*owner, ecKey);
    const auto console = ConsoleRequests::installed();
    if (owner && console)
        console->setVirtualConsoleMode(isVirtual);
    return owner;
}

void CommandManagerPrivate::initDeviceECCommandItems()
{
    if (const auto device = activedDevice())
        ECConsoleManager::instance()->initDeviceECCommandItems(device->ipMacSn());
}

void CommandManagerPrivate::connectModel(BizModel::DeviceList* devices)
{
    using DeviceList = BizModel::DeviceList;
    const auto forward = [&](auto signal, auto slot) {
        QObject::connect(devices, signal, m_pCommandMgr, slot);
    };

    forward(&DeviceList::signalActivedDeviceChanged, &CommandManager::slotActivedDeviceChanged);
    forward(&DeviceList::signalDeviceGroupInfoChanged, &CommandManager::slotActivedDeviceChanged);
    forward(&DeviceList::signalDeviceRemoved, &CommandManager::slotDeviceRemoved);
    forward(&DeviceList::signalDeviceIPChanged, &CommandManager::slotDeviceIPChanged);
    forward(&DeviceList::signalSelectedRegularScreensChanged, &CommandManager::slotSelectedScreensChanged);
    forward(&DeviceList::signalScreenIndexChanged, &CommandManager::slotDeviceScreenIndexChanged);
    forward(&DeviceList::signalActivedScreenChanged, &CommandManager::slotActivedScreenChanged);
    forward(&DeviceList::signalScreenAdded, &CommandManager::slotDeviceRegulerScreenAdded);
    forward(&DeviceList::signalScreenMoved, &CommandManager::slotDeviceScreenMoved);
    // Queued, so that a removed screen is handled after the model has finished its own removal.
    QObject::connect(
        devices, &DeviceList::signalScreenRemoved, m_pCommandMgr,
        &CommandManager::slotDeviceRegulerScreenRemoved, Qt::QueuedConnection);
    forward(&DeviceList::signalScreenNameChanged, &CommandManager::slotDeviceScreenBaseNameChanged);
    forward(&DeviceList::signalScreenPGMFreezeChanged, &CommandManager::slotScreenBasePGMFrozenStateChanged);
    forward(&DeviceList::signalScreenFTBChanged, &CommandManager::slotScreenBasePGMFTBStateChanged);
    forward(&DeviceList::signalSwapStateChanged, &CommandManager::slotDeviceSwapStateChanged);
    forward(&DeviceList::signalScreenPGMEditChanged, &CommandManager::slotScreenBasePGMEditStateChanged);
    forward(&DeviceList::signalScreenEffectChanged, &CommandManager::slotScreenEffectChanged);
    forward(&DeviceList::signalLoadToPGMStateChanged, &CommandManager::slotDeviceLoadToPGMStateChanged);
    forward(&DeviceList::signalLayerAdded, &CommandManager::slotDeviceScreenBaseLayerAdded);
    forward(&DeviceList::signalLayerRemoved, &CommandManager::slotDeviceScreenBaseLayerRemoved);
    forward(&DeviceList::signalSelectedLayersChanged, &CommandManager::slotSelectedRegularLayersChanged);
    forward(&DeviceList::signalDeviceScreenLayersChanged, &CommandManager::slotNotifyUpdateLayer);
    forward(&DeviceList::signalLayerNameChanged, &CommandManager::slotLayerNameChanged);
    forward(&DeviceList::signalInterfaceNameChanged, &CommandManager::slotDeviceInputNameChanged);
    forward(&DeviceList::signalInputAdded, &CommandManager::slotDeviceInputAdded);
    forward(&DeviceList::signalInputRemoved, &CommandManager::slotDeviceInputCleared);
    forward(&DeviceList::signalSelectedInputChanged, &CommandManager::slotSelectedInputChanged);
    forward(&DeviceList::signalInputRemoved, &CommandManager::slotDeviceInputRemoved);
    forward(&DeviceList::signalLayerSourceChanged, &CommandManager::slotLayerSourceChanged);
    forward(&DeviceList::signalInterfaceOverLoadChanged, &CommandManager::slotInterfaceOverLoadChanged);
    forward(&DeviceList::signalInterfaceSignalChanged, &CommandManager::slotInterfaceOverLoadChanged);
    forward(&DeviceList::signalConnectorCapacityChanged, &CommandManager::slotInterfaceCapacityChanged);
    forward(&DeviceList::signalPresetAdded, &CommandManager::slotDevicePresetAdded);
    forward(&DeviceList::signalPresetRemoved, &CommandManager::slotDevicePresetRemoved);
    forward(&DeviceList::signalPresetCleared, &CommandManager::slotDeviceDevicePresetCleared);
    forward(&DeviceList::signalNameChanged, &CommandManager::slotPresetNameChanged);
    forward(&DeviceList::signalActivedPresetKeyNoChanged, &CommandManager::slotDevicePresetSelectChanged);
    forward(&DeviceList::signalPresetCovered, &CommandManager::slotDevicePresetCovered);
    forward(&DeviceList::signalKeypadChanged, &CommandManager::slotKeypadChanged);
    forward(&DeviceList::signalFramelessMessageBoxClosed, &CommandManager::slotFramelessMessageBoxClosed);
}

} // namespace Internal

using Internal::CommandManagerPrivate;
using Internal::Guard;
using Internal::isKeypadLocked;

namespace KeyTracing = Internal::KeyTracing;

CommandManager::CommandManager(QObject* parent)
    : QObject(parent)
    , d(new CommandManagerPrivate(this))
{
    Internal::HostState::watch();
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        d->connectModel(devices);
    else
        ecWarning(lcModel, "There is no device list: the console will not follow the application's model.");
    if (const auto console = Internal::ConsoleRequests::installed()) {
        console->followLocks(
            this, [this](bool locked) { slotTbarLocked(locked); },
            [this](bool locked) { slotKeyboardLocked(locked); });
    }
}

CommandManager::~CommandManager()
{
    delete d;
}

void CommandManager::registerCommand(const std::shared_ptr<EC::s_ECKeyboardConfig>& config)
{
    // Each made before the list is locked: a command that sets itself up may call back.
    d->appendCommand(std::make_shared<ScreenCommand>());
    d->appendCommand(std::make_shared<LayerCommand>());
    d->appendCommand(std::make_shared<InputCommand>());
    d->appendCommand(std::make_shared<PresetCommand>());
    d->appendCommand(std::make_shared<NumberCommand>());
    d->appendCommand(std::make_shared<FunctionCommand>());
    const auto furtherActions = d->furtherActions();
    for (const auto& action : furtherActions)
        action();
    if (!config) {
        ecWarning(lcKeys, "The ec keyboard config is empty.");
        return;
    }
    for (const auto& entry : qAsConst(config->m_commands)) {
        if (!entry) {
            ecWarning(lcKeys, "A group of the keyboard configuration is refused: its entry is empty.");
            continue;
        }
        if (const auto command = d->findCommandByName(entry->Name))
            command->setCommandConfig(entry);
        else
            ecWarning(
                lcKeys, "Unkown event controller keyboard command.The command name is %s",
                qUtf8Printable(entry->Name));
    }
    // A device may have been active before the keyboard was known.
    d->initDeviceECCommandItems();
}

quint32 CommandManager::getECKeyByOrvaneECKey(const quint32& orvaneECKey) const
{
    const auto owner = d->findCommandIf(
        [&](const Command& command) { return command.containsECKeyByOrvaneECKey(orvaneECKey); });
    if (!owner) {
        ecWarning(lcKeys, " Can not find operate ECKey . OrvaneKey :%u", orvaneECKey);
        return Constants::InvalidECKey;
    }
    return owner->getECKeyByOrvaneECKey(orvaneECKey);
}

quint32 CommandManager::getOrderIndexByECKey(const quint32& key) const
{
    return getECKeyByOrvaneECKey(key);
}

quint32 CommandManager::getOperateECKey(const quint32& key, bool& isVirtual) const
{
    isVirtual = key >= Constants::VirtualKeyOffset;
    return isVirtual ? getECKeyByOrvaneECKey(key - Constants::VirtualKeyOffset) : key;
}

bool CommandManager::isAlreadyBind(const QString& name, const quint16& key) const
{
    const auto command = d->findCommandByName(name);
    return command && command->isAlreadyBind(key);
}

QString CommandManager::isCommandsContainsKey(const QList<QString>& names, const quint16& key) const
{
    const auto owner = d->findCommandIf([&](const Command& command) {
        return names.contains(command.name()) && command.containsSelectedECButton(key);
    });
    return owner ? owner->name() : QString();
}

std::weak_ptr<Command> CommandManager::presetCommand() const
{
    return d->findCommandByName(Constants::PRESETCOMMANDNAME);
}

int CommandManager::page(const std::string& name) const
{
    const auto command = d->findCommandByName(QString::fromStdString(name));
    return command ? command->page() : 0;
}

void CommandManager::setLoadToPGMStateChanged(const bool& loadToPGM)
{
    d->forEachCommand(&Command::setLoadToPGMStateChanged, loadToPGM);
}

void CommandManager::retranslateUi()
{
    d->forEachCommand(&Command::retranslateUi);
}

void CommandManager::updateKeyboard()
{
    d->forEachCommand(&Command::updateKeyboard);
}

void CommandManager::showFunctionKeyLights()
{
    const auto commands = d->activeCommands();
    for (const auto& command : commands) {
        if (auto* functions = qobject_cast<FunctionCommand*>(command.get()))
            functions->showLights();
    }
}

void CommandManager::showSurface()
{
    d->forEachCommand(&Command::showSurface);
}

bool CommandManager::getVirtualConsoleMode() const
{
    return d->m_bVirtualConsoleMode;
}

void CommandManager::setIsVirtualConsoleMode(bool isVirtual)
{
    d->m_bVirtualConsoleMode = isVirtual;
}

void CommandManager::slotECButtonPressed(const quint32& key)
{
    const KeyTracing::Event event(ECKeyTrace::Event::Pressed);
    if (!KeyTracing::ask(Guard::Upgrade, !Internal::isUpgrading())) {
        KeyTracing::Event::setKey(key, d->findKey(key));
        ecDebug(lcKeys, "Device is upgrading... Ignore key pressed event.");
        return;
    }
    quint32 ecKey = 0;
    const auto owner = d->findOwner(key, ecKey);
    if (!owner) {
        ecWarning(lcKeys, "[locate key no response] couldn't find command binding to key: %u", key);
        return;
    }
    if (!Internal::passesDialog(owner->isAllowedKeyPressed(quint16(ecKey)))) {
        ecWarning(lcKeys, "[locate key no response] now there is an modal window.");
        return;
    }
    if (!KeyTracing::ask(Guard::KeypadLock, !isKeypadLocked() || owner->isLockKeyPadKey(quint16(key)))) {
        ecWarning(lcLock, "[locate key no response] now the keypad is locked.");
        return;
    }
    if (ecKey == key)
        Q_EMIT signalECKeyClicked(owner->isAlreadyBind(quint16(key)), quint16(ecKey));
    d->m_unreleasedKeys.pressed(ecKey);
    owner->slotECButtonPressed(ecKey);
    if (owner->isTakeKeyPressed(ecKey))
        d->forEachCommand(&Command::takeKeyPressed, ecKey);
    if (owner->isCutKeyPressed(ecKey))
        d->forEachCommand(&Command::cutKeyPressed, ecKey);
}

void CommandManager::slotECButtonRelease(const quint32& key)
{
    const KeyTracing::Event event(ECKeyTrace::Event::Released);
    if (!KeyTracing::ask(Guard::Upgrade, !Internal::isUpgrading())) {
        const quint32 ecKey = d->findKey(key);
        KeyTracing::Event::setKey(key, ecKey);
        ecDebug(lcKeys, "Device is upgrading... Ignore key release event.");
        d->m_unreleasedKeys.releaseDropped(ecKey);
        return;
    }
    quint32 ecKey = 0;
    const auto owner = d->findOwner(key, ecKey);
    if (!owner)
        return;
    if (Internal::isReleaseDropped(*owner, ecKey)) {
        d->m_unreleasedKeys.releaseDropped(ecKey);
        return;
    }
    d->m_unreleasedKeys.released(ecKey);
    owner->slotECButtonRelease(ecKey);
}

void CommandManager::slotECTBarChanged(const ECTBarValue& value)
{
    if (Internal::isUpgrading()) {
        ecDebug(lcTBar, "Device is upgrading... Ignore key pressed event.");
        return;
    }
    if (const auto window = Internal::HostState::modalWindow()) {
        ecWarning(
            lcTBar, "T-Bar ignored :Console Event has waiting window, pos:(%d,%d),obiject name:%s",
            window->pos.x(), window->pos.y(), qUtf8Printable(window->objectName));
        if (window->childName)
            ecDebug(lcTBar, "Object name:%s", qUtf8Printable(*window->childName));
        if (window->childParentName)
            ecDebug(lcTBar, "Parent name:%s", qUtf8Printable(*window->childParentName));
        return;
    }
    if (Internal::HostState::isQuenor()) {
        ecWarning(lcTBar, "T-Bar ignored: property Quenor is true");
        return;
    }
    if (isKeypadLocked()) {
        ecWarning(lcLock, "T-Bar ignored :Console Event screen locked...");
        return;
    }
    d->forEachCommand(&Command::slotECTBarChanged, value);
}

void CommandManager::slotActivedDeviceChanged()
{
    d->initDeviceECCommandItems();
    d->forEachCommand(&Command::slotActivedDeviceChanged);
}

void CommandManager::slotDeviceIPChanged(WeakDevice weakDevice)
{
    const auto device = weakDevice.lock();
    if (!device) {
        ecWarning(lcModel, " Device is nullptr, can not change ec command items.");
        return;
    }
    ECConsoleManager::instance()->updateECCommandItems(device->preIPMacSn(), device->ipMacSn());
}

void CommandManager::slotDeviceRemoved(DevicePtr device)
{
    d->forEachCommand(&Command::slotDeviceRemoved, device);
    // No command needs them any more. Should the device come back, it gets new ones.
    if (device)
        ECConsoleManager::instance()->removeDeviceEcCommandItems(device->ipMacSn());
}

void CommandManager::slotSelectedScreensChanged(WeakDevice device)
{
    d->forEachCommand(&Command::slotSelectedScreensChanged, device);
}

void CommandManager::slotDeviceScreenIndexChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotDeviceScreenIndexChanged, device, screen);
}

void CommandManager::slotActivedScreenChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotActivedScreenChanged, device, screen);
}

void CommandManager::slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotDeviceRegulerScreenAdded, device, screen);
}

void CommandManager::slotDeviceScreenMoved(WeakDevice device, WeakScreen screen, WeakScreen other)
{
    d->forEachCommand(&Command::slotDeviceScreenMoved, device, screen, other);
}

void CommandManager::slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen)
{
    d->forEachCommand(&Command::slotDeviceRegulerScreenRemoved, device, screen);
}

void CommandManager::slotDeviceScreenBaseNameChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotDeviceScreenBaseNameChanged, device, screen);
}

void CommandManager::slotScreenBasePGMFrozenStateChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotScreenBasePGMFrozenStateChanged, device, screen);
}

void CommandManager::slotScreenBasePGMFTBStateChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotScreenBasePGMFTBStateChanged, device, screen);
}

void CommandManager::slotDeviceSwapStateChanged(WeakDevice device)
{
    d->forEachCommand(&Command::slotDeviceSwapStateChanged, device);
}

void CommandManager::slotScreenBasePGMEditStateChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotScreenBasePGMEditStateChanged, device, screen);
}

void CommandManager::slotScreenEffectChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotScreenEffectChanged, device, screen);
}

void CommandManager::slotTbarLocked(bool locked)
{
    d->forEachCommand(&Command::slotTbarLocked, locked);
}

void CommandManager::slotKeyboardLocked(bool locked)
{
    d->forEachCommand(&Command::slotKeyboardLocked, locked);
}

void CommandManager::slotDeviceLoadToPGMStateChanged(WeakDevice device)
{
    d->forEachCommand(&Command::slotDeviceLoadToPGMStateChanged, device);
}

void CommandManager::slotDeviceScreenBaseLayerAdded(WeakDevice device, WeakScreen screen, WeakLayer layer)
{
    d->forEachCommand(&Command::slotDeviceScreenBaseLayerAdded, device, screen, layer);
}

void CommandManager::slotDeviceScreenBaseLayerRemoved(WeakDevice device, WeakScreen screen, LayerPtr layer)
{
    d->forEachCommand(&Command::slotDeviceScreenBaseLayerRemoved, device, screen, layer);
}

void CommandManager::slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen)
{
    d->forEachCommand(&Command::slotSelectedRegularLayersChanged, device, screen);
}

void CommandManager::slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type)
{
    d->forEachCommand(&Command::slotNotifyUpdateLayer, screens, type);
}

void CommandManager::slotLayerNameChanged(WeakDevice device, WeakScreen screen, WeakLayer layer)
{
    d->forEachCommand(&Command::slotLayerNameChanged, device, screen, layer);
}

void CommandManager::slotDeviceInputNameChanged(WeakDevice device, WeakInterface interface)
{
    d->forEachCommand(&Command::slotDeviceInputNameChanged, device, interface);
}

void CommandManager::slotDeviceInputAdded(WeakDevice device, WeakInput input)
{
    d->forEachCommand(&Command::slotDeviceInputAdded, device, input);
}

void CommandManager::slotDeviceInputCleared(WeakDevice device)
{
    d->forEachCommand(&Command::slotDeviceInputCleared, device);
}

void CommandManager::slotSelectedInputChanged(WeakDevice device)
{
    d->forEachCommand(&Command::slotSelectedInputChanged, device);
}

void CommandManager::slotDeviceInputRemoved(WeakDevice device, InputPtr input)
{
    d->forEachCommand(&Command::slotDeviceInputRemoved, device, input);
}

void CommandManager::slotLayerSourceChanged(WeakDevice device, WeakScreen screen, WeakLayer layer)
{
    d->forEachCommand(&Command::slotLayerSourceChanged, device, screen, layer);
}

void CommandManager::slotInterfaceOverLoadChanged(WeakDevice device, WeakInterface interface)
{
    d->forEachCommand(&Command::slotInterfaceOverLoadChanged, device, interface);
}

void CommandManager::slotInterfaceCapacityChanged(
    WeakDevice device, WeakSubcard subcard, WeakConnector connector)
{
    d->forEachCommand(&Command::slotInterfaceCapacityChanged, device, subcard, connector);
}

void CommandManager::slotDevicePresetAdded(WeakDevice device, WeakPreset preset)
{
    d->forEachCommand(&Command::slotDevicePresetAdded, device, preset);
}

void CommandManager::slotDevicePresetRemoved(WeakDevice device, PresetPtr preset)
{
    d->forEachCommand(&Command::slotDevicePresetRemoved, device, preset);
}

void CommandManager::slotDeviceDevicePresetCleared(WeakDevice device)
{
    d->forEachCommand(&Command::slotDeviceDevicePresetCleared, device);
}

void CommandManager::slotPresetNameChanged(WeakDevice device, WeakFile file)
{
    d->forEachCommand(&Command::slotPresetNameChanged, device, file);
}

void CommandManager::slotDevicePresetSelectChanged(WeakDevice device)
{
    d->forEachCommand(&Command::slotDevicePresetSelectChanged, device);
}

void CommandManager::slotDevicePresetCovered(WeakDevice device, WeakPreset preset)
{
    d->forEachCommand(&Command::slotDevicePresetCovered, device, preset);
}

void CommandManager::slotKeypadChanged(WeakDevice, WeakFile)
{
    d->forEachCommand(&Command::slotKeypadChanged);
}

void CommandManager::slotFramelessMessageBoxClosed(QMessageBox::StandardButton button)
{
    d->forEachCommand(&Command::slotFramelessMessageBoxClosed, button);
}

void CommandManager::slotDVISignalChanged(QMap<int, bool> signalOfInput)
{
    d->forEachCommand(&Command::slotDVISignalChanged, signalOfInput);
}

} // namespace Orvane::ECProxy::Client

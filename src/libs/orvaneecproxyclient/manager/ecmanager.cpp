#include "ecmanager.h"

#include "bizmodel/device.h"
#include "command.h"
#include "commandmanager.h"
#include "ecmanager_p.h"
#include "keytracing_p.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "modelparts.h"
#include "orvaneecclientdecoder.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QSettings>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

namespace Orvane::ECProxy::Client {

namespace Internal {

using Guard = ECKeyTrace::Guard;

ECManagerPrivate::ECManagerPrivate(ECManager* manager)
    : m_pECMgr(manager)
{
    const auto handle = [this](bool (ECManagerPrivate::*handler)(const QByteArray&)) {
        return [this, handler](const QByteArray& value) { return (this->*handler)(value); };
    };
    m_messageTagForDecodeCB = {
        {ReportECButtonPressed, handle(&ECManagerPrivate::onButtonPressed)},
        {ReportECButtonRelease, handle(&ECManagerPrivate::onButtonRelease)},
        {ReportECTBarValue, handle(&ECManagerPrivate::onTBarValue)},
        {ReportLockedTBar, handle(&ECManagerPrivate::onLockedTBar)},
        {ReportLockedKeyboard, handle(&ECManagerPrivate::onLockedKeyboard)},
        {ReportDVIInSignal, handle(&ECManagerPrivate::onDVIInSignal)},
        {ReportECDeviceIP, handle(&ECManagerPrivate::onDeviceIP)},
    };
}

/// Each click is queued to the GUI thread and wakes it, so that is done only once somebody listens. Called by
/// `init()` and by whoever connects, in any order and on any thread.
void ECManagerPrivate::forwardClicks() const
{
    if (const auto commands = commandManager())
        QObject::connect(
            commands.get(), &CommandManager::signalECKeyClicked, m_pECMgr, &ECManager::signalECKeyClicked,
            Qt::UniqueConnection);
}

void ECManagerPrivate::send(const QByteArray& datagram) const
{
    const std::shared_ptr<const Routes> routes = sendRoutes();
    KeyTracing::addSent(datagram);
    for (const auto& route : *routes)
        route.send(datagram);
}

bool ECManagerPrivate::onButtonPressed(const QByteArray& value)
{
    const KeyTracing::Event event(ECKeyTrace::Event::Pressed, value);
    if (!KeyTracing::ask(Guard::Report, value.size() == int(sizeof(ECButtonOperState)))) {
        ecWarning(lcCodec, "[locate key no response] tlv's length mismatches");
        return false;
    }
    const auto commands = commandManager();
    if (!KeyTracing::ask(Guard::Keyboard, commands != nullptr))
        return false;
    commands->slotECButtonPressed(Wire::readButtonOperState(value.constData()).ButtonKey);
    return true;
}

bool ECManagerPrivate::onButtonRelease(const QByteArray& value)
{
    const KeyTracing::Event event(ECKeyTrace::Event::Released, value);
    const auto commands = commandManager();
    if (!KeyTracing::ask(Guard::Report, value.size() == int(sizeof(ECButtonOperState)))
        || !KeyTracing::ask(Guard::Keyboard, commands != nullptr))
        return false;
    commands->slotECButtonRelease(Wire::readButtonOperState(value.constData()).ButtonKey);
    return true;
}

bool ECManagerPrivate::onTBarValue(const QByteArray& value)
{
    const auto commands = commandManager();
    if (value.size() != int(sizeof(ECTBarValue)) || !commands)
        return false;
    commands->slotECTBarChanged(Wire::readTBarValue(value.constData()));
    return true;
}

bool ECManagerPrivate::onLockedTBar(const QByteArray& value)
{
    const auto commands = commandManager();
    if (value.size() != int(sizeof(TBarLocked)) || !commands)
        return false;
    commands->slotTbarLocked(value.at(0) != 0);
    return true;
}

bool ECManagerPrivate::onLockedKeyboard(const QByteArray& value)
{
    const auto commands = commandManager();
    if (value.size() != int(sizeof(KeyboardLocked)) || !commands)
        return false;
    commands->slotKeyboardLocked(value.at(0) != 0);
    return true;
}

bool ECManagerPrivate::onDVIInSignal(const QByteArray& value)
{
    constexpr int recordSize = sizeof(DVIInSignal);
    if (value.size() % recordSize != 0) {
        ecWarning(
            lcCodec, "recv DVI signal data error. DVIInSignalLength: %d  tlBody size :%d", recordSize,
            value.size());
        return false;
    }
    QMap<int, bool> signalOfInput;
    for (int offset = 0; offset < value.size(); offset += recordSize) {
        const DVIInSignal record = Wire::readDVIInSignal(value.constData() + offset);
        signalOfInput[record.Index] = record.Signal != 0;
        m_pECMgr->updateDVISignalStatus(record);
    }
    {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        m_dviSignal = signalOfInput;
    }
    if (const auto commands = commandManager())
        commands->slotDVISignalChanged(signalOfInput);
    return true;
}

bool ECManagerPrivate::onDeviceIP(const QByteArray& value)
{
    if (value.size() != int(sizeof(ECDeviceIPData)))
        return false;
    m_pECMgr->resECDeviceIP(Wire::readDeviceIPData(value.constData()));
    return true;
}

namespace {

/// A panel light in the user's settings.
struct LightRow {
    eY2LightType light;
    const char* statusKey;
    const char* brightnessKey; ///< null: the brightness is fixed
    quint8 brightness; ///< without settings, or fixed
};
constexpr LightRow LightRows[] = {
    {Gooseneck, "grooseneckStatus", "grooseneckValue", 10},
    {Front, "frontStatus", "frontValue", 10},
    {Logo, "logoStatus", nullptr, 15},
};
constexpr int DefaultLuminance = 100;

/// A setting in per cent. The user may have edited the file: a value outside the range is clamped.
quint8 percentOf(const QSettings& settings, const char* key, int defaultValue = 0)
{
    constexpr int highest = 100;
    const QVariant setting = settings.value(QLatin1String(key), defaultValue);
    bool isNumber = false;
    const int value = setting.toInt(&isNumber);
    const int percent = std::clamp(value, 0, highest);
    if (!isNumber || percent != value)
        ecWarning(
            lcPaint, "Console lights: \"%s\" is %s in the settings, not 0 to %d: %d is taken.", key,
            qUtf8Printable(setting.toString()), highest, percent);
    return quint8(percent);
}

std::once_flag s_instanceOnce;
std::atomic<ECManager*> s_pInstance{nullptr};

} // namespace

} // namespace Internal

using Internal::ECManagerPrivate;

ECManager::ECManager()
    : d(std::make_unique<ECManagerPrivate>(this))
{
    // The first caller may be any thread; the manager's slots belong to the application's.
    if (QCoreApplication::instance() && thread() != QCoreApplication::instance()->thread())
        moveToThread(QCoreApplication::instance()->thread());
    Internal::ConsoleRequests::install(*d);
}

ECManager::~ECManager()
{
    // From here on no command may begin a request.
    Internal::ConsoleRequests::withdraw();
    // The commands first: a held key's timer may just be using the rest.
    std::shared_ptr<CommandManager> commands;
    {
        const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
        commands.swap(d->m_pCommandMgr);
    }
}

ECManager* ECManager::instance()
{
    std::call_once(Internal::s_instanceOnce, [] { Internal::s_pInstance = new ECManager; });
    return Internal::s_pInstance;
}

void ECManager::deleteInstance()
{
    delete Internal::s_pInstance.exchange(nullptr);
}

bool ECManager::init(const std::shared_ptr<Orvane::EC::s_ECKeyboardConfig>& config)
{
    std::shared_ptr<CommandManager> commands = d->commandManager();
    if (!commands)
        commands = std::make_shared<CommandManager>(nullptr);
    {
        // Set-up calls back into this object, so the command manager is known before it registers.
        const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
        d->m_pECKeyboardCfg = config;
        d->m_pCommandMgr = commands;
    }
    ModelParts::logSummary();
    commands->registerCommand(config);
    if (isSignalConnected(QMetaMethod::fromSignal(&ECManager::signalECKeyClicked)))
        d->forwardClicks();
    return true;
}

void ECManager::connectNotify(const QMetaMethod& signal)
{
    if (signal == QMetaMethod::fromSignal(&ECManager::signalECKeyClicked))
        d->forwardClicks();
}

bool ECManager::uninit()
{
    return true;
}

bool ECManager::initPresetCmdEx(const std::shared_ptr<Orvane::EC::s_ECKeyboardConfig>&)
{
    return false;
}

void ECManager::addSendDownTLVRequstCB(const SendDownTLVRequestCallbackType& callback)
{
    addSendRoute(callback);
}

int ECManager::addSendRoute(const SendDownTLVRequestCallbackType& callback)
{
    if (!callback) {
        ecWarning(lcLink, "An empty send route was refused.");
        return 0;
    }
    std::shared_ptr<const ECManagerPrivate::Routes> former; // destroyed after the lock is released
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    auto routes = std::make_shared<ECManagerPrivate::Routes>(*d->m_sendTLVReqCBs);
    routes->push_back({++d->m_nLastRoute, callback});
    former = std::exchange(d->m_sendTLVReqCBs, routes);
    return d->m_nLastRoute;
}

bool ECManager::removeSendRoute(int id)
{
    std::shared_ptr<const ECManagerPrivate::Routes>
        former; // destroyed, with the route, after the lock is released
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    auto routes = std::make_shared<ECManagerPrivate::Routes>(*d->m_sendTLVReqCBs);
    const auto found =
        std::find_if(routes->begin(), routes->end(), [id](const ECManagerPrivate::Route& route) {
            return route.id == id;
        });
    if (found == routes->end())
        return false;
    routes->erase(found);
    former = std::exchange(d->m_sendTLVReqCBs, routes);
    return true;
}

void ECManager::setECClientDecoder(const std::weak_ptr<ECClientDecoder>& decoder)
{
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    d->m_pClientDecoder = decoder;
}

std::weak_ptr<ECClientDecoder> ECManager::ecClientDecoder() const
{
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    return d->m_pClientDecoder;
}

void ECManager::setDeviceConfigFilePath(const QString& path)
{
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    d->m_strDeviceConfigFilePath = path;
}

QString ECManager::getDeviceConfigFilePath() const
{
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    return d->m_strDeviceConfigFilePath;
}

bool ECManager::upTLVDecodeFinished(const eECUpMessageTag& tag, const QByteArray& value)
{
    const auto handler = d->m_messageTagForDecodeCB.constFind(tag);
    return handler != d->m_messageTagForDecodeCB.constEnd() && (*handler)(value);
}

bool ECManager::getVirtualConsoleMode() const
{
    const auto commands = d->commandManager();
    return commands && commands->getVirtualConsoleMode();
}

void ECManager::setIsVirtualConsoleMode(bool isVirtual)
{
    if (const auto commands = d->commandManager())
        commands->setIsVirtualConsoleMode(isVirtual);
}

bool ECManager::isAlreadyBind(const QString& commandName, const unsigned short& ecKey) const
{
    const auto commands = d->commandManager();
    return commands && commands->isAlreadyBind(commandName, ecKey);
}

int ECManager::page(const std::string& commandName) const
{
    const auto commands = d->commandManager();
    return commands ? commands->page(commandName) : 0;
}

std::weak_ptr<Command> ECManager::presetCommand() const
{
    const auto commands = d->commandManager();
    return commands ? commands->presetCommand() : std::weak_ptr<Command>();
}

void ECManager::retranslateUi()
{
    if (const auto commands = d->commandManager())
        commands->retranslateUi();
}

void ECManager::slotOrvanePluginModeChanged()
{
    if (const auto commands = d->commandManager())
        commands->updateKeyboard();
}

void ECManager::showFunctionKeyLights()
{
    if (const auto commands = d->commandManager())
        commands->showFunctionKeyLights();
}

void ECManager::getOpenPGMPrompt(const bool& loadToPGM)
{
    if (const auto commands = d->commandManager())
        commands->setLoadToPGMStateChanged(loadToPGM);
}

bool ECManager::getECKeyByOrvaneECKey(const unsigned int& orvaneECKey, unsigned int& out) const
{
    const auto commands = d->commandManager();
    if (!commands)
        return false;
    out = commands->getECKeyByOrvaneECKey(orvaneECKey);
    return true;
}

bool ECManager::getOrderIndexByECKey(const unsigned int& key, unsigned int& out) const
{
    return getECKeyByOrvaneECKey(key, out);
}

bool ECManager::isLockedTBar() const
{
    return d->m_bLockTbar.value();
}

bool ECManager::isLockedKeypad() const
{
    return d->m_bLockPanel.value();
}

DVISource ECManager::getCurrentSource() const
{
    return d->m_curSource.value();
}

bool ECManager::echoVideoSignal() const
{
    return false;
}

void ECManager::modifyTimeType(int type)
{
    Q_EMIT signalTimeTypeChanged(type);
}

void ECManager::setOpenPGMPrompt()
{
    Q_EMIT signalOpenPGMPrompt();
}

void ECManager::clearAllOledText() { }

void ECManager::updateECConsoleLight()
{
    const QSettings settings(
        QSettings::IniFormat, QSettings::UserScope, QStringLiteral("KORVELIN"),
        QStringLiteral("orvaneeckeyboardy2"));
    for (const auto& row : Internal::LightRows) {
        const QVariant status = settings.value(QLatin1String(row.statusKey));
        auto light = std::make_shared<LightControl>();
        light->LightType = row.light;
        light->IsEnabled = status.isValid() ? status.toBool() : true;
        light->Brightness = status.isValid() && row.brightnessKey
            ? Internal::percentOf(settings, row.brightnessKey)
            : row.brightness;
        updateLightControlState(light);
    }

    auto luminance = std::make_shared<ScreenLuminance>();
    luminance->Brightness = Internal::percentOf(settings, "screenValue", Internal::DefaultLuminance);
    updatepScreenLuminance(luminance);

    const QVariant timeType = settings.value(QStringLiteral("timeDiaplay"));
    if (timeType.isValid())
        Q_EMIT signalTimeTypeChanged(timeType.toInt());
}

void ECManager::updateECConsolePluginSettings()
{
    const auto device = Internal::activedDevice();
    controlPeripheralState(device && device->consolePlugin());
}

} // namespace Orvane::ECProxy::Client

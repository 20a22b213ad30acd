#include "ecmanager.h"

#include "bizmodel/device.h"
#include "command.h"
#include "commandmanager.h"
#include "modelaccess_p.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientencoder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSettings>
#include <QThread>

#include <atomic>
#include <mutex>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

class ECManagerPrivate {
public:
    using Routes = std::vector<ECManager::SendDownTLVRequestCallbackType>;
    using UpHandler = std::function<bool(const QByteArray&)>;

    explicit ECManagerPrivate(ECManager* manager);

    std::shared_ptr<CommandManager> commandManager() const
    {
        const std::lock_guard<std::mutex> lock(m_wiringMutex);
        return m_pCommandMgr;
    }

    bool hasSendRoute() const { return !sendRoutes()->empty(); }
    void send(const QByteArray& datagram) const;

    /// Builds one datagram and hands it to every route. False, with nothing sent, when there is no route
    /// (then nothing is built either) and when the encoder was given no record, of which it tells itself.
    template <typename Build> bool request(Build build)
    {
        const std::shared_ptr<const Routes> routes = sendRoutes();
        if (routes->empty())
            return false;
        QByteArray datagram;
        build(*m_pECClientEncoder, datagram);
        if (datagram.isEmpty())
            return false;
        for (const auto& route : *routes)
            route(datagram);
        return true;
    }

    bool onButtonPressed(const QByteArray& value);
    bool onButtonRelease(const QByteArray& value);
    bool onTBarValue(const QByteArray& value);
    bool onLockedTBar(const QByteArray& value);
    bool onLockedKeyboard(const QByteArray& value);
    bool onDVIInSignal(const QByteArray& value);
    bool onDeviceIP(const QByteArray& value);

    void restoreLight(const QSettings& settings, eY2LightType light);

    ECManager* const m_pECMgr;
    const std::shared_ptr<ECClientEncoder> m_pECClientEncoder = std::make_shared<ECClientEncoder>();
    /// Filled by the constructor and only read after it.
    QMap<eECUpMessageTag, UpHandler> m_messageTagForDecodeCB;

    // m_wiringMutex guards m_pCommandMgr, m_pECKeyboardCfg, m_sendTLVReqCBs, m_pClientDecoder and
    // m_strDeviceConfigFilePath. The list of routes itself never changes: adding one replaces it.
    mutable std::mutex m_wiringMutex;
    std::shared_ptr<CommandManager> m_pCommandMgr;
    std::shared_ptr<Orvane::EC::s_ECKeyboardConfig> m_pECKeyboardCfg;
    std::shared_ptr<const Routes> m_sendTLVReqCBs = std::make_shared<const Routes>();
    std::weak_ptr<ECClientDecoder> m_pClientDecoder;
    QString m_strDeviceConfigFilePath;

    // m_recordMutex guards m_dviSignal and m_ecDeviceIPData.
    std::mutex m_recordMutex;
    QMap<int, bool> m_dviSignal;
    QMap<int, ECDeviceIPData> m_ecDeviceIPData;

    std::atomic<DVISource> m_curSource{dvi1};
    std::atomic<bool> m_bLockPanel{false};
    std::atomic<bool> m_bLockTbar{false};

private:
    std::shared_ptr<const Routes> sendRoutes() const
    {
        const std::lock_guard<std::mutex> lock(m_wiringMutex);
        return m_sendTLVReqCBs;
    }
};

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

void ECManagerPrivate::send(const QByteArray& datagram) const
{
    const std::shared_ptr<const Routes> routes = sendRoutes();
    for (const auto& route : *routes)
        route(datagram);
}

bool ECManagerPrivate::onButtonPressed(const QByteArray& value)
{
    if (value.size() != int(sizeof(ECButtonOperState))) {
        qWarning("[locate key no response] tlv's length mismatches");
        return false;
    }
    const auto commands = commandManager();
    if (!commands)
        return false;
    commands->slotECButtonPressed(Wire::readButtonOperState(value.constData()).ButtonKey);
    return true;
}

bool ECManagerPrivate::onButtonRelease(const QByteArray& value)
{
    const auto commands = commandManager();
    if (value.size() != int(sizeof(ECButtonOperState)) || !commands)
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
        qWarning(
            "recv DVI signal data error. DVIInSignalLength: %d  tlBody size :%d", recordSize, value.size());
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

constexpr quint8 DefaultLightBrightness = 10;
constexpr quint8 LogoBrightness = 15;
constexpr int DefaultLuminance = 100;

/// Reads a file whole, with its name for the console; false, with the reason logged, when that fails.
bool readFile(const QString& path, QByteArray& bytes, QString& name)
{
    QFile file(path);
    if (!file.exists()) {
        qWarning("File path does not exist.");
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qWarning("File can not open.");
        return false;
    }
    bytes = file.readAll();
    // The console would take a part of the file for the whole.
    if (file.error() != QFileDevice::NoError || bytes.size() < file.size()) {
        qWarning("File can not be read whole: %s", qUtf8Printable(file.errorString()));
        return false;
    }
    name = QFileInfo(path).fileName();
    return true;
}

std::once_flag s_instanceOnce;
std::atomic<ECManager*> s_pInstance{nullptr};

} // namespace

void ECManagerPrivate::restoreLight(const QSettings& settings, eY2LightType light)
{
    struct Keys {
        const char* status;
        const char* value; ///< null: the brightness is fixed
        quint8 defaultBrightness;
    };
    static const QMap<eY2LightType, Keys> keysOfLight{
        {Gooseneck, {"grooseneckStatus", "grooseneckValue", DefaultLightBrightness}},
        {Front, {"frontStatus", "frontValue", DefaultLightBrightness}},
        {Logo, {"logoStatus", nullptr, LogoBrightness}},
    };
    const Keys keys = keysOfLight.value(light);
    const QVariant status = settings.value(QLatin1String(keys.status));
    auto request = std::make_shared<LightControl>();
    request->LightType = light;
    request->IsEnabled = status.isValid() ? status.toBool() : true;
    request->Brightness = status.isValid() && keys.value
        ? quint8(settings.value(QLatin1String(keys.value)).toInt())
        : keys.defaultBrightness;
    m_pECMgr->updateLightControlState(request);
}

} // namespace Internal

using Internal::ECManagerPrivate;

ECManager::ECManager()
    : d(new ECManagerPrivate(this))
{
    // The first caller may be any thread; the manager's slots belong to the application's.
    if (QCoreApplication::instance() && thread() != QCoreApplication::instance()->thread())
        moveToThread(QCoreApplication::instance()->thread());
}

ECManager::~ECManager()
{
    // The commands first: a held key's timer may just be using the rest.
    std::shared_ptr<CommandManager> commands;
    {
        const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
        commands.swap(d->m_pCommandMgr);
    }
    commands.reset();
    delete d;
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
    commands->registerCommand(config);
    connect(
        commands.get(), &CommandManager::signalECKeyClicked, this, &ECManager::signalECKeyClicked,
        Qt::UniqueConnection);
    return true;
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
    if (!callback) {
        qWarning("An empty send route was refused.");
        return;
    }
    const std::lock_guard<std::mutex> lock(d->m_wiringMutex);
    auto routes = std::make_shared<ECManagerPrivate::Routes>(*d->m_sendTLVReqCBs);
    routes->push_back(callback);
    d->m_sendTLVReqCBs = routes;
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
    return d->m_bLockTbar;
}

bool ECManager::isLockedKeypad() const
{
    return d->m_bLockPanel;
}

DVISource ECManager::getCurrentSource() const
{
    return d->m_curSource;
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
    for (const eY2LightType light : {Gooseneck, Front, Logo})
        d->restoreLight(settings, light);

    auto luminance = std::make_shared<ScreenLuminance>();
    luminance->Brightness =
        quint8(settings.value(QStringLiteral("screenValue"), Internal::DefaultLuminance).toInt());
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

void ECManager::updateECButtonColor(const std::shared_ptr<ECButtonColor>& color)
{
    d->request(
        [&](ECClientEncoder& encoder, QByteArray& out) { encoder.getECButtonColorRequest(color, out); });
}

void ECManager::updateECOledText(const std::shared_ptr<ECOLEDText>& text)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getECOledTextRequest(text, out); });
}

void ECManager::updateECButtonColor(
    const std::shared_ptr<ECButtonColor>& color, const std::shared_ptr<ECOLEDText>& text)
{
    updateECButtonColor(color);
    updateECOledText(text);
}

void ECManager::updateTBarValue(const std::shared_ptr<ECTBarValue>& value)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getECTBarValueRequest(value, out); });
}

void ECManager::lockTBar()
{
    if (d->request([](ECClientEncoder& encoder, QByteArray& out) { encoder.getLockTBarRequest(out); }))
        d->m_bLockTbar = true;
}

void ECManager::unlockTBar()
{
    if (d->request([](ECClientEncoder& encoder, QByteArray& out) { encoder.getUnlockTBarRequest(out); }))
        d->m_bLockTbar = false;
}

void ECManager::lockKeypad()
{
    if (d->request([](ECClientEncoder& encoder, QByteArray& out) { encoder.getLockKeyboardRequest(out); }))
        d->m_bLockPanel = true;
}

void ECManager::unlockKeypad()
{
    if (d->request(
            [](ECClientEncoder& encoder, QByteArray& out) { encoder.getUnlockedKeyboardRequest(out); }))
        d->m_bLockPanel = false;
}

bool ECManager::dviInSignal(const int& index)
{
    if (!d->request(
            [&](ECClientEncoder& encoder, QByteArray& out) { encoder.getDVIInSignalRequest(index, out); }))
        return false;
    const std::lock_guard<std::mutex> lock(d->m_recordMutex);
    return d->m_dviSignal[index];
}

void ECManager::updateLightControlState(const std::shared_ptr<LightControl>& light)
{
    d->request(
        [&](ECClientEncoder& encoder, QByteArray& out) { encoder.getCloseAllButtonLEDRequest(light, out); });
}

void ECManager::closeAllButtonLED()
{
    constexpr quint8 everyKey = 255;
    auto color = std::make_shared<ECButtonColor>();
    color->ButtonKey = everyKey;
    color->ECKey = everyKey;
    color->ButtonState = CloseAllLight;
    updateECButtonColor(color);
}

void ECManager::updatepScreenLuminance(const std::shared_ptr<ScreenLuminance>& luminance)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) {
        encoder.getScreenLuminanceRequest(luminance, out);
    });
}

void ECManager::updateSetPeripheralDataChange(const std::shared_ptr<PeripheralControl>& peripheral)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) {
        encoder.getPeripheralControlRequest(peripheral, out);
    });
}

void ECManager::switchSource(DVISource source)
{
    MVRSignalControl control;
    control.SignalIndex = source;
    if (d->request(
            [&](ECClientEncoder& encoder, QByteArray& out) { encoder.getSwitchSourceRequest(control, out); }))
        d->m_curSource = source;
}

void ECManager::updateSystemTime(const QString& date, const QString& time)
{
    const QString text = QString(date).replace(QLatin1Char('-'), QLatin1Char(':')) + QLatin1Char(' ') + time;
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getUpdateSystemTime(text, out); });
}

void ECManager::updateSystemIP(
    const QString& first, const QString& second, const QString& third, const QString& fourth)
{
    const QString text = QStringList{first, second, third, fourth}.join(QLatin1Char('@'));
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getUpdateSystemIP(text, out); });
}

void ECManager::reqECDeviceIP(unsigned char index)
{
    if (!d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getReqECDeviceIP(index, out); }))
        return;
    ECDeviceIPData held;
    {
        const std::lock_guard<std::mutex> lock(d->m_recordMutex);
        held = d->m_ecDeviceIPData[index];
    }
    resECDeviceIP(held);
}

void ECManager::resECDeviceIP(const ECDeviceIPData& data)
{
    QByteArray record(sizeof(ECDeviceIPData), '\0');
    Wire::write(data, record.data());
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getResECDeviceIP(record, out); });
}

void ECManager::restartEventController(unsigned char value)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getRestartConsolePack(value, out); });
}

void ECManager::startKeyboardMouseEventListen()
{
    d->request(
        [](ECClientEncoder& encoder, QByteArray& out) { encoder.getKeyboardMouseEventListenReq(true, out); });
}

void ECManager::stopKeyboardMouseEventListen()
{
    d->request([](ECClientEncoder& encoder, QByteArray& out) {
        encoder.getKeyboardMouseEventListenReq(false, out);
    });
}

void ECManager::updateDVISignalStatus(DVIInSignal signal)
{
    const auto record = std::make_shared<DVIInSignal>(signal);
    d->request([&](ECClientEncoder& encoder, QByteArray& out) {
        encoder.getUpdateDVISignalStatusPack(record, out);
    });
}

void ECManager::resetMCU(unsigned char value)
{
    d->request([&](ECClientEncoder& encoder, QByteArray& out) { encoder.getRestartMCUPack(value, out); });
}

void ECManager::setIPMode(unsigned char index, unsigned char mode)
{
    ECDeviceIPModeData data;
    data.Index = index;
    data.Mode = mode;
    QByteArray record(sizeof(ECDeviceIPModeData), '\0');
    Wire::write(data, record.data());
    d->request(
        [&](ECClientEncoder& encoder, QByteArray& out) { encoder.getChangeIPModeRequestPack(record, out); });
}

void ECManager::controlPeripheralState(bool visible)
{
    const auto state = std::make_shared<PeripheralControlVisibleState>();
    state->visible = visible ? 1 : 0;
    d->request([&](ECClientEncoder& encoder, QByteArray& out) {
        encoder.getControlPeripheralStateRequest(state, out);
    });
}

bool ECManager::sendFile(
    const QString& path, eFlieOperType operation, eFlieType fileType, unsigned short packSize, bool)
{
    if (!d->hasSendRoute())
        return false;
    QByteArray bytes;
    QString name;
    if (!Internal::readFile(path, bytes, name))
        return false;

    // The count is the protocol's 16-bit field: a file too large for it wraps, and a count of 0 sends
    // nothing.
    const auto packCount = quint16((packSize == 0 ? 0 : bytes.size() / packSize) + 1);
    for (quint32 index = 0; index < packCount; ++index) {
        const QByteArray chunk = bytes.mid(int(index * packSize), packSize);
        // The builders' answers say nothing; an array left empty is handed on as it is.
        QByteArray datagram;
        if (index == 0) {
            d->m_pECClientEncoder->getFileOperateFirstPackRequest(
                operation, 0, packCount, fileType, quint32(bytes.size()), 0, quint16(name.size()), name,
                chunk, datagram);
        } else {
            d->m_pECClientEncoder->getFileOperateRequest(
                operation, quint16(index), packCount, chunk, datagram);
        }
        d->send(datagram);
    }
    return true;
}

} // namespace Orvane::ECProxy::Client

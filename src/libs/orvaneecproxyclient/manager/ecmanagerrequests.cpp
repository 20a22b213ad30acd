#include "ecmanager_p.h"

#include "log_p.h"

#include <QFile>
#include <QFileInfo>

#include <limits>

namespace Orvane::ECProxy::Client {

namespace {

/// The bytes of a record that the encoder takes as they lie on the wire.
template <typename Record> QByteArray bytesOf(const Record& record)
{
    QByteArray bytes(sizeof(Record), '\0');
    Wire::write(record, bytes.data());
    return bytes;
}

/// Reads a file whole, with its name for the console; false, with the reason logged, when that fails.
bool readFile(const QString& path, QByteArray& bytes, QString& name)
{
    QFile file(path);
    if (!file.exists()) {
        ecWarning(lcLink, "File path does not exist.");
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        ecWarning(lcLink, "File can not open.");
        return false;
    }
    bytes = file.readAll();
    // The console would take a part of the file for the whole.
    if (file.error() != QFileDevice::NoError || bytes.size() < file.size()) {
        ecWarning(lcLink, "File can not be read whole: %s", qUtf8Printable(file.errorString()));
        return false;
    }
    name = QFileInfo(path).fileName();
    return true;
}

} // namespace

void Internal::ECManagerPrivate::sendTBarLock(bool locked)
{
    request(locked ? &ECClientEncoder::getLockTBarRequest : &ECClientEncoder::getUnlockTBarRequest);
}

void Internal::ECManagerPrivate::sendKeypadLock(bool locked)
{
    request(locked ? &ECClientEncoder::getLockKeyboardRequest : &ECClientEncoder::getUnlockedKeyboardRequest);
}

void Internal::ECManagerPrivate::sendSource(DVISource source)
{
    MVRSignalControl control;
    control.SignalIndex = source;
    request(&ECClientEncoder::getSwitchSourceRequest, control);
}

void Internal::ECManagerPrivate::announce(
    void (ECManager::*signal)(bool), const RequestedState<bool>& lock, bool locked)
{
    std::invoke(signal, m_pECMgr, locked);
    if (hasSendRoute() && lock.value() != locked)
        std::invoke(signal, m_pECMgr, !locked);
}

void Internal::ECManagerPrivate::followLocks(
    QObject* receiver, std::function<void(bool)> tbarLocked, std::function<void(bool)> keypadLocked)
{
    // Directly: a queued announcement of a timer thread would come after a newer one of the GUI thread.
    QObject::connect(
        m_pECMgr, &ECManager::signalTbarLocked, receiver, std::move(tbarLocked), Qt::DirectConnection);
    QObject::connect(
        m_pECMgr, &ECManager::signalKeyboardLocked, receiver, std::move(keypadLocked), Qt::DirectConnection);
}

// ---- Keys and T-Bar -------------------------------------------------------------------------------------

void ECManager::updateECButtonColor(const std::shared_ptr<ECButtonColor>& color)
{
    d->show(&ECClientEncoder::getECButtonColorRequest, color);
}

void ECManager::updateECOledText(const std::shared_ptr<ECOLEDText>& text)
{
    d->show(&ECClientEncoder::getECOledTextRequest, text);
}

void ECManager::updateECButtonColor(
    const std::shared_ptr<ECButtonColor>& color, const std::shared_ptr<ECOLEDText>& text)
{
    updateECButtonColor(color);
    updateECOledText(text);
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

void ECManager::updateTBarValue(const std::shared_ptr<ECTBarValue>& value)
{
    d->request(&ECClientEncoder::getECTBarValueRequest, value);
}

void ECManager::lockTBar()
{
    d->lockTBar(true);
}

void ECManager::unlockTBar()
{
    d->lockTBar(false);
}

void ECManager::lockKeypad()
{
    d->lockKeypad(true);
}

void ECManager::unlockKeypad()
{
    d->lockKeypad(false);
}

void ECManager::repeatLocks()
{
    if (!d->hasSendRoute())
        return;
    d->m_bLockTbar.repeat();
    d->m_bLockPanel.repeat();
}

// ---- Lights and picture ---------------------------------------------------------------------------------

void ECManager::updateLightControlState(const std::shared_ptr<LightControl>& light)
{
    d->request(&ECClientEncoder::getCloseAllButtonLEDRequest, light);
}

void ECManager::updatepScreenLuminance(const std::shared_ptr<ScreenLuminance>& luminance)
{
    d->request(&ECClientEncoder::getScreenLuminanceRequest, luminance);
}

void ECManager::updateSetPeripheralDataChange(const std::shared_ptr<PeripheralControl>& peripheral)
{
    d->request(&ECClientEncoder::getPeripheralControlRequest, peripheral);
}

void ECManager::controlPeripheralState(bool visible)
{
    const auto state = std::make_shared<PeripheralControlVisibleState>();
    state->visible = visible ? 1 : 0;
    d->request(&ECClientEncoder::getControlPeripheralStateRequest, state);
}

void ECManager::switchSource(DVISource source)
{
    if (d->hasSendRoute())
        d->m_curSource.request(source);
}

bool ECManager::dviInSignal(const int& index)
{
    if (index < 0 || index > std::numeric_limits<quint8>::max()) {
        ecWarning(lcCodec, "DVI input %d refused: the inputs are numbered 0 to 255.", index);
        return false;
    }
    if (!d->request(&ECClientEncoder::getDVIInSignalRequest, index))
        return false;
    const std::lock_guard<std::mutex> lock(d->m_recordMutex);
    return d->m_dviSignal[index];
}

void ECManager::updateDVISignalStatus(DVIInSignal signal)
{
    d->request(&ECClientEncoder::getUpdateDVISignalStatusPack, std::make_shared<DVIInSignal>(signal));
}

// ---- Time, network and service --------------------------------------------------------------------------

void ECManager::updateSystemTime(const QString& date, const QString& time)
{
    const QString text = QString(date).replace(QLatin1Char('-'), QLatin1Char(':')) + QLatin1Char(' ') + time;
    d->request(&ECClientEncoder::getUpdateSystemTime, text);
}

void ECManager::updateSystemIP(
    const QString& first, const QString& second, const QString& third, const QString& fourth)
{
    const QString text = QStringList{first, second, third, fourth}.join(QLatin1Char('@'));
    d->request(&ECClientEncoder::getUpdateSystemIP, text);
}

void ECManager::reqECDeviceIP(unsigned char index)
{
    if (!d->request(&ECClientEncoder::getReqECDeviceIP, index))
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
    d->request(&ECClientEncoder::getResECDeviceIP, bytesOf(data));
}

void ECManager::setIPMode(unsigned char index, unsigned char mode)
{
    ECDeviceIPModeData data;
    data.Index = index;
    data.Mode = mode;
    d->request(&ECClientEncoder::getChangeIPModeRequestPack, bytesOf(data));
}

void ECManager::restartEventController(unsigned char value)
{
    d->request(&ECClientEncoder::getRestartConsolePack, value);
}

void ECManager::resetMCU(unsigned char value)
{
    d->request(&ECClientEncoder::getRestartMCUPack, value);
}

void ECManager::startKeyboardMouseEventListen()
{
    d->request(&ECClientEncoder::getKeyboardMouseEventListenReq, true);
}

void ECManager::stopKeyboardMouseEventListen()
{
    d->request(&ECClientEncoder::getKeyboardMouseEventListenReq, false);
}

// ---- Files ----------------------------------------------------------------------------------------------

bool ECManager::sendFile(
    const QString& path, eFlieOperType operation, eFlieType fileType, unsigned short packSize, bool)
{
    if (!d->hasSendRoute())
        return false;
    QByteArray bytes;
    QString name;
    if (!readFile(path, bytes, name))
        return false;

    // The count is the protocol's 16-bit field: a file too large for it wraps, and a count of 0 sends
    // nothing.
    const auto packCount = quint16((packSize == 0 ? 0 : bytes.size() / packSize) + 1);
    for (quint32 index = 0; index < packCount; ++index) {
        const QByteArray chunk = bytes.mid(int(index * packSize), packSize);
        // The builders' results say nothing; an array left empty is handed on as it is.
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

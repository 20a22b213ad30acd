#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECClientEncoderPrivate;
}

/// Builds the bytes of every message to the service.
///
/// Each builder replaces the content of `out` with one finished datagram and returns true. An array that
/// is big enough and not shared keeps its memory, so a caller who builds often should reuse one array. Every
/// call, even a failing one, takes the next number of the sequence that all encoders of the process share
/// (1 to 65534, 0, 1, …). A builder that fails leaves `out` as it was: the two file-pack builders fail for an
/// unknown type, the record builders for an empty pointer.
///
/// Thread: all builders may be called from any thread, with an `out` of the caller's own.
class ORVANEECPROXYCLIENT_EXPORT ECClientEncoder : public QObject {
    Q_OBJECT

public:
    explicit ECClientEncoder(QObject* parent = nullptr);
    ~ECClientEncoder() override;

    bool getECButtonColorRequest(const std::shared_ptr<ECButtonColor>& color, QByteArray& out);
    bool getECOledTextRequest(const std::shared_ptr<ECOLEDText>& text, QByteArray& out);
    bool getECTBarValueRequest(const std::shared_ptr<ECTBarValue>& value, QByteArray& out);

    bool getLockTBarRequest(QByteArray& out);
    bool getUnlockTBarRequest(QByteArray& out);
    /// Requests a report of whether the T-Bar is locked.
    bool getLockedTBarRequest(QByteArray& out);
    bool getLockKeyboardRequest(QByteArray& out);
    bool getUnlockedKeyboardRequest(QByteArray& out);
    /// Requests a report of whether the keypad is locked.
    bool getLockedKeyboardRequest(QByteArray& out);

    /// @param index number of the input; its low byte is sent.
    bool getDVIInSignalRequest(int index, QByteArray& out);
    /// Sets any panel light, despite its name.
    bool getCloseAllButtonLEDRequest(const std::shared_ptr<LightControl>& light, QByteArray& out);
    bool getScreenLuminanceRequest(const std::shared_ptr<ScreenLuminance>& luminance, QByteArray& out);
    bool getPeripheralControlRequest(const std::shared_ptr<PeripheralControl>& control, QByteArray& out);
    bool getSwitchSourceRequest(MVRSignalControl control, QByteArray& out);

    /// Sends `text` as Latin-1, one byte a character, without a terminator; characters beyond become '?'.
    bool getUpdateSystemTime(const QString& text, QByteArray& out);
    /// Sends `text` as getUpdateSystemTime() does.
    bool getUpdateSystemIP(const QString& text, QByteArray& out);

    /// Builds the pack that opens a file transfer.
    ///
    /// The tag follows from `fileType`: 1 is written to the console, 0 is read, any other fails. Exactly
    /// `nameLength` bytes of the name are sent, Latin-1, filled up with zeros.
    /// @param operation ignored
    /// @param packIndex 0
    /// @param fileSize bytes of the whole file
    /// @return always false, even when the pack was built. Success shows in an `out` that was empty before.
    bool getFileOperateFirstPackRequest(
        eFlieOperType operation, quint16 packIndex, quint16 packCount, quint8 fileType, quint32 fileSize,
        quint32 reserved, quint16 nameLength, const QString& name, const QByteArray& chunk, QByteArray& out);
    /// Builds one of the packs after the first.
    /// @param operation OpeWriteFile or OpeReadFile; any other fails
    /// @param packIndex 1 to packCount - 1
    /// @return always false, as for the first pack.
    bool getFileOperateRequest(
        eFlieOperType operation, quint16 packIndex, quint16 packCount, const QByteArray& chunk,
        QByteArray& out);

    /// Requests the network settings that the console stores under `index`.
    bool getReqECDeviceIP(quint8 index, QByteArray& out);
    /// @param bytes an ECDeviceIPData as it lies on the wire; any other bytes are sent as they are.
    bool getResECDeviceIP(const QByteArray& bytes, QByteArray& out);
    bool getRestartConsolePack(quint8 value, QByteArray& out);
    bool getKeyboardMouseEventListenReq(bool listen, QByteArray& out);
    bool getUpdateDVISignalStatusPack(const std::shared_ptr<DVIInSignal>& signal, QByteArray& out);
    bool getRestartMCUPack(quint8 value, QByteArray& out);
    /// @param bytes an ECDeviceIPModeData as it lies on the wire; any other bytes are sent as they are.
    bool getChangeIPModeRequestPack(const QByteArray& bytes, QByteArray& out);
    bool getControlPeripheralStateRequest(
        const std::shared_ptr<PeripheralControlVisibleState>& state, QByteArray& out);

private:
    const std::unique_ptr<Internal::ECClientEncoderPrivate> d;
};

} // namespace Orvane::ECProxy::Client

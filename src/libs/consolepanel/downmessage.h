#pragma once

/// What the library can ask of the console, one record a kind of request.

#include "ecprotocol.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace Orvane::ConsolePanel {

namespace Protocol = ECProxy::Client;

enum class LockTarget { TBar, Keypad };

/// Locks or unlocks the T-Bar or the keypad, or asks for the state.
struct LockRequest {
    enum Action { Lock, Unlock, Read };
    LockTarget target = LockTarget::TBar;
    Action action = Read;
};

struct SystemTime {
    QString text;
};

struct NetworkInfo {
    QString text;
};

struct ConsoleIPRequest {
    quint8 index = 0;
};

struct ConsoleRestart {
    quint8 value = 0;
};

struct McuReset {
    quint8 value = 0;
};

/// Whether the console shall report keyboard and mouse events.
struct KeyboardListening {
    bool on = false;
};

/// Opens a file transfer and carries the file's first chunk.
struct FileFirstPack {
    quint16 packCount = 0;
    quint8 fileType = 0; ///< eFlieType
    quint32 fileSize = 0; ///< of the whole file, in bytes
    QString name;
    QByteArray chunk;
};

/// Carries a further chunk of the file whose first pack came before.
struct FileDataPack {
    quint16 packIndex = 0; ///< 1 to packCount - 1
    quint16 packCount = 0;
    QByteArray chunk;
};

using DownMessage = std::variant<
    Protocol::ECButtonColor, Protocol::ECOLEDText, Protocol::ECTBarValue, LockRequest,
    Protocol::DVIInSignalRead, Protocol::LightControl, Protocol::ScreenLuminance, Protocol::PeripheralControl,
    Protocol::MVRSignalControl, SystemTime, NetworkInfo, FileFirstPack, FileDataPack, ConsoleIPRequest,
    Protocol::ECDeviceIPData, ConsoleRestart, KeyboardListening, Protocol::DVIInSignal, McuReset,
    Protocol::ECDeviceIPModeData, Protocol::PeripheralControlVisibleState>;

/// One datagram to the console, read.
struct DownDatagram {
    quint16 sequence = 0;
    Protocol::eECDownMessageTag tag = Protocol::UpdateECButtonColor;
    DownMessage message;
};

/// A visitor made of one lambda an alternative.
template <typename... Cases> struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace Orvane::ConsolePanel

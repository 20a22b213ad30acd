#pragma once

/// The wire between the library and the event controller service: every record, number and length.
///
/// One UDP datagram carries a 12-byte head, a 4-byte tag and length, and one value. All numbers are
/// little-endian whatever the machine is; `Wire::load` and `Wire::store` are the only places where a
/// number's bytes are put in order. The records here are the values themselves, in the machine's own
/// byte order; `Wire::write` and the `Wire::read…` functions say how each lies in a datagram.

#include <QByteArray>
#include <QtEndian>

#include <cstddef>
#include <cstring>
#include <functional>
#include <type_traits>

namespace Orvane::ECProxy::Client {

/// The service's port; also the local port of the library's send socket.
constexpr quint16 ECServicePort = 35555;
/// The library's port, where the service's reports arrive.
constexpr quint16 ECClientPort = 35556;

/// First four bytes of a datagram to the service: EE 55 EE 55.
constexpr quint32 ECDownMagic = 0x55EE55EE;
/// First four bytes of a datagram from the service: 55 EE 55 EE, mirrored on purpose.
constexpr quint32 ECUpMagic = 0xEE55EE55;
/// The packet type of every datagram to the service.
constexpr quint16 ECDownPacketType = 1;
/// The version that every datagram to the service names.
constexpr quint16 ECProtocolVersionNumber = 0x0100;

/// Messages to the service.
enum eECDownMessageTag : quint16 {
    UpdateECButtonColor = 101,
    UpdateECOledText = 102,
    UpdateTBarValue = 103,
    LockTBar = 104,
    UnlockTBar = 105,
    ReadLockedTBar = 106,
    LockKeyboard = 107,
    UnlockKeyboard = 108,
    ReadLockedKeyboard = 109,
    ReadDVIInSignal = 110,
    ControlLight = 111,
    UpdateScreenLuminance = 112,
    ControlPeripheral = 113,
    ControlMVRSignal = 114,
    UpdateSystemTime = 115,
    UpdateNetworkInfo = 116,
    ReadFile = 117,
    WriteFile = 118,
    ReadECDeviceIPData = 119,
    UpdateECDeviceIPData = 120,
    RestartConsole = 121,
    ControlKeyboard = 122,
    UpdateDVISignalStatus = 123,
    ResetMCU = 124,
    ChangeIPMode = 125,
    ControlPeripheralState = 126,
};

/// Messages from the service.
enum eECUpMessageTag : quint16 {
    ReportECButtonPressed = 201,
    ReportECButtonRelease = 202,
    ReportECTBarValue = 203,
    ReportLockedTBar = 204,
    ReportLockedKeyboard = 205,
    ReportDVIInSignal = 206,
    ReportECDeviceIP = 207,
};

/// How a key's LED is lit: steadily in the record's color, flashing in it, or dark. CloseAllLight goes with
/// key number 255 and darkens every key. The library never sends ClosedNormalLight. A steady color with
/// brightness 100 is what the key commands send.
enum eButtonState : quint8 { LightUp = 0, Flashing = 1, CloseAllLight = 2, ClosedNormalLight = 255 };

/// What a key report says happened; the tag already says so.
enum eButtonOperState : quint8 { Pressed = 0, Release = 1, ButtonOperStateCnt = 2 };

/// The panel's lights. The library sends the first three.
enum eY2LightType : quint8 { Gooseneck = 0, Front = 1, Logo = 2, Other = 255 };

/// Direction flag of a T-Bar position.
enum TbarDirection : quint8 { BottomToTop = 1, TopToBottom = 64 };

/// Source shown on the monitor.
enum DVISource : quint8 { dvi1 = 0, arm_left = 1 };

/// The direction of a file transfer, seen from the console.
enum eFlieOperType : quint8 { OpeReadFile = 0, OpeWriteFile = 1 };

/// Which image a file is for: both, the microcontroller, the FPGA.
enum eFlieType : quint8 { ALL = 0, MCU = 1, FPGA = 2 };

#pragma pack(push, 1)

/// The first 12 bytes of a datagram.
struct ECProtocolHead {
    quint32 Head = ECDownMagic; ///< the magic of the direction
    quint16 PacketType = ECDownPacketType; ///< not read in reports
    quint16 ProtocolVersion = ECProtocolVersionNumber; ///< not read in reports
    quint16 Sequence = 0; ///< 0 to 65534; 65535 is never sent
    quint16 ContentLength = 0; ///< bytes after the head; see `DownMessageShape` for the exceptions
};
static_assert(sizeof(ECProtocolHead) == 12);

/// The tag and length after the head.
struct ECProtocolTL {
    quint16 Tag = 0; ///< eECDownMessageTag or eECUpMessageTag
    quint16 Length =
        0; ///< bytes of the value; not read in reports, see `DownMessageShape` for the exceptions
};
static_assert(sizeof(ECProtocolTL) == 4);

/// Lights one key.
struct ECButtonColor {
    quint32 ButtonKey = 0; ///< the application's number of the key (`OrvaneECKey`)
    quint16 ECKey = 0; ///< the console's number of the key
    quint8 ButtonState = 0; ///< eButtonState
    quint8 R = 0; ///< red
    quint8 G = 0; ///< green
    quint8 B = 0; ///< blue
    quint8 brightness = 0; ///< per cent
};
static_assert(sizeof(ECButtonColor) == 11);

/// Writes one OLED label.
struct ECOLEDText {
    quint32 OledKey = 0; ///< the application's number of the label
    quint16 ECKey = 0; ///< the console's number of the label
    char OledText[32] = {}; ///< UTF-8, zero-padded; not terminated when all 32 bytes are used
};
static_assert(sizeof(ECOLEDText) == 38);

/// A T-Bar position (up, 1 to 64) or the level of the LED bar beside it (down, 0 to 12).
struct ECTBarValue {
    quint32 Value = 0; ///< position or level
    quint8 IsBottomToTop = 0; ///< TbarDirection
};
static_assert(sizeof(ECTBarValue) == 5);

/// A key report.
struct ECButtonOperState {
    quint32 ButtonKey = 0; ///< the console's number of the key (`ECKey`)
    quint8 ButtonPressed = 0; ///< eButtonOperState; the tag already says which
};
static_assert(sizeof(ECButtonOperState) == 5);

/// Sets one panel light.
struct LightControl {
    quint8 LightType = 0; ///< eY2LightType
    quint8 IsEnabled = 0; ///< 1: on, 0: off
    quint8 Brightness = 0; ///< per cent, also carried for a light that is off
};
static_assert(sizeof(LightControl) == 3);

/// Sets the luminance of the console's own screens.
struct ScreenLuminance {
    quint8 Brightness = 0; ///< per cent
};
static_assert(sizeof(ScreenLuminance) == 1);

/// Describes the screens that the console's peripherals work on. The library sends the host's values as they
/// are; their meaning is fixed by the service.
struct PeripheralControl {
    quint8 ScreenNum = 0; ///< number of screens
    quint8 TargetScreenIndex = 0; ///< from 0
    quint16 resolution[32] = {}; ///< pixels, width and height of each screen in turn
};
static_assert(sizeof(PeripheralControl) == 66);

/// Tells whether the application's plug-in is visible.
struct PeripheralControlVisibleState {
    quint8 visible = 0; ///< 1: visible, 0: not
};
static_assert(sizeof(PeripheralControlVisibleState) == 1);

/// The signal at one DVI input.
struct DVIInSignal {
    quint8 Index = 0; ///< the input, from 0
    quint8 Signal = 0; ///< non-zero: signal present
};
static_assert(sizeof(DVIInSignal) == 2);

/// Asks for the signal at one DVI input.
struct DVIInSignalRead {
    quint8 Index = 0; ///< the input, from 0
};
static_assert(sizeof(DVIInSignalRead) == 1);

/// Switches the source of the secondary screen.
struct MVRSignalControl {
    quint8 SignalIndex = 0; ///< DVISource
};
static_assert(sizeof(MVRSignalControl) == 1);

/// The T-Bar's lock, as the console reports it.
struct TBarLocked {
    quint8 Locked = 0; ///< non-zero: locked
};
static_assert(sizeof(TBarLocked) == 1);

/// The keypad's lock, as the console reports it.
struct KeyboardLocked {
    quint8 Locked = 0; ///< non-zero: locked
};
static_assert(sizeof(KeyboardLocked) == 1);

/// One of the console's network settings. The library keeps them by index and does not interpret them. On the
/// wire each address is a number like all others: what comes back is byte for byte what was sent.
struct ECDeviceIPData {
    quint8 Index = 0; ///< which of the console's network devices
    quint8 Status = 0; ///< as the service defines it
    quint32 IP = 0; ///< IPv4 address
    quint32 Mask = 0; ///< its network mask
    quint32 Gateway = 0; ///< IPv4 address
};
static_assert(sizeof(ECDeviceIPData) == 14);

/// Sets how one of the console's network devices gets its address.
struct ECDeviceIPModeData {
    quint8 Index = 0; ///< which of the console's network devices
    quint8 Mode = 0; ///< as the service defines it
};
static_assert(sizeof(ECDeviceIPModeData) == 2);

#pragma pack(pop)

/// Bytes of the head.
constexpr int ECHeadSize = sizeof(ECProtocolHead);
/// Bytes of the tag and length.
constexpr int ECTLSize = sizeof(ECProtocolTL);
/// Where the value of a datagram starts (not in file packs, which have a layout of their own).
constexpr int ECValueOffset = ECHeadSize + ECTLSize;

/// Length rules of one kind of message to the service.
struct DownMessageShape {
    /// Which message.
    eECDownMessageTag tag;
    /// Bytes of the value; -1: as many as the sender gives (text, raw records, file packs).
    int valueSize;
    /// What the length field of the tag says. It is 0 for two requests that do carry a byte.
    enum LengthField { IsValueSize, IsZero };
    /// What `ContentLength` says. Two requests that carry raw records count the tag and length only.
    enum ContentField { CountsValue, CountsTLOnly };
    LengthField length; ///< of this message
    ContentField content; ///< of this message
};

/// Every message to the service, ordered by tag. The irregular lengths are what the service expects.
constexpr DownMessageShape DownMessageShapes[] = {
    {UpdateECButtonColor, sizeof(ECButtonColor), DownMessageShape::IsValueSize,
     DownMessageShape::CountsValue},
    {UpdateECOledText, sizeof(ECOLEDText), DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UpdateTBarValue, sizeof(ECTBarValue), DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {LockTBar, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UnlockTBar, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ReadLockedTBar, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {LockKeyboard, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UnlockKeyboard, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ReadLockedKeyboard, 0, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ReadDVIInSignal, sizeof(DVIInSignalRead), DownMessageShape::IsZero, DownMessageShape::CountsValue},
    {ControlLight, sizeof(LightControl), DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UpdateScreenLuminance, sizeof(ScreenLuminance), DownMessageShape::IsValueSize,
     DownMessageShape::CountsValue},
    {ControlPeripheral, sizeof(PeripheralControl), DownMessageShape::IsValueSize,
     DownMessageShape::CountsValue},
    {ControlMVRSignal, sizeof(MVRSignalControl), DownMessageShape::IsZero, DownMessageShape::CountsValue},
    {UpdateSystemTime, -1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UpdateNetworkInfo, -1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ReadFile, -1, DownMessageShape::IsZero, DownMessageShape::CountsValue},
    {WriteFile, -1, DownMessageShape::IsZero, DownMessageShape::CountsValue},
    {ReadECDeviceIPData, 1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UpdateECDeviceIPData, -1, DownMessageShape::IsValueSize, DownMessageShape::CountsTLOnly},
    {RestartConsole, 1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ControlKeyboard, 1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {UpdateDVISignalStatus, sizeof(DVIInSignal), DownMessageShape::IsValueSize,
     DownMessageShape::CountsValue},
    {ResetMCU, 1, DownMessageShape::IsValueSize, DownMessageShape::CountsValue},
    {ChangeIPMode, -1, DownMessageShape::IsValueSize, DownMessageShape::CountsTLOnly},
    {ControlPeripheralState, sizeof(PeripheralControlVisibleState), DownMessageShape::IsValueSize,
     DownMessageShape::CountsValue},
};
/// How many kinds of messages to the service there are.
constexpr int DownMessageCount = sizeof(DownMessageShapes) / sizeof(DownMessageShapes[0]);
static_assert(DownMessageCount == ControlPeripheralState - UpdateECButtonColor + 1);

/// The shape of a message to the service. `tag` must be one of the enumerators.
constexpr const DownMessageShape& downMessageShape(eECDownMessageTag tag)
{
    return DownMessageShapes[tag - UpdateECButtonColor];
}
static_assert(downMessageShape(ReadDVIInSignal).tag == ReadDVIInSignal);
static_assert(downMessageShape(ControlPeripheralState).tag == ControlPeripheralState);

/// File packs begin with four bytes of pack numbering; the head follows with its sequence and content
/// length at 12 and 14, the tag and a zero length at 16 and 18.
namespace FilePack {
/// Bytes of the numbering, and where in a pack the parts after it begin.
/// @{
constexpr int NumberingSize = 4;
constexpr int HeadOffset = NumberingSize;
constexpr int TLOffset = HeadOffset + ECHeadSize;
constexpr int DataOffset = TLOffset + ECTLSize;
/// @}
/// In the first pack the file's own header stands before its name: type, size, reserved, name length.
/// @{
constexpr int FileTypeOffset = DataOffset;
constexpr int FileSizeOffset = FileTypeOffset + 1;
constexpr int ReservedOffset = FileSizeOffset + 4;
constexpr int NameLengthOffset = ReservedOffset + 4;
constexpr int NameOffset = NameLengthOffset + 2;
/// @}
/// What a content length counts beside the chunk (and, in the first pack, the name).
/// @{
constexpr int FirstPackOverhead = 19;
constexpr int DataPackOverhead = 8;
/// @}
static_assert(TLOffset == 16 && DataOffset == 20 && NameOffset == 31);
static_assert(NameOffset - ECHeadSize == FirstPackOverhead && DataOffset - ECHeadSize == DataPackOverhead);
} // namespace FilePack

/// Called with every parsed report. It runs on the decoder's thread; the result is ignored there.
using UpTLVDecodeFinishedCallbackType = std::function<bool(const eECUpMessageTag&, const QByteArray&)>;

/// Byte order and layout, and nothing else. None of these checks a length: the caller does, before.
namespace Wire {

/// What a field may be. Anything else, an int that was meant to be 16 bits for one, does not compile.
template <typename Number>
constexpr bool IsFieldType =
    std::is_same_v<Number, quint8> || std::is_same_v<Number, quint16> || std::is_same_v<Number, quint32>;

/// A number from its bytes on the wire.
template <typename Number> inline Number load(const void* bytes)
{
    static_assert(IsFieldType<Number>);
    return qFromLittleEndian<Number>(bytes);
}

/// A number's bytes as they lie on the wire.
template <typename Number> inline void store(Number number, void* bytes)
{
    static_assert(IsFieldType<Number>);
    qToLittleEndian<Number>(number, bytes);
}

/// Writes fields one after another.
class Writer {
public:
    /// From @p out on, which has room for all that is written.
    explicit Writer(char* out)
        : m_out(out)
    {
    }
    /// The next field.
    template <typename Number> void operator()(Number number)
    {
        store(number, m_out);
        m_out += sizeof(Number);
    }
    /// @p size bytes as they are.
    void raw(const void* bytes, std::size_t size)
    {
        std::memcpy(m_out, bytes, size);
        m_out += size;
    }

private:
    char* m_out;
};

/// Reads fields one after another.
class Reader {
public:
    /// From @p in on, which holds all that is read.
    explicit Reader(const char* in)
        : m_in(in)
    {
    }
    /// The next field.
    template <typename Number> Number next()
    {
        const Number number = load<Number>(m_in);
        m_in += sizeof(Number);
        return number;
    }

private:
    const char* m_in;
};

/// Writes the record to @p out, which has room for as many bytes as the record has.
/// @{
inline void write(const ECProtocolHead& head, char* out)
{
    Writer put(out);
    put(quint32(head.Head));
    put(quint16(head.PacketType));
    put(quint16(head.ProtocolVersion));
    put(quint16(head.Sequence));
    put(quint16(head.ContentLength));
}

inline void write(const ECProtocolTL& tl, char* out)
{
    Writer put(out);
    put(quint16(tl.Tag));
    put(quint16(tl.Length));
}

inline void write(const ECButtonColor& record, char* out)
{
    Writer put(out);
    put(quint32(record.ButtonKey));
    put(quint16(record.ECKey));
    put(record.ButtonState);
    put(record.R);
    put(record.G);
    put(record.B);
    put(record.brightness);
}

inline void write(const ECOLEDText& record, char* out)
{
    Writer put(out);
    put(quint32(record.OledKey));
    put(quint16(record.ECKey));
    put.raw(record.OledText, sizeof(record.OledText));
}

inline void write(const ECTBarValue& record, char* out)
{
    Writer put(out);
    put(quint32(record.Value));
    put(record.IsBottomToTop);
}

inline void write(const LightControl& record, char* out)
{
    Writer put(out);
    put(record.LightType);
    put(record.IsEnabled);
    put(record.Brightness);
}

inline void write(const ScreenLuminance& record, char* out)
{
    Writer put(out);
    put(record.Brightness);
}

inline void write(const PeripheralControl& record, char* out)
{
    Writer put(out);
    put(record.ScreenNum);
    put(record.TargetScreenIndex);
    // By index, since no reference can be bound to a packed member.
    for (std::size_t i = 0; i < 32; ++i) // NOLINT(modernize-loop-convert)
        put(quint16(record.resolution[i]));
}

inline void write(const PeripheralControlVisibleState& record, char* out)
{
    Writer put(out);
    put(record.visible);
}

inline void write(const DVIInSignal& record, char* out)
{
    Writer put(out);
    put(record.Index);
    put(record.Signal);
}

inline void write(const DVIInSignalRead& record, char* out)
{
    Writer put(out);
    put(record.Index);
}

inline void write(const MVRSignalControl& record, char* out)
{
    Writer put(out);
    put(record.SignalIndex);
}

inline void write(const ECDeviceIPData& record, char* out)
{
    Writer put(out);
    put(record.Index);
    put(record.Status);
    put(quint32(record.IP));
    put(quint32(record.Mask));
    put(quint32(record.Gateway));
}

inline void write(const ECDeviceIPModeData& record, char* out)
{
    Writer put(out);
    put(record.Index);
    put(record.Mode);
}

/// @}

/// Reads a key report from exactly sizeof(ECButtonOperState) bytes.
inline ECButtonOperState readButtonOperState(const char* in)
{
    Reader get(in);
    ECButtonOperState record;
    record.ButtonKey = get.next<quint32>();
    record.ButtonPressed = get.next<quint8>();
    return record;
}

/// Reads a T-Bar position from exactly sizeof(ECTBarValue) bytes.
inline ECTBarValue readTBarValue(const char* in)
{
    Reader get(in);
    ECTBarValue record;
    record.Value = get.next<quint32>();
    record.IsBottomToTop = get.next<quint8>();
    return record;
}

/// Reads one entry of a DVI report from exactly sizeof(DVIInSignal) bytes.
inline DVIInSignal readDVIInSignal(const char* in)
{
    Reader get(in);
    DVIInSignal record;
    record.Index = get.next<quint8>();
    record.Signal = get.next<quint8>();
    return record;
}

/// Reads the console's network settings from exactly sizeof(ECDeviceIPData) bytes.
inline ECDeviceIPData readDeviceIPData(const char* in)
{
    Reader get(in);
    ECDeviceIPData record;
    record.Index = get.next<quint8>();
    record.Status = get.next<quint8>();
    record.IP = get.next<quint32>();
    record.Mask = get.next<quint32>();
    record.Gateway = get.next<quint32>();
    return record;
}

} // namespace Wire

} // namespace Orvane::ECProxy::Client

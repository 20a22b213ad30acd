#include "downdecoder.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;
using Wire::load;

namespace {

/// The counter skips this number.
constexpr quint16 NeverSentSequence = 65535;
constexpr int TagOffset = ECHeadSize;
constexpr int LengthOffset = TagOffset + 2;
constexpr int SequenceOffset = 8;
constexpr int ContentLengthOffset = 10;

/// What is wrong with a datagram, in words; empty when nothing is.
using Fault = QString;

QString hex(quint32 number, int digits)
{
    return QStringLiteral("0x%1").arg(number, digits, 16, QLatin1Char('0'));
}

Fault mismatch(const char* what, int is, int expected)
{
    return QStringLiteral("%1 is %2, expected %3").arg(QLatin1String(what)).arg(is).arg(expected);
}

/// Checks the head at `head` up to and including the sequence.
Fault checkHead(const char* head)
{
    const auto packetType = load<quint16>(head + 4);
    if (packetType != ECDownPacketType)
        return mismatch("packet type", packetType, ECDownPacketType);
    const auto version = load<quint16>(head + 6);
    if (version != ECProtocolVersionNumber)
        return QStringLiteral("protocol version is %1, expected %2")
            .arg(hex(version, 4), hex(ECProtocolVersionNumber, 4));
    if (load<quint16>(head + SequenceOffset) == NeverSentSequence)
        return QStringLiteral("sequence is 65535, which is never sent");
    return {};
}

using ReadValue = DownMessage (*)(const char* value, int size, Fault& fault);

DownMessage readButtonColor(const char* value, int, Fault& fault)
{
    Wire::Reader in(value);
    ECButtonColor record;
    record.ButtonKey = in.next<quint32>();
    record.ECKey = in.next<quint16>();
    record.ButtonState = in.next<quint8>();
    record.R = in.next<quint8>();
    record.G = in.next<quint8>();
    record.B = in.next<quint8>();
    record.brightness = in.next<quint8>();
    if (record.ButtonState > CloseAllLight && record.ButtonState != ClosedNormalLight)
        fault = QStringLiteral("button state %1 is none of 0, 1, 2 and 255").arg(record.ButtonState);
    return record;
}

DownMessage readOledText(const char* value, int, Fault& fault)
{
    Wire::Reader in(value);
    ECOLEDText record;
    record.OledKey = in.next<quint32>();
    record.ECKey = in.next<quint16>();
    constexpr int TextOffset = sizeof(ECOLEDText) - sizeof(record.OledText);
    std::copy_n(value + TextOffset, sizeof(record.OledText), record.OledText);
    const char* const end = std::cend(record.OledText);
    const char* const textEnd = std::find(std::cbegin(record.OledText), end, '\0');
    if (std::any_of(textEnd, end, [](char byte) { return byte != '\0'; }))
        fault = QStringLiteral("label text goes on behind its terminating zero");
    return record;
}

DownMessage readTBarLevel(const char* value, int, Fault&)
{
    Wire::Reader in(value);
    ECTBarValue record;
    record.Value = in.next<quint32>();
    record.IsBottomToTop = in.next<quint8>();
    return record;
}

template <LockTarget target, LockRequest::Action action> DownMessage readLockRequest(const char*, int, Fault&)
{
    return LockRequest{target, action};
}

/// For records whose only field is one byte.
template <typename Record> DownMessage readByte(const char* value, int, Fault&)
{
    return Record{quint8(*value)};
}

DownMessage readLight(const char* value, int, Fault& fault)
{
    Wire::Reader in(value);
    LightControl record;
    record.LightType = in.next<quint8>();
    record.IsEnabled = in.next<quint8>();
    record.Brightness = in.next<quint8>();
    if (record.LightType > Logo && record.LightType != Other)
        fault = QStringLiteral("light type %1 is none of 0, 1, 2 and 255").arg(record.LightType);
    return record;
}

DownMessage readPeripheral(const char* value, int, Fault&)
{
    Wire::Reader in(value);
    PeripheralControl record;
    record.ScreenNum = in.next<quint8>();
    record.TargetScreenIndex = in.next<quint8>();
    // Index access: a packed array's elements cannot be bound to references.
    for (std::size_t i = 0; i < std::size(record.resolution); ++i) // NOLINT(modernize-loop-convert)
        record.resolution[i] = in.next<quint16>();
    return record;
}

template <typename Record> DownMessage readText(const char* value, int size, Fault&)
{
    return Record{QString::fromLatin1(value, size)};
}

DownMessage readDeviceIP(const char* value, int size, Fault& fault)
{
    ECDeviceIPData record;
    if (size != int(sizeof(record))) {
        fault = mismatch("size of the network record", size, sizeof(record));
        return record;
    }
    Wire::Reader in(value);
    record.Index = in.next<quint8>();
    record.Status = in.next<quint8>();
    record.IP = in.next<quint32>();
    record.Mask = in.next<quint32>();
    record.Gateway = in.next<quint32>();
    return record;
}

DownMessage readDeviceIPMode(const char* value, int size, Fault& fault)
{
    ECDeviceIPModeData record;
    if (size != int(sizeof(record))) {
        fault = mismatch("size of the network mode record", size, sizeof(record));
        return record;
    }
    Wire::Reader in(value);
    record.Index = in.next<quint8>();
    record.Mode = in.next<quint8>();
    return record;
}

DownMessage readKeyboardListening(const char* value, int, Fault&)
{
    return KeyboardListening{*value != 0};
}

DownMessage readDviStatus(const char* value, int, Fault&)
{
    Wire::Reader in(value);
    DVIInSignal record;
    record.Index = in.next<quint8>();
    record.Signal = in.next<quint8>();
    return record;
}

DownMessage refuseFileTag(const char*, int, Fault& fault)
{
    fault = QStringLiteral("a file pack without its pack numbering");
    return FileDataPack{};
}

constexpr auto TBar = LockTarget::TBar;
constexpr auto Keypad = LockTarget::Keypad;

/// How the value of each tag is read, ordered by tag.
constexpr ReadValue ValueReaders[] = {
    /* 101 */ readButtonColor,
    /* 102 */ readOledText,
    /* 103 */ readTBarLevel,
    /* 104 */ readLockRequest<TBar, LockRequest::Lock>,
    /* 105 */ readLockRequest<TBar, LockRequest::Unlock>,
    /* 106 */ readLockRequest<TBar, LockRequest::Read>,
    /* 107 */ readLockRequest<Keypad, LockRequest::Lock>,
    /* 108 */ readLockRequest<Keypad, LockRequest::Unlock>,
    /* 109 */ readLockRequest<Keypad, LockRequest::Read>,
    /* 110 */ readByte<DVIInSignalRead>,
    /* 111 */ readLight,
    /* 112 */ readByte<ScreenLuminance>,
    /* 113 */ readPeripheral,
    /* 114 */ readByte<MVRSignalControl>,
    /* 115 */ readText<SystemTime>,
    /* 116 */ readText<NetworkInfo>,
    /* 117 */ refuseFileTag,
    /* 118 */ refuseFileTag,
    /* 119 */ readByte<ConsoleIPRequest>,
    /* 120 */ readDeviceIP,
    /* 121 */ readByte<ConsoleRestart>,
    /* 122 */ readKeyboardListening,
    /* 123 */ readDviStatus,
    /* 124 */ readByte<McuReset>,
    /* 125 */ readDeviceIPMode,
    /* 126 */ readByte<PeripheralControlVisibleState>,
};
static_assert(std::size(ValueReaders) == DownMessageCount);

bool isDownTag(quint16 tag)
{
    return tag >= UpdateECButtonColor && tag <= ControlPeripheralState;
}

std::variant<DownDatagram, Unreadable> decodePlain(const char* bytes, int size)
{
    if (size < ECValueOffset)
        return Unreadable{QStringLiteral("%1 bytes are too few for a head and a tag").arg(size)};
    if (const Fault fault = checkHead(bytes); !fault.isEmpty())
        return Unreadable{fault};
    const auto tag = load<quint16>(bytes + TagOffset);
    if (!isDownTag(tag))
        return Unreadable{QStringLiteral("unknown tag %1").arg(tag)};

    const DownMessageShape& shape = downMessageShape(eECDownMessageTag(tag));
    const ReadValue readValue = ValueReaders[tag - UpdateECButtonColor];
    const int valueSize = size - ECValueOffset;
    Fault fault;
    if (tag == ReadFile || tag == WriteFile) {
        readValue(bytes + ECValueOffset, valueSize, fault);
        return Unreadable{fault};
    }
    if (shape.valueSize >= 0 && valueSize != shape.valueSize)
        return Unreadable{mismatch("size of the value", valueSize, shape.valueSize)};
    const int length = load<quint16>(bytes + LengthOffset);
    const int expectedLength = shape.length == DownMessageShape::IsZero ? 0 : valueSize;
    if (length != expectedLength)
        return Unreadable{mismatch("length", length, expectedLength)};
    const int content = load<quint16>(bytes + ContentLengthOffset);
    const int expectedContent = ECTLSize + (shape.content == DownMessageShape::CountsTLOnly ? 0 : valueSize);
    if (content != expectedContent)
        return Unreadable{mismatch("content length", content, expectedContent)};

    DownMessage message = readValue(bytes + ECValueOffset, valueSize, fault);
    if (!fault.isEmpty())
        return Unreadable{fault};
    return DownDatagram{load<quint16>(bytes + SequenceOffset), eECDownMessageTag(tag), std::move(message)};
}

/// Reads what follows the tag of a first pack.
DownMessage readFirstPack(const char* bytes, int size, Fault& fault)
{
    FileFirstPack pack;
    if (size < FilePack::NameOffset) {
        fault = QStringLiteral("%1 bytes are too few for a first file pack").arg(size);
        return pack;
    }
    const auto tag = load<quint16>(bytes + FilePack::TLOffset);
    pack.packCount = load<quint16>(bytes + 2);
    pack.fileType = quint8(bytes[FilePack::FileTypeOffset]);
    pack.fileSize = load<quint32>(bytes + FilePack::FileSizeOffset);
    const int nameLength = load<quint16>(bytes + FilePack::NameLengthOffset);
    // The file's type chooses the tag, whatever the transfer is for.
    if (pack.fileType > MCU)
        fault = QStringLiteral("file type %1 has no first pack").arg(pack.fileType);
    else if (tag != (pack.fileType == MCU ? WriteFile : ReadFile))
        fault = QStringLiteral("tag %1 does not belong to file type %2").arg(tag).arg(pack.fileType);
    else if (load<quint32>(bytes + FilePack::ReservedOffset) != 0)
        fault = QStringLiteral("reserved word is not zero");
    else if (nameLength > size - FilePack::NameOffset)
        fault = QStringLiteral("name of %1 bytes goes beyond the end").arg(nameLength);
    if (!fault.isEmpty())
        return pack;
    pack.name = QString::fromLatin1(bytes + FilePack::NameOffset, nameLength);
    const int chunkOffset = FilePack::NameOffset + nameLength;
    pack.chunk = QByteArray(bytes + chunkOffset, size - chunkOffset);
    return pack;
}

std::variant<DownDatagram, Unreadable> decodeFilePack(const char* bytes, int size)
{
    if (size < FilePack::DataOffset)
        return Unreadable{QStringLiteral("%1 bytes are too few for a file pack").arg(size)};
    const char* head = bytes + FilePack::HeadOffset;
    if (const Fault fault = checkHead(head); !fault.isEmpty())
        return Unreadable{fault};
    const auto tag = load<quint16>(bytes + FilePack::TLOffset);
    if (tag != ReadFile && tag != WriteFile)
        return Unreadable{QStringLiteral("tag %1 in the layout of a file pack").arg(tag)};
    const int length = load<quint16>(bytes + FilePack::TLOffset + 2);
    if (length != 0)
        return Unreadable{mismatch("length", length, 0)};
    const int content = load<quint16>(head + ContentLengthOffset);
    if (content != size - ECHeadSize)
        return Unreadable{mismatch("content length", content, size - ECHeadSize)};
    const auto index = load<quint16>(bytes);
    const auto count = load<quint16>(bytes + 2);
    if (index >= count)
        return Unreadable{QStringLiteral("pack index %1 of %2 packs").arg(index).arg(count)};

    DownMessage message =
        FileDataPack{index, count, QByteArray(bytes + FilePack::DataOffset, size - FilePack::DataOffset)};
    if (index == 0) {
        Fault fault;
        message = readFirstPack(bytes, size, fault);
        if (!fault.isEmpty())
            return Unreadable{fault};
    }
    return DownDatagram{load<quint16>(head + SequenceOffset), eECDownMessageTag(tag), std::move(message)};
}

bool hasMagicAt(int offset, quint32 magic, const char* bytes, int size)
{
    return size >= offset + int(sizeof(magic)) && load<quint32>(bytes + offset) == magic;
}

} // namespace

std::variant<DownDatagram, Unreadable> decodeDown(const char* bytes, int size)
{
    if (size <= 0)
        return Unreadable{QStringLiteral("empty datagram")};
    // A magic at the start cannot be pack numbering: index and count would be the same number.
    if (hasMagicAt(0, ECDownMagic, bytes, size))
        return decodePlain(bytes, size);
    if (hasMagicAt(FilePack::HeadOffset, ECDownMagic, bytes, size))
        return decodeFilePack(bytes, size);
    if (hasMagicAt(0, ECUpMagic, bytes, size))
        return Unreadable{QStringLiteral("carries the magic of a report, not of a request")};
    return Unreadable{QStringLiteral("no magic")};
}

} // namespace Orvane::ConsolePanel

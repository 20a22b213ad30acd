#include "capturefile.h"

#include "ecprotocol.h"

#include <QFile>

#include <algorithm>
#include <optional>
#include <string_view>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

/// Offsets and sizes of the file's own records. Their numbers are in the byte order of the machine that wrote
/// the file; ours are little-endian.
namespace Pcap {
constexpr quint32 MicrosecondMagic = 0xA1B2C3D4;
constexpr quint32 NanosecondMagic = 0xA1B23C4D;
constexpr quint32 NextGenerationMagic = 0x0A0D0D0A; ///< of the newer format, the same in both byte orders
constexpr quint16 MajorVersion = 2;
constexpr quint16 MinorVersion = 4;
constexpr int VersionOffset = 4;
constexpr int LinkTypeOffset = 20;
constexpr int FileHeadSize = 24;
constexpr int RecordHeadSize = 16;
constexpr quint32 LongestRecord = 262144; ///< what capturing programs cut packets to at most
constexpr quint16 RawIP = 101;
} // namespace Pcap

namespace IP {
constexpr int HeadSize = 20; ///< without options
constexpr quint8 VersionAndSize = 0x45;
constexpr quint16 DontFragment = 0x4000;
constexpr quint16 FragmentMask = 0x3FFF; ///< offset, and the flag that more follow
constexpr quint8 TimeToLive = 64;
constexpr quint8 Udp = 17;
constexpr quint32 Loopback = 0x7F000001;
constexpr int LargestPacket = 65535;
} // namespace IP

constexpr int UdpHeadSize = 8;
static_assert(LargestDatagram == IP::LargestPacket - IP::HeadSize - UdpHeadSize);
static_assert(Pcap::LinkTypeOffset + int(sizeof(quint32)) == Pcap::FileHeadSize);

/// What stands before the IP head of a packet.
struct LinkLayer {
    quint16 type;
    std::size_t headSize;
    int protocolOffset; ///< where the head says what follows; -1: nowhere
};
constexpr LinkLayer LinkLayers[] = {
    {Pcap::RawIP, 0, -1}, {1, 14, 12}, // Ethernet
    {113, 16, 14}, // any device of Linux
    {276, 20, 0}, // the same, second form
    {228, 0, -1}, // IPv4
};
constexpr quint16 IPv4Protocol = 0x0800;

using Bytes = std::string_view;

/// Network byte order. The caller has checked that there are enough bytes.
template <typename Number> Number big(Bytes bytes, std::size_t offset)
{
    return qFromBigEndian<Number>(bytes.data() + offset);
}

template <typename Number> void putBig(Number number, char* out)
{
    qToBigEndian<Number>(number, out);
}

/// The sum of the head's 16-bit words, turned round.
quint16 ipChecksum(const char* head)
{
    quint32 sum = 0;
    for (int i = 0; i < IP::HeadSize; i += 2)
        sum += qFromBigEndian<quint16>(head + i);
    while (sum > 0xFFFF)
        sum = (sum >> 16) + (sum & 0xFFFF);
    return quint16(~sum);
}

/// Both sides use the service's port, and the addresses are all this machine's.
void putPacketHeads(CapturedDatagram::Direction direction, int size, char* out)
{
    const quint16 udpSize = quint16(UdpHeadSize + size);
    out[0] = char(IP::VersionAndSize);
    putBig<quint16>(quint16(IP::HeadSize + udpSize), out + 2);
    putBig<quint16>(IP::DontFragment, out + 6);
    out[8] = char(IP::TimeToLive);
    out[9] = char(IP::Udp);
    putBig<quint32>(IP::Loopback, out + 12);
    putBig<quint32>(IP::Loopback, out + 16);
    putBig<quint16>(ipChecksum(out), out + 10);
    char* const udp = out + IP::HeadSize;
    putBig<quint16>(ECServicePort, udp);
    putBig<quint16>(direction == CapturedDatagram::Up ? ECClientPort : ECServicePort, udp + 2);
    putBig<quint16>(udpSize, udp + 4); // and a checksum of 0: none
}

/// Numbers of the file's own records.
class RecordReader {
public:
    explicit RecordReader(bool isSwapped)
        : m_bSwapped(isSwapped)
    {
    }
    quint32 u32(Bytes bytes, std::size_t offset) const
    {
        return m_bSwapped ? big<quint32>(bytes, offset) : Wire::load<quint32>(bytes.data() + offset);
    }
    quint16 u16(Bytes bytes, std::size_t offset) const
    {
        return m_bSwapped ? big<quint16>(bytes, offset) : Wire::load<quint16>(bytes.data() + offset);
    }

private:
    bool m_bSwapped;
};

/// What the file's head says about all that follows.
struct FileForm {
    RecordReader numbers;
    bool isNanoseconds;
    LinkLayer link;
};

std::variant<FileForm, CaptureFault> readFileHead(Bytes file)
{
    if (file.size() < std::size_t(Pcap::FileHeadSize))
        return CaptureFault{
            QStringLiteral("%1 bytes are too few for a capture").arg(qulonglong(file.size()))};
    const auto little = Wire::load<quint32>(file.data());
    if (little == Pcap::NextGenerationMagic)
        return CaptureFault{
            QStringLiteral("it is a pcapng file; \"editcap -F pcap FROM TO\" makes a pcap file of it")};
    const bool isSwapped = little != Pcap::MicrosecondMagic && little != Pcap::NanosecondMagic;
    const quint32 magic = isSwapped ? big<quint32>(file, 0) : little;
    if (magic != Pcap::MicrosecondMagic && magic != Pcap::NanosecondMagic)
        return CaptureFault{QStringLiteral("it is no pcap file")};
    const RecordReader numbers(isSwapped);
    const quint16 version = numbers.u16(file, Pcap::VersionOffset);
    if (version != Pcap::MajorVersion)
        return CaptureFault{
            QStringLiteral("its format has version %1, not %2").arg(version).arg(int(Pcap::MajorVersion))};
    // The upper half says how long the packets' check sums are.
    const auto type = quint16(numbers.u32(file, Pcap::LinkTypeOffset));
    const auto* const link =
        std::find_if(std::begin(LinkLayers), std::end(LinkLayers), [type](const LinkLayer& one) {
            return one.type == type;
        });
    if (link == std::end(LinkLayers))
        return CaptureFault{QStringLiteral("packets of link type %1 cannot be read").arg(type)};
    return FileForm{numbers, magic == Pcap::NanosecondMagic, *link};
}

/// The IP packet within what was captured; empty for anything else.
Bytes ipPacket(Bytes captured, const LinkLayer& link)
{
    if (captured.size() < link.headSize + IP::HeadSize)
        return {};
    if (link.protocolOffset >= 0 && big<quint16>(captured, std::size_t(link.protocolOffset)) != IPv4Protocol)
        return {};
    const Bytes packet = captured.substr(link.headSize);
    const std::size_t size = big<quint16>(packet, 2);
    const bool isIPv4 = quint8(packet[0]) >> 4 == 4;
    if (!isIPv4 || size > packet.size())
        return {};
    return packet.substr(0, size); // Ethernet fills short packets up
}

/// A datagram of the console, without its time; empty for any other packet.
std::optional<CapturedDatagram> consoleDatagram(Bytes packet)
{
    if (packet.size() < IP::HeadSize + UdpHeadSize)
        return std::nullopt;
    const std::size_t headSize = std::size_t(quint8(packet[0]) & 0x0F) * 4;
    const bool isWhole = (big<quint16>(packet, 6) & IP::FragmentMask) == 0;
    if (quint8(packet[9]) != IP::Udp || !isWhole || headSize < IP::HeadSize
        || packet.size() < headSize + UdpHeadSize)
        return std::nullopt;
    const Bytes udp = packet.substr(headSize);
    const std::size_t size = big<quint16>(udp, 4);
    if (size < UdpHeadSize || size > udp.size())
        return std::nullopt;
    const auto port = big<quint16>(udp, 2);
    if (port != ECServicePort && port != ECClientPort)
        return std::nullopt;
    CapturedDatagram datagram;
    datagram.direction = port == ECClientPort ? CapturedDatagram::Up : CapturedDatagram::Down;
    datagram.bytes = QByteArray(udp.data() + UdpHeadSize, int(size) - UdpHeadSize);
    return datagram;
}

} // namespace

QByteArray captureFileHead()
{
    QByteArray head(Pcap::FileHeadSize, '\0');
    Wire::Writer put(head.data());
    put(Pcap::MicrosecondMagic);
    put(Pcap::MajorVersion);
    put(Pcap::MinorVersion);
    put(quint32(0)); // the times are UTC
    put(quint32(0)); // and their accuracy is nobody's business
    put(Pcap::LongestRecord);
    put(quint32(Pcap::RawIP));
    return head;
}

bool appendCaptureRecord(
    CapturedDatagram::Direction direction, std::chrono::microseconds time, const char* bytes, int size,
    QByteArray& out)
{
    if (size < 0 || size > LargestDatagram)
        return false;
    constexpr int headsSize = Pcap::RecordHeadSize + IP::HeadSize + UdpHeadSize;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const auto packetSize = quint32(IP::HeadSize + UdpHeadSize + size);
    char heads[headsSize] = {};
    Wire::Writer put(heads);
    put(quint32(seconds.count()));
    put(quint32((time - seconds).count()));
    put(packetSize); // of it in the file
    put(packetSize); // on the wire
    putPacketHeads(direction, size, heads + Pcap::RecordHeadSize);
    out.append(heads, headsSize);
    out.append(bytes, size);
    return true;
}

std::variant<Capture, CaptureFault> readCapture(const QByteArray& file)
{
    Bytes rest(file.constData(), std::size_t(file.size()));
    const auto head = readFileHead(rest);
    if (const auto* fault = std::get_if<CaptureFault>(&head))
        return *fault;
    const auto& form = std::get<FileForm>(head);
    rest.remove_prefix(Pcap::FileHeadSize);
    Capture capture;
    while (rest.size() >= std::size_t(Pcap::RecordHeadSize)) {
        const std::chrono::seconds seconds(form.numbers.u32(rest, 0));
        const quint32 fraction = form.numbers.u32(rest, 4);
        const quint32 size = form.numbers.u32(rest, 8);
        if (size > Pcap::LongestRecord)
            return CaptureFault{QStringLiteral("packet %1 would have %2 bytes: the file is damaged")
                                    .arg(capture.datagrams.size() + capture.skipped + 1)
                                    .arg(size)};
        if (size > rest.size() - Pcap::RecordHeadSize)
            break;
        auto datagram = consoleDatagram(ipPacket(rest.substr(Pcap::RecordHeadSize, size), form.link));
        rest.remove_prefix(Pcap::RecordHeadSize + size);
        if (!datagram) {
            ++capture.skipped;
            continue;
        }
        constexpr quint32 nanosecondsInMicrosecond = 1000;
        datagram->time = seconds
            + std::chrono::microseconds(form.isNanoseconds ? fraction / nanosecondsInMicrosecond : fraction);
        capture.datagrams.push_back(std::move(*datagram));
    }
    capture.isCutOff = !rest.empty();
    return capture;
}

std::variant<Capture, CaptureFault> loadCapture(const QString& path)
{
    constexpr qint64 largestFile = 1 << 30;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return CaptureFault{file.errorString()};
    if (file.size() >= largestFile)
        return CaptureFault{QStringLiteral("it is larger than 1 GiB")};
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return CaptureFault{file.errorString()};
    return readCapture(content);
}

} // namespace Orvane::ConsolePanel

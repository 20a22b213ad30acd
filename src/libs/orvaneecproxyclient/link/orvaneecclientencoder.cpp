#include "orvaneecclientencoder.h"

#include "log_p.h"

#include <atomic>
#include <limits>
#include <type_traits>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

/// What a file pack is for; a byte of its own says which.
enum class PackTag { None, Read, Write };

PackTag packTag(unsigned selector)
{
    switch (selector) {
    case 0:
        return PackTag::Read;
    case 1:
        return PackTag::Write;
    default:
        return PackTag::None;
    }
}

/// Makes `out` exactly `size` bytes that are its own, in the memory it has where that suffices.
char* claim(QByteArray& out, int size)
{
    if (out.size() != size) {
        if (!out.isDetached()) {
            out = QByteArray(size, Qt::Uninitialized);
        } else {
            out.reserve(size); // or resize() gives memory back that the next, longer message asks for again
            out.resize(size);
        }
    }
    return out.data();
}

} // namespace

class ECClientEncoderPrivate {
public:
    /// The next number of the process: 1 to 65534, then 0. 65535 never occurs.
    static quint16 nextSequence()
    {
        constexpr quint16 lastSequence = 65534;
        quint16 current = m_nECRequestSequence.load(std::memory_order_relaxed);
        quint16 next = 0;
        do {
            next = current == lastSequence ? quint16(0) : static_cast<quint16>(current + 1);
        } while (!m_nECRequestSequence.compare_exchange_weak(current, next, std::memory_order_relaxed));
        return next;
    }

    /// Writes head, tag and length, and returns where the value of `valueSize` bytes goes.
    template <eECDownMessageTag Tag> char* begin(int valueSize, QByteArray& out) const
    {
        constexpr DownMessageShape shape = downMessageShape(Tag);
        constexpr bool lengthCounts = shape.length == DownMessageShape::IsValueSize;
        constexpr bool contentCounts = shape.content == DownMessageShape::CountsValue;

        ECProtocolHead head = m_sendHead;
        head.Sequence = nextSequence();
        // Longer values than 16 bits can say are cut in the fields, not in the datagram.
        head.ContentLength = static_cast<quint16>(ECTLSize + (contentCounts ? valueSize : 0));
        ECProtocolTL tl;
        tl.Tag = Tag;
        tl.Length = static_cast<quint16>(lengthCounts ? valueSize : 0);

        char* const bytes = claim(out, ECValueOffset + valueSize);
        Wire::write(head, bytes);
        Wire::write(tl, bytes + ECHeadSize);
        return bytes + ECValueOffset;
    }

    template <eECDownMessageTag Tag, typename Record>
    bool buildRecord(const Record& record, QByteArray& out) const
    {
        constexpr DownMessageShape shape = downMessageShape(Tag);
        static_assert(shape.valueSize == sizeof(Record));
        if constexpr (std::is_same_v<Record, quint8>)
            *begin<Tag>(shape.valueSize, out) = static_cast<char>(record);
        else
            Wire::write(record, begin<Tag>(shape.valueSize, out));
        return true;
    }

    template <eECDownMessageTag Tag, typename Record>
    bool buildRecord(const std::shared_ptr<Record>& record, QByteArray& out) const
    {
        if (!record) {
            nextSequence();
            ecWarning(
                lcCodec, "Orvane ec client encoder builds no request %u without its record.", unsigned(Tag));
            return false;
        }
        return buildRecord<Tag>(*record, out);
    }

    template <eECDownMessageTag Tag> bool buildBytes(const QByteArray& bytes, QByteArray& out) const
    {
        static_assert(downMessageShape(Tag).valueSize < 0);
        // `bytes` and `out` may be one array: the copy keeps the bytes.
        const QByteArray held = bytes; // NOLINT(performance-unnecessary-copy-initialization)
        char* const value = begin<Tag>(held.size(), out);
        std::memcpy(value, held.constData(), std::size_t(held.size()));
        return true;
    }

    template <eECDownMessageTag Tag> bool getSingleTLRequestWithoutValue(QByteArray& out) const
    {
        static_assert(downMessageShape(Tag).valueSize == 0);
        begin<Tag>(0, out);
        return true;
    }

    /// Writes all of a file pack but what stands between its zero length and its chunk.
    /// @return where that is; null, with `out` untouched, where no array can hold the pack
    char* beginFilePack(
        PackTag tag, quint16 packIndex, quint16 packCount, int headerSize, const QByteArray& chunk,
        quint16 sequence, QByteArray& out) const
    {
        const qint64 contentLength = FilePack::DataPackOverhead + qint64(headerSize) + chunk.size();
        if (contentLength > std::numeric_limits<int>::max() / 2) {
            ecWarning(
                lcCodec, "Orvane ec client encoder builds no file pack of %lld bytes: too long.",
                static_cast<long long>(contentLength));
            return nullptr;
        }
        ECProtocolHead head = m_sendHead;
        head.Sequence = sequence;
        head.ContentLength = static_cast<quint16>(contentLength);
        ECProtocolTL tl;
        tl.Tag = tag == PackTag::Write ? WriteFile : ReadFile;

        // `chunk` and `out` may be one array: the copy keeps the bytes.
        const QByteArray held = chunk; // NOLINT(performance-unnecessary-copy-initialization)
        char* const bytes = claim(out, ECHeadSize + int(contentLength));
        Wire::store<quint16>(packIndex, bytes);
        Wire::store<quint16>(packCount, bytes + sizeof(packIndex));
        Wire::write(head, bytes + FilePack::HeadOffset);
        Wire::write(tl, bytes + FilePack::TLOffset);
        std::memcpy(bytes + FilePack::DataOffset + headerSize, held.constData(), std::size_t(held.size()));
        return bytes + FilePack::DataOffset;
    }

    const ECProtocolHead m_sendHead{};

private:
    static std::atomic<quint16> m_nECRequestSequence;
};

std::atomic<quint16> ECClientEncoderPrivate::m_nECRequestSequence{0};

} // namespace Internal

ECClientEncoder::ECClientEncoder(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Internal::ECClientEncoderPrivate>())
{
}

ECClientEncoder::~ECClientEncoder() = default;

bool ECClientEncoder::getECButtonColorRequest(const std::shared_ptr<ECButtonColor>& color, QByteArray& out)
{
    return d->buildRecord<UpdateECButtonColor>(color, out);
}

bool ECClientEncoder::getECOledTextRequest(const std::shared_ptr<ECOLEDText>& text, QByteArray& out)
{
    return d->buildRecord<UpdateECOledText>(text, out);
}

bool ECClientEncoder::getECTBarValueRequest(const std::shared_ptr<ECTBarValue>& value, QByteArray& out)
{
    return d->buildRecord<UpdateTBarValue>(value, out);
}

bool ECClientEncoder::getLockTBarRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<LockTBar>(out);
}

bool ECClientEncoder::getUnlockTBarRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<UnlockTBar>(out);
}

bool ECClientEncoder::getLockedTBarRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<ReadLockedTBar>(out);
}

bool ECClientEncoder::getLockKeyboardRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<LockKeyboard>(out);
}

bool ECClientEncoder::getUnlockedKeyboardRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<UnlockKeyboard>(out);
}

bool ECClientEncoder::getLockedKeyboardRequest(QByteArray& out)
{
    return d->getSingleTLRequestWithoutValue<ReadLockedKeyboard>(out);
}

bool ECClientEncoder::getDVIInSignalRequest(int index, QByteArray& out)
{
    return d->buildRecord<ReadDVIInSignal>(DVIInSignalRead{static_cast<quint8>(index)}, out);
}

bool ECClientEncoder::getCloseAllButtonLEDRequest(const std::shared_ptr<LightControl>& light, QByteArray& out)
{
    return d->buildRecord<ControlLight>(light, out);
}

bool ECClientEncoder::getScreenLuminanceRequest(
    const std::shared_ptr<ScreenLuminance>& luminance, QByteArray& out)
{
    return d->buildRecord<UpdateScreenLuminance>(luminance, out);
}

bool ECClientEncoder::getPeripheralControlRequest(
    const std::shared_ptr<PeripheralControl>& control, QByteArray& out)
{
    return d->buildRecord<ControlPeripheral>(control, out);
}

bool ECClientEncoder::getSwitchSourceRequest(MVRSignalControl control, QByteArray& out)
{
    return d->buildRecord<ControlMVRSignal>(control, out);
}

bool ECClientEncoder::getUpdateSystemTime(const QString& text, QByteArray& out)
{
    return d->buildBytes<UpdateSystemTime>(text.toLatin1(), out);
}

bool ECClientEncoder::getUpdateSystemIP(const QString& text, QByteArray& out)
{
    return d->buildBytes<UpdateNetworkInfo>(text.toLatin1(), out);
}

bool ECClientEncoder::getFileOperateFirstPackRequest(
    eFlieOperType, quint16 packIndex, quint16 packCount, quint8 fileType, quint32 fileSize, quint32 reserved,
    quint16 nameLength, const QString& name, const QByteArray& chunk, QByteArray& out)
{
    const quint16 sequence = d->nextSequence();
    const Internal::PackTag tag = Internal::packTag(fileType);
    if (tag == Internal::PackTag::None) {
        ecWarning(lcCodec, "Orvane ec client encoder builds no first pack for file type %u.", fileType);
        return false;
    }
    constexpr int fixedHeaderSize = FilePack::NameOffset - FilePack::DataOffset;
    char* const header =
        d->beginFilePack(tag, packIndex, packCount, fixedHeaderSize + nameLength, chunk, sequence, out);
    if (!header)
        return false;
    Wire::Writer put(header);
    put(fileType);
    put(fileSize);
    put(reserved);
    put(nameLength);
    const QByteArray latin1 = name.toLatin1().leftJustified(nameLength, '\0', true);
    put.raw(latin1.constData(), nameLength);
    return false; // stated so: no caller may take it for a sign of success
}

bool ECClientEncoder::getFileOperateRequest(
    eFlieOperType operation, quint16 packIndex, quint16 packCount, const QByteArray& chunk, QByteArray& out)
{
    const quint16 sequence = d->nextSequence();
    const Internal::PackTag tag = Internal::packTag(operation);
    if (tag == Internal::PackTag::None) {
        ecWarning(lcCodec, "Orvane ec client encoder builds no pack for file operation %u.", operation);
        return false;
    }
    d->beginFilePack(tag, packIndex, packCount, 0, chunk, sequence, out);
    return false; // as for the first pack
}

bool ECClientEncoder::getReqECDeviceIP(quint8 index, QByteArray& out)
{
    return d->buildRecord<ReadECDeviceIPData>(index, out);
}

bool ECClientEncoder::getResECDeviceIP(const QByteArray& bytes, QByteArray& out)
{
    return d->buildBytes<UpdateECDeviceIPData>(bytes, out);
}

bool ECClientEncoder::getRestartConsolePack(quint8 value, QByteArray& out)
{
    return d->buildRecord<RestartConsole>(value, out);
}

bool ECClientEncoder::getKeyboardMouseEventListenReq(bool listen, QByteArray& out)
{
    return d->buildRecord<ControlKeyboard>(quint8(listen ? 1 : 0), out);
}

bool ECClientEncoder::getUpdateDVISignalStatusPack(
    const std::shared_ptr<DVIInSignal>& signal, QByteArray& out)
{
    return d->buildRecord<UpdateDVISignalStatus>(signal, out);
}

bool ECClientEncoder::getRestartMCUPack(quint8 value, QByteArray& out)
{
    return d->buildRecord<ResetMCU>(value, out);
}

bool ECClientEncoder::getChangeIPModeRequestPack(const QByteArray& bytes, QByteArray& out)
{
    return d->buildBytes<ChangeIPMode>(bytes, out);
}

bool ECClientEncoder::getControlPeripheralStateRequest(
    const std::shared_ptr<PeripheralControlVisibleState>& state, QByteArray& out)
{
    return d->buildRecord<ControlPeripheralState>(state, out);
}

} // namespace Orvane::ECProxy::Client

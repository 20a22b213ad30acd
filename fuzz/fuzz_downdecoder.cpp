/// The console's side: any bytes as a datagram of the library.

#include "fuzztarget.h"

#include "consolerecorder.h"
#include "downdescription.h"
#include "orvaneecclientencoder.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace Orvane::Fuzz {

using namespace ECProxy::Client;

namespace {

ECClientEncoder* encoder()
{
    static ECClientEncoder s_encoder;
    return &s_encoder;
}

/// One that outlives many inputs: files arrive in packs, and sequence numbers follow each other.
std::unique_ptr<ConsolePanel::ConsoleRecorder>& recorder()
{
    static auto s_pRecorder = std::make_unique<ConsolePanel::ConsoleRecorder>();
    return s_pRecorder;
}

template <typename Record> std::shared_ptr<Record> anyRecord(Random& random)
{
    auto record = std::make_shared<Record>();
    const Bytes bytes = random.bytes(sizeof(Record));
    std::memcpy(static_cast<void*>(record.get()), bytes.data(), sizeof(Record));
    return record;
}

QByteArray anyBytes(Random& random, std::size_t limit)
{
    const Bytes bytes = random.bytes(random.below(limit));
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
}

void makeRequest(Random& random, QByteArray& out)
{
    const quint8 byte = random.byte();
    const auto packs = quint16(1 + random.below(4));
    const QString name = QString::fromLatin1(anyBytes(random, 20));
    switch (random.below(19)) {
    case 0:
        encoder()->getECButtonColorRequest(anyRecord<ECButtonColor>(random), out);
        break;
    case 1:
        encoder()->getECOledTextRequest(anyRecord<ECOLEDText>(random), out);
        break;
    case 2:
        encoder()->getECTBarValueRequest(anyRecord<ECTBarValue>(random), out);
        break;
    case 3:
        encoder()->getLockTBarRequest(out);
        break;
    case 4:
        encoder()->getDVIInSignalRequest(byte, out);
        break;
    case 5:
        encoder()->getCloseAllButtonLEDRequest(anyRecord<LightControl>(random), out);
        break;
    case 6:
        encoder()->getScreenLuminanceRequest(anyRecord<ScreenLuminance>(random), out);
        break;
    case 7:
        encoder()->getPeripheralControlRequest(anyRecord<PeripheralControl>(random), out);
        break;
    case 8:
        encoder()->getSwitchSourceRequest({byte}, out);
        break;
    case 9:
        encoder()->getUpdateSystemTime(name, out);
        break;
    case 10:
        encoder()->getUpdateSystemIP(name, out);
        break;
    case 11:
        encoder()->getFileOperateFirstPackRequest(
            OpeWriteFile, 0, packs, byte % 2, random.below(4000), 0, quint16(name.size()), name,
            anyBytes(random, 1000), out);
        break;
    case 12:
        encoder()->getFileOperateRequest(
            OpeWriteFile, quint16(random.below(packs + 1u)), packs, anyBytes(random, 1000), out);
        break;
    case 13:
        encoder()->getReqECDeviceIP(byte, out);
        break;
    case 14:
        encoder()->getResECDeviceIP(anyBytes(random, 28), out);
        break;
    case 15:
        encoder()->getChangeIPModeRequestPack(anyBytes(random, 4), out);
        break;
    case 16:
        encoder()->getUpdateDVISignalStatusPack(anyRecord<DVIInSignal>(random), out);
        break;
    case 17:
        encoder()->getKeyboardMouseEventListenReq(byte % 2, out);
        break;
    default:
        encoder()->getControlPeripheralStateRequest(anyRecord<PeripheralControlVisibleState>(random), out);
        break;
    }
}

} // namespace

void setUp(int&, char**) { }

void run(const Bytes& input)
{
    const auto* const bytes = reinterpret_cast<const char*>(input.data());
    const quint64 before = recorder()->received() + recorder()->unreadable();
    const auto reception = recorder()->receive(bytes, int(input.size()));
    check(recorder()->received() + recorder()->unreadable() == before + 1, "a datagram was not counted");

    if (const auto* read = std::get_if<ConsolePanel::DownDatagram>(&reception.datagram)) {
        check(input.size() >= std::size_t(ECValueOffset), "a datagram without a tag was read");
        check(!ConsolePanel::describe(*read).contains(QLatin1Char('\n')), "a description has two lines");
        const QByteArray json = QJsonDocument(ConsolePanel::toJson(*read)).toJson();
        check(QJsonDocument::fromJson(json).isObject(), "a description is no JSON");
    } else {
        const auto& refused = std::get<ConsolePanel::Unreadable>(reception.datagram);
        check(!refused.reason.isEmpty(), "a datagram was refused without a reason");
    }
    // What keeps whole files would keep all of them.
    constexpr quint64 usualSession = 5000;
    if (before >= usualSession)
        recorder() = std::make_unique<ConsolePanel::ConsoleRecorder>();
}

Bytes makeInput(Random& random)
{
    if (random.chance(5))
        return random.bytes(random.below(120));
    QByteArray datagram;
    makeRequest(random, datagram);
    Bytes input(datagram.begin(), datagram.end());
    if (random.chance(50))
        mutate(input, random);
    return input;
}

std::size_t caseCount(const Bytes&)
{
    return 1;
}

void tearDown()
{
    recorder().reset();
}

} // namespace Orvane::Fuzz

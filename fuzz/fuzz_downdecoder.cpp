/// The console's side: any bytes as a datagram of the library.

#include "fuzztarget.h"

#include "consolerecorder.h"
#include "downdescription.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace Orvane::Fuzz {

using namespace ECProxy::Client;

namespace {

/// One that outlives many inputs: files arrive in packs, and sequence numbers follow each other.
std::unique_ptr<ConsolePanel::ConsoleRecorder>& recorder()
{
    static auto s_pRecorder = std::make_unique<ConsolePanel::ConsoleRecorder>();
    return s_pRecorder;
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

void tearDown()
{
    recorder().reset();
}

} // namespace Orvane::Fuzz

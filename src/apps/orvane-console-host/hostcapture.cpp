#include "hostcapture.h"

#include "commandtable.h"
#include "ecmanager.h"
#include "eventwriter.h"
#include "orvaneecclientdecoder.h"

namespace Orvane::ConsoleHost {

using ConsolePanel::CapturedDatagram;
using ConsolePanel::CaptureWriter;
using ECProxy::Client::ECClientDecoder;
using ECProxy::Client::ECManager;

namespace {

void observeReports(const ECClientDecoder::DatagramObserver& observer)
{
    const ECManager* const manager = ECManager::instance();
    if (const auto decoder = manager ? manager->ecClientDecoder().lock() : nullptr)
        decoder->setDatagramObserver(observer);
}

} // namespace

HostCapture::HostCapture(EventWriter& events)
    : m_events(events)
{
}

HostCapture::~HostCapture()
{
    stop();
}

QString HostCapture::start(const QString& path)
{
    if (m_pWriter)
        return QStringLiteral("%1 is being captured already").arg(m_pWriter->path());
    auto writer = std::make_shared<CaptureWriter>();
    if (!writer->open(path))
        return QStringLiteral("%1 cannot be written: %2").arg(path, writer->errorText());
    QObject::connect(
        writer.get(), &CaptureWriter::signalFailed, &m_events,
        [&events = m_events, path](const QString& text) {
            qWarning("The capture %s has ended: %s", qUtf8Printable(path), qUtf8Printable(text));
            events.writeEvent(
                QStringLiteral("captureFailed"),
                {{QStringLiteral("file"), path}, {QStringLiteral("text"), text}});
        });
    m_pWriter = std::move(writer);
    m_nRoute = ECManager::instance()->addSendRoute([writer = m_pWriter](const QByteArray& datagram) {
        writer->add(CapturedDatagram::Down, datagram.constData(), datagram.size());
        return true;
    });
    watchReports();
    return {};
}

void HostCapture::watchReports()
{
    if (m_pWriter)
        observeReports([writer = m_pWriter](const QByteArray& datagram) {
            writer->add(CapturedDatagram::Up, datagram.constData(), datagram.size());
        });
}

QJsonObject HostCapture::stop()
{
    if (!m_pWriter)
        return {};
    observeReports({});
    if (ECManager* const manager = ECManager::instance())
        manager->removeSendRoute(m_nRoute);
    const auto writer = std::exchange(m_pWriter, nullptr);
    const CaptureWriter::Summary summary = writer->close();
    if (summary.lost != 0)
        qWarning("The capture %s lacks %llu datagrams.", qUtf8Printable(writer->path()), summary.lost);
    QJsonObject members{
        {QStringLiteral("file"), writer->path()},
        {QStringLiteral("datagrams"), qint64(summary.datagrams)},
        {QStringLiteral("lost"), qint64(summary.lost)}};
    if (!summary.errorText.isEmpty())
        members.insert(QStringLiteral("text"), summary.errorText);
    return members;
}

void addCaptureCommands(CommandTable& table, HostCapture& capture)
{
    table.add(
        "startCapture", "writes every datagram from and to the console to a pcap file",
        {Parameter::text("file")},
        [&capture](const Arguments& arguments) { return Answer::of(capture.start(arguments.text("file"))); });
    table.add("stopCapture", "closes the file", {}, [&capture] {
        return capture.isRunning() ? Answer::done(capture.stop())
                                   : Answer::refused(QStringLiteral("nothing is being captured"));
    });
}

} // namespace Orvane::ConsoleHost

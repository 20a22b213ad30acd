/// The library's own ways, as a host sets them up.

#include "keyreport.h"
#include "subject.h"

#include "bareplatform.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "orvaneecclientchannelmanager.h"
#include "orvaneecclientencoder.h"

#include <QCoreApplication>

#include <cstdio>

namespace Orvane::Benchmark {

using namespace ECProxy::Client;

namespace {

/// An application needs to know its arguments for as long as it lives.
class Application {
public:
    QCoreApplication* operator->() { return &m_app; }
    QCoreApplication& operator*() { return m_app; }

private:
    int m_nArguments = 1;
    char m_name[11] = "bench_link";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_app{m_nArguments, m_arguments};
};

const QString& consoleAddress()
{
    static const QString s_strAddress = QStringLiteral("127.0.0.1");
    return s_strAddress;
}

} // namespace

int serveLink(Duty duty, SharedState& shared)
{
    Application app;
    ECClientChannelManager channel;
    ECClientEncoder encoder;
    QByteArray datagram; // of the decoder's thread
    channel.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray& value) {
        if (duty == Duty::Answer && value.size() == int(sizeof(ECButtonOperState))) {
            const auto color = std::make_shared<ECButtonColor>();
            color->ButtonKey = Wire::readButtonOperState(value.constData()).ButtonKey;
            color->ECKey = quint16(color->ButtonKey);
            color->G = 255;
            color->brightness = 100;
            encoder.getECButtonColorRequest(color, datagram);
            channel.sendDownTLVRequest(datagram);
        }
        shared.handled.fetch_add(1, std::memory_order_relaxed);
        return true;
    });
    channel.openChannel(consoleAddress());
    return app->exec();
}

int serveFullWay(SharedState& shared)
{
    Application app;
    const auto keyboard = EC::loadKeyboardFile(QStringLiteral(EXAMPLE_KEYBOARD)).config;
    if (!keyboard) {
        std::fprintf(stderr, "%s cannot be read\n", EXAMPLE_KEYBOARD);
        return 2;
    }
    TestSupport::BareDeviceList devices;
    ECClientChannelManager channel;
    channel.openChannel(consoleAddress());
    ECManager* const manager = ECManager::instance();
    channel.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag& tag, const QByteArray& value) {
        const bool accepted = manager->upTLVDecodeFinished(tag, value);
        if (accepted)
            shared.handled.fetch_add(1, std::memory_order_relaxed);
        return accepted;
    });
    manager->setECClientDecoder(channel.ecClientDecoder());
    manager->addSendDownTLVRequstCB(
        [&](const QByteArray& datagram) { return channel.sendDownTLVRequest(datagram); });
    manager->init(keyboard);
    // The focused field of a real host would take the text here.
    QString typed;
    QObject::connect(
        manager, &ECManager::signalStandardKeyPressed, &*app,
        [&typed](unsigned, const QString& text) { typed = text; });
    return app->exec();
}

} // namespace Orvane::Benchmark

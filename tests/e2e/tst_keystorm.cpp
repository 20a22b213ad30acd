#include "bareplatform.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "logcapture.h"
#include "orvaneecclientchannelmanager.h"

#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryFile>
#include <QTest>

#include <atomic>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;

namespace {

constexpr int PressCount = 100000;
constexpr int RunLimitMs = 240000;
constexpr int ReadyLimitMs = 20000;

/// Every digit in turn, each down and up, as fast as the answers come. What is ahead of them fits the
/// smallest socket buffer of a Linux machine.
constexpr char Storm[] = "storm 93 94 95 96 97 98 99 100 101 102 count 100000 window 200\n"
                         "expect received 200000 within 0\n"
                         "expect missing 0 within 0\n";

} // namespace

/// The whole way of the library, from the port to the key's light and the typed text, against the console in
/// a process of its own that presses keys at its full speed.
class KeyStormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPressOfAStormIsTypedOnceInItsOrder();
};

void KeyStormTest::everyPressOfAStormIsTypedOnceInItsOrder()
{
    const auto keyboard = EC::loadKeyboardFile(QStringLiteral(EXAMPLE_KEYBOARD)).config;
    QVERIFY(keyboard);
    QTemporaryFile script;
    QVERIFY(script.open() && script.write(Storm) > 0 && script.flush());

    TestSupport::BareDeviceList devices;
    ECClientChannelManager channel;
    ECManager* const manager = ECManager::instance();
    {
        const TestSupport::LogCapture log;
        channel.openChannel(QStringLiteral("127.0.0.1"));
        QVERIFY(log.waitFor("Orvane ec client receiver buffer: ", ReadyLimitMs));
    }
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false"));
    manager->addSendDownTLVRequstCB(
        [&channel](const QByteArray& datagram) { return channel.sendDownTLVRequest(datagram); });
    manager->init(keyboard);

    QString typed; // of the decoder's thread, until the channel is closed
    typed.reserve(PressCount);
    connect(
        manager, &ECManager::signalStandardKeyPressed, manager,
        [&typed](unsigned, const QString& text) { typed += text; }, Qt::DirectConnection);
    std::atomic<int> clicks{0};
    connect(manager, &ECManager::signalECKeyClicked, this, [&clicks](bool, unsigned short) { ++clicks; });
    // Last, so that what stands above is known to the decoder's thread.
    channel.registerUpTLVDecodeFinishedCB([manager](const eECUpMessageTag& tag, const QByteArray& value) {
        return manager->upTLVDecodeFinished(tag, value);
    });

    QProcess console;
    console.setProcessChannelMode(QProcess::MergedChannels);
    console.start(
        QStringLiteral(SIMULATOR_BINARY),
        {QStringLiteral("--quiet"), QStringLiteral("--script"), script.fileName()});
    const bool ended = QTest::qWaitFor([&] { return console.state() == QProcess::NotRunning; }, RunLimitMs);
    channel.closeChannel();
    const QByteArray told = console.readAll().right(2000);
    QVERIFY2(ended && console.exitStatus() == QProcess::NormalExit && console.exitCode() == 0, told);

    QCOMPARE(typed.size(), PressCount);
    for (int i = 0; i < typed.size(); ++i)
        QCOMPARE(typed.at(i), QChar('0' + i % 10));
    QTRY_COMPARE_WITH_TIMEOUT(clicks.load(), PressCount, ReadyLimitMs);
    ECManager::deleteInstance();
}

QTEST_GUILESS_MAIN(KeyStormTest)
#include "tst_keystorm.moc"

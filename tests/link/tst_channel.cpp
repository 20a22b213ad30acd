#include "logcapture.h"
#include "orvaneecclientchannelmanager.h"
#include "orvaneecclientdecoder.h"
#include "orvaneecclientsender.h"

#include <QNetworkDatagram>
#include <QtTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <future>
#include <thread>

using namespace Orvane::ECProxy::Client;
using Orvane::TestSupport::LogCapture;

namespace {

constexpr int WaitLimitMs = 5000;
constexpr int CloseLimitMs = 1200;

/// A plain UDP socket, as another process would have it.
class Socket {
public:
    /// @param shared as the service binds: the port may be bound elsewhere too
    explicit Socket(const char* address, quint16 port, bool shared = true)
        : m_fd(socket(AF_INET, SOCK_DGRAM, 0))
    {
        const int on = 1;
        if (shared)
            setsockopt(m_fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
        const timeval limit{WaitLimitMs / 1000, 0};
        setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
        const sockaddr_in local = addressOf(address, port);
        m_bound = bind(m_fd, reinterpret_cast<const sockaddr*>(&local), sizeof(local)) == 0;
    }
    ~Socket() { close(m_fd); }
    Q_DISABLE_COPY(Socket)

    bool isBound() const { return m_bound; }

    /// Sends to the library, as the service does.
    bool report(const QByteArray& bytes, const char* libraryAddress = "127.0.0.1")
    {
        const sockaddr_in target = addressOf(libraryAddress, ECClientPort);
        return sendto(
                   m_fd, bytes.constData(), std::size_t(bytes.size()), 0,
                   reinterpret_cast<const sockaddr*>(&target), sizeof(target))
            == bytes.size();
    }

    /// The next datagram; a null array when none comes.
    QByteArray receive()
    {
        QByteArray bytes(65536, Qt::Uninitialized);
        sockaddr_in sender{};
        socklen_t senderSize = sizeof(sender);
        const ssize_t size = recvfrom(
            m_fd, bytes.data(), std::size_t(bytes.size()), 0, reinterpret_cast<sockaddr*>(&sender),
            &senderSize);
        m_senderPort = ntohs(sender.sin_port);
        return size < 0 ? QByteArray() : bytes.left(int(size));
    }

    quint16 senderPort() const { return m_senderPort; }

private:
    static sockaddr_in addressOf(const char* address, quint16 port)
    {
        sockaddr_in result{};
        result.sin_family = AF_INET;
        result.sin_port = htons(port);
        inet_pton(AF_INET, address, &result.sin_addr);
        return result;
    }

    int m_fd;
    bool m_bound = false;
    quint16 m_senderPort = 0;
};

class Service : public Socket {
public:
    Service()
        : Socket("127.0.0.1", ECServicePort)
    {
    }
};

QByteArray press(quint32 key, int valueSize = 5)
{
    QByteArray datagram =
        QByteArray::fromHex("55ee55ee01000001 00000900 c9000500") + QByteArray(valueSize, '\0');
    Wire::store<quint32>(key, datagram.data() + 16);
    return datagram;
}

/// Remembers the keys of the reports it gets.
struct Keys {
    UpTLVDecodeFinishedCallbackType callback()
    {
        return [this](const eECUpMessageTag&, const QByteArray& value) {
            if (Wire::load<quint32>(value.constData()) != quint32(count.load()))
                inOrder = false;
            valueSize = value.size();
            ++count;
            return true;
        };
    }
    std::atomic<int> count{0};
    std::atomic<int> valueSize{0};
    std::atomic<bool> inOrder{true};
};

/// A channel whose receive socket is ready.
bool open(ECClientChannelManager& channel, const LogCapture& log)
{
    const int before = log.count("Orvane ec client receiver buffer: ");
    return channel.openChannel("127.0.0.1")
        && QTest::qWaitFor(
               [&] { return log.count("Orvane ec client receiver buffer: ") > before; }, WaitLimitMs);
}

} // namespace

class tst_channel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBurstOfTwoThreadsArrivesWholeEachInItsOrder()
    {
        Service service;
        QVERIFY(service.isBound());
        ECClientChannelManager channel;
        QVERIFY(channel.openChannel("127.0.0.1"));
        std::vector<std::thread> threads;
        for (char name : {'a', 'b'}) {
            threads.emplace_back([&channel, name] {
                for (char i = 0; i < 50; ++i)
                    channel.sendDownTLVRequest(QByteArray(1, name) + i);
            });
        }
        for (auto& thread : threads)
            thread.join();
        QMap<char, char> next;
        for (int i = 0; i < 100; ++i) {
            const QByteArray bytes = service.receive();
            QCOMPARE(bytes.size(), 2);
            QCOMPARE(service.senderPort(), ECServicePort);
            QCOMPARE(int(bytes[1]), int(next[bytes[0]]++));
        }
    }

    void reportsArriveInOrderAndTheLongestWhole()
    {
        LogCapture log;
        Keys keys;
        Service service;
        ECClientChannelManager channel;
        channel.registerUpTLVDecodeFinishedCB(keys.callback());
        QVERIFY(open(channel, log));
        for (int i = 0; i < 5000; ++i) {
            QVERIFY(service.report(press(quint32(i))));
            // As many in flight as the smallest usual receive buffer holds: each pause costs a step of the
            // wait.
            if (i % 250 == 249)
                QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), i + 1, WaitLimitMs);
        }
        QVERIFY(keys.inOrder);
        constexpr int longest = 65507;
        QVERIFY(service.report(press(5000, longest - 16)));
        QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), 5001, WaitLimitMs);
        QCOMPARE(keys.valueSize.load(), longest - 16);
    }

    void closingIsPromptAndTheChannelOpensAgain()
    {
        LogCapture log;
        Keys keys;
        Service service;
        ECClientChannelManager channel;
        channel.registerUpTLVDecodeFinishedCB(keys.callback()); // before there is a channel; stays for all
        for (int round = 0; round < 3; ++round) {
            QVERIFY(open(channel, log));
            QVERIFY(channel.openChannel("127.0.0.1")); // open already: changes nothing
            QVERIFY(channel.sendDownTLVRequest("request"));
            QCOMPARE(service.receive(), QByteArray("request"));
            QVERIFY(service.report(press(quint32(round))));
            QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), round + 1, WaitLimitMs);
            const std::weak_ptr<ECClientDecoder> decoder = channel.ecClientDecoder();
            QVERIFY(!decoder.expired());

            QElapsedTimer closing;
            closing.start();
            QVERIFY(channel.closeChannel());
            QVERIFY(closing.elapsed() < CloseLimitMs);
            QVERIFY(decoder.expired());
            QVERIFY(!channel.ecClientDecoder());
        }
        QVERIFY(keys.inOrder);
        for (const char* line :
             {"Orvane ec client sender start send", "Orvane ec client sender stop send",
              "Orvane ec client receiver start receive", "Orvane ec server receiver stop receive",
              "Orvane ec client decoder thread start", "Orvane ec client decoder thread stop"})
            QCOMPARE(log.count(line), 3);
    }

    // Both share port 35555; the kernel prefers the socket that is bound to the very address.
    void theServiceGetsTheRequestsWhicheverStartsFirst_data()
    {
        QTest::addColumn<bool>("serviceFirst");
        QTest::newRow("service first") << true;
        QTest::newRow("channel first") << false;
    }

    void theServiceGetsTheRequestsWhicheverStartsFirst()
    {
        QFETCH(bool, serviceFirst);
        LogCapture log;
        std::unique_ptr<Service> service;
        ECClientChannelManager channel;
        if (serviceFirst)
            service = std::make_unique<Service>();
        QVERIFY(open(channel, log));
        if (!serviceFirst) {
            // Without a service our own send socket is the one that gets them, silently.
            for (int i = 0; i < 100; ++i)
                QVERIFY(channel.sendDownTLVRequest("to nobody"));
            service = std::make_unique<Service>();
        }
        QVERIFY(service->isBound());
        QVERIFY(channel.sendDownTLVRequest("request"));
        QByteArray received = service->receive();
        while (received == "to nobody") // was still queued when the service came
            received = service->receive();
        QCOMPARE(received, QByteArray("request"));
        QVERIFY(!log.contains("has filed"));
        QVERIFY(!log.contains("has failed"));
    }

    void portsThatAreTakenAreToldAndCostNothing()
    {
        LogCapture log;
        Socket sendPort("0.0.0.0", ECServicePort, false);
        Socket receivePort("0.0.0.0", ECClientPort, false);
        QVERIFY(sendPort.isBound() && receivePort.isBound());
        ECClientChannelManager channel;
        QVERIFY(channel.openChannel("127.0.0.1"));
        QVERIFY(log.waitFor("Orvane ec client sender bind has filed : "));
        QVERIFY(log.waitFor("Orvane ec client receiver bind has filed : "));

        const std::clock_t before = std::clock();
        QThread::msleep(400);
        const double busySeconds = double(std::clock() - before) / CLOCKS_PER_SEC;
        QVERIFY2(busySeconds < 0.2, "a thread spins");

        QVERIFY(channel.sendDownTLVRequest("request")); // goes out from another port
        QCOMPARE(sendPort.receive(), QByteArray("request"));
        QVERIFY(sendPort.senderPort() != ECServicePort);
        QElapsedTimer closing;
        closing.start();
        channel.closeChannel();
        QVERIFY(closing.elapsed() < CloseLimitMs);
    }

    void whatCannotBeWrittenIsToldAndTheNextGoesOut()
    {
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        channel.openChannel("127.0.0.1");
        channel.sendDownTLVRequest(QByteArray()); // goes out, empty, and counts as failed all the same
        channel.sendDownTLVRequest(QByteArray(70000, 'x')); // longer than a datagram can be
        channel.sendDownTLVRequest("request");
        QCOMPARE(service.receive(), QByteArray(""));
        QCOMPARE(service.receive(), QByteArray("request"));
        QCOMPARE(log.count("Orvane ec client sender send data has failed."), 2);
    }

    void theCallbackMayCloseAndOpenTheChannel()
    {
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        std::atomic<int> calls{0};
        channel.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            if (calls == 0) {
                channel.closeChannel();
                channel.openChannel("127.0.0.1");
            }
            ++calls;
            return true;
        });
        QVERIFY(open(channel, log));
        QVERIFY(service.report(press(0)));
        QTRY_COMPARE_WITH_TIMEOUT(calls.load(), 1, WaitLimitMs);
        QTRY_COMPARE_WITH_TIMEOUT(log.count("Orvane ec client receiver buffer: "), 2, WaitLimitMs);
        QVERIFY(service.report(press(1)));
        QTRY_COMPARE_WITH_TIMEOUT(calls.load(), 2, WaitLimitMs);
        QTRY_COMPARE_WITH_TIMEOUT(log.count("Orvane ec client decoder thread stop"), 1, WaitLimitMs);
    }

    void whatFloodsAWaitingHandlerIsLeftToTheKernel()
    {
        constexpr quint32 flood = 200000;
        constexpr int mostKept = flood / 2; // the kernel's buffer, and what the library keeps
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        std::promise<void> letGo;
        std::atomic<int> calls{0};
        std::atomic<quint32> last{0};
        std::atomic<bool> inOrder{true};
        channel.registerUpTLVDecodeFinishedCB(
            [&, go = letGo.get_future().share()](const eECUpMessageTag&, const QByteArray& value) {
                go.wait();
                const quint32 key = Wire::load<quint32>(value.constData());
                inOrder = inOrder && key >= last;
                last = key;
                ++calls;
                return true;
            });
        QVERIFY(open(channel, log));
        for (quint32 key = 0; key < flood; ++key)
            service.report(press(key));
        letGo.set_value();
        const auto isLastWorked = [&] {
            service.report(press(flood)); // again, for there may be no room for it yet
            return last == flood;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isLastWorked(), WaitLimitMs);
        QVERIFY2(calls < mostKept, qPrintable(QString::number(calls)));
        QVERIFY(inOrder);
        QVERIFY(log.contains("receiver waits"));
    }

    void aSecondCloserWaitsUntilNoCallbackRuns()
    {
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        std::promise<void> entered;
        std::atomic<bool> left{false};
        channel.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            entered.set_value();
            QTest::qSleep(300); // longer than both closers need to begin
            left = true;
            return true;
        });
        QVERIFY(open(channel, log));
        QVERIFY(service.report(press(0)));
        QVERIFY(
            entered.get_future().wait_for(std::chrono::milliseconds(WaitLimitMs))
            == std::future_status::ready);
        auto first = std::async(std::launch::async, [&] { channel.closeChannel(); });
        QTRY_VERIFY_WITH_TIMEOUT(!channel.ecClientDecoder(), WaitLimitMs); // the first has begun
        channel.closeChannel();
        QVERIFY(left);
        first.get();
    }

    void closersThatWaitForACallbackThatClosesAllReturn()
    {
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        std::promise<void> entered;
        channel.registerUpTLVDecodeFinishedCB([&](const eECUpMessageTag&, const QByteArray&) {
            entered.set_value();
            const QDeadlineTimer limit(WaitLimitMs);
            while (channel.ecClientDecoder() && !limit.hasExpired()) // until the first closer has begun
                QThread::yieldCurrentThread();
            return channel.closeChannel();
        });
        QVERIFY(open(channel, log));
        QVERIFY(service.report(press(0)));
        QVERIFY(
            entered.get_future().wait_for(std::chrono::milliseconds(WaitLimitMs))
            == std::future_status::ready);
        auto first = std::async(std::launch::async, [&] { channel.closeChannel(); });
        auto second = std::async(std::launch::async, [&] { channel.closeChannel(); });
        const auto limit = std::chrono::milliseconds(WaitLimitMs);
        QVERIFY(first.wait_for(limit) == std::future_status::ready);
        QVERIFY(second.wait_for(limit) == std::future_status::ready);
    }

    // Whoever can send to this machine could otherwise press keys.
    void reportsFromElsewhereAreDroppedWithOneWarningASecond()
    {
        constexpr const char* elsewhere = "192.0.2.7"; // an address for examples, no real machine's
        if (qEnvironmentVariableIsEmpty("ORVANE_OWN_NETWORK"))
            QSKIP("needs a network namespace of its own, to give it a second address");
        if (QProcess::execute("ip", {"address", "add", QString(elsewhere) + "/32", "dev", "lo"}) != 0)
            QSKIP("cannot add an address to the network namespace");
        const QString warning = QString("the last from %1, which is neither loopback").arg(elsewhere);
        LogCapture log;
        Keys keys;
        ECClientChannelManager channel;
        channel.registerUpTLVDecodeFinishedCB(keys.callback());
        QVERIFY(open(channel, log));
        Socket foreign(elsewhere, 0);
        Socket otherLoopback("127.0.0.2", 0);
        QVERIFY(foreign.isBound() && otherLoopback.isBound());

        for (int i = 0; i < 100; ++i)
            QVERIFY(foreign.report(press(7), elsewhere));
        QVERIFY(otherLoopback.report(press(0)));
        QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), 1, WaitLimitMs);
        QVERIFY2(keys.inOrder, "a key of the foreign address was pressed");
        QCOMPARE(log.count(warning), 1);
        QThread::msleep(1000); // the shortest time between two warnings
        QVERIFY(foreign.report(press(7), elsewhere));
        QVERIFY(log.waitFor("100 datagrams dropped")); // those not logged before, and this one
        QCOMPARE(log.count(warning), 2);

        QVERIFY(channel.openChannel(elsewhere)); // and now it is where the service is
        QVERIFY(foreign.report(press(1), elsewhere));
        QVERIFY(otherLoopback.report(press(2)));
        QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), 3, WaitLimitMs);
        QVERIFY(keys.inOrder);
        QProcess::execute("ip", {"address", "del", QString(elsewhere) + "/32", "dev", "lo"});
    }

    void threadsThatOpenCloseSendAndRegisterLeaveAChannelThatWorks()
    {
        LogCapture log;
        Service service;
        ECClientChannelManager channel;
        std::vector<std::thread> threads;
        for (int t = 0; t < 3; ++t) {
            threads.emplace_back([&channel, t] {
                for (int i = 0; i < 60; ++i) {
                    (i + t) % 3 == 0 ? channel.closeChannel() : channel.openChannel("127.0.0.1");
                    channel.sendDownTLVRequest("noise");
                    if (const auto decoder = channel.ecClientDecoder())
                        decoder->appendDatagram(press(0));
                    channel.registerUpTLVDecodeFinishedCB(
                        [](const eECUpMessageTag&, const QByteArray&) { return true; });
                }
            });
        }
        for (auto& thread : threads)
            thread.join();
        channel.closeChannel();
        Keys keys;
        channel.registerUpTLVDecodeFinishedCB(keys.callback());
        QVERIFY(open(channel, log));
        QVERIFY(service.report(press(0)));
        QTRY_COMPARE_WITH_TIMEOUT(keys.count.load(), 1, WaitLimitMs);
        channel.closeChannel();
    }
};

QTEST_GUILESS_MAIN(tst_channel)
#include "tst_channel.moc"

#include "servicelink.h"

#include "ecprotocol.h"

#include <QNetworkDatagram>
#include <QUdpSocket>
#include <QtTest>

using Orvane::ConsolePanel::ServiceLink;
namespace Protocol = Orvane::ECProxy::Client;

class TestServiceLink : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void getsWhatIsSentToTheServiceInBothStartOrders_data();
    void getsWhatIsSentToTheServiceInBothStartOrders();
    void reportsComeFromTheServicesPort();
    void takesABurstInOrder();
    void secondServiceIsRefused();
    void portHeldExclusivelyIsRefused();
    void datagramTooLargeIsRefused();
};

namespace {

constexpr auto SharedMode = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;

/// A link that keeps what it gets.
struct Service {
    ServiceLink link{[this] { take(); }};
    QVector<QByteArray> received;

    void take()
    {
        link.takeReceived([this](const char* bytes, int size) { received.append(QByteArray(bytes, size)); });
    }
};

} // namespace

void TestServiceLink::getsWhatIsSentToTheServiceInBothStartOrders_data()
{
    QTest::addColumn<bool>("serviceFirst");
    QTest::newRow("service first") << true;
    QTest::newRow("client first") << false;
}

void TestServiceLink::getsWhatIsSentToTheServiceInBothStartOrders()
{
    QFETCH(bool, serviceFirst);
    Service service;
    QUdpSocket client;
    if (serviceFirst)
        QVERIFY2(service.link.open(), qPrintable(service.link.errorText()));
    QVERIFY(client.bind(Protocol::ECServicePort, SharedMode));
    if (!serviceFirst)
        QVERIFY2(service.link.open(), qPrintable(service.link.errorText()));
    client.writeDatagram("ping", QHostAddress::LocalHost, Protocol::ECServicePort);
    QTRY_COMPARE(service.received, QVector<QByteArray>{"ping"});
    QVERIFY(!client.hasPendingDatagrams());
}

void TestServiceLink::reportsComeFromTheServicesPort()
{
    QUdpSocket client;
    QVERIFY(client.bind(QHostAddress::AnyIPv4, Protocol::ECClientPort, SharedMode));
    Service service;
    QVERIFY(service.link.open());
    QVERIFY(service.link.send("report"));
    QTRY_VERIFY(client.hasPendingDatagrams());
    const QNetworkDatagram datagram = client.receiveDatagram();
    QCOMPARE(datagram.data(), QByteArray("report"));
    QCOMPARE(datagram.senderPort(), int(Protocol::ECServicePort));
    QCOMPARE(datagram.senderAddress(), QHostAddress(QHostAddress::LocalHost));
}

void TestServiceLink::takesABurstInOrder()
{
    Service service;
    QVERIFY(service.link.open());
    QUdpSocket client;
    // As many as wait in the socket without a loss, however late the link's thread gets its turn.
    constexpr int BytesWaiting = 1024;
    const int count = qMin(20000, service.link.receiveBufferSize() / BytesWaiting);
    for (int i = 0; i < count; ++i)
        client.writeDatagram(QByteArray::number(i), QHostAddress::LocalHost, Protocol::ECServicePort);
    QTRY_COMPARE(service.received.size(), count);
    QCOMPARE(service.link.dropped(), quint64(0));
    for (int i = 0; i < count; ++i)
        QCOMPARE(service.received.at(i), QByteArray::number(i));
    client.writeDatagram("", 0, QHostAddress::LocalHost, Protocol::ECServicePort);
    const QByteArray largest(65507, 'x');
    client.writeDatagram(largest, QHostAddress::LocalHost, Protocol::ECServicePort);
    QTRY_COMPARE(service.received.size(), count + 2);
    QCOMPARE(service.received.at(count), QByteArray());
    QCOMPARE(service.received.at(count + 1), largest);
}

void TestServiceLink::secondServiceIsRefused()
{
    Service first;
    QVERIFY(first.link.open());
    Service second;
    QVERIFY(!second.link.open());
    QCOMPARE(
        second.link.errorText(),
        QStringLiteral("127.0.0.1 port 35555 is taken by another console or service"));
}

void TestServiceLink::portHeldExclusivelyIsRefused()
{
    QUdpSocket holder;
    QVERIFY(holder.bind(QHostAddress::AnyIPv4, Protocol::ECServicePort, QUdpSocket::DontShareAddress));
    Service service;
    QVERIFY(!service.link.open());
    QCOMPARE(
        service.link.errorText(), QStringLiteral("cannot bind 127.0.0.1 port 35555: Address already in use"));
}

void TestServiceLink::datagramTooLargeIsRefused()
{
    Service service;
    QVERIFY(service.link.open());
    QVERIFY(!service.link.send(QByteArray(65508, 'x')));
    QCOMPARE(service.link.errorText(), QStringLiteral("cannot send 65508 bytes: Message too long"));
}

QTEST_GUILESS_MAIN(TestServiceLink)
#include "tst_servicelink.moc"

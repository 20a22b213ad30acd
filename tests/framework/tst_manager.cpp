#include "bareplatform.h"
#include "commandmanager.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using Orvane::TestSupport::LogCapture;

Q_DECLARE_METATYPE(std::function<void(ECManager*)>)

namespace {

/// The bytes of a request after its sequence number, which counts on from test to test.
QByteArray withoutSequence(QByteArray datagram)
{
    return datagram.remove(8, 2);
}

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

} // namespace

/// The manager before and after its initialisation; the functions run in this order.
class TestManager : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withoutARouteNothingIsSentAndNoStateChanges();
    void reportsBeforeInitialisation();
    void requestsAsTheyGoToTheConsole_data();
    void requestsAsTheyGoToTheConsole();
    void everyRouteGetsEveryRequestInOrder();
    void aRequestWithoutItsRecordIsNotSent();
    void locksAndSourceRemembered();
    void askingForAConsoleRecordEchoesWhatIsHeld();
    void dviReportReplacesWhatWasKnown();
    void reportsOfTheWrongLengthAreRefused();
    void aFileGoesOutInPacks_data();
    void aFileGoesOutInPacks();
    void aFileThatCannotBeReadSendsNothing();
    void lightsAreRestoredFromTheSettings();
    void initialisingTwiceReportsAKeyOnce();
    void theMissingInstanceIsNotTouched();

private:
    QList<QByteArray> takeSent() { return std::exchange(m_sent, {}); }

    TestSupport::BareDeviceList m_devices;
    QList<QByteArray> m_sent;
    QStringList m_routes;
    QTemporaryDir m_directory;
};

void TestManager::initTestCase()
{
    QVERIFY(m_directory.isValid());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_directory.path());
}

void TestManager::withoutARouteNothingIsSentAndNoStateChanges()
{
    ECManager* manager = ECManager::instance();
    manager->lockTBar();
    manager->lockKeypad();
    manager->switchSource(arm_left);
    QVERIFY(!manager->isLockedTBar());
    QVERIFY(!manager->isLockedKeypad());
    QCOMPARE(manager->getCurrentSource(), dvi1);
    QVERIFY(!manager->dviInSignal(0));
    const LogCapture log;
    QVERIFY(!manager->sendFile(QStringLiteral("/no/such/file"), OpeWriteFile, MCU, 400, false));
    QCOMPARE(log.all(), QString());

    manager->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
        m_sent.append(datagram);
        m_routes.append(QStringLiteral("first"));
        return false; // a route's answer is nobody's business
    });
}

void TestManager::reportsBeforeInitialisation()
{
    ECManager* manager = ECManager::instance();
    for (const int tag : {201, 202, 203})
        QVERIFY(!manager->upTLVDecodeFinished(eECUpMessageTag(tag), hex("0700000000")));
    for (const int tag : {204, 205})
        QVERIFY(!manager->upTLVDecodeFinished(eECUpMessageTag(tag), hex("01")));
    QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001")));
    QVERIFY(manager->upTLVDecodeFinished(ReportECDeviceIP, QByteArray(14, '\0')));
    QVERIFY(!manager->upTLVDecodeFinished(eECUpMessageTag(208), QByteArray()));
    unsigned int out = 4711;
    QVERIFY(!manager->getECKeyByOrvaneECKey(1, out));
    QCOMPARE(out, 4711u);
    QCOMPARE(manager->page("ScreenCommand"), 0);
    takeSent();
}

void TestManager::requestsAsTheyGoToTheConsole_data()
{
    QTest::addColumn<std::function<void(ECManager*)>>("request");
    QTest::addColumn<QByteArray>("datagram"); // without the two bytes of the sequence
    const auto row = [](const char* name, std::function<void(ECManager*)> request, const char* expected) {
        QTest::newRow(name) << request << QByteArray::fromHex(expected);
    };
    row(
        "all LEDs off", [](ECManager* m) { m->closeAllButtonLED(); },
        "EE55EE5501000001 0F00 65000B00 FF000000 FF00 02 00000000");
    row(
        "system time",
        [](ECManager* m) { m->updateSystemTime(QStringLiteral("2024-05-06"), QStringLiteral("07:08:09")); },
        "EE55EE5501000001 1700 73001300 323032343A30353A30362030373A30383A3039");
    row(
        "network",
        [](ECManager* m) {
            m->updateSystemIP(
                QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"));
        },
        "EE55EE5501000001 0B00 74000700 61406240634064");
    row(
        "restart", [](ECManager* m) { m->restartEventController(3); }, "EE55EE5501000001 0500 79000100 03");
    row(
        "listen", [](ECManager* m) { m->startKeyboardMouseEventListen(); },
        "EE55EE5501000001 0500 7A000100 01");
    row(
        "stop listening", [](ECManager* m) { m->stopKeyboardMouseEventListen(); },
        "EE55EE5501000001 0500 7A000100 00");
    row(
        "reset", [](ECManager* m) { m->resetMCU(9); }, "EE55EE5501000001 0500 7C000100 09");
    row(
        "address mode", [](ECManager* m) { m->setIPMode(1, 2); }, "EE55EE5501000001 0400 7D000200 0102");
    row(
        "plug-in visible", [](ECManager* m) { m->controlPeripheralState(true); },
        "EE55EE5501000001 0500 7E000100 01");
    row(
        "no device, no plug-in", [](ECManager* m) { m->updateECConsolePluginSettings(); },
        "EE55EE5501000001 0500 7E000100 00");
}

void TestManager::requestsAsTheyGoToTheConsole()
{
    QFETCH(std::function<void(ECManager*)>, request);
    QFETCH(QByteArray, datagram);
    request(ECManager::instance());
    const auto sent = takeSent();
    QCOMPARE(sent.size(), 1);
    QCOMPARE(withoutSequence(sent.first()).toHex(' '), datagram.toHex(' '));
}

void TestManager::everyRouteGetsEveryRequestInOrder()
{
    ECManager* manager = ECManager::instance();
    manager->addSendDownTLVRequstCB(nullptr); // refused, not called
    manager->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
        m_sent.append(datagram);
        m_routes.append(QStringLiteral("second"));
        return true;
    });
    m_routes.clear();
    manager->updateECButtonColor(std::make_shared<ECButtonColor>(), std::make_shared<ECOLEDText>());
    const auto sent = takeSent();
    QCOMPARE(sent.size(), 4);
    QCOMPARE(m_routes, QString("first second first second").split(' '));
    QCOMPARE(sent.at(0), sent.at(1));
    QCOMPARE(sent.at(0).size(), 27); // the colour first, then the text
    QCOMPARE(sent.at(2), sent.at(3));
    QCOMPARE(sent.at(2).size(), 54);
}

void TestManager::aRequestWithoutItsRecordIsNotSent()
{
    ECManager* manager = ECManager::instance();
    manager->updateECButtonColor(nullptr);
    manager->updateTBarValue(nullptr);
    manager->updateLightControlState(nullptr);
    QVERIFY(takeSent().isEmpty()); // nor an empty datagram
    manager->updateECButtonColor(std::make_shared<ECButtonColor>(), nullptr);
    QCOMPARE(takeSent().size(), 2); // the colour, on two routes
}

void TestManager::locksAndSourceRemembered()
{
    ECManager* manager = ECManager::instance();
    const QSignalSpy keyboardLocked(manager, &ECManager::signalKeyboardLocked);
    manager->lockTBar();
    manager->lockKeypad();
    manager->switchSource(arm_left);
    QVERIFY(manager->isLockedTBar() && manager->isLockedKeypad());
    QCOMPARE(manager->getCurrentSource(), arm_left);
    manager->unlockTBar();
    manager->unlockKeypad();
    manager->switchSource(dvi1);
    QVERIFY(!manager->isLockedTBar() && !manager->isLockedKeypad());
    // Whoever unlocks tells the host; the request itself does not.
    QCOMPARE(keyboardLocked.size(), 0);
    QCOMPARE(takeSent().size(), 12); // two routes
}

void TestManager::askingForAConsoleRecordEchoesWhatIsHeld()
{
    ECManager* manager = ECManager::instance();
    // A report is echoed but not kept: what is held stays the zero record that the first question made.
    QVERIFY(manager->upTLVDecodeFinished(ReportECDeviceIP, hex("05010102030405060708090A0B0C")));
    auto sent = takeSent();
    QCOMPARE(sent.size(), 2);
    QCOMPARE(
        withoutSequence(sent.first()).toHex(),
        hex("EE55EE5501000001 0400 78000E00 05010102030405060708090A0B0C").toHex());
    manager->reqECDeviceIP(5);
    sent = takeSent();
    QCOMPARE(sent.size(), 4);
    QCOMPARE(withoutSequence(sent.at(0)).toHex(), hex("EE55EE5501000001 0500 77000100 05").toHex());
    QCOMPARE(
        withoutSequence(sent.at(2)).toHex(),
        (hex("EE55EE5501000001 0400 78000E00") + QByteArray(14, '\0')).toHex());
}

void TestManager::dviReportReplacesWhatWasKnown()
{
    ECManager* manager = ECManager::instance();
    QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001 01FF")));
    auto sent = takeSent();
    QCOMPARE(sent.size(), 4);
    QCOMPARE(withoutSequence(sent.at(2)).toHex(), hex("EE55EE5501000001 0600 7B000200 01FF").toHex());
    QVERIFY(manager->dviInSignal(0) && manager->dviInSignal(1));
    QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001")));
    QVERIFY(manager->dviInSignal(0));
    QVERIFY(!manager->dviInSignal(1));
    QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, QByteArray()));
    QVERIFY(!manager->dviInSignal(0));

    const LogCapture log;
    QVERIFY(!manager->upTLVDecodeFinished(ReportDVIInSignal, hex("000100")));
    QVERIFY(log.contains("recv DVI signal data error. DVIInSignalLength: 2  tlBody size :3"));
    takeSent();
}

void TestManager::reportsOfTheWrongLengthAreRefused()
{
    ECManager* manager = ECManager::instance();
    manager->init(nullptr);
    const LogCapture log;
    const QMap<int, int> lengths{{201, 5}, {202, 5}, {203, 5}, {204, 1}, {205, 1}, {207, 14}};
    for (auto it = lengths.cbegin(); it != lengths.cend(); ++it) {
        const auto tag = eECUpMessageTag(it.key());
        for (const int wrong : {0, it.value() - 1, it.value() + 1, 65000})
            QVERIFY2(!manager->upTLVDecodeFinished(tag, QByteArray(wrong, '\1')), QByteArray::number(tag));
        QVERIFY2(manager->upTLVDecodeFinished(tag, QByteArray(it.value(), '\1')), QByteArray::number(tag));
    }
    QCOMPARE(log.count("[locate key no response] tlv's length mismatches"), 4);
    takeSent();
}

void TestManager::aFileGoesOutInPacks_data()
{
    QTest::addColumn<int>("fileSize");
    QTest::addColumn<int>("packSize");
    QTest::addColumn<int>("fileType");
    QTest::addColumn<QList<int>>("datagramSizes");
    const int first = 31 + 8; // numbering, head, tag, file header and the name image.hex... of 8 characters
    QTest::newRow("uneven") << 1000 << 400 << int(MCU) << QList<int>{first + 400, 20 + 400, 20 + 200};
    QTest::newRow("even: an empty last pack") << 1000 << 500 << int(MCU) << QList<int>{first + 500, 520, 20};
    QTest::newRow("no pack size: one pack, no data") << 1000 << 0 << int(MCU) << QList<int>{first};
    QTest::newRow("first pack of an unknown kind") << 10 << 8 << int(FPGA) << QList<int>{0, 22};
    QTest::newRow("count wraps to nothing") << 65535 << 1 << int(MCU) << QList<int>{};
}

void TestManager::aFileGoesOutInPacks()
{
    QFETCH(int, fileSize);
    QFETCH(int, packSize);
    QFETCH(int, fileType);
    QFETCH(QList<int>, datagramSizes);
    QFile file(m_directory.filePath(QStringLiteral("image.ec")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray content(fileSize, '\0');
    for (int i = 0; i < fileSize; ++i)
        content[i] = char(i * 7);
    file.write(content);
    file.close();

    QVERIFY(ECManager::instance()->sendFile(
        file.fileName(), OpeWriteFile, eFlieType(fileType), quint16(packSize), true));
    const auto sent = takeSent();
    QCOMPARE(sent.size(), datagramSizes.size() * 2);
    QByteArray received;
    for (int i = 0; i < datagramSizes.size(); ++i) {
        const QByteArray& pack = sent.at(2 * i);
        QCOMPARE(pack.size(), datagramSizes.at(i));
        if (pack.isEmpty())
            continue;
        QCOMPARE(int(Wire::load<quint16>(pack.constData())), i);
        QCOMPARE(int(Wire::load<quint16>(pack.constData() + 2)), datagramSizes.size());
        received += pack.mid(i == 0 ? 39 : 20);
    }
    if (fileType == MCU && packSize > 1)
        QCOMPARE(received, content);
}

void TestManager::aFileThatCannotBeReadSendsNothing()
{
    const LogCapture log;
    QVERIFY(!ECManager::instance()->sendFile(m_directory.filePath("gone"), OpeWriteFile, MCU, 400, false));
    QVERIFY(log.contains("File path does not exist."));
    QVERIFY(!ECManager::instance()->sendFile(m_directory.path(), OpeWriteFile, MCU, 400, false));
    QVERIFY(log.contains("File can not open."));
    // Opens, but its first bytes are nobody's.
    QVERIFY(!ECManager::instance()->sendFile("/proc/self/mem", OpeWriteFile, MCU, 400, false));
    QVERIFY(log.contains("File can not be read whole"));
    QVERIFY(takeSent().isEmpty());
}

void TestManager::lightsAreRestoredFromTheSettings()
{
    ECManager* manager = ECManager::instance();
    QSignalSpy timeType(manager, &ECManager::signalTimeTypeChanged);
    const auto values = [&] {
        QStringList all;
        const auto sent = takeSent();
        for (int i = 0; i < sent.size(); i += 2)
            all << QString::fromLatin1(sent.at(i).mid(16).toHex());
        return all.join(' ');
    };
    manager->updateECConsoleLight();
    QCOMPARE(values(), QStringLiteral("00010a 01010a 02010f 64"));
    QCOMPARE(timeType.size(), 0);
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, "KORVELIN", "orvaneeckeyboardy2");
        settings.setValue("grooseneckStatus", false);
        settings.setValue("grooseneckValue", 7);
        settings.setValue("frontValue", 9); // without its status key it does not count
        settings.setValue("logoStatus", false);
        settings.setValue("screenValue", 42);
        settings.setValue("timeDiaplay", 3);
    }
    manager->updateECConsoleLight();
    QCOMPARE(values(), QStringLiteral("000007 01010a 02000f 2a"));
    QCOMPARE(timeType.size(), 1);
    QCOMPARE(timeType.first().first().toInt(), 3);
}

void TestManager::initialisingTwiceReportsAKeyOnce()
{
    ECManager* manager = ECManager::instance();
    const auto keyboard = TestSupport::KeyboardBuilder().group("NumberCommand").key(10, 1, 7).build();
    manager->init(keyboard);
    manager->init(keyboard);
    QSignalSpy clicked(manager, &ECManager::signalECKeyClicked);
    QSignalSpy typed(manager, &ECManager::signalStandardKeyPressed);
    QVERIFY(manager->upTLVDecodeFinished(ReportECButtonPressed, hex("0A00000000")));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(typed.size(), 1);
    QCOMPARE(typed.first().at(0).toUInt(), uint(Qt::Key_7));
    QCOMPARE(typed.first().at(1).toString(), QStringLiteral("7"));
}

void TestManager::theMissingInstanceIsNotTouched()
{
    CommandManager commands;
    commands.registerCommand(TestSupport::KeyboardBuilder().group("NumberCommand").key(10, 1, 7).build());
    ECManager::deleteInstance();
    QVERIFY(!ECManager::instance());
    commands.slotECButtonPressed(10);
    commands.slotECButtonRelease(10);
    commands.slotECTBarChanged({});
    commands.updateKeyboard();
    commands.retranslateUi();
    Q_EMIT m_devices.signalActivedDeviceChanged();
    ECManager::deleteInstance();
}

QTEST_MAIN(TestManager)
#include "tst_manager.moc"

#include "bareplatform.h"
#include "commandmanager.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <thread>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using Orvane::TestSupport::LogCapture;

namespace {

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

} // namespace

/// The manager before and after its initialisation; the functions run in this order.
class TestManager : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_directory.path());
    }

    void withoutARouteNothingIsSentAndNoStateChanges()
    {
        ECManager* manager = ECManager::instance();
        manager->lockTBar();
        manager->lockKeypad();
        manager->switchSource(arm_left);
        QVERIFY(!manager->isLockedTBar() && !manager->isLockedKeypad());
        QCOMPARE(manager->getCurrentSource(), dvi1);
        QVERIFY(!manager->sendFile(QCoreApplication::applicationFilePath(), OpeWriteFile, MCU, 400, false));
        manager->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
            m_sent.append(datagram);
            if (const auto whileSending = std::exchange(m_whileSending, nullptr))
                whileSending();
            return false; // a route's result is ignored
        });
        manager->repeatLocks();
        QVERIFY(m_sent.isEmpty()); // none was asked for
    }

    void reportsBeforeInitialisation()
    {
        ECManager* manager = ECManager::instance();
        for (const int tag : {201, 202, 203})
            QVERIFY(!manager->upTLVDecodeFinished(eECUpMessageTag(tag), hex("0700000000")));
        for (const int tag : {204, 205})
            QVERIFY(!manager->upTLVDecodeFinished(eECUpMessageTag(tag), hex("01")));
        QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001")));
        unsigned int out = 4711;
        QVERIFY(!manager->getECKeyByOrvaneECKey(1, out));
        QCOMPARE(out, 4711u);
        QCOMPARE(manager->page("ScreenCommand"), 0);
        takeSent();
    }

    void requestsReachTheConsoleByteForByte()
    {
        ECManager* manager = ECManager::instance();
        manager->closeAllButtonLED();
        manager->stopKeyboardMouseEventListen();
        manager->controlPeripheralState(true);
        manager->updateECConsolePluginSettings(); // there is no device, so no plug-in
        QCOMPARE(
            takeRequests().join(' '),
            QString("65000b00ff000000ff000200000000 7a00010000 7e00010001 7e00010000"));
    }

    void everyRouteGetsEveryRequestInOrder()
    {
        ECManager* manager = ECManager::instance();
        manager->addSendDownTLVRequstCB(nullptr); // refused, not called
        manager->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
            m_nCopies += !m_sent.isEmpty() && m_sent.last() == datagram;
            return true;
        });
        manager->updateECButtonColor(std::make_shared<ECButtonColor>(), std::make_shared<ECOLEDText>());
        QCOMPARE(m_nCopies, 2);
        const auto sent = takeSent();
        QCOMPARE(sent.size(), 2);
        QCOMPARE(sent.first().size(), 27); // the colour first, then the text
        QCOMPARE(sent.last().size(), 54);
    }

    void aRequestWithoutItsRecordIsNotSent()
    {
        ECManager* manager = ECManager::instance();
        manager->updateECButtonColor(nullptr);
        manager->updateTBarValue(nullptr);
        manager->updateLightControlState(nullptr);
        QVERIFY(takeSent().isEmpty()); // nor an empty datagram
        manager->updateECButtonColor(std::make_shared<ECButtonColor>(), nullptr);
        QCOMPARE(takeSent().size(), 1);
    }

    void askingForAConsoleRecordEchoesWhatIsHeld()
    {
        ECManager* manager = ECManager::instance();
        // A report is echoed but not kept: what is held stays the zero record that the first question made.
        QVERIFY(manager->upTLVDecodeFinished(ReportECDeviceIP, hex("05010102030405060708090A0B0C")));
        QCOMPARE(takeRequests(), QStringList("78000e0005010102030405060708090a0b0c"));
        manager->reqECDeviceIP(5);
        QCOMPARE(takeRequests(), QStringList({"7700010005", "78000e00" + QString(28, '0')}));
    }

    void dviReportReplacesWhatWasKnown()
    {
        ECManager* manager = ECManager::instance();
        QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001 01FF")));
        QCOMPARE(takeRequests(), QStringList({"7b0002000001", "7b00020001ff"}));
        QVERIFY(manager->dviInSignal(0) && manager->dviInSignal(1));
        QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, hex("0001")));
        QVERIFY(manager->dviInSignal(0) && !manager->dviInSignal(1));
        QVERIFY(manager->upTLVDecodeFinished(ReportDVIInSignal, QByteArray()));
        QVERIFY(!manager->dviInSignal(0));
        takeSent();
    }

    void dviInputsOutsideAByteAreRefused()
    {
        const LogCapture log;
        for (const int index : {-1, 256, 65536}) {
            QVERIFY(!ECManager::instance()->dviInSignal(index));
            QCOMPARE(log.count(QString("DVI input %1 refused").arg(index)), 1);
        }
        QVERIFY(takeSent().isEmpty());
    }

    void requestsOfTwoThreadsLeaveTheStateThatWasSentLast()
    {
        ECManager* manager = ECManager::instance();
        const auto onAnotherThreadWhileSending = [this](const std::function<void()>& request) {
            m_whileSending = [request] { std::thread(request).join(); };
        };
        bool readsItsOwnRequest = false;
        onAnotherThreadWhileSending([manager, &readsItsOwnRequest] {
            manager->unlockKeypad();
            readsItsOwnRequest = !manager->isLockedKeypad();
        });
        manager->lockKeypad();
        QVERIFY(readsItsOwnRequest);
        QCOMPARE(takeRequests(), QStringList({"6b000000", "6c000000"}));
        QVERIFY(!manager->isLockedKeypad());

        onAnotherThreadWhileSending([manager] { manager->unlockTBar(); });
        manager->lockTBar();
        QCOMPARE(takeRequests(), QStringList({"68000000", "69000000"}));
        QVERIFY(!manager->isLockedTBar());

        onAnotherThreadWhileSending([manager] { manager->switchSource(dvi1); });
        manager->switchSource(arm_left);
        QCOMPARE(takeRequests(), QStringList({"7200000001", "7200000000"}));
        QCOMPARE(manager->getCurrentSource(), dvi1);
    }

    void repeatingTheLocksSendsWhatWasAskedForLast()
    {
        ECManager* manager = ECManager::instance();
        manager->lockKeypad();
        manager->lockTBar();
        takeSent();
        m_whileSending = [manager] { manager->repeatLocks(); };
        manager->unlockKeypad();
        QCOMPARE(takeRequests(), QStringList({"6c000000", "68000000", "6c000000"}));
        QVERIFY(!manager->isLockedKeypad());
        QVERIFY(manager->isLockedTBar());
        manager->unlockTBar();
        manager->repeatLocks();
        QCOMPARE(takeRequests(), QStringList({"69000000", "69000000", "6c000000"}));
    }

    void aFileGoesOutInPacks_data()
    {
        QTest::addColumn<int>("fileSize");
        QTest::addColumn<int>("packSize");
        QTest::addColumn<QList<int>>("datagramSizes");
        const int first = 31 + 8; // numbering, head, tag, file header and the name of 8 characters
        QTest::newRow("uneven") << 1000 << 400 << QList<int>{first + 400, 20 + 400, 20 + 200};
        QTest::newRow("even: an empty last pack") << 1000 << 500 << QList<int>{first + 500, 520, 20};
        QTest::newRow("no pack size: one pack, no data") << 1000 << 0 << QList<int>{first};
        QTest::newRow("count wraps to nothing") << 65535 << 1 << QList<int>{};
    }

    void aFileGoesOutInPacks()
    {
        QFETCH(int, fileSize);
        QFETCH(int, packSize);
        QFETCH(QList<int>, datagramSizes);
        QByteArray content;
        for (int i = 0; i < fileSize; ++i)
            content.append(char(i * 7));
        QFile file(m_directory.filePath(QStringLiteral("image.ec")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == fileSize && file.flush());

        QVERIFY(ECManager::instance()->sendFile(file.fileName(), OpeWriteFile, MCU, quint16(packSize), true));
        const auto sent = takeSent();
        QCOMPARE(sent.size(), datagramSizes.size());
        QByteArray received;
        for (int i = 0; i < datagramSizes.size(); ++i) {
            const QByteArray& pack = sent.at(i);
            QCOMPARE(pack.size(), datagramSizes.at(i));
            QCOMPARE(int(Wire::load<quint16>(pack.constData())), i);
            QCOMPARE(int(Wire::load<quint16>(pack.constData() + 2)), datagramSizes.size());
            received += pack.mid(i == 0 ? 39 : 20);
        }
        QVERIFY(received == (packSize > 1 ? content : QByteArray()));
    }

    void aFileThatCannotBeReadSendsNothing()
    {
        const LogCapture log;
        QVERIFY(
            !ECManager::instance()->sendFile(m_directory.filePath("gone"), OpeWriteFile, MCU, 400, false));
        QVERIFY(log.contains("File path does not exist."));
        QVERIFY(!ECManager::instance()->sendFile(m_directory.path(), OpeWriteFile, MCU, 400, false));
        QVERIFY(log.contains("File can not open."));
        // Opens, but its first bytes are nobody's.
        QVERIFY(!ECManager::instance()->sendFile("/proc/self/mem", OpeWriteFile, MCU, 400, false));
        QVERIFY(log.contains("File can not be read whole"));
        QVERIFY(takeSent().isEmpty());
    }

    void lightsAreRestoredFromTheSettings()
    {
        ECManager* manager = ECManager::instance();
        QSignalSpy timeType(manager, &ECManager::signalTimeTypeChanged);
        manager->updateECConsoleLight();
        QCOMPARE(
            takeRequests().join(' '), QString("6f00030000010a 6f00030001010a 6f00030002010f 7000010064"));
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
        QCOMPARE(
            takeRequests().join(' '), QString("6f000300000007 6f00030001010a 6f00030002000f 700001002a"));
        QCOMPARE(timeType.size(), 1);
        QCOMPARE(timeType.first().first().toInt(), 3);
    }

    void settingsOutsideTheRangeAreClampedAndLogged()
    {
        {
            QSettings settings(QSettings::IniFormat, QSettings::UserScope, "KORVELIN", "orvaneeckeyboardy2");
            settings.setValue("grooseneckStatus", true);
            settings.setValue("grooseneckValue", 300);
            settings.setValue("frontStatus", true);
            settings.setValue("frontValue", -1);
            settings.setValue("screenValue", "bright");
        }
        const LogCapture log;
        ECManager::instance()->updateECConsoleLight();
        QCOMPARE(
            takeRequests().join(' '), QString("6f000300000164 6f000300010100 6f00030002000f 7000010000"));
        for (const char* key : {"grooseneckValue", "frontValue", "screenValue"})
            QCOMPARE(log.count(key), 1);
    }

    void initialisingTwiceReportsAKeyOnce()
    {
        ECManager* manager = ECManager::instance();
        manager->init(nullptr); // as an application without a keyboard file does
        manager->upTLVDecodeFinished(ReportECButtonPressed, hex("0A00000000"));
        const auto keyboard = TestSupport::KeyboardBuilder().group("NumberCommand").key(10, 1, 7).build();
        manager->init(keyboard);
        manager->init(keyboard);
        QSignalSpy clicked(manager, &ECManager::signalECKeyClicked);
        QSignalSpy typed(manager, &ECManager::signalStandardKeyPressed);
        QVERIFY(manager->upTLVDecodeFinished(ReportECButtonPressed, hex("0A00000000")));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(typed.size(), 1);
    }

    void theMissingInstanceIsNotTouched()
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

private:
    QList<QByteArray> takeSent() { return std::exchange(m_sent, {}); }
    /// Tag, length and value of every request since the last call, in hex.
    QStringList takeRequests()
    {
        QStringList requests;
        for (const QByteArray& datagram : takeSent())
            requests.append(QString::fromLatin1(datagram.mid(12).toHex()));
        return requests;
    }

    TestSupport::BareDeviceList m_devices;
    QList<QByteArray> m_sent; ///< by the first route
    std::function<void()> m_whileSending; ///< called by the first route with the next request
    int m_nCopies = 0; ///< of what the first route just got, to the second
    QTemporaryDir m_directory;
};

QTEST_MAIN(TestManager)
#include "tst_manager.moc"

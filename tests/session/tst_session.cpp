#include "bareplatform.h"
#include "ecconsolesession.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "upmessage.h"

#include <QAction>
#include <QHostAddress>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;

namespace {

constexpr quint16 DigitKey = 7;
constexpr quint16 NumberGroupDigit = 1;

} // namespace

/// The session of a host: starting, stopping, starting again. How it follows the service is played with the
/// programs, because it looks for sockets of other processes.
class TestSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatCannotStartSaysWhy()
    {
        QVERIFY(!m_pSession->start(nullptr));
        QVERIFY(m_pSession->errorString().contains("keyboard"));
        QVERIFY(!m_pSession->start(m_keyboard, "nowhere"));
        QVERIFY(m_pSession->errorString().contains("nowhere"));
        {
            QUdpSocket other;
            QVERIFY(other.bind(QHostAddress::AnyIPv4, ECClientPort, QUdpSocket::ShareAddress));
            QVERIFY(!m_pSession->start(m_keyboard));
            QVERIFY(m_pSession->errorString().contains("35556"));
        }
        QVERIFY(!m_pSession->isRunning());
        QVERIFY(m_pSession->start(m_keyboard));
        QVERIFY(m_pSession->errorString().isEmpty());
    }

    void aSessionThatIsStartedAgainActsOnceOnAKey()
    {
        QSignalSpy typed(ECManager::instance(), &ECManager::signalStandardKeyPressed);
        for (int round = 1; round <= 3; ++round) {
            QVERIFY(m_pSession->start(m_keyboard));
            // The receive thread opens the port a moment later; what comes before is lost.
            QTRY_VERIFY(isReceiving());
            press();
            QTRY_COMPARE(typed.size(), round);
            m_pSession->stop();
            QVERIFY(!m_pSession->isRunning());
        }
    }

    void theUnlockActionIsThereWhileTheKeypadIsLocked()
    {
        QVERIFY(m_pSession->start(m_keyboard));
        QAction* const unlock = m_pSession->unlockKeypadAction();
        QVERIFY(!unlock->isEnabled());
        ECManager* const manager = ECManager::instance();
        manager->lockKeypad();
        Q_EMIT manager->signalKeyboardLocked(true);
        QTRY_VERIFY(unlock->isEnabled());
        unlock->trigger();
        QVERIFY(!manager->isLockedKeypad());
        QTRY_VERIFY(!unlock->isEnabled());
    }

    void afterTheSessionThereIsNoManagerAndNoOtherSession()
    {
        QVERIFY(m_pSession->start(m_keyboard));
        m_pSession.reset(); // with the threads running
        QVERIFY(!ECManager::instance());
        ECConsoleSession late;
        QVERIFY(!late.start(m_keyboard));
        QVERIFY(late.errorString().contains("destroyed"));
    }

private:
    static bool isReceiving()
    {
        QUdpSocket probe;
        return !probe.bind(QHostAddress::AnyIPv4, ECClientPort, QUdpSocket::DontShareAddress);
    }
    void press()
    {
        QUdpSocket service;
        const QByteArray report = ConsolePanel::encodeUp(ConsolePanel::KeyReport{true, DigitKey}, 1);
        QCOMPARE(service.writeDatagram(report, QHostAddress::LocalHost, ECClientPort), qint64(report.size()));
    }

    const TestSupport::BareDeviceList m_devices;
    const std::shared_ptr<EC::s_ECKeyboardConfig> m_keyboard =
        TestSupport::KeyboardBuilder().group("NumberCommand").key(DigitKey, NumberGroupDigit, 3).build();
    std::unique_ptr<ECConsoleSession> m_pSession = std::make_unique<ECConsoleSession>();
};

QTEST_MAIN(TestSession)
#include "tst_session.moc"

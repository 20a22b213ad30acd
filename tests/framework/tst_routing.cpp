#include "bareplatform.h"
#include "consolerig.h"
#include "ec/eckeyboardconfig.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include <QDialog>
#include <QTest>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using namespace Orvane::TestSupport;

namespace {

enum : quint16 { PageUp = 1, Digit0 = 10, DigitWithoutPlace = 20, Shared = 30 };

std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    return KeyboardBuilder()
        .group("NumberCommand")
        .selectKeys(Digit0, 10)
        .key(DigitWithoutPlace, 1, 10)
        .key(Shared, 2)
        .group("ScreenCommand")
        .key(PageUp, 2, 0, 512)
        .key(Shared, 2, 0, 512)
        .group("IPresetCommandEX")
        .key(99, 1)
        .build();
}

} // namespace

/// From a report on the decoder thread through the guards to the handler.
class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const LogCapture log;
        m_pDevices = std::make_unique<BareDeviceList>();
        m_pRig = std::make_unique<ConsoleRig>(keyboard());
        QVERIFY(
            log.contains("Unkown event controller keyboard command.The command name is IPresetCommandEX"));
        // Not QSignalSpy: it would write its list on the decoder thread.
        ECManager* const manager = ECManager::instance();
        connect(
            manager, &ECManager::signalStandardKeyPressed, this,
            [this](unsigned int, const QString& text) { m_typed.append(text); });
        connect(manager, &ECManager::signalECKeyClicked, this, [this](bool, unsigned short key) {
            m_clicked.append(key);
        });
    }

    void init()
    {
        QVERIFY(m_pRig->settle());
        m_typed.clear();
        m_clicked.clear();
    }

    void cleanupTestCase() { m_pRig.reset(); }

    void aNumberOfNoKeyIsNamedInTheLog()
    {
        const LogCapture log;
        for (const quint32 number : {500U, 0x10000U + Digit0, 0xFFFFFFFFU}) {
            tap(number);
            const auto line =
                QStringLiteral("[locate key no response] couldn't find command binding to key: %1");
            QVERIFY2(log.contains(line.arg(number)), qPrintable(log.all()));
        }
        QVERIFY(m_typed.isEmpty() && m_clicked.isEmpty());

        unsigned int order = 1;
        QVERIFY(ECManager::instance()->getOrderIndexByECKey(4711, order));
        QCOMPARE(order, Constants::InvalidECKey);
    }

    void aKeyInTwoGroupsBelongsToTheEarlierCommand()
    {
        tap(Shared);
        QCOMPARE(m_typed.size(), 0); // it would be Enter on the keypad
        QCOMPARE(m_clicked.size(), 1);
    }

    void aDigitWithoutAPlaceTypesNoDigit()
    {
        const LogCapture log;
        tap(DigitWithoutPlace);
        QCOMPARE(m_typed, QStringList(QChar(0xFFFF)));
        QVERIFY(log.contains("key order index was not found. ->10"));
    }

    void aDialogIsSeenFromTheFirstMomentToTheLast()
    {
        // The keys are handled while the GUI thread never gets to its event loop, as in a long model
        // operation.
        const auto pressWithoutEventLoop = [&] {
            const LogCapture log;
            m_pRig->press(PageUp);
            return m_pRig->settleWithoutEventLoop()
                && log.contains("[locate key no response] now there is an modal window.");
        };
        QVERIFY(!pressWithoutEventLoop());
        {
            // Works off events while it is being shown, and is the only window.
            class BusyDialog : public QDialog {
                void showEvent(QShowEvent*) override { QCoreApplication::processEvents(); }
            };
            BusyDialog busy;
            busy.setModal(true);
            busy.show();
            QCoreApplication::processEvents();
            QVERIFY(pressWithoutEventLoop());
        }
        QCoreApplication::processEvents();
        QVERIFY(!pressWithoutEventLoop());
        auto first = std::make_unique<QDialog>();
        first->setModal(true);
        first->show();
        QVERIFY(pressWithoutEventLoop());
        QDialog second;
        second.setWindowModality(Qt::ApplicationModal);
        second.show();
        QVERIFY(pressWithoutEventLoop());
        second.hide();
        QCoreApplication::processEvents();
        QVERIFY(pressWithoutEventLoop()); // the first is still open
        first.reset();
        QCoreApplication::processEvents();
        QVERIFY(!pressWithoutEventLoop());
    }

    void anUpgradeIgnoresEverything()
    {
        m_pDevices->m_bUpgrading = true;
        const LogCapture log;
        tap(Digit0);
        m_pRig->tbar(30);
        QVERIFY(m_pRig->settle());
        QCOMPARE(log.count("Device is upgrading... Ignore key release event."), 1);
        QCOMPARE(log.count("Device is upgrading... Ignore key pressed event."), 2); // one of the T-Bar
        QVERIFY(m_typed.isEmpty() && !m_pRig->key(Digit0).isLit);
        m_pDevices->m_bUpgrading = false;
    }

    void aKeyWhoseReleaseWasDroppedGoesDarkWhenTheGuardEnds_data()
    {
        QTest::addColumn<bool>("isLocked");
        QTest::newRow("keypad lock") << true;
        QTest::newRow("upgrade") << false;
    }

    void aKeyWhoseReleaseWasDroppedGoesDarkWhenTheGuardEnds()
    {
        QFETCH(bool, isLocked);
        ECManager* const manager = ECManager::instance();
        const auto guard = [&](bool on) {
            if (!isLocked)
                m_pDevices->m_bUpgrading = on;
            else if (on)
                manager->lockKeypad();
            else
                manager->unlockKeypad();
        };
        m_pRig->press(Digit0);
        QVERIFY(m_pRig->waitShows(Digit0, ECLEDColor::Green));
        guard(true);
        m_pRig->release(Digit0);
        tap(Digit0 + 1); // its press is refused, too: nothing to put to rest
        QVERIFY(m_pRig->shows(Digit0, ECLEDColor::Green));
        guard(false);
        QVERIFY(m_pRig->waitShows(Digit0, ECLEDColor::Off));
        QVERIFY(!m_pRig->key(Digit0 + 1).isLit);
        QCOMPARE(m_typed, QStringList{QStringLiteral("0")});
    }

    void aKeyThatIsPressedAgainAfterItsDroppedReleaseStaysLit()
    {
        m_pRig->press(Digit0);
        QVERIFY(m_pRig->settleWithoutEventLoop());
        m_pDevices->m_bUpgrading = true;
        m_pRig->release(Digit0);
        QVERIFY(m_pRig->settleWithoutEventLoop());
        m_pDevices->m_bUpgrading = false;
        m_pRig->press(Digit0);
        QVERIFY(m_pRig->settleWithoutEventLoop());
        m_pRig->takeRequests();
        QTest::qWait(200); // several looks at the guards
        QVERIFY(m_pRig->takeRequests().empty());
        m_pRig->release(Digit0);
        QVERIFY(m_pRig->waitShows(Digit0, ECLEDColor::Off));
    }

    void anEmptyGroupOfTheKeyboardIsRefusedWithALogLine()
    {
        const LogCapture log;
        const auto config = std::make_shared<EC::s_ECKeyboardConfig>();
        config->m_commands.append(nullptr);
        ECManager::instance()->init(config);
        QVERIFY(log.contains("A group of the keyboard configuration is refused: its entry is empty."));
    }

    void lockReportsOfTheConsoleChangeNothing()
    {
        m_pRig->takeRequests();
        m_pRig->report(ConsolePanel::LockReport{ConsolePanel::LockTarget::Keypad, true});
        m_pRig->report(ConsolePanel::LockReport{ConsolePanel::LockTarget::TBar, true});
        QVERIFY(m_pRig->settle());
        QVERIFY(!ECManager::instance()->isLockedKeypad() && !ECManager::instance()->isLockedTBar());
        for (const auto& request : m_pRig->takeRequests())
            QVERIFY(request.tag != LockKeyboard && request.tag != LockTBar);
    }

private:
    void tap(quint32 key)
    {
        m_pRig->tap(key);
        QVERIFY(m_pRig->settle());
    }

    std::unique_ptr<BareDeviceList> m_pDevices;
    std::unique_ptr<ConsoleRig> m_pRig;
    QStringList m_typed;
    QList<quint16> m_clicked;
};

QTEST_MAIN(TestRouting)
#include "tst_routing.moc"

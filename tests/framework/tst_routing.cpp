#include "bareplatform.h"
#include "consolerig.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using namespace Orvane::TestSupport;

namespace {

enum : quint16 {
    ScreenPageUp = 1,
    ScreenPageDown = 2,
    Digit0 = 10, // to Digit0 + 9
    DigitWithoutPlace = 20,
    Enter = 21,
    Back = 22,
    Plus = 23,
    Minus = 24,
    Shared = 30
};

constexpr quint32 VirtualDigit0 = Constants::VirtualKeyOffset + appNumber(Digit0);

std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    KeyboardBuilder builder;
    builder.group("NumberCommand").selectKeys(Digit0, 10);
    builder.key(DigitWithoutPlace, 1, 10)
        .key(Enter, 2)
        .key(Back, 3)
        .key(Plus, 4)
        .key(Minus, 5)
        .key(Shared, 2);
    builder.group("ScreenCommand")
        .key(ScreenPageUp, 2, 0, 512)
        .key(ScreenPageDown, 3, 0, 512)
        .key(Shared, 2, 0, 512);
    builder.group("IPresetCommandEX").key(99, 1);
    return builder.build();
}

} // namespace

/// From a report on the decoder thread through the guards to the handler.
class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_pRig.reset(); }
    void aDigitIsTypedAndLit();
    void everyKeypadKeyTypesItsKey_data();
    void everyKeypadKeyTypesItsKey();
    void thousandsOfPressesArriveOnceAndInOrder();
    void keysOfTheOnScreenConsole();
    void anUnconfiguredKeyIsLogged();
    void aKeyInTwoGroupsBelongsToTheEarlierCommand();
    void anOpenDialogLetsOnlyTheKeypadThrough();
    void aDialogIsSeenFromTheFirstMomentToTheLast();
    void thePropertyBlocksKeysAndTBar();
    void aLockedKeypadDropsPressesAndReleases();
    void anUpgradeIgnoresEverything();
    void lockReportsOfTheConsoleChangeNothing();

private:
    void expectRefused(quint16 key, const QString& logLine);

    std::unique_ptr<BareDeviceList> m_pDevices;
    std::unique_ptr<ConsoleRig> m_pRig;
    QList<QPair<uint, QString>> m_typed;
    QList<QPair<bool, quint16>> m_clicked;
};

void TestRouting::initTestCase()
{
    const LogCapture log;
    m_pDevices = std::make_unique<BareDeviceList>();
    m_pRig = std::make_unique<ConsoleRig>(keyboard());
    QVERIFY(log.contains("Unkown event controller keyboard command.The command name is IPresetCommandEX"));
    // Not QSignalSpy: it would write its list on the decoder thread.
    connect(
        ECManager::instance(), &ECManager::signalStandardKeyPressed, this,
        [this](unsigned int key, const QString& text) {
            m_typed.append({key, text});
        });
    connect(
        ECManager::instance(), &ECManager::signalECKeyClicked, this,
        [this](bool isBound, unsigned short key) {
            m_clicked.append({isBound, key});
        });
}

void TestRouting::init()
{
    QVERIFY(m_pRig->settle());
    m_typed.clear();
    m_clicked.clear();
}

void TestRouting::expectRefused(quint16 key, const QString& logLine)
{
    const quint64 changesBefore = m_pRig->key(key).changes;
    const LogCapture log;
    m_pRig->tap(key);
    QVERIFY(m_pRig->settle());
    QVERIFY2(log.contains(logLine), qPrintable(log.all()));
    QCOMPARE(m_pRig->key(key).changes, changesBefore);
    QCOMPARE(m_clicked.size(), 0);
}

void TestRouting::aDigitIsTypedAndLit()
{
    m_pRig->press(Digit0 + 7);
    QVERIFY(m_pRig->settle());
    QVERIFY(m_pRig->shows(Digit0 + 7, ECLEDColor::Green));
    QCOMPARE(m_typed.size(), 1);
    QCOMPARE(m_typed.first().second, QStringLiteral("7"));
    QCOMPARE(m_clicked.size(), 1);
    QCOMPARE(m_clicked.first().first, false);
    QCOMPARE(m_clicked.first().second, quint16(Digit0 + 7));
    m_pRig->release(Digit0 + 7);
    QVERIFY(m_pRig->settle());
    QVERIFY(m_pRig->shows(Digit0 + 7, ECLEDColor::Off));
    QCOMPARE(m_typed.size(), 1);
    QCOMPARE(m_pRig->unreadableRequests(), quint64(0));
}

void TestRouting::everyKeypadKeyTypesItsKey_data()
{
    QTest::addColumn<quint16>("key");
    QTest::addColumn<uint>("qtKey");
    QTest::addColumn<QString>("text");
    for (int digit = 0; digit < 10; ++digit)
        QTest::addRow("%d", digit) << quint16(Digit0 + digit) << uint(0x30 + digit) << QString::number(digit);
    QTest::newRow("enter") << quint16(Enter) << 0x01000005u << QStringLiteral("\r");
    QTest::newRow("back") << quint16(Back) << 0x01000003u << QStringLiteral("\b");
    QTest::newRow("plus is up") << quint16(Plus) << 0x01000013u << QString();
    QTest::newRow("minus is down") << quint16(Minus) << 0x01000015u << QString();
    QTest::newRow("no digit") << quint16(DigitWithoutPlace) << 0x01FFFFFFu << QString(QChar(0xFFFF));
}

void TestRouting::everyKeypadKeyTypesItsKey()
{
    QFETCH(quint16, key);
    const LogCapture log;
    m_pRig->tap(key);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 1);
    QTEST(m_typed.first().first, "qtKey");
    QTEST(m_typed.first().second, "text");
    QCOMPARE(log.contains("key order index was not found. ->10"), key == DigitWithoutPlace);
    QVERIFY(m_pRig->shows(key, ECLEDColor::Off));
}

void TestRouting::thousandsOfPressesArriveOnceAndInOrder()
{
    constexpr int presses = 5000;
    m_pRig->takeRequests();
    for (int i = 0; i < presses; ++i)
        m_pRig->tap(quint32(Digit0 + i % 10));
    QVERIFY(m_pRig->settle(30000));
    QCOMPARE(m_typed.size(), presses);
    for (int i = 0; i < presses; ++i)
        QCOMPARE(m_typed.at(i).first, uint(Qt::Key_0 + i % 10));
    const auto requests = m_pRig->takeRequests();
    QCOMPARE(int(requests.size()), 2 * presses);
    for (int i = 0; i < 2 * presses; ++i) {
        const auto& led = std::get<ECButtonColor>(requests[size_t(i)].message);
        QCOMPARE(int(led.ECKey), Digit0 + i / 2 % 10);
        QCOMPARE(int(led.R), i % 2 == 0 ? 0 : 20); // green when pressed, dim when released
    }
}

void TestRouting::keysOfTheOnScreenConsole()
{
    m_pRig->press(VirtualDigit0 + 3);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 1);
    QVERIFY(m_pRig->shows(Digit0 + 3, ECLEDColor::Green));
    QCOMPARE(m_clicked.size(), 0);
    QVERIFY(ECManager::instance()->getVirtualConsoleMode());
    m_pRig->release(Digit0 + 3); // the physical key of the same name
    QVERIFY(m_pRig->settle());
    QVERIFY(!ECManager::instance()->getVirtualConsoleMode());
    QVERIFY(m_pRig->shows(Digit0 + 3, ECLEDColor::Off));

    const LogCapture log;
    unsigned int same = 1, answer = 0;
    QVERIFY(ECManager::instance()->getECKeyByOrvaneECKey(appNumber(Enter), answer));
    QCOMPARE(answer, uint(Enter));
    QVERIFY(ECManager::instance()->getOrderIndexByECKey(4711, same));
    QCOMPARE(same, Constants::InvalidECKey);
    QVERIFY(log.contains(" Can not find operate ECKey . OrvaneKey :4711"));
    m_pRig->press(0xFFFFFFFF);
    QVERIFY(m_pRig->settle());
    QVERIFY(log.contains("[locate key no response] couldn't find command binding to key: 4294967295"));
}

void TestRouting::anUnconfiguredKeyIsLogged()
{
    expectRefused(500, QStringLiteral("[locate key no response] couldn't find command binding to key: 500"));
    m_pRig->press(0x10000 + Digit0); // no 16-bit number of a key
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 0);
}

void TestRouting::aKeyInTwoGroupsBelongsToTheEarlierCommand()
{
    m_pRig->tap(Shared);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 0); // it would be Enter on the keypad
    QCOMPARE(m_clicked.size(), 1);
}

void TestRouting::anOpenDialogLetsOnlyTheKeypadThrough()
{
    QDialog dialog;
    dialog.setObjectName(QStringLiteral("saveDialog"));
    QLineEdit field(&dialog);
    field.setObjectName(QStringLiteral("nameField"));
    dialog.setModal(true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    expectRefused(ScreenPageUp, QStringLiteral("[locate key no response] now there is an modal window."));
    m_pRig->press(Digit0);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 1);
    QVERIFY(m_pRig->shows(Digit0, ECLEDColor::Green));
    m_pRig->release(Digit0);
    QVERIFY(m_pRig->settle());
    QVERIFY(m_pRig->shows(Digit0, ECLEDColor::Off)); // not left green under the dialog

    const LogCapture log;
    m_pRig->tbar(30);
    QVERIFY(m_pRig->settle());
    QVERIFY2(log.contains("T-Bar ignored :Console Event has waiting window, pos:"), qPrintable(log.all()));
    QVERIFY(log.contains(",obiject name:saveDialog"));
    dialog.close();
    QVERIFY(m_pRig->settle());
    m_clicked.clear();
    m_pRig->tap(ScreenPageUp);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_clicked.size(), 1);
}

void TestRouting::aDialogIsSeenFromTheFirstMomentToTheLast()
{
    // The keys are handled while the GUI thread never gets to its event loop, as in a long model operation.
    const auto pressWithoutEventLoop = [&] {
        const LogCapture log;
        m_pRig->press(ScreenPageUp);
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

    QWidget plain;
    plain.show();
    QVERIFY(!pressWithoutEventLoop());
}

void TestRouting::thePropertyBlocksKeysAndTBar()
{
    qApp->setProperty("Quenor", true);
    expectRefused(ScreenPageUp, QStringLiteral("[locate key no response] now there is an modal window."));
    m_pRig->tap(Digit0);
    const LogCapture log;
    m_pRig->tbar(30);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_typed.size(), 1);
    QVERIFY(log.contains("T-Bar ignored: property Quenor is true"));
    qApp->setProperty("Quenor", QVariant());
    m_pRig->tap(ScreenPageUp);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_clicked.size(), 2);
}

void TestRouting::aLockedKeypadDropsPressesAndReleases()
{
    m_pRig->press(Digit0);
    QVERIFY(m_pRig->settle());
    m_clicked.clear();
    ECManager::instance()->lockKeypad();
    const quint64 changes = m_pRig->key(Digit0).changes;
    m_pRig->release(Digit0);
    QVERIFY(m_pRig->settle());
    QCOMPARE(m_pRig->key(Digit0).changes, changes); // a release is never let through a lock
    expectRefused(Digit0 + 1, QStringLiteral("[locate key no response] now the keypad is locked."));
    const LogCapture log;
    m_pRig->tbar(30);
    QVERIFY(m_pRig->settle());
    QVERIFY(log.contains("T-Bar ignored :Console Event screen locked..."));
    ECManager::instance()->unlockKeypad();
    m_pRig->tap(Digit0);
    QVERIFY(m_pRig->settle());
    QVERIFY(m_pRig->shows(Digit0, ECLEDColor::Off));
}

void TestRouting::anUpgradeIgnoresEverything()
{
    m_pDevices->m_bUpgrading = true;
    expectRefused(Digit0, QStringLiteral("Device is upgrading... Ignore key pressed event."));
    const LogCapture log;
    m_pRig->release(Digit0);
    m_pRig->tbar(30);
    QVERIFY(m_pRig->settle());
    QCOMPARE(log.count("Device is upgrading... Ignore key release event."), 1);
    QCOMPARE(log.count("Device is upgrading... Ignore key pressed event."), 1); // of the T-Bar
    QCOMPARE(m_typed.size(), 0);
    m_pDevices->m_bUpgrading = false;
}

void TestRouting::lockReportsOfTheConsoleChangeNothing()
{
    m_pRig->takeRequests();
    m_pRig->report(ConsolePanel::LockReport{ConsolePanel::LockTarget::Keypad, true});
    m_pRig->report(ConsolePanel::LockReport{ConsolePanel::LockTarget::TBar, true});
    QVERIFY(m_pRig->settle());
    QVERIFY(!ECManager::instance()->isLockedKeypad() && !ECManager::instance()->isLockedTBar());
    for (const auto& request : m_pRig->takeRequests())
        QVERIFY(request.tag != LockKeyboard && request.tag != LockTBar);
}

QTEST_MAIN(TestRouting)
#include "tst_routing.moc"

#include "functionscene.h"
#include "logcapture.h"

#include "ecmanager.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace FunctionScene;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using MemoryModel::Times;
using TestSupport::LogCapture;

namespace {

const QString A = "A";
const QString SaveDialog = "wait Saving device data, please wait.";
const QString Hide = "hide";
const QString SavedBox = "box 2 save data successed.";
const QString NotSavedBox = "box 1 save data failure.";

// Holds lock after two seconds.
constexpr int AlmostTwoSecondsMs = 1700;
constexpr int MoreThanTwoSecondsMs = 4000;
/// A hold that began before would have acted by then.
constexpr int PastTheHoldMs = 2300;

} // namespace

/// The stories of the function keys, except for the secondary screen's.
class TestFunctionKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard()); }
    void init()
    {
        lockKeypad(false);
        lockTBar(false);
        m_pRig->operations().clearAllOrders();
        m_pRig->model().setShowFile({});
        QVERIFY(m_pRig->load(show()));
        m_pRig->forget();
    }
    void cleanupTestCase() { m_pRig.reset(); }

    void savesRunOneAtATimeAndAgainAfterAFailure()
    {
        m_pRig->operations().delay(Operation::AsyncSaveDeviceData, 100ms, Times::Once);
        LogCapture log;
        console().tap(Save);
        console().tap(Save); // while the first is running
        QVERIFY(m_pRig->waitNotice(NotSavedBox)); // there is no file to write
        QCOMPARE(m_pRig->asked(Operation::AsyncSaveDeviceData).size(), 1);
        QCOMPARE(m_pRig->countNotices(SaveDialog), 1);
        QCOMPARE(m_pRig->countNotices(Hide), 1);
        QCOMPARE(log.count("save key: the last save has not ended"), 1);
        QVERIFY(console().shows(Save, ECLEDColor::Off));
        QVERIFY(console().key(Save).changes >= 2); // it was green in between

        QTemporaryDir directory;
        const QString file = directory.filePath("show.json");
        m_pRig->model().setShowFile(file);
        QVERIFY(QTest::qWaitFor([&] {
            console().tap(Save);
            return console().settle() && m_pRig->asked(Operation::AsyncSaveDeviceData).size() == 2;
        }));
        QVERIFY(m_pRig->waitNotice(SavedBox));
        QCOMPARE(m_pRig->countNotices(Hide), 2);
        QVERIFY(QFile::exists(file));
    }

    void aRefusedSaveKeepsNoneFromSaving()
    {
        const auto isRefused = [this] {
            console().tap(Save);
            return console().settle() && m_pRig->asked(Operation::AsyncSaveDeviceData).isEmpty()
                && m_pRig->countNotices(SaveDialog) == 0;
        };
        m_pRig->control().activateDevice({});
        QVERIFY(isRefused());
        m_pRig->control().activateDevice(A);
        m_pRig->control().setOnline(A, false);
        QVERIFY(isRefused());
        m_pRig->control().setOnline(A, true);
        {
            LogCapture log;
            QDialog dialog;
            dialog.open();
            QVERIFY(isRefused());
            QVERIFY(log.contains("now there is an modal window."));
        }
        console().tap(Save);
        QVERIFY(m_pRig->waitAsked(Operation::AsyncSaveDeviceData, 1));
        QVERIFY(m_pRig->waitNotice(Hide));
    }

    void holdingTheTBarKeyForTwoSecondsTogglesTheLock()
    {
        const ECManager* manager = ECManager::instance();
        console().press(TBarLock);
        QVERIFY(console().waitShows(TBarLock, ECLEDColor::Green));
        QTest::qWait(AlmostTwoSecondsMs);
        console().release(TBarLock);
        QVERIFY(console().waitShows(TBarLock, ECLEDColor::Off));
        QTest::qWait(500); // past the time at which it would have locked
        QVERIFY(!manager->isLockedTBar());

        for (const bool locks : {true, false}) {
            QElapsedTimer held;
            held.start();
            console().press(TBarLock);
            QVERIFY(QTest::qWaitFor([&] { return manager->isLockedTBar() == locks; }, MoreThanTwoSecondsMs));
            QVERIFY(held.elapsed() >= 2000);
            console().release(TBarLock);
            QVERIFY(console().settle());
            const auto color = locks ? ECLEDColor::Green : ECLEDColor::Off;
            QVERIFY(console().waitShows(TBarLock, color));
            console().tap(TBarLock); // a short press leaves it as it is
            QVERIFY(console().settle());
            QVERIFY(console().shows(TBarLock, color));
        }
    }

    void theKeyOfALockedKeypadOnlyLocksAgain()
    {
        ECManager* manager = ECManager::instance();
        int timesLocked = 0;
        QObject context;
        QObject::connect(
            manager, &ECManager::signalKeyboardLocked, &context, [&](bool locked) { timesLocked += locked; });
        console().press(KeypadLock);
        QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Green));
        {
            QDialog dialog;
            dialog.open();
            console().release(KeypadLock); // a dialog lets it through
            QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Off));
        }
        console().press(KeypadLock);
        QVERIFY(QTest::qWaitFor([&] { return timesLocked == 1; }, MoreThanTwoSecondsMs));
        QVERIFY(manager->isLockedKeypad());
        console().release(KeypadLock); // the lock does not
        QVERIFY(console().settle());
        QVERIFY(console().shows(KeypadLock, ECLEDColor::Green));

        console().takeRequests();
        console().press(KeypadLock);
        QVERIFY(QTest::qWaitFor([&] { return timesLocked == 2; }, MoreThanTwoSecondsMs));
        const auto requests = console().takeRequests();
        QVERIFY(std::any_of(requests.begin(), requests.end(), [](const auto& request) {
            const auto* lock = std::get_if<ConsolePanel::LockRequest>(&request.message);
            return lock && lock->action == ConsolePanel::LockRequest::Lock;
        }));

        manager->unlockKeypad();
        Q_EMIT manager->signalKeyboardLocked(false);
        QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Off));
        console().tap(KeypadLock); // its release finds the key unlocked
        QVERIFY(console().settle());
        QVERIFY(console().shows(KeypadLock, ECLEDColor::Off));
    }

    void theTBarKeyFollowsLocksOfOthers()
    {
        const ECManager* manager = ECManager::instance();
        console().press(TBarLock);
        QVERIFY(console().settle());
        lockTBar(true);
        // The hold would have taken back what the application has just done.
        QTest::qWait(PastTheHoldMs);
        QVERIFY(manager->isLockedTBar());
        console().release(TBarLock);
        QVERIFY(console().settle());
        QVERIFY(console().shows(TBarLock, ECLEDColor::Green));
        QVERIFY(holdUntil(TBarLock, [&] { return !manager->isLockedTBar(); }));
        QVERIFY(console().waitShows(TBarLock, ECLEDColor::Off));

        console().report(ConsolePanel::LockReport{ConsolePanel::LockTarget::TBar, true});
        QVERIFY(console().waitShows(TBarLock, ECLEDColor::Green));
        console().takeRequests();
        console().report(ConsolePanel::LockReport{ConsolePanel::LockTarget::TBar, true});
        QVERIFY(console().settle());
        QVERIFY(console().takeRequests().empty()); // as the key shows already
    }

    void unlockingTheKeypadEndsTheHoldOfItsKey()
    {
        lockKeypad(true);
        console().press(KeypadLock);
        QVERIFY(console().settle());
        lockKeypad(false);
        QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Off));
        QTest::qWait(PastTheHoldMs);
        QVERIFY(!ECManager::instance()->isLockedKeypad());
    }

    void aHoldWhoseReleaseTheKeypadLockDroppedEndsWithoutActing()
    {
        console().press(TBarLock);
        QVERIFY(console().settle());
        lockKeypad(true);
        console().release(TBarLock);
        QVERIFY(console().settle());
        lockKeypad(false);
        QVERIFY(console().waitShows(TBarLock, ECLEDColor::Off));
        QTest::qWait(PastTheHoldMs);
        QVERIFY(!ECManager::instance()->isLockedTBar());
    }

    void anUnlockOfTheApplicationAtTheSameMomentLeavesTheKeyDark()
    {
        // As another thread would, between the request of a key's timer and its announcement.
        ECManager* manager = ECManager::instance();
        const int route = manager->addSendRoute([](const QByteArray& datagram) {
            const auto tag = Wire::load<quint16>(datagram.constData() + ECHeadSize);
            if (tag == LockTBar)
                lockTBar(false);
            if (tag == LockKeyboard)
                lockKeypad(false);
            return true;
        });
        int timesEmitted = 0;
        QObject context;
        const auto count = [&timesEmitted](bool) { ++timesEmitted; };
        QObject::connect(manager, &ECManager::signalTbarLocked, &context, count);
        QObject::connect(manager, &ECManager::signalKeyboardLocked, &context, count);
        for (const quint16 key : {TBarLock, KeypadLock}) {
            timesEmitted = 0;
            const bool wereEmitted = holdUntil(key, [&] { return timesEmitted >= 2; });
            QVERIFY(wereEmitted && console().settle());
            QVERIFY(console().shows(key, ECLEDColor::Off));
        }
        manager->removeSendRoute(route);
        QVERIFY(!manager->isLockedTBar() && !manager->isLockedKeypad());
    }

    void aConsoleThatWasAwayGetsTheFunctionKeysLightsAgain()
    {
        ECManager* manager = ECManager::instance();
        lockTBar(true);
        manager->switchSource(arm_left);
        console().report(ConsolePanel::DviReport{{{0, 1}}});
        QVERIFY(console().settle());
        QVERIFY(console().shows(Mvr, ECLEDColor::Yellow));
        console().takeRequests();
        manager->slotOrvanePluginModeChanged();
        QVERIFY(litKeys().isEmpty());
        manager->showFunctionKeyLights();
        QCOMPARE(litKeys(), (QList<int>{TBarLock, KeypadLock, Mvr}));
        QVERIFY(console().shows(TBarLock, ECLEDColor::Green));
        QVERIFY(console().shows(KeypadLock, ECLEDColor::Off));
        QVERIFY(console().shows(Mvr, ECLEDColor::Yellow));
    }

    void copiesThatAreTooManyAreRefused_data()
    {
        QTest::addColumn<bool>("isPreview");
        QTest::addColumn<QString>("line");
        QTest::newRow("for the preview")
            << true << "Create layer by CopyAndMirror failed:Layer count is more than PVW";
        QTest::newRow("for the program")
            << false << "Create layer by CopyAndMirror failed:Layer count is more than PGM";
    }
    void copiesThatAreTooManyAreRefused()
    {
        QFETCH(bool, isPreview);
        QFETCH(QString, line);
        MemoryModel::ShowRecord record = show();
        MemoryModel::ScreenRecord& stage = record.devices[0].screens[0];
        // Two are selected: four and two are more than four, and so are three and two.
        stage.pvw[1].selected = true;
        stage.pvw.append(layerRecord(3, QRect(0, 600, 480, 270), false));
        if (!isPreview) {
            stage.pgmEdit = true;
            stage.pgm.swap(stage.pvw);
        }
        QVERIFY(m_pRig->load(record));
        m_pRig->forget();
        LogCapture log;
        console().tap(Copy);
        console().tap(MirrorCopy);
        QVERIFY(console().settle());
        QCOMPARE(log.count(line), 2);
        QVERIFY(m_pRig->asked(Operation::AsyncAddCopyLayers).isEmpty());
        QCOMPARE(m_pRig->countNotices("status 1 3000 Layer count is more than 4"), 2);
        QVERIFY(console().waitShows(Copy, ECLEDColor::Off));
    }

    void copiesThatFailAreShownToTheUser()
    {
        m_pRig->operations().fail(Operation::AsyncAddCopyLayers, "The card is on fire.", Times::Once);
        LogCapture log;
        console().press(Copy);
        QVERIFY(console().waitShows(Copy, ECLEDColor::Green));
        QVERIFY(m_pRig->waitNotice("status 1 3000 The card is on fire."));
        QVERIFY(log.contains("The card is on fire."));
        console().release(Copy);
        QVERIFY(console().waitShows(Copy, ECLEDColor::Off));
        m_pRig->control().activateDevice({});
        console().tap(MirrorCopy);
        QVERIFY(log.waitFor("Create layer by Copy failed: actived screen is null."));
    }

    /// The last test: there is one console a process.
    void aSaveThatEndsAfterTheConsoleIsStillShown()
    {
        m_pRig->operations().delay(Operation::AsyncSaveDeviceData, 300ms, Times::Once);
        console().press(TBarLock); // a hold is under way as well
        console().tap(Save);
        QVERIFY(m_pRig->waitAsked(Operation::AsyncSaveDeviceData, 1));
        m_pRig->endConsole();
        QVERIFY(m_pRig->waitNotice(NotSavedBox));
    }

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    // As an application locks and unlocks.
    static void lockTBar(bool locked)
    {
        ECManager* manager = ECManager::instance();
        locked ? manager->lockTBar() : manager->unlockTBar();
        Q_EMIT manager->signalTbarLocked(locked);
    }
    static void lockKeypad(bool locked)
    {
        ECManager* manager = ECManager::instance();
        locked ? manager->lockKeypad() : manager->unlockKeypad();
        Q_EMIT manager->signalKeyboardLocked(locked);
    }
    bool holdUntil(quint16 key, const std::function<bool()>& condition)
    {
        console().press(key);
        const bool isMet = QTest::qWaitFor(condition, MoreThanTwoSecondsMs);
        console().release(key);
        return isMet && console().settle();
    }
    /// The function keys whose light was sent since the last call.
    QList<int> litKeys()
    {
        QList<int> keys;
        for (const auto& request : console().takeRequests()) {
            if (const auto* led = std::get_if<ECButtonColor>(&request.message); led && led->ECKey <= DviLight)
                keys.append(led->ECKey);
        }
        return keys;
    }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

QTEST_MAIN(TestFunctionKeys)
#include "tst_functionkeys.moc"

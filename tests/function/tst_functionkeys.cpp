#include "functionscene.h"
#include "logcapture.h"

#include "bizmodel/layer.h"
#include "ecmanager.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace FunctionScene;
using namespace std::chrono_literals;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::Times;
using TestSupport::LogCapture;

namespace {

const QString A = QStringLiteral("A");
const QString SaveDialog = QStringLiteral("wait Saving device data, please wait.");
const QString Hide = QStringLiteral("hide");
const QString SavedBox = QStringLiteral("box 2 save data successed.");
const QString NotSavedBox = QStringLiteral("box 1 save data failure.");

// Holds lock after two seconds.
constexpr auto AlmostTwoSeconds = 1700ms;
constexpr int MoreThanTwoSecondsMs = 4000;

} // namespace

/// The stories of the function keys, except for the secondary screen's.
class TestFunctionKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_pRig.reset(); }

    void saveWritesTheShowOnceAtATime();
    void aSaveThatFailsIsToldAndMayBeRepeated();
    void saveIsRefused_data();
    void saveIsRefused();
    void holdingTheTBarKeyTogglesTheLock();
    void lettingGoUnderADialogCutsTheHoldShort();
    void holdingTheKeypadKeyLocksUntilTheApplicationUnlocks();
    void copiesLandBesideTheSelectedLayers_data();
    void copiesLandBesideTheSelectedLayers();
    void copiesAreRefused_data();
    void copiesAreRefused();
    void copiesThatTheDeviceRefusesAreTold();
    void answersAfterTheEndOfTheConsole();

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    QList<QRect> windows(SceneType scene = SceneType::PVW);
    /// Waits for the log line of a hold's end and says how long it took since the press.
    qint64 holdUntil(const LogCapture& log, quint16 key, const QString& line);

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

void TestFunctionKeys::initTestCase()
{
    m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
}

void TestFunctionKeys::init()
{
    ECManager::instance()->unlockKeypad();
    m_pRig->operations().clearAllOrders();
    QVERIFY(m_pRig->load(show()));
    m_pRig->forget();
}

QList<QRect> TestFunctionKeys::windows(SceneType scene)
{
    QList<QRect> rects;
    const auto layers = m_pRig->screen(A, Stage)->layers(scene, BizModel::LayerType::AllLayerType);
    for (const auto& layer : layers)
        rects.append(layer.lock()->windowRect());
    return rects;
}

// ---- Saving ---------------------------------------------------------------------------------------------

void TestFunctionKeys::saveWritesTheShowOnceAtATime()
{
    QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("show.json"));
    m_pRig->model().setShowFile(file);
    m_pRig->operations().delay(Operation::AsyncSaveDeviceData, 100ms, Times::Once);

    console().tap(Save);
    console().tap(Save); // while the first is running
    QVERIFY(m_pRig->waitNotice(SavedBox));
    QCOMPARE(m_pRig->asked(Operation::AsyncSaveDeviceData).size(), 1);
    QCOMPARE(m_pRig->countNotices(SaveDialog), 1);
    QCOMPARE(m_pRig->countNotices(Hide), 1);
    QVERIFY(QFile::exists(file));
    QVERIFY(console().shows(Save, ECLEDColor::Off));
    QVERIFY(console().key(Save).changes >= 2); // it was green in between

    QVERIFY(QTest::qWaitFor([&] {
        console().tap(Save);
        return console().settle() && m_pRig->asked(Operation::AsyncSaveDeviceData).size() == 2;
    }));
    QVERIFY(m_pRig->waitNotice(SavedBox, 2));
}

void TestFunctionKeys::aSaveThatFailsIsToldAndMayBeRepeated()
{
    m_pRig->model().setShowFile({});
    LogCapture log;
    for (int attempt = 1; attempt <= 2; ++attempt) {
        QVERIFY(QTest::qWaitFor([&] {
            console().tap(Save);
            return console().settle() && m_pRig->asked(Operation::AsyncSaveDeviceData).size() == attempt;
        }));
        QVERIFY(m_pRig->waitNotice(NotSavedBox, attempt));
        QCOMPARE(log.count(QStringLiteral("Save device data has failed.")), attempt);
    }
    QCOMPARE(m_pRig->countNotices(Hide), 2);
}

void TestFunctionKeys::saveIsRefused_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("without a device") << QStringLiteral("no device");
    QTest::newRow("by an offline device") << QStringLiteral("offline");
    QTest::newRow("under a dialog") << QStringLiteral("dialog");
}

void TestFunctionKeys::saveIsRefused()
{
    QFETCH(QString, reason);
    std::unique_ptr<QDialog> dialog;
    if (reason == QLatin1String("no device")) {
        m_pRig->control().activateDevice({});
    } else if (reason == QLatin1String("offline")) {
        m_pRig->control().setOnline(A, false);
    } else {
        dialog = std::make_unique<QDialog>();
        dialog->open();
    }
    console().tap(Save);
    QVERIFY(console().settle());
    QVERIFY(m_pRig->asked(Operation::AsyncSaveDeviceData).isEmpty());
    QCOMPARE(m_pRig->countNotices(SaveDialog), 0);

    // A refused press must not keep the next from saving.
    dialog.reset();
    m_pRig->control().setOnline(A, true);
    m_pRig->control().activateDevice(A);
    console().tap(Save);
    QVERIFY(m_pRig->waitAsked(Operation::AsyncSaveDeviceData, 1));
    QVERIFY(m_pRig->waitNotice(Hide));
}

// ---- Locks ----------------------------------------------------------------------------------------------

qint64 TestFunctionKeys::holdUntil(const LogCapture& log, quint16 key, const QString& line)
{
    QElapsedTimer held;
    held.start();
    console().press(key);
    const bool ended = log.waitFor(line, MoreThanTwoSecondsMs);
    const qint64 duration = held.elapsed();
    console().release(key);
    console().settle();
    return ended ? duration : -1;
}

void TestFunctionKeys::holdingTheTBarKeyTogglesTheLock()
{
    const ECManager* manager = ECManager::instance();
    QStringList told;
    QObject context;
    QObject::connect(manager, &ECManager::signalTbarLocked, &context, [&](bool locked) {
        told.append(locked ? QStringLiteral("locked") : QStringLiteral("unlocked"));
    });
    LogCapture log;

    console().press(TBarLock);
    QVERIFY(console().waitShows(TBarLock, ECLEDColor::Green));
    QTest::qWait(int(std::chrono::milliseconds(AlmostTwoSeconds).count()));
    console().release(TBarLock);
    QVERIFY(console().waitShows(TBarLock, ECLEDColor::Off));
    QTest::qWait(500); // past the time at which it would have locked
    QVERIFY(!manager->isLockedTBar());

    QVERIFY(holdUntil(log, TBarLock, QStringLiteral("current T-Bar status is true")) >= 2000);
    QVERIFY(manager->isLockedTBar());
    QVERIFY(console().console().isTBarLocked);
    QVERIFY(console().shows(TBarLock, ECLEDColor::Green));

    // A short press of the locked key leaves it lit.
    console().tap(TBarLock);
    QVERIFY(console().settle());
    QVERIFY(console().shows(TBarLock, ECLEDColor::Green));

    QVERIFY(holdUntil(log, TBarLock, QStringLiteral("current T-Bar status is false")) >= 2000);
    QVERIFY(console().waitShows(TBarLock, ECLEDColor::Off));
    QVERIFY(!manager->isLockedTBar());
    QTRY_COMPARE(told, (QStringList{QStringLiteral("locked"), QStringLiteral("unlocked")}));
}

void TestFunctionKeys::lettingGoUnderADialogCutsTheHoldShort()
{
    console().press(KeypadLock);
    QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Green));
    QDialog dialog;
    dialog.open();
    console().release(KeypadLock);
    QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Off));
    QTest::qWait(2300);
    QVERIFY(!ECManager::instance()->isLockedKeypad());
}

void TestFunctionKeys::holdingTheKeypadKeyLocksUntilTheApplicationUnlocks()
{
    ECManager* manager = ECManager::instance();
    LogCapture log;
    QElapsedTimer held;
    held.start();
    console().press(KeypadLock);
    QVERIFY(QTest::qWaitFor([&] { return manager->isLockedKeypad(); }, MoreThanTwoSecondsMs));
    QVERIFY(held.elapsed() >= 2000);
    QVERIFY(console().waitShows(KeypadLock, ECLEDColor::Green));
    console().release(KeypadLock); // dropped by the lock
    QVERIFY(console().settle());
    QVERIFY(console().shows(KeypadLock, ECLEDColor::Green));
    QVERIFY(console().console().isKeypadLocked);

    // Nothing but the lock key passes, and it only locks again.
    console().tap(Save);
    QVERIFY(console().settle());
    QVERIFY(log.contains(QStringLiteral("[locate key no response] now the keypad is locked.")));
    QVERIFY(m_pRig->asked(Operation::AsyncSaveDeviceData).isEmpty());
    console().takeRequests();
    bool isLockedAgain = false;
    QObject context;
    QObject::connect(
        manager, &ECManager::signalKeyboardLocked, &context, [&](bool locked) { isLockedAgain = locked; });
    console().press(KeypadLock);
    QVERIFY(QTest::qWaitFor([&] { return isLockedAgain; }, MoreThanTwoSecondsMs));
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

// ---- Copies ---------------------------------------------------------------------------------------------

void TestFunctionKeys::copiesLandBesideTheSelectedLayers_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QRect>("copy");
    QTest::newRow("in place") << int(Copy) << QRect(0, 100, 480, 270);
    QTest::newRow("mirrored") << int(MirrorCopy) << QRect(1440, 100, 480, 270);
}

void TestFunctionKeys::copiesLandBesideTheSelectedLayers()
{
    QFETCH(int, key);
    QFETCH(QRect, copy);
    console().press(quint32(key));
    QVERIFY(console().waitShows(quint16(key), ECLEDColor::Green));
    QTRY_COMPARE(windows().size(), 3);
    QCOMPARE(windows().last(), copy);
    console().release(quint32(key));
    QVERIFY(console().waitShows(quint16(key), ECLEDColor::Off));
    QVERIFY(m_pRig->notices().empty());
}

void TestFunctionKeys::copiesAreRefused_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("notice");
    const QString nothing;
    QTest::newRow("nothing selected")
        << QStringLiteral("nothing selected")
        << QStringLiteral("Create layer by Copy failed: select layer is empty.") << nothing;
    QTest::newRow("no device") << QStringLiteral("no device")
                               << QStringLiteral("Create layer by Copy failed: actived screen is null.")
                               << nothing;
    QTest::newRow("a full preview") << QStringLiteral(
        "full preview") << QStringLiteral("Create layer by CopyAndMirror failed:Layer count is more than PVW")
                                    << QStringLiteral("status 1 3000 Layer count is more than 4");
    QTest::newRow("a full program") << QStringLiteral(
        "full program") << QStringLiteral("Create layer by CopyAndMirror failed:Layer count is more than PGM")
                                    << QStringLiteral("status 1 3000 Layer count is more than 4");
    QTest::newRow("a dialog") << QStringLiteral("dialog")
                              << QStringLiteral("[locate key no response] now there is an modal window.")
                              << nothing;
}

void TestFunctionKeys::copiesAreRefused()
{
    QFETCH(QString, reason);
    QFETCH(QString, line);
    QFETCH(QString, notice);
    MemoryModel::ShowRecord record = show();
    MemoryModel::ScreenRecord& stage = record.devices[0].screens[0];
    std::unique_ptr<QDialog> dialog;
    if (reason == QLatin1String("nothing selected")) {
        stage.pvw[0].selected = false;
    } else if (reason == QLatin1String("full preview")) {
        // Two are selected: four and two are more than four, and so are three and two.
        stage.pvw[1].selected = true;
        stage.pvw.append(layerRecord(3, QRect(0, 600, 480, 270), false));
    } else if (reason == QLatin1String("full program")) {
        stage.pgmEdit = true;
        stage.pgm = stage.pvw;
        stage.pvw.clear();
        stage.pgm[1].selected = true;
        stage.pgm.append(layerRecord(3, QRect(0, 600, 480, 270), false));
    } else if (reason == QLatin1String("dialog")) {
        dialog = std::make_unique<QDialog>();
        dialog->open();
    }
    QVERIFY(m_pRig->load(record));
    if (reason == QLatin1String("no device"))
        m_pRig->control().activateDevice({});
    m_pRig->forget();

    LogCapture log;
    console().press(Copy);
    console().press(MirrorCopy);
    QVERIFY(console().settle());
    QCOMPARE(log.count(line), 2);
    QVERIFY(m_pRig->asked(Operation::AsyncAddCopyLayers).isEmpty());
    QCOMPARE(m_pRig->notices().size(), notice.isEmpty() ? 0u : 2u);
    QCOMPARE(m_pRig->countNotices(notice), notice.isEmpty() ? 0 : 2);
    console().release(Copy);
    console().release(MirrorCopy);
    QVERIFY(console().waitShows(Copy, ECLEDColor::Off));
    QVERIFY(console().waitShows(MirrorCopy, ECLEDColor::Off));
}

void TestFunctionKeys::copiesThatTheDeviceRefusesAreTold()
{
    m_pRig->operations().fail(
        Operation::AsyncAddCopyLayers, QStringLiteral("The card is on fire."), Times::Once);
    LogCapture log;
    console().tap(Copy);
    QVERIFY(m_pRig->waitNotice(QStringLiteral("status 1 3000 The card is on fire.")));
    QVERIFY(log.contains(QStringLiteral("The card is on fire.")));
    QCOMPARE(windows().size(), 2);
}

/// The last test: there is one console a process.
void TestFunctionKeys::answersAfterTheEndOfTheConsole()
{
    m_pRig->model().setShowFile({});
    m_pRig->operations().delay(Operation::AsyncSaveDeviceData, 300ms, Times::Once);
    console().press(TBarLock); // a hold is under way as well
    console().tap(Save);
    QVERIFY(m_pRig->waitAsked(Operation::AsyncSaveDeviceData, 1));
    m_pRig->endConsole();
    QVERIFY(m_pRig->waitNotice(NotSavedBox));
}

QTEST_MAIN(TestFunctionKeys)
#include "tst_functionkeys.moc"

#include "modeltestsupport.h"

#include "modelcontrol/asyncmanager.h"

#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using BizModel::SelectedType;
using State = BizModel::Screen::State;

namespace {

const QString A = QStringLiteral("A");
constexpr int Mask = BizModel::Enum::Screen::RegularAndAUXScreens;
constexpr ScreenType Regular = ScreenType::RegularScreen;

QList<quint32> ids(const QList<std::weak_ptr<BizModel::Screen>>& screens)
{
    QList<quint32> list;
    for (const auto& weak : screens) {
        if (const auto screen = weak.lock())
            list += screen->screenId();
    }
    return list;
}

Outcome create(Model& m, const QList<std::shared_ptr<BizModel::Screen>>& screens)
{
    Outcome outcome;
    AsyncManager::instance()->startAsyncRequest(AsyncCreateScreen{m.device(), screens, outcome.completion()});
    outcome.wait();
    return outcome;
}

} // namespace

class TestScreens : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void createdScreenIsAddedAndNothingElse();
    void creationStopsAtTheLimitAndAtUsedOutputs();
    void failedCreationLeavesNothing();
    void selectionFollowsTheDevicesMode();
    void activeScreenChangesAndIsReplaced();
    void screensAreRenamedMovedAndIndexed();
    void effectIsCheckedAndTold();
    void onlyIdleScreensAreMarkedOutOfResources();
    void completeWhenAllOutputsAreOnline();
    void devicesChange();
    void operationsAreJournaled();
};

void TestScreens::createdScreenIsAddedAndNothingElse()
{
    ShowRecord show = smallShow();
    show.devices[0].screens.removeAt(1);
    Model m(show);
    const auto screen = m.device()->createDefaultScreen(Regular);
    QVERIFY(screen);
    QCOMPARE(screen->screenId(), 2U);
    const auto output = m.device()->firstUnsedOutput();
    QVERIFY(!output.expired());
    screen->addOutput(output);
    screen->setUiScreenIndex(5);
    QCOMPARE(screen->outputs().size(), 1);
    QVERIFY(m.device()->firstUnsedOutput().expired());
    QCOMPARE(ids(m.device()->screens(Regular)), (QList<quint32>{1, 3}));
    QCOMPARE(m.log.names(), QStringList());

    QVERIFY(create(m, {screen}).ok());
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalScreenAdded")));
    QCOMPARE(ids(m.device()->screens(Regular)), (QList<quint32>{1, 3, 2}));
    QVERIFY(!screen->selected());
    QCOMPARE(m.device()->activedScreen().lock(), m.screen(1));
    QCOMPARE(screen->mosaicRect(output), QRectF(0, 0, 1920, 1080));
    QCOMPARE(screen->uiScreenIndex(), 5);
    screen->addOutput(output);
    QCOMPARE(screen->outputs().size(), 1);
    QStringList faults;
    QVERIFY(m.model.load(m.model.show(), faults));
    QCOMPARE(m.screen(2)->uiScreenIndex(), 5);
}

void TestScreens::creationStopsAtTheLimitAndAtUsedOutputs()
{
    Model m;
    QVERIFY(!m.device()->isScreenLimited(Regular));
    const auto fourth = m.device()->createDefaultScreen(Regular);
    const auto fifth = m.device()->createDefaultScreen(Regular);
    QVERIFY(fourth->screenId() != fifth->screenId());
    QVERIFY(m.device()->firstUnsedOutput().expired());
    // Both or none.
    QVERIFY(!create(m, {fourth, fifth}).ok());
    QVERIFY(create(m, {fourth}).ok());
    QVERIFY(m.device()->isScreenLimited(Regular));
    QVERIFY(!m.device()->createDefaultScreen(Regular));
    QVERIFY(!create(m, {fifth}).ok());
    QVERIFY(!create(m, {fourth}).ok());
    QVERIFY(m.device()->isScreenLimited(ScreenType::MVRScreen));

    m.model.control().removeScreen(A, {Regular, 2});
    const auto one = m.device()->createDefaultScreen(Regular);
    const auto output = m.device()->firstUnsedOutput();
    one->addOutput(output);
    QVERIFY(m.device()->firstUnsedOutput().expired());
    fifth->addOutput(output);
    // Of two screens with the same output the first to come gets it.
    QVERIFY(create(m, {one}).ok());
    QVERIFY(!create(m, {fifth}).ok());
    m.model.control().removeScreen(A, {Regular, one->screenId()});
    QCOMPARE(m.model.control().addScreen(A, ScreenType::AUXScreen).id, 2U);
    QCOMPARE(m.model.control().addScreen(A, ScreenType::AUXScreen).id, 0U);
}

void TestScreens::failedCreationLeavesNothing()
{
    Model m;
    m.model.operations().fail(Operation::AsyncCreateScreen, QStringLiteral("Refused."), Times::Once);
    auto screen = m.device()->createDefaultScreen(Regular);
    const quint32 id = screen->screenId();
    const Outcome outcome = create(m, {screen});
    QCOMPARE(outcome.text(), QStringLiteral("Refused."));
    QCOMPARE(m.device()->screens(Mask).size(), 4);
    QCOMPARE(m.log.names(), QStringList());
    screen.reset();
    QCOMPARE(m.device()->createDefaultScreen(Regular)->screenId(), id);
    m.model.operations().fail(Operation::CreateDefaultScreen, QString(), Times::Once);
    QVERIFY(!m.device()->createDefaultScreen(Regular));
    QVERIFY(!create(m, {nullptr}).ok());
}

void TestScreens::selectionFollowsTheDevicesMode()
{
    Model m;
    const auto control = m.screenControl();
    const auto aux = m.screen(1, ScreenType::AUXScreen);
    QVERIFY(control->setSelected({m.screen(2)}, SelectedType::Append, true, true));
    QVERIFY(control->setSelected({aux}, SelectedType::Append, true, true));
    QCOMPARE(m.device()->selectedScreen(Mask).size(), 3);
    QCOMPARE(m.device()->selectedScreen(Regular).size(), 2);
    QVERIFY(m.device()->isScreenSelected(aux) && aux->selected());
    QVERIFY(control->cancelSelected({m.screen(1)}, true));
    QCOMPARE(m.log.count(QStringLiteral("signalSelectedRegularScreensChanged")), 3);
    QVERIFY(control->setSelected({m.screen(3)}, SelectedType::Cover, true, true));
    QCOMPARE(ids(m.device()->selectedScreen(Mask)), QList<quint32>{3});
    QVERIFY(control->setSelected({m.screen(3)}, SelectedType::Cover, true, true));
    QVERIFY(control->setSelected({m.screen(2)}, SelectedType::Cover, false, true));
    QCOMPARE(m.log.count(QStringLiteral("signalSelectedRegularScreensChanged")), 4);

    m.model.control().selectScreens(A, {{Regular, 1}, {Regular, 2}});
    m.model.control().setMultiScreens(A, false);
    QCOMPARE(ids(m.device()->selectedScreen(Mask)), QList<quint32>{1});
    QVERIFY(!control->setSelected({m.screen(1), m.screen(2)}, SelectedType::Cover, true, true));
    QVERIFY(control->setSelected({m.screen(2)}, SelectedType::Append, true, true));
    QCOMPARE(ids(m.device()->selectedScreen(Mask)), QList<quint32>{2});
    QVERIFY(
        !control->setSelected({m.screen(1, Regular, QStringLiteral("B"))}, SelectedType::Cover, true, true));
}

void TestScreens::activeScreenChangesAndIsReplaced()
{
    Model m;
    m.deviceControl()->setActivedScreen(m.screen(3));
    m.deviceControl()->setActivedScreen(m.screen(3));
    QCOMPARE(m.device()->activedScreen().lock(), m.screen(3));
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalActivedScreenChanged")));
    m.log.clear();
    auto removed = std::weak_ptr<BizModel::Screen>(m.screen(3));
    QVERIFY(m.model.control().removeScreen(A, {Regular, 3}));
    QVERIFY(removed.expired());
    QCOMPARE(m.device()->activedScreen().lock(), m.screen(1));
    QVERIFY(m.model.control().removeScreen(A, {Regular, 1}));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalScreenRemoved"), QStringLiteral("signalActivedScreenChanged"),
             QStringLiteral("signalScreenRemoved"), QStringLiteral("signalSelectedRegularScreensChanged"),
             QStringLiteral("signalActivedScreenChanged")}));
    QVERIFY(!m.model.control().removeScreen(A, {Regular, 1}));
}

void TestScreens::screensAreRenamedMovedAndIndexed()
{
    Model m;
    Control& control = m.model.control();
    QVERIFY(control.renameScreen(A, {Regular, 2}, QStringLiteral("Wall")));
    QCOMPARE(m.screen(2)->name(), QStringLiteral("Wall"));
    QVERIFY(control.moveScreen(A, {Regular, 3}, {Regular, 1}));
    QCOMPARE(ids(m.device()->screens(Regular)), (QList<quint32>{3, 1, 2}));
    QVERIFY(control.setScreenIndex(A, {Regular, 2}, 9));
    m.screen(2)->setUiScreenIndex(9);
    QCOMPARE(m.screen(2)->uiScreenIndex(), 9);
    QVERIFY(!control.setScreenIndex(A, {Regular, 2}, -2));
    QVERIFY(!control.moveScreen(A, {Regular, 3}, {Regular, 8}));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalScreenNameChanged"), QStringLiteral("signalScreenMoved"),
             QStringLiteral("signalScreenIndexChanged")}));
}

void TestScreens::effectIsCheckedAndTold()
{
    Model m;
    const auto control = m.screenControl();
    QVERIFY(control->updateEffectSpeed({{m.screen(1), 2.5}}));
    QCOMPARE(m.screen(1)->switchEffectTime(), 2.5);
    QVERIFY(control->updateEffectType({{m.screen(1), BizModel::EffectType::cut}}));
    QVERIFY(control->updateEffectSpeed({{m.screen(1), 2.5}}));
    QCOMPARE(m.log.count(QStringLiteral("signalScreenEffectChanged")), 2);
    for (const double bad : {-1.0, 10.1, std::numeric_limits<double>::quiet_NaN()})
        QVERIFY(!control->updateEffectSpeed({{m.screen(1), bad}}));
    QVERIFY(!control->updateEffectType({{m.screen(1), 7}}));
    QVERIFY(!control->updateEffectSpeed({{std::weak_ptr<BizModel::Screen>(), 1.0}}));
    QCOMPARE(m.screen(1)->switchEffectTime(), 2.5);
}

void TestScreens::onlyIdleScreensAreMarkedOutOfResources()
{
    Model m;
    const auto screen = m.screen(1);
    screen->setState(State::Resource_out);
    QCOMPARE(screen->state(), State::Resource_out);
    QVERIFY(m.deviceControl()->takeCutEnabled());
    screen->setState(State::Normal);
    QCOMPARE(screen->state(), State::Normal);
    m.model.control().setScreenState(A, {Regular, 1}, State::Taking);
    screen->setState(State::Normal);
    screen->setState(State::Resource_out);
    QCOMPARE(screen->state(), State::Taking);
}

void TestScreens::completeWhenAllOutputsAreOnline()
{
    Model m;
    QVERIFY(m.screen(1)->isComplete() && m.screen(3)->isComplete());
    QVERIFY(m.model.control().setOutputOnline(A, 2, false));
    QVERIFY(!m.screen(1)->isComplete() && m.screen(2)->isComplete());
    QCOMPARE(m.screen(1)->mosaicWindowRect(), QRect(0, 0, 3840, 1080));
    QCOMPARE(m.screen(1)->subCards().size(), 1);
    QVERIFY(m.screen(3)->mosaicWindowRect().isEmpty());
}

void TestScreens::devicesChange()
{
    Model m;
    Control& control = m.model.control();
    MemoryDeviceList& list = m.model.deviceList();
    QVERIFY(control.activateDevice(QStringLiteral("B")) && control.activateDevice(QStringLiteral("B")));
    QCOMPARE(list.activedDevice().lock()->ipMacSn(), QStringLiteral("B"));
    QVERIFY(control.changeAddress(QStringLiteral("B"), QStringLiteral("C")));
    QCOMPARE(m.device(QStringLiteral("C"))->preIPMacSn(), QStringLiteral("B"));
    QVERIFY(!control.changeAddress(QStringLiteral("C"), A));
    QVERIFY(
        control.setGroup(A, QStringLiteral("5"))
        && control.setGroup(QStringLiteral("C"), QStringLiteral("5")));
    QVERIFY(control.setOnline(A, false) && control.setUpgrading(A, true));
    QVERIFY(!m.device()->onlineFlag() && m.device()->isDeviceUpgrading());
    QCOMPARE(list.groupDevices(QStringLiteral("5"), true, false).size(), 2);
    QCOMPARE(list.groupDevices(QStringLiteral("5"), false, false).size(), 1);
    QCOMPARE(list.groupDevices(QStringLiteral("5"), true, true).first().lock()->ipMacSn(), A);
    QVERIFY(control.removeDevice(QStringLiteral("C")));
    QVERIFY(list.activedDevice().expired());
    QVERIFY(!ModelControl::Device::create(std::weak_ptr<BizModel::Device>()));
    QVERIFY(!control.removeDevice(QStringLiteral("C")));
    QVERIFY(control.setConsolePlugin(A, true) && control.setLoadToPGMEnabled(A, true));
    QVERIFY(m.device()->consolePlugin() && m.device()->deviceConfig().loadToPGMEnabled);
    m.device()->appendViewingScreen(m.screen(2));
    m.device()->appendViewingScreen(m.screen(2));
    QCOMPARE(control.viewingScreens(A), (QList<ScreenKey>{{Regular, 2}}));
    control.setCompatibleUpgrading(true);
    QVERIFY(list.isCompatibleUpgrading());
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalActivedDeviceChanged"), QStringLiteral("signalDeviceIPChanged"),
             QStringLiteral("signalDeviceGroupInfoChanged"), QStringLiteral("signalDeviceGroupInfoChanged"),
             QStringLiteral("signalDeviceRemoved"), QStringLiteral("signalActivedDeviceChanged")}));
}

void TestScreens::operationsAreJournaled()
{
    Model m;
    std::mutex mutex;
    QList<JournalEntry> entries;
    m.model.operations().setListener([&](const JournalEntry& entry) {
        const std::lock_guard lock(mutex);
        entries += entry;
    });
    const auto before = std::chrono::steady_clock::now();
    m.screenControl()->setSelected({m.screen(2)}, SelectedType::Cover, true, true);
    Outcome outcome;
    AsyncManager::instance()->startAsyncRequest(
        AsyncCreateScreen{m.device(), {m.device()->createDefaultScreen(Regular)}, outcome.completion()});
    QVERIFY(outcome.wait());
    const std::lock_guard lock(mutex);
    QCOMPARE(entries.size(), 4);
    QCOMPARE(entries[0].operation, QStringLiteral("setSelected"));
    QCOMPARE(entries[0].arguments, QStringLiteral("device=A screens=[regular:2] mode=0 notify=1 send=1"));
    QVERIFY(entries[0].phase == JournalEntry::Phase::CarriedOut && entries[0].time >= before);
    QVERIFY(entries[2].phase == JournalEntry::Phase::Requested);
    QCOMPARE(entries[3].operation, QStringLiteral("AsyncCreateScreen"));
    QCOMPARE(entries[3].threadName, QStringLiteral("model-request"));
    QVERIFY(entries[3].threadId != entries[0].threadId);

    const QStringList names = operationNames();
    for (const QString& name : names)
        QCOMPARE(operationName(*findOperation(name)), name);
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
    QVERIFY(!findOperation(QStringLiteral("nothing")));
}

QTEST_GUILESS_MAIN(TestScreens)
#include "tst_screens.moc"

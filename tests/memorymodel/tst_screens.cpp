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

constexpr ScreenType Regular = ScreenType::RegularScreen;

QList<quint32> selected(Model& m)
{
    QList<quint32> ids;
    const auto screens = m.device()->selectedScreen(Mask);
    for (const auto& screen : screens)
        ids += screen.lock()->screenId();
    return ids;
}

bool create(Model& m, const QList<std::shared_ptr<BizModel::Screen>>& screens)
{
    const Outcome outcome;
    AsyncManager::instance()->startAsyncRequest(AsyncCreateScreen{m.device(), screens, outcome.completion()});
    return outcome.wait() && outcome.ok();
}

} // namespace

class TestScreens : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void creationStopsAtTheLimitAndAtUsedOutputs()
    {
        Model m;
        QVERIFY(!m.device()->isScreenLimited(Regular));
        const auto fourth = m.device()->createDefaultScreen(Regular);
        const auto fifth = m.device()->createDefaultScreen(Regular);
        QVERIFY(fourth->screenId() != fifth->screenId());
        QVERIFY(m.device()->firstUnsedOutput().expired());
        QVERIFY(!create(m, {fourth, fifth})); // both or none
        QCOMPARE(m.log.names(), QStringList());
        fourth->setUiScreenIndex(5);
        QVERIFY(create(m, {fourth}));
        QCOMPARE(m.log.names(), QStringList("signalScreenAdded"));
        QVERIFY(!fourth->selected());
        QVERIFY(m.device()->isScreenLimited(Regular));
        QVERIFY(!m.device()->createDefaultScreen(Regular));
        for (const auto& refused : {fifth, fourth, std::shared_ptr<BizModel::Screen>()})
            QVERIFY(!create(m, {refused}));

        m.control().removeScreen(A, {Regular, 2});
        const auto one = m.device()->createDefaultScreen(Regular);
        const auto output = m.device()->firstUnsedOutput();
        one->addOutput(output);
        QVERIFY(m.device()->firstUnsedOutput().expired());
        // Of two screens with the same output the first to come gets it.
        fifth->addOutput(output);
        QVERIFY(create(m, {one}));
        QVERIFY(!create(m, {fifth}));
        QStringList faults;
        QVERIFY2(m.model.load(m.model.show(), faults), qPrintable(faults.join('\n')));
        QCOMPARE(m.screen(fourth->screenId())->uiScreenIndex(), 5);
    }

    void selectionFollowsTheDevicesMode()
    {
        Model m;
        const auto control = m.screenControl();
        m.control().selectScreens(A, {{Regular, 1}, {Regular, 2}});
        m.control().setMultiScreens(A, false);
        QCOMPARE(selected(m), QList<quint32>{1});
        QVERIFY(!control->setSelected({m.screen(1), m.screen(2)}, SelectedType::Cover, true, true));
        QVERIFY(control->setSelected({m.screen(2)}, SelectedType::Append, true, true));
        QCOMPARE(selected(m), QList<quint32>{2});
        QVERIFY(!control->setSelected({m.screen(1, Regular, B)}, SelectedType::Cover, true, true));
    }

    void activeScreenIsReplacedWhenItGoes()
    {
        Model m;
        m.deviceControl()->setActivedScreen(m.screen(3));
        m.log.clear();
        const std::weak_ptr<BizModel::Screen> removed = m.screen(3);
        QVERIFY(m.control().removeScreen(A, {Regular, 3}));
        QVERIFY(removed.expired());
        QCOMPARE(m.device()->activedScreen().lock(), m.screen(1));
        QVERIFY(m.control().removeScreen(A, {Regular, 1}));
        QCOMPARE(
            m.log.names(),
            (QStringList{
                "signalScreenRemoved", "signalActivedScreenChanged", "signalScreenRemoved",
                "signalSelectedRegularScreensChanged", "signalActivedScreenChanged"}));
        QVERIFY(!m.control().removeScreen(A, {Regular, 1}));
    }

    void valuesOutOfRangeAreRefused()
    {
        Model m;
        const auto control = m.screenControl();
        for (const double bad : {-1.0, 10.1, std::numeric_limits<double>::quiet_NaN()})
            QVERIFY(!control->updateEffectSpeed({{m.screen(1), bad}}));
        QVERIFY(!control->updateEffectType({{m.screen(1), 7}}));
        QVERIFY(!control->updateEffectSpeed({{std::weak_ptr<BizModel::Screen>(), 1.0}}));
        QVERIFY(!m.control().setScreenIndex(A, {Regular, 2}, -2));
        QVERIFY(!m.control().moveScreen(A, {Regular, 3}, {Regular, 8}));
        QCOMPARE(m.screen(1)->switchEffectTime(), 0.05);
        QCOMPARE(m.log.names(), QStringList());
    }

    void onlyIdleScreensAreMarkedOutOfResources()
    {
        Model m;
        const auto screen = m.screen(1);
        screen->setState(State::Resource_out);
        QCOMPARE(screen->state(), State::Resource_out);
        QVERIFY(m.deviceControl()->takeCutEnabled());
        screen->setState(State::Normal);
        QCOMPARE(screen->state(), State::Normal);
        m.control().setScreenState(A, First, State::Taking);
        screen->setState(State::Normal);
        screen->setState(State::Resource_out);
        QCOMPARE(screen->state(), State::Taking);
    }

    void completeWhenAllOutputsAreOnline()
    {
        Model m;
        QVERIFY(m.screen(1)->isComplete() && m.screen(3)->isComplete());
        QVERIFY(m.control().setOutputOnline(A, 2, false));
        QVERIFY(!m.screen(1)->isComplete() && m.screen(2)->isComplete());
        QCOMPARE(m.screen(1)->mosaicWindowRect(), QRect(0, 0, 3840, 1080));
        QVERIFY(m.screen(3)->mosaicWindowRect().isEmpty());
    }

    void devicesChange()
    {
        Model m;
        Control& control = m.control();
        const BizModel::DeviceList& list = m.model.deviceList();
        QVERIFY(control.activateDevice(B) && control.activateDevice(B));
        QVERIFY(control.changeAddress(B, "C"));
        QCOMPARE(list.activedDevice().lock()->ipMacSn(), "C");
        QCOMPARE(m.device("C")->preIPMacSn(), B);
        QVERIFY(!control.changeAddress("C", A));
        // Devices of the default group are each alone.
        QCOMPARE(list.groupDevices(BizModel::Device::defaultDeviceGroupId).size(), 1);
        QVERIFY(control.setGroup(A, "5") && control.setGroup("C", "5") && control.setOnline(A, false));
        QCOMPARE(list.groupDevices("5", true, false).size(), 2);
        QCOMPARE(list.groupDevices("5", false, false).size(), 1);
        QCOMPARE(list.groupDevices("5", true, true).first().lock()->ipMacSn(), A);
        QVERIFY(control.removeDevice("C"));
        QVERIFY(list.activedDevice().expired());
        QVERIFY(!control.removeDevice("C"));
        QCOMPARE(
            m.log.names(),
            (QStringList{
                "signalActivedDeviceChanged", "signalDeviceIPChanged", "signalDeviceGroupInfoChanged",
                "signalDeviceGroupInfoChanged", "signalDeviceRemoved", "signalActivedDeviceChanged"}));
    }
};

QTEST_GUILESS_MAIN(TestScreens)
#include "tst_screens.moc"

#include "bridge/itemcontrollerfactory.h"
#include "bridge/itemdevicelist.h"
#include "bridge/itemparallelmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"

#include <QtTest>

#include <optional>
#include <thread>

using namespace Orvane;
using namespace Orvane::Bridge;
using namespace Orvane::ParallelControl;
using BizModel::SceneType;
using State = BizModel::Screen::State;

namespace {

/// A wall whose takes last until the test ends them, and that refuses to freeze.
class Wall : public ItemParallelManager {
public:
    void take(const ScreenList& screens, OpenRequest end) override
    {
        m_taken = screens;
        m_open.emplace(std::move(end));
    }
    void freeze(const ScreenList&, bool, OpenRequest end) override { end.fail("No link."); }
    void setSwap(DeviceItem&, bool, OpenRequest end) override { end.succeed(); }

    ScreenList m_taken;
    std::optional<OpenRequest> m_open;
};

/// Refuses what it is told about layers while it is closed.
class Controllers : public ItemControllerFactory {
public:
    bool addLayer(ScreenItem&, LayerItem&) override { return !m_bClosed; }
    bool removeLayer(ScreenItem&, LayerItem&) override { return !m_bClosed; }
    bool orderLayers(ScreenItem&, SceneType, const ScreenItem::LayerList&) override { return !m_bClosed; }
    bool moveLayer(ScreenItem&, LayerItem&, const QRect&) override { return !m_bClosed; }
    bool bindSource(ScreenItem&, LayerItem&, quint32) override { return !m_bClosed; }

    std::atomic<bool> m_bClosed{false};
};

struct Model {
    Model()
    {
        device.setMultiScreens(true);
        for (const auto& screen : {left, right}) {
            screen->addOutputPlace({0, 0, 1920, 1080}, 2);
            device.addScreen(screen);
        }
        device.addInput(std::make_shared<InputItem>(1, "Camera"));
    }
    template <typename Task> void start(Task task)
    {
        wall.startParallelRequest(
            list.activedDevice(),
            [task](const std::weak_ptr<BizModel::Device>& each) {
                Task own = task;
                own.device = each;
                return own;
            },
            false, nullptr,
            [this](bool ok, const QString& reason) {
                results += ok;
                text = reason;
            });
        QCoreApplication::processEvents(); // it arrives on this thread
    }

    ItemDeviceList list{std::make_shared<DeviceItem>("wall")};
    DeviceItem& device = list.device();
    const std::shared_ptr<ScreenItem> left = std::make_shared<ScreenItem>(1, "Left");
    const std::shared_ptr<ScreenItem> right = std::make_shared<ScreenItem>(2, "Right");
    Controllers controllers;
    Wall wall;
    QList<bool> results;
    QString text;
};

} // namespace

/// The ready parts of a model: what they announce, refuse and leave behind.
class TestItems : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aScreenThatGoesHandsItsPlaceToAnother()
    {
        Model model;
        QCOMPARE(model.device.activedScreen().lock(), model.left);
        QVERIFY(model.left->selected());
        QSignalSpy actived(&model.list, &BizModel::DeviceList::signalActivedScreenChanged);
        model.device.removeScreen(model.left);
        QCOMPARE(actived.size(), 1);
        QCOMPARE(model.device.activedScreen().lock(), model.right);
        QVERIFY(!ModelControl::Device::screenModelControl({}, model.list.activedDevice())
                     ->setSelected({model.left}, BizModel::SelectedType::Append, true, true));
        model.device.removeScreen(model.right);
        QVERIFY(model.device.activedScreen().expired());
    }

    void aTakeKeepsItsScreensWhateverIsSelectedMeanwhile()
    {
        Model model;
        QSignalSpy scenes(&model.list, &BizModel::DeviceList::signalDeviceScreenLayersChanged);
        model.start(ParallelTakeScreen{});
        QCOMPARE(model.wall.m_taken, ItemParallelManager::ScreenList{model.left});
        QCOMPARE(model.left->state(), State::Taking);
        model.left->setSelected(false);
        model.right->setSelected(true);
        std::thread([&] { model.wall.m_open->succeed(); }).join();
        QCOMPARE(model.left->state(), State::Normal);
        QCOMPARE(model.results, QList<bool>{true});
        QCOMPARE(scenes.size(), 1);
    }

    void whatIsRefusedOrForgottenFreesTheScreens()
    {
        Model model;
        model.start(ParallelTakeScreen{});
        model.start(ParallelTakeScreen{}); // the only selected screen is busy
        QCOMPARE(model.results, QList<bool>{false});
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression("^The request ParallelTakeScreen was dropped without a result"));
        model.wall.m_open.reset();
        QCOMPARE(model.left->state(), State::Normal);
        ParallelFreezeScreen freeze;
        freeze.freeze = true;
        model.start(freeze);
        QVERIFY(!model.left->freeze());
        QCOMPARE(model.text, QString("No link."));
        model.start(ParallelMatchPGM{}); // not overridden
        QCOMPARE(model.left->state(), State::Normal);
        QCOMPARE(model.results, (QList<bool>{false, false, false, false}));
        QCOMPARE(model.wall.currentTaskCount(), 0);
    }

    void aModelThatRefusesKeepsItsLayersAsTheyAre()
    {
        Model model;
        const auto device = model.list.activedDevice();
        const auto screens = ModelControl::Device::screenModelControl({}, device);
        const auto layers = ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, device);
        const auto add = [&] {
            return screens->addLayer(
                model.left, BizModel::LayerType::Regular, SceneType::PVW, 1, BizModel::SourceType::Input,
                QRect(0, 0, 64, 64));
        };
        const auto first = add();
        QVERIFY(first && add());
        QVERIFY(!add()); // there is room for two
        const auto before = model.left->layerList(SceneType::PVW);
        model.controllers.m_bClosed = true;
        QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
        QVERIFY(!screens->removeLayers(model.left, {first}, failed));
        QCOMPARE(failed.size(), 1);
        QVERIFY(!screens->topZOrder(model.left, {first}));
        QVERIFY(!layers->updateWindow(first, QRect(1, 1, 64, 64)));
        QVERIFY(!layers->bindSource({first}, 1, BizModel::SourceType::Input));
        QCOMPARE(model.left->layerList(SceneType::PVW), before);
        QCOMPARE(first->windowRect(), QRect(0, 0, 64, 64));
        model.controllers.m_bClosed = false;
        QVERIFY(screens->topZOrder(model.left, {first}));
        QVERIFY(model.left->layerList(SceneType::PVW).last() == first);
    }
};

QTEST_GUILESS_MAIN(TestItems)
#include "tst_items.moc"

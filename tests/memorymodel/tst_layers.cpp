#include "modeltestsupport.h"

#include "bizmodel/connector.h"
#include "bizmodel/input.h"
#include "bizmodel/resourcecheck.h"

#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using BizModel::CapacityMode;
using BizModel::LayerType;
using BizModel::SceneType;
using BizModel::SourceType;
using State = BizModel::Screen::State;
using Ids = QList<quint32>;

namespace {

constexpr int AllTypes = LayerType::AllLayerType;

/// A device with one card of `capacity` units that two screens share: 1 with two outputs, 2 with one. The
/// layers of their previews have these capacities.
ShowRecord sharedCard(int capacity, const QList<CapacityMode>& first, const QList<CapacityMode>& second = {})
{
    ShowRecord show = smallShow();
    show.devices[0].subcards[1].layerCapacity = capacity;
    const auto place = [&show](int screen, const QList<CapacityMode>& capacities) {
        LayerRecords& layers = show.devices[0].screens[screen].pvw;
        layers.clear();
        for (const CapacityMode each : capacities) {
            layers += layerRecord(quint32(layers.size() + 1), 1);
            layers.last().capacity = each;
        }
    };
    place(0, first);
    place(1, second);
    return show;
}

std::shared_ptr<BizModel::Layer> layer(Model& m, quint32 id, SceneType scene = SceneType::PVW)
{
    return find(m.screen(1)->layers(scene, AllTypes), [&](const auto& each) { return each.layerId() == id; });
}

ModelControl::Screen::Layers layers(Model& m, const Ids& ids)
{
    ModelControl::Screen::Layers list;
    for (const quint32 id : ids)
        list += layer(m, id);
    return list;
}

Ids order(Model& m, SceneType scene = SceneType::PVW)
{
    Ids ids;
    const auto all = m.screen(1)->layers(scene, AllTypes);
    for (const auto& weak : all)
        ids += weak.lock()->layerId();
    return ids;
}

std::shared_ptr<ModelControl::Layer> layerControl(Model& m)
{
    return ModelControl::Screen::layerModelControl(LayerType::Regular, m.device());
}

} // namespace

Q_DECLARE_METATYPE(Orvane::BizModel::CapacityMode)

class TestLayers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void newLayerIsRefused()
    {
        Model m;
        const auto adds = [&m](LayerType type, SceneType scene, quint32 input, const QRect& window) {
            return bool(
                m.screenControl()->addLayer(m.screen(1), type, scene, input, SourceType::Input, window));
        };
        const QRect window(0, 0, 100, 100);
        QVERIFY(!adds(LayerType::AUX, SceneType::PVW, 1, window));
        QVERIFY(!adds(LayerType::Regular, SceneType::PGM, 1, window)); // it is not edited
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 9, window)); // there is no such input
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, QRect(0, 0, 0, 10)));
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, QRect(2'000'000, 0, 10, 10)));
        m.control().setScreenState(A, First, State::Taking);
        QVERIFY(!adds(LayerType::Regular, SceneType::PVW, 1, window));
        QCOMPARE(order(m), (Ids{1, 2}));
        QCOMPARE(m.log.names(), QStringList());
    }

    void resourcesAreSummed_data()
    {
        QTest::addColumn<int>("capacity");
        QTest::addColumn<QList<CapacityMode>>("first");
        QTest::addColumn<QList<CapacityMode>>("second");
        QTest::addColumn<CapacityMode>("probe");
        QTest::addColumn<QRect>("window");
        QTest::addColumn<bool>("enough");
        using Layers = QList<CapacityMode>;
        const QRect inside(0, 0, 960, 540);
        const CapacityMode single = CapacityMode::_SL;
        const CapacityMode dual = CapacityMode::_DL;
        const CapacityMode fourK = CapacityMode::_4K;
        const Layers none;
        QTest::newRow("a single link fits") << 1 << none << none << single << inside << true;
        QTest::newRow("a dual link takes two") << 1 << none << none << dual << inside << false;
        QTest::newRow("4K takes four") << 4 << none << none << fourK << inside << true;
        QTest::newRow("4K takes more than three") << 3 << none << none << fourK << inside << false;
        QTest::newRow("those there count") << 4 << Layers{single, dual} << none << dual << inside << false;
        QTest::newRow("those there leave room")
            << 4 << Layers{single, dual} << none << single << inside << true;
        QTest::newRow("the card's other screen")
            << 4 << Layers{dual} << Layers{dual} << single << inside << false;
        QTest::newRow("over two outputs") << 1 << none << none << single << QRect(1000, 0, 1920, 540) << true;
        QTest::newRow("beside the outputs") << 0 << none << none << fourK << QRect(4000, 0, 10, 10) << true;
    }
    void resourcesAreSummed()
    {
        QFETCH(int, capacity);
        QFETCH(QList<CapacityMode>, first);
        QFETCH(QList<CapacityMode>, second);
        QFETCH(CapacityMode, probe);
        QFETCH(QRect, window);
        QFETCH(bool, enough);
        Model m(sharedCard(capacity, first, second));
        const auto probeLayer = m.screen(1)->createProbeLayer(m.device()->findInput(1), probe);
        QVERIFY(probeLayer);
        QCOMPARE(
            BizModel::ResourceCheck::CheckOperationResources(m.screen(1), {{probeLayer, window}}), enough);
        // A probe is not part of the scene, and asking changes nothing.
        QCOMPARE(m.screen(1)->layerCount(SceneType::PVW, AllTypes), first.size());
        QCOMPARE(m.log.names(), QStringList());
    }

    void plannedWindowsStandForThePresentOnes()
    {
        ShowRecord show = sharedCard(4, {CapacityMode::_4K});
        show.devices[0].screens[0].pgm.clear();
        Model m(show);
        const auto only = layer(m, 1);
        const auto probe = m.screen(1)->createProbeLayer(m.device()->findInput(1), CapacityMode::_4K);
        const QRect window(0, 0, 10, 10);
        const auto enough = [&](const BizModel::ResourceCheck::LayerRects& planned, SceneType scene,
                                const auto& without) {
            return BizModel::ResourceCheck::CheckOperationResources(
                m.screen(1), planned, m.screen(1)->outputs(), scene, without);
        };
        const std::weak_ptr<BizModel::Layer> none;
        QVERIFY(enough({{only, QRect(0, 0, 3840, 1080)}}, SceneType::PVW, none));
        QVERIFY(!enough({{probe, window}}, SceneType::PVW, none));
        QVERIFY(enough({{probe, window}, {only, QRect(4000, 0, 10, 10)}}, SceneType::PVW, none));
        QVERIFY(enough({{probe, window}}, SceneType::PVW, std::weak_ptr<BizModel::Layer>(only)));
        QVERIFY(enough({{probe, window}}, SceneType::PGM, none));
    }

    void zOrder_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<Ids>("marked");
        QTest::addColumn<Ids>("expected");
        const auto row = [](const char* step, const Ids& marked, const Ids& expected) {
            QTest::addRow("%s %u of %d", step, marked.first(), marked.size())
                << QString(step) << marked << expected;
        };
        row("top", {2, 1}, {3, 4, 1, 2});
        row("top", {4}, {1, 2, 3, 4});
        row("bottom", {4, 2}, {2, 4, 1, 3});
        row("up", {1}, {2, 1, 3, 4});
        row("up", {2, 3}, {1, 4, 2, 3});
        row("up", {3, 4}, {1, 2, 3, 4});
        row("up", {1, 4}, {2, 1, 3, 4});
        row("down", {4}, {1, 2, 4, 3});
        row("down", {1, 2}, {1, 2, 3, 4});
        row("down", {2, 3}, {2, 3, 1, 4});
    }
    void zOrder()
    {
        QFETCH(QString, step);
        QFETCH(Ids, marked);
        QFETCH(Ids, expected);
        const CapacityMode any = CapacityMode::_SL;
        Model m(sharedCard(8, {any, any, any, any}));
        const auto control = m.screenControl();
        const auto move = step == "top" ? &ModelControl::Screen::topZOrder
            : step == "bottom"          ? &ModelControl::Screen::bottomZOrder
            : step == "up"              ? &ModelControl::Screen::incrZOrder
                                        : &ModelControl::Screen::decrZOrder;
        QVERIFY(((*control).*move)(m.screen(1), layers(m, marked)));
        QCOMPARE(order(m), expected);
        QCOMPARE(order(m, SceneType::PGM), Ids{1});
        QVERIFY(!((*control).*move)(m.screen(2), layers(m, marked)));
    }

    void programLayersNeedProgramEdit()
    {
        Model m;
        const auto program = layer(m, 1, SceneType::PGM);
        QVERIFY(!program->getLayerOperationAllowed());
        QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
        QVERIFY(!m.screenControl()->removeLayers(m.screen(1), {layer(m, 2), program}, failed));
        QCOMPARE(failed.size(), 1);
        QVERIFY(failed[0].first == (BizModel::s_ScreenLayerId{1, SceneType::PGM, 1}));
        QVERIFY(!failed[0].second.isEmpty());
        QCOMPARE(order(m), Ids{1});

        QVERIFY(m.screenControl()->updatePGMEditStatus({m.screen(1)}, true));
        QVERIFY(program->getLayerOperationAllowed());
        QCOMPARE(m.screen(1)->operationTarget(), SceneType::PGM);
        QVERIFY(m.screenControl()->removeLayers(m.screen(1), {program}, failed));
        QVERIFY(!m.screenControl()->removeLayers(m.screen(1), {program}, failed));
        QVERIFY(!m.screenControl()->updatePGMEditStatus({m.screen(1, ScreenType::AUXScreen)}, true));
    }

    void sourcesChangeWhereTheyCan()
    {
        Model m(sharedCard(4, {CapacityMode::_SL, CapacityMode::_SL}));
        const auto binds = [&m](const ModelControl::Layer::Layers& layers, quint32 input) {
            return layerControl(m)->bindSource(layers, input, SourceType::Input);
        };
        QVERIFY(binds(layers(m, {1}), 2));
        QCOMPARE(layer(m, 1)->capacity(), CapacityMode::_DL);
        // Two 4K layers take eight units, the card has four.
        QVERIFY(!binds(layers(m, {1, 2}), 3));
        QCOMPARE(m.sources(1, SceneType::PVW), (Ids{2, 1}));
        QCOMPARE(layer(m, 2)->capacity(), CapacityMode::_SL);
        // What cannot be changed stays as it is.
        QVERIFY(!binds({layer(m, 1), layer(m, 1, SceneType::PGM)}, 1));
        QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 1}));
        QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
        QVERIFY(!binds(layers(m, {1}), 99));
        QVERIFY(!layerControl(m)->updateWindow(layer(m, 1), QRect()));
    }

    void inputsComeGoAndChange()
    {
        Model m;
        Control& control = m.control();
        const auto input = m.device()->findInput(2).lock();
        const auto connector = m.device()->getConnector(input->interfaceFullId()).lock();
        QVERIFY(control.setConnectorCapacity(A, 1, 2, CapacityMode::_4K));
        QCOMPARE(connector->capacity(), CapacityMode::_4K);
        QCOMPARE(input->capacity(), CapacityMode::_4K);
        QCOMPARE(layer(m, 2)->capacity(), CapacityMode::_SL);
        QVERIFY(m.device()->getConnector({2, 2}).expired());
        QVERIFY(control.selectInput(A, 2));
        m.log.clear();
        QVERIFY(control.removeInput(A, 2));
        QCOMPARE(
            m.log.names(),
            (QStringList{
                "signalInputRemoved", "signalSelectedInputChanged", "signalLayerSourceChanged",
                "signalLayerSourceChanged"}));
        QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 0}));
        QVERIFY(!control.addInput(A, {7, "New", 1, 1, CapacityMode::_SL, true, false}));
        QVERIFY(control.addInput(A, {7, "New", 1, 2, CapacityMode::_SL, true, false}));
        QVERIFY(!control.setSignal(A, 99, true) && !control.setSignal("X", 1, true));
        // Nothing refers to what is gone, so the state can be saved and loaded.
        QStringList faults;
        QVERIFY2(m.model.load(m.model.show(), faults), qPrintable(faults.join('\n')));
    }

    void heldLayersOutliveTheModelsInterest()
    {
        std::shared_ptr<BizModel::Layer> held;
        {
            Model m;
            held = layer(m, 1);
            const std::weak_ptr<BizModel::Layer> dropped = layer(m, 2);
            m.control().removeLayer(A, First, SceneType::PVW, 1);
            m.control().removeLayer(A, First, SceneType::PVW, 2);
            QVERIFY(dropped.expired());
            QVERIFY(!layerControl(m)->updateWindow(held, QRect(0, 0, 10, 10)));
        }
        QCOMPARE(held->sourceId(), 1U);
        held->setCapacity(CapacityMode::_4K);
        QCOMPARE(held->capacity(), CapacityMode::_4K);
    }
};

QTEST_GUILESS_MAIN(TestLayers)
#include "tst_layers.moc"

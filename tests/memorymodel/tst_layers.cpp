#include "modeltestsupport.h"

#include "bizmodel/connector.h"
#include "bizmodel/input.h"
#include "bizmodel/resourcecheck.h"
#include "modelcontrol/asyncmanager.h"

#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using BizModel::CapacityMode;
using BizModel::LayerType;
using BizModel::ResourceCheck;
using BizModel::SceneType;
using BizModel::SelectedType;
using State = BizModel::Screen::State;
using Ids = QList<quint32>;

namespace {

const QString A = QStringLiteral("A");
const ScreenKey First{ScreenType::RegularScreen, 1};
constexpr int AllTypes = LayerType::AllLayerType;

/// A device with one card of `capacity` units that two screens share: 1 with two outputs, 2 with one.
ShowRecord sharedCard(int capacity, const LayerRecords& first, const LayerRecords& second)
{
    ShowRecord show = smallShow();
    show.devices[0].subcards[1].layerCapacity = capacity;
    show.devices[0].screens[0].pvw = first;
    show.devices[0].screens[1].pvw = second;
    return show;
}

LayerRecord withCapacity(quint32 id, CapacityMode capacity, const QRect& window = QRect(0, 0, 960, 540))
{
    LayerRecord layer = layerRecord(id, 1, window);
    layer.capacity = capacity;
    return layer;
}

std::shared_ptr<BizModel::Layer> layer(Model& m, quint32 id, SceneType scene = SceneType::PVW)
{
    const auto all = m.screen(1)->layers(scene, AllTypes);
    for (const auto& weak : all) {
        const auto each = weak.lock();
        if (each && each->layerId() == id)
            return each;
    }
    return nullptr;
}

ModelControl::Screen::Layers layers(Model& m, const Ids& ids, SceneType scene = SceneType::PVW)
{
    ModelControl::Screen::Layers list;
    for (const quint32 id : ids)
        list += layer(m, id, scene);
    return list;
}

Ids order(Model& m, SceneType scene = SceneType::PVW)
{
    Ids ids;
    const auto all = m.screen(1)->layers(scene, AllTypes);
    for (const auto& weak : all) {
        if (const auto layer = weak.lock())
            ids += layer->layerId();
    }
    return ids;
}

std::shared_ptr<ModelControl::Layer> layerControl(Model& m)
{
    return ModelControl::Screen::layerModelControl(LayerType::Regular, m.device());
}

} // namespace

class TestLayers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void newLayerComesOnTopAndIsNotSelected();
    void newLayerIsRefused_data();
    void newLayerIsRefused();
    void resourcesAreSummed_data();
    void resourcesAreSummed();
    void resourceCheckCanBeMadeToFail();
    void zOrder_data();
    void zOrder();
    void selectionCoversAppendsAndCancels();
    void programLayersNeedProgramEdit();
    void windowAndSourceChange();
    void clearingRemovesOneSceneInTheBackground();
    void copiesAreMirroredAndNeverHalfDone();
    void requestsFailWaitAndStop();
    void inputsComeGoAndChange();
    void heldLayersOutliveTheModelsInterest();
};

void TestLayers::newLayerComesOnTopAndIsNotSelected()
{
    Model m;
    const auto screen = m.screen(1);
    QCOMPARE(screen->nextLayerId(SceneType::PVW, LayerType::Regular), 3U);
    QCOMPARE(screen->nextLayerName(SceneType::PVW, LayerType::Regular), QStringLiteral("Layer 3"));
    const QRect window(10, 20, 300, 200);
    const auto added = m.screenControl()->addLayer(
        screen, LayerType::Regular, SceneType::PVW, 2, BizModel::SourceType::Input, window);
    QVERIFY(added);
    QCOMPARE(added->name(), QStringLiteral("Layer 3"));
    QCOMPARE(added->sourceId(), 2U);
    QCOMPARE(added->capacity(), CapacityMode::_DL);
    QCOMPARE(added->windowRect(), window);
    QCOMPARE(order(m), (Ids{1, 2, 3}));
    QVERIFY(screen->selectedLayers().isEmpty());
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalLayerAdded")));
    // The lowest free id is used again.
    m.model.control().removeLayer(A, First, SceneType::PVW, 1);
    QCOMPARE(screen->nextLayerId(SceneType::PVW, LayerType::Regular), 1U);
}

void TestLayers::newLayerIsRefused_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("scene");
    QTest::addColumn<int>("source");
    QTest::addColumn<QRect>("window");
    QTest::addColumn<int>("state");
    const QRect window(0, 0, 100, 100);
    const int regular = LayerType::Regular;
    const int pvw = SceneType::PVW;
    QTest::newRow("an AUX layer") << int(LayerType::AUX) << pvw << 1 << window << 0;
    QTest::newRow("program not edited") << regular << int(SceneType::PGM) << 1 << window << 0;
    QTest::newRow("no such input") << regular << pvw << 9 << window << 0;
    QTest::newRow("no extent") << regular << pvw << 1 << QRect(0, 0, 0, 10) << 0;
    QTest::newRow("out of bounds") << regular << pvw << 1 << QRect(2'000'000, 0, 10, 10) << 0;
    QTest::newRow("taking") << regular << pvw << 1 << window << int(State::Taking);
}

void TestLayers::newLayerIsRefused()
{
    QFETCH(int, type);
    QFETCH(int, scene);
    QFETCH(int, source);
    QFETCH(QRect, window);
    QFETCH(int, state);
    Model m;
    m.model.control().setScreenState(A, First, State(state));
    QVERIFY(!m.screenControl()->addLayer(
        m.screen(1), LayerType(type), SceneType(scene), source, BizModel::SourceType::Input, window));
    QCOMPARE(order(m), (Ids{1, 2}));
    QCOMPARE(m.log.names(), QStringList());
}

void TestLayers::resourcesAreSummed_data()
{
    QTest::addColumn<int>("capacity");
    QTest::addColumn<QList<int>>("first");
    QTest::addColumn<QList<int>>("second");
    QTest::addColumn<int>("probe");
    QTest::addColumn<QRect>("window");
    QTest::addColumn<bool>("enough");
    const QRect inside(0, 0, 960, 540);
    using L = QList<int>;
    QTest::newRow("a single link fits") << 1 << L{} << L{} << 0 << inside << true;
    QTest::newRow("a dual link takes two") << 1 << L{} << L{} << 1 << inside << false;
    QTest::newRow("4K takes four") << 4 << L{} << L{} << 2 << inside << true;
    QTest::newRow("4K takes more than three") << 3 << L{} << L{} << 2 << inside << false;
    QTest::newRow("those there count") << 4 << L{0, 1} << L{} << 1 << inside << false;
    QTest::newRow("those there leave room") << 4 << L{0, 1} << L{} << 0 << inside << true;
    QTest::newRow("the card's other screen counts") << 4 << L{1} << L{1} << 0 << inside << false;
    QTest::newRow("over two outputs of a card") << 1 << L{} << L{} << 0 << QRect(1000, 0, 1920, 540) << true;
    QTest::newRow("beside the outputs") << 0 << L{} << L{} << 2 << QRect(4000, 0, 10, 10) << true;
}

void TestLayers::resourcesAreSummed()
{
    QFETCH(int, capacity);
    QFETCH(QList<int>, first);
    QFETCH(QList<int>, second);
    QFETCH(int, probe);
    QFETCH(QRect, window);
    QFETCH(bool, enough);
    const auto records = [](const QList<int>& capacities) {
        LayerRecords list;
        for (const int each : capacities)
            list += withCapacity(quint32(list.size() + 1), CapacityMode(each));
        return list;
    };
    Model m(sharedCard(capacity, records(first), records(second)));
    const auto probeLayer = m.screen(1)->createProbeLayer(m.device()->findInput(1), CapacityMode(probe));
    QVERIFY(probeLayer);
    QCOMPARE(ResourceCheck::CheckOperationResources(m.screen(1), {{probeLayer, window}}), enough);
    // A probe is not part of the scene, and asking changes nothing.
    QCOMPARE(m.screen(1)->layerCount(SceneType::PVW, AllTypes), first.size());
    QCOMPARE(m.log.names(), QStringList());
}

void TestLayers::resourceCheckCanBeMadeToFail()
{
    ShowRecord show = sharedCard(4, {withCapacity(1, CapacityMode::_4K)}, {});
    show.devices[0].screens[0].pgm.clear();
    Model m(show);
    const auto only = layer(m, 1);
    const QRect beside(4000, 0, 10, 10);
    const auto outputs = m.screen(1)->outputs();
    // A planned window stands for the present one; a layer can be left out.
    QVERIFY(ResourceCheck::CheckOperationResources(m.screen(1), {{only, QRect(0, 0, 3840, 1080)}}));
    const auto probe = m.screen(1)->createProbeLayer(m.device()->findInput(1), CapacityMode::_4K);
    QVERIFY(!ResourceCheck::CheckOperationResources(m.screen(1), {{probe, QRect(0, 0, 10, 10)}}));
    QVERIFY(ResourceCheck::CheckOperationResources(
        m.screen(1), {{probe, QRect(0, 0, 10, 10)}, {only, beside}}, outputs, SceneType::PVW, {}));
    QVERIFY(ResourceCheck::CheckOperationResources(
        m.screen(1), {{probe, QRect(0, 0, 10, 10)}}, outputs, SceneType::PVW, only));
    QVERIFY(ResourceCheck::CheckOperationResources(
        m.screen(1), {{probe, QRect(0, 0, 10, 10)}}, outputs, SceneType::PGM, {}));

    m.model.operations().fail(Operation::CheckOperationResources, QString(), Times::Once);
    QVERIFY(!ResourceCheck::CheckOperationResources(m.screen(1), {}));
    QVERIFY(ResourceCheck::CheckOperationResources(m.screen(1), {}));
    QCOMPARE(m.screen(1)->state(), State::Normal);
    QVERIFY(!m.screen(1)->createProbeLayer({}, CapacityMode::_SL));
}

void TestLayers::zOrder_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<Ids>("marked");
    QTest::addColumn<Ids>("expected");
    const auto row = [](const char* step, const Ids& marked, const Ids& expected) {
        QString name = QLatin1String(step);
        for (const quint32 id : marked)
            name += QString::number(id);
        QTest::newRow(qPrintable(name)) << QString::fromLatin1(step) << marked << expected;
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

void TestLayers::zOrder()
{
    QFETCH(QString, step);
    QFETCH(Ids, marked);
    QFETCH(Ids, expected);
    ShowRecord show = smallShow();
    show.devices[0].screens[0].pvw = {
        layerRecord(1, 1), layerRecord(2, 1), layerRecord(3, 1), layerRecord(4, 1)};
    Model m(show);
    const auto control = m.screenControl();
    const auto move = step == QLatin1String("top") ? &ModelControl::Screen::topZOrder
        : step == QLatin1String("bottom")          ? &ModelControl::Screen::bottomZOrder
        : step == QLatin1String("up")              ? &ModelControl::Screen::incrZOrder
                                                   : &ModelControl::Screen::decrZOrder;
    QVERIFY(((*control).*move)(m.screen(1), layers(m, marked)));
    QCOMPARE(order(m), expected);
    QCOMPARE(order(m, SceneType::PGM), Ids{1});
    QVERIFY(!((*control).*move)(m.screen(2), layers(m, marked)));
}

void TestLayers::selectionCoversAppendsAndCancels()
{
    Model m;
    const auto control = layerControl(m);
    const auto screen = m.screen(1);
    QVERIFY(control->setSelected(screen, layers(m, {1}, SceneType::PGM), SelectedType::Cover, true));
    QVERIFY(control->setSelected(screen, layers(m, {1}), SelectedType::Cover, true));
    QCOMPARE(screen->selectedLayers().size(), 1);
    QVERIFY(control->setSelected(screen, layers(m, {2}), SelectedType::Append, true));
    QCOMPARE(screen->selectedLayers(SceneType::PVW).size(), 2);
    QCOMPARE(screen->selectedLayers(SceneType::PGM).size(), 0);
    QVERIFY(control->cancelSelected(screen, layers(m, {1}), false));
    QCOMPARE(screen->selectedLayers().size(), 1);
    QCOMPARE(m.log.count(QStringLiteral("signalSelectedLayersChanged")), 3);
    // Selecting what is selected tells nothing; a layer of another screen is refused.
    QVERIFY(control->setSelected(screen, layers(m, {2}), SelectedType::Cover, true));
    QCOMPARE(m.log.count(QStringLiteral("signalSelectedLayersChanged")), 3);
    QVERIFY(!control->setSelected(m.screen(2), layers(m, {2}), SelectedType::Cover, true));
}

void TestLayers::programLayersNeedProgramEdit()
{
    Model m;
    const auto program = layer(m, 1, SceneType::PGM);
    QVERIFY(!program->getLayerOperationAllowed());
    QCOMPARE(m.screen(1)->operationTarget(), SceneType::PVW);
    QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
    QVERIFY(!m.screenControl()->removeLayers(m.screen(1), {layer(m, 2), program}, failed));
    QCOMPARE(failed.size(), 1);
    QVERIFY(failed[0].first == (BizModel::s_ScreenLayerId{1, SceneType::PGM, 1}));
    QVERIFY(!failed[0].second.isEmpty());
    QCOMPARE(order(m), Ids{1});

    QVERIFY(m.screenControl()->updatePGMEditStatus({m.screen(1)}, true));
    QVERIFY(program->getLayerOperationAllowed());
    QCOMPARE(m.screen(1)->operationTarget(), SceneType::PGM);
    failed.clear();
    QVERIFY(m.screenControl()->removeLayers(m.screen(1), {program}, failed));
    QVERIFY(failed.isEmpty());
    QVERIFY(!m.screenControl()->removeLayers(m.screen(1), {program}, failed));
    QVERIFY(!m.screenControl()->updatePGMEditStatus({m.screen(1, ScreenType::AUXScreen)}, true));

    m.model.operations().fail(Operation::RemoveLayers, QStringLiteral("No."), Times::Once);
    failed.clear();
    QVERIFY(!m.screenControl()->removeLayers(m.screen(1), {layer(m, 1)}, failed));
    QCOMPARE(failed[0].second, QStringLiteral("No."));
    QCOMPARE(order(m), Ids{1});
}

void TestLayers::windowAndSourceChange()
{
    Model m(sharedCard(4, {withCapacity(1, CapacityMode::_SL), withCapacity(2, CapacityMode::_SL)}, {}));
    const auto control = layerControl(m);
    QVERIFY(control->updateWindow(layer(m, 1), QRect(0, 0, 3840, 1080)));
    QCOMPARE(layer(m, 1)->windowRect(), QRect(0, 0, 3840, 1080));
    QVERIFY(!control->updateWindow(layer(m, 1), QRect()));
    QCOMPARE(m.log.names(), QStringList());

    QVERIFY(control->bindSource(layers(m, {1}), 2, BizModel::SourceType::Input));
    QCOMPARE(layer(m, 1)->sourceId(), 2U);
    QCOMPARE(layer(m, 1)->capacity(), CapacityMode::_DL);
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalLayerSourceChanged")));
    // Two 4K layers take eight units, the card has four.
    QVERIFY(!control->bindSource(layers(m, {1, 2}), 3, BizModel::SourceType::Input));
    QCOMPARE(m.sources(1, SceneType::PVW), (Ids{2, 1}));
    QCOMPARE(layer(m, 2)->capacity(), CapacityMode::_SL);
    // What cannot be changed stays as it is.
    const ModelControl::Layer::Layers both{layer(m, 1), layer(m, 1, SceneType::PGM)};
    QVERIFY(!control->bindSource(both, 1, BizModel::SourceType::Input));
    QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 1}));
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QVERIFY(!control->bindSource(layers(m, {1}), 99, BizModel::SourceType::Input));
}

void TestLayers::clearingRemovesOneSceneInTheBackground()
{
    Model m;
    m.model.control().selectLayers(A, First, SceneType::PVW, {2});
    m.log.clear();
    QStringList before;
    Outcome outcome;
    const auto told = outcome.completion();
    AsyncManager::instance()->startAsyncRequest(AsyncRemoveLayer{
        m.device(), m.screen(1), SceneType::PVW, AllTypes, [&](bool ok, const QString& text) {
            before = m.log.names();
            told(ok, text);
        }});
    QVERIFY(outcome.wait());
    QVERIFY(outcome.ok());
    QCOMPARE(order(m), Ids{});
    QCOMPARE(order(m, SceneType::PGM), Ids{1});
    // All that changed was announced before the completion.
    QCOMPARE(
        before,
        QStringList(
            {QStringLiteral("signalLayerRemoved"), QStringLiteral("signalLayerRemoved"),
             QStringLiteral("signalSelectedLayersChanged")}));
    Outcome refused;
    AsyncManager::instance()->startAsyncRequest(
        AsyncRemoveLayer{m.device(), m.screen(1), SceneType::PGM, AllTypes, refused.completion()});
    QVERIFY(refused.wait());
    QVERIFY(!refused.ok() && !refused.text().isEmpty());
}

void TestLayers::copiesAreMirroredAndNeverHalfDone()
{
    Model m;
    const auto copy = [&](const Ids& ids, bool mirrored) {
        Outcome outcome;
        AsyncManager::instance()->startAsyncRequest(
            AsyncAddCopyLayers{m.device(), m.screen(1), layers(m, ids), mirrored, outcome.completion()});
        outcome.wait();
        return outcome;
    };
    QVERIFY(copy({1}, false).ok());
    QCOMPARE(layer(m, 3)->windowRect(), layer(m, 1)->windowRect());
    QVERIFY(copy({2}, true).ok());
    QCOMPARE(layer(m, 2)->windowRect(), QRect(1920, 0, 960, 540));
    QCOMPARE(layer(m, 4)->windowRect(), QRect(960, 0, 960, 540));
    QCOMPARE(layer(m, 4)->sourceId(), 2U);
    QCOMPARE(order(m), (Ids{1, 2, 3, 4}));
    m.log.clear();
    // The device takes eight layers in a scene, screen 2 has one of them.
    QCOMPARE(m.screen(1)->maxLayerCount(), 8);
    const Outcome tooMany = copy({1, 2, 3, 4}, false);
    QVERIFY(!tooMany.ok() && !tooMany.text().isEmpty());
    QCOMPARE(order(m), (Ids{1, 2, 3, 4}));
    QCOMPARE(m.log.names(), QStringList());
}

void TestLayers::requestsFailWaitAndStop()
{
    Model m;
    const auto clear = [&m](const Outcome& outcome) {
        AsyncManager::instance()->startAsyncRequest(AsyncRemoveLayer{
            m.device(), m.screen(1), SceneType::PVW, AllTypes, Outcome(outcome).completion()});
    };
    m.model.operations().fail(Operation::AsyncRemoveLayer, QStringLiteral("Timed out."), Times::Once);
    Outcome failed;
    clear(failed);
    QVERIFY(failed.wait());
    QCOMPARE(failed.text(), QStringLiteral("Timed out."));
    QCOMPARE(order(m), (Ids{1, 2}));

    m.model.operations().delay(Operation::AsyncRemoveLayer, std::chrono::hours(1), Times::Once);
    Outcome slow;
    Outcome waiting;
    clear(slow);
    clear(waiting);
    m.model.stop();
    QVERIFY(slow.called() && !slow.ok());
    QVERIFY(waiting.called() && !waiting.ok());
    Outcome late;
    clear(late);
    QVERIFY(late.called() && !late.ok());
    QCOMPARE(order(m), (Ids{1, 2}));

    Model other;
    Outcome gone;
    AsyncManager::instance()->startAsyncRequest(
        AsyncRemoveLayer{{}, other.screen(1), SceneType::PVW, AllTypes, gone.completion()});
    QVERIFY(gone.wait());
    QVERIFY(!gone.ok());
}

void TestLayers::inputsComeGoAndChange()
{
    Model m;
    Control& control = m.model.control();
    const auto input = m.device()->findInput(2).lock();
    QVERIFY(control.setSignal(A, 2, false) && control.setOverload(A, 2, true));
    QVERIFY(control.renameInput(A, 2, QStringLiteral("Jib")));
    QVERIFY(!input->isActive() && input->isOverLoad());
    QCOMPARE(input->name(), QStringLiteral("Jib"));
    const auto connector = m.device()->getConnector(input->interfaceFullId()).lock();
    QCOMPARE(connector->capacity(), CapacityMode::_DL);
    QVERIFY(control.setConnectorCapacity(A, 1, 2, CapacityMode::_4K));
    QCOMPARE(connector->capacity(), CapacityMode::_4K);
    QCOMPARE(input->capacity(), CapacityMode::_4K);
    QCOMPARE(layer(m, 2)->capacity(), CapacityMode::_SL);
    QVERIFY(m.device()->getConnector({2, 2}).expired());
    QVERIFY(control.selectInput(A, 2));
    QCOMPARE(control.selectedInput(A), 2U);
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalInterfaceSignalChanged"), QStringLiteral("signalInterfaceOverLoadChanged"),
             QStringLiteral("signalInterfaceNameChanged"), QStringLiteral("signalConnectorCapacityChanged"),
             QStringLiteral("signalSelectedInputChanged")}));
    m.log.clear();
    QVERIFY(control.removeInput(A, 2));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalInputRemoved"), QStringLiteral("signalSelectedInputChanged"),
             QStringLiteral("signalLayerSourceChanged"), QStringLiteral("signalLayerSourceChanged")}));
    QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 0}));
    QCOMPARE(m.device()->validInputs().size(), 2);
    QVERIFY(!control.addInput(A, {7, QStringLiteral("New"), 1, 1, CapacityMode::_SL, true, false}));
    QVERIFY(control.addInput(A, {7, QStringLiteral("New"), 1, 2, CapacityMode::_SL, true, false}));
    QVERIFY(!m.device()->findInput(7).expired());
    QVERIFY(!control.setSignal(A, 99, true) && !control.setSignal(QStringLiteral("X"), 1, true));
    // Nothing refers to what is gone, so the state can be saved and loaded.
    QStringList faults;
    QVERIFY2(m.model.load(m.model.show(), faults), qPrintable(faults.join(QLatin1Char('\n'))));
}

void TestLayers::heldLayersOutliveTheModelsInterest()
{
    std::shared_ptr<BizModel::Layer> held;
    std::weak_ptr<BizModel::Layer> dropped;
    {
        Model m;
        held = layer(m, 1);
        dropped = layer(m, 2);
        m.model.control().removeLayer(A, First, SceneType::PVW, 1);
        m.model.control().removeLayer(A, First, SceneType::PVW, 2);
        QVERIFY(dropped.expired());
        QVERIFY(!layerControl(m)->updateWindow(held, QRect(0, 0, 10, 10)));
    }
    QCOMPARE(held->sourceId(), 1U);
    held->setCapacity(CapacityMode::_4K);
    QCOMPARE(held->capacity(), CapacityMode::_4K);
    QVERIFY(!ResourceCheck::CheckOperationResources(nullptr, {}));
}

QTEST_GUILESS_MAIN(TestLayers)
#include "tst_layers.moc"

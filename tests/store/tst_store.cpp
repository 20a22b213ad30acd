#include "eccommanditem.h"
#include "ecconsolemanager.h"

#include <QTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using namespace Orvane::ECProxy::Client;

namespace {

constexpr quint32 Free = Constants::UnboundLayerIndex;
constexpr int PageSize = 3;
constexpr int Pages = 2;

const QString Wall = QStringLiteral("10.0.0.1-AA-0001");
const QString Stage = QStringLiteral("10.0.0.2-BB-0002");

ECCommandItemPtr makeItem(int page, int order)
{
    auto item = std::make_shared<ECCommandItem>();
    item->setECButtonPageIndex(qint16(page));
    item->setECButtonOrderIndex(qint16(order));
    item->setECButtonKey(100 + order);
    return item;
}

ECConsoleManager& store()
{
    return *ECConsoleManager::instance();
}

ECCommandItemList layersOf(const QString& device, quint32 screen)
{
    ECCommandItemList items{makeItem(9, 9)}; // what was in the list must not stay
    store().layerECCommandItems(device, screen, items);
    return items;
}

/// Runs the jobs side by side, each again and again until the first of them has run `rounds` times.
void hammer(int rounds, const std::vector<std::function<void(int)>>& jobs)
{
    std::atomic<bool> done{false};
    std::vector<std::thread> threads;
    for (size_t job = 1; job < jobs.size(); ++job) {
        threads.emplace_back([&, job] {
            for (int round = 0; !done; ++round)
                jobs[job](round);
        });
    }
    for (int round = 0; round < rounds; ++round)
        jobs.front()(round);
    done = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

class tst_store : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aNewItemIsUnboundAndDark();
    void namesKeepTheirOrderAndRefuseWrongPositions();
    void anObjectIsBoundOnce();
    void resettingALayerItemKeepsItsScreen();
    void aCopyHasEveryFieldAndGoesItsOwnWay();

    void unknownTypesAndEmptyItemsAreRefused();
    void eachDeviceHasItsOwnCopiesInOrder();
    void anItemRegisteredLateReachesEveryKey();
    void aKeyboardRegisteredAgainReplacesTheKeys();
    void anUnknownDeviceShowsUnboundKeys();
    void aNewAddressTakesTheKeysAlong();
    void aRemovedDeviceStartsAgainUnbound();

    void bindingSelectsByPageAndOrder();
    void theLookupsFollowWhatIsDoneToAnItemDirectly();
    void unbindingByObjectTouchesThatKeyAlone();
    void theResetWithAnIdOnlyCounts();

    void aLayerKeyEndsBoundToTheLastLayerAlone();
    void eachScreenHasItsOwnLayerKeys();

    void extensionKeysKeepNamesInStepWithObjects();
    void aGoneServerLeavesAllExtensionKeys();
    void extensionOperationsRefuseOtherTypes();

    void aLayerKeyIsNeverSeenWithoutItsScreen();
    void namesAreNeverSeenOutOfStep();
    void devicesComeAndGoWhileKeysAreWorked();
};

void tst_store::init()
{
    for (const QString& device : {Wall, Stage})
        store().removeDeviceEcCommandItems(device);
    for (const KeyboardType type :
         {KeyboardType::Screen, KeyboardType::Layer, KeyboardType::Input, KeyboardType::Preset,
          KeyboardType::PresetEx}) {
        store().clearECCommandItems(type);
        for (int page = 0; page < Pages; ++page) {
            for (int order = 0; order < PageSize; ++order)
                store().appendECCommandItem(type, makeItem(page, order));
        }
    }
    store().initDeviceECCommandItems(Wall);
}

void tst_store::aNewItemIsUnboundAndDark()
{
    const ECCommandItem item(this);
    QVERIFY(!item.isBindKeyPad());
    QVERIFY(item.isBindKeyPad(-1));
    QCOMPARE(item.ecButtonColor(), ECLEDColor::Off);
    QVERIFY(!item.isLedBlink());
    QCOMPARE(int(item.ecButtonPageIndex()), -1);
    QCOMPARE(int(item.ecButtonOrderIndex()), 0);
    QCOMPARE(item.ecButtonKey(), -1);
    QCOMPARE(item.ecOledKey(), -1);
    QVERIFY(item.ecOledText().isEmpty() && item.joinObjectName().isEmpty());
}

void tst_store::namesKeepTheirOrderAndRefuseWrongPositions()
{
    ECCommandItem item;
    item.appendBindedName("A", -1);
    item.appendBindedName("B", 0);
    QCOMPARE(item.joinObjectName(), QString("B/A"));
    item.appendBindedName("C", 2); // right behind the last
    QCOMPARE(item.joinObjectName(), QString("B/A/C"));

    item.appendBindedName("X", 4);
    item.appendBindedName("X", -2);
    item.removeBindedName(3);
    item.removeBindedName(-1);
    item.updateBindedName("X", 3);
    item.updateBindedName("X", -1);
    QCOMPARE(item.joinObjectName(), QString("B/A/C"));

    item.updateBindedName("D", 2);
    item.removeBindedName(0);
    QCOMPARE(item.objectNameList(), QList<QString>({"A", "D"}));
    item.clearObjectNameSet();
    QVERIFY(item.objectNameList().isEmpty());
}

void tst_store::anObjectIsBoundOnce()
{
    ECCommandItem item;
    item.appendObjectData({7, 2});
    item.appendObjectData({7, 2});
    item.appendObjectData({7, 3});
    QCOMPARE(item.getObjectIdList(), ECObjectIdList({{7, 2}, {7, 3}}));
    QVERIFY(item.isContainsObjectId({7, 3}));
    QVERIFY(!item.isContainsObjectId({3, 7}));
    item.removeObjectId({7, 2});
    item.removeObjectId({8, 3});
    QCOMPARE(item.getObjectIdList(), ECObjectIdList({{7, 3}}));
}

void tst_store::resettingALayerItemKeepsItsScreen()
{
    const auto bound = [] {
        ECCommandItem item;
        item.setECButtonIndex(4);
        item.setECButtonColor(ECLEDColor::Green);
        item.setECOledText("Layer 2");
        item.setIsLedBlink(true);
        item.setECButtonKey(12);
        item.setECButtonPageIndex(1);
        item.appendObjectData({7, 2});
        item.appendBindedName("Layer 2", -1);
        return item;
    };
    ECCommandItem layer = bound();
    layer.resetECCommandItem(KeyboardType::Layer);
    QCOMPARE(layer.getObjectIdList(), ECObjectIdList({{7, Free}}));
    QCOMPARE(layer.objectNameList(), QList<QString>({"Layer 2"}));

    ECCommandItem input = bound();
    input.resetECCommandItem(KeyboardType::Input);
    ECCommandItem untyped = bound();
    untyped.resetECCommandItem();
    for (const ECCommandItem* item : {&input, &untyped})
        QVERIFY(item->getObjectIdList().isEmpty() && item->objectNameList().isEmpty());

    for (const ECCommandItem* item : {&layer, &input, &untyped}) {
        QVERIFY(!item->isBindKeyPad() && !item->isLedBlink() && item->ecOledText().isEmpty());
        QCOMPARE(item->ecButtonColor(), ECLEDColor::Off);
        QCOMPARE(item->ecButtonKey(), 12); // where the key sits is not part of its binding
        QCOMPARE(int(item->ecButtonPageIndex()), 1);
    }
}

void tst_store::aCopyHasEveryFieldAndGoesItsOwnWay()
{
    const ECCommandItemPtr stored = store().updateECButtonData(
        Wall, KeyboardType::Input, 1, 4, 1, {{7, 0}}, ECLEDColor::Yellow, "Cam 7", true);
    QVERIFY(stored);
    stored->setECOledKey(501);
    stored->appendBindedName("Cam 7", -1);

    ECCommandItem copy(*stored);
    QCOMPARE(int(copy.ecButtonPageIndex()), 1);
    QCOMPARE(int(copy.ecButtonOrderIndex()), 1);
    QCOMPARE(copy.ecButtonIndex(), 4);
    QCOMPARE(copy.ecButtonKey(), 101);
    QCOMPARE(copy.ecOledKey(), 501);
    QCOMPARE(copy.ecButtonColor(), ECLEDColor::Yellow);
    QVERIFY(copy.isLedBlink());
    QCOMPARE(copy.ecOledText(), QString("Cam 7"));
    QCOMPARE(copy.joinObjectName(), QString("Cam 7"));
    QCOMPARE(copy.getObjectIdList(), ECObjectIdList({{7, 0}}));

    // The store knows nothing of the copy, and everything of what is assigned to the item that it holds.
    copy.clearObjectIdSet();
    copy.appendObjectData({8, 0});
    copy.setECButtonOrderIndex(5);
    QCOMPARE(store().findBindingECItem(Wall, KeyboardType::Input, {7, 0}), stored);
    QVERIFY(!store().findBindingECItem(Wall, KeyboardType::Input, {8, 0}));
    *stored = copy;
    QVERIFY(!store().findBindingECItem(Wall, KeyboardType::Input, {7, 0}));
    QCOMPARE(store().findBindingECItem(Wall, KeyboardType::Input, {8, 0}), stored);
    QCOMPARE(store().findEcCommandItem(Wall, KeyboardType::Input, 5, 1), stored);
    const ECCommandItem& itself = *stored;
    *stored = itself;
    QCOMPARE(stored->getObjectIdList(), ECObjectIdList({{8, 0}}));
}

void tst_store::unknownTypesAndEmptyItemsAreRefused()
{
    QTest::ignoreMessage(QtWarningMsg, " ERR Plugin Type :9");
    store().appendECCommandItem(KeyboardType(9), makeItem(0, 0));
    QTest::ignoreMessage(QtWarningMsg, "An empty item of keyboard type 2 is not stored.");
    store().appendECCommandItem(KeyboardType::Input, nullptr);
    QTest::ignoreMessage(QtWarningMsg, "A device without an address gets no items.");
    store().initDeviceECCommandItems(QString());
    QCOMPARE(store().inputECCommandItems(Wall).size(), Pages * PageSize);
}

void tst_store::eachDeviceHasItsOwnCopiesInOrder()
{
    store().initDeviceECCommandItems(Stage);
    const ECCommandItemList items = store().presetECCommandItems(Wall);
    QCOMPARE(items.size(), Pages * PageSize);
    for (int i = 0; i < items.size(); ++i) {
        QCOMPARE(int(items.at(i)->ecButtonPageIndex()), i / PageSize);
        QCOMPARE(int(items.at(i)->ecButtonOrderIndex()), i % PageSize);
        QCOMPARE(items.at(i)->ecButtonKey(), 100 + i % PageSize);
    }

    QVERIFY(store().updateECButtonData(Wall, KeyboardType::Preset, 2, 5, 1, {{6, 6}}));
    QVERIFY(store().updateECButtonData(Stage, KeyboardType::Preset, 0, 0, 0, {{6, 6}}));
    QCOMPARE(store().findBindingButtonIndex(Wall, KeyboardType::Preset, {6, 6}), 5);
    QCOMPARE(store().findBindingButtonIndex(Stage, KeyboardType::Preset, {6, 6}), 0);
    QCOMPARE(store().findBindingButtonIndex(Wall, KeyboardType::Input, {6, 6}), -1);

    store().initDeviceECCommandItems(Wall); // coming back to a device leaves its keys as they were
    QCOMPARE(store().findBindingButtonIndex(Wall, KeyboardType::Preset, {6, 6}), 5);
    QCOMPARE(store().presetECCommandItems(Wall).size(), Pages * PageSize);
}

void tst_store::anItemRegisteredLateReachesEveryKey()
{
    store().initLayerECCommand(Wall, KeyboardType::Layer, 3);
    store().initLayerECCommand(Wall, KeyboardType::Layer, 4);
    for (const KeyboardType type : {KeyboardType::Screen, KeyboardType::Layer})
        store().appendECCommandItem(type, makeItem(2, 0));

    QCOMPARE(store().screenECCommandItems(Wall).size(), Pages * PageSize + 1);
    QVERIFY(store().updateECButtonData(Wall, KeyboardType::Screen, 0, 6, 2, {{1, 2}}));
    for (const quint32 screen : {3U, 4U}) {
        QCOMPARE(layersOf(Wall, screen).size(), Pages * PageSize + 1);
        QVERIFY(store().updateECButtonData(Wall, KeyboardType::Layer, 0, 6, 2, {{screen, 1}}));
    }
}

void tst_store::aKeyboardRegisteredAgainReplacesTheKeys()
{
    store().initLayerECCommand(Wall, KeyboardType::Layer, 3);
    const ECCommandItemPtr old = store().updateECButtonData(Wall, KeyboardType::Input, 0, 0, 0, {{7, 0}});
    for (const KeyboardType type : {KeyboardType::Input, KeyboardType::Layer}) {
        store().clearECCommandItems(type);
        store().appendECCommandItem(type, makeItem(0, 0));
    }
    QCOMPARE(store().inputECCommandItems(Wall).size(), 1);
    QCOMPARE(layersOf(Wall, 3).size(), 1); // the screen keeps having keys of its own
    QVERIFY(!store().findBindingECItem(Wall, KeyboardType::Input, {7, 0}));
    old->appendObjectData({8, 0}); // still safe for a command that kept it
    QVERIFY(!store().findBindingECItem(Wall, KeyboardType::Input, {8, 0}));
    QCOMPARE(store().presetECCommandItems(Wall).size(), Pages * PageSize);
}

void tst_store::anUnknownDeviceShowsUnboundKeys()
{
    const ECCommandItemList keys = store().inputECCommandItems(QString());
    QCOMPARE(keys.size(), Pages * PageSize);
    QCOMPARE(layersOf(Stage, 3).size(), Pages * PageSize);
    QVERIFY(layersOf(Stage, 3).first()->getObjectIdList().isEmpty());

    // Whatever is done to them reaches neither the next view nor a device that comes later.
    keys.first()->setECOledText("stray");
    keys.first()->appendObjectData({7, 0});
    layersOf(Stage, 3).first()->setECOledText("stray");
    QVERIFY(layersOf(Stage, 3).first()->ecOledText().isEmpty());
    QVERIFY(store().inputECCommandItems(QString()).first()->ecOledText().isEmpty());
    store().initDeviceECCommandItems(Stage);
    QVERIFY(!store().findBindingECItem(Stage, KeyboardType::Input, {7, 0}));

    const QString unknown = QStringLiteral("10.9.9.9");
    QVERIFY(!store().findEcCommandItem(unknown, KeyboardType::Input, 0, 0));
    QVERIFY(!store().updateECButtonData(unknown, KeyboardType::Input, 0, 0, 0, {{7, 0}}));
    QVERIFY(!store().resetECButtonData(unknown, KeyboardType::Input, {7, 0}));
    QCOMPARE(store().findBindingButtonIndex(unknown, KeyboardType::Input, {7, 0}), -1);
    QVERIFY(store().findBindingObject(unknown, KeyboardType::Input, -1).isEmpty());
    store().resetECCommandItems(unknown, KeyboardType::Input);
    store().removeECCommandLayerItems(unknown, 3);
    QTest::ignoreMessage(
        QtWarningMsg, "Screen 3 gets no layer items: there are none for its device 10.9.9.9.");
    store().initLayerECCommand(unknown, KeyboardType::Layer, 3);
}

void tst_store::aNewAddressTakesTheKeysAlong()
{
    QTest::ignoreMessage(
        QtWarningMsg,
        "Can not find pre device ip command items info... Pre IP : 10.9.9.9 Current IP: 10.0.0.2-BB-0002");
    store().updateECCommandItems("10.9.9.9", Stage);
    QVERIFY(!store().findEcCommandItem(Stage, KeyboardType::Input, 0, 0));

    const ECCommandItemPtr item = store().updateECButtonData(Wall, KeyboardType::Input, 1, 1, 0, {{7, 0}});
    store().initDeviceECCommandItems(Stage); // the new address can be seen before the change is reported
    store().updateECCommandItems(Wall, Stage);
    QCOMPARE(store().findBindingECItem(Stage, KeyboardType::Input, {7, 0}), item);
    QCOMPARE(store().inputECCommandItems(Stage).size(), Pages * PageSize);
    QVERIFY(!store().findBindingECItem(Wall, KeyboardType::Input, {7, 0}));

    store().updateECCommandItems(Stage, Stage);
    QCOMPARE(store().findBindingECItem(Stage, KeyboardType::Input, {7, 0}), item);
}

void tst_store::aRemovedDeviceStartsAgainUnbound()
{
    const ECCommandItemPtr held = store().updateECButtonData(Wall, KeyboardType::Screen, 0, 0, 0, {{1, 2}});
    store().removeDeviceEcCommandItems(Wall);
    store().removeDeviceEcCommandItems(Wall);
    held->resetECCommandItem(); // still safe for a command that kept it
    held->appendObjectData({1, 2});
    store().initDeviceECCommandItems(Wall);
    QCOMPARE(store().findBindingButtonIndex(Wall, KeyboardType::Screen, {1, 2}), -1);
}

void tst_store::bindingSelectsByPageAndOrder()
{
    const auto type = KeyboardType::Input;
    QVERIFY(!store().updateECButtonData(Wall, type, 1, 4, 1, {}));
    QVERIFY(!store().updateECButtonData(Wall, type, PageSize, 4, 1, {{7, 0}}));
    QVERIFY(!store().updateECButtonData(Wall, type, 1, 4, Pages, {{7, 0}}));

    const ECCommandItemPtr item =
        store().updateECButtonData(Wall, type, 1, 4, 1, {{7, 0}}, ECLEDColor::Red, "Cam", true);
    QCOMPARE(item, store().inputECCommandItems(Wall).at(PageSize + 1));
    QCOMPARE(item, store().findEcCommandItem({{9, 9}}, Wall, type, 1, 1));
    QVERIFY(item->isBindKeyPad(4));
    QVERIFY(item->isLedBlink());

    // The shorter forms leave the rest of the looks alone, and objects add up.
    store().updateECButtonData(Wall, type, 1, 4, 1, {{7, 0}, {8, 0}}, ECLEDColor::Yellow);
    store().updateECButtonData(Wall, type, 1, 5, 1, {{8, 0}});
    QCOMPARE(item->ecButtonColor(), ECLEDColor::Yellow);
    QCOMPARE(item->ecOledText(), QString("Cam"));
    QVERIFY(item->isLedBlink());
    QCOMPARE(item->getObjectIdList(), ECObjectIdList({{7, 0}, {8, 0}}));
    QCOMPARE(store().findBindingObject(Wall, type, 5), item->getObjectIdList());
    QVERIFY(store().findBindingObject(Wall, type, 4).isEmpty());

    store().resetECCommandItems(Wall, type);
    QVERIFY(item->getObjectIdList().isEmpty() && !item->isBindKeyPad() && item->ecOledText().isEmpty());
    QVERIFY(!store().findBindingECItem(Wall, type, {8, 0}));
}

void tst_store::theLookupsFollowWhatIsDoneToAnItemDirectly()
{
    const auto type = KeyboardType::Preset;
    const ECCommandItemList items = store().presetECCommandItems(Wall);
    items.at(4)->appendObjectData({5, 6});
    items.at(2)->appendObjectData({5, 6});
    QCOMPARE(store().findBindingECItem(Wall, type, {5, 6}), items.at(2)); // the first in the list's order
    items.at(2)->resetECCommandItem();
    QCOMPARE(store().findBindingECItem(Wall, type, {5, 6}), items.at(4));
    items.at(4)->removeObjectId({5, 6});
    QVERIFY(!store().findBindingECItem(Wall, type, {5, 6}));
    items.at(4)->appendObjectData({5, 8});
    QVERIFY(!store().findBindingECItem(Wall, type, {5, 6}));
    items.at(4)->clearObjectIdSet();
    QVERIFY(!store().findBindingECItem(Wall, type, {5, 8}));

    items.at(4)->setECButtonPageIndex(7);
    QVERIFY(!store().findEcCommandItem(Wall, type, 1, 1));
    QCOMPARE(store().findEcCommandItem(Wall, type, 1, 7), items.at(4));
    items.at(4)->setECButtonPageIndex(0); // two keys at one place: the first answers
    QCOMPARE(store().findEcCommandItem(Wall, type, 1, 0), items.at(1));
}

void tst_store::unbindingByObjectTouchesThatKeyAlone()
{
    const auto type = KeyboardType::Screen;
    const ECCommandItemPtr regular =
        store().updateECButtonData(Wall, type, 0, 0, 0, {{1, 2}}, ECLEDColor::Green, "Main", false);
    const ECCommandItemPtr aux =
        store().updateECButtonData(Wall, type, 1, 1, 0, {{1, 4}}, ECLEDColor::Yellow, "Aux", false);
    QVERIFY(!store().resetECButtonData(Wall, type, {1, 3}));
    QCOMPARE(store().resetECButtonData(Wall, type, {1, 2}), regular);
    QCOMPARE(regular->ecButtonColor(), ECLEDColor::Off);
    QVERIFY(!regular->isBindKeyPad() && regular->getObjectIdList().isEmpty());
    QCOMPARE(aux->ecOledText(), QString("Aux"));
    QCOMPARE(store().resetECButtonData(Wall, type, {1, 4}, ECLEDColor::Orange), aux);
    QCOMPARE(aux->ecButtonColor(), ECLEDColor::Orange);
}

void tst_store::theResetWithAnIdOnlyCounts()
{
    const auto type = KeyboardType::Preset;
    store().updateECButtonData(Wall, type, 0, 0, 0, {{5, 6}, {5, 8}, {6, 6}});
    store().updateECButtonData(Wall, type, 1, 1, 0, {{6, 6}});
    QTest::ignoreMessage(QtDebugMsg, "ec items has been ereased... left size:5");
    store().resetECCommandItems(Wall, type, 5U);
    QCOMPARE(store().findBindingButtonIndex(Wall, type, {5, 8}), 0);
    QCOMPARE(store().presetECCommandItems(Wall).size(), Pages * PageSize);
}

void tst_store::aLayerKeyEndsBoundToTheLastLayerAlone()
{
    const auto type = KeyboardType::Layer;
    store().initLayerECCommand(Wall, type, 3);
    store().initLayerECCommand(Wall, type, 4);

    const ECCommandItemPtr item = store().updateECButtonData(Wall, type, 1, 1, 0, {{4, 11}, {4, 12}});
    QVERIFY(item);
    QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, 12}}));
    QCOMPARE(store().findBindingECItem(Wall, type, {4, 12}), item);
    QVERIFY(!store().findBindingECItem(Wall, type, {4, 11}));

    // Its own layer finds it, another one does not, and another screen has its own key there.
    QCOMPARE(store().findEcCommandItem({{4, 12}}, Wall, type, 1, 0), item);
    QVERIFY(!store().findEcCommandItem({{4, 13}}, Wall, type, 1, 0));
    const ECCommandItemPtr other = store().updateECButtonData(Wall, type, 1, 1, 0, {{3, 12}});
    QVERIFY(other && other != item);
    QVERIFY(!store().updateECButtonData(Wall, type, 1, 1, 0, {{5, 12}}));
    QCOMPARE(store().findBindingObject(Wall, type, 1, 4), ECObjectIdList({{4, 12}}));
    QCOMPARE(store().findBindingObject(Wall, type, 1, 3), ECObjectIdList({{3, 12}}));

    // Reset by a take, any layer of the screen finds it again.
    item->resetECCommandItem(type);
    QCOMPARE(store().updateECButtonData(Wall, type, 1, 1, 0, {{4, 13}}, ECLEDColor::Yellow), item);
    QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, 13}}));
    QCOMPARE(store().resetECButtonData(Wall, type, {4, 13}), item);
    QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, Free}}));
    QVERIFY(!item->isBindKeyPad());
}

void tst_store::eachScreenHasItsOwnLayerKeys()
{
    const auto type = KeyboardType::Layer;
    QVERIFY(layersOf(Wall, 3).isEmpty());
    store().initLayerECCommand(Wall, type, 3);
    store().initLayerECCommand(Wall, type, 4);
    QTest::ignoreMessage(QtWarningMsg, "Items of keyboard type 2 are not made per screen.");
    store().initLayerECCommand(Wall, KeyboardType::Input, 5);
    const ECCommandItemPtr bound = store().updateECButtonData(Wall, type, 2, 5, 1, {{3, 7}});
    const ECCommandItemPtr other = store().updateECButtonData(Wall, type, 0, 0, 0, {{4, 7}});
    store().initLayerECCommand(Wall, type, 3); // once more changes nothing

    ECCommandItemList items = layersOf(Wall, 3);
    QCOMPARE(items.size(), Pages * PageSize);
    QCOMPARE(items.last(), bound);
    for (int i = 0; i < items.size(); ++i) {
        QCOMPARE(int(items.at(i)->ecButtonPageIndex()), i / PageSize);
        QCOMPARE(int(items.at(i)->ecButtonOrderIndex()), i % PageSize);
    }
    QCOMPARE(items.first()->getObjectIdList(), ECObjectIdList({{3, Free}}));

    store().resetECCommandLayerItems(Wall, 3);
    QCOMPARE(layersOf(Wall, 3), items);
    QVERIFY(!bound->isBindKeyPad());
    QVERIFY(other->isBindKeyPad(0));

    store().resetECCommandItems(Wall, type); // must not lose the keys of any screen
    QCOMPARE(layersOf(Wall, 4).size(), Pages * PageSize);
    QVERIFY(!other->isBindKeyPad());

    store().removeECCommandLayerItems(Wall, 3);
    QVERIFY(layersOf(Wall, 3).isEmpty());
    QCOMPARE(layersOf(Wall, 4).size(), Pages * PageSize);
    bound->appendObjectData({4, 9}); // a key that is out of the store stays out
    QVERIFY(!store().findBindingECItem(Wall, type, {4, 9}));
    store().initLayerECCommand(Wall, type, 3);
    QCOMPARE(layersOf(Wall, 3).size(), Pages * PageSize);
}

void tst_store::extensionKeysKeepNamesInStepWithObjects()
{
    const auto type = KeyboardType::PresetEx;
    QVERIFY(!store().appendECButtonData(type, 0, Pages, {1, 6}, "A", ECLEDColor::Blue));
    const ECCommandItemPtr item = store().appendECButtonData(type, 1, 0, {1, 6}, "A", ECLEDColor::Blue);
    store().appendECButtonData(type, 1, 0, {2, 6}, "B", ECLEDColor::Blue);
    QCOMPARE(store().appendECButtonData(type, 1, 0, {3, 6}, "C", ECLEDColor::Yellow), item);
    QCOMPARE(item, store().findPresetEcCmdExItem(type, 1, 0));
    QCOMPARE(item, store().getPresetExItems().at(1));
    QCOMPARE(item->ecOledText(), QString("A/B/C"));
    QCOMPARE(item->ecButtonColor(), ECLEDColor::Yellow);
    QVERIFY(store().isBindingPresetExObject({2, 6}));

    QCOMPARE(store().removeECButtonData(type, 1, 0, {2, 6}), item);
    store().removeECButtonData(type, 1, 0, {2, 6}); // not bound any more: takes no other name along
    QCOMPARE(item->objectNameList(), QList<QString>({"A", "C"}));
    QCOMPARE(item->ecOledText(), QString("A/C"));
    QCOMPARE(item->ecButtonColor(), ECLEDColor::Yellow);
    QVERIFY(!store().isBindingPresetExObject({2, 6}));
    store().removeECButtonData(type, 1, 0, {1, 6});
    store().removeECButtonData(type, 1, 0, {3, 6});
    QVERIFY(item->ecOledText().isEmpty());
    QCOMPARE(item->ecButtonColor(), ECLEDColor::Off);
}

void tst_store::aGoneServerLeavesAllExtensionKeys()
{
    const auto type = KeyboardType::PresetEx;
    const auto bind = [&](int order, const ECObjectId& id, const char* name) {
        return store().appendECButtonData(type, order, 0, id, name, ECLEDColor::Green);
    };
    const ECCommandItemPtr mixed = bind(0, {1, 6}, "A");
    for (const auto& [id, name] :
         {std::pair(ECObjectId(2, 6), "B"), {{1, 8}, "C"}, {{1, 9}, "D"}, {{3, 6}, "E"}})
        bind(0, id, name);
    const ECCommandItemPtr single = bind(1, {1, 6}, "A");
    const ECCommandItemPtr untouched = bind(2, {2, 6}, "B");

    for (const char* text : {"ecOledText:B/E", "ecOledText:", "ecOledText:B"})
        QTest::ignoreMessage(QtDebugMsg, text);
    for (int i = PageSize; i < Pages * PageSize; ++i)
        QTest::ignoreMessage(QtDebugMsg, "ecOledText:");
    QVERIFY(store().resetPresetExDataByServerId(type, 1));
    QCOMPARE(mixed->getObjectIdList(), ECObjectIdList({{2, 6}, {3, 6}}));
    QCOMPARE(mixed->objectNameList(), QList<QString>({"B", "E"}));
    QCOMPARE(mixed->ecOledText(), QString("B/E"));
    QCOMPARE(mixed->ecButtonColor(), ECLEDColor::Green);
    QCOMPARE(single->ecButtonColor(), ECLEDColor::Off);
    QVERIFY(single->ecOledText().isEmpty());

    // The other resets unbind whole keys: those of a server, the one at a place, all.
    store().resetPresetExItems(type, 3);
    QVERIFY(mixed->getObjectIdList().isEmpty() && mixed->ecOledText().isEmpty());
    QCOMPARE(untouched->ecOledText(), QString("B"));
    QVERIFY(store().updatePresetExItemText(0, 1, "spare"));
    QVERIFY(!store().updatePresetExItemText(Pages, 1, "spare"));
    store().resetPresetExItems(type, 0, 2);
    QVERIFY(untouched->getObjectIdList().isEmpty());
    QCOMPARE(single->ecOledText(), QString("spare"));
    store().resetPresetExItems(type);
    QVERIFY(single->ecOledText().isEmpty());

    store().clearECCommandItems(type);
    QVERIFY(store().resetPresetExDataByServerId(type, 1));
}

void tst_store::extensionOperationsRefuseOtherTypes()
{
    const auto type = KeyboardType::Preset;
    const ECCommandItemPtr preset = store().updateECButtonData(Wall, type, 0, 0, 0, {{1, 6}});
    const ECCommandItemPtr extension =
        store().appendECButtonData(KeyboardType::PresetEx, 0, 0, {1, 6}, "A", ECLEDColor::Green);
    QVERIFY(!store().findPresetEcCmdExItem(type, 0, 0));
    QVERIFY(!store().appendECButtonData(type, 0, 0, {2, 6}, "B", ECLEDColor::Green));
    QVERIFY(!store().removeECButtonData(type, 0, 0, {1, 6}));
    QVERIFY(!store().resetPresetExDataByServerId(type, 1));
    store().resetPresetExItems(type);
    store().resetPresetExItems(type, 0, 0);
    store().resetPresetExItems(type, 1);
    for (const ECCommandItemPtr& item : {preset, extension})
        QCOMPARE(item->getObjectIdList(), ECObjectIdList({{1, 6}}));
}

void tst_store::aLayerKeyIsNeverSeenWithoutItsScreen()
{
    const auto type = KeyboardType::Layer;
    store().initLayerECCommand(Wall, type, 3);
    const ECCommandItemPtr item = layersOf(Wall, 3).first();
    std::atomic<int> faults{0};
    hammer(
        1000,
        {[&](int round) {
             const quint32 layer = 1 + round % 5;
             if (!store().updateECButtonData(
                     Wall, type, 0, 0, 0, {{3, layer}}, ECLEDColor::Green, QString::number(layer), false))
                 ++faults;
             if (round % 2 == 0)
                 item->resetECCommandItem(type);
             else if (!store().resetECButtonData(Wall, type, {3, layer}))
                 ++faults;
         },
         [&](int) {
             // One moment's fields belong together: the label names the layer, or there is neither.
             const ECCommandItem seen(*item);
             const ECObjectIdList ids = seen.getObjectIdList();
             if (ids.size() != 1 || ids.first().first != 3)
                 ++faults;
             else if (seen.ecOledText() != (seen.isBindKeyPad() ? QString::number(ids.first().second) : ""))
                 ++faults;
         },
         [&](int) {
             if (layersOf(Wall, 3).size() != Pages * PageSize)
                 ++faults;
         }});
    QCOMPARE(faults.load(), 0);
}

void tst_store::namesAreNeverSeenOutOfStep()
{
    const auto type = KeyboardType::PresetEx;
    const ECCommandItemPtr item = store().findPresetEcCmdExItem(type, 0, 0);
    std::atomic<int> faults{0};
    const auto work = [&](quint32 server) {
        return [&, server](int) {
            store().appendECButtonData(type, 0, 0, {server, 6}, QString::number(server), ECLEDColor::Green);
            store().removeECButtonData(type, 0, 0, {server, 6});
        };
    };
    hammer(1000, {work(1), work(2), [&](int) {
                      const ECCommandItem seen(*item);
                      const ECObjectIdList ids = seen.getObjectIdList();
                      QStringList names;
                      for (const ECObjectId& id : ids)
                          names.append(QString::number(id.first));
                      const QString joined = names.join('/');
                      if (seen.joinObjectName() != joined || seen.ecOledText() != joined)
                          ++faults;
                      if ((seen.ecButtonColor() == ECLEDColor::Green) == ids.isEmpty())
                          ++faults;
                  }});
    QCOMPARE(faults.load(), 0);
}

void tst_store::devicesComeAndGoWhileKeysAreWorked()
{
    const auto type = KeyboardType::Input;
    ECCommandItem left(*makeItem(0, 0));
    ECCommandItem right(*makeItem(1, 1));
    std::atomic<int> faults{0};
    hammer(
        1000,
        {[](int round) {
             store().updateECCommandItems(round % 2 == 0 ? Wall : Stage, round % 2 == 0 ? Stage : Wall);
             store().initDeviceECCommandItems(round % 2 == 0 ? Wall : Stage);
             store().initLayerECCommand(Stage, KeyboardType::Layer, 3);
             store().removeECCommandLayerItems(Stage, 3);
             store().removeDeviceEcCommandItems(round % 2 == 0 ? Wall : Stage);
         },
         [&](int round) {
             const quint32 input = round % 6;
             store().updateECButtonData(
                 Wall, type, input % 3, int(input), int(input) / 3, {{input, 0}}, ECLEDColor::Yellow, "Cam",
                 false);
             const int button = store().findBindingButtonIndex(Wall, type, {input, 0});
             if (button != -1 && button != int(input))
                 ++faults;
             left = right;
         },
         [&](int) {
             // As a repaint does it: walk the view, read and reset the items directly.
             const ECCommandItemList items = store().inputECCommandItems(Wall);
             if (items.size() != Pages * PageSize)
                 ++faults;
             for (const ECCommandItemPtr& item : items) {
                 if (item->ecOledText() == "Cam")
                     item->resetECCommandItem();
             }
             right = left;
         }});
    QCOMPARE(faults.load(), 0);
}

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"

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
constexpr int KeyCount = Pages * PageSize;

const QString Wall = QStringLiteral("10.0.0.1-AA-0001");
const QString Stage = QStringLiteral("10.0.0.2-BB-0002");

ECConsoleManager& store()
{
    return *ECConsoleManager::instance();
}

ECCommandItemPtr makeItem(int page, int order)
{
    auto item = std::make_shared<ECCommandItem>();
    item->setECButtonPageIndex(qint16(page));
    item->setECButtonOrderIndex(qint16(order));
    item->setECButtonKey(100 + order);
    return item;
}

void registerKeys(KeyboardType type)
{
    store().clearECCommandItems(type);
    for (int button = 0; button < KeyCount; ++button)
        store().appendECCommandItem(type, makeItem(button / PageSize, button % PageSize));
}

/// Binds the key of that index where the keyboard has it.
ECCommandItemPtr bind(KeyboardType type, int button, const ECObjectIdList& ids, const QString& device = Wall)
{
    return store().updateECButtonData(device, type, button % PageSize, button, button / PageSize, ids);
}

ECCommandItemPtr keyOf(KeyboardType type, const ECObjectId& id, const QString& device = Wall)
{
    return store().findBindingECItem(device, type, id);
}

ECCommandItemList layersOf(quint32 screen, const QString& device = Wall)
{
    ECCommandItemList items{makeItem(9, 9)}; // what was in the list must not stay
    store().layerECCommandItems(device, screen, items);
    return items;
}

bool isUnbound(const ECCommandItem& item)
{
    return !item.isBindKeyPad() && !item.isLedBlink() && item.ecOledText().isEmpty()
        && item.ecButtonColor() == ECLEDColor::Off;
}

bool standInOrder(const ECCommandItemList& items)
{
    for (int i = 0; i < items.size(); ++i) {
        const ECCommandItem& item = *items.at(i);
        if (item.ecButtonPageIndex() != i / PageSize || item.ecButtonOrderIndex() != i % PageSize)
            return false;
    }
    return items.size() == KeyCount;
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
    void init()
    {
        for (const QString& device : {Wall, Stage})
            store().removeDeviceEcCommandItems(device);
        for (const KeyboardType type :
             {KeyboardType::Screen, KeyboardType::Layer, KeyboardType::Input, KeyboardType::Preset,
              KeyboardType::PresetEx})
            registerKeys(type);
        store().initDeviceECCommandItems(Wall);
        for (const quint32 screen : {3U, 4U})
            store().initLayerECCommand(Wall, KeyboardType::Layer, screen);
    }

    void namesKeepTheirOrderAndRefuseWrongPositions()
    {
        ECCommandItem item;
        item.appendBindedName("A", -1);
        item.appendBindedName("B", 0);
        item.appendBindedName("C", 2); // right behind the last
        QCOMPARE(item.joinObjectName(), QString("B/A/C"));
        for (const int wrong : {-2, 4}) {
            item.appendBindedName("X", wrong);
            item.removeBindedName(wrong);
            item.updateBindedName("X", wrong);
        }
        QCOMPARE(item.joinObjectName(), QString("B/A/C"));
        item.updateBindedName("D", 2);
        item.removeBindedName(0);
        QCOMPARE(item.joinObjectName(), QString("A/D"));
    }

    void aCopyHasEveryFieldAndGoesItsOwnWay()
    {
        const auto type = KeyboardType::Input;
        const ECCommandItemPtr stored =
            store().updateECButtonData(Wall, type, 1, 4, 1, {{7, 0}}, ECLEDColor::Yellow, "Cam 7", true);
        stored->setECOledKey(501);
        stored->appendBindedName("Camera", -1);

        ECCommandItem copy(*stored);
        QVERIFY(copy.ecButtonPageIndex() == 1 && copy.ecButtonOrderIndex() == 1 && copy.ecButtonIndex() == 4);
        QVERIFY(copy.ecButtonKey() == 101 && copy.ecOledKey() == 501);
        QVERIFY(copy.ecButtonColor() == ECLEDColor::Yellow && copy.isLedBlink());
        QVERIFY(copy.ecOledText() == "Cam 7" && copy.joinObjectName() == "Camera");
        QCOMPARE(copy.getObjectIdList(), ECObjectIdList({{7, 0}}));

        // The store knows nothing of the copy, and everything of what is assigned to the item that it holds.
        copy.removeObjectId({7, 0});
        copy.appendObjectData({8, 0});
        copy.setECButtonOrderIndex(5);
        QCOMPARE(keyOf(type, {7, 0}), stored);
        QVERIFY(!keyOf(type, {8, 0}));
        *stored = copy;
        QVERIFY(!keyOf(type, {7, 0}));
        QCOMPARE(keyOf(type, {8, 0}), stored);
        QCOMPARE(store().findEcCommandItem(Wall, type, 5, 1), stored);
        const ECCommandItem& itself = *stored;
        *stored = itself;
        QCOMPARE(stored->getObjectIdList(), ECObjectIdList({{8, 0}}));
    }

    void whatIsNoItemOrDeviceIsRefused()
    {
        const auto type = KeyboardType::Input;
        QTest::ignoreMessage(QtWarningMsg, " ERR Plugin Type :9");
        store().appendECCommandItem(KeyboardType(9), makeItem(0, 0));
        QTest::ignoreMessage(QtWarningMsg, "An empty item of keyboard type 2 is not stored.");
        store().appendECCommandItem(type, nullptr);
        QTest::ignoreMessage(QtWarningMsg, "A device without an address gets no items.");
        store().initDeviceECCommandItems(QString());
        QTest::ignoreMessage(QtWarningMsg, "Items of keyboard type 2 are not made per screen.");
        store().initLayerECCommand(Wall, type, 5);
        QVERIFY(standInOrder(store().inputECCommandItems(Wall)));

        QVERIFY(!bind(type, 0, {{7, 0}}, Stage) && !store().resetECButtonData(Stage, type, {7, 0}));
        QCOMPARE(store().findBindingButtonIndex(Stage, type, {7, 0}), -1);
        store().removeECCommandLayerItems(Stage, 3);
        QTest::ignoreMessage(
            QtWarningMsg, "Screen 3 gets no layer items: there are none for its device 10.0.0.2-BB-0002.");
        store().initLayerECCommand(Stage, KeyboardType::Layer, 3);
    }

    void eachDeviceHasItsOwnCopiesInOrder()
    {
        const auto type = KeyboardType::Preset;
        store().initDeviceECCommandItems(Stage);
        QVERIFY(standInOrder(store().presetECCommandItems(Wall)));
        QVERIFY(bind(type, 5, {{6, 6}}) && bind(type, 0, {{6, 6}}, Stage));
        store().initDeviceECCommandItems(Wall); // coming back to a device leaves its keys as they were
        QCOMPARE(store().findBindingButtonIndex(Wall, type, {6, 6}), 5);
        QCOMPARE(store().findBindingButtonIndex(Stage, type, {6, 6}), 0);
        QVERIFY(!keyOf(KeyboardType::Input, {6, 6}));
    }

    void aKeyboardRegisteredAgainReplacesTheKeys()
    {
        const ECCommandItemPtr old = bind(KeyboardType::Input, 0, {{7, 0}});
        registerKeys(KeyboardType::Input);
        registerKeys(KeyboardType::Layer);
        QVERIFY(standInOrder(store().inputECCommandItems(Wall)));
        QVERIFY(standInOrder(layersOf(3)) && standInOrder(layersOf(4))); // screens keep keys of their own
        QVERIFY(!keyOf(KeyboardType::Input, {7, 0}));
        old->appendObjectData({8, 0}); // still safe for a command that kept it
        QVERIFY(!keyOf(KeyboardType::Input, {8, 0}));
    }

    void anUnknownDeviceShowsUnboundKeys()
    {
        const ECCommandItemList keys = store().inputECCommandItems(Stage);
        QVERIFY(standInOrder(keys));
        QVERIFY(standInOrder(layersOf(3, Stage)));
        // Whatever is done to them reaches neither the next view nor a device that comes later.
        for (const ECCommandItemPtr& key : {keys.first(), layersOf(3, Stage).first()}) {
            key->setECOledText("stray");
            key->appendObjectData({7, 0});
        }
        QVERIFY(isUnbound(*layersOf(3, Stage).first()));
        QVERIFY(isUnbound(*store().inputECCommandItems(Stage).first()));
        store().initDeviceECCommandItems(Stage);
        QVERIFY(!keyOf(KeyboardType::Input, {7, 0}, Stage));
    }

    void aDevicesKeysGoWithItsAddressAndItself()
    {
        const auto type = KeyboardType::Input;
        QTest::ignoreMessage(
            QtWarningMsg,
            "Can not find pre device ip command items info... Pre IP : 10.9.9.9 Current IP: "
            "10.0.0.2-BB-0002");
        store().updateECCommandItems("10.9.9.9", Stage);
        QVERIFY(!store().findEcCommandItem(Stage, type, 0, 0));

        const ECCommandItemPtr item = bind(type, 1, {{7, 0}});
        store().initDeviceECCommandItems(Stage); // the new address can be seen before the change is reported
        for (const QString& previous : {Wall, Stage}) {
            store().updateECCommandItems(previous, Stage);
            QCOMPARE(keyOf(type, {7, 0}, Stage), item);
        }
        QVERIFY(!keyOf(type, {7, 0}));

        for (int times = 0; times < 2; ++times)
            store().removeDeviceEcCommandItems(Stage);
        store().initDeviceECCommandItems(Stage);
        QVERIFY(!keyOf(type, {7, 0}, Stage));
    }

    void bindingSelectsByPageAndOrder()
    {
        const auto type = KeyboardType::Input;
        QVERIFY(!bind(type, 4, {}));
        QVERIFY(!store().updateECButtonData(Wall, type, PageSize, 4, 1, {{7, 0}}));
        QVERIFY(!store().updateECButtonData(Wall, type, 1, 4, Pages, {{7, 0}}));

        const ECCommandItemPtr item =
            store().updateECButtonData(Wall, type, 1, 4, 1, {{7, 0}}, ECLEDColor::Red, "Cam", true);
        QCOMPARE(item, store().inputECCommandItems(Wall).at(4));
        QCOMPARE(item, store().findEcCommandItem({{9, 9}}, Wall, type, 1, 1));
        // The shorter forms leave the rest of the looks alone, and objects add up.
        store().updateECButtonData(Wall, type, 1, 4, 1, {{7, 0}, {8, 0}}, ECLEDColor::Yellow);
        store().updateECButtonData(Wall, type, 1, 5, 1, {{8, 0}});
        QVERIFY(
            item->ecButtonColor() == ECLEDColor::Yellow && item->ecOledText() == "Cam" && item->isLedBlink());
        QCOMPARE(store().findBindingObject(Wall, type, 5), ECObjectIdList({{7, 0}, {8, 0}}));
        QVERIFY(store().findBindingObject(Wall, type, 4).isEmpty());

        const ECCommandItemPtr other = bind(type, 1, {{9, 0}});
        QVERIFY(!store().resetECButtonData(Wall, type, {9, 1}));
        QCOMPARE(store().resetECButtonData(Wall, type, {8, 0}, ECLEDColor::Orange), item);
        QVERIFY(item->ecButtonColor() == ECLEDColor::Orange && item->getObjectIdList().isEmpty());
        QVERIFY(other->isBindKeyPad(1));
        store().resetECCommandItems(Wall, type);
        QVERIFY(isUnbound(*item) && isUnbound(*other) && !keyOf(type, {9, 0}));
    }

    void theLookupsFollowWhatIsDoneToAnItemDirectly()
    {
        const auto type = KeyboardType::Preset;
        const ECCommandItemList items = store().presetECCommandItems(Wall);
        items.at(4)->appendObjectData({5, 6});
        items.at(2)->appendObjectData({5, 6});
        QCOMPARE(keyOf(type, {5, 6}), items.at(2)); // the first in the list's order
        items.at(2)->resetECCommandItem();
        QCOMPARE(keyOf(type, {5, 6}), items.at(4));
        items.at(4)->removeObjectId({5, 6});
        QVERIFY(!keyOf(type, {5, 6}));
        items.at(4)->appendObjectData({5, 8});
        items.at(4)->clearObjectIdSet();
        QVERIFY(!keyOf(type, {5, 8}));

        items.at(4)->setECButtonPageIndex(7);
        QVERIFY(!store().findEcCommandItem(Wall, type, 1, 1));
        QCOMPARE(store().findEcCommandItem(Wall, type, 1, 7), items.at(4));
        items.at(4)->setECButtonPageIndex(0); // two keys at one place: the first answers
        QCOMPARE(store().findEcCommandItem(Wall, type, 1, 0), items.at(1));
    }

    void aLayerKeyEndsBoundToTheLastLayerAlone()
    {
        const auto type = KeyboardType::Layer;
        const ECCommandItemPtr item = bind(type, 1, {{4, 11}, {4, 12}});
        QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, 12}}));
        QCOMPARE(keyOf(type, {4, 12}), item);
        QVERIFY(!keyOf(type, {4, 11}));

        // Its own layer finds it, another one does not, and another screen has its own key there.
        QCOMPARE(store().findEcCommandItem({{4, 12}}, Wall, type, 1, 0), item);
        QVERIFY(!store().findEcCommandItem({{4, 13}}, Wall, type, 1, 0));
        const ECCommandItemPtr other = bind(type, 1, {{3, 12}});
        QVERIFY(other && other != item && !bind(type, 1, {{5, 12}}));
        QCOMPARE(store().findBindingObject(Wall, type, 1, 4), ECObjectIdList({{4, 12}}));
        QCOMPARE(store().findBindingObject(Wall, type, 1, 3), ECObjectIdList({{3, 12}}));

        // Reset by a take, any layer of the screen finds it again.
        item->resetECCommandItem(type);
        QVERIFY(isUnbound(*item));
        QCOMPARE(bind(type, 1, {{4, 13}}), item);
        QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, 13}}));
        QCOMPARE(store().resetECButtonData(Wall, type, {4, 13}), item);
        QCOMPARE(item->getObjectIdList(), ECObjectIdList({{4, Free}}));
    }

    void eachScreenHasItsOwnLayerKeys()
    {
        const auto type = KeyboardType::Layer;
        const ECCommandItemPtr bound = bind(type, 5, {{3, 7}});
        const ECCommandItemPtr other = bind(type, 0, {{4, 7}});
        store().initLayerECCommand(Wall, type, 3); // once more changes nothing
        QVERIFY(standInOrder(layersOf(3)));
        QCOMPARE(layersOf(3).last(), bound);
        QCOMPARE(layersOf(3).first()->getObjectIdList(), ECObjectIdList({{3, Free}}));

        store().resetECCommandLayerItems(Wall, 3);
        QVERIFY(isUnbound(*bound) && other->isBindKeyPad(0));
        store().resetECCommandItems(Wall, type);
        QVERIFY(isUnbound(*other));
        QVERIFY(standInOrder(layersOf(3)) && standInOrder(layersOf(4))); // no screen lost its keys

        store().removeECCommandLayerItems(Wall, 3);
        QVERIFY(layersOf(3).isEmpty() && standInOrder(layersOf(4)));
        bound->appendObjectData({4, 9}); // a key that is out of the store stays out
        QVERIFY(!keyOf(type, {4, 9}));
        store().initLayerECCommand(Wall, type, 3);
        QVERIFY(standInOrder(layersOf(3)));
    }

    void extensionKeysKeepNamesInStepWithObjects()
    {
        const auto type = KeyboardType::PresetEx;
        QVERIFY(!store().appendECButtonData(type, 0, Pages, {1, 6}, "A", ECLEDColor::Blue));
        const ECCommandItemPtr item = store().appendECButtonData(type, 1, 0, {1, 6}, "A", ECLEDColor::Blue);
        store().appendECButtonData(type, 1, 0, {2, 6}, "B", ECLEDColor::Blue);
        store().appendECButtonData(type, 1, 0, {3, 6}, "C", ECLEDColor::Yellow);
        QCOMPARE(item, store().findPresetEcCmdExItem(type, 1, 0));
        QCOMPARE(item, store().getPresetExItems().at(1));
        QCOMPARE(item->ecOledText(), QString("A/B/C"));
        QVERIFY(store().isBindingPresetExObject({2, 6}));

        QCOMPARE(store().removeECButtonData(type, 1, 0, {2, 6}), item);
        store().removeECButtonData(type, 1, 0, {2, 6}); // not bound any more: takes no other name along
        QCOMPARE(item->joinObjectName(), QString("A/C"));
        QVERIFY(item->ecOledText() == "A/C" && item->ecButtonColor() == ECLEDColor::Yellow);
        QVERIFY(!store().isBindingPresetExObject({2, 6}));
        for (const quint64 server : {1U, 3U})
            store().removeECButtonData(type, 1, 0, {server, 6});
        QVERIFY(isUnbound(*item));
    }

    void aGoneServerLeavesAllExtensionKeys()
    {
        const auto type = KeyboardType::PresetEx;
        const auto extend = [&](int order, const ECObjectId& id, const char* name) {
            return store().appendECButtonData(type, order, 0, id, name, ECLEDColor::Green);
        };
        const ECCommandItemPtr mixed = extend(0, {1, 6}, "A");
        extend(0, {2, 6}, "B");
        extend(0, {1, 8}, "C");
        extend(0, {3, 6}, "D");
        const ECCommandItemPtr single = extend(1, {1, 6}, "A");
        const ECCommandItemPtr untouched = extend(2, {2, 6}, "B");

        for (const char* text : {"B/D", "", "B", "", "", ""})
            QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("ecOledText:%1").arg(text)));
        QVERIFY(store().resetPresetExDataByServerId(type, 1));
        QCOMPARE(mixed->getObjectIdList(), ECObjectIdList({{2, 6}, {3, 6}}));
        QCOMPARE(mixed->joinObjectName(), QString("B/D"));
        QVERIFY(mixed->ecOledText() == "B/D" && mixed->ecButtonColor() == ECLEDColor::Green);
        QVERIFY(isUnbound(*single));

        // The other resets unbind whole keys: those of a server, the one at a place, all.
        store().resetPresetExItems(type, 3);
        QVERIFY(isUnbound(*mixed) && untouched->ecOledText() == "B");
        QVERIFY(
            store().updatePresetExItemText(0, 1, "spare") && !store().updatePresetExItemText(Pages, 1, ""));
        store().resetPresetExItems(type, 0, 2);
        QVERIFY(isUnbound(*untouched) && single->ecOledText() == "spare");
        store().resetPresetExItems(type);
        QVERIFY(isUnbound(*single));
    }

    void aLayerKeyIsNeverSeenWithoutItsScreen()
    {
        const auto type = KeyboardType::Layer;
        const ECCommandItemPtr item = layersOf(3).first();
        std::atomic<int> faults{0};
        hammer(
            1000,
            {[&](int round) {
                 const quint32 layer = 1 + round % 5;
                 faults += !store().updateECButtonData(
                     Wall, type, 0, 0, 0, {{3, layer}}, ECLEDColor::Green, QString::number(layer), false);
                 if (round % 2 == 0)
                     item->resetECCommandItem(type);
                 else
                     faults += !store().resetECButtonData(Wall, type, {3, layer});
             },
             [&](int) {
                 // One moment's fields belong together: the label names the layer, or there is neither.
                 const ECCommandItem seen(*item);
                 const ECObjectIdList ids = seen.getObjectIdList();
                 const QString label = seen.isBindKeyPad() ? QString::number(ids.value(0).second) : QString();
                 faults += ids.size() != 1 || ids.first().first != 3 || seen.ecOledText() != label;
             },
             [&](int) { faults += layersOf(3).size() != KeyCount; }});
        QCOMPARE(faults.load(), 0);
    }

    void namesAreNeverSeenOutOfStep()
    {
        const auto type = KeyboardType::PresetEx;
        const ECCommandItemPtr item = store().findPresetEcCmdExItem(type, 0, 0);
        std::atomic<int> faults{0};
        const auto work = [&](quint32 server) {
            return [&, server](int) {
                store().appendECButtonData(
                    type, 0, 0, {server, 6}, QString::number(server), ECLEDColor::Green);
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
                          faults += seen.joinObjectName() != joined || seen.ecOledText() != joined;
                          faults += (seen.ecButtonColor() == ECLEDColor::Green) == ids.isEmpty();
                      }});
        QCOMPARE(faults.load(), 0);
    }

    void devicesComeAndGoWhileKeysAreWorked()
    {
        const auto type = KeyboardType::Input;
        ECCommandItem left(*makeItem(0, 0));
        ECCommandItem right(*makeItem(1, 1));
        std::atomic<int> faults{0};
        hammer(
            1000,
            {[](int round) {
                 const QString& device = round % 2 == 0 ? Wall : Stage;
                 store().updateECCommandItems(device, round % 2 == 0 ? Stage : Wall);
                 store().initDeviceECCommandItems(device);
                 store().initLayerECCommand(Stage, KeyboardType::Layer, 3);
                 store().removeECCommandLayerItems(Stage, 3);
                 store().removeDeviceEcCommandItems(device);
             },
             [&](int round) {
                 const int key = round % KeyCount;
                 bind(type, key, {{quint64(key), 0}});
                 const int button = store().findBindingButtonIndex(Wall, type, {quint64(key), 0});
                 faults += button != -1 && button != key;
                 left = right;
             },
             [&](int) {
                 // As a repaint does it: walk the view, read and reset the items directly.
                 const ECCommandItemList items = store().inputECCommandItems(Wall);
                 faults += items.size() != KeyCount;
                 for (const ECCommandItemPtr& item : items) {
                     if (item->isBindKeyPad())
                         item->resetECCommandItem();
                 }
                 right = left;
             }});
        QCOMPARE(faults.load(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"

#include "keygroup_p.h"

#include "ec/eckeyboardconfig.h"
#include "eccommanditem.h"

#include <QTest>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using Internal::KeyGroup;

namespace {

constexpr quint16 Select = 1;

std::shared_ptr<EC::s_ECCommandConfig> configOf(const QList<QPair<quint16, quint16>>& codesAndPlaces)
{
    auto config = std::make_shared<EC::s_ECCommandConfig>();
    quint16 ecKey = 10;
    for (const auto& [code, place] : codesAndPlaces) {
        auto button = std::make_shared<EC::s_ECButtonConfig>();
        button->ECKey = ecKey++;
        button->OrvaneKey = code;
        button->OrderIndex = place;
        config->m_buttons.append(button);
    }
    return config;
}

} // namespace

class TestKeyGroup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itemsFollowTheKeysPlacesPageByPage()
    {
        const auto config = configOf({{Select, 1}, {2, 0}, {Select, 0}});
        KeyGroup keys(std::nullopt, Select);
        keys.make(config, 2);
        QCOMPARE(keys.pageSize(), 2);
        QCOMPARE(keys.button(0)->ECKey, quint16(12));
        QVERIFY(!keys.button(2) && !keys.button(-1));
        QVERIFY(keys.contains(10) && !keys.contains(11));
        const ECCommandItemList items = keys.items();
        QCOMPARE(items.size(), 4);
        for (int i = 0; i < items.size(); ++i)
            QCOMPARE(keys.placeOf(*items.at(i)).buttonIndex, i);
    }

    void freeKeyIsTheFirstThatNothingIsBoundTo()
    {
        const auto config = configOf({{Select, 0}, {Select, 1}});
        KeyGroup keys(std::nullopt, Select);
        keys.make(config, 2);
        const ECCommandItemList items = keys.items();
        items.at(0)->setECButtonIndex(0);
        items.at(1)->appendObjectData({7, 0});
        items.at(2)->setECButtonIndex(2);
        int orderIndex = -1;
        QCOMPARE(keys.minUnusedButtonIndex(items, orderIndex), 3);
        QCOMPARE(orderIndex, 1);
        items.at(3)->setECButtonIndex(3);
        QCOMPARE(keys.minUnusedButtonIndex(items, orderIndex), -1);
    }

    void updateThatAnotherWriterHasOvertakenReadsTheModelAgain()
    {
        KeyGroup keys(std::nullopt, Select);
        int model = 1;
        int reads = 0;
        int written = 0;
        keys.updateItems(
            [&] {
                const int read = model;
                if (++reads == 1) {
                    model = 2;
                    keys.writeItems([&] { written = model; });
                }
                return read;
            },
            [&](int read) { written = read; });
        QCOMPARE(reads, 2);
        QCOMPARE(written, 2);
    }
};

QTEST_GUILESS_MAIN(TestKeyGroup)
#include "tst_keygroup.moc"

#include "paneltestsupport.h"

using namespace PanelTest;

namespace {

QByteArray press(quint32 key)
{
    return encodeUp(KeyReport{true, key}, 0);
}

/// What arrives of a hundred presses, in order, as key numbers.
QVector<quint32> arrivals(FaultyWire& wire)
{
    QVector<quint32> keys;
    const auto take = [&keys](const QByteArray& datagram) {
        keys.append(std::get<KeyReport>(*decodeUp(datagram)).key);
    };
    for (quint32 key = 0; key < 100; ++key)
        for (const FaultyWire::Arrival& arrival : wire.pass(press(key)))
            take(arrival.datagram);
    if (const auto waiting = wire.takeWaiting())
        take(*waiting);
    return keys;
}

} // namespace

class FaultyWireTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sameSeedLosesTheSameReports()
    {
        FaultyWire wire;
        wire.faults().dropRate = 30;
        const QVector<quint32> first = arrivals(wire);
        QVERIFY(first.size() > 50 && first.size() < 90);
        QVERIFY(arrivals(wire) != first);
        wire.seed(1);
        QCOMPARE(arrivals(wire), first);
    }

    void duplicatesDelaysAndOvertakes()
    {
        FaultyWire wire;
        wire.faults().duplicateRate = 100;
        wire.faults().delayRate = 100;
        wire.faults().delay = std::chrono::milliseconds(70);
        const auto twice = wire.pass(press(1));
        QCOMPARE(int(twice.size()), 2);
        QCOMPARE(twice.at(1).after.count(), 70);

        wire.faults() = {};
        wire.faults().reorderRate = 100;
        QVERIFY(wire.pass(press(1)).empty() && wire.isWaiting());
        const auto both = wire.pass(press(2));
        QCOMPARE(int(both.size()), 2);
        QCOMPARE(both.at(0).datagram, press(2));
        QCOMPARE(both.at(1).datagram, press(1));
        wire.faults().reorderRate = 50;
        QVector<quint32> keys = arrivals(wire);
        QVERIFY(!std::is_sorted(keys.begin(), keys.end()));
        std::sort(keys.begin(), keys.end());
        QCOMPARE(keys.size(), 100); // none was lost
        QVERIFY(std::adjacent_find(keys.begin(), keys.end()) == keys.end());
    }

    void oneReleaseIsLostAndNoPress()
    {
        FaultyWire wire;
        wire.faults().losesNextRelease = true;
        const QByteArray release = encodeUp(KeyReport{false, 5}, 0);
        QCOMPARE(int(wire.pass(press(5)).size()), 1);
        QVERIFY(wire.pass(release).empty());
        QCOMPARE(int(wire.pass(release).size()), 1);
    }
};

QTEST_GUILESS_MAIN(FaultyWireTest)
#include "tst_faultywire.moc"

#include "everykey.h"

#include "ecmanager.h"
#include "ecsurfaceshadow.h"

#include <QTest>

#include <algorithm>

using namespace EveryKey;
using Shadow = ECSurfaceShadow;

namespace {

QString differencesOf(const Shadow::Surface& surface)
{
    QStringList numbers;
    for (const auto& key : surface.keys) {
        if (key.differs())
            numbers.append(QStringLiteral("key %1").arg(key.ecKey));
    }
    for (const auto& label : surface.labels) {
        if (label.differs())
            numbers.append(QStringLiteral("label %1").arg(label.ecKey));
    }
    return numbers.join(", ");
}

Shadow::Key keyAt(const Shadow& shadow, quint16 ecKey)
{
    const auto keys = shadow.surface().keys;
    const auto found =
        std::find_if(keys.cbegin(), keys.cend(), [&](const Shadow::Key& key) { return key.ecKey == ecKey; });
    return found == keys.cend() ? Shadow::Key() : *found;
}

} // namespace

/// What the keys are to show beside what the console was told.
class TestSurfaceShadow : public TestSupport::ModelTest {
    Q_OBJECT

public:
    TestSurfaceShadow()
        : ModelTest(keyboard())
    {
    }

private Q_SLOTS:
    void init() { QVERIFY(m_rig.load(show())); }

    void afterARepaintNothingDiffersInAnyState_data()
    {
        QTest::addColumn<int>("state");
        QTest::newRow("all dark") << 0;
        QTest::newRow("frozen, swapped, faded") << 1;
        QTest::newRow("no device") << 2;
    }
    void afterARepaintNothingDiffersInAnyState()
    {
        QFETCH(int, state);
        const Shadow shadow;
        if (state == 1) {
            control().setFreeze(Device, Stage, true);
            control().setSwap(Device, true);
            control().setFTB(Device, Stage, true);
        } else if (state == 2) {
            control().activateDevice({});
        }
        repaint();
        const auto surface = shadow.surface();
        QVERIFY(surface.keys.size() > 30);
        QCOMPARE(differencesOf(surface), QString());
    }

    void aLightThatTheHostPaintsOverIsTheOneThatDiffers()
    {
        const Shadow shadow;
        repaint();
        const quint16 freeze = keyOf("ScreenCommand", "freeze PGM");
        const auto wrong = std::make_shared<ECButtonColor>();
        wrong->ECKey = freeze;
        wrong->R = 1;
        wrong->brightness = 100;
        ECManager::instance()->updateECButtonColor(wrong);
        QCOMPARE(differencesOf(shadow.surface()), QString("key %1").arg(freeze));
        QCOMPARE(int(keyAt(shadow, freeze).sent->R), 1);
        repaint();
        QCOMPARE(differencesOf(shadow.surface()), QString());
    }

    void aHeldKeyDiffersUntilItIsReleased()
    {
        const Shadow shadow;
        repaint();
        const quint16 enter = keyOf("NumberCommand", "Enter");
        console().press(enter);
        QVERIFY(console().settle());
        QVERIFY(keyAt(shadow, enter).differs());
        console().release(enter);
        QVERIFY(console().settle());
        QVERIFY(!keyAt(shadow, enter).differs());
    }

private:
    /// All that a console is shown when it comes.
    void repaint()
    {
        ECManager::instance()->slotOrvanePluginModeChanged();
        ECManager::instance()->showFunctionKeyLights();
        QVERIFY(console().settle());
    }
};

QTEST_MAIN(TestSurfaceShadow)
#include "tst_surfaceshadow.moc"

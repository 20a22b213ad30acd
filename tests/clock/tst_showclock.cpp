#include "keyboardbuilder.h"
#include "modelrig.h"
#include "showclock_p.h"

#include "bizmodel/layer.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

namespace {

constexpr int Rate = 50;
constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
const QString Device = QStringLiteral("device");
constexpr double TransitionSeconds = 5.0;

enum Key : quint16 { Take = 1, TimeUp, Clear, TBarLock };
constexpr quint16 TimeLabel = 102;

std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("ScreenCommand").key(Take, 8).key(TimeUp, 10, 0, TimeLabel);
    builder.group("LayerCommand").key(Clear, 5);
    return builder.group("FunctionCommand").key(TBarLock, 2).build();
}

MemoryModel::ShowRecord show()
{
    MemoryModel::ScreenRecord screen;
    screen.key = Stage;
    screen.name = QStringLiteral("Stage");
    screen.selected = true;
    screen.effectSeconds = TransitionSeconds;
    const QSize hd(1920, 1080);
    screen.outputs = {{1, QRect(QPoint(0, 0), hd)}};
    MemoryModel::DeviceRecord device;
    device.ipMacSn = Device;
    device.online = true;
    device.subcards = {{1, 40, {}}};
    device.outputs = {{1, 1, 0, hd, true}};
    device.screens = {screen};
    device.activeScreen = Stage;
    MemoryModel::ShowRecord record;
    record.devices = {device};
    record.activeDevice = Device;
    return record;
}

} // namespace

/// A show that runs fifty times as fast: what takes seconds takes fifty times less, and the order of what
/// happens stays.
class TestShowClock : public TestSupport::ModelTest {
    Q_OBJECT

public:
    TestShowClock()
        : ModelTest((ShowClock::setRate(Rate), keyboard()))
    {
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_rig.load(show())); }

    void aHoldActsAfterItsShareOfTheTimeAndNotBefore()
    {
        const qint64 took = timeUntil(
            [this] { console().press(Clear); },
            [this] { return !m_rig.requested(Operation::AsyncRemoveLayer).isEmpty(); });
        isScaled(took, 3000);
        console().release(Clear);
        const qint64 lock = timeUntil(
            [this] { console().press(TBarLock); }, [this] { return console().console().isTBarLocked; });
        isScaled(lock, 2000);
        console().release(TBarLock);
        QVERIFY(console().settle());
    }

    void aTransitionTakesItsShareOfTheTime()
    {
        const auto state = [this] { return m_rig.screen(Device, Stage)->state(); };
        const qint64 took =
            timeUntil([this] { tap(Take); }, [&] { return state() == BizModel::Screen::State::Normal; });
        isScaled(took, int(TransitionSeconds * 1000));
    }

    /// 350, 250, 150, 50 and then 10 ms a step: forty steps are 1.16 s of the show.
    void aHeldTimeKeyRepeatsFaster()
    {
        const qint64 took = timeUntil(
            [this] { console().press(TimeUp); },
            [this] {
                const auto labels = console().console().labels;
                return labels.count(TimeLabel) && labels.at(TimeLabel).changes > 40;
            });
        isScaled(took, 1150);
        console().release(TimeUp);
        QVERIFY(console().settle());
    }

private:
    template <typename Act, typename Done> qint64 timeUntil(Act act, Done done)
    {
        QElapsedTimer timer;
        timer.start();
        act();
        return QTest::qWaitFor(done, 10000) ? timer.elapsed() : -1;
    }

    /// Not sooner than its share, and sooner than without the rate by far, also on a busy machine.
    static void isScaled(qint64 tookMs, int showMs)
    {
        QVERIFY2(tookMs >= showMs / Rate, qPrintable(QString::number(tookMs)));
        QVERIFY2(tookMs < showMs / 2, qPrintable(QString::number(tookMs)));
    }
};

QTEST_MAIN(TestShowClock)
#include "tst_showclock.moc"

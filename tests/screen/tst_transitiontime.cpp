#include "bareplatform.h"
#include "downdecoder.h"
#include "logcapture.h"
#include "memorydevice.h"
#include "memoryscreen.h"
#include "screenscene.h"

#include <QDialog>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace ScreenScene;
using namespace std::chrono_literals;
using TestSupport::LogCapture;

namespace {

/// A busy machine may take its time over many steps.
constexpr int StepsMs = 30000;
/// Labels that came after a release was handled would come within this time.
constexpr int QuietMs = 400;

} // namespace

/// The transition time keys: a step on the press, repeats while held, the model told on the release.
class TestTransitionTime : public ScreenTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ECManager::instance()->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
            const auto read = ConsolePanel::decodeDown(datagram.constData(), datagram.size());
            const auto* down = std::get_if<ConsolePanel::DownDatagram>(&read);
            const auto* text = down ? std::get_if<ECOLEDText>(&down->message) : nullptr;
            if (text && text->ECKey == Label + TimeUp) {
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_steps.push_back({QString::fromLatin1(text->OledText), Clock::now()});
            }
            return true;
        });
    }
    void init()
    {
        start();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_steps.clear();
    }
    void cleanupTestCase() { m_rig.endConsole(); } // it sends to this object

    void oneStepWrapsAtBothEnds_data()
    {
        QTest::addColumn<double>("before");
        QTest::addColumn<quint16>("key");
        QTest::addColumn<QString>("after");
        QTest::newRow("up") << 0.5 << quint16(TimeUp) << "0.6";
        QTest::newRow("up to the top") << 9.9 << quint16(TimeUp) << "10.0";
        QTest::newRow("up from the top") << 10.0 << quint16(TimeUp) << "0.1";
        QTest::newRow("up from what rounds to the top") << 9.96 << quint16(TimeUp) << "0.1";
        QTest::newRow("down") << 2.6 << quint16(TimeDown) << "2.5";
        QTest::newRow("down to the bottom") << 0.2 << quint16(TimeDown) << "0.1";
        QTest::newRow("down from the bottom") << 0.1 << quint16(TimeDown) << "10.0";
        QTest::newRow("down from nothing") << 0.0 << quint16(TimeDown) << "10.0";
    }
    void oneStepWrapsAtBothEnds()
    {
        QFETCH(double, before);
        QFETCH(quint16, key);
        QFETCH(QString, after);
        QVERIFY(control().setEffectTime(A, Stage, before));
        const LogCapture log;
        QVERIFY(tap(key));
        QVERIFY(log.contains("IncreaseEffectTime speedStr= :" + after));
        QVERIFY(console().shows(key, ECLEDColor::Off));
        QCOMPARE(writes(), 1);
        QCOMPARE(screen()->switchEffectTime(), after.toDouble());
        // Both keys show it, once the model has told.
        QVERIFY(console().waitLabel(Label + TimeUp, after) && console().waitLabel(Label + TimeDown, after));
    }

    void holdingRepeatsFasterAndFaster()
    {
        QVERIFY(control().setEffectTime(A, Stage, 5.0));
        console().press(TimeUp);
        QVERIFY(waitForSteps(20));
        QVERIFY(console().shows(TimeUp, ECLEDColor::Green));
        console().release(TimeUp);
        QVERIFY(console().settle());
        const auto seen = steps();
        const std::chrono::milliseconds intervals[] = {350ms, 250ms, 150ms, 50ms, 10ms, 10ms};
        // The first entry is what setEffectTime() announced.
        for (std::size_t i = 0; i < std::size(intervals); ++i) {
            QCOMPARE(seen.at(i + 1).text, QString::number(5.1 + 0.1 * double(i), 'f', 1));
            QVERIFY2(
                seen.at(i + 2).time - seen.at(i + 1).time >= intervals[i], qPrintable(QString::number(i)));
        }
        // A busy machine delays one or the other of the fast steps, but not all.
        auto shortest = seen.at(6).time - seen.at(5).time;
        for (std::size_t i = 6; i < seen.size(); ++i)
            shortest = std::min(shortest, seen.at(i).time - seen.at(i - 1).time);
        QVERIFY(shortest < 40ms);
        const double seconds = screen()->switchEffectTime();
        QVERIFY(seconds >= 6.0);
        QCOMPARE(seconds, std::round(seconds * 10) * 0.1);
    }

    void theReleaseEndsTheRepeatForGood()
    {
        // Into the fast repeat, where a release is most likely to meet a running step; then many short holds.
        for (int i = 0; i < 3; ++i) {
            console().press(TimeUp);
            QVERIFY(waitForSteps(steps().size() + 16));
            console().release(TimeUp);
        }
        for (int i = 0; i < 200; ++i) {
            console().tap(TimeUp);
            console().tap(TimeDown);
        }
        QVERIFY(console().settle());
        const QString shown = QString::number(screen()->switchEffectTime(), 'f', 1);
        QVERIFY(console().waitLabel(Label + TimeUp, shown));
        const std::size_t count = steps().size();
        QVERIFY(!QTest::qWaitFor([&] { return steps().size() != count; }, QuietMs));
        QCOMPARE(writes(), 403);
    }

    void theOtherKeyTurnsTheDirection()
    {
        QVERIFY(control().setEffectTime(A, Stage, 5.0));
        console().press(TimeUp);
        console().press(TimeDown);
        // The up key counts no further, although it is still held.
        QVERIFY(QTest::qWaitFor([&] { return label(TimeDown).toDouble() < 4.75; }, StepsMs));
        QCOMPARE(label(TimeUp), QString("5.1"));
        console().release(TimeDown);
        console().release(TimeUp);
        QVERIFY(console().settle());
        QCOMPARE(writes(), 1);
        QVERIFY(screen()->switchEffectTime() < 4.75);
    }

    void anAuxScreensTimeIsNotWritten()
    {
        QVERIFY(control().setEffectTime(A, Confidence, 3.0));
        QVERIFY(control().activateScreen(A, Confidence));
        QCOMPARE(label(TimeUp), QString("3.0"));
        console().press(TimeUp);
        QVERIFY(QTest::qWaitFor([&] { return label(TimeUp) != "3.0"; }));
        console().release(TimeUp);
        QVERIFY(console().waitLabel(Label + TimeUp, "3.0"));
        QCOMPARE(writes(), 0);
    }

    void aHoldThatIsPutToRestWritesNothing()
    {
        QVERIFY(control().setEffectTime(A, Stage, 5.0));
        ScreenCommand command;
        command.setCommandConfig(keyboard()->m_commands.first());
        for (const quint16 key : {TimeUp, TimeDown}) {
            command.slotECButtonPressed(key);
            QVERIFY(label(key) != "5.0");
            command.putKeyToRest(key);
            QVERIFY(console().shows(key, ECLEDColor::Off));
            QCOMPARE(label(TimeUp), QString("5.0"));
            QCOMPARE(label(TimeDown), QString("5.0"));
            const std::size_t count = steps().size();
            QVERIFY(!QTest::qWaitFor([&] { return steps().size() != count; }, QuietMs));
            command.slotECButtonRelease(key); // late: nothing is held any more
        }
        QCOMPARE(writes(), 0);
        ECManager::instance()->slotOrvanePluginModeChanged();
    }

    void aKeyPutToRestLeavesTheOtherKeysHoldGoing()
    {
        QVERIFY(control().setEffectTime(A, Stage, 5.0));
        ScreenCommand command;
        command.setCommandConfig(keyboard()->m_commands.first());
        command.slotECButtonPressed(TimeUp); // its release is lost
        command.slotECButtonPressed(TimeDown);
        command.putKeyToRest(TimeUp);
        QVERIFY(QTest::qWaitFor([&] { return label(TimeDown).toDouble() < 4.85; }, StepsMs));
        command.slotECButtonRelease(TimeDown);
        QCOMPARE(writes(), 1);
        QVERIFY(screen()->switchEffectTime() < 4.85);
        ECManager::instance()->slotOrvanePluginModeChanged();
    }

    void aDialogRefusesTheHoldButNotTheRelease()
    {
        auto dialog = std::make_unique<QDialog>();
        dialog->open();
        QVERIFY(tap(TimeUp));
        QVERIFY(console().shows(TimeUp, ECLEDColor::Off));
        QCOMPARE(label(TimeUp), QString("0.1"));
        QCOMPARE(writes(), 0);

        dialog.reset();
        console().press(TimeUp);
        QVERIFY(console().settle());
        dialog = std::make_unique<QDialog>();
        dialog->open();
        console().release(TimeUp);
        QVERIFY(console().settle());
        QVERIFY(console().shows(TimeUp, ECLEDColor::Off));
        QCOMPARE(writes(), 1);
    }

    void aKeypadLockedDuringAHoldKeepsItGoingUntilTheUnlock()
    {
        console().press(TimeUp);
        QVERIFY(console().settle());
        ECManager::instance()->lockKeypad();
        console().release(TimeUp);
        QVERIFY(QTest::qWaitFor([&] { return label(TimeUp).toDouble() > 0.35; }, StepsMs));
        QCOMPARE(writes(), 0);
        ECManager::instance()->unlockKeypad();
        QVERIFY(console().waitLabel(Label + TimeUp, "0.1"));
        QVERIFY(console().waitShows(TimeUp, ECLEDColor::Off));
        const std::size_t count = steps().size();
        QVERIFY(!QTest::qWaitFor([&] { return steps().size() != count; }, QuietMs));
        QCOMPARE(writes(), 0);
    }

    /// Last: it puts another application in the model's place.
    void aTimeThatIsNotANumberIsShownAndTheFirstStepReplacesIt()
    {
        const auto hub = std::make_shared<MemoryModel::ModelHub>();
        const auto device = std::make_shared<MemoryModel::MemoryDevice>(hub, show().devices.first());
        MemoryModel::MemoryScreen::Data data;
        data.effectSeconds = std::numeric_limits<double>::quiet_NaN();
        const auto odd = std::make_shared<MemoryModel::MemoryScreen>(hub, device, Stage, data);
        {
            MemoryModel::Change change(*hub);
            device->data(change).activeScreen = odd;
        }
        struct Application : TestSupport::BareDeviceList {
            std::weak_ptr<BizModel::Device> activedDevice() const override { return device; }
            std::shared_ptr<BizModel::Device> device;
        };
        Application application;
        application.device = device;
        ScreenCommand command;
        command.setCommandConfig(keyboard()->m_commands.first());
        command.slotScreenEffectChanged(device, odd);
        QCOMPARE(label(TimeUp), QString("nan"));
        command.slotECButtonPressed(TimeDown);
        QCOMPARE(label(TimeDown), QString("10.0"));
        command.slotECButtonRelease(TimeDown);
    }

private:
    using Clock = std::chrono::steady_clock;
    struct Step {
        QString text;
        Clock::time_point time;
    };

    QString label(quint16 key) { return console().label(Label + key); }
    int writes() { return m_rig.asked(Operation::UpdateEffectSpeed).size(); }
    /// What the label of the up key was told, and when.
    std::vector<Step> steps() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_steps;
    }
    bool waitForSteps(std::size_t count) const
    {
        return QTest::qWaitFor([&] { return steps().size() >= count; }, StepsMs);
    }

    // m_mutex guards m_steps.
    mutable std::mutex m_mutex;
    std::vector<Step> m_steps;
};

QTEST_MAIN(TestTransitionTime)
#include "tst_transitiontime.moc"

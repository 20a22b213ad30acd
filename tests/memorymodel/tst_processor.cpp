#include "modeltestsupport.h"

#include "modelcontrol/asyncmanager.h"
#include "parallelcontrol/parallelmanager.h"
#include "processor.h"
#include "showfile.h"

#include <QtTest>

#include <optional>
#include <thread>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ParallelControl;
using BizModel::SceneType;
using State = BizModel::Screen::State;

namespace {

using WholeModel = Orvane::MemoryModel::MemoryModel;

/// Hardware whose takes last until the test ends them, and that refuses what it is told to.
class Hardware : public Processor {
public:
    void take(const ScreenJob& job, OpenRequest end) override
    {
        const std::lock_guard lock(m_mutex);
        m_job = job;
        m_open.emplace(std::move(end));
    }
    void freeze(const ScreenJob&, bool, OpenRequest end) override { end.fail("No link."); }
    bool createScreens(const ScreenJob&, QString& error) override
    {
        error = "No card.";
        return false;
    }
    bool save(const QString& device, QString&) override { return device == A; }

    bool taking() { return bool(request()); }
    std::optional<OpenRequest> request()
    {
        const std::lock_guard lock(m_mutex);
        return m_open;
    }
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_open.reset();
    }

    std::mutex m_mutex;
    ScreenJob m_job;
    std::optional<OpenRequest> m_open;
};

struct Kit {
    Kit()
        : hardware(new Hardware)
        , model(std::make_unique<WholeModel>(std::unique_ptr<Processor>(hardware)))
    {
        QStringList faults;
        if (!model->load(writeShow(smallShow()), faults))
            qFatal("The test's show has faults.");
    }
    std::shared_ptr<BizModel::Device> device() { return model->deviceList().activedDevice().lock(); }
    std::shared_ptr<BizModel::Screen> screen() { return device()->activedScreen().lock(); }
    template <typename Task> Outcome start(Task task)
    {
        Outcome outcome;
        ParallelManager::instance()->startParallelRequest(
            device(),
            [task](const std::weak_ptr<BizModel::Device>& each) {
                Task own = task;
                own.device = each;
                return own;
            },
            outcome.completion());
        return outcome;
    }

    Hardware* const hardware;
    std::unique_ptr<WholeModel> model;
};

} // namespace

/// A model whose processor is the integrator's own.
class TestProcessor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTakeEndsWhenTheHardwareSaysSo()
    {
        Kit kit;
        const Outcome outcome = kit.start(ParallelTakeScreen{});
        QVERIFY(waitUntil([&] { return kit.hardware->taking(); }));
        QCOMPARE(kit.hardware->m_job.device, A);
        QCOMPARE(kit.hardware->m_job.screens, QList<ScreenKey>{First});
        QCOMPARE(kit.hardware->m_job.duration.count(), 50);
        QCOMPARE(kit.screen()->state(), State::Taking);
        QTest::qWait(100); // longer than the simulated transition would have been
        QVERIFY(!outcome.called());
        QCOMPARE(kit.screen()->layerCount(SceneType::PGM, BizModel::LayerType::AllLayerType), 1);
        std::thread([&] { kit.hardware->request()->succeed(); }).join();
        QVERIFY(outcome.wait() && outcome.ok());
        QCOMPARE(kit.screen()->state(), State::Normal);
        QCOMPARE(kit.screen()->layerCount(SceneType::PGM, BizModel::LayerType::AllLayerType), 2);
        QCOMPARE(ParallelManager::instance()->currentTaskCount(), 0);
    }

    void whatTheHardwareRefusesLeavesTheModelAsItWas()
    {
        Kit kit;
        Outcome outcome = kit.start(ParallelTakeScreen{});
        QVERIFY(waitUntil([&] { return kit.hardware->taking(); }));
        kit.hardware->request()->fail("No sync.");
        QVERIFY(outcome.wait());
        QCOMPARE(outcome.text(), QString("No sync."));
        QCOMPARE(kit.screen()->state(), State::Normal);
        QCOMPARE(kit.screen()->layerCount(SceneType::PGM, BizModel::LayerType::AllLayerType), 1);

        ParallelFreezeScreen freeze;
        freeze.freeze = true;
        outcome = kit.start(freeze);
        QVERIFY(outcome.wait());
        QCOMPARE(outcome.text(), QString("No link."));
        QVERIFY(!kit.screen()->freeze());

        Outcome created;
        const auto screen = kit.device()->createDefaultScreen(ScreenType::RegularScreen);
        ModelControl::AsyncManager::instance()->startAsyncRequest(
            ModelControl::AsyncCreateScreen{kit.device(), {screen}, created.completion()});
        QVERIFY(created.wait());
        QCOMPARE(created.text(), QString("No card."));
        QCOMPARE(kit.device()->screens(ScreenType::RegularScreen).size(), 3);
    }

    void otherHooksStaySimulated()
    {
        Kit kit;
        QVERIFY(kit.start(ParallelCutScreen{}).wait());
        QCOMPARE(kit.screen()->layerCount(SceneType::PGM, BizModel::LayerType::AllLayerType), 2);
        Outcome saved; // by the hardware: there is no show file
        ModelControl::AsyncManager::instance()->startAsyncRequest(
            ModelControl::AsyncSaveDeviceData{kit.device(), saved.completion()});
        QVERIFY(saved.wait() && saved.ok());
    }

    void aTakeThatTheHardwareForgetsOrNeverEndsFails()
    {
        Kit kit;
        Outcome outcome = kit.start(ParallelTakeScreen{});
        QVERIFY(waitUntil([&] { return kit.hardware->taking(); }));
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression("^The request ParallelTakeScreen was dropped without a result"));
        kit.hardware->forget();
        QVERIFY(outcome.wait() && !outcome.ok());
        QCOMPARE(kit.screen()->state(), State::Normal);

        outcome = kit.start(ParallelTakeScreen{});
        QVERIFY(waitUntil([&] { return kit.hardware->taking(); }));
        const OpenRequest late = *kit.hardware->request();
        kit.model->stop();
        QVERIFY(outcome.called() && !outcome.ok());
        kit.model.reset();
        QVERIFY(late.succeed()); // nobody listens any more
        QVERIFY(!outcome.ok());
    }
};

QTEST_GUILESS_MAIN(TestProcessor)
#include "tst_processor.moc"

#include "modeltestsupport.h"

#include "bizmodel/layer.h"
#include "bizmodel/preset.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/screen.h"
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
    bool addLayer(const LayerJob& job, QString& error) override { return note("add", job, error); }
    bool removeLayer(const LayerJob& job, QString& error) override { return note("remove", job, error); }
    bool moveLayer(const LayerJob& job, QString& error) override { return note("move", job, error); }
    bool bindSource(const LayerJob& job, QString& error) override { return note("bind", job, error); }
    bool orderLayers(
        const QString&, const ScreenKey&, SceneType, const QList<quint32>& layers, QString& error) override
    {
        LayerJob job;
        job.layer = layers.last();
        return note("order", job, error);
    }
    bool removePreset(const QString&, FileType, quint16 fileId, QString& error) override
    {
        LayerJob job;
        job.layer = fileId;
        return note("preset", job, error);
    }
    bool note(const QString& what, const LayerJob& job, QString& error)
    {
        m_told += QString("%1 %2").arg(what).arg(job.layer);
        error = m_bRefuses ? "No link." : QString();
        return !m_bRefuses;
    }

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

    /// Only used by the test's own thread, or while it waits for an outcome.
    QStringList m_told;
    bool m_bRefuses = false;

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

    void layersGoToTheHardwareBeforeTheyChange()
    {
        Kit kit;
        const auto screens =
            ModelControl::Device::screenModelControl(ScreenType::RegularScreen, kit.device());
        const auto layers =
            ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, kit.device());
        QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
        const auto preview = [&] { return kit.screen()->PVWLayers(BizModel::LayerType::AllLayerType); };
        const auto work = [&](const std::weak_ptr<BizModel::Layer>& layer) {
            return QList<bool>{
                screens->bottomZOrder(kit.screen(), {layer}),
                layers->updateWindow(layer, QRect(0, 0, 100, 50)),
                layers->bindSource({layer}, 2, BizModel::SourceType::Input),
                screens->removeLayers(kit.screen(), {layer}, failed)};
        };
        const int before = preview().size();
        const auto added = screens->addLayer(
            kit.screen(), BizModel::LayerType::Regular, SceneType::PVW, 1, BizModel::SourceType::Input,
            QRect(0, 0, 200, 100));
        QVERIFY(added);
        const quint32 id = added->layerId();
        QCOMPARE(kit.hardware->m_told, QStringList{QString("add %1").arg(id)});

        kit.hardware->m_bRefuses = true;
        QCOMPARE(work(added), (QList<bool>{false, false, false, false}));
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed.first().second, QString("No link."));
        QVERIFY(preview().last().lock() == added);
        QCOMPARE(added->windowRect(), QRect(0, 0, 200, 100));
        QCOMPARE(added->sourceId(), 1U);
        QVERIFY(!screens->addLayer(
            kit.screen(), BizModel::LayerType::Regular, SceneType::PVW, 1, BizModel::SourceType::Input,
            QRect(0, 0, 200, 100)));
        QCOMPARE(preview().size(), before + 1);

        kit.hardware->m_bRefuses = false;
        kit.hardware->m_told.clear();
        QCOMPARE(work(added), (QList<bool>{true, true, true, true}));
        QCOMPARE(
            kit.hardware->m_told,
            (QStringList{
                QString("order %1").arg(preview().last().lock()->layerId()), QString("move %1").arg(id),
                QString("bind %1").arg(id), QString("remove %1").arg(id)}));
        QCOMPARE(preview().size(), before);
        // What the model refuses is not told.
        kit.hardware->m_told.clear();
        QVERIFY(!layers->updateWindow(added, QRect(0, 0, 100, 50)));
        QCOMPARE(kit.hardware->m_told, QStringList());
    }

    void copiesAreToldAndTakenBackTogether()
    {
        Kit kit;
        const auto originals = kit.screen()->PVWLayers(BizModel::LayerType::AllLayerType);
        const auto copy = [&] {
            Outcome outcome;
            ModelControl::AsyncManager::instance()->startAsyncRequest(ModelControl::AsyncAddCopyLayers{
                kit.device(), kit.screen(), {originals.first()}, false, outcome.completion()});
            outcome.wait();
            return outcome;
        };
        kit.hardware->m_bRefuses = true;
        QCOMPARE(copy().text(), QString("No link."));
        QCOMPARE(kit.screen()->PVWLayers(BizModel::LayerType::AllLayerType).size(), originals.size());
        kit.hardware->m_bRefuses = false;
        QVERIFY(copy().ok());
        QCOMPARE(kit.screen()->PVWLayers(BizModel::LayerType::AllLayerType).size(), originals.size() + 1);
        kit.hardware->m_told.clear();
        Outcome cleared;
        ModelControl::AsyncManager::instance()->startAsyncRequest(ModelControl::AsyncRemoveLayer{
            kit.device(), kit.screen(), SceneType::PVW, BizModel::LayerType::AllLayerType,
            cleared.completion()});
        QVERIFY(cleared.wait() && cleared.ok());
        QCOMPARE(kit.hardware->m_told.size(), originals.size() + 1);
    }

    void aPresetThatTheHardwareKeepsStays()
    {
        Kit kit;
        const auto control = ModelControl::Device::create(kit.device());
        QString error;
        QVERIFY(control->createPresetFile(FileType::PresetPVW, 9, error));
        const auto presets = kit.device()->presets();
        kit.hardware->m_bRefuses = true;
        QVERIFY(!control->removeFile({presets.last().lock()}, error));
        QCOMPARE(error, QString("No link."));
        Outcome cleared;
        ModelControl::AsyncManager::instance()->startAsyncRequest(ModelControl::AsyncRemoveFile{
            kit.device(), {FileType::PresetPVW, FileType::PresetPGM}, cleared.completion()});
        QVERIFY(cleared.wait() && !cleared.ok());
        QCOMPARE(kit.device()->presets().size(), presets.size());
        kit.hardware->m_bRefuses = false;
        QVERIFY(control->removeFile({presets.last().lock()}, error));
        QCOMPARE(kit.device()->presets().size(), presets.size() - 1);
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

#include "flawedkit.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <QSemaphore>

#include <thread>
#include <vector>

namespace Orvane::ModelTest::Test {

using namespace ModelControl;
using namespace ParallelControl;
using BizModel::DeviceList;
using BizModel::Enum::File::FileType;
using DevicePtr = std::weak_ptr<BizModel::Device>;
using ScreenPtr = std::weak_ptr<BizModel::Screen>;
using LayerPtr = std::weak_ptr<BizModel::Layer>;
using PresetPtr = std::weak_ptr<BizModel::Preset>;

namespace {

/// Longer than a request may take, shorter than its completion.
constexpr std::chrono::milliseconds Late{500};

class FlawedScreens final : public Screen {
public:
    FlawedScreens(Flaw flaw, std::shared_ptr<Screen> inner, std::shared_ptr<BizModel::Layer>& kept)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
        , m_pKept(kept)
    {
    }

    bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) override
    {
        if (m_flaw == Flaw::SelectionNeverReturns)
            QSemaphore().acquire(); // nobody releases it
        return m_pInner->setSelected(screens, mode, notify, sendToDevice);
    }
    bool cancelSelected(const Screens& screens, bool notify) override
    {
        return m_pInner->cancelSelected(screens, notify);
    }
    std::shared_ptr<BizModel::Layer> addLayer(
        const ScreenPtr& screen, BizModel::LayerType type, BizModel::SceneType scene, int sourceId,
        int sourceType, const QRect& window) override
    {
        auto layer = m_pInner->addLayer(screen, type, scene, sourceId, sourceType, window);
        if (layer && m_flaw == Flaw::LayerBelow)
            m_pInner->bottomZOrder(screen, {layer});
        if (layer && m_flaw == Flaw::LayerAddedTwice)
            Q_EMIT DeviceList::instance()->signalLayerAdded({}, screen, layer);
        return layer;
    }
    bool removeLayers(
        const ScreenPtr& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed) override
    {
        if (m_flaw == Flaw::LayerStays)
            return true;
        const auto first = layers.first().lock();
        const bool removed = m_pInner->removeLayers(screen, layers, failed);
        if (m_flaw == Flaw::LayerKept)
            m_pKept = first;
        if (m_flaw == Flaw::RenamedAfterRemoval)
            Q_EMIT DeviceList::instance()->signalLayerNameChanged({}, screen, first);
        return removed;
    }
    bool topZOrder(const ScreenPtr& screen, const Layers& layers) override
    {
        const bool moved = m_flaw == Flaw::OrderKept || m_pInner->topZOrder(screen, layers);
        return moved && m_flaw != Flaw::RefusalReorders;
    }
    bool bottomZOrder(const ScreenPtr& screen, const Layers& layers) override
    {
        return m_pInner->bottomZOrder(screen, layers);
    }

private:
    const Flaw m_flaw;
    const std::shared_ptr<Screen> m_pInner;
    std::shared_ptr<BizModel::Layer>& m_pKept;
};

class FlawedLayers final : public Layer {
public:
    FlawedLayers(Flaw flaw, std::shared_ptr<Layer> inner)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    bool setSelected(
        const ScreenPtr& screen, const Layers& layers, BizModel::SelectedType mode, bool notify) override
    {
        const auto made = m_flaw == Flaw::SelectionAppends ? BizModel::SelectedType::Append : mode;
        return m_pInner->setSelected(screen, layers, made, notify);
    }
    bool cancelSelected(const ScreenPtr& screen, const Layers& layers, bool notify) override
    {
        return m_pInner->cancelSelected(screen, layers, notify);
    }
    bool updateWindow(const LayerPtr& layer, const QRect& window) override
    {
        return m_flaw == Flaw::WindowKept || m_pInner->updateWindow(layer, window);
    }
    bool bindSource(const Layers& layers, quint32 sourceId, int sourceType) override
    {
        const Layers bound = m_flaw == Flaw::OneLayerBound ? layers.mid(0, 1) : layers;
        return m_pInner->bindSource(bound, sourceId, sourceType);
    }

private:
    const Flaw m_flaw;
    const std::shared_ptr<Layer> m_pInner;
};

class FlawedDevice final : public Device {
public:
    FlawedDevice(Flaw flaw, const DevicePtr& device, std::shared_ptr<Device> inner)
        : Device(device)
        , m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    void setActivedScreen(const ScreenPtr& screen) override { m_pInner->setActivedScreen(screen); }
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override
    {
        if (m_flaw == Flaw::NoPreset || m_flaw == Flaw::NoPresetNoReason)
            return m_flaw == Flaw::NoPreset;
        return m_pInner->createPresetFile(type, fileId, error);
    }
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override
    {
        return m_flaw == Flaw::PresetStays || m_pInner->removeFile(files, error);
    }

private:
    const Flaw m_flaw;
    const std::shared_ptr<Device> m_pInner;
};

class FlawedPresets final : public Preset {
public:
    FlawedPresets(Flaw flaw, std::shared_ptr<Preset> inner)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    bool coverPreset(const PresetPtr& preset, FileType type, QString& error) override
    {
        return m_flaw == Flaw::CoverUnannounced || m_pInner->coverPreset(preset, type, error);
    }
    bool checkPresetData(const PresetPtr& preset, QString& error) const override
    {
        return m_pInner->checkPresetData(preset, error);
    }
    bool updatePresetModelData(const PresetPtr& preset, const Screens& screens, QString& error) override
    {
        return m_flaw == Flaw::LoadUnannounced || m_pInner->updatePresetModelData(preset, screens, error);
    }

private:
    const Flaw m_flaw;
    const std::shared_ptr<Preset> m_pInner;
};

} // namespace

class FlawedKit::Front final : public AsyncManager,
                               public ParallelManager,
                               public ControllerFactory,
                               public TaskSampling::SamplingThread {
public:
    /// The parts that it stands in front of.
    Front(
        Flaw flaw, AsyncManager& requests, ParallelManager& tasks, ControllerFactory& controllers,
        SamplingThread& sampling)
        : m_flaw(flaw)
        , m_requests(requests)
        , m_tasks(tasks)
        , m_controllers(controllers)
        , m_sampling(sampling)
    {
    }
    ~Front() override
    {
        for (std::thread& thread : m_late)
            thread.join();
    }

    std::shared_ptr<Device> createDevice(const DevicePtr& device) override
    {
        return std::make_shared<FlawedDevice>(m_flaw, device, m_controllers.createDevice(device));
    }
    std::shared_ptr<Screen> createScreen(
        BizModel::Enum::Screen::ScreenType type, const DevicePtr& device) override
    {
        return std::make_shared<FlawedScreens>(m_flaw, m_controllers.createScreen(type, device), m_pKept);
    }
    std::shared_ptr<Layer> createLayer(BizModel::LayerType type, const DevicePtr& device) override
    {
        return std::make_shared<FlawedLayers>(m_flaw, m_controllers.createLayer(type, device));
    }
    std::shared_ptr<Preset> createPreset(const DevicePtr& device) override
    {
        return std::make_shared<FlawedPresets>(m_flaw, m_controllers.createPreset(device));
    }

    void startAsyncRequest(AsyncRequest request) override
    {
        if (auto* clear = std::get_if<AsyncRemoveLayer>(&request);
            clear && m_flaw == Flaw::ClearCompletesFirst)
            std::exchange(clear->completion, {})(true, {});
        if (auto* copy = std::get_if<AsyncAddCopyLayers>(&request); copy && m_flaw == Flaw::CopyMissing)
            copy->layers.removeLast();
        if (auto* create = std::get_if<AsyncCreateScreen>(&request); create && m_flaw == Flaw::FailureCreates)
            create->completion = [completion = create->completion](bool, const QString&) {
                completion(false, "No.");
            };
        if (auto* remove = std::get_if<AsyncRemoveFile>(&request); remove && m_flaw == Flaw::ClearedOneByOne)
            return clearOneByOne(*remove);
        if (auto* save = std::get_if<AsyncSaveDeviceData>(&request)) {
            if (m_flaw == Flaw::CompletionNever)
                return;
            if (m_flaw == Flaw::CompletionTwice)
                save->completion(true, {});
        }
        m_requests.startAsyncRequest(std::move(request));
    }

    using ParallelManager::startParallelRequest;
    bool startParallelRequest(
        const DevicePtr& device, const ParallelTaskFactory& factory, bool waitForResult, QString* error,
        Completion callback) override
    {
        const ParallelTask task = factory(device);
        const bool isTake = std::holds_alternative<ParallelTakeScreen>(task);
        const bool isDropped =
            (m_flaw == Flaw::FailureWithoutReason && std::holds_alternative<ParallelFTBScreen>(task))
            || (m_flaw == Flaw::FreezeDropped && std::holds_alternative<ParallelFreezeScreen>(task));
        if (isDropped) {
            callback(m_flaw == Flaw::FreezeDropped, {});
            return true;
        }
        if (m_flaw == Flaw::SlowRequest && isTake)
            std::this_thread::sleep_for(Late);
        if (m_flaw != Flaw::StatesAfterReturn || !isTake)
            return m_tasks.startParallelRequest(device, factory, waitForResult, error, std::move(callback));
        m_late.emplace_back([this, device, factory, callback = std::move(callback)] {
            std::this_thread::sleep_for(Late);
            m_tasks.startParallelRequest(device, factory, false, nullptr, callback);
        });
        return true;
    }
    int currentTaskCount() const override
    {
        if (m_flaw == Flaw::TaskCountAfterReturn)
            return 0;
        return m_tasks.currentTaskCount() + (m_flaw == Flaw::TaskCountAfterCompletion ? 1 : 0);
    }

    bool setSamplingType(TaskSampling::SamplingType type) override
    {
        return m_sampling.setSamplingType(type);
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_TBarSampling>& sampling) override
    {
        return (m_flaw == Flaw::TBarDropped && sampling->process > 0.9) || m_sampling.appendData(sampling);
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sampling) override
    {
        return m_flaw == Flaw::LoadDropped || m_sampling.appendData(sampling);
    }

private:
    void clearOneByOne(const AsyncRemoveFile& request)
    {
        const auto device = request.device.lock();
        QString error;
        for (const PresetPtr& preset : device->presets())
            m_controllers.createDevice(device)->removeFile({preset.lock()}, error);
        request.completion(true, {});
    }

    const Flaw m_flaw;
    AsyncManager& m_requests;
    ParallelManager& m_tasks;
    ControllerFactory& m_controllers;
    SamplingThread& m_sampling;
    std::shared_ptr<BizModel::Layer> m_pKept;
    std::vector<std::thread> m_late; ///< used by the operator's thread alone
};

FlawedKit::FlawedKit(Flaw flaw)
    : m_flaw(flaw)
{
}

FlawedKit::~FlawedKit() = default;

bool FlawedKit::create(QString& error)
{
    m_pModel = std::make_unique<MemoryModel::MemoryModel>();
    QStringList faults;
    const bool ok = m_pModel->loadFile(EXAMPLE_SHOW, faults);
    m_pModel->setShowFile({}); // a failing save must complete too
    error = faults.join(QLatin1Char('\n'));
    if (m_flaw != Flaw::None)
        m_pFront = std::make_unique<Front>(
            m_flaw, *AsyncManager::instance(), *ParallelManager::instance(), *ControllerFactory::instance(),
            *TaskSampling::SamplingThread::instance());
    return ok;
}

void FlawedKit::destroy()
{
    m_pFront.reset();
    m_pModel.reset();
}

} // namespace Orvane::ModelTest::Test

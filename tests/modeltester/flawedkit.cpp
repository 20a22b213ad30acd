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
#include "tasksampling/samplingthread.h"

namespace Orvane::ModelTest::Test {

using namespace ModelControl;
using BizModel::DeviceList;
using BizModel::Enum::File::FileType;
using DevicePtr = std::weak_ptr<BizModel::Device>;
using ScreenPtr = std::weak_ptr<BizModel::Screen>;
using LayerPtr = std::weak_ptr<BizModel::Layer>;
using PresetPtr = std::weak_ptr<BizModel::Preset>;

namespace {

class FlawedScreens final : public Screen {
public:
    FlawedScreens(KitFlaw flaw, std::shared_ptr<Screen> inner)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) override
    {
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
        if (layer && m_flaw == KitFlaw::LayerBelow)
            m_pInner->bottomZOrder(screen, {layer});
        if (layer && m_flaw == KitFlaw::LayerAddedTwice)
            Q_EMIT DeviceList::instance()->signalLayerAdded({}, screen, layer);
        return layer;
    }
    bool removeLayers(
        const ScreenPtr& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed) override
    {
        if (m_flaw == KitFlaw::LayerStays)
            return true;
        const auto first = layers.first().lock();
        const bool removed = m_pInner->removeLayers(screen, layers, failed);
        if (m_flaw == KitFlaw::RenamedAfterRemoval)
            Q_EMIT DeviceList::instance()->signalLayerNameChanged({}, screen, first);
        return removed;
    }
    bool topZOrder(const ScreenPtr& screen, const Layers& layers) override
    {
        const bool moved = m_flaw == KitFlaw::OrderKept || m_pInner->topZOrder(screen, layers);
        return moved && m_flaw != KitFlaw::RefusalReorders;
    }
    bool bottomZOrder(const ScreenPtr& screen, const Layers& layers) override
    {
        return m_pInner->bottomZOrder(screen, layers);
    }

private:
    const KitFlaw m_flaw;
    const std::shared_ptr<Screen> m_pInner;
};

class FlawedLayers final : public Layer {
public:
    FlawedLayers(KitFlaw flaw, std::shared_ptr<Layer> inner)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    bool setSelected(
        const ScreenPtr& screen, const Layers& layers, BizModel::SelectedType mode, bool notify) override
    {
        const auto made = m_flaw == KitFlaw::SelectionAppends ? BizModel::SelectedType::Append : mode;
        return m_pInner->setSelected(screen, layers, made, notify);
    }
    bool cancelSelected(const ScreenPtr& screen, const Layers& layers, bool notify) override
    {
        return m_pInner->cancelSelected(screen, layers, notify);
    }
    bool updateWindow(const LayerPtr& layer, const QRect& window) override
    {
        return m_flaw == KitFlaw::WindowKept || m_pInner->updateWindow(layer, window);
    }
    bool bindSource(const Layers& layers, quint32 sourceId, int sourceType) override
    {
        const Layers bound = m_flaw == KitFlaw::OneLayerBound ? layers.mid(0, 1) : layers;
        return m_pInner->bindSource(bound, sourceId, sourceType);
    }

private:
    const KitFlaw m_flaw;
    const std::shared_ptr<Layer> m_pInner;
};

class FlawedDevice final : public Device {
public:
    FlawedDevice(KitFlaw flaw, const DevicePtr& device, std::shared_ptr<Device> inner)
        : Device(device)
        , m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    void setActivedScreen(const ScreenPtr& screen) override { m_pInner->setActivedScreen(screen); }
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override
    {
        if (m_flaw == KitFlaw::NoPreset || m_flaw == KitFlaw::NoPresetNoReason)
            return m_flaw == KitFlaw::NoPreset;
        return m_pInner->createPresetFile(type, fileId, error);
    }
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override
    {
        return m_flaw == KitFlaw::PresetStays || m_pInner->removeFile(files, error);
    }

private:
    const KitFlaw m_flaw;
    const std::shared_ptr<Device> m_pInner;
};

class FlawedPresets final : public Preset {
public:
    FlawedPresets(KitFlaw flaw, std::shared_ptr<Preset> inner)
        : m_flaw(flaw)
        , m_pInner(std::move(inner))
    {
    }

    bool coverPreset(const PresetPtr& preset, FileType type, QString& error) override
    {
        return m_flaw == KitFlaw::CoverUnannounced || m_pInner->coverPreset(preset, type, error);
    }
    bool checkPresetData(const PresetPtr& preset, QString& error) const override
    {
        return m_pInner->checkPresetData(preset, error);
    }
    bool updatePresetModelData(const PresetPtr& preset, const Screens& screens, QString& error) override
    {
        return m_flaw == KitFlaw::LoadUnannounced || m_pInner->updatePresetModelData(preset, screens, error);
    }

private:
    const KitFlaw m_flaw;
    const std::shared_ptr<Preset> m_pInner;
};

} // namespace

class FlawedKit::Front final : public AsyncManager,
                               public ControllerFactory,
                               public TaskSampling::SamplingThread {
public:
    /// The parts that it stands in front of.
    Front(KitFlaw flaw, AsyncManager& requests, ControllerFactory& controllers, SamplingThread& sampling)
        : m_flaw(flaw)
        , m_requests(requests)
        , m_controllers(controllers)
        , m_sampling(sampling)
    {
    }

    std::shared_ptr<Device> createDevice(const DevicePtr& device) override
    {
        return std::make_shared<FlawedDevice>(m_flaw, device, m_controllers.createDevice(device));
    }
    std::shared_ptr<Screen> createScreen(
        BizModel::Enum::Screen::ScreenType type, const DevicePtr& device) override
    {
        return std::make_shared<FlawedScreens>(m_flaw, m_controllers.createScreen(type, device));
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
            clear && m_flaw == KitFlaw::ClearCompletesFirst)
            std::exchange(clear->completion, {})(true, {});
        if (auto* copy = std::get_if<AsyncAddCopyLayers>(&request); copy && m_flaw == KitFlaw::CopyMissing)
            copy->layers.removeLast();
        if (auto* create = std::get_if<AsyncCreateScreen>(&request);
            create && m_flaw == KitFlaw::FailureCreates)
            create->completion = [completion = create->completion](bool, const QString&) {
                completion(false, "No.");
            };
        if (auto* remove = std::get_if<AsyncRemoveFile>(&request);
            remove && m_flaw == KitFlaw::ClearedOneByOne)
            return clearOneByOne(*remove);
        m_requests.startAsyncRequest(std::move(request));
    }

    bool setSamplingType(TaskSampling::SamplingType type) override
    {
        return m_sampling.setSamplingType(type);
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_TBarSampling>& sampling) override
    {
        return (m_flaw == KitFlaw::TBarDropped && sampling->process > 0.9) || m_sampling.appendData(sampling);
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sampling) override
    {
        return m_flaw == KitFlaw::LoadDropped || m_sampling.appendData(sampling);
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

    const KitFlaw m_flaw;
    AsyncManager& m_requests;
    ControllerFactory& m_controllers;
    SamplingThread& m_sampling;
};

FlawedKit::FlawedKit(KitFlaw flaw)
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
    if (m_flaw != KitFlaw::None)
        m_pFront = std::make_unique<Front>(
            m_flaw, *AsyncManager::instance(), *ControllerFactory::instance(),
            *TaskSampling::SamplingThread::instance());
    return ok;
}

void FlawedKit::destroy()
{
    m_pFront.reset();
    m_pModel.reset();
}

} // namespace Orvane::ModelTest::Test

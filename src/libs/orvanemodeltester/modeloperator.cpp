#include "modeloperator_p.h"

#include "bizmodel/connector.h"
#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/preset.h"
#include "bizmodel/screen.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ParallelControl;
using namespace std::chrono_literals;
using BizModel::Enum::File::FileType;

namespace {

constexpr auto RegularScreens = BizModel::Enum::Screen::RegularScreen;
constexpr auto Preview = BizModel::SceneType::PVW;

/// A completion that the checking thread can wait for.
class Ending final {
public:
    Completion completion() const
    {
        return [state = m_pState](bool, const QString&) {
            const std::lock_guard lock(state->mutex);
            state->ended = true;
            state->changed.notify_all();
        };
    }
    void wait(std::chrono::milliseconds limit) const
    {
        std::unique_lock lock(m_pState->mutex);
        m_pState->changed.wait_for(lock, limit, [this] { return m_pState->ended; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool ended = false;
    };
    const std::shared_ptr<State> m_pState = std::make_shared<State>();
};

} // namespace

template <typename Task> bool ModelOperator::start(Task task, bool waits, const Completion& completion)
{
    auto* const manager = ParallelManager::instance();
    const auto factory = [task](const std::weak_ptr<BizModel::Device>& device) {
        Task each = task;
        each.device = device;
        return each;
    };
    return manager && manager->startParallelRequest(m_pDevice, factory, waits, nullptr, completion);
}

template <typename Task> void ModelOperator::run(const Task& task, bool waits)
{
    const Ending ending;
    if (start(task, waits, ending.completion()))
        ending.wait(m_limits.completion);
}

template <typename Request> void ModelOperator::runAsync(Request request)
{
    auto* const manager = ModelControl::AsyncManager::instance();
    if (!manager)
        return;
    const Ending ending;
    request.device = m_pDevice;
    request.completion = ending.completion();
    manager->startAsyncRequest(request);
    request = {}; // nothing of it is kept while it runs
    ending.wait(m_limits.completion);
}

ModelOperator::ModelOperator(
    ModelLimits limits, std::shared_ptr<OperatorProgress> progress,
    std::function<void(const ModelFault&)> found)
    : m_limits(limits)
    , m_pProgress(std::move(progress))
    , m_found(std::move(found))
{
}

void ModelOperator::work()
{
    const auto active = BizModel::DeviceList::instance()->activedDevice().lock();
    const auto screens = active ? active->screens(RegularScreens) : Screens();
    if (!screens.isEmpty()) {
        m_pDevice = active;
        m_pScreen = screens.first();
        select();
        toggle();
        transitions();
        transitionTime();
        moveTBar();
        refusals();
        createScreen();
        layers();
        presets();
        begin("saving");
        runAsync(ModelControl::AsyncSaveDeviceData());
    }
    m_pProgress->done = true;
}

void ModelOperator::begin(const char* step)
{
    m_pProgress->step = step;
    ++m_pProgress->steps;
}

void ModelOperator::select()
{
    begin("selecting a screen");
    const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
    const auto owner = ModelControl::Device::create(m_pDevice);
    if (!control || !owner)
        return;
    if (const auto first = screen(); first && first->selected())
        control->cancelSelected({m_pScreen}, true);
    control->setSelected({m_pScreen}, BizModel::SelectedType::Cover, true, true);
    owner->setActivedScreen(m_pScreen);
}

void ModelOperator::toggle()
{
    const auto owner = device();
    const auto first = screen();
    const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
    if (!owner || !first)
        return;
    for (int i = 0; i < 2; ++i) {
        begin("freezing");
        ParallelFreezeScreen freeze;
        freeze.freeze = !first->freeze();
        run(freeze, true);
        begin("fading to black");
        ParallelFTBScreen ftb;
        ftb.fadeToBlack = !first->FTBEnable();
        run(ftb, false);
        begin("setting swap");
        ParallelSetSwapStatus swap;
        swap.swap = !owner->swapEnable();
        run(swap, false);
        begin("setting the load target");
        ParallelSetLoadToPresetPGMStatus target;
        target.status =
            owner->loadToPGMEnable() ? BizModel::Enum::Device::LoadToPVW : BizModel::Enum::Device::LoadToPGM;
        run(target, false);
        begin("editing the program");
        if (control)
            control->updatePGMEditStatus({m_pScreen}, !first->PGMEditEnable());
    }
}

void ModelOperator::transitions()
{
    begin("taking");
    const Ending first;
    const Ending second;
    start(ParallelTakeScreen{}, false, first.completion()); // the second press comes at once
    const auto control = ModelControl::Device::create(m_pDevice);
    const bool again =
        control && control->takeCutEnabled() && start(ParallelTakeScreen{}, false, second.completion());
    first.wait(transitionLimit());
    if (again)
        second.wait(transitionLimit());
    begin("cutting");
    run(ParallelCutScreen{}, true);
    begin("matching");
    run(ParallelMatchPGM{}, false);
}

void ModelOperator::transitionTime()
{
    begin("setting the transition");
    const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
    const auto first = screen();
    if (!control || !first)
        return;
    const double before = first->switchEffectTime();
    control->updateEffectSpeed({{m_pScreen, 0.7}});
    control->updateEffectSpeed({{m_pScreen, before}});
    control->updateEffectType({{m_pScreen, BizModel::EffectType::fade}});
}

void ModelOperator::moveTBar()
{
    begin("moving the T-Bar");
    const auto control = ModelControl::Device::create(m_pDevice);
    auto* const sampling = TaskSampling::SamplingThread::instance();
    const int types = BizModel::Enum::Screen::RegularAndAUXScreens;
    if (!control || !sampling || control->getTakeScreens(types, {5, 0, 1}, true).isEmpty()
        || !sampling->setSamplingType(TaskSampling::TBar))
        return;
    const auto scenesChanged = std::make_shared<std::atomic<bool>>(false);
    const auto connection = QObject::connect(
        BizModel::DeviceList::instance(), &BizModel::DeviceList::signalDeviceScreenLayersChanged,
        [scenesChanged] {
            // Held for the call, too: ThreadSanitizer sees this count, and not by which Qt keeps the slot
            // alive.
            const auto held = scenesChanged;
            *held = true;
        });
    bool accepted = true;
    for (const double process : {0.25, 0.75, 1.0}) {
        const auto sample = std::make_shared<TaskSampling::s_TBarSampling>();
        sample->process = process;
        sample->pCurDevice = m_pDevice;
        accepted = accepted && sampling->appendData(sample);
    }
    const auto isTaken = [&] {
        const auto first = screen();
        return !first || (*scenesChanged && first->state() == BizModel::Screen::State::Normal);
    };
    if (accepted && !waitFor(isTaken, m_limits.completion))
        m_found(
            {QStringLiteral("success-with-effect"), QStringLiteral("s_TBarSampling"),
             QStringLiteral("The T-Bar is at its end, and the screen is not Normal, or "
                            "signalDeviceScreenLayersChanged has not come.")});
    QObject::disconnect(connection);
}

void ModelOperator::createScreen()
{
    begin("creating a screen");
    const auto owner = device();
    if (!owner || owner->isScreenLimited(RegularScreens))
        return;
    const auto made = owner->createDefaultScreen(RegularScreens);
    if (!made)
        return;
    made->addOutput(owner->firstUnsedOutput());
    runAsync(ModelControl::AsyncCreateScreen{{}, {made}, {}});
}

void ModelOperator::layers()
{
    const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
    const QList<quint32> inputs = sources();
    if (!control || inputs.isEmpty())
        return;
    const quint32 source = inputs.first();
    begin("adding layers");
    const auto first = addLayer(*control, source);
    const auto second = addLayer(*control, source);
    if (first && second)
        workOnLayers(*control, {first, second}, inputs.mid(1, 2));
    begin("clearing layers");
    runAsync(ModelControl::AsyncRemoveLayer{{}, m_pScreen, Preview, BizModel::LayerType::AllLayerType, {}});
    // The program is not edited; a model that refuses for that says so.
    runAsync(ModelControl::AsyncRemoveLayer{
        {}, m_pScreen, BizModel::SceneType::PGM, BizModel::LayerType::AllLayerType, {}});
    // What presets are made of next.
    addLayer(*control, source);
}

void ModelOperator::workOnLayers(
    ModelControl::Screen& screens, const Layers& layers, const QList<quint32>& others)
{
    const auto control = ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, m_pDevice);
    const Layers first = layers.mid(0, 1);
    if (control) {
        begin("selecting layers");
        control->setSelected(m_pScreen, first, BizModel::SelectedType::Cover, true);
        control->setSelected(m_pScreen, layers.mid(1), BizModel::SelectedType::Append, true);
        control->cancelSelected(m_pScreen, first, true);
        control->setSelected(m_pScreen, first, BizModel::SelectedType::Cover, true);
        begin("moving a layer");
        control->updateWindow(first.first(), QRect(8, 8, 320, 180));
        begin("binding a source");
        for (const quint32 other : others)
            control->bindSource(layers, other, BizModel::SourceType::Input);
        control->bindSource(layers, 0xFFFFFF, BizModel::SourceType::Input); // no such input
        control->updateWindow({}, QRect(0, 0, 320, 180));
    }
    begin("ordering layers");
    screens.topZOrder(m_pScreen, first);
    screens.bottomZOrder(m_pScreen, first);
    screens.incrZOrder(m_pScreen, first);
    screens.decrZOrder(m_pScreen, first);
    begin("copying layers");
    runAsync(ModelControl::AsyncAddCopyLayers{{}, m_pScreen, first, false, {}});
    runAsync(ModelControl::AsyncAddCopyLayers{{}, m_pScreen, first, true, {}});
    begin("removing a layer");
    QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
    screens.removeLayers(m_pScreen, first, failed);
}

QList<quint32> ModelOperator::sources() const
{
    QList<quint32> ids;
    const auto owner = device();
    const auto inputs = owner ? owner->validInputs() : QList<std::weak_ptr<BizModel::Input>>();
    for (const std::weak_ptr<BizModel::Input>& each : inputs) {
        const auto input = each.lock();
        if (input && input->isActive() && !owner->getConnector(input->interfaceFullId()).expired())
            ids += input->interfaceId();
    }
    return ids;
}

std::shared_ptr<BizModel::Layer> ModelOperator::addLayer(ModelControl::Screen& screens, quint32 source)
{
    const auto owner = device();
    const auto first = screen();
    const auto input = owner ? owner->findInput(source) : std::weak_ptr<BizModel::Input>();
    const auto probe = first ? first->createProbeLayer(input, BizModel::CapacityMode::_SL) : nullptr;
    if (!probe)
        return nullptr;
    const QRect window(first->mosaicWindowRect().topLeft(), probe->defulatSize(input));
    return screens.addLayer(
        m_pScreen, BizModel::LayerType::Regular, Preview, int(source), BizModel::SourceType::Input, window);
}

void ModelOperator::presets()
{
    const auto owner = device();
    const auto control = ModelControl::Device::create(m_pDevice);
    const auto presetControl = ModelControl::Preset::create(m_pDevice);
    if (!owner || !control || !presetControl)
        return;
    const auto find = [&owner](quint16 id) {
        const auto all = owner->presets();
        for (const std::weak_ptr<BizModel::Preset>& each : all) {
            const auto preset = each.lock();
            if (preset && preset->fileId() == id)
                return preset;
        }
        return std::shared_ptr<BizModel::Preset>();
    };
    QString error;
    QList<quint16> made;
    begin("storing presets");
    for (quint16 id = 1; id <= owner->maxPresetCount() && made.size() < 2; ++id) {
        if (find(id) || !control->createPresetFile(FileType::PresetPVW, id, error))
            continue;
        owner->setActivedPreset(find(id), id);
        made += id;
    }
    if (made.isEmpty())
        return;
    begin("overwriting a preset");
    presetControl->coverPreset(find(made.first()), FileType::PresetPVW, error);
    begin("loading a preset");
    load(find(made.first()));
    begin("removing presets");
    control->removeFile({find(made.last())}, error);
    runAsync(ModelControl::AsyncRemoveFile{{}, {FileType::PresetPVW, FileType::PresetPGM}, {}});
}

void ModelOperator::load(const std::shared_ptr<BizModel::Preset>& preset)
{
    const auto control = ModelControl::Preset::create(m_pDevice);
    auto* const sampling = TaskSampling::SamplingThread::instance();
    QString error;
    if (!preset || !control->checkPresetData(preset, error))
        return;
    Screens screens;
    preset->presetSelectedScreens(screens, preset->fileType(), error);
    const auto sample = std::make_shared<TaskSampling::s_LoadPresetSampling>();
    sample->nFileID = quint8(preset->fileId());
    sample->pCurDevice = m_pDevice;
    control->createKeypadInfo(preset, screens, sample->keypadInfo);
    if (!control->updatePresetModelData(preset, screens, error) || !sampling
        || !sampling->setSamplingType(TaskSampling::LoadPreset) || !sampling->appendData(sample))
        return;
    const auto isActive = [&] {
        const auto owner = device();
        return !owner || owner->activedPresetKeyNo() == preset->fileId();
    };
    if (!waitFor(isActive, m_limits.completion))
        m_found(
            {QStringLiteral("success-with-effect"), QStringLiteral("s_LoadPresetSampling"),
             QStringLiteral("The sample was accepted, and the preset has not become active.")});
}

void ModelOperator::refusals()
{
    begin("asking for what is gone");
    const std::weak_ptr<BizModel::Screen> goneScreen;
    QString error;
    if (const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice)) {
        control->setSelected({}, BizModel::SelectedType::Cover, true, true);
        control->setSelected({goneScreen}, BizModel::SelectedType::Cover, true, true);
        control->cancelSelected({goneScreen}, true);
        control->addLayer(
            goneScreen, BizModel::LayerType::Regular, Preview, 1, BizModel::SourceType::Input,
            QRect(0, 0, 320, 180));
        control->topZOrder(m_pScreen, {std::weak_ptr<BizModel::Layer>()});
    }
    if (const auto control = ModelControl::Screen::layerModelControl(BizModel::LayerType::Regular, m_pDevice))
        control->setSelected(goneScreen, {}, BizModel::SelectedType::Cover, true);
    if (const auto control = ModelControl::Preset::create(m_pDevice)) {
        control->checkPresetData({}, error);
        error.clear();
        control->coverPreset({}, FileType::PresetPVW, error);
        error.clear();
        control->updatePresetModelData({}, {}, error);
    }
    std::weak_ptr<BizModel::Device> none;
    m_pDevice.swap(none);
    run(ParallelFreezeScreen{}, false);
    m_pDevice.swap(none);
}

std::chrono::milliseconds ModelOperator::transitionLimit() const
{
    const auto first = screen();
    return m_limits.completion
        + std::chrono::milliseconds(first ? qRound64(first->switchEffectTime() * 1000) : 0);
}

bool ModelOperator::waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) const
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

} // namespace Orvane::ModelTest::Internal

#include "requestmanager.h"

#include "layers.h"
#include "operationtext.h"
#include "presets.h"

#include <QStringList>

#include <utility>

namespace Orvane::MemoryModel {

using namespace ModelControl;
using BizModel::SceneType;

namespace {

OperationCall describe(const AsyncCreateScreen& request)
{
    const QList<std::weak_ptr<BizModel::Screen>> screens(request.screens.begin(), request.screens.end());
    return {
        Operation::AsyncCreateScreen, deviceText(request.device) + QLatin1Char(' ') + screensText(screens)};
}

OperationCall describe(const AsyncRemoveLayer& request)
{
    return {
        Operation::AsyncRemoveLayer,
        QStringLiteral("%1 %2 scene=%3 types=%4")
            .arg(deviceText(request.device), screenText(request.screen), sceneText(request.scene))
            .arg(request.layerTypeMask)};
}

OperationCall describe(const AsyncAddCopyLayers& request)
{
    return {
        Operation::AsyncAddCopyLayers,
        QStringLiteral("%1 %2 %3 mirrored=%4")
            .arg(deviceText(request.device), screenText(request.screen), layersText(request.layers))
            .arg(int(request.mirrored))};
}

OperationCall describe(const AsyncSaveDeviceData& request)
{
    return {Operation::AsyncSaveDeviceData, deviceText(request.device)};
}

OperationCall describe(const AsyncRemoveFile& request)
{
    QStringList types;
    for (const FileType type : request.fileTypes)
        types += QString::number(int(type));
    return {
        Operation::AsyncRemoveFile,
        deviceText(request.device) + QStringLiteral(" types=[%1]").arg(types.join(QLatin1Char(',')))};
}

OperationCall describe(const AsyncRequest& request)
{
    return std::visit([](const auto& each) { return describe(each); }, request);
}

const QString screenGone = QStringLiteral("The screen is gone.");

} // namespace

RequestManager::RequestManager(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
{
}

void RequestManager::startAsyncRequest(AsyncRequest request)
{
    const OperationCall text = describe(request);
    m_pHub->operations.request(text.operation, text.arguments);
    // A job must be copyable, and the request's objects are to be let go of when it ends.
    const auto shared = std::make_shared<AsyncRequest>(std::move(request));
    if (!m_worker.post([this, shared](bool stopping) { carryOut(*shared, stopping); }))
        carryOut(*shared, true);
}

void RequestManager::stop()
{
    m_worker.stop();
}

void RequestManager::carryOut(AsyncRequest& request, bool stopping)
{
    const OperationCall text = describe(request);
    const auto verdict = m_pHub->operations.start(text.operation, text.arguments);
    QString error;
    bool ok = false;
    if (stopping || !m_pHub->operations.sleepFor(verdict.delay))
        error = QStringLiteral("The model has stopped.");
    else if (verdict.failure)
        error = *verdict.failure;
    else
        ok = std::visit([&](const auto& each) { return perform(each, error); }, request);
    m_pHub->operations.end(text.operation, text.arguments, ok ? std::nullopt : std::optional(error));
    const Completion completion = std::visit([](const auto& each) { return each.completion; }, request);
    if (completion)
        completion(ok, ok ? QString() : error);
}

/// All of the screens become part of the device, or none.
bool RequestManager::perform(const AsyncCreateScreen& request, QString& error)
{
    ScreenJob job;
    if (const auto device = request.device.lock())
        job.device = device->ipMacSn();
    for (const std::shared_ptr<BizModel::Screen>& screen : request.screens) {
        if (screen)
            job.screens += ScreenKey{screen->screenType(), screen->screenId()};
    }
    if (!m_processor.createScreens(job, error))
        return false;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = find(change, request.device, error);
    if (!device)
        return false;
    MemoryDevice::Screens added;
    for (const std::shared_ptr<BizModel::Screen>& screen : request.screens) {
        const auto own = std::dynamic_pointer_cast<MemoryScreen>(screen);
        if (!own || !device->canAddScreen(change, own, added, error)) {
            if (error.isEmpty())
                error = screenGone;
            return false;
        }
        added += own;
    }
    for (const std::shared_ptr<MemoryScreen>& screen : std::as_const(added))
        device->addScreen(change, screen);
    return true;
}

bool RequestManager::perform(const AsyncRemoveLayer& request, QString& error)
{
    QList<std::pair<std::shared_ptr<MemoryLayer>, LayerJob>> planned;
    {
        const Guard guard(*m_pHub);
        const std::shared_ptr<MemoryScreen> screen = find(guard, request.device, request.screen, error);
        if (!screen || !isSceneEditable(guard, *screen, request.scene, error))
            return false;
        for (const auto& layer : std::as_const(*screen).data(guard).layers(request.scene)) {
            if (layer->layerType() & request.layerTypeMask)
                planned += {layer, jobOf(guard, *screen, *layer)};
        }
    }
    MemoryScreen::Layers removed;
    for (const auto& [layer, job] : std::as_const(planned)) {
        if (m_processor.removeLayer(job, error))
            removed += layer;
    }
    Change change(*m_pHub);
    const std::shared_ptr<MemoryScreen> screen = find(change, request.device, request.screen, error);
    if (screen)
        removeLayers(change, screen, removed);
    return screen && removed.size() == planned.size();
}

/// All of the copies are added, or none.
bool RequestManager::perform(const AsyncAddCopyLayers& request, QString& error)
{
    QList<LayerJob> told;
    {
        // Tried and undone, so that the processor hears only of what the model accepts.
        Change trial(*m_pHub);
        const MemoryScreen::Layers copies = copyLayers(trial, request, error);
        const auto screen = find(trial, request.device, request.screen, error);
        for (const std::shared_ptr<MemoryLayer>& copy : copies)
            told += jobOf(trial, *screen, *copy);
        if (screen)
            removeLayers(trial, screen, copies);
        trial.forgetAnnouncements();
    }
    if (!error.isEmpty())
        return false;
    for (int i = 0; i < told.size(); ++i) {
        if (m_processor.addLayer(told[i], error))
            continue;
        QString ignored;
        while (--i >= 0)
            m_processor.removeLayer(told[i], ignored);
        return false;
    }
    Change change(*m_pHub);
    copyLayers(change, request, error);
    return error.isEmpty();
}

/// The copies, on the screen; none, with the reason in @p error, when one is refused.
MemoryScreen::Layers RequestManager::copyLayers(
    Change& change, const AsyncAddCopyLayers& request, QString& error)
{
    const std::shared_ptr<MemoryScreen> screen = find(change, request.device, request.screen, error);
    if (!screen)
        return {};
    const std::shared_ptr<MemoryDevice> device = m_list.own(change, request.device);
    const QRect mosaic = screen->mosaic(change);
    MemoryScreen::Layers copies;
    for (const std::weak_ptr<BizModel::Layer>& original : request.layers) {
        const auto layer = ownObject<MemoryLayer>(original);
        const bool present = layer && screen->data(change).layers(layer->data(change).scene).contains(layer);
        if (!present) {
            error = QStringLiteral("A layer to be copied is gone.");
            break;
        }
        LayerRecord record = layer->data(change);
        record.name.clear();
        record.selected = false;
        if (request.mirrored)
            record.window.moveLeft(mosaic.left() + mosaic.right() - record.window.right());
        const auto copy = addLayer(change, *device, screen, layer->data(change).scene, record, error);
        if (!copy)
            break;
        copies += copy;
    }
    if (error.isEmpty())
        return copies;
    removeLayers(change, screen, copies);
    change.forgetAnnouncements();
    return {};
}

/// The screen, or the reason in @p error why it is not there.
std::shared_ptr<MemoryScreen> RequestManager::find(
    const Guard& guard, const std::weak_ptr<BizModel::Device>& device,
    const std::weak_ptr<BizModel::Screen>& screen, QString& error) const
{
    const std::shared_ptr<MemoryDevice> owner = find(guard, device, error);
    auto present = owner ? owner->own(guard, screen) : nullptr;
    if (owner && !present)
        error = screenGone;
    return present;
}

std::shared_ptr<MemoryDevice> RequestManager::find(
    const Guard& guard, const std::weak_ptr<BizModel::Device>& device, QString& error) const
{
    auto present = m_list.own(guard, device);
    if (!present)
        error = QStringLiteral("The device is gone.");
    return present;
}

bool RequestManager::perform(const AsyncSaveDeviceData& request, QString& error)
{
    const std::shared_ptr<MemoryDevice> device = find(Guard(*m_pHub), request.device, error);
    return device && m_processor.save(device->ipMacSn(), error);
}

bool RequestManager::perform(const AsyncRemoveFile& request, QString& error)
{
    struct Removal {
        QString device;
        FileType type;
        quint16 id;
    };
    QList<Removal> told;
    {
        const Guard guard(*m_pHub);
        const std::shared_ptr<MemoryDevice> device = m_list.own(guard, request.device);
        const auto group = device ? m_list.group(guard, device) : MemoryDeviceList::Devices();
        for (const std::shared_ptr<MemoryDevice>& member : group) {
            const MemoryDevice::Data& state = std::as_const(*member).data(guard);
            for (const std::shared_ptr<MemoryPreset>& preset : state.presets) {
                if (request.fileTypes.contains(preset->fileType()))
                    told += {state.ipMacSn, preset->fileType(), preset->fileId()};
            }
        }
    }
    for (const Removal& each : std::as_const(told)) {
        if (!m_processor.removePreset(each.device, each.type, each.id, error))
            return false;
    }
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = find(change, request.device, error);
    if (device)
        removeFiles(change, m_list.group(change, device), request.fileTypes);
    return device != nullptr;
}

} // namespace Orvane::MemoryModel

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;
using BizModel::Enum::File::FileType;

namespace {

constexpr int AllLayers = BizModel::LayerType::AllLayerType;

bool isPartOf(const std::weak_ptr<BizModel::Device>& device, const std::shared_ptr<BizModel::Screen>& screen)
{
    const std::shared_ptr<BizModel::Device> owner = device.lock();
    const auto present = owner ? owner->screens(BizModel::Enum::Screen::AllScreenType)
                               : QList<std::weak_ptr<BizModel::Screen>>();
    return std::any_of(
        present.cbegin(), present.cend(), [&screen](const auto& each) { return each.lock() == screen; });
}

int layersOf(const std::weak_ptr<BizModel::Screen>& screen)
{
    const std::shared_ptr<BizModel::Screen> owner = screen.lock();
    return owner ? owner->layerCount(BizModel::SceneType::PGM, AllLayers)
            + owner->layerCount(BizModel::SceneType::PVW, AllLayers)
                 : 0;
}

/// What a request found, kept until its completion.
struct Before {
    int cleared = 0;
    int layers = 0;
    bool hasPresets = false;
};

Before look(const AsyncRequest& request)
{
    Before before;
    if (const auto* clear = std::get_if<AsyncRemoveLayer>(&request)) {
        if (const std::shared_ptr<BizModel::Screen> screen = clear->screen.lock())
            before.cleared = screen->layerCount(clear->scene, clear->layerTypeMask);
    } else if (const auto* copy = std::get_if<AsyncAddCopyLayers>(&request)) {
        before.layers = layersOf(copy->screen);
    } else if (const auto* remove = std::get_if<AsyncRemoveFile>(&request)) {
        const std::shared_ptr<BizModel::Device> device = remove->device.lock();
        before.hasPresets = device && !device->presets().isEmpty();
    }
    return before;
}

/// Whether what the request asked for is so. True for what cannot be seen.
bool hasTakenEffect(const AsyncRequest& request, const Before& before)
{
    if (const auto* clear = std::get_if<AsyncRemoveLayer>(&request)) {
        const std::shared_ptr<BizModel::Screen> screen = clear->screen.lock();
        return !screen || screen->layerCount(clear->scene, clear->layerTypeMask) == 0;
    }
    if (const auto* create = std::get_if<AsyncCreateScreen>(&request))
        return std::all_of(create->screens.cbegin(), create->screens.cend(), [&](const auto& screen) {
            return isPartOf(create->device, screen);
        });
    if (const auto* copy = std::get_if<AsyncAddCopyLayers>(&request))
        return layersOf(copy->screen) == before.layers + copy->layers.size();
    if (const auto* remove = std::get_if<AsyncRemoveFile>(&request)) {
        const std::shared_ptr<BizModel::Device> device = remove->device.lock();
        return !device || std::all_of(remove->fileTypes.cbegin(), remove->fileTypes.cend(), [&](auto type) {
            return device->files(type).isEmpty();
        });
    }
    return true;
}

/// Whether a request that failed has left nothing behind. Removals may be done in part.
bool isUntouched(const AsyncRequest& request, const Before& before)
{
    if (const auto* create = std::get_if<AsyncCreateScreen>(&request))
        return std::none_of(create->screens.cbegin(), create->screens.cend(), [&](const auto& screen) {
            return isPartOf(create->device, screen);
        });
    if (const auto* copy = std::get_if<AsyncAddCopyLayers>(&request))
        return layersOf(copy->screen) == before.layers;
    return true;
}

/// The first signal that should have come for the request and has not; empty when there is none.
QString missingSignal(const AsyncRequest& request, const Before& before, const SignalWindow& window)
{
    // A scene that changed as a whole needs no signal for each layer.
    const bool whole = window.times(QStringLiteral("signalDeviceScreenLayersChanged")) > 0;
    if (const auto* create = std::get_if<AsyncCreateScreen>(&request)) {
        const QString added = QStringLiteral("signalScreenAdded");
        const bool all =
            std::all_of(create->screens.cbegin(), create->screens.cend(), [&](const auto& screen) {
                return window.times(added, screen.get()) > 0;
            });
        return all ? QString() : added;
    }
    if (std::holds_alternative<AsyncRemoveLayer>(request) && !whole) {
        const QString removed = QStringLiteral("signalLayerRemoved");
        return window.times(removed) < before.cleared ? removed : QString();
    }
    if (const auto* copy = std::get_if<AsyncAddCopyLayers>(&request); copy && !whole) {
        const QString added = QStringLiteral("signalLayerAdded");
        return window.times(added) < copy->layers.size() ? added : QString();
    }
    return {};
}

bool clearsPresets(const AsyncRequest& request)
{
    const auto* remove = std::get_if<AsyncRemoveFile>(&request);
    return remove && remove->fileTypes.contains(FileType::PresetPVW)
        && remove->fileTypes.contains(FileType::PresetPGM);
}

/// All presets that went at once are announced once, in place of a signal each.
void checkCleared(ModelWatch& tester, const QString& call, const Before& before, const SignalWindow& window)
{
    const int cleared = window.times(QStringLiteral("signalPresetCleared"));
    const int removed = window.times(QStringLiteral("signalPresetRemoved"));
    if (before.hasPresets && cleared == 0 && removed == 0)
        tester.report(
            QStringLiteral("completion-after-signals"), call,
            QStringLiteral("The completion came, and signalPresetCleared had not been emitted."));
    else if (removed > 0)
        tester.report(
            QStringLiteral("signal-once"), call,
            QStringLiteral("signalPresetRemoved came for each preset, in place of signalPresetCleared."));
}

void checkEnd(
    ModelWatch& tester, const Tracked& tracked, const AsyncRequest& request, const Before& before, bool ok,
    const QString& text)
{
    if (!ok) {
        tester.checkReason(tracked->call, text);
        if (tester.isAlone(tracked) && !isUntouched(request, before))
            tester.report(
                QStringLiteral("refusal-without-change"), tracked->call,
                QStringLiteral("The request failed and has been carried out in part."));
        return;
    }
    const bool alone = tester.isAlone(tracked);
    const QString missing = missingSignal(request, before, *tracked->window);
    if (alone && !hasTakenEffect(request, before))
        tester.report(
            QStringLiteral("success-with-effect"), tracked->call,
            QStringLiteral("The request succeeded and what it asked for is not so."));
    else if (!missing.isEmpty())
        tester.report(
            QStringLiteral("completion-after-signals"), tracked->call,
            QStringLiteral("The completion came, and %1 had not been emitted.").arg(missing));
    if (alone && clearsPresets(request))
        checkCleared(tester, tracked->call, before, *tracked->window);
}

} // namespace

ProxyAsyncManager::ProxyAsyncManager(ModelWatch& tester, AsyncManager& inner)
    : m_tester(tester)
    , m_inner(inner)
{
}

void ProxyAsyncManager::startAsyncRequest(AsyncRequest request)
{
    const QString name = requestName(request);
    const Before before = look(request);
    const Tracked tracked = m_tester.track(name, std::chrono::milliseconds(0));
    // Without its completion, which the watching one calls.
    const auto watched = std::make_shared<AsyncRequest>(request);
    std::visit(
        [&](auto& each) {
            each.completion = [this, alive = std::weak_ptr<bool>(m_pAlive), tracked, watched, before,
                               completion = each.completion](bool ok, const QString& text) {
                if (alive.lock() && m_tester.completed(tracked))
                    checkEnd(m_tester, tracked, *watched, before, ok, text);
                if (completion)
                    completion(ok, text);
            };
        },
        request);
    const Clock::time_point begin = Clock::now();
    m_inner.startAsyncRequest(std::move(request));
    m_tester.checkDuration(name, begin, m_tester.limits().request);
}

} // namespace Orvane::ModelTest::Internal

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;

namespace {

/// Whether what the request asked for is so. True for what cannot be seen.
bool hasTakenEffect(const AsyncRequest& request)
{
    if (const auto* clear = std::get_if<AsyncRemoveLayer>(&request)) {
        const std::shared_ptr<BizModel::Screen> screen = clear->screen.lock();
        return !screen || screen->layerCount(clear->scene, clear->layerTypeMask) == 0;
    }
    if (const auto* create = std::get_if<AsyncCreateScreen>(&request)) {
        const std::shared_ptr<BizModel::Device> device = create->device.lock();
        if (!device)
            return true;
        const auto present = device->screens(BizModel::Enum::Screen::AllScreenType);
        return std::all_of(create->screens.cbegin(), create->screens.cend(), [&](const auto& screen) {
            return std::any_of(present.cbegin(), present.cend(), [&screen](const auto& each) {
                return each.lock() == screen;
            });
        });
    }
    if (const auto* remove = std::get_if<AsyncRemoveFile>(&request)) {
        const std::shared_ptr<BizModel::Device> device = remove->device.lock();
        return !device || std::all_of(remove->fileTypes.cbegin(), remove->fileTypes.cend(), [&](auto type) {
            return device->files(type).isEmpty();
        });
    }
    return true;
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
    const auto tracked = m_tester.track(name, std::chrono::milliseconds(0));
    // Without its completion, which the watching one calls.
    const auto watched = std::make_shared<AsyncRequest>(request);
    std::visit(
        [&](auto& each) {
            each.completion = [this, alive = std::weak_ptr<bool>(m_pAlive), tracked, watched, name,
                               completion = each.completion](bool ok, const QString& text) {
                if (alive.lock() && m_tester.completed(tracked) && ok && !hasTakenEffect(*watched))
                    m_tester.report(
                        QStringLiteral("success-with-effect"), name,
                        QStringLiteral("The request succeeded and what it asked for is not so."));
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

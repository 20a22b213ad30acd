#pragma once

#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/controllerfactory.h"
#include "modelwatch_p.h"
#include "parallelcontrol/parallelmanager.h"

#include <algorithm>
#include <functional>
#include <memory>

/// What stands in front of a model's managers and controllers: they pass everything on and look at what
/// comes of it.
namespace Orvane::ModelTest::Internal {

/// Tracks the requests that outlive their start. A completion that comes after the tester has gone is passed
/// on.
class ProxyParallelManager final : public ParallelControl::ParallelManager {
public:
    ProxyParallelManager(ModelWatch& tester, ParallelManager& inner);
    ~ProxyParallelManager() override;

    using ParallelManager::startParallelRequest;
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        bool waitForResult, QString* error, Completion callback) override;
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        Completion completion, int count) override;
    int currentTaskCount() const override { return m_inner.currentTaskCount(); }

private:
    /// Starts the request at the inner manager.
    using Start =
        std::function<bool(const ParallelControl::ParallelTaskFactory& factory, Completion callback)>;
    class Round;

    bool watch(
        const ParallelControl::ParallelTaskFactory& factory, bool waits, Completion callback,
        const Start& start);

    ModelWatch& m_tester;
    ParallelManager& m_inner;
    const std::shared_ptr<bool> m_pAlive = std::make_shared<bool>(true);
};

class ProxyAsyncManager final : public ModelControl::AsyncManager {
public:
    ProxyAsyncManager(ModelWatch& tester, AsyncManager& inner);

    void startAsyncRequest(ModelControl::AsyncRequest request) override;

private:
    ModelWatch& m_tester;
    AsyncManager& m_inner;
    const std::shared_ptr<bool> m_pAlive = std::make_shared<bool>(true);
};

class ProxyControllerFactory final : public ModelControl::ControllerFactory {
public:
    ProxyControllerFactory(ModelWatch& tester, ControllerFactory& inner);

    std::shared_ptr<ModelControl::Device> createDevice(
        const std::weak_ptr<BizModel::Device>& device) override;
    std::shared_ptr<ModelControl::Screen> createScreen(
        BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device) override;
    std::shared_ptr<ModelControl::Layer> createLayer(
        BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device) override;
    std::shared_ptr<ModelControl::Preset> createPreset(
        const std::weak_ptr<BizModel::Device>& device) override;

private:
    ModelWatch& m_tester;
    ControllerFactory& m_inner;
};

/// @name What stands in front of one controller
/// @{
std::shared_ptr<ModelControl::Screen> watchedScreens(
    ModelWatch& tester, std::shared_ptr<ModelControl::Screen> inner);
std::shared_ptr<ModelControl::Layer> watchedLayers(
    ModelWatch& tester, std::shared_ptr<ModelControl::Layer> inner);
std::shared_ptr<ModelControl::Preset> watchedPresets(
    ModelWatch& tester, std::shared_ptr<ModelControl::Preset> inner);
/// @}

} // namespace Orvane::ModelTest::Internal

#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/modelcontrol/asyncmanager.h"
#include "processor.h"
#include "worker.h"

namespace Orvane::MemoryModel {

/// Carries out requests one after another on a thread of its own.
class RequestManager final : public ModelControl::AsyncManager {
public:
    RequestManager(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor);

    void startAsyncRequest(ModelControl::AsyncRequest request) override;
    /// Requests that still wait end as failed, those that come later at once.
    void stop();

private:
    void carryOut(ModelControl::AsyncRequest& request, bool stopping);
    bool perform(const ModelControl::AsyncCreateScreen& request, QString& error);
    bool perform(const ModelControl::AsyncRemoveLayer& request, QString& error);
    bool perform(const ModelControl::AsyncAddCopyLayers& request, QString& error);
    bool perform(const ModelControl::AsyncSaveDeviceData& request, QString& error);
    bool perform(const ModelControl::AsyncRemoveFile& request, QString& error);

    MemoryScreen::Layers copyLayers(
        Change& change, const ModelControl::AsyncAddCopyLayers& request, QString& error);
    /// Empty, with the reason in @p error, when it is not there.
    std::shared_ptr<MemoryDevice> find(
        const Guard& guard, const std::weak_ptr<BizModel::Device>& device, QString& error) const;
    std::shared_ptr<MemoryScreen> find(
        const Guard& guard, const std::weak_ptr<BizModel::Device>& device,
        const std::weak_ptr<BizModel::Screen>& screen, QString& error) const;

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;
    Worker m_worker{QStringLiteral("model-request")};
};

} // namespace Orvane::MemoryModel

#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/parallelcontrol/parallelmanager.h"
#include "processor.h"
#include "worker.h"

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace Orvane::MemoryModel {

/// Carries out tasks with one worker for each device, so that the devices of a group work at the same time
/// and each does what it is told in order.
///
/// A transition does not keep its device's worker busy: other tasks run while it lasts. A request that
/// waits for its result returns after its callback has run; on a thread of the model it is refused, for the
/// thread might be the one to carry it out.
class MemoryParallelManager final : public ParallelControl::ParallelManager {
public:
    MemoryParallelManager(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor);
    ~MemoryParallelManager() override;

    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        bool waitForResult, QString* error, ParallelControl::Completion callback) override;
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        ParallelControl::Completion completion, int count = 0) override;
    int currentTaskCount() const override;

    /// Tasks that have not ended fail; transitions end without a change of scenes.
    void stop();

private:
    class Request;
    struct Run;
    using Workers = std::map<std::weak_ptr<const MemoryDevice>, std::shared_ptr<Worker>, std::owner_less<>>;

    std::shared_ptr<Request> start(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        ParallelControl::Completion callback, int count, QString& error);
    void begin(const std::deque<std::shared_ptr<Run>>& runs);
    void post(const std::shared_ptr<Run>& run);
    void carryOut(const std::shared_ptr<Run>& run, bool stopping);
    void handOver(const std::shared_ptr<Run>& run);
    OpenRequest openPart(const std::shared_ptr<Run>& run, const MemoryDevice::Screens& screens);
    void partEnded(
        const std::shared_ptr<Run>& run, const MemoryDevice::Screens& screens, bool ok, const QString& text);
    void changeScenes(const Run& run, const MemoryDevice::Screens& screens);
    void release(const MemoryDevice::Screens& screens, BizModel::Screen::State busy);
    void abandon(const std::shared_ptr<Run>& run, const QString& reason);
    void applyFlags(const Run& run, const MemoryDevice::Screens& screens);
    void end(const std::shared_ptr<Run>& run, bool ok, const QString& text);
    std::shared_ptr<Worker> worker(const std::shared_ptr<MemoryDevice>& device);

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;

    /// Guards m_workers, m_openRuns, m_bStopped.
    mutable std::mutex m_mutex;
    Workers m_workers;
    /// Tasks that have not ended.
    std::set<std::shared_ptr<Run>> m_openRuns;
    bool m_bStopped = false;
};

} // namespace Orvane::MemoryModel

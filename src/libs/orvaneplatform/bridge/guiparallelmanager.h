#pragma once

#include "orvaneplatform/openrequest.h"
#include "orvaneplatform/orvaneplatform_global.h"
#include "orvaneplatform/parallelcontrol/parallelmanager.h"

#include <QObject>

#include <atomic>
#include <chrono>
#include <memory>

namespace Orvane::Bridge {

/// `ParallelControl::ParallelManager` for such a model: counts the tasks, tells the group's devices apart,
/// and ends the request with its last task. Create and destroy it on the GUI thread.
class ORVANEPLATFORM_EXPORT GuiParallelManager : public ParallelControl::ParallelManager {
public:
    /// A caller that waits for its result gives up after @p waitLimit: the request goes on, and the call
    /// returns false. The GUI thread itself cannot wait; such a request is refused.
    explicit GuiParallelManager(std::chrono::milliseconds waitLimit = std::chrono::seconds(1));
    ~GuiParallelManager() override;

    using ParallelManager::startParallelRequest;
    /// Marks with `begin`, then has `perform` carry out each device's task. Any thread.
    bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelControl::ParallelTaskFactory& factory,
        bool waitForResult, QString* error, Completion callback) final;
    int currentTaskCount() const final;

protected:
    /// Marks the screens that the task will change, in the values that queries are answered from. On the
    /// caller's thread, before the request returns: a second press of take finds them `Taking`.
    virtual void begin(const ParallelControl::ParallelTask& task) = 0;
    /// Carries out one device's task, on the GUI thread, and ends @p end after the change and its signals, at
    /// once or later. A `done` within @p task is not to be called; it is what @p end calls.
    virtual void perform(const ParallelControl::ParallelTask& task, OpenRequest end) = 0;

private:
    const std::chrono::milliseconds m_waitLimit;
    /// Shared with the requests, which may outlive the manager.
    const std::shared_ptr<std::atomic<int>> m_pTaskCount = std::make_shared<std::atomic<int>>(0);
    QObject m_context;
};

} // namespace Orvane::Bridge

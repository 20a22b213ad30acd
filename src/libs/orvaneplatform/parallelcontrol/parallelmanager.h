#pragma once

#include "orvaneplatform/orvaneplatform_global.h"
#include "orvaneplatform/parallelcontrol/paralleltasks.h"

#include <QString>
#include <QtGlobal>

namespace Orvane::ParallelControl {

/// Carries out one task on all devices of a group at the same time. The host creates its implementation
/// before it starts the console and destroys it after the console's threads have ended.
class ORVANEPLATFORM_EXPORT ParallelManager {
public:
    virtual ~ParallelManager();

    /// The manager created last of those that live, null when there is none. Any thread.
    static ParallelManager* instance();

    /// Asks @p factory once for each device of the group of @p device, on the caller's thread, and starts
    /// the tasks. `currentTaskCount` and the screens' states have changed when the call returns. With
    /// @p waitForResult it returns when all tasks have ended.
    ///
    /// False when the request could not be started or, with @p waitForResult, when a task failed; the reason
    /// then stands in @p error, which may be null. @p callback is called after the last task has ended, and
    /// not at all when nothing was started; the reason is the first failed task's. Any thread.
    virtual bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, bool waitForResult,
        QString* error, Completion callback) = 0;
    /// The same without waiting. @p count is the number of devices that may work at once, 0 for all; unless
    /// overridden it is always all.
    virtual bool startParallelRequest(
        const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory,
        Completion completion, int count = 0);

    /// Number of tasks that have not ended. Presets are not loaded while there are any. A task no longer
    /// counts when its request's callback is called. Any thread.
    virtual int currentTaskCount() const = 0;

protected:
    /// Makes this manager the one that `instance` answers.
    ParallelManager();

private:
    Q_DISABLE_COPY_MOVE(ParallelManager)
};

} // namespace Orvane::ParallelControl

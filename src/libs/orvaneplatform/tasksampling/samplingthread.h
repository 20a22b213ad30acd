#pragma once

#include "orvaneplatform/orvaneplatform_global.h"
#include "orvaneplatform/tasksampling/samplings.h"

#include <QtGlobal>

#include <memory>

namespace Orvane::TaskSampling {

/// Passes fast-changing values on to the device at the device's own pace: of the samples of one type that
/// wait, only the newest is carried out. The host creates its implementation before it starts the console
/// and destroys it after the console's threads have ended.
class ORVANEPLATFORM_EXPORT SamplingThread {
public:
    virtual ~SamplingThread();

    /// The thread created last of those that live, null when there is none. Any thread.
    static SamplingThread* instance();

    /// Announces samples of the type; false while samples of another type wait. Any thread.
    virtual bool setSamplingType(SamplingType type) = 0;
    /// Queues the sample and returns at once; false when it is not of the type announced last or not
    /// usable, and unless overridden. Any thread.
    /// @{
    virtual bool appendData(const std::shared_ptr<s_TBarSampling>& sampling);
    virtual bool appendData(const std::shared_ptr<s_LoadPresetSampling>& sampling);
    /// @}

protected:
    /// Makes this thread the one that `instance` answers.
    SamplingThread();

private:
    Q_DISABLE_COPY_MOVE(SamplingThread)
};

} // namespace Orvane::TaskSampling

#pragma once

#include "orvaneplatform/bridge/deviceitem.h"
#include "orvaneplatform/tasksampling/samplingthread.h"

namespace Orvane::Bridge {

/// What goes to the device itself, for a model that is made of items: a preset that it has taken becomes
/// active. There is no T-Bar unless overridden.
class ORVANEPLATFORM_EXPORT ItemSamplingThread : public TaskSampling::SamplingThread {
public:
    ItemSamplingThread();
    ~ItemSamplingThread() override;

    using SamplingThread::appendData;
    bool setSamplingType(TaskSampling::SamplingType type) override;
    /// Has `sendLoad` tell the device, and makes the preset active.
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sampling) override;

protected:
    /// Tells the device to load the preset, and returns at once; false refuses. On any thread. Unless
    /// overridden nothing is told.
    virtual bool sendLoad(DeviceItem& device, const PresetItem& preset);
};

} // namespace Orvane::Bridge

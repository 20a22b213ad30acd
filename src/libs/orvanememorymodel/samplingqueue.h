#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/tasksampling/samplingthread.h"
#include "processor.h"
#include "worker.h"

#include <deque>
#include <optional>
#include <variant>

namespace Orvane::MemoryModel {

/// The sampling thread: progress of the T-Bar and loads of presets, at the pace at which they are carried
/// out.
///
/// Of the samples of a type that wait only the newest is kept. A T-Bar sample that completes a transition is
/// an exception: those that come after it belong to the next transition, so it waits its turn.
///
/// The T-Bar works on the selected screens with outputs of the device and its group. Between the ends they
/// are `Tbar_taking`; at 1.0 their scenes change as in a take, at 0.0 they fall back.
class SamplingQueue final : public TaskSampling::SamplingThread {
public:
    SamplingQueue(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor);

    bool setSamplingType(TaskSampling::SamplingType type) override;
    bool appendData(const std::shared_ptr<TaskSampling::s_TBarSampling>& sampling) override;
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sampling) override;

    /// Samples that still wait are dropped.
    void stop();

private:
    using Sample = std::variant<TaskSampling::s_TBarSampling, TaskSampling::s_LoadPresetSampling>;

    template <typename Sampling> bool appendUsable(const std::shared_ptr<Sampling>& sampling, bool usable);
    bool append(Sample sample);
    bool enqueue(Sample sample);
    void carryOutNext(bool stopping);
    /// @p failure is why the sample is to fail, as was ordered, or gets why the processor refused it.
    void carryOut(const TaskSampling::s_TBarSampling& sample, std::optional<QString>& failure);
    void carryOut(const TaskSampling::s_LoadPresetSampling& sample, std::optional<QString>& failure);
    void moveTBar(
        const std::shared_ptr<MemoryDevice>& device, const TaskSampling::s_TBarSampling& sample,
        std::optional<QString>& failure);

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;

    /// Guards m_type, m_waiting.
    std::mutex m_mutex;
    std::optional<TaskSampling::SamplingType> m_type;
    std::deque<Sample> m_waiting;
    Worker m_worker{QStringLiteral("model-sampling")};
};

} // namespace Orvane::MemoryModel

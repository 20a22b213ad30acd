#pragma once

#include "bizmodel/enums.h"
#include "completion.h"
#include "modelcontrol/asyncrequests.h"
#include "modelfault.h"
#include "parallelcontrol/paralleltasks.h"

#include <atomic>
#include <functional>
#include <memory>

namespace Orvane::ModelControl {
class Device;
class Layer;
class Screen;
} // namespace Orvane::ModelControl

namespace Orvane::ModelTest::Internal {

/// What `checkModel` sees of its operator, which works on a thread of its own.
struct OperatorProgress {
    /// What is being done.
    std::atomic<const char*> step{"starting"};
    std::atomic<int> steps{0};
    std::atomic<bool> done{false};
};

/// Does with the active device's first regular screen what the keys of a console would make the library do,
/// one step after another. The tester that stands in front of the model looks at what comes of it.
class ModelOperator final {
public:
    /// @p found is called for what only a user would see. On the thread of `work`.
    ModelOperator(
        ModelLimits limits, std::shared_ptr<OperatorProgress> progress,
        std::function<void(const ModelFault&)> found);

    void work();

private:
    using Screens = QList<std::weak_ptr<BizModel::Screen>>;
    using Layers = QList<std::weak_ptr<BizModel::Layer>>;

    void begin(const char* step);
    void select();
    /// Each flag there and back.
    void toggle();
    void transitions();
    void transitionTime();
    void moveTBar();
    void createScreen();
    void layers();
    /// @p others are sources that the layers do not show.
    void workOnLayers(ModelControl::Screen& screens, const Layers& layers, const QList<quint32>& others);
    /// Inputs that a layer key would take.
    QList<quint32> sources() const;
    std::shared_ptr<BizModel::Layer> addLayer(ModelControl::Screen& screens, quint32 source);
    void presets();
    void load(const std::shared_ptr<BizModel::Preset>& preset);
    /// What names nothing that is there must be refused.
    void refusals();

    std::shared_ptr<BizModel::Device> device() const { return m_pDevice.lock(); }
    std::shared_ptr<BizModel::Screen> screen() const { return m_pScreen.lock(); }
    std::chrono::milliseconds transitionLimit() const;
    /// Waits on this thread until the condition holds; false when it does not within the time.
    bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) const;

    template <typename Task> bool start(Task task, bool waits, const Completion& completion);
    template <typename Task> void run(const Task& task, bool waits);
    template <typename Request> void runAsync(Request request);

    const ModelLimits m_limits;
    const std::shared_ptr<OperatorProgress> m_pProgress;
    const std::function<void(const ModelFault&)> m_found;
    std::weak_ptr<BizModel::Device> m_pDevice;
    std::weak_ptr<BizModel::Screen> m_pScreen;
};

} // namespace Orvane::ModelTest::Internal

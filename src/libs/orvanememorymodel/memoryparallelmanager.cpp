#include "memoryparallelmanager.h"

#include "bridge/parallelround_p.h"
#include "operationtext.h"
#include "showclock_p.h"
#include "transitions.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Orvane::MemoryModel {

using namespace ParallelControl;
using ScreenState = BizModel::Screen::State;

namespace {

const QString stoppedText = QStringLiteral("The model has stopped.");

template <typename... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
template <typename... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

/// None for a task of the device.
std::optional<int> screenTypeMask(const ParallelTask& task)
{
    return std::visit(
        Overloaded{
            [](const ParallelSetSwapStatus&) { return std::optional<int>(); },
            [](const ParallelSetLoadToPresetPGMStatus&) { return std::optional<int>(); },
            [](const auto& each) { return std::optional(each.screenTypeMask); }},
        task);
}

OperationCall describe(const ParallelTask& task)
{
    QString arguments = deviceText(Bridge::deviceOf(task));
    if (const auto mask = screenTypeMask(task))
        arguments += QStringLiteral(" types=%1").arg(*mask);
    const auto value = std::visit(
        Overloaded{
            [](const ParallelFreezeScreen& each) { return std::optional<int>(each.freeze); },
            [](const ParallelFTBScreen& each) { return std::optional<int>(each.fadeToBlack); },
            [](const ParallelSetSwapStatus& each) { return std::optional<int>(each.swap); },
            [](const ParallelSetLoadToPresetPGMStatus& each) { return std::optional<int>(each.status); },
            [](const auto&) { return std::optional<int>(); }},
        task);
    if (value)
        arguments += QStringLiteral(" value=%1").arg(*value);
    return {*findOperation(taskName(task)), arguments};
}

MemoryDevice::Screens selectedScreens(
    const Guard& guard, const MemoryDevice& device, const ParallelTask& task)
{
    const int mask = screenTypeMask(task).value_or(0);
    MemoryDevice::Screens selected;
    for (const std::shared_ptr<MemoryScreen>& screen : device.data(guard).screens) {
        if ((screen->screenType() & mask) && std::as_const(*screen).data(guard).selected)
            selected += screen;
    }
    return selected;
}

void tellProcessor(
    Processor& processor, const ParallelTask& task, const ScreenJob& job, const OpenRequest& end)
{
    std::visit(
        Overloaded{
            [&](const ParallelTakeScreen&) { processor.take(job, end); },
            [&](const ParallelCutScreen&) { processor.cut(job, end); },
            [&](const ParallelMatchPGM&) { processor.match(job, end); },
            [&](const ParallelFreezeScreen& each) { processor.freeze(job, each.freeze, end); },
            [&](const ParallelFTBScreen& each) { processor.fadeToBlack(job, each.fadeToBlack, end); },
            [&](const ParallelSetSwapStatus& each) { processor.setSwap(job.device, each.swap, end); },
            [&](const ParallelSetLoadToPresetPGMStatus& each) {
                processor.setLoadTarget(job.device, each.status, end);
            }},
        task);
}

} // namespace

/// What one call of `startParallelRequest` asked for.
class MemoryParallelManager::Request : public Bridge::ParallelRound {
public:
    Request(Completion callback, std::deque<std::shared_ptr<Run>> runs)
        : ParallelRound(int(runs.size()), std::move(callback))
        , m_waiting(std::move(runs))
    {
    }

    /// The next task to be started; empty when all were.
    std::shared_ptr<Run> next()
    {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.empty())
            return nullptr;
        std::shared_ptr<Run> run = std::move(m_waiting.front());
        m_waiting.pop_front();
        return run;
    }

private:
    std::mutex m_mutex; ///< guards the runs, which are started on any device's worker
    std::deque<std::shared_ptr<Run>> m_waiting;
};

/// One device's part in a request. After `begin` it is used on its device's worker alone.
struct MemoryParallelManager::Run {
    std::shared_ptr<Request> request;
    std::shared_ptr<MemoryDevice> device;
    ParallelTask task;
    OperationCall text;
    /// Screens whose scenes the task changes.
    MemoryDevice::Screens screens;
    /// Parts that the processor has not ended.
    int openParts = 0;
    bool ok = true;
    QString failure;
    /// Why the task cannot be carried out.
    QString obstacle;
};

MemoryParallelManager::MemoryParallelManager(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
{
}

MemoryParallelManager::~MemoryParallelManager()
{
    stop();
}

bool MemoryParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, bool waitForResult,
    QString* error, Completion callback)
{
    QString reason;
    bool ok = false;
    if (waitForResult && Worker::isWorkerThread()) {
        reason = QStringLiteral("A thread of the model cannot wait for a request.");
    } else if (const auto request = start(device, factory, std::move(callback), 0, reason)) {
        ok = !waitForResult || request->wait(reason);
    }
    if (error)
        *error = reason;
    return ok;
}

bool MemoryParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, Completion completion,
    int count)
{
    QString reason;
    return start(device, factory, std::move(completion), count, reason) != nullptr;
}

int MemoryParallelManager::currentTaskCount() const
{
    const std::lock_guard lock(m_mutex);
    return int(m_openRuns.size());
}

void MemoryParallelManager::stop()
{
    Workers workers;
    {
        const std::lock_guard lock(m_mutex);
        m_bStopped = true;
        workers.swap(m_workers);
    }
    for (const auto& worker : workers)
        worker.second->stop();
    // What the processor has not ended ends here; its own end finds no worker any more.
    std::set<std::shared_ptr<Run>> left;
    {
        const std::lock_guard lock(m_mutex);
        left = m_openRuns;
    }
    for (const std::shared_ptr<Run>& run : left)
        abandon(run, stoppedText);
}

/// Starts the tasks; empty with the reason in @p error when none was started.
std::shared_ptr<MemoryParallelManager::Request> MemoryParallelManager::start(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, Completion callback,
    int count, QString& error)
{
    if (m_pHub->operations.stopped() || !factory) {
        error = factory ? stoppedText : QStringLiteral("The request has no tasks.");
        return nullptr;
    }
    const QList<std::weak_ptr<BizModel::Device>> members = m_list.groupDevices(device, true, false);
    if (members.isEmpty()) {
        error = QStringLiteral("The device is gone.");
        return nullptr;
    }
    std::deque<std::shared_ptr<Run>> runs;
    for (const std::weak_ptr<BizModel::Device>& member : members) {
        const auto run = std::make_shared<Run>();
        run->task = factory(member);
        run->text = describe(run->task);
        m_pHub->operations.request(run->text.operation, run->text.arguments);
        runs.push_back(run);
    }
    begin(runs);

    const std::size_t size = runs.size();
    auto request = std::make_shared<Request>(std::move(callback), runs);
    for (const std::shared_ptr<Run>& run : runs)
        run->request = request;
    {
        const std::lock_guard lock(m_mutex);
        m_openRuns.insert(runs.begin(), runs.end());
    }
    const std::size_t atOnce = count > 0 ? std::min(size, std::size_t(count)) : size;
    for (std::size_t i = 0; i < atOnce; ++i) {
        // A task that has ended meanwhile may have begun the last one already.
        if (const std::shared_ptr<Run> run = request->next())
            post(run);
    }
    return request;
}

/// Marks the screens whose scenes the tasks will change.
void MemoryParallelManager::begin(const std::deque<std::shared_ptr<Run>>& runs)
{
    bool anyScreen = false;
    Change change(*m_pHub);
    for (const std::shared_ptr<Run>& run : runs) {
        const ScreenState busy = Bridge::busyState(run->task);
        run->device = m_list.own(change, Bridge::deviceOf(run->task));
        if (!run->device) {
            run->obstacle = QStringLiteral("The device is gone.");
            continue;
        }
        if (busy == ScreenState::Normal)
            continue;
        const auto candidates = run->device->takeScreens(change, screenTypeMask(run->task).value_or(0), true);
        for (const std::shared_ptr<MemoryScreen>& screen : candidates) {
            MemoryScreen::Data& state = screen->data(change);
            if (!state.isIdle())
                continue;
            state.state = busy;
            state.transitionStart = ShowClock::now();
            state.transitionTime = std::chrono::milliseconds(qRound64(state.effectSeconds * 1000));
            run->screens += screen;
            anyScreen = true;
            change.markChanged();
        }
    }
    for (const std::shared_ptr<Run>& run : runs) {
        if (!anyScreen && Bridge::busyState(run->task) != ScreenState::Normal && run->obstacle.isEmpty())
            run->obstacle = QStringLiteral("No selected screen with outputs is free.");
    }
}

void MemoryParallelManager::post(const std::shared_ptr<Run>& run)
{
    const std::shared_ptr<Worker> own = worker(run->device);
    if (!own || !own->post([this, run](bool stopping) { carryOut(run, stopping); }))
        carryOut(run, true);
}

void MemoryParallelManager::carryOut(const std::shared_ptr<Run>& run, bool stopping)
{
    const auto verdict = m_pHub->operations.start(run->text.operation, run->text.arguments);
    if (stopping || !m_pHub->operations.sleepFor(verdict.delay))
        return abandon(run, stoppedText);
    if (verdict.failure)
        return abandon(run, *verdict.failure);
    if (!run->obstacle.isEmpty())
        return abandon(run, run->obstacle);
    handOver(run);
}

/// Gives the task to the processor: in one part, or a take with a part for each duration.
void MemoryParallelManager::handOver(const std::shared_ptr<Run>& run)
{
    std::map<std::chrono::milliseconds, MemoryDevice::Screens> parts;
    if (std::holds_alternative<ParallelTakeScreen>(run->task)) {
        const Worker::Clock::time_point now = ShowClock::now();
        Change change(*m_pHub);
        for (const std::shared_ptr<MemoryScreen>& screen : run->screens) {
            screen->data(change).transitionStart = now;
            parts[screen->data(change).transitionTime] += screen;
        }
    } else if (Bridge::busyState(run->task) != ScreenState::Normal) {
        if (!run->screens.isEmpty())
            parts[{}] = run->screens;
    } else {
        parts[{}] = selectedScreens(Guard(*m_pHub), *run->device, run->task);
    }
    if (parts.empty())
        return end(run, true, {});
    run->openParts = int(parts.size());
    for (const auto& [duration, screens] : parts) {
        ScreenJob job = jobOf(*run->device, screens);
        job.duration = duration;
        tellProcessor(m_processor, run->task, job, openPart(run, screens));
    }
}

/// A part that the processor ends, on whatever thread; what follows is worked on the device's own.
OpenRequest MemoryParallelManager::openPart(
    const std::shared_ptr<Run>& run, const MemoryDevice::Screens& screens)
{
    const std::weak_ptr<Worker> device = worker(run->device);
    return {operationName(run->text.operation), [this, device, run, screens](bool ok, const QString& text) {
                const std::shared_ptr<Worker> own = device.lock();
                if (!own)
                    return; // the manager has stopped, and with it the task
                if (own->isOwnThread())
                    return partEnded(run, screens, ok, text);
                own->post([this, run, screens, ok, text](bool stopping) {
                    partEnded(run, screens, ok && !stopping, stopping ? stoppedText : text);
                });
            }};
}

void MemoryParallelManager::partEnded(
    const std::shared_ptr<Run>& run, const MemoryDevice::Screens& screens, bool ok, const QString& text)
{
    const ScreenState busy = Bridge::busyState(run->task);
    if (!ok) {
        release(screens, busy);
        run->ok = false;
        run->failure = text;
    } else if (busy != ScreenState::Normal) {
        changeScenes(*run, screens);
    } else {
        applyFlags(*run, screens);
    }
    if (--run->openParts == 0)
        end(run, run->ok, run->failure);
}

/// Takes, cuts or matches those of the screens that are still at it.
void MemoryParallelManager::changeScenes(const Run& run, const MemoryDevice::Screens& screens)
{
    const ScreenState busy = Bridge::busyState(run.task);
    MemoryDevice::Screens changed;
    Change change(*m_pHub);
    for (const std::shared_ptr<MemoryScreen>& screen : screens) {
        MemoryScreen::Data& state = screen->data(change);
        if (!state.registered || state.state != busy)
            continue;
        if (busy == ScreenState::MatchingPGM)
            matchScene(change, *screen);
        else
            takeScene(change, *run.device, *screen);
        state.state = ScreenState::Normal;
        changed += screen;
    }
    const LayersChangedBy reason = busy == ScreenState::MatchingPGM ? LayersChangedBy::MatchPGM
        : busy == ScreenState::Cut                                  ? LayersChangedBy::Cut
                                                                    : LayersChangedBy::Take;
    announceLayersChanged(change, changed, reason);
}

/// Puts screens that are still in the state back to `Normal`, their scenes as they were.
void MemoryParallelManager::release(const MemoryDevice::Screens& screens, ScreenState busy)
{
    Change change(*m_pHub);
    for (const std::shared_ptr<MemoryScreen>& screen : screens) {
        MemoryScreen::Data& state = screen->data(change);
        if (state.state != busy)
            continue;
        state.state = ScreenState::Normal;
        change.markChanged();
    }
}

void MemoryParallelManager::abandon(const std::shared_ptr<Run>& run, const QString& reason)
{
    release(run->screens, Bridge::busyState(run->task));
    end(run, false, reason);
}

/// Carries out a task that sets a flag of the device or of the screens that were selected.
void MemoryParallelManager::applyFlags(const Run& run, const MemoryDevice::Screens& screens)
{
    using BizModel::DeviceList;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice>& device = run.device;
    MemoryDevice::Data& state = device->data(change);
    const auto setOnScreens = [&](bool MemoryScreen::Data::*flag, bool value, auto signal) {
        for (const std::shared_ptr<MemoryScreen>& screen : screens) {
            if (screen->data(change).registered)
                change.set(screen->data(change).*flag, value, signal, device, screen);
        }
    };
    if (const auto* freeze = std::get_if<ParallelFreezeScreen>(&run.task))
        setOnScreens(&MemoryScreen::Data::freeze, freeze->freeze, &DeviceList::signalScreenPGMFreezeChanged);
    else if (const auto* ftb = std::get_if<ParallelFTBScreen>(&run.task))
        setOnScreens(&MemoryScreen::Data::fadeToBlack, ftb->fadeToBlack, &DeviceList::signalScreenFTBChanged);
    else if (const auto* swap = std::get_if<ParallelSetSwapStatus>(&run.task))
        change.set(state.swap, swap->swap, &DeviceList::signalSwapStateChanged, device);
    else if (const auto* load = std::get_if<ParallelSetLoadToPresetPGMStatus>(&run.task))
        change.set(
            state.loadToPGM, load->status == BizModel::Enum::Device::LoadToPGM,
            &DeviceList::signalLoadToPGMStateChanged, device);
}

void MemoryParallelManager::end(const std::shared_ptr<Run>& run, bool ok, const QString& text)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_openRuns.erase(run) == 0)
            return; // it has ended already
    }
    m_pHub->operations.end(run->text.operation, run->text.arguments, ok ? std::nullopt : std::optional(text));
    if (const Completion done = doneOf(run->task))
        done(ok, text);
    if (const std::shared_ptr<Run> next = run->request->next())
        post(next);
    run->request->taskEnded(ok, text);
}

/// Empty once the manager has stopped.
std::shared_ptr<Worker> MemoryParallelManager::worker(const std::shared_ptr<MemoryDevice>& device)
{
    // Workers of devices that are gone end after the lock is released. None of them is the calling thread: a
    // task holds its device.
    std::vector<std::shared_ptr<Worker>> left;
    const std::lock_guard lock(m_mutex);
    if (m_bStopped)
        return nullptr;
    std::shared_ptr<Worker>& own = m_workers[device];
    if (own)
        return own;
    for (auto each = m_workers.begin(); each != m_workers.end();) {
        if (each->first.expired()) {
            left.push_back(std::move(each->second));
            each = m_workers.erase(each);
        } else {
            ++each;
        }
    }
    own = std::make_shared<Worker>(QStringLiteral("model-dev-%1").arg(m_workers.size()));
    return own;
}

} // namespace Orvane::MemoryModel

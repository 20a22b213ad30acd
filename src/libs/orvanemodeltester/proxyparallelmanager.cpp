#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ParallelControl;
using ScreenState = BizModel::Screen::State;

namespace {

bool isIdle(const BizModel::Screen& screen)
{
    const ScreenState state = screen.state();
    return state == ScreenState::Normal || state == ScreenState::Resource_out;
}

std::shared_ptr<BizModel::Device> deviceOf(const ParallelTask& task)
{
    return std::visit([](const auto& each) { return each.device.lock(); }, task);
}

bool changesScenes(const ParallelTask& task)
{
    return std::holds_alternative<ParallelTakeScreen>(task) || std::holds_alternative<ParallelCutScreen>(task)
        || std::holds_alternative<ParallelMatchPGM>(task);
}

bool setsFlag(const ParallelTask& task)
{
    return !changesScenes(task);
}

/// One device's task, and the screens it concerns as they were before it.
struct Part {
    ParallelTask task;
    QList<std::shared_ptr<BizModel::Screen>> screens;
    /// The flag that the task sets had its value already, on the device and on each screen.
    bool isAlreadySo = false;
};

/// Whether the flag that the task sets has the value that it asks for.
bool hasTakenEffect(const Part& part)
{
    const auto all = [&](auto flag, bool value) {
        return std::all_of(part.screens.cbegin(), part.screens.cend(), [&](const auto& screen) {
            return ((*screen).*flag)() == value;
        });
    };
    const std::shared_ptr<BizModel::Device> device = deviceOf(part.task);
    if (const auto* freeze = std::get_if<ParallelFreezeScreen>(&part.task))
        return all(&BizModel::Screen::freeze, freeze->freeze);
    if (const auto* ftb = std::get_if<ParallelFTBScreen>(&part.task))
        return all(&BizModel::Screen::FTBEnable, ftb->fadeToBlack);
    if (const auto* swap = std::get_if<ParallelSetSwapStatus>(&part.task))
        return !device || device->swapEnable() == swap->swap;
    if (const auto* load = std::get_if<ParallelSetLoadToPresetPGMStatus>(&part.task))
        return !device || device->loadToPGMEnable() == (load->status == BizModel::Enum::Device::LoadToPGM);
    return true;
}

/// The signal that tells that the task was carried out.
QString signalOf(const ParallelTask& task)
{
    if (std::holds_alternative<ParallelFreezeScreen>(task))
        return QStringLiteral("signalScreenPGMFreezeChanged");
    if (std::holds_alternative<ParallelFTBScreen>(task))
        return QStringLiteral("signalScreenFTBChanged");
    if (std::holds_alternative<ParallelSetSwapStatus>(task))
        return QStringLiteral("signalSwapStateChanged");
    if (std::holds_alternative<ParallelSetLoadToPresetPGMStatus>(task))
        return QStringLiteral("signalLoadToPGMStateChanged");
    return QStringLiteral("signalDeviceScreenLayersChanged");
}

Part makePart(const ParallelTask& task)
{
    Part part{task, {}, false};
    const int mask = std::visit(
        [](const auto& each) {
            if constexpr (
                std::is_same_v<
                    std::decay_t<decltype(each)>,
                    ParallelSetSwapStatus> || std::is_same_v<std::decay_t<decltype(each)>, ParallelSetLoadToPresetPGMStatus>)
                return 0;
            else
                return each.screenTypeMask;
        },
        task);
    const std::shared_ptr<BizModel::Device> device = deviceOf(task);
    const auto selected = device ? device->selectedScreen(mask) : QList<std::weak_ptr<BizModel::Screen>>();
    for (const std::weak_ptr<BizModel::Screen>& each : selected) {
        const std::shared_ptr<BizModel::Screen> screen = each.lock();
        if (screen && (!changesScenes(task) || isIdle(*screen)))
            part.screens += screen;
    }
    part.isAlreadySo = hasTakenEffect(part);
    return part;
}

/// Time that the longest transition of the screens takes.
std::chrono::milliseconds transitionTime(const Part& part)
{
    double seconds = 0.0;
    if (std::holds_alternative<ParallelTakeScreen>(part.task)) {
        for (const std::shared_ptr<BizModel::Screen>& screen : part.screens)
            seconds = std::max(seconds, screen->switchEffectTime());
    }
    return std::chrono::milliseconds(qRound64(seconds * 1000));
}

} // namespace

/// One request from its start to its completion.
class ProxyParallelManager::Round final {
public:
    Round(ModelWatch& tester, const ParallelManager& inner)
        : m_tester(tester)
        , m_inner(inner)
    {
    }

    ParallelTask add(const ParallelTask& task)
    {
        m_parts += makePart(task);
        return task;
    }
    void open() { m_pRequest = m_tester.track(name(), duration()); }
    bool isOpen() const { return m_tester.isOpen(m_pRequest); }

    /// What must be true as soon as the call has returned.
    void returned()
    {
        // The completion comes after the end, which may be now; it is looked at again when it has not come.
        for (const Part& part : std::as_const(m_parts)) {
            if (!changesScenes(part.task))
                continue;
            const bool untouched = !part.screens.isEmpty()
                && std::all_of(part.screens.cbegin(), part.screens.cend(), [](const auto& screen) {
                       return isIdle(*screen);
                   });
            if (untouched && isOpen() && m_pRequest->window->times(signalOf(part.task)) == 0)
                m_tester.report(
                    QStringLiteral("states-before-return"), name(),
                    QStringLiteral("The selected screens are still idle after the call returned."));
        }
        const int count = m_inner.currentTaskCount();
        if (count <= 0 && isOpen())
            m_tester.report(
                QStringLiteral("task-count-before-return"), name(),
                QStringLiteral("currentTaskCount() is %1 while the request runs.").arg(count));
    }

    void refused() { m_tester.untrack(m_pRequest); }

    void ended(bool ok, const QString& text)
    {
        if (!m_tester.completed(m_pRequest))
            return;
        if (!ok)
            return checkFailure(text);
        for (const Part& part : std::as_const(m_parts))
            checkEffect(part);
        const int count = m_inner.currentTaskCount();
        if (count > 0 && m_tester.openRequests() == 0)
            m_tester.report(
                QStringLiteral("task-count-at-completion"), name(),
                QStringLiteral("currentTaskCount() is %1 though no request runs.").arg(count));
    }

    QString name() const
    {
        return m_parts.isEmpty() ? QStringLiteral("a request") : taskName(m_parts.first().task);
    }

private:
    std::chrono::milliseconds duration() const
    {
        std::chrono::milliseconds longest{0};
        for (const Part& part : m_parts)
            longest = std::max(longest, transitionTime(part));
        return longest;
    }

    /// One device's flags are as they were; of a group's devices some may have succeeded.
    void checkFailure(const QString& text)
    {
        m_tester.checkReason(name(), text);
        const bool changed = m_parts.size() == 1 && !m_parts.first().isAlreadySo
            && setsFlag(m_parts.first().task) && hasTakenEffect(m_parts.first());
        if (changed && m_tester.isAlone(m_pRequest))
            m_tester.report(
                QStringLiteral("refusal-without-change"), name(),
                QStringLiteral("The request failed and what it sets has changed."));
    }

    void checkEffect(const Part& part)
    {
        if (!hasTakenEffect(part)) {
            m_tester.report(
                QStringLiteral("success-with-effect"), name(),
                QStringLiteral("The request succeeded and what it sets has not changed."));
            return;
        }
        const QString signal = signalOf(part.task);
        const bool works = changesScenes(part.task) ? !part.screens.isEmpty() : !part.isAlreadySo;
        if (works && m_pRequest->window->times(signal) == 0)
            m_tester.report(
                QStringLiteral("completion-after-signals"), name(),
                QStringLiteral("The completion came, and %1 had not been emitted.").arg(signal));
        else if (setsFlag(part.task) && m_tester.isAlone(m_pRequest))
            checkOnce(part, signal);
    }

    /// A flag is announced once for each screen or device whose flag has changed.
    void checkOnce(const Part& part, const QString& signal)
    {
        QList<const void*> told;
        for (const std::shared_ptr<BizModel::Screen>& screen : part.screens)
            told += screen.get();
        told += deviceOf(part.task).get();
        for (const void* object : std::as_const(told)) {
            const int times = m_pRequest->window->times(signal, object);
            if (times > 1)
                m_tester.report(
                    QStringLiteral("signal-once"), name(),
                    QStringLiteral("%1 came %2 times for one change.").arg(signal).arg(times));
        }
    }

    ModelWatch& m_tester;
    const ParallelManager& m_inner;
    QList<Part> m_parts;
    Tracked m_pRequest;
};

ProxyParallelManager::ProxyParallelManager(ModelWatch& tester, ParallelManager& inner)
    : m_tester(tester)
    , m_inner(inner)
{
}

ProxyParallelManager::~ProxyParallelManager() = default;

bool ProxyParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, bool waitForResult,
    QString* error, Completion callback)
{
    return watch(
        factory, waitForResult, std::move(callback), [&](const ParallelTaskFactory& tasks, Completion end) {
            return m_inner.startParallelRequest(device, tasks, waitForResult, error, std::move(end));
        });
}

bool ProxyParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, Completion completion,
    int count)
{
    return watch(
        factory, false, std::move(completion), [&](const ParallelTaskFactory& tasks, Completion end) {
            return m_inner.startParallelRequest(device, tasks, std::move(end), count);
        });
}

bool ProxyParallelManager::watch(
    const ParallelTaskFactory& factory, bool waits, Completion callback, const Start& start)
{
    const auto round = std::make_shared<Round>(m_tester, m_inner);
    round->open();
    const ParallelTaskFactory tasks = [round, factory](const std::weak_ptr<BizModel::Device>& member) {
        return round->add(factory(member));
    };
    const Completion end = [round, alive = std::weak_ptr<bool>(m_pAlive),
                            callback = std::move(callback)](bool ok, const QString& text) {
        if (alive.lock())
            round->ended(ok, text);
        if (callback)
            callback(ok, text);
    };
    const Clock::time_point begin = Clock::now();
    const bool accepted = start(factory ? tasks : factory, end);
    if (!waits) {
        m_tester.checkDuration(round->name(), begin, m_tester.limits().request);
        if (accepted)
            round->returned();
        else
            round->refused();
    }
    return accepted;
}

} // namespace Orvane::ModelTest::Internal

#include "operations.h"

#include "showclock_p.h"

#include <algorithm>
#include <array>
#include <utility>

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Orvane::MemoryModel {

namespace {

struct Name {
    Operation operation;
    const char* name;
};

constexpr std::array names = {
    Name{Operation::SetPresetOperateMode, "setPresetOperateMode"},
    Name{Operation::SetActivedScreen, "setActivedScreen"},
    Name{Operation::CreateDefaultScreen, "createDefaultScreen"},
    Name{Operation::AppendViewingScreen, "appendViewingScreen"},
    Name{Operation::SetScreenState, "setState"},
    Name{Operation::SetUiScreenIndex, "setUiScreenIndex"},
    Name{Operation::AddOutput, "addOutput"},
    Name{Operation::SetScreensSelected, "setSelected"},
    Name{Operation::CancelScreensSelected, "cancelSelected"},
    Name{Operation::UpdateEffectSpeed, "updateEffectSpeed"},
    Name{Operation::UpdateEffectType, "updateEffectType"},
    Name{Operation::UpdatePGMEditStatus, "updatePGMEditStatus"},
    Name{Operation::AddLayer, "addLayer"},
    Name{Operation::RemoveLayers, "removeLayers"},
    Name{Operation::TopZOrder, "topZOrder"},
    Name{Operation::IncrZOrder, "incrZOrder"},
    Name{Operation::BottomZOrder, "bottomZOrder"},
    Name{Operation::DecrZOrder, "decrZOrder"},
    Name{Operation::SetLayersSelected, "setLayersSelected"},
    Name{Operation::CancelLayersSelected, "cancelLayersSelected"},
    Name{Operation::UpdateWindow, "updateWindow"},
    Name{Operation::BindSource, "bindSource"},
    Name{Operation::CheckOperationResources, "CheckOperationResources"},
    Name{Operation::CreatePresetFile, "createPresetFile"},
    Name{Operation::RemoveFile, "removeFile"},
    Name{Operation::CoverPreset, "coverPreset"},
    Name{Operation::CheckPresetData, "checkPresetData"},
    Name{Operation::CreateKeypadInfo, "createKeypadInfo"},
    Name{Operation::UpdatePresetModelData, "updatePresetModelData"},
    Name{Operation::EditPresetValidityCheck, "editPresetValidityCheck"},
    Name{Operation::PresetSelectedScreens, "presetSelectedScreens"},
    Name{Operation::SetActivedPreset, "setActivedPreset"},
    Name{Operation::AddKeypadFile, "addKeypadFile"},
    Name{Operation::AsyncCreateScreen, "AsyncCreateScreen"},
    Name{Operation::AsyncRemoveLayer, "AsyncRemoveLayer"},
    Name{Operation::AsyncAddCopyLayers, "AsyncAddCopyLayers"},
    Name{Operation::AsyncSaveDeviceData, "AsyncSaveDeviceData"},
    Name{Operation::AsyncRemoveFile, "AsyncRemoveFile"},
    Name{Operation::ParallelTakeScreen, "ParallelTakeScreen"},
    Name{Operation::ParallelCutScreen, "ParallelCutScreen"},
    Name{Operation::ParallelMatchPGM, "ParallelMatchPGM"},
    Name{Operation::ParallelFreezeScreen, "ParallelFreezeScreen"},
    Name{Operation::ParallelFTBScreen, "ParallelFTBScreen"},
    Name{Operation::ParallelSetSwapStatus, "ParallelSetSwapStatus"},
    Name{Operation::ParallelSetLoadToPresetPGMStatus, "ParallelSetLoadToPresetPGMStatus"},
    Name{Operation::SetSamplingType, "setSamplingType"},
    Name{Operation::SampleTBar, "TBarSampling"},
    Name{Operation::SampleLoadPreset, "LoadPresetSampling"},
};

QString currentThreadName()
{
    // The system keeps 15 characters and a terminating zero.
    std::array<char, 16> name{};
    if (pthread_getname_np(pthread_self(), name.data(), name.size()) != 0)
        return {};
    return QString::fromLocal8Bit(name.data());
}

template <typename T> T takeFirst(std::deque<T>& queue)
{
    T first = std::move(queue.front());
    queue.pop_front();
    return first;
}

} // namespace

QString operationName(Operation operation)
{
    const auto* const found = std::find_if(
        names.begin(), names.end(), [operation](const Name& entry) { return entry.operation == operation; });
    return found == names.end() ? QString() : QString::fromLatin1(found->name);
}

std::optional<Operation> findOperation(const QString& name)
{
    const auto* const found = std::find_if(
        names.begin(), names.end(), [&name](const Name& entry) { return name == QLatin1String(entry.name); });
    if (found == names.end())
        return std::nullopt;
    return found->operation;
}

QStringList operationNames()
{
    QStringList list;
    for (const Name& entry : names)
        list += QString::fromLatin1(entry.name);
    return list;
}

void Operations::setListener(JournalListener listener)
{
    // The former listener is destroyed with the argument, after the lock is released.
    const std::lock_guard lock(m_mutex);
    m_listener.swap(listener);
}

void Operations::fail(Operation operation, const QString& text, Times times)
{
    const std::lock_guard lock(m_mutex);
    Orders& orders = m_orders[operation];
    if (times == Times::Once)
        orders.failuresOnce.push_back(text);
    else
        orders.failureAlways = text;
}

void Operations::delay(Operation operation, std::chrono::milliseconds duration, Times times)
{
    const std::lock_guard lock(m_mutex);
    Orders& orders = m_orders[operation];
    if (times == Times::Once)
        orders.delaysOnce.push_back(duration);
    else
        orders.delayAlways = duration;
}

void Operations::clearOrders(Operation operation)
{
    const std::lock_guard lock(m_mutex);
    m_orders.erase(operation);
}

void Operations::clearAllOrders()
{
    const std::lock_guard lock(m_mutex);
    m_orders.clear();
}

void Operations::request(Operation operation, const QString& arguments)
{
    write(operation, arguments, JournalEntry::Phase::Requested);
}

Operations::Verdict Operations::start(Operation operation, const QString& arguments)
{
    write(operation, arguments, JournalEntry::Phase::Started);
    Verdict verdict;
    const std::lock_guard lock(m_mutex);
    const auto found = m_orders.find(operation);
    if (found == m_orders.end())
        return verdict;
    Orders& orders = found->second;
    verdict.delay = orders.delaysOnce.empty() ? orders.delayAlways : takeFirst(orders.delaysOnce);
    if (orders.failuresOnce.empty())
        verdict.failure = orders.failureAlways;
    else
        verdict.failure = takeFirst(orders.failuresOnce);
    return verdict;
}

void Operations::end(Operation operation, const QString& arguments, const std::optional<QString>& failure)
{
    write(operation, arguments, JournalEntry::Phase::Ended, failure);
}

std::optional<QString> Operations::perform(Operation operation, const QString& arguments)
{
    Verdict verdict = start(operation, arguments);
    sleepFor(verdict.delay);
    return std::move(verdict.failure);
}

bool Operations::sleepFor(std::chrono::milliseconds duration)
{
    std::unique_lock lock(m_mutex);
    if (duration.count() <= 0)
        return !m_bStopped;
    return !m_stopping.wait_for(lock, ShowClock::realTime(duration), [this] { return m_bStopped; });
}

void Operations::stop()
{
    const std::lock_guard lock(m_mutex);
    m_bStopped = true;
    m_stopping.notify_all();
}

bool Operations::stopped() const
{
    const std::lock_guard lock(m_mutex);
    return m_bStopped;
}

void Operations::write(
    Operation operation, const QString& arguments, JournalEntry::Phase phase,
    const std::optional<QString>& failure)
{
    JournalListener listener;
    {
        const std::lock_guard lock(m_mutex);
        listener = m_listener;
    }
    if (!listener)
        return;
    JournalEntry entry;
    entry.operation = operationName(operation);
    entry.arguments = arguments;
    entry.phase = phase;
    entry.failure = failure;
    entry.threadName = currentThreadName();
    entry.threadId = static_cast<qint64>(::syscall(SYS_gettid));
    entry.time = std::chrono::steady_clock::now();
    listener(entry);
}

} // namespace Orvane::MemoryModel

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
    return operationNames().value(int(operation));
}

std::optional<Operation> findOperation(const QString& name)
{
    const int place = operationNames().indexOf(name);
    return place < 0 ? std::nullopt : std::optional(Operation(place));
}

QStringList operationNames()
{
    // Never destroyed: the model's threads write their journal until the process is gone.
    static const QStringList& names = *new QStringList(
        QStringLiteral(
            "setPresetOperateMode setActivedScreen createDefaultScreen appendViewingScreen setState "
            "setUiScreenIndex addOutput setSelected cancelSelected updateEffectSpeed "
            "updateEffectType updatePGMEditStatus addLayer removeLayers topZOrder incrZOrder "
            "bottomZOrder decrZOrder setLayersSelected cancelLayersSelected updateWindow bindSource "
            "CheckOperationResources createPresetFile removeFile coverPreset checkPresetData "
            "createKeypadInfo updatePresetModelData editPresetValidityCheck presetSelectedScreens "
            "setActivedPreset addKeypadFile AsyncCreateScreen AsyncRemoveLayer AsyncAddCopyLayers "
            "AsyncSaveDeviceData AsyncRemoveFile ParallelTakeScreen ParallelCutScreen "
            "ParallelMatchPGM ParallelFreezeScreen ParallelFTBScreen ParallelSetSwapStatus "
            "ParallelSetLoadToPresetPGMStatus setSamplingType TBarSampling LoadPresetSampling")
            .split(QLatin1Char(' ')));
    return names;
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

#include "modelwatch_p.h"

#include <QtDebug>

#include <algorithm>
#include <tuple>
#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace std::chrono_literals;

ModelWatch::ModelWatch(
    BizModel::DeviceList& model, ModelLimits limits, std::function<void(const ModelFault&)> found)
    : m_model(model)
    , m_limits(limits)
    , m_found(std::move(found))
    , m_query(model)
    , m_log(
          model, [this](const QString& name) { signalled(name); },
          [this](const ModelFault& fault) { report(fault.rule, fault.call, fault.seen); })
{
    watchRemovals();
    connect(&m_timer, &QTimer::timeout, this, &ModelWatch::check);
    m_timer.start(250ms);
    check();
}

ModelWatch::~ModelWatch()
{
    stop();
}

bool ModelWatch::stop()
{
    m_timer.stop();
    // The model goes next. A query that takes as long as a request may is taken for one that never returns.
    const bool free = m_query.finish(m_limits.completion);
    if (!free)
        qWarning("Model tester: A query has not returned; its thread is left in the model.");
    return free;
}

void ModelWatch::report(const QString& rule, const QString& call, const QString& seen)
{
    {
        const std::lock_guard lock(m_mutex);
        const QString key = rule + QLatin1Char('|') + call;
        if (m_reported.contains(key))
            return;
        m_reported.insert(key);
        m_faults += ModelFault{rule, call, seen};
    }
    qWarning("Model tester: [%s] %s: %s", qUtf8Printable(rule), qUtf8Printable(call), qUtf8Printable(seen));
    m_found({rule, call, seen});
}

// ---- Signals --------------------------------------------------------------------------------------------

/// Looks at the model while the signal is delivered: it must be as the signal says, for what changes later
/// needs another one.
void ModelWatch::signalled(const QString& name)
{
    const quint64 signalsNow = m_log.count();
    const auto now = m_query.ask(m_limits.query);
    if (now)
        findChanges(*now, signalsNow);
    else
        report(
            QStringLiteral("query-during-signal"), name,
            QStringLiteral("A query on another thread was not answered while the signal was delivered. Is it "
                           "emitted under a lock, or does the query wait for this thread?"));
}

void ModelWatch::watchRemovals()
{
    using BizModel::DeviceList;
    const auto watch = [this](auto signal, const QString& name) {
        connect(
            &m_model, signal, this,
            [this, name](const auto&... arguments) {
                removed(name, std::get<sizeof...(arguments) - 1>(std::tie(arguments...)));
            },
            Qt::DirectConnection);
    };
    watch(&DeviceList::signalDeviceRemoved, QStringLiteral("signalDeviceRemoved"));
    watch(&DeviceList::signalScreenRemoved, QStringLiteral("signalScreenRemoved"));
    watch(&DeviceList::signalLayerRemoved, QStringLiteral("signalLayerRemoved"));
    watch(&DeviceList::signalInputRemoved, QStringLiteral("signalInputRemoved"));
    watch(&DeviceList::signalPresetRemoved, QStringLiteral("signalPresetRemoved"));
}

void ModelWatch::removed(const QString& call, const std::shared_ptr<const void>& object)
{
    const std::lock_guard lock(m_mutex);
    m_removed += Removed{call, object, Clock::now() + m_limits.removal};
}

// ---- Requests -------------------------------------------------------------------------------------------

Tracked ModelWatch::track(const QString& call, std::chrono::milliseconds extra)
{
    const auto request = std::make_shared<TrackedRequest>();
    request->call = call;
    request->due = Clock::now() + m_limits.completion + extra;
    request->window = m_log.open();
    const std::lock_guard lock(m_mutex);
    request->alone = m_requests.isEmpty();
    for (const Tracked& other : std::as_const(m_requests))
        other->alone = false;
    m_requests += request;
    return request;
}

bool ModelWatch::completed(const Tracked& request)
{
    int completions = 0;
    {
        const std::lock_guard lock(m_mutex);
        completions = ++request->completions;
        m_requests.removeOne(request);
    }
    if (completions > 1)
        report(
            QStringLiteral("completion-once"), request->call,
            QStringLiteral("The completion was called %1 times.").arg(completions));
    return completions == 1;
}

void ModelWatch::untrack(const Tracked& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.removeOne(request);
}

bool ModelWatch::isAlone(const Tracked& request) const
{
    const std::lock_guard lock(m_mutex);
    return request->alone;
}

bool ModelWatch::isOpen(const Tracked& request) const
{
    const std::lock_guard lock(m_mutex);
    return request->completions == 0;
}

int ModelWatch::openRequests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests.size();
}

void ModelWatch::checkDuration(const QString& call, Clock::time_point start, std::chrono::milliseconds limit)
{
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    if (taken > limit)
        report(
            QStringLiteral("request-in-time"), call,
            QStringLiteral("It returned after %1 ms, the limit is %2 ms.")
                .arg(taken.count())
                .arg(limit.count()));
}

void ModelWatch::checkReason(const QString& call, const QString& reason)
{
    if (reason.isEmpty())
        report(
            QStringLiteral("refusal-with-reason"), call,
            QStringLiteral("It failed without a word for the user."));
}

bool ModelWatch::operate(const Operation& operation, const std::function<bool()>& request)
{
    const ModelSnapshot before = takeSnapshot(m_model);
    const Tracked tracked = track(operation.call, std::chrono::hours(1)); // it has no completion to come
    const quint64 signalsBefore = m_log.count();
    const Clock::time_point start = Clock::now();
    const bool accepted = request();
    if (!operation.mayTakeItsTime)
        checkDuration(operation.call, start, m_limits.request);
    untrack(tracked);
    if (!accepted) {
        if (operation.error)
            checkReason(operation.call, *operation.error);
        const QStringList changed = differences(before, takeSnapshot(m_model));
        if (!changed.isEmpty() && isAlone(tracked))
            report(
                QStringLiteral("refusal-without-change"), operation.call,
                QStringLiteral("It was refused and changed: %1.").arg(changed.join(QStringLiteral(", "))));
        return false;
    }
    const QString wrong = operation.wrong && isAlone(tracked) ? operation.wrong() : QString();
    if (!wrong.isEmpty())
        report(QStringLiteral("success-with-effect"), operation.call, wrong);
    if (!operation.signal.isEmpty()) {
        const std::lock_guard lock(m_mutex);
        m_changes.insert(
            operation.call,
            {{operation.signal},
             signalsBefore,
             Clock::now() + m_limits.announcement,
             QStringLiteral("It was done")});
    }
    return true;
}

// ---- Regular comparison ---------------------------------------------------------------------------------

void ModelWatch::check()
{
    const quint64 signalsNow = m_log.count();
    const auto now = m_query.ask(m_limits.query);
    if (now)
        findChanges(*now, signalsNow);
    else
        report(
            QStringLiteral("query-in-time"), QStringLiteral("queries of the active device"),
            QStringLiteral("A query on another thread was not answered within %1 ms while the GUI thread was "
                           "busy.")
                .arg(m_limits.query.count()));
    findOverdue();
}

/// Every value that differs from the last one needs a signal after those that had come before the last
/// snapshot was begun.
void ModelWatch::findChanges(const ModelSnapshot& now, quint64 signalsNow)
{
    const std::lock_guard lock(m_mutex);
    if (now.number <= m_last.number)
        return; // no answer, or one that another thread has overtaken
    const QStringList names = differences(m_last, now);
    for (const QString& name : names) {
        const ModelSnapshot::Value& value = now.values[name];
        const auto earlier = m_changes.constFind(name);
        if (value.announcedBy.isEmpty() || (earlier != m_changes.cend() && !isAnnounced(*earlier)))
            continue;
        m_changes.insert(
            name,
            {value.announcedBy, m_nSignalsAtLast, Clock::now() + m_limits.announcement,
             QStringLiteral("It went from \"%1\" to \"%2\"").arg(m_last.values[name].text, value.text)});
    }
    m_last = now;
    m_nSignalsAtLast = signalsNow;
}

void ModelWatch::findOverdue()
{
    QList<ModelFault> found;
    const Clock::time_point now = Clock::now();
    {
        const std::lock_guard lock(m_mutex);
        found = overdueChanges(now) + overdueCompletions(now) + overdueRemovals(now);
    }
    for (const ModelFault& fault : std::as_const(found))
        report(fault.rule, fault.call, fault.seen);
}

bool ModelWatch::isAnnounced(const OpenChange& change) const
{
    return std::any_of(change.announcedBy.cbegin(), change.announcedBy.cend(), [&](const QString& name) {
        return m_log.cameSince(name, change.signalsBefore);
    });
}

QList<ModelFault> ModelWatch::overdueChanges(Clock::time_point now)
{
    QList<ModelFault> found;
    for (auto change = m_changes.begin(); change != m_changes.end();) {
        const bool announced = isAnnounced(*change);
        if (!announced && change->due > now) {
            ++change;
            continue;
        }
        if (!announced)
            found += ModelFault{
                QStringLiteral("signal-after-change"), change.key(),
                QStringLiteral("%1, and %2 did not come after it.")
                    .arg(change->text, change->announcedBy.join(QStringLiteral(" or ")))};
        change = m_changes.erase(change);
    }
    return found;
}

QList<ModelFault> ModelWatch::overdueCompletions(Clock::time_point now)
{
    QList<ModelFault> found;
    for (const Tracked& request : std::as_const(m_requests)) {
        if (request->due <= now && !std::exchange(request->overdue, true))
            found += ModelFault{
                QStringLiteral("completion-comes"), request->call,
                QStringLiteral("The completion has not been called in time.")};
    }
    return found;
}

QList<ModelFault> ModelWatch::overdueRemovals(Clock::time_point now)
{
    QList<ModelFault> found;
    for (auto each = m_removed.begin(); each != m_removed.end();) {
        const bool gone = each->object.expired();
        if (!gone && each->due > now) {
            ++each;
            continue;
        }
        if (!gone)
            found += ModelFault{
                QStringLiteral("removed-objects-expire"), each->call,
                QStringLiteral("Somebody still keeps the object.")};
        each = m_removed.erase(each);
    }
    return found;
}

bool ModelWatch::isWaiting() const
{
    const std::lock_guard lock(m_mutex);
    const bool open = std::any_of(
        m_requests.cbegin(), m_requests.cend(), [](const auto& request) { return !request->overdue; });
    return open || !m_changes.isEmpty() || !m_removed.isEmpty();
}

QList<ModelFault> ModelWatch::faults() const
{
    const std::lock_guard lock(m_mutex);
    return m_faults;
}

} // namespace Orvane::ModelTest::Internal

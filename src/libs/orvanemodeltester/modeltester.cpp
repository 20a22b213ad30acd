#include "modeltester.h"

#include "modeltester_p.h"
#include "proxies_p.h"

#include <QMetaMethod>
#include <QtDebug>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <tuple>
#include <utility>

namespace Orvane::ModelTest {

namespace Internal {

using namespace std::chrono_literals;

namespace {

const QMetaObject& listMeta = BizModel::DeviceList::staticMetaObject;

/// A question to the model, shared by who asks and who waits for the answer.
struct Question {
    std::mutex mutex;
    std::condition_variable answered;
    std::shared_ptr<ModelSnapshot> answer;
};

} // namespace

ModelTesterPrivate::ModelTesterPrivate(ModelTester& tester, BizModel::DeviceList& model, ModelLimits limits)
    : m_tester(tester)
    , m_model(model)
    , m_limits(limits)
{
    // As a signal spy does it: a receiver whose every method, by its number, is the list's signal.
    for (int index = QObject::staticMetaObject.methodCount(); index < listMeta.methodCount(); ++index) {
        if (listMeta.method(index).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&model, index, this, index, Qt::DirectConnection);
    }
    watchRemovals();
    if (auto* const inner = ParallelControl::ParallelManager::instance())
        m_pParallel = std::make_unique<ProxyParallelManager>(*this, *inner);
    if (auto* const inner = ModelControl::AsyncManager::instance())
        m_pAsync = std::make_unique<ProxyAsyncManager>(*this, *inner);
    if (auto* const inner = ModelControl::ControllerFactory::instance())
        m_pControllers = std::make_unique<ProxyControllerFactory>(*this, *inner);
    connect(&m_timer, &QTimer::timeout, this, &ModelTesterPrivate::check);
    m_timer.start(250ms);
    check();
}

ModelTesterPrivate::~ModelTesterPrivate() = default;

void ModelTesterPrivate::report(const QString& rule, const QString& call, const QString& seen)
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
    Q_EMIT m_tester.faultFound(rule, call, seen);
}

// ---- Signals --------------------------------------------------------------------------------------------

int ModelTesterPrivate::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    const int own = QObject::qt_metacall(call, id, arguments);
    if (own >= 0 && call == QMetaObject::InvokeMetaMethod)
        signalled(QString::fromLatin1(listMeta.method(id).name()));
    return own;
}

void ModelTesterPrivate::signalled(const QString& name)
{
    {
        const std::lock_guard lock(m_mutex);
        m_lastSignals[name] = ++m_nSignals;
    }
    if (!ask())
        report(
            QStringLiteral("query-during-signal"), name,
            QStringLiteral("A query on another thread was not answered while the signal was delivered. Is it "
                           "emitted under a lock, or does the query wait for this thread?"));
}

quint64 ModelTesterPrivate::signalCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_nSignals;
}

bool ModelTesterPrivate::signalledSince(const QString& name, quint64 count) const
{
    const std::lock_guard lock(m_mutex);
    return m_lastSignals.value(name) > count;
}

void ModelTesterPrivate::watchRemovals()
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

void ModelTesterPrivate::removed(const QString& call, const std::shared_ptr<const void>& object)
{
    const std::lock_guard lock(m_mutex);
    m_removed += Removed{call, object, Clock::now() + m_limits.removal};
}

// ---- Requests -------------------------------------------------------------------------------------------

std::shared_ptr<TrackedRequest> ModelTesterPrivate::track(
    const QString& call, std::chrono::milliseconds extra)
{
    const auto request = std::make_shared<TrackedRequest>();
    request->call = call;
    request->due = Clock::now() + m_limits.completion + extra;
    const std::lock_guard lock(m_mutex);
    request->signalsBefore = m_nSignals;
    m_requests += request;
    return request;
}

bool ModelTesterPrivate::completed(const std::shared_ptr<TrackedRequest>& request)
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

void ModelTesterPrivate::untrack(const std::shared_ptr<TrackedRequest>& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.removeOne(request);
}

int ModelTesterPrivate::openRequests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests.size();
}

void ModelTesterPrivate::checkDuration(
    const QString& call, Clock::time_point start, std::chrono::milliseconds limit)
{
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    if (taken > limit)
        report(
            QStringLiteral("request-in-time"), call,
            QStringLiteral("It returned after %1 ms, the limit is %2 ms.")
                .arg(taken.count())
                .arg(limit.count()));
}

bool ModelTesterPrivate::refusable(const QString& call, const std::function<bool()>& request)
{
    const ModelSnapshot before = takeSnapshot(m_model);
    const Clock::time_point start = Clock::now();
    const bool accepted = request();
    checkDuration(call, start, m_limits.request);
    if (accepted)
        return true;
    const QStringList changed = differences(before, takeSnapshot(m_model));
    if (!changed.isEmpty())
        report(
            QStringLiteral("refusal-without-change"), call,
            QStringLiteral("It was refused and changed: %1.").arg(changed.join(QStringLiteral(", "))));
    return false;
}

// ---- Regular comparison ---------------------------------------------------------------------------------

std::shared_ptr<ModelSnapshot> ModelTesterPrivate::ask()
{
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_bAsking, true))
            return std::make_shared<ModelSnapshot>(); // another question is open, which tells as much
    }
    const auto question = std::make_shared<Question>();
    // Not joined: a model that never answers must not hold up who found that out.
    std::thread([question, &model = m_model] {
        auto answer = std::make_shared<ModelSnapshot>(takeSnapshot(model));
        const std::lock_guard lock(question->mutex);
        question->answer = std::move(answer);
        question->answered.notify_all();
    }).detach();
    std::shared_ptr<ModelSnapshot> answer;
    {
        std::unique_lock lock(question->mutex);
        question->answered.wait_for(lock, m_limits.query, [&] { return question->answer != nullptr; });
        answer = question->answer;
    }
    const std::lock_guard lock(m_mutex);
    m_bAsking = false;
    return answer;
}

void ModelTesterPrivate::check()
{
    const quint64 signalsNow = signalCount();
    const auto now = ask();
    if (!now)
        report(
            QStringLiteral("query-in-time"), QStringLiteral("queries of the active device"),
            QStringLiteral("A query on another thread was not answered within %1 ms while the GUI thread was "
                           "busy.")
                .arg(m_limits.query.count()));
    else if (!now->values.isEmpty())
        findChanges(*now, signalsNow);
    findOverdue();
}

/// Every value that differs from the last one needs a signal since then, or soon.
void ModelTesterPrivate::findChanges(const ModelSnapshot& now, quint64 signalsNow)
{
    const std::lock_guard lock(m_mutex);
    if (m_pLast) {
        const QStringList names = differences(*m_pLast, now);
        for (const QString& name : names) {
            if (m_changes.contains(name))
                continue;
            const ModelSnapshot::Value& value = now.values[name];
            m_changes.insert(
                name,
                {value.announcedBy, m_nSignalsAtLast, Clock::now() + m_limits.announcement,
                 QStringLiteral("from \"%1\" to \"%2\"").arg(m_pLast->values[name].text, value.text)});
        }
    }
    m_pLast = std::make_shared<ModelSnapshot>(now);
    m_nSignalsAtLast = signalsNow;
}

void ModelTesterPrivate::findOverdue()
{
    QList<ModelFault> found;
    const Clock::time_point now = Clock::now();
    {
        const std::lock_guard lock(m_mutex);
        for (auto change = m_changes.begin(); change != m_changes.end();) {
            const bool announced = std::any_of(
                change->announcedBy.cbegin(), change->announcedBy.cend(),
                [&](const QString& name) { return m_lastSignals.value(name) > change->signalsBefore; });
            if (!announced && change->due > now) {
                ++change;
                continue;
            }
            if (!announced)
                found += ModelFault{
                    QStringLiteral("signal-after-change"), change.key(),
                    QStringLiteral("It went %1 without %2.")
                        .arg(change->text, change->announcedBy.join(QStringLiteral(" or ")))};
            change = m_changes.erase(change);
        }
        for (const std::shared_ptr<TrackedRequest>& request : std::as_const(m_requests)) {
            if (request->due <= now && !std::exchange(request->overdue, true))
                found += ModelFault{
                    QStringLiteral("completion-comes"), request->call,
                    QStringLiteral("The completion has not been called in time.")};
        }
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
    }
    for (const ModelFault& fault : std::as_const(found))
        report(fault.rule, fault.call, fault.seen);
}

bool ModelTesterPrivate::isWaiting() const
{
    const std::lock_guard lock(m_mutex);
    const bool open = std::any_of(
        m_requests.cbegin(), m_requests.cend(), [](const auto& request) { return !request->overdue; });
    return open || !m_changes.isEmpty() || !m_removed.isEmpty();
}

QList<ModelFault> ModelTesterPrivate::faults() const
{
    const std::lock_guard lock(m_mutex);
    return m_faults;
}

} // namespace Internal

ModelTester::ModelTester(BizModel::DeviceList& model, ModelLimits limits, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Internal::ModelTesterPrivate>(*this, model, limits))
{
}

ModelTester::~ModelTester() = default;

QList<ModelFault> ModelTester::faults() const
{
    return d->faults();
}

void ModelTester::check()
{
    d->check();
}

bool ModelTester::isWaiting() const
{
    return d->isWaiting();
}

} // namespace Orvane::ModelTest

#include "modelwatch_p.h"

#include <QMetaMethod>
#include <QtDebug>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <tuple>
#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace std::chrono_literals;

namespace {

const QMetaObject& listMeta = BizModel::DeviceList::staticMetaObject;

}

/// A question to the model, shared by who asks and who waits for the answer.
class ModelWatch::Question final {
public:
    void setAnswer(std::shared_ptr<ModelSnapshot> answer)
    {
        const std::lock_guard lock(m_mutex);
        m_pAnswer = std::move(answer);
        m_answered.notify_all();
    }
    /// Empty when there is none within the time.
    std::shared_ptr<ModelSnapshot> wait(std::chrono::milliseconds limit)
    {
        std::unique_lock lock(m_mutex);
        m_answered.wait_for(lock, limit, [this] { return m_pAnswer != nullptr; });
        return m_pAnswer;
    }

private:
    /// Guards m_pAnswer.
    std::mutex m_mutex;
    std::condition_variable m_answered;
    std::shared_ptr<ModelSnapshot> m_pAnswer;
};

ModelWatch::ModelWatch(
    BizModel::DeviceList& model, ModelLimits limits, std::function<void(const ModelFault&)> found)
    : m_model(model)
    , m_limits(limits)
    , m_found(std::move(found))
{
    // As a signal spy does it: a receiver whose every method, by its number, is the list's signal.
    for (int index = QObject::staticMetaObject.methodCount(); index < listMeta.methodCount(); ++index) {
        if (listMeta.method(index).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&model, index, this, index, Qt::DirectConnection);
    }
    watchRemovals();
    connect(&m_timer, &QTimer::timeout, this, &ModelWatch::check);
    m_timer.start(250ms);
    check();
}

ModelWatch::~ModelWatch()
{
    // The model goes next, and the question should be through by then.
    if (m_pQuestion)
        m_pQuestion->wait(m_limits.query);
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

int ModelWatch::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    const int own = QObject::qt_metacall(call, id, arguments);
    if (own >= 0 && call == QMetaObject::InvokeMetaMethod)
        signalled(QString::fromLatin1(listMeta.method(id).name()));
    return own;
}

void ModelWatch::signalled(const QString& name)
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

quint64 ModelWatch::signalCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_nSignals;
}

bool ModelWatch::signalledSince(const QString& name, quint64 count) const
{
    const std::lock_guard lock(m_mutex);
    return m_lastSignals.value(name) > count;
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

std::shared_ptr<TrackedRequest> ModelWatch::track(const QString& call, std::chrono::milliseconds extra)
{
    const auto request = std::make_shared<TrackedRequest>();
    request->call = call;
    request->due = Clock::now() + m_limits.completion + extra;
    const std::lock_guard lock(m_mutex);
    request->signalsBefore = m_nSignals;
    m_requests += request;
    return request;
}

bool ModelWatch::completed(const std::shared_ptr<TrackedRequest>& request)
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

void ModelWatch::untrack(const std::shared_ptr<TrackedRequest>& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.removeOne(request);
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

bool ModelWatch::refusable(const QString& call, const std::function<bool()>& request)
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

std::shared_ptr<ModelSnapshot> ModelWatch::ask()
{
    const auto question = std::make_shared<Question>();
    {
        const std::lock_guard lock(m_mutex);
        if (m_pQuestion && !m_pQuestion->wait(0ms))
            return std::make_shared<ModelSnapshot>(); // one is open, and who asked it says what comes of it
        m_pQuestion = question;
    }
    // Not joined: a model that never answers must not hold up who found that out.
    std::thread([question, &model = m_model] {
        question->setAnswer(std::make_shared<ModelSnapshot>(takeSnapshot(model)));
    }).detach();
    return question->wait(m_limits.query);
}

void ModelWatch::check()
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
void ModelWatch::findChanges(const ModelSnapshot& now, quint64 signalsNow)
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

void ModelWatch::findOverdue()
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

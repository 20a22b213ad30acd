#pragma once

#include "modelfault.h"
#include "modelquery_p.h"
#include "modelsnapshot_p.h"
#include "signallog_p.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <functional>
#include <mutex>

namespace Orvane::ModelTest::Internal {

using Clock = std::chrono::steady_clock;

/// A request from its start to its completion, or an operation until it returns. Its members but the window
/// are guarded by the watch.
struct TrackedRequest {
    QString call;
    Clock::time_point due;
    /// The signals since the request was made.
    std::shared_ptr<const SignalWindow> window;
    int completions = 0;
    bool overdue = false;
    /// No other request ran at the same time.
    bool alone = true;
};
using Tracked = std::shared_ptr<TrackedRequest>;

/// Tracks a model's requests, signals and values, and finds what breaks a rule.
class ModelWatch final : public QObject {
public:
    /// @p found is called for every fault, on the thread on which it was seen.
    ModelWatch(BizModel::DeviceList& model, ModelLimits limits, std::function<void(const ModelFault&)> found);
    ~ModelWatch() override;

    void report(const QString& rule, const QString& call, const QString& seen);

    /// @name For the proxies, on any thread
    /// @{
    const ModelLimits& limits() const { return m_limits; }
    BizModel::DeviceList& model() const { return m_model; }
    Tracked track(const QString& call, std::chrono::milliseconds extra);
    /// False when the completion is not the first.
    bool completed(const Tracked& request);
    void untrack(const Tracked& request);
    bool isAlone(const Tracked& request) const;
    bool isOpen(const Tracked& request) const;
    int openRequests() const;
    void checkDuration(const QString& call, Clock::time_point start, std::chrono::milliseconds limit);
    /// A failure needs a reason in words for the user.
    void checkReason(const QString& call, const QString& reason);

    /// What is known of an operation that a controller carries out while the caller waits.
    struct Operation {
        QString call;
        /// Says what is not as the operation sets it, after one that succeeded; empty when all is.
        std::function<QString()> wrong;
        /// Tells that it was done; empty when there is none.
        QString signal;
        /// Where the reason of a refusal is put; null when there is no such place.
        const QString* error = nullptr;
        bool mayTakeItsTime = false;
    };
    /// Runs the operation and looks at what came of it.
    bool operate(const Operation& operation, const std::function<bool()>& request);
    /// @}

    void check();
    /// Ends the comparisons. False when a query that never returns keeps a thread in the model.
    bool stop();
    bool isWaiting() const;
    QList<ModelFault> faults() const;

private:
    /// Something that must be announced.
    struct OpenChange {
        QStringList announcedBy;
        quint64 signalsBefore = 0;
        Clock::time_point due;
        QString text;
    };
    struct Removed {
        QString call;
        std::weak_ptr<const void> object;
        Clock::time_point due;
    };

    void signalled(const QString& name);
    void watchRemovals();
    void removed(const QString& call, const std::shared_ptr<const void>& object);
    void findChanges(const ModelSnapshot& now, quint64 signalsNow);
    bool isAnnounced(const OpenChange& change) const;
    void findOverdue();
    /// The overdue ones of each kind, which they end. The mutex is held.
    QList<ModelFault> overdueChanges(Clock::time_point now);
    QList<ModelFault> overdueCompletions(Clock::time_point now);
    QList<ModelFault> overdueRemovals(Clock::time_point now);

    BizModel::DeviceList& m_model;
    const ModelLimits m_limits;
    const std::function<void(const ModelFault&)> m_found;
    ModelQuery m_query;

    /// Guards all that follows but the log and the timer.
    mutable std::mutex m_mutex;
    QList<ModelFault> m_faults;
    QSet<QString> m_reported;
    QList<Tracked> m_requests;
    QHash<QString, OpenChange> m_changes;
    QList<Removed> m_removed;
    /// The newest, and how many signals had come before it was begun.
    ModelSnapshot m_last;
    quint64 m_nSignalsAtLast = 0;

    SignalLog m_log;
    QTimer m_timer;
};

} // namespace Orvane::ModelTest::Internal

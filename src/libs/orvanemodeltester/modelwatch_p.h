#pragma once

#include "modelfault.h"
#include "modelsnapshot_p.h"

#include <QElapsedTimer>
#include <QHash>
#include <QSet>
#include <QTimer>

#include <functional>
#include <mutex>

namespace Orvane::ModelTest::Internal {

using Clock = std::chrono::steady_clock;

/// A request that was accepted, until its completion has come.
struct TrackedRequest {
    QString call;
    Clock::time_point due;
    /// Signals that had been emitted when the request was made.
    quint64 signalsBefore = 0;
    int completions = 0;
    bool overdue = false;
};

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
    quint64 signalCount() const;
    /// Whether the signal has come after so many.
    bool signalledSince(const QString& name, quint64 count) const;
    std::shared_ptr<TrackedRequest> track(const QString& call, std::chrono::milliseconds extra);
    /// False when the completion is not the first.
    bool completed(const std::shared_ptr<TrackedRequest>& request);
    void untrack(const std::shared_ptr<TrackedRequest>& request);
    int openRequests() const;
    void checkDuration(const QString& call, Clock::time_point start, std::chrono::milliseconds limit);
    /// Runs a request that may be refused; one that was must have changed nothing.
    bool refusable(const QString& call, const std::function<bool()>& request);
    /// @}

    void check();
    bool isWaiting() const;
    QList<ModelFault> faults() const;

private:
    class Question;
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

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;
    void signalled(const QString& name);
    void watchRemovals();
    void removed(const QString& call, const std::shared_ptr<const void>& object);
    /// Asks the model on a thread of its own; empty when it does not answer in time.
    std::shared_ptr<ModelSnapshot> ask();
    void findChanges(const ModelSnapshot& now, quint64 signalsNow);
    void findOverdue();

    BizModel::DeviceList& m_model;
    const ModelLimits m_limits;
    const std::function<void(const ModelFault&)> m_found;

    /// Guards all that follows but the timer.
    mutable std::mutex m_mutex;
    QList<ModelFault> m_faults;
    QSet<QString> m_reported;
    quint64 m_nSignals = 0;
    /// Number of the last signal of each name.
    QHash<QString, quint64> m_lastSignals;
    QList<std::shared_ptr<TrackedRequest>> m_requests;
    QHash<QString, OpenChange> m_changes;
    QList<Removed> m_removed;
    std::shared_ptr<ModelSnapshot> m_pLast;
    quint64 m_nSignalsAtLast = 0;
    /// The last one; open while it has no answer.
    std::shared_ptr<Question> m_pQuestion;

    QTimer m_timer;
};

} // namespace Orvane::ModelTest::Internal

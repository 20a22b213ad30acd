#pragma once

#include "bizmodel/screen.h"
#include "completion.h"
#include "parallelcontrol/paralleltasks.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace Orvane::Bridge {

/// Whose part the task is.
inline std::weak_ptr<BizModel::Device> deviceOf(const ParallelControl::ParallelTask& task)
{
    return std::visit([](const auto& each) { return each.device; }, task);
}

/// What the task's screens are doing meanwhile; `Normal` for a task that leaves their scenes as they are.
inline BizModel::Screen::State busyState(const ParallelControl::ParallelTask& task)
{
    using State = BizModel::Screen::State;
    return std::holds_alternative<ParallelControl::ParallelTakeScreen>(task) ? State::Taking
        : std::holds_alternative<ParallelControl::ParallelCutScreen>(task)   ? State::Cut
        : std::holds_alternative<ParallelControl::ParallelMatchPGM>(task)    ? State::MatchingPGM
                                                                             : State::Normal;
}

/// What one call of `startParallelRequest` asked for: so many tasks, and one end.
class ParallelRound {
public:
    /// @p callback is called once, by the thread that ends the last task.
    ParallelRound(int tasks, Completion callback)
        : m_callback(std::move(callback))
        , m_nRemaining(tasks)
    {
    }

    /// The round has failed when one task has; the first failure's text counts. Any thread.
    void taskEnded(bool ok, const QString& text)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!ok && std::exchange(m_bOk, false))
                m_strError = text;
            if (--m_nRemaining > 0)
                return;
        }
        // Only the last task's thread comes here, and nobody writes the outcome any more.
        if (m_callback)
            m_callback(m_bOk, m_strError);
        const std::lock_guard lock(m_mutex);
        m_bEnded = true;
        m_ended.notify_all();
    }

    /// Waits for the end, and its callback; without a limit as long as it takes.
    bool wait(QString& error, std::optional<std::chrono::milliseconds> limit = {})
    {
        const auto hasEnded = [this] { return m_bEnded; };
        std::unique_lock lock(m_mutex);
        if (!limit)
            m_ended.wait(lock, hasEnded);
        else
            m_ended.wait_for(lock, *limit, hasEnded);
        error = m_bEnded ? m_strError : QStringLiteral("The request has not ended in time.");
        return m_bEnded && m_bOk;
    }

private:
    const Completion m_callback;

    /// Guards all that follows: tasks end on any thread, and the caller of `startParallelRequest` waits.
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_nRemaining;
    bool m_bOk = true;
    bool m_bEnded = false;
    QString m_strError;
};

} // namespace Orvane::Bridge

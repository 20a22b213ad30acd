#include "bridge/guiparallelmanager.h"

#include "bizmodel/devicelist.h"

#include <QMetaObject>
#include <QThread>

#include <condition_variable>
#include <mutex>
#include <utility>

namespace Orvane::Bridge {

using namespace ParallelControl;

namespace {

/// What one call of `startParallelRequest` asked for: so many tasks, and one end.
class ParallelRound final {
public:
    ParallelRound(int tasks, Completion callback)
        : m_callback(std::move(callback))
        , m_nRemaining(tasks)
    {
    }

    void taskEnded(bool ok, const QString& text)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!ok && std::exchange(m_bOk, false))
                m_strError = text;
            if (--m_nRemaining > 0)
                return;
        }
        // Only the last task's end comes here, and nobody writes the outcome any more.
        if (m_callback)
            m_callback(m_bOk, m_strError);
        const std::lock_guard lock(m_mutex);
        m_bEnded = true;
        m_ended.notify_all();
    }

    bool wait(std::chrono::milliseconds limit, QString& error)
    {
        std::unique_lock lock(m_mutex);
        const bool ended = m_ended.wait_for(lock, limit, [this] { return m_bEnded; });
        error = ended ? m_strError : QStringLiteral("The request has not ended in time.");
        return ended && m_bOk;
    }

private:
    const Completion m_callback;
    /// Guards all that follows.
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_nRemaining;
    bool m_bOk = true;
    bool m_bEnded = false;
    QString m_strError;
};

} // namespace

GuiParallelManager::GuiParallelManager(std::chrono::milliseconds waitLimit)
    : m_waitLimit(waitLimit)
{
}

GuiParallelManager::~GuiParallelManager() = default;

bool GuiParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, bool waitForResult,
    QString* error, Completion callback)
{
    QString reason;
    const BizModel::DeviceList* const list = BizModel::DeviceList::instance();
    const auto members =
        list ? list->groupDevices(device, true, false) : QList<std::weak_ptr<BizModel::Device>>();
    if (waitForResult && QThread::currentThread() == m_context.thread())
        reason = QStringLiteral("The thread that carries out requests cannot wait for one.");
    else if (!factory || members.isEmpty())
        reason =
            factory ? QStringLiteral("The device is gone.") : QStringLiteral("The request has no tasks.");
    bool ok = reason.isEmpty();
    if (ok) {
        const auto round = std::make_shared<ParallelRound>(members.size(), std::move(callback));
        *m_pTaskCount += members.size();
        for (const std::weak_ptr<BizModel::Device>& member : members) {
            const ParallelTask task = factory(member);
            begin(task);
            const OpenRequest end(
                taskName(task),
                [round, count = m_pTaskCount, done = doneOf(task)](bool ended, const QString& text) {
                    --*count;
                    if (done)
                        done(ended, text);
                    round->taskEnded(ended, text);
                });
            QMetaObject::invokeMethod(
                &m_context, [this, task, end] { perform(task, end); }, Qt::QueuedConnection);
        }
        ok = !waitForResult || round->wait(m_waitLimit, reason);
    }
    if (error)
        *error = reason;
    return ok;
}

int GuiParallelManager::currentTaskCount() const
{
    return *m_pTaskCount;
}

} // namespace Orvane::Bridge

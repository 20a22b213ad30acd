#include "painter_p.h"

#include "surfacerecord_p.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

/// Shared with the event loop, which may come to the rest of the jobs after the painter is gone.
struct Painter::State : std::enable_shared_from_this<Painter::State> {
    struct Waiting {
        PaintSubject subject;
        Job job;
    };

    bool isPainting() const { return m_painter != std::thread::id(); }
    bool isOtherPainting() const { return isPainting() && m_painter != std::this_thread::get_id(); }

    /// Puts the job behind the others. Returns the one of the same subject that gives way, to be destroyed
    /// without the lock.
    Job enqueue(const PaintSubject& subject, Job job)
    {
        Job replaced;
        const auto same = std::find_if(m_waiting.begin(), m_waiting.end(), [&](const Waiting& waiting) {
            return waiting.subject == subject;
        });
        if (same != m_waiting.end()) {
            replaced = std::move(same->job);
            m_waiting.erase(same);
        }
        m_waiting.push_back({subject, std::move(job)});
        return replaced;
    }

    void run(std::unique_lock<std::mutex>& lock);
    void leaveRestToEventLoop();

    // Guards all that follows.
    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::deque<Waiting> m_waiting;
    /// The thread that paints.
    std::thread::id m_painter;
    /// Jobs and single requests that have begun.
    quint64 m_nBegun = 0;
    /// Single requests that are being sent.
    int m_nSending = 0;
    bool m_bEventPosted = false;
    bool m_bStopped = false;
};

/// Runs the waiting jobs, a limited number in a row. Called with the lock, when nobody paints.
void Painter::State::run(std::unique_lock<std::mutex>& lock)
{
    m_painter = std::this_thread::get_id();
    for (int count = 0; count < MaxJobsInARow && !m_waiting.empty(); ++count) {
        Job job = std::move(m_waiting.front().job);
        m_waiting.pop_front();
        ++m_nBegun;
        lock.unlock();
        std::exchange(job, nullptr)(); // destroyed, too, before the owner may go
        lock.lock();
    }
    m_painter = {};
    m_ended.notify_all();
    const bool isRestLeft = !m_waiting.empty() && !std::exchange(m_bEventPosted, true);
    lock.unlock();
    if (isRestLeft)
        leaveRestToEventLoop();
}

void Painter::State::leaveRestToEventLoop()
{
    const auto paintRest = [state = shared_from_this()] {
        std::unique_lock<std::mutex> lock(state->m_mutex);
        state->m_bEventPosted = false;
        if (!state->isPainting())
            state->run(lock);
    };
    QCoreApplication* app = QCoreApplication::instance();
    if (app && QMetaObject::invokeMethod(app, paintRest, Qt::QueuedConnection))
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bEventPosted = false;
}

Painter::Painter()
    : m_pState(std::make_shared<State>())
{
}

Painter::~Painter()
{
    stop();
}

void Painter::paint(const PaintSubject& subject, Job job)
{
    if (SurfaceDrawing::current())
        return job();
    const std::shared_ptr<State> state = m_pState; // a job may destroy this painter
    Job replaced; // destroyed after the lock is released
    std::unique_lock<std::mutex> lock(state->m_mutex);
    if (state->m_bStopped)
        return;
    replaced = state->enqueue(subject, std::move(job));
    if (!state->isPainting())
        state->run(lock);
}

void Painter::sendAtOnce(const PaintSubject& subject, const Job& send, Job repaint)
{
    if (SurfaceDrawing::current())
        return send();
    const std::shared_ptr<State> state = m_pState;
    bool isOvertaken = false;
    quint64 begunBefore = 0;
    {
        const std::lock_guard<std::mutex> lock(state->m_mutex);
        isOvertaken = state->isOtherPainting() || state->m_nSending > 0;
        begunBefore = ++state->m_nBegun;
        ++state->m_nSending;
    }
    send();
    {
        const std::lock_guard<std::mutex> lock(state->m_mutex);
        isOvertaken = isOvertaken || state->m_nBegun != begunBefore;
        --state->m_nSending;
    }
    if (isOvertaken)
        paint(subject, std::move(repaint));
}

void Painter::stop()
{
    const std::shared_ptr<State> state = m_pState;
    std::deque<State::Waiting> dropped; // destroyed after the lock is released
    std::unique_lock<std::mutex> lock(state->m_mutex);
    state->m_bStopped = true;
    dropped.swap(state->m_waiting);
    state->m_ended.wait(lock, [&] { return !state->isOtherPainting(); });
    lock.unlock();
}

} // namespace Orvane::ECProxy::Client::Internal

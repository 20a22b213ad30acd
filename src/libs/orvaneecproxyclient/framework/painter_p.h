#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <string_view>

namespace Orvane::ECProxy::Client::Internal {

/// What a paint job paints: a name, and which of several when there are several. A subject names all that
/// its job paints, no less: a waiting job gives way to a newer one of the same subject.
struct PaintSubject {
    // NOLINTNEXTLINE(google-explicit-constructor): a name is a subject
    PaintSubject(const char* name, quint64 number = 0)
        : m_name(name)
        , m_number(number)
    {
    }

    bool operator==(const PaintSubject& other) const
    {
        return m_name == other.m_name && m_number == other.m_number;
    }

    std::string_view m_name; ///< of a string literal
    quint64 m_number = 0;
};

/// Paints the lights and labels of one group of keys, so that what is sent last is what is true last.
///
/// A paint job reads the state and sends what it shows, as one step. Jobs run one after another, each on the
/// thread of a caller: at once when nobody paints, otherwise next on the thread that does. After
/// `MaxJobsInARow` jobs a thread goes back to its own work, and the application's event loop paints the rest
/// (without an application object the next call of `paint()` does).
///
/// Why nothing is lost: whoever changes the state changes it first and calls `paint()` then. The job of that
/// call, or a newer one of the same subject in its place, begins after the change. Jobs do not overlap, so it
/// also reads and sends later than each job that may have read the state before the change. A job leaves the
/// queue before it begins: a change that comes while it runs gets a job of its own.
///
/// What a job may do: read the model and the items, send, and call `paint()`. It must not wait for another
/// thread, open a dialog or call the host: the keys of the whole group would wait with it. It captures
/// little: no shared pointer to its owner, which would keep itself alive, and no number of a label, which
/// may be of an older configuration.
///
/// On a thread that draws (`SurfaceDrawing`) a job runs at once, beside those of others: it sends nothing.
///
/// Any thread may call any member. No lock is held while a job runs.
class Painter {
public:
    using Job = std::function<void()>;

    static constexpr int MaxJobsInARow = 16;

    Painter();
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// Runs `job` before it returns when nobody paints. While another thread paints, or this one does (the
    /// call comes from a job), the job waits its turn and the call returns at once: nobody may rely on it
    /// having been sent. Change the state first, then call.
    void paint(const PaintSubject& subject, Job job);

    /// Sends a single request that may not wait: `send` runs at once on the calling thread. A job or a single
    /// request of another thread that runs meanwhile may have read the old state and send it later; then
    /// `repaint` is painted after it. Change the state first, or in `send`.
    void sendAtOnce(const PaintSubject& subject, const Job& send, Job repaint);

    /// Drops the waiting jobs, waits for the running one unless it is the caller's own, and refuses all
    /// further ones. For the first line of the owner's destructor.
    void stop();

private:
    struct State;

    const std::shared_ptr<State> m_pState;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "completion.h"
#include "orvaneplatform_global.h"

#include <QString>

#include <memory>

namespace Orvane {

/// A request that somebody waits for, and that ends exactly once.
///
/// Whoever carries the request out keeps it, hands it on by value (to a job, a callback, another thread) and
/// ends it with its result. Copies stand for the same request. A request whose last copy is destroyed before
/// it has ended ends as failed, with a warning that names it: a forgotten completion cannot leave a key or a
/// waiting dialog behind. Any thread may end it; the completion runs on that thread.
class ORVANEPLATFORM_EXPORT OpenRequest final {
public:
    /// @p name is for the log; @p completion may be empty.
    OpenRequest(QString name, Completion completion);

    /// Ends the request. @p text is the reason of a failure, in words for the user. False, with a warning,
    /// when it has ended already; the first result stands.
    bool finish(bool ok, const QString& text = {}) const;
    /// Ends the request as succeeded.
    bool succeed() const { return finish(true); }
    /// Ends it as failed, with the reason in words for the user.
    bool fail(const QString& text) const { return finish(false, text); }

    /// True until it has ended.
    bool isOpen() const;

private:
    class State;
    std::shared_ptr<State> m_pState;
};

} // namespace Orvane

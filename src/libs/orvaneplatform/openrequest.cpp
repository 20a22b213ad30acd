#include "openrequest.h"

#include <QtDebug>

#include <atomic>
#include <utility>

namespace Orvane {

class OpenRequest::State final {
public:
    State(QString name, Completion completion)
        : m_strName(std::move(name))
        , m_completion(std::move(completion))
    {
    }
    ~State()
    {
        if (!m_bOpen)
            return;
        qWarning(
            "The request %s was dropped without a result, it counts as failed.", qUtf8Printable(m_strName));
        finish(false, QStringLiteral("The request was dropped."));
    }

    bool finish(bool ok, const QString& text)
    {
        if (!m_bOpen.exchange(false)) {
            qWarning(
                "The request %s has ended already, its second result is ignored.", qUtf8Printable(m_strName));
            return false;
        }
        // What the completion holds goes with it, not with the last copy.
        const Completion completion = std::exchange(m_completion, {});
        if (completion)
            completion(ok, text);
        return true;
    }

    bool isOpen() const { return m_bOpen; }

private:
    Q_DISABLE_COPY_MOVE(State)

    const QString m_strName;
    /// Used by the one call that found m_bOpen set.
    Completion m_completion;
    std::atomic<bool> m_bOpen{true};
};

OpenRequest::OpenRequest(QString name, Completion completion)
    : m_pState(std::make_shared<State>(std::move(name), std::move(completion)))
{
}

bool OpenRequest::finish(bool ok, const QString& text) const
{
    return m_pState->finish(ok, text);
}

bool OpenRequest::isOpen() const
{
    return m_pState->isOpen();
}

} // namespace Orvane

#include "modelquery_p.h"

#include <QCoreApplication>
#include <QEvent>

#include <condition_variable>
#include <thread>
#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ModelQuery::Question final {
public:
    Question(const BizModel::DeviceList& model, quint64 number)
        : m_thread([state = m_pState, &model, number] {
            auto answer = std::make_shared<ModelSnapshot>(takeSnapshot(model));
            answer->number = number;
            const std::lock_guard lock(state->mutex);
            state->answer = std::move(answer);
            state->answered.notify_all();
        })
    {
    }
    ~Question()
    {
        if (wait(0ms))
            m_thread.join(); // at its end
        else
            m_thread.detach();
    }
    std::shared_ptr<const ModelSnapshot> wait(std::chrono::milliseconds limit) const
    {
        std::unique_lock lock(m_pState->mutex);
        m_pState->answered.wait_for(lock, limit, [this] { return m_pState->answer != nullptr; });
        return m_pState->answer;
    }

private:
    Q_DISABLE_COPY_MOVE(Question)

    /// Shared with the thread, which outlives a question that nobody waits for any more.
    struct State {
        std::mutex mutex; ///< guards answer
        std::condition_variable answered;
        std::shared_ptr<const ModelSnapshot> answer;
    };
    const std::shared_ptr<State> m_pState = std::make_shared<State>();
    std::thread m_thread;
};

ModelQuery::ModelQuery(const BizModel::DeviceList& model)
    : m_model(model)
{
}

ModelQuery::~ModelQuery() = default;

std::shared_ptr<const ModelSnapshot> ModelQuery::ask(std::chrono::milliseconds limit)
{
    std::shared_ptr<Question> question;
    {
        const std::lock_guard lock(m_mutex);
        if (m_pQuestion && !m_pQuestion->wait(0ms))
            return std::make_shared<const ModelSnapshot>();
        question = std::make_shared<Question>(m_model, ++m_nQuestions);
        m_pQuestion = question;
    }
    return question->wait(limit);
}

bool ModelQuery::finish(std::chrono::milliseconds limit)
{
    std::shared_ptr<Question> open;
    {
        const std::lock_guard lock(m_mutex);
        open = m_pQuestion;
    }
    const Clock::time_point end = Clock::now() + limit;
    while (open && !open->wait(10ms)) {
        if (Clock::now() >= end)
            return false;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    }
    return true;
}

} // namespace Orvane::ModelTest::Internal

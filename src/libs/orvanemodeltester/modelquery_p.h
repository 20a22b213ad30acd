#pragma once

#include "modelsnapshot_p.h"

#include <chrono>
#include <memory>
#include <mutex>

namespace Orvane::ModelTest::Internal {

/// Asks a model for everything, each time on a thread of its own: whoever asks gets away from a model that
/// does not answer.
class ModelQuery final {
public:
    explicit ModelQuery(const BizModel::DeviceList& model);
    /// A thread that is still in the model is left behind; `finish` finds out.
    ~ModelQuery();

    /// Empty when there is no answer within the time. While a question is open, whoever asked it finds out
    /// what comes of it: others get a snapshot without values. Any thread.
    std::shared_ptr<const ModelSnapshot> ask(std::chrono::milliseconds limit);
    /// Waits for the answer of an open question. Delivers the calls that are queued for this thread, the GUI
    /// thread, meanwhile: a query that waits for it, against the rules, comes to its end. False when a thread
    /// is still in the model after the time.
    bool finish(std::chrono::milliseconds limit);

private:
    class Question;
    Q_DISABLE_COPY_MOVE(ModelQuery)

    const BizModel::DeviceList& m_model;
    /// Guards what follows, which is set by the threads that signals are emitted on.
    std::mutex m_mutex;
    quint64 m_nQuestions = 0;
    /// The last one.
    std::shared_ptr<Question> m_pQuestion;
};

} // namespace Orvane::ModelTest::Internal

#pragma once

#include "bizmodel/devicelist.h"

#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

/// Rules that the console's truthfulness depends on, checked on a model that runs.
namespace Orvane::ModelTest {

namespace Internal {
class ModelTesterPrivate;
}

/// A rule that was broken.
struct ModelFault {
    /// Short name of the rule; `docs/model-check.md` lists them.
    QString rule;
    /// What was called or emitted.
    QString call;
    /// What was seen in place of what the rule demands.
    QString seen;
};

/// How long a model may take before the tester calls it a fault.
struct ModelLimits {
    /// For everything that one key asks of the model.
    std::chrono::milliseconds query{500};
    /// For a request to return that does not wait for its result, and for a controller's operation.
    std::chrono::milliseconds request{500};
    /// For a completion; the transition's time comes on top.
    std::chrono::milliseconds completion{5000};
    /// From a change to its signal.
    std::chrono::milliseconds announcement{1000};
    /// From a removal to the end of the object.
    std::chrono::milliseconds removal{3000};
};

/// Watches a model while it works, as a debug aid that stays switched on: it stands in front of the model's
/// managers and controllers, listens to its signals, and compares from time to time what the model says of
/// itself with what it has announced. Each broken rule is logged as a warning, once for the same call.
///
/// Create it on the GUI thread after the model and before the console; destroy it after the console and
/// before the model.
class ModelTester final : public QObject {
    Q_OBJECT
public:
    explicit ModelTester(BizModel::DeviceList& model, ModelLimits limits = {}, QObject* parent = nullptr);
    ~ModelTester() override;

    /// What was found so far. Any thread.
    QList<ModelFault> faults() const;

    /// Compares now rather than at the next of the regular times. On the GUI thread.
    void check();
    /// True while a request has no completion, or a change no signal, that may still come. Any thread.
    bool isWaiting() const;

Q_SIGNALS:
    /// On the thread on which the fault was seen.
    void faultFound(QString rule, QString call, QString seen);

private:
    friend class Internal::ModelTesterPrivate;
    const std::unique_ptr<Internal::ModelTesterPrivate> d;
};

} // namespace Orvane::ModelTest

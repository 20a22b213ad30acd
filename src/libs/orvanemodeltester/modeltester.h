#pragma once

#include "modelfault.h"
#include "orvaneplatform/bizmodel/devicelist.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

/// Rules that the console's truthfulness depends on, checked on a model that runs.
namespace Orvane::ModelTest {

/// Watches a model while it works, as a debug aid that stays switched on: it stands in front of the model's
/// managers and controllers, listens to its signals, and compares from time to time what the model says of
/// itself with what it has announced. Each broken rule is logged as a warning, once for the same call.
///
/// Create it on the GUI thread after the model and before the console; destroy it after the console and
/// before the model.
class ModelTester final : public QObject {
    Q_OBJECT
public:
    /// Watches from now on. @p model outlives the tester.
    explicit ModelTester(BizModel::DeviceList& model, ModelLimits limits = {}, QObject* parent = nullptr);
    ~ModelTester() override;

    /// What was found so far. Any thread.
    QList<ModelFault> faults() const;

    /// Compares now rather than at the next of the regular times. On the GUI thread.
    void check();
    /// True while a request has no completion, or a change no signal, that may still come. Any thread.
    bool isWaiting() const;

    /// Ends the comparisons, as the destructor does, and waits for a query that still runs, at most as long
    /// as for a completion. False when it has not returned: its thread stays in the model, which must not be
    /// destroyed then. On the GUI thread, whose queued calls are delivered meanwhile.
    bool stop();

Q_SIGNALS:
    /// On the thread on which the fault was seen.
    void faultFound(QString rule, QString call, QString seen);

private:
    class Parts;
    const std::unique_ptr<Parts> d;
};

} // namespace Orvane::ModelTest

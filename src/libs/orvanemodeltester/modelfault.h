#pragma once

#include <QString>

#include <chrono>

namespace Orvane::ModelTest {

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
    /// For one step of `checkModel`; a call that keeps it longer is taken for one that never returns.
    std::chrono::milliseconds step{30000};
};

} // namespace Orvane::ModelTest

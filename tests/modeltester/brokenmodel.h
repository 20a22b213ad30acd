#pragma once

#include "modelcheck.h"

#include <memory>

namespace Orvane::ModelTest::Test {

/// What is wrong with a model: one rule each.
enum class Flaw {
    None,
    /// Freeze changes without its signal.
    FreezeWithoutSignal,
    /// A screen's name changes by itself and nobody hears of it.
    SilentRename,
    /// The screens become `Taking` only when the task begins.
    StatesAfterReturn,
    /// Tasks are counted only when they begin.
    TaskCountAfterReturn,
    /// Tasks count for a while after their completion.
    TaskCountAfterCompletion,
    /// The save's completion never comes.
    CompletionNever,
    CompletionTwice,
    /// The completion is called, then the signal emitted.
    CompletionBeforeSignal,
    /// Freeze is announced twice for each screen.
    FreezeAnnouncedTwice,
    /// Swap is announced, then changed.
    SignalBeforeChange,
    /// What is not offered fails without a word.
    FailureWithoutReason,
    /// Swap changes, is announced, and fails.
    FailureChanges,
    /// Freeze succeeds and does nothing.
    SuccessWithoutEffect,
    /// A selection is accepted and made later.
    SelectionAfterReturn,
    /// A refused selection deselects what was selected.
    RefusalDeselects,
    /// A take returns when it has ended.
    SlowRequest,
    /// Queries ask the GUI thread.
    QueryWaitsForGui,
    /// A query never returns.
    QueryNeverReturns,
    /// Signals are emitted under the lock that queries take.
    SignalUnderLock,
    /// A removed screen is kept.
    RemovedScreenKept
};

/// A small model with two screens, hand-written over the interfaces, with one flaw or none.
class BrokenModel final : public ModelFixture {
public:
    explicit BrokenModel(Flaw flaw);
    ~BrokenModel() override;

    bool create(QString& error) override;
    void destroy() override;

private:
    class Parts;
    const Flaw m_flaw;
    std::unique_ptr<Parts> m_p;
};

} // namespace Orvane::ModelTest::Test

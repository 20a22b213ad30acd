#pragma once

#include "modelcheck.h"

#include <memory>

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ModelTest::Test {

/// What is wrong with a model that is right in all else: one rule each.
enum class Flaw {
    None,
    LayerBelow, ///< a new layer goes below the others
    LayerAddedTwice, ///< a new layer is announced twice
    LayerStays, ///< layers are said to be removed and stay
    LayerKept, ///< a removed layer is held on to
    RenamedAfterRemoval, ///< a layer is renamed after its removal has been announced
    OrderKept, ///< bringing to the front does nothing
    RefusalReorders, ///< bringing to the front is refused and done
    SelectionAppends, ///< a selection that is to replace another is added to it
    SelectionNeverReturns,
    WindowKept, ///< a window is not moved
    OneLayerBound, ///< only the first of the layers gets the source
    NoPreset, ///< a preset is said to be stored and is not
    NoPresetNoReason, ///< a preset is not stored, and nobody says why
    PresetStays, ///< a preset is said to be removed and stays
    CoverUnannounced, ///< an overwritten preset is not announced
    LoadUnannounced, ///< scenes that a preset was loaded to are not announced
    LoadDropped, ///< a sample of a load is accepted and dropped
    TBarDropped, ///< the end of the T-Bar is accepted and dropped
    ClearCompletesFirst, ///< clearing layers completes before it is done
    CopyMissing, ///< one copy less is made
    FailureCreates, ///< a screen is made, and the request fails
    ClearedOneByOne, ///< presets that are cleared go one after another
    CompletionNever, ///< the save's completion never comes
    CompletionTwice,
    StatesAfterReturn, ///< a take begins after its request has returned
    TaskCountAfterReturn, ///< tasks are counted a while after they began
    TaskCountAfterCompletion, ///< tasks count for ever
    FailureWithoutReason, ///< fading to black fails without a word
    FreezeDropped, ///< freezing succeeds and does nothing
    SlowRequest ///< a take returns late
};

/// The model in memory, with flawed parts in front of its own.
class FlawedKit final : public ModelFixture {
public:
    explicit FlawedKit(Flaw flaw = Flaw::None);
    ~FlawedKit() override;

    bool create(QString& error) override;
    void destroy() override;

private:
    class Front;
    const Flaw m_flaw;
    std::unique_ptr<MemoryModel::MemoryModel> m_pModel;
    std::unique_ptr<Front> m_pFront;
};

} // namespace Orvane::ModelTest::Test

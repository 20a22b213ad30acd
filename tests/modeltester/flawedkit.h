#pragma once

#include "modelcheck.h"

#include <memory>

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ModelTest::Test {

/// What is wrong with layers and presets of a model that is right in all else: one rule each.
enum class KitFlaw {
    None,
    /// A new layer goes below the others.
    LayerBelow,
    /// A new layer is announced twice.
    LayerAddedTwice,
    /// Layers are said to be removed and stay.
    LayerStays,
    /// A layer is renamed after its removal has been announced.
    RenamedAfterRemoval,
    /// Bringing to the front does nothing.
    OrderKept,
    /// Bringing to the front is refused and done.
    RefusalReorders,
    /// A selection that is to replace another is added to it.
    SelectionAppends,
    /// A window is not moved.
    WindowKept,
    /// Only the first of the layers gets the source.
    OneLayerBound,
    /// A preset is said to be stored and is not.
    NoPreset,
    /// A preset is not stored, and nobody says why.
    NoPresetNoReason,
    /// A preset is said to be removed and stays.
    PresetStays,
    /// An overwritten preset is not announced.
    CoverUnannounced,
    /// Scenes that a preset was loaded to are not announced.
    LoadUnannounced,
    /// A sample of a load is accepted and dropped.
    LoadDropped,
    /// The end of the T-Bar is accepted and dropped.
    TBarDropped,
    /// Clearing layers completes before it is done.
    ClearCompletesFirst,
    /// One copy less is made.
    CopyMissing,
    /// A screen is made, and the request fails.
    FailureCreates,
    /// Presets that are cleared go one after another.
    ClearedOneByOne
};

/// The model in memory, with flawed parts in front of its own.
class FlawedKit final : public ModelFixture {
public:
    explicit FlawedKit(KitFlaw flaw = KitFlaw::None);
    ~FlawedKit() override;

    bool create(QString& error) override;
    void destroy() override;

private:
    class Front;
    const KitFlaw m_flaw;
    std::unique_ptr<MemoryModel::MemoryModel> m_pModel;
    std::unique_ptr<Front> m_pFront;
};

} // namespace Orvane::ModelTest::Test

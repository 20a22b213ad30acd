#include "parallelcontrol/paralleltasks.h"

#include <array>

namespace Orvane::ParallelControl {

QString taskName(const ParallelTask& task)
{
    // In the order of the variant.
    constexpr std::array names = {
        "ParallelTakeScreen",
        "ParallelCutScreen",
        "ParallelMatchPGM",
        "ParallelFreezeScreen",
        "ParallelFTBScreen",
        "ParallelSetSwapStatus",
        "ParallelSetLoadToPresetPGMStatus"};
    static_assert(names.size() == std::variant_size_v<ParallelTask>);
    return QString::fromLatin1(names.at(task.index()));
}

Completion doneOf(const ParallelTask& task)
{
    if (const auto* take = std::get_if<ParallelTakeScreen>(&task))
        return take->done;
    if (const auto* cut = std::get_if<ParallelCutScreen>(&task))
        return cut->done;
    return {};
}

} // namespace Orvane::ParallelControl

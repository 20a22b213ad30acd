#pragma once

#include <QList>

#include <algorithm>

/// The moves of marked layers in a scene, which is a list from the bottom to the top. The marked ones keep
/// their order among themselves, and so do the others.
namespace Orvane::Bridge::Internal {

template <typename Layer> void moveToFront(QList<Layer>& scene, const QList<Layer>& marked)
{
    std::stable_partition(
        scene.begin(), scene.end(), [&marked](const Layer& layer) { return !marked.contains(layer); });
}

template <typename Layer> void moveToBack(QList<Layer>& scene, const QList<Layer>& marked)
{
    std::stable_partition(
        scene.begin(), scene.end(), [&marked](const Layer& layer) { return marked.contains(layer); });
}

/// One step; a marked layer does not pass another.
template <typename Layer> void stepToFront(QList<Layer>& scene, const QList<Layer>& marked)
{
    for (int i = scene.size() - 2; i >= 0; --i) {
        if (marked.contains(scene[i]) && !marked.contains(scene[i + 1]))
            scene.swapItemsAt(i, i + 1);
    }
}

template <typename Layer> void stepToBack(QList<Layer>& scene, const QList<Layer>& marked)
{
    for (int i = 1; i < scene.size(); ++i) {
        if (marked.contains(scene[i]) && !marked.contains(scene[i - 1]))
            scene.swapItemsAt(i, i - 1);
    }
}

} // namespace Orvane::Bridge::Internal

#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QRect>
#include <QtGlobal>

#include <memory>
#include <utility>

namespace Orvane::BizModel {

/// Says whether the hardware has the resources for windows that are planned. The host creates its
/// implementation before it starts the console and destroys it after the console's threads have ended.
class ORVANEPLATFORM_EXPORT ResourceCheck {
public:
    /// Layers with the windows that are planned for them, in pixels of the mosaic.
    using LayerRects = QList<std::pair<std::weak_ptr<Layer>, QRect>>;

    virtual ~ResourceCheck();

    /// True when @p screen can show its preview with each layer of @p rects in the window given for it. A
    /// layer that is not part of the scene counts in addition. Any thread; changes nothing.
    ///
    /// A model without limits needs no check: without one the resources are enough, which is logged once.
    static bool CheckOperationResources(const std::shared_ptr<Screen>& screen, const LayerRects& rects);
    /// The same for one scene and some of the screen's outputs. @p layer is left out of the reckoning; empty
    /// leaves none out.
    static bool CheckOperationResources(
        const std::shared_ptr<Screen>& screen, const LayerRects& rects,
        const QList<std::weak_ptr<Output>>& outputs, SceneType scene, const std::weak_ptr<Layer>& layer);

protected:
    /// Makes this check the one that is asked.
    ResourceCheck();

    /// The check itself; called on any thread, on several at once.
    virtual bool checkResources(
        const std::shared_ptr<Screen>& screen, const LayerRects& rects,
        const QList<std::weak_ptr<Output>>& outputs, SceneType scene,
        const std::weak_ptr<Layer>& layer) const = 0;

private:
    Q_DISABLE_COPY_MOVE(ResourceCheck)
};

} // namespace Orvane::BizModel

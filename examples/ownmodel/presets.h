// Step 3: presets of what the screens' previews show, stored, loaded and removed by keys.
#pragma once

#include "layers.h"

#include <orvaneplatform/bridge/itemsamplingthread.h>

#include <map>

namespace Own {

struct PresetControllerFactory : ControllerFactory {
    using Scene = Bridge::ScreenItem::LayerList;
    static constexpr auto Preview = BizModel::SceneType::PVW;

    bool storePreset(Bridge::DeviceItem& wall, Bridge::PresetItem& preset, QString&) override
    {
        std::map<quint32, Scene> scenes;
        for (const auto& screen : wall.screenList())
            scenes[screen->screenId()] = copies(screen->layerList(Preview));
        const std::lock_guard lock(mutex);
        stored[preset.fileId()] = scenes;
        return true;
    }
    bool loadPreset(Bridge::DeviceItem& wall, Bridge::PresetItem& preset, QString&) override
    {
        std::map<quint32, Scene> scenes;
        {
            const std::lock_guard lock(mutex);
            scenes = stored[preset.fileId()];
        }
        for (const auto& screen : wall.screenList())
            screen->setLayerList(Preview, copies(scenes[screen->screenId()]));
        return true;
    }
    /// Layers change their source; those of a preset must not.
    static Scene copies(const Scene& layers)
    {
        Scene made;
        for (const auto& layer : layers)
            made += layer->copy();
        return made;
    }

    std::mutex mutex; // guards stored; keys come on any thread
    std::map<quint16, std::map<quint32, Scene>> stored;
};

} // namespace Own

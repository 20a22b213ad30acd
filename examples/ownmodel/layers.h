// Step 2: layers on the screens, made, selected and removed by keys, and inputs that they show.
#pragma once

#include "screens.h"

namespace Own {

/// What is told to the wall when a key changes a layer; here only a wall that is full refuses.
struct ControllerFactory : Bridge::ItemControllerFactory {
    bool addLayer(Bridge::ScreenItem& screen, Bridge::LayerItem& layer) override
    {
        return screen.layerList(layer.sceneType()).size() < 4;
    }
};

inline void addInputs(Bridge::DeviceItem& wall)
{
    for (const auto& screen : wall.screenList())
        screen->addOutputPlace({0, 0, 1920, 1080}, 8);
    wall.addInput(std::make_shared<Bridge::InputItem>(1, "Camera"));
    wall.addInput(std::make_shared<Bridge::InputItem>(2, "Slides"));
}

} // namespace Own

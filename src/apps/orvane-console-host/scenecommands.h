#pragma once

#include "modelcommandadder.h"

namespace Orvane::ConsoleHost {

/// Adds the commands that change the layers of a scene.
void addLayerCommands(const ModelCommandAdder& add);

/// Adds the commands that change inputs.
void addInputCommands(const ModelCommandAdder& add);

/// Adds the commands that change presets.
void addPresetCommands(const ModelCommandAdder& add);

} // namespace Orvane::ConsoleHost

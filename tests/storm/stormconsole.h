#pragma once

#include "modelrig.h"
#include "stormkeyboard.h"

#include <QString>

namespace Storm {

using namespace Orvane::ECProxy::Client;

/// How the console differs from what it should show of the model; empty when it does not. All keys are up and
/// nothing is under way.
QString difference(TestSupport::ModelRig& rig, const Keyboard& keyboard);

} // namespace Storm

#pragma once

namespace Orvane::ECProxy::Client {

/// Function codes of the preset group's keys.
enum class PresetCallbackType {
    eNothing = 0,
    eSelectPresetCB = 1,
    ePageUp = 2,
    ePageDown = 3,
    eRemoveSelectedPresetCB = 4,
    eClearPresetsCB = 5,
    eSavePresetCB = 6,
    eCut = 7,
    eTake = 8,
    eLoadToPgm = 9,
    PrsetCallbackTypeCnt = 10
};

} // namespace Orvane::ECProxy::Client

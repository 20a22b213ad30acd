#pragma once

#include "orvaneplatform/bizmodel/enums.h"

#include <QtGlobal>

namespace Orvane::BizModel {

/// Where a layer is: unique within a device.
struct s_ScreenLayerId {
    quint32 screenId = 0; ///< its screen
    SceneType sceneType = SceneType::PVW; ///< the scene there
    quint32 layerId = 0; ///< the layer there

    /// Member by member.
    /// @{
    friend bool operator==(const s_ScreenLayerId& a, const s_ScreenLayerId& b)
    {
        return a.screenId == b.screenId && a.sceneType == b.sceneType && a.layerId == b.layerId;
    }
    friend bool operator!=(const s_ScreenLayerId& a, const s_ScreenLayerId& b) { return !(a == b); }
    /// @}
};

/// Where an interface is: unique within a device.
struct s_InterfaceFullId {
    quint32 subcardId = 0; ///< its card
    quint32 interfaceId = 0; ///< the interface there

    /// Member by member.
    /// @{
    friend bool operator==(const s_InterfaceFullId& a, const s_InterfaceFullId& b)
    {
        return a.subcardId == b.subcardId && a.interfaceId == b.interfaceId;
    }
    friend bool operator!=(const s_InterfaceFullId& a, const s_InterfaceFullId& b) { return !(a == b); }
    /// @}
};

} // namespace Orvane::BizModel

#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QtGlobal>

namespace Orvane::BizModel {

/// A plug-in card of the device. Any thread may call any member at any time.
class ORVANEPLATFORM_EXPORT Subcard {
public:
    Subcard() = default;
    virtual ~Subcard();

    /// Number of layers that the card can show.
    virtual int layerCapacity() const = 0;

private:
    Q_DISABLE_COPY_MOVE(Subcard)
};

} // namespace Orvane::BizModel

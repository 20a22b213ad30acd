#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QtGlobal>

namespace Orvane::BizModel {

/// The socket of an interface. Any thread may call any member at any time.
class ORVANEPLATFORM_EXPORT Connector {
public:
    Connector() = default;
    virtual ~Connector();

    /// Capacity that the socket is set to.
    virtual CapacityMode capacity() const = 0;

private:
    Q_DISABLE_COPY_MOVE(Connector)
};

} // namespace Orvane::BizModel

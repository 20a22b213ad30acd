#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/ids.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QString>
#include <QtGlobal>

namespace Orvane::BizModel {

/// A place where a signal enters or leaves the device. Any thread may call any member at any time; an answer
/// is a snapshot.
class ORVANEPLATFORM_EXPORT Interface {
public:
    Interface() = default;
    virtual ~Interface();

    /// Unique within the device; interfaces are sorted by it.
    virtual quint32 interfaceId() const = 0;
    /// On sub-card 0 unless overridden.
    virtual s_InterfaceFullId interfaceFullId() const { return {0, interfaceId()}; }
    /// Whether a signal enters or leaves here.
    virtual InterfaceType type() const = 0;
    /// As keys and application show it.
    virtual QString name() const = 0;
    /// Capacity that a layer needs to show the signal; single link unless overridden.
    virtual CapacityMode capacity() const { return CapacityMode::_SL; }
    /// True when a signal is present; always unless overridden.
    virtual bool isActive() const { return true; }
    /// True when the signal is more than the interface can take; never unless overridden.
    virtual bool isOverLoad() const { return false; }

private:
    Q_DISABLE_COPY_MOVE(Interface)
};

} // namespace Orvane::BizModel

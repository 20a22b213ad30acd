#pragma once

#include "bizmodel/enums.h"
#include "bizmodel/ids.h"
#include "orvaneplatform_global.h"

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
    virtual s_InterfaceFullId interfaceFullId() const = 0;
    virtual InterfaceType type() const = 0;
    virtual QString name() const = 0;
    /// Capacity that a layer needs to show the signal.
    virtual CapacityMode capacity() const = 0;
    /// True when a signal is present.
    virtual bool isActive() const = 0;
    virtual bool isOverLoad() const = 0;

private:
    Q_DISABLE_COPY_MOVE(Interface)
};

} // namespace Orvane::BizModel

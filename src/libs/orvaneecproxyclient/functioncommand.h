#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// The console's group of keys for device functions: saving, locks, monitor source and layer copies.
class ORVANEECPROXYCLIENT_EXPORT FunctionCommand : public Command {
    Q_OBJECT

public:
    using Command::Command;

    QString name() const override;
};

} // namespace Orvane::ECProxy::Client

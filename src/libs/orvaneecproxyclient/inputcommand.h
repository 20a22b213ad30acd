#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// The console's group of keys for input sources.
class ORVANEECPROXYCLIENT_EXPORT InputCommand : public Command {
    Q_OBJECT

public:
    using Command::Command;

    QString name() const override;
};

} // namespace Orvane::ECProxy::Client

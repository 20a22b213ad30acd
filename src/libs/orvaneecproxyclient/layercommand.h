#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// The console's group of keys for layers of the active screen.
class ORVANEECPROXYCLIENT_EXPORT LayerCommand : public Command {
    Q_OBJECT

public:
    using Command::Command;

    QString name() const override;
};

} // namespace Orvane::ECProxy::Client

#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// The console's group of keys for screens, transitions and the T-Bar.
class ORVANEECPROXYCLIENT_EXPORT ScreenCommand : public Command {
    Q_OBJECT

public:
    using Command::Command;

    QString name() const override;
};

} // namespace Orvane::ECProxy::Client

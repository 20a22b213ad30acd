#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

/// The console's group of keys for presets.
class ORVANEECPROXYCLIENT_EXPORT PresetCommand : public Command {
    Q_OBJECT

public:
    using Command::Command;

    QString name() const override;
};

} // namespace Orvane::ECProxy::Client

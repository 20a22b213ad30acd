#include "presetcommand.h"

namespace Orvane::ECProxy::Client {

QString PresetCommand::name() const
{
    return Constants::PRESETCOMMANDNAME;
}

} // namespace Orvane::ECProxy::Client

#include "inputcommand.h"

namespace Orvane::ECProxy::Client {

QString InputCommand::name() const
{
    return Constants::INPUTCOMMANSDNAME;
}

} // namespace Orvane::ECProxy::Client

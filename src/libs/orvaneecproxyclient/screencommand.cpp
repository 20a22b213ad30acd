#include "screencommand.h"

namespace Orvane::ECProxy::Client {

QString ScreenCommand::name() const
{
    return Constants::SCREENCOMMANDNAME;
}

} // namespace Orvane::ECProxy::Client

#include "functioncommand.h"

namespace Orvane::ECProxy::Client {

QString FunctionCommand::name() const
{
    return QStringLiteral("FunctionCommand");
}

} // namespace Orvane::ECProxy::Client

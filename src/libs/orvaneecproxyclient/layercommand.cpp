#include "layercommand.h"

namespace Orvane::ECProxy::Client {

QString LayerCommand::name() const
{
    return Constants::LAYERCOMMANDNAME;
}

} // namespace Orvane::ECProxy::Client

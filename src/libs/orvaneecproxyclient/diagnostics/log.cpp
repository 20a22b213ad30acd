#include "log_p.h"

namespace Orvane::ECProxy::Client::Internal {

Q_LOGGING_CATEGORY(lcLink, "orvane.ec.link")
Q_LOGGING_CATEGORY(lcCodec, "orvane.ec.codec")
Q_LOGGING_CATEGORY(lcKeys, "orvane.ec.keys")
Q_LOGGING_CATEGORY(lcPaint, "orvane.ec.paint")
Q_LOGGING_CATEGORY(lcTBar, "orvane.ec.tbar")
Q_LOGGING_CATEGORY(lcLock, "orvane.ec.lock")
Q_LOGGING_CATEGORY(lcModel, "orvane.ec.model")

} // namespace Orvane::ECProxy::Client::Internal

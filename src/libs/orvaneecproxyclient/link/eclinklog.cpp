#include "eclinklog_p.h"

namespace Orvane::ECProxy::Client::Internal {

Q_LOGGING_CATEGORY(lcECLink, "orvane.ecproxy.link")

} // namespace Orvane::ECProxy::Client::Internal

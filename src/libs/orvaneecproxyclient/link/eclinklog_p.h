#pragma once

#include <QLoggingCategory>

namespace Orvane::ECProxy::Client::Internal {

/// The category of every log line of the link: "orvane.ecproxy.link". A host that needs speed or a short log
/// switches its debug and info levels off.
Q_DECLARE_LOGGING_CATEGORY(lcECLink)

} // namespace Orvane::ECProxy::Client::Internal

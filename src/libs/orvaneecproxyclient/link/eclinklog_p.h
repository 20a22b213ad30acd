#pragma once

#include <QLoggingCategory>

namespace Orvane::ECProxy::Client::Internal {

/// Every log line of the link: "orvane.ecproxy.link". A host that wants its keys fast and its log short
/// switches the category's debug and info levels off.
Q_DECLARE_LOGGING_CATEGORY(lcECLink)

} // namespace Orvane::ECProxy::Client::Internal

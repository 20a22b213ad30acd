#pragma once

#include "log_p.h"

#include <QTime>

namespace Orvane::ECProxy::Client::Internal {

/// Logs a step of a repaint or of a preset's loading with the time of day, to show where the time goes.
inline void logConsumeTime(const char* text)
{
    if (!lcModel().isInfoEnabled())
        return; // a burst brings one for every notification
    ecInfo(
        lcModel, "%s %s", text,
        qUtf8Printable(QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"))));
}

} // namespace Orvane::ECProxy::Client::Internal

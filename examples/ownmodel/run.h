// The part of main that is the same for each step: the session.
#pragma once

#include <orvaneecproxyclient/ecconsolesession.h>
#include <orvaneplatform/ec/eckeyboardloader.h>

#include <QApplication>

namespace Own {

/// With the model in place, runs the application until it ends.
inline int run(QApplication& app)
{
    Orvane::ECProxy::Client::ECConsoleSession session;
    if (!session.start(Orvane::EC::loadKeyboardFile(app.arguments().value(1)).config))
        qFatal("%s", qUtf8Printable(session.errorString()));
    return app.exec();
}

} // namespace Own

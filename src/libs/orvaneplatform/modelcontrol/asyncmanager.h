#pragma once

#include "orvaneplatform/modelcontrol/asyncrequests.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QtGlobal>

namespace Orvane::ModelControl {

/// Carries out requests that take their time. The host creates its implementation before it starts the
/// console and destroys it after the console's threads have ended.
class ORVANEPLATFORM_EXPORT AsyncManager {
public:
    virtual ~AsyncManager();

    /// The manager created last of those that live, null when there is none. Any thread.
    static AsyncManager* instance();

    /// Returns at once; requests are carried out one after another in the order in which they came. The
    /// request's completion is called last, after the model has changed and has announced it, also when the
    /// device is gone. Any thread.
    virtual void startAsyncRequest(AsyncRequest request) = 0;

protected:
    /// Makes this manager the one that `instance` answers.
    AsyncManager();

private:
    Q_DISABLE_COPY_MOVE(AsyncManager)
};

} // namespace Orvane::ModelControl

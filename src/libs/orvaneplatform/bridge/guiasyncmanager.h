#pragma once

#include "orvaneplatform/modelcontrol/asyncmanager.h"
#include "orvaneplatform/openrequest.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QObject>

/// The bridge for a model that lives on the GUI thread: requests of the console arrive there, one after
/// another. Queries do not; they are answered from `SharedValue`s, which the model keeps up to date, for a
/// key handler that waited for the GUI thread would hold up every later key, and hang when the console is
/// stopped.
namespace Orvane::Bridge {

/// `ModelControl::AsyncManager` for such a model. Create and destroy it on the GUI thread.
class ORVANEPLATFORM_EXPORT GuiAsyncManager : public ModelControl::AsyncManager {
public:
    GuiAsyncManager();
    ~GuiAsyncManager() override;

    void startAsyncRequest(ModelControl::AsyncRequest request) final;

protected:
    /// Carries out one request, on the GUI thread, and ends @p end after the change and its signals, at once
    /// or later. The completion within @p request is not to be called; it is what @p end calls.
    virtual void perform(const ModelControl::AsyncRequest& request, OpenRequest end) = 0;

private:
    /// Jobs that wait for it are dropped with it, and their requests end as failed.
    QObject m_context;
};

} // namespace Orvane::Bridge

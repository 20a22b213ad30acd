#include "bridge/guiasyncmanager.h"

#include <QMetaObject>

#include <utility>

namespace Orvane::Bridge {

using namespace ModelControl;

GuiAsyncManager::GuiAsyncManager() = default;
GuiAsyncManager::~GuiAsyncManager() = default;

void GuiAsyncManager::startAsyncRequest(AsyncRequest request)
{
    const OpenRequest end(
        requestName(request), std::visit([](auto& each) { return std::move(each.completion); }, request));
    QMetaObject::invokeMethod(
        &m_context, [this, request = std::move(request), end] { perform(request, end); },
        Qt::QueuedConnection);
}

} // namespace Orvane::Bridge

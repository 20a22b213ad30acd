#include "modelcontrol/asyncrequests.h"

#include <array>

namespace Orvane::ModelControl {

QString requestName(const AsyncRequest& request)
{
    // In the order of the variant.
    constexpr std::array names = {
        "AsyncCreateScreen", "AsyncRemoveLayer", "AsyncAddCopyLayers", "AsyncSaveDeviceData",
        "AsyncRemoveFile"};
    static_assert(names.size() == std::variant_size_v<AsyncRequest>);
    return QString::fromLatin1(names.at(request.index()));
}

} // namespace Orvane::ModelControl

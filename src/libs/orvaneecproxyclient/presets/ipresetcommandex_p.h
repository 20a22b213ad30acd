#pragma once

#include <optional>

namespace Orvane::ECProxy::Client::Internal {

class IPresetCommandExPrivate {
public:
    /// The page that a registered extension was told of last. On the application's thread only.
    std::optional<int> m_toldPage;
};

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include <QString>

#include <functional>

namespace Orvane {

/// Called once when a request has ended: whether it succeeded and, if not, why in words for the user. Runs on
/// a thread of the model's choice, with no lock of the model held; may be empty.
using Completion = std::function<void(bool ok, QString text)>;

} // namespace Orvane

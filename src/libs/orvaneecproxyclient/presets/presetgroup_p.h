#pragma once

#include "bizmodel/fwd.h"

#include <memory>

/// What the preset command and its page extension share. Any thread.
namespace Orvane::ECProxy::Client::Internal {

/// Highest number of presets that the preset keys page over.
constexpr int MaxKeyPresets = 128;

/// Number of pages of `pageSize` keys that `count` presets take.
constexpr int pageCount(int count, int pageSize)
{
    return (count + pageSize - 1) / pageSize;
}

/// The device's keypad file; empty when it has none.
std::shared_ptr<BizModel::Keypad> keypadFile(const BizModel::Device& device);

} // namespace Orvane::ECProxy::Client::Internal

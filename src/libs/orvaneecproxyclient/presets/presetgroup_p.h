#pragma once

#include "presetcommand.h"

#include "bizmodel/enums.h"
#include "bizmodel/fwd.h"

#include <memory>

/// Steps that the preset command and its page extension share. All may be called on any thread.
namespace Orvane::ECProxy::Client::Internal {

/// Highest number of presets that the preset keys page over.
constexpr int MaxKeyPresets = 128;

/// Number of pages of `pageSize` keys that `count` presets take.
constexpr int pageCount(int count, int pageSize)
{
    return (count + pageSize - 1) / pageSize;
}

/// The manager's preset command; empty when there is none.
std::shared_ptr<Command> presetCommand();

/// The same, for its entry of the configuration too: warns, and is empty, when either is missing.
std::shared_ptr<Command> configuredPresetCommand();

/// Switches a function key of the preset group off. Warns when there is no such key.
void offFunctionkeyColor(PresetCallbackType type);

/// Whether the release of a key of the group passes a modal window.
bool isPresetKeyReleaseAllowed(const Command& command, quint16 ecKey);

/// What the next press of a preset key does; `Noting` without a device list.
BizModel::Enum::Preset::PresetOptMode presetOperateMode();
void setPresetOperateMode(BizModel::Enum::Preset::PresetOptMode mode);

/// The device's keypad file; empty when it has none.
std::shared_ptr<BizModel::Keypad> keypadFile(const BizModel::Device& device);

} // namespace Orvane::ECProxy::Client::Internal

#pragma once

#include "memorydevice.h"

/// What presets store and what loading them changes.
namespace Orvane::MemoryModel {

/// Stores the preview or the program, as the type says, of the selected screens with outputs; of all
/// screens with outputs when none is selected. False with the reason in @p error when there is nothing to
/// store, the slot is in use or no slot of the device.
bool createPreset(
    Change& change, const std::shared_ptr<ModelHub>& hub, MemoryDevice& device, FileType type, quint16 fileId,
    QString& error);

/// The scenes that a preset of the type would store now.
QList<PresetScreenRecord> presentScenes(const Guard& guard, const MemoryDevice& device, FileType type);

} // namespace Orvane::MemoryModel

#pragma once

#include "memorydevicelist.h"

/// What presets store and what loading them changes. The devices of a group share their presets: a slot that
/// is loaded on one is loaded on all that have it, clearing clears all of them, and each can remove any.
namespace Orvane::MemoryModel {

using Devices = MemoryDeviceList::Devices;

/// The scenes that a preset of the type would store now: the preview or the program of the selected screens
/// with outputs, or of all screens with outputs when none is selected.
QList<PresetScreenRecord> presentScenes(const Guard& guard, const MemoryDevice& device, FileType type);

/// Stores the present scenes as a new preset of the device. False with the reason in @p error when there is
/// nothing to store, the slot is in use or no slot of the device.
bool createPreset(
    Change& change, const std::shared_ptr<ModelHub>& hub, MemoryDevice& device, FileType type, quint16 fileId,
    QString& error);

/// Puts the present scenes of the type into the preset, which is one of the device's.
bool coverPreset(
    Change& change, const std::shared_ptr<MemoryDevice>& device, const std::shared_ptr<MemoryPreset>& preset,
    FileType type, QString& error);

/// False when none of the devices has the preset.
bool removePreset(Change& change, const Devices& group, const std::shared_ptr<MemoryPreset>& preset);
/// Removes all files of the types.
void removeFiles(Change& change, const Devices& group, const QList<FileType>& types);

/// The preset of the type first, else of another type, on the first of the devices that has one.
std::shared_ptr<MemoryPreset> findPreset(const Guard& guard, const Devices& group, quint16 fileId);

/// Scene that presets of the device are loaded to.
BizModel::SceneType loadTarget(const Guard& guard, const MemoryDevice& device);

/// The device's screens that the preset stores and that are among @p wanted. Empty, with the reason in
/// @p error, when there is none or one of them is busy.
MemoryDevice::Screens loadableScreens(
    const Guard& guard, const MemoryDevice& device, const MemoryPreset& preset,
    const MemoryDevice::Screens& wanted, QString& error);

/// Replaces the target scene of the screens by what the preset stores; sources that are gone are left out.
void loadPreset(
    Change& change, const MemoryDevice& device, const MemoryPreset& preset,
    const MemoryDevice::Screens& screens);

/// The keypad's state once the preset is loaded to the screens: every preset of the group in its key's
/// place, the loaded one green, the others yellow.
ProtoModel::File::s_KeypadInfo keypadAfterLoad(
    const Guard& guard, const Devices& group, const MemoryPreset& preset, const QList<quint32>& screenIds);

} // namespace Orvane::MemoryModel

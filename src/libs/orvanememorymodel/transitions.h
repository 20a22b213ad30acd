#pragma once

#include "memorydevice.h"
#include "processor.h"

/// The scene changes of a screen's transitions.
namespace Orvane::MemoryModel {

/// The screens as the processor knows them.
ScreenJob jobOf(const MemoryDevice& device, const MemoryDevice::Screens& screens);

/// Second argument of `DeviceList::signalDeviceScreenLayersChanged`: what changed the layers.
enum class LayersChangedBy : int { Take = 1, Cut = 2, MatchPGM = 3, TBar = 4, LoadPreset = 5 };

/// Puts the preview to program: exchanges both when the device swaps, else copies the preview.
void takeScene(Change& change, const MemoryDevice& device, MemoryScreen& screen);
/// Makes the preview a copy of the program.
void matchScene(Change& change, MemoryScreen& screen);
/// Announces that the screens' layers changed, and with them what is selected.
void announceLayersChanged(Change& change, const MemoryDevice::Screens& screens, LayersChangedBy reason);

} // namespace Orvane::MemoryModel

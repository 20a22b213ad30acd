#pragma once

#include "memorydevice.h"
#include "processor.h"

/// Changes of the layers of a scene, and what the hardware has room for.
namespace Orvane::MemoryModel {

/// The screen that the layer is or was on; empty when it is gone.
std::shared_ptr<MemoryScreen> screenOf(const MemoryLayer& layer);

/// False, with the reason in @p error, when the scene's layers cannot be changed now: the screen is busy, or
/// it is the program of a screen whose program is not being edited.
bool isSceneEditable(
    const Guard& guard, const MemoryScreen& screen, BizModel::SceneType scene, QString& error);

/// Capacity of a layer that is made for the input: its connector's.
BizModel::CapacityMode newLayerCapacity(
    const Guard& guard, const MemoryDevice& device, const MemoryInput& input);

/// Puts a new layer on top of the scene; its id is the scene's next. Refused when a limit is reached or the
/// hardware lacks resources.
std::shared_ptr<MemoryLayer> addLayer(
    Change& change, MemoryDevice& device, const std::shared_ptr<MemoryScreen>& screen,
    BizModel::SceneType scene, LayerRecord record, QString& error);

/// Removes those of the layers that are on the screen.
void removeLayers(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const MemoryScreen::Layers& layers);

/// Selects the layers, which are on the screen, alone or with those that are selected already.
void setSelectedLayers(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const MemoryScreen::Layers& layers,
    bool append, bool notify = true);
/// The change of selection shows at once; @p notify also sends its signal.
void announceSelectedLayers(Change& change, const std::shared_ptr<MemoryScreen>& screen, bool notify = true);

/// Gives the layer, which is on the screen, another window. Refused as `addLayer` is.
bool moveLayer(
    Change& change, const std::shared_ptr<MemoryScreen>& screen, const std::shared_ptr<MemoryLayer>& layer,
    const QRect& window, QString& error);

/// Whether the hardware has the resources to show the input in the layers, which are on screens of the
/// device. Only regular screens need them.
bool canBindLayers(
    Change& change, const MemoryDevice& device, const MemoryScreen::Layers& layers, const MemoryInput& input);
/// Makes the layers, which are on screens of the device, show the input and take on its capacity. False, with
/// nothing changed, when the hardware lacks the resources on a regular screen.
bool bindLayers(
    Change& change, const MemoryDevice& device, const MemoryScreen::Layers& layers, const MemoryInput& input);

/// The layer as the processor is told of it.
LayerJob jobOf(const Guard& guard, const MemoryScreen& screen, const MemoryLayer& layer);

/// Changes a layer's source and announces it; 0 for none.
void setSource(Change& change, const std::shared_ptr<MemoryLayer>& layer, quint32 inputId);

/// A window that is planned, of a layer of a scene or of one to be.
struct PlannedWindow {
    std::shared_ptr<MemoryLayer> layer;
    QRect window;
};

/// Whether the sub-cards of the outputs can show the scene of all their screens with the planned windows.
/// A layer takes 1, 2 or 4 units (SL, DL, 4K) of each sub-card that it lies on an output of. Planned layers
/// that are not on a screen lie on @p screen; @p ignored is left out.
bool hasResources(
    const Guard& guard, const MemoryDevice& device, const std::shared_ptr<MemoryScreen>& screen,
    const QList<PlannedWindow>& planned, const QList<std::shared_ptr<MemoryOutput>>& outputs,
    BizModel::SceneType scene, const std::shared_ptr<MemoryLayer>& ignored = {});

} // namespace Orvane::MemoryModel

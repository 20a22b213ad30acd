#pragma once

#include "controlresult.h"
#include "orvaneplatform/bizmodel/screen.h"
#include "records.h"

#include <QMessageBox>
#include <QString>

#include <memory>

namespace Orvane::MemoryModel {

class Change;
class MemoryDevice;
class MemoryDeviceList;
class MemoryScreen;
class ModelHub;

/// What a user does at the device or in the application rather than at the console, for the host and for
/// tests: plain calls with plain values, none of which is journaled or can be told to fail.
///
/// Devices are named by their identity (`ipMacSn`). Every call that is refused changes nothing and
/// says what is not there, which value is out of its range or which state forbids it.
/// Any thread may call any member; a change has been announced when the call returns.
class Control final {
public:
    /// Made by the model.
    Control(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list);

    /// @name Devices
    /// @{

    /// Makes the device the one that the console works on; empty for none.
    ControlResult activateDevice(const QString& device);
    /// Whether the device can be worked.
    ControlResult setOnline(const QString& device, bool online);
    /// A firmware upgrade of the device runs.
    ControlResult setUpgrading(const QString& device, bool upgrading);
    /// An upgrade for compatibility with older devices runs.
    void setCompatibleUpgrading(bool upgrading);
    /// `BizModel::Device::defaultDeviceGroupId` or empty for no group.
    ControlResult setGroup(const QString& device, const QString& groupId);
    /// Gives the device another identity, which no other may have.
    ControlResult changeAddress(const QString& device, const QString& ipMacSn);
    /// The device is gone; was it the active one, none is active then.
    ControlResult removeDevice(const QString& device);
    /// Without, all but the first selected screen are deselected.
    ControlResult setMultiScreens(const QString& device, bool several);
    /// Whether takes exchange program and preview.
    ControlResult setSwap(const QString& device, bool swap);
    /// Whether presets are loaded to program.
    ControlResult setLoadToPGM(const QString& device, bool loadToPGM);
    /// Whether the console shows the application's plug-in.
    ControlResult setConsolePlugin(const QString& device, bool enabled);
    /// Whether the device's configuration allows loading to program at all.
    ControlResult setLoadToPGMEnabled(const QString& device, bool enabled);
    /// A screen is complete when all its outputs are online.
    ControlResult setOutputOnline(const QString& device, quint32 outputId, bool online);
    /// @}

    /// @name Screens
    /// @{

    /// Adds a default screen with the first unused output and answers its key; id 0 when the limit is
    /// reached or there is no such device.
    ScreenKey addScreen(const QString& device, ScreenType type, QString* reason = nullptr);
    /// Was it the active screen, the first of the remaining ones becomes active.
    ControlResult removeScreen(const QString& device, ScreenKey screen);
    /// Gives the screen another name; keys show it.
    ControlResult renameScreen(const QString& device, ScreenKey screen, const QString& name);
    /// Puts the screen to the place of @p target in the device's list of screens.
    ControlResult moveScreen(const QString& device, ScreenKey screen, ScreenKey target);
    /// Place of the screen's key on the console; -1 for none.
    ControlResult setScreenIndex(const QString& device, ScreenKey screen, int index);
    /// Selects these screens alone; none deselects all.
    ControlResult selectScreens(const QString& device, const QList<ScreenKey>& screens);
    /// Makes the screen the one that layer keys work on.
    ControlResult activateScreen(const QString& device, ScreenKey screen);
    /// The state as it is, whatever runs: a transition that it ends does not change the scenes.
    ControlResult setScreenState(const QString& device, ScreenKey screen, BizModel::Screen::State state);
    /// How long a take lasts: 0 to `MaxEffectSeconds`.
    ControlResult setEffectTime(const QString& device, ScreenKey screen, double seconds);
    /// How a take mixes.
    ControlResult setEffectType(const QString& device, ScreenKey screen, BizModel::EffectType type);
    /// Freezes the program, or lets it go on.
    ControlResult setFreeze(const QString& device, ScreenKey screen, bool freeze);
    /// Fades the program to black, or back.
    ControlResult setFTB(const QString& device, ScreenKey screen, bool fadeToBlack);
    /// Lets the program's layers be changed. Regular screens only.
    ControlResult setPGMEdit(const QString& device, ScreenKey screen, bool edit);
    /// Screens whose picture the console asked the application to show.
    QList<ScreenKey> viewingScreens(const QString& device) const;
    /// How far the screen's transition has come, by time or by the T-Bar: 0.0 to 1.0, 0.0 without one.
    double transitionProgress(const QString& device, ScreenKey screen) const;
    /// @}

    /// @name Layers
    /// Refused as from the console: while the screen is busy, in a program that is not being edited, at a
    /// limit, and when the hardware lacks resources.
    /// @{

    /// Adds a layer on top of the scene that shows the input; answers its id, 0 when it was refused.
    quint32 addLayer(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, quint32 inputId,
        const QRect& window, QString* reason = nullptr);
    /// Takes the layer out of the scene.
    ControlResult removeLayer(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, quint32 layerId);
    /// Gives the layer another name; keys show it.
    ControlResult renameLayer(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, quint32 layerId,
        const QString& name);
    /// Selects these layers of the scene alone; none deselects all of the screen.
    ControlResult selectLayers(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, const QList<quint32>& layerIds);
    /// Moves and sizes the layer, in pixels of the mosaic.
    ControlResult setLayerWindow(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, quint32 layerId,
        const QRect& window);
    /// Makes the layer show the input.
    ControlResult setLayerSource(
        const QString& device, ScreenKey screen, BizModel::SceneType scene, quint32 layerId, quint32 inputId);
    /// @}

    /// @name Inputs
    /// @{

    /// Adds an input; its connector must be there and free.
    ControlResult addInput(const QString& device, const InputRecord& input);
    /// Layers that show the input are left without a source.
    ControlResult removeInput(const QString& device, quint32 inputId);
    /// Gives the input another name; keys show it.
    ControlResult renameInput(const QString& device, quint32 inputId, const QString& name);
    /// The input has a signal, or none.
    ControlResult setSignal(const QString& device, quint32 inputId, bool present);
    /// The signal is more than the input can take.
    ControlResult setOverload(const QString& device, quint32 inputId, bool overload);
    /// The input on the connector takes on the capacity; layers keep theirs until they are bound anew.
    ControlResult setConnectorCapacity(
        const QString& device, quint32 subcardId, quint32 connectorId, BizModel::CapacityMode capacity);
    /// The input that the application marks; 0 for none.
    ControlResult selectInput(const QString& device, quint32 inputId);
    /// The input that the application marks; 0 for none.
    quint32 selectedInput(const QString& device) const;
    /// @}

    /// @name Presets
    /// @{

    /// Stores the present scenes in an empty slot, from 1 to the device's `maxPresetCount`.
    ControlResult addPreset(const QString& device, FileType type, quint16 fileId);
    /// Stores the present scenes in the preset's place.
    ControlResult coverPreset(const QString& device, FileType type, quint16 fileId);
    /// Gives the preset another name; keys show it.
    ControlResult renamePreset(const QString& device, FileType type, quint16 fileId, const QString& name);
    /// Empties the preset's slot.
    ControlResult removePreset(const QString& device, FileType type, quint16 fileId);
    /// Removes all presets of the device and its group.
    ControlResult clearPresets(const QString& device);
    /// Marks the preset as the one loaded last, without loading it; 0 for none.
    ControlResult activatePreset(const QString& device, FileType type, quint16 fileId);
    /// @}

    /// @name Answers and notices of the application
    /// @{

    /// The user closed the message box that is shown.
    void answerMessageBox(QMessageBox::StandardButton button);
    /// The application turned its own page of presets; from 0.
    void showPresetPage(int page);
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Control)

    template <typename Function> ControlResult onDevice(const QString& device, Function function);
    template <typename Member, typename T, typename... Signal>
    ControlResult setOnDevice(const QString& device, Member member, const T& value, Signal... signal);
    template <typename Function>
    ControlResult onScreen(const QString& device, const ScreenKey& screen, Function function);
    template <typename Member, typename T, typename Signal>
    ControlResult setOnScreen(
        const QString& device, const ScreenKey& screen, Member member, const T& value, Signal signal);
    template <typename Function>
    ControlResult onLayer(
        const QString& device, const ScreenKey& screen, BizModel::SceneType scene, quint32 layerId,
        Function function);
    template <typename Function>
    ControlResult onPreset(const QString& device, FileType type, quint16 fileId, Function function);
    template <typename Function>
    ControlResult onInput(const QString& device, quint32 inputId, Function function);
    template <typename Member, typename T, typename Signal>
    ControlResult setOnInput(
        const QString& device, quint32 inputId, Member member, const T& value, Signal signal);

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
};

} // namespace Orvane::MemoryModel
